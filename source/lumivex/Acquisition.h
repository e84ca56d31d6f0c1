// SPDX-License-Identifier: MIT
#pragma once

#include "CxpCamera.h"
#include "DataStream.h"

namespace Lumivex::Consumer {

/// A run of a stream, from DSStartAcquisition to DSStopAcquisition, with the camera started after the host and stopped
/// before it. It takes as many frames as it is told, then stands still until it is stopped: a camera that went on
/// would report frames as lost that nobody has asked for.
///
/// Ownership: made by CGrabber when the buffers are queued; dies before they are revoked. A run that nobody has stopped
/// is stopped by the destructor, without a word on failures.
/// Threads: one. Throws CGenTLError.
class CAcquisition {
 public:
  CAcquisition(const CDataStream &stream, uint64_t frames);
  CAcquisition(const CAcquisition &) = delete;
  CAcquisition &operator=(const CAcquisition &) = delete;
  ~CAcquisition();

  /// Ends the run; the second time nothing happens.
  void Stop();

  /// Whether the camera has taken the start command.
  bool CameraStarted() const noexcept { return m_bCameraStarted; }

 private:
  const CDataStream &m_Stream;
  const CCxpCamera m_Camera;
  bool m_bRunning = false;
  bool m_bCameraStarted = false;
};

}  // namespace Lumivex::Consumer
