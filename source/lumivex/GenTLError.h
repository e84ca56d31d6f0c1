// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "CommandError.h"
#include "FunctionTable.h"

namespace Lumivex::Consumer {

/// A function of the Producer failed: which one, its code with the code's name, and the Producer's own words.
///
/// Ends the program with exit code 5 unless something on the way knows better, as CDevice does for a camera that is
/// busy.
/// Ownership: thrown by value, as CCommandError. Threads: made by CProducer::Failure in the thread that made the call,
/// as the Producer keeps its text per thread.
class CGenTLError : public CCommandError {
 public:
  CGenTLError(const std::string &function, GenTL::GC_ERROR result, const std::string &text);

  GenTL::GC_ERROR Result() const noexcept { return m_Result; }

 private:
  GenTL::GC_ERROR m_Result;
};

}  // namespace Lumivex::Consumer
