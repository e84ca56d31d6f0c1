// SPDX-License-Identifier: MIT
#include "CommandError.h"

#include "Text.h"

namespace Lumivex::Consumer {

CCommandError::CCommandError(ExitCode exitCode, const std::string &message)
    : std::runtime_error(OneLine(message)), m_ExitCode(exitCode) {}

}  // namespace Lumivex::Consumer
