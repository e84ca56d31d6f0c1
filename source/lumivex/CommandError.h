// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

#include "ExitCodes.h"

namespace Lumivex::Consumer {

/// The end of a command before its work is done: what to tell the user, in one line, and the exit code.
///
/// Thrown by value anywhere below main(), caught there alone. what() never holds a line break: texts of Producers
/// and of the system are brought into one line when the error is made. The program's name is put before it by
/// main(), so the message starts in the middle of the line.
class CCommandError : public std::runtime_error {
 public:
  CCommandError(ExitCode exitCode, const std::string &message);

  ExitCode Code() const noexcept { return m_ExitCode; }

 private:
  ExitCode m_ExitCode;
};

}  // namespace Lumivex::Consumer
