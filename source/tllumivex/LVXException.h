// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "Platform.h"

/// The last three arguments of every exception: function, file and line of the place it is written in.
#define LVX_HERE LVX_FUNCTION_SIGNATURE, __FILE__, __LINE__

namespace Lumivex {

/// Base of all failures inside the Producer.
///
/// Thrown by value, caught by reference at the exported boundary (TLIClient), where what() becomes the text of
/// GCGetLastError. The text is composed once, in the constructor: the description, and in parentheses the scoped name
/// of the throwing function, the last component of the file's path, and the line.
/// Used by one thread at a time; takes no lock.
class CLVXException : public std::exception {
 public:
  /// @param pFunction scoped name of the throwing function, or its whole signature, of which the name is taken
  CLVXException(const char *pDescription, const char *pFunction, const char *pFile, uint32_t nLine);
  CLVXException(const std::string &strDescription, const char *pFunction, const char *pFile, uint32_t nLine);
  CLVXException(const CLVXException &) = default;
  CLVXException &operator=(const CLVXException &) = delete;
  ~CLVXException() override;

  const char *what() const noexcept override;
  virtual const std::string &GetDescription() const;
  virtual const std::string &GetSourceFunction() const;
  virtual const std::string &GetSourceFile() const;
  virtual uint32_t GetSourceLine() const;

 private:
  void ComposeWhat();

  std::string m_strFunction;
  uint32_t m_nLine;
  std::string m_strFile;
  std::string m_strDescription;
  std::string m_strExceptionType;
  std::string m_strWhat;
};

/// The scoped name of a function, without parentheses, out of a compiler's rendering of its signature. A lambda counts
/// as part of the named function that it stands in.
std::string ScopedFunctionName(const std::string &strSignature);

}  // namespace Lumivex
