// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "ScriptedGrb.h"

namespace Benchmarks {

/// The calls that the Producer makes of the frame-grabber library during an action, to be made again without it: what
/// the library itself costs there. For actions that start no stream.
class CLibraryReplay {
 public:
  /// Records; the script is quiet again afterwards.
  explicit CLibraryReplay(const std::function<void()> &action);
  /// Makes the recorded calls.
  void Run() const;

 private:
  struct Step {
    Scripted::Op op;
    size_t slot;  ///< which of the created handles
    uint32_t code;
    uint32_t address;
    uint32_t size;
    uint32_t timeout;
    uint64_t value;
  };
  std::vector<Step> m_Steps;
  mutable std::vector<GRB_HANDLE> m_Handles;
};

}  // namespace Benchmarks
