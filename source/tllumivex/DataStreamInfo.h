// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace GenICam::Client {

/// What a Device keeps of its data stream. Never changed after construction; held by shared pointers.
class CDataStreamInfo {
 public:
  CDataStreamInfo(const std::string &strName, uint32_t nBoard, uint32_t nChannel)
      : m_strName(strName), m_nBoard(nBoard), m_nChannel(nChannel) {}

  /// The stream's name, by which the Device knows it.
  std::string GetId() const { return m_strName; }
  uint32_t GetBoard() const { return m_nBoard; }
  uint32_t GetChannel() const { return m_nChannel; }

 private:
  std::string m_strName;
  uint32_t m_nBoard;
  uint32_t m_nChannel;
};

}  // namespace GenICam::Client
