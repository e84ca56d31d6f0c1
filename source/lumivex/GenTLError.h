// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_GENTLERROR_H_
#define LUMIVEX_CONSUMER_GENTLERROR_H_

#include <string>

#include "CommandError.h"
#include "FunctionTable.h"

namespace Lumivex::Consumer {

/// A function of the Producer failed: which one, its code with the code's name, and the Producer's own words.
///
/// Made by CProducer::Failure in the thread that made the call, as the Producer keeps its text per thread. Ends the
/// program with exit code 5 unless something on the way knows better, as CDevice does for a camera that is busy.
class CGenTLError : public CCommandError {
 public:
  CGenTLError(const std::string &function, GenTL::GC_ERROR result, const std::string &text);

  GenTL::GC_ERROR Result() const noexcept { return m_Result; }

 private:
  GenTL::GC_ERROR m_Result;
};

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_GENTLERROR_H_
