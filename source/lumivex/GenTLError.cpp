// SPDX-License-Identifier: MIT
#include "GenTLError.h"

#include "GenTLNames.h"

namespace Lumivex::Consumer {
namespace {

std::string Message(const std::string &function, GenTL::GC_ERROR result, const std::string &text) {
  return function + " failed with " + std::to_string(result) + " (" + ErrorName(result) + ")" +
         (text.empty() ? "" : ": " + text);
}

}  // namespace

CGenTLError::CGenTLError(const std::string &function, GenTL::GC_ERROR result, const std::string &text)
    : CCommandError(ExitCode::GenTL, Message(function, result, text)), m_Result(result) {}

}  // namespace Lumivex::Consumer
