// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMCAMERA_H
#define GRBSIM_SIMCAMERA_H

#include <array>
#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

#include "CameraModel.h"
#include "TestPattern.h"
#include "grblx64.h"

namespace grbsim {

/// One camera at the far end of a CoaXPress link: its register space, as bytes on the wire, and what the registers do.
///
/// Owned by CSimChannel. Entered by any thread, several at once: one lock of its own, under which nothing is called.
/// Like the real thing it knows whole words only and refuses anything else with an acknowledgement code, which comes
/// out as CSimError. It sends frames from power-up until AcquisitionStop; ConnectionReset brings power-up back.
class CSimCamera {
 public:
  explicit CSimCamera(const CameraModel &model);

  /// Reads whole words; `moved` receives the bytes read before a refusal.
  void Read(uint32_t address, uint8_t *buffer, uint32_t size, uint32_t &moved);
  /// Writes whole words; `moved` receives the bytes written before a refusal.
  void Write(uint32_t address, const uint8_t *buffer, uint32_t size, uint32_t &moved);

  /// True if the camera sends a frame now; counts it against the acquisition mode.
  bool TakeFrame();
  /// Whether TakeFrame would answer true.
  bool IsSending() const;
  /// Frames a second that the register asks for.
  double FrameRate() const;
  EPattern Pattern() const;

  /// Links and speed code, as in ConnectionConfig.
  uint32_t LinkConfig() const;
  /// Sets the number of links (bits 16 up) or the speed (low byte); 0 in either takes that of the default.
  void SetLink(uint32_t links, uint32_t speed);
  const CameraModel &Model() const noexcept { return m_Model; }

 private:
  struct Register {
    uint32_t address;
    uint32_t bytes;
    bool writable;
    ValueSet allowed;  // of a register of one word; empty: anything
  };

  void AddWord(uint32_t address, uint32_t value, bool writable = false, ValueSet allowed = {nullptr, 0});
  void AddRange(uint32_t address, uint32_t value, uint32_t first, uint32_t last);
  void AddFloat(uint32_t address, float value, bool writable);
  void AddText(uint32_t address, uint32_t bytes, const char *text, bool writable = false);
  void AddBlock(uint32_t address, const unsigned char *data, uint32_t size);
  void BuildBootstrap();
  void BuildFeatures();
  void PowerUp();

  const Register *Find(uint32_t address) const noexcept;
  uint32_t Word(uint32_t address) const;
  void SetWord(uint32_t address, uint32_t value);
  void CheckValue(const Register &target, uint32_t address, uint32_t value) const;
  void Act(uint32_t address, uint32_t value);

  const CameraModel &m_Model;
  const float m_PowerUpFrameRate;
  std::map<uint32_t, Register> m_Registers;  // by address; constant after construction
  std::map<uint32_t, ValueRange> m_Limits;   // of the ranges made by AddRange; constant after construction

  mutable std::mutex m_Lock;
  std::map<uint32_t, std::vector<uint8_t>> m_Bytes;         // guarded by m_Lock; one entry for each register
  std::map<uint32_t, std::vector<uint8_t>> m_PowerUpBytes;  // constant after construction
  bool m_bAcquiring = true;                                 // guarded by m_Lock
  uint32_t m_iFramesLeft = 0;                               // guarded by m_Lock; 0: no end
};

}  // namespace grbsim

#endif
