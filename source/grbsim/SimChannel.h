// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMCHANNEL_H
#define GRBSIM_SIMCHANNEL_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "ParameterStore.h"
#include "SimCamera.h"
#include "SimPlatform.h"
#include "StreamEngine.h"
#include "grblx64.h"

namespace grbsim {

class CSimBoard;

/// What makes a frame.
enum class ETrigger : uint8_t {
  None,      // nothing that this simulation knows
  FreeRun,   // the period alone
  Software,  // GRB_EXPOSE
  Pulses     // a counted number of pulses of timer A1
};

/// When the next frame comes and what becomes of it; asked anew for each.
struct FrameTiming {
  ETrigger trigger;
  std::chrono::nanoseconds period;  // shortest distance of two frames
  bool blocking;
  uint32_t eventMask;
  EPattern pattern;
};

/// One channel of a board: the parameters, the camera if there is one, the image engine, and the claim of the one
/// handle that holds it for acquisition.
///
/// Owned by CSimBoard. Entered by any thread, the callback thread of its engine included. Locks of its own:
/// m_ClaimLock for the holder, m_LinkLock for the link modes; parameters, camera and engine have theirs. None of them
/// is held while the engine is being closed. Failures come out as CSimError.
class CSimChannel {
 public:
  CSimChannel(CSimBoard &board, uint32_t boardNumber, uint32_t number);

  /// Makes the handle the holder: default parameters, then those of the GCF file if a path is given. Fails if the
  /// channel is held, here or in another process, or if the file is not good; the channel is free again then.
  void Claim(GRB_HANDLE holder, const std::optional<std::string> &gcfPath);
  /// Ends the holder's stream and frees the channel; nothing if the handle is not the holder.
  void Unclaim(GRB_HANDLE holder);

  void SetParameter(uint32_t identifier, const void *value);
  void GetParameter(uint32_t identifier, void *value) const;
  void SaveGcf(const std::string &path) const;

  /// Null if no camera is connected.
  CSimCamera *Camera() noexcept { return m_pCamera.get(); }
  CStreamEngine &Engine() noexcept { return m_Engine; }
  void StartStream(GRB_HANDLE handle, GRB_EVENT_CALLBACK callback);

  /// A software trigger; nothing unless the camera waits for one.
  void Expose();
  /// Number of the channel whose timer A1 triggers the camera; 0 if none does.
  uint32_t TimerChannel() const;
  FrameTiming Timing(const StreamSetup &setup) const;
  /// True if the camera sends a frame now.
  bool TakeFrame() { return m_pCamera != nullptr && m_pCamera->TakeFrame(); }

 private:
  void SetCameraDefaults();
  void ApplyLink();
  uint32_t LiveValue(uint32_t identifier) const;
  uint32_t ValueInEffect(uint32_t identifier) const { return static_cast<uint32_t>(m_Parameters.InEffect(identifier)); }
  StreamSetup MakeSetup(GRB_HANDLE handle, GRB_EVENT_CALLBACK callback) const;
  double LinkBytesPerSecond() const;

  CSimBoard &m_Board;
  const uint32_t m_iBoard;
  const uint32_t m_iNumber;
  CParameterStore m_Parameters;
  const std::unique_ptr<CSimCamera> m_pCamera;
  std::mutex m_ClaimLock;
  GRB_HANDLE m_hHolder = 0;                 // guarded by m_ClaimLock
  std::unique_ptr<CChannelClaim> m_pClaim;  // guarded by m_ClaimLock
  std::mutex m_LinkLock;
  uint32_t m_iBitrateMode = GRB_CXP_BITRATE_MODE_AUTO;  // guarded by m_LinkLock; as the link was last set up
  uint32_t m_iDiscoveryMode = GRB_CXP_DISCOVERY_AUTO;   // guarded by m_LinkLock
  CStreamEngine m_Engine;                               // last: its thread uses all of the above
};

}  // namespace grbsim

#endif
