// SPDX-License-Identifier: MIT
#include "SimError.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace grbsim {

CSimError::CSimError(GRB_STATUS status, std::string text) : m_Status(status), m_strText(std::move(text)) {}

void Fail(GRB_STATUS status, const char *format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  throw CSimError(status, text);
}

void RequirePointer(const void *pointer, const char *name) {
  if (pointer == nullptr) {
    Fail(kStatusInvalidArgument, "The argument '%s' is a null pointer.", name);
  }
}

}  // namespace grbsim
