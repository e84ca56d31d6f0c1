// SPDX-License-Identifier: MIT
#include "DataStream.h"

#include <algorithm>
#include <utility>

namespace Lumivex::Consumer {

CDataStream::CDataStream(std::shared_ptr<const CDevice> pDevice, const std::string &id)
    : m_pDevice(std::move(pDevice)) {
  Producer().Call(Producer().Api().DevOpenDataStream, m_pDevice->Handle(), id.c_str(), &m_Handle);
}

CDataStream::~CDataStream() { Producer().Api().DSClose.address(m_Handle); }

std::size_t CDataStream::PayloadSize() const {
  return static_cast<std::size_t>(
      Producer().QueryNumber(Producer().Api().DSGetInfo, m_Handle, GenTL::STREAM_INFO_PAYLOAD_SIZE));
}

std::size_t CDataStream::MinimumBufferCount() const {
  const auto count =
      Producer().TryQueryNumber(Producer().Api().DSGetInfo, m_Handle, GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN);
  return std::max<std::size_t>(1, static_cast<std::size_t>(count.value_or(1)));
}

std::size_t CDataStream::BufferAlignment() const {
  const auto alignment =
      Producer().TryQueryNumber(Producer().Api().DSGetInfo, m_Handle, GenTL::STREAM_INFO_BUF_ALIGNMENT);
  return std::max<std::size_t>(1, static_cast<std::size_t>(alignment.value_or(1)));
}

std::optional<uint64_t> CDataStream::BufferNumber(GenTL::BUFFER_HANDLE hBuffer, GenTL::BUFFER_INFO_CMD command) const {
  return Producer().TryQueryNumber(Producer().Api().DSGetBufferInfo, m_Handle, hBuffer, command);
}

}  // namespace Lumivex::Consumer
