// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMERROR_H
#define GRBSIM_SIMERROR_H

#include <exception>
#include <string>

#include "grblx64.h"

namespace grbsim {

// The library's own statuses. Users test GRB_OK and the two warnings only; the words come through the hook.
constexpr GRB_STATUS kStatusInvalidHandle = 0x00009001U;
constexpr GRB_STATUS kStatusInvalidArgument = 0x00009002U;
constexpr GRB_STATUS kStatusInvalidState = 0x00009003U;
constexpr GRB_STATUS kStatusNoHardware = 0x00009004U;
constexpr GRB_STATUS kStatusBusy = 0x00009005U;
constexpr GRB_STATUS kStatusUnknownParameter = 0x00009006U;
constexpr GRB_STATUS kStatusAccess = 0x00009007U;
constexpr GRB_STATUS kStatusValue = 0x00009008U;
constexpr GRB_STATUS kStatusLink = 0x00009009U;
constexpr GRB_STATUS kStatusCameraRefused = 0x0000900AU;
constexpr GRB_STATUS kStatusFile = 0x0000900BU;
constexpr GRB_STATUS kStatusInternal = 0x0000900FU;

/// A failure inside the library: the status that the caller gets and the description for the error hook.
///
/// Thrown by value anywhere below the exports, caught there only. No lock is held when it arrives there.
class CSimError : public std::exception {
 public:
  CSimError(GRB_STATUS status, std::string text);
  GRB_STATUS Status() const noexcept { return m_Status; }
  const char *what() const noexcept override { return m_strText.c_str(); }

 private:
  GRB_STATUS m_Status;
  std::string m_strText;
};

/// Throws CSimError with a text formatted as printf does.
[[noreturn]] void Fail(GRB_STATUS status, const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 2, 3)))
#endif
    ;

/// Fails with the name of the argument if the pointer is null.
void RequirePointer(const void *pointer, const char *name);

}  // namespace grbsim

#endif
