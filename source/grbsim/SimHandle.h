// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMHANDLE_H
#define GRBSIM_SIMHANDLE_H

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "grblx64.h"

namespace grbsim {

class CSimBoard;
class CSimChannel;
class CSimCamera;

/// One library handle: its hook, its open parameters and, while it is open, the channel and mode.
///
/// Ownership: by shared pointer, from CHandleTable and from each call that is under way on it.
/// Threads:   any, several at once on one handle. A call that races with Close works on the open channel or fails.
/// Locks:     m_Lock, for the open parameters and the session; not held while a stream is closed.
/// Throws:    CSimError from every operation but Close.
class CSimHandle {
 public:
  CSimHandle(GRB_HANDLE value, GRB_ERROR_HOOK hook);

  GRB_ERROR_HOOK Hook() const noexcept { return m_pHook; }

  void Open();
  /// Ends the handle's stream, if it has one. Nothing on a handle that is not open.
  void Close();
  void SetParameter(uint32_t identifier, const void *value);
  void GetParameter(uint32_t identifier, void *value) const;
  void Action(uint32_t action, uint32_t subAction, const void *argument) const;
  void Stream(uint32_t operation, void *argument) const;
  void ControlRead(uint32_t port, const void *config, uint8_t *buffer, uint32_t *size) const;
  void ControlWrite(uint32_t port, const void *config, const uint8_t *buffer, uint32_t *size) const;

 private:
  struct Session {
    uint32_t mode;
    CSimBoard *board;  // boards and channels last as long as the library
    CSimChannel *channel;
  };

  void SetOpenParameter(uint32_t identifier, const void *value);
  Session OpenSession() const;
  Session AcquisitionSession(const char *purpose) const;
  CSimCamera &CameraOf(const Session &session) const;

  const GRB_HANDLE m_hValue;
  const GRB_ERROR_HOOK m_pHook;
  mutable std::mutex m_Lock;
  // Guarded by m_Lock, all below.
  std::optional<uint32_t> m_Board;
  std::optional<uint32_t> m_Channel;
  std::optional<uint32_t> m_Mode;
  std::optional<std::string> m_GcfPath;  // for the next open only
  std::optional<Session> m_Session;
};

}  // namespace grbsim

#endif
