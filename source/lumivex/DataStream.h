// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Device.h"

namespace Lumivex::Consumer {

/// An open data stream, from DevOpenDataStream to DSClose.
///
/// Ownership: outlives the buffer pool, the events and the acquisition made on it; holds its device.
/// Threads: one; no locks. A device opened for reading only lends none.
/// Throws CGenTLError: also for a question that the Producer has to answer and does not.
class CDataStream {
 public:
  CDataStream(std::shared_ptr<const CDevice> pDevice, const std::string &id);
  CDataStream(const CDataStream &) = delete;
  CDataStream &operator=(const CDataStream &) = delete;
  ~CDataStream();

  const CProducer &Producer() const noexcept { return m_pDevice->Producer(); }
  const CDevice &Device() const noexcept { return *m_pDevice; }
  GenTL::DS_HANDLE Handle() const noexcept { return m_Handle; }

  /// Bytes that a buffer has to hold for a frame in the present settings.
  std::size_t PayloadSize() const;

  /// Least number of buffers to announce; 1 when the Producer does not say.
  std::size_t MinimumBufferCount() const;

  /// Alignment that buffers should have, in bytes; 1 when the Producer does not say.
  std::size_t BufferAlignment() const;

  /// A number about a buffer; nothing when the Producer does not answer this question.
  std::optional<uint64_t> BufferNumber(GenTL::BUFFER_HANDLE hBuffer, GenTL::BUFFER_INFO_CMD command) const;

 private:
  const std::shared_ptr<const CDevice> m_pDevice;
  GenTL::DS_HANDLE m_Handle = GENTL_INVALID_HANDLE;
};

}  // namespace Lumivex::Consumer
