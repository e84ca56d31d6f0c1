// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Acquisition.h"
#include "BufferPool.h"
#include "DataStream.h"
#include "ErrorEvents.h"
#include "Event.h"
#include "Frame.h"

namespace Lumivex::Consumer {

/// Takes frames off a camera: opens its stream, announces and queues buffers, runs, and takes all back in turn.
///
/// Ownership: made by the grab command; holds the device. Threads: one, that of Run; the interrupt mark is looked at
/// ten times a second. Throws CGenTLError; CCommandError(Timeout) when no frame comes in time and
/// CCommandError(Interrupted) when the user asks for the end. Whatever ends the run, stream and buffers are given back.
class CGrabber {
 public:
  /// Gets each frame, numbered 1, 2, ...; the frame is good during the call.
  using Sink = std::function<void(const Frame &frame, uint64_t number)>;

  /// `limit`: the longest wait for one whole frame.
  CGrabber(std::shared_ptr<const CDevice> pDevice, uint64_t count, std::chrono::milliseconds limit);

  void Run(const Sink &sink);

  /// What went wrong beside the frames handed out, in words; complete when Run has ended, also by an exception.
  const std::vector<std::string> &Warnings() const noexcept { return m_Warnings; }

 private:
  /// All that is open during a run; what stands further down goes first.
  struct Session {
    Session(const std::shared_ptr<const CDevice> &pDevice, const std::string &streamId, uint64_t frames);

    CDataStream stream;
    CErrorEvents errors;
    CEvent newBuffer;
    CBufferPool pool;
  };

  void TakeFrames(Session &session, uint64_t frames, const Sink &sink);
  GenTL::BUFFER_HANDLE WaitForBuffer(const CEvent &newBuffer, const CAcquisition &acquisition) const;
  [[noreturn]] void FailForTime(const CAcquisition &acquisition) const;
  std::string Position() const;
  void Summarise(const Session &session);

  const std::shared_ptr<const CDevice> m_pDevice;
  const uint64_t m_Count;
  const std::chrono::milliseconds m_Limit;
  std::chrono::steady_clock::time_point m_Deadline;  // For the next whole frame.
  uint64_t m_Done = 0;
  uint64_t m_Incomplete = 0;
  std::vector<std::string> m_Warnings;
};

/// The frame that lies in a filled buffer. Throws CGenTLError when the Producer does not tell what is needed.
Frame DescribeFrame(const CDataStream &stream, GenTL::BUFFER_HANDLE hBuffer);

}  // namespace Lumivex::Consumer
