// SPDX-License-Identifier: MIT
#include "TLIException.h"

#include <cstdarg>
#include <cstdio>

namespace GenICam::Client {

std::string FormatMessageText(const char *pFormat, ...) {
  constexpr size_t kBufferSize = 256;

  // "%I64" is the form of the message texts; the C library knows "%ll".
  std::string strFormat(pFormat);
  for (size_t nAt = strFormat.find("%I64"); nAt != std::string::npos; nAt = strFormat.find("%I64", nAt)) {
    strFormat.replace(nAt, 4, "%ll");
  }

  char buffer[kBufferSize] = {};
  va_list arguments;
  va_start(arguments, pFormat);
  std::vsnprintf(buffer, sizeof(buffer), strFormat.c_str(), arguments);
  va_end(arguments);
  return std::string(buffer);
}

}  // namespace GenICam::Client
