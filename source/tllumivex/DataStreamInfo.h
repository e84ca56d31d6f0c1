// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace GenICam::Client {

/// What a Device keeps of its data stream: its name, and the board and channel that it stands on.
///
/// Made when the Device opens, and held by shared pointers: by the Device's list of children, the open stream and its
/// engine. Never changed after construction, so any thread may read it; takes no lock, throws nothing.
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
