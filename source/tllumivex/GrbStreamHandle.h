// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "GrbBaseHandle.h"

namespace GenICam::Client {

/// The handle on which acquisition and all grabber parameters run. Only one holder can have a channel at a time, so
/// that a trial open tells whether the camera is free.
///
/// Held by an open Device with control rights, for its whole life; made for a moment by discovery. A refused open only
/// leaves the object invalid.
/// Threads: any. Locks: LoadGcf holds m_Lock from the close to the end of the reopening.
/// The constructor throws unknown_error when no library handle can be created.
class CGrbStreamHandle : public CGrbBaseHandle {
 public:
  CGrbStreamHandle(uint32_t nBoard, uint32_t nChannel, bool bQuietErrors);
  ~CGrbStreamHandle() override;

  bool IsValid() const override { return m_bValid; }

  /// Reopens the channel with a GCF file; double quotes in the path do not count. The handle is open again also after
  /// a failure in the library. @throws unknown_error, invalidparameter_error
  void LoadGcf(const char *pPath);

 private:
  GRB_STATUS Open();

  bool m_bValid;
  const uint32_t m_nBoard;
  const uint32_t m_nChannel;
};

}  // namespace GenICam::Client
