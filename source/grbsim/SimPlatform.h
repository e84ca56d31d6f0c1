// SPDX-License-Identifier: MIT
/// All that the simulation asks of the operating system; one implementation file for each platform.
#ifndef GRBSIM_SIMPLATFORM_H
#define GRBSIM_SIMPLATFORM_H

#include <optional>
#include <string>

namespace grbsim {

/// The value of an environment variable; nothing if it is not set.
std::optional<std::string> EnvironmentText(const char *name);

/// The claim of one process on one channel for acquisition, visible to every other process of the machine.
///
/// Owned by the CSimChannel whose acquisition is held. The system gives the claim up when the process dies. Where no
/// lock file can be made the claim always succeeds: processes then do not see each other, which is no reason to stop.
class CChannelClaim {
 public:
  /// The name tells the board and channel; it becomes part of a file name.
  explicit CChannelClaim(const std::string &name);
  ~CChannelClaim();
  CChannelClaim(const CChannelClaim &) = delete;
  CChannelClaim &operator=(const CChannelClaim &) = delete;

  /// False while another process, or another claim of this one, holds the name.
  bool IsHeld() const noexcept { return m_bHeld; }

 private:
  int m_iFile;
  bool m_bHeld;
};

}  // namespace grbsim

#endif
