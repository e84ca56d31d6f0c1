// SPDX-License-Identifier: MIT
#include "Grabber.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "PixelFormats.h"
#include "Platform.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// How late the user's wish to end may be noticed.
constexpr milliseconds kSlice{100};

// Writing a picture may take longer than the camera needs for the next frame; so many buffers bridge that.
// One more than frames, where memory allows: then a slow disk loses none.
constexpr std::size_t kFewestBuffers = 4;
constexpr std::size_t kMostBuffers = 1024;
constexpr std::size_t kMostBufferBytes = std::size_t{256} << 20U;

std::size_t RequiredPayload(const CDataStream &stream) {
  const std::size_t payload = stream.PayloadSize();
  if (payload == 0) {
    throw CCommandError(ExitCode::GenTL, "the Producer announces frames of no bytes: is the camera's format set?");
  }
  return payload;
}

std::size_t BufferCount(const CDataStream &stream, uint64_t frames) {
  const auto wish = static_cast<std::size_t>(std::min<uint64_t>(frames + 1, kMostBuffers));
  const std::size_t affordable = std::max(kMostBufferBytes / RequiredPayload(stream), kFewestBuffers);
  return std::max(std::min(std::max(wish, kFewestBuffers), affordable), stream.MinimumBufferCount());
}

bool HoldsWholeImage(const CDataStream &stream, GenTL::BUFFER_HANDLE hBuffer) {
  return stream.BufferNumber(hBuffer, GenTL::BUFFER_INFO_IS_INCOMPLETE).value_or(0) == 0 &&
         stream.BufferNumber(hBuffer, GenTL::BUFFER_INFO_IMAGEPRESENT).value_or(1) != 0;
}

std::string Seconds(milliseconds limit) {
  const auto count = limit.count();
  return count % 1000 == 0 ? std::to_string(count / 1000) + " s" : std::to_string(count) + " ms";
}

}  // namespace

Frame DescribeFrame(const CDataStream &stream, GenTL::BUFFER_HANDLE hBuffer) {
  const auto required = [&](GenTL::BUFFER_INFO_CMD command) {
    return stream.Producer().QueryNumber(stream.Producer().Api().DSGetBufferInfo, stream.Handle(), hBuffer, command);
  };
  const auto optional = [&](GenTL::BUFFER_INFO_CMD command) {
    return static_cast<std::size_t>(stream.BufferNumber(hBuffer, command).value_or(0));
  };

  const auto *pBase = static_cast<const unsigned char *>(stream.Producer().QueryAddress(
      stream.Producer().Api().DSGetBufferInfo, stream.Handle(), hBuffer, GenTL::BUFFER_INFO_BASE));
  const auto bufferSize = static_cast<std::size_t>(required(GenTL::BUFFER_INFO_SIZE));
  const std::size_t filled = optional(GenTL::BUFFER_INFO_SIZE_FILLED);
  const std::size_t end = filled == 0 ? bufferSize : std::min(filled, bufferSize);
  const std::size_t offset = std::min(optional(GenTL::BUFFER_INFO_IMAGEOFFSET), end);

  Frame frame{};
  frame.pData = pBase + offset;
  frame.size = end - offset;
  frame.width = static_cast<std::size_t>(required(GenTL::BUFFER_INFO_WIDTH));
  frame.height = static_cast<std::size_t>(required(GenTL::BUFFER_INFO_HEIGHT));
  frame.pixelFormat = required(GenTL::BUFFER_INFO_PIXELFORMAT);
  frame.frameId = stream.BufferNumber(hBuffer, GenTL::BUFFER_INFO_FRAMEID).value_or(0);
  const std::size_t delivered = optional(GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT);
  if (delivered > 0) {
    frame.height = std::min(frame.height, delivered);
  }

  const PixelFormatRow *pFormat = FindPixelFormat(frame.pixelFormat);
  const std::size_t lineBytes = pFormat != nullptr ? frame.width * pFormat->bytesPerPixel : frame.width;
  const auto padding = stream.BufferNumber(hBuffer, GenTL::BUFFER_INFO_XPADDING);
  if (padding) {
    frame.stride = lineBytes + static_cast<std::size_t>(*padding);
  } else {
    // Lines that are longer than their pixels show in the size of the whole.
    frame.stride = frame.height > 0 ? std::max(frame.size / frame.height, lineBytes) : lineBytes;
  }
  return frame;
}

CGrabber::Session::Session(const std::shared_ptr<const CDevice> &pDevice, const std::string &streamId, uint64_t frames)
    : stream(pDevice, streamId),
      errors(stream),
      newBuffer(stream.Producer(), stream.Handle(), GenTL::EVENT_NEW_BUFFER),
      pool(stream, BufferCount(stream, frames), RequiredPayload(stream)) {}

CGrabber::CGrabber(std::shared_ptr<const CDevice> pDevice, uint64_t count, milliseconds limit)
    : m_pDevice(std::move(pDevice)), m_Count(count), m_Limit(limit) {}

void CGrabber::Run(const Sink &sink) {
  const std::vector<std::string> streams = m_pDevice->StreamIds();
  if (streams.empty()) {
    throw CCommandError(ExitCode::GenTL, "the camera has no data stream");
  }
  Session session(m_pDevice, streams.front(), m_Count);
  m_Deadline = steady_clock::now() + m_Limit;
  try {
    // A second run only makes up for frames that came incomplete.
    while (m_Done < m_Count) {
      TakeFrames(session, m_Count - m_Done, sink);
    }
  } catch (...) {
    session.errors.Collect();
    Summarise(session);
    throw;
  }
  Summarise(session);
}

void CGrabber::TakeFrames(Session &session, uint64_t frames, const Sink &sink) {
  CAcquisition acquisition(session.stream, frames);
  for (uint64_t taken = 0; taken < frames; ++taken) {
    const GenTL::BUFFER_HANDLE hBuffer = WaitForBuffer(session.newBuffer, acquisition);
    if (HoldsWholeImage(session.stream, hBuffer)) {
      // Before the frame is worked on: what is lost after the last one is of no interest to the user.
      session.errors.Collect();
      sink(DescribeFrame(session.stream, hBuffer), ++m_Done);
      m_Deadline = steady_clock::now() + m_Limit;
    } else {
      ++m_Incomplete;
      if (steady_clock::now() >= m_Deadline) {
        FailForTime(acquisition);
      }
    }
    if (m_Done < m_Count) {
      session.pool.Queue(hBuffer);
    }
  }
  acquisition.Stop();
}

GenTL::BUFFER_HANDLE CGrabber::WaitForBuffer(const CEvent &newBuffer, const CAcquisition &acquisition) const {
  for (;;) {
    if (Interrupted()) {
      throw CCommandError(ExitCode::Interrupted, "interrupted " + Position());
    }
    const auto left = std::chrono::ceil<milliseconds>(m_Deadline - steady_clock::now());
    GenTL::EVENT_NEW_BUFFER_DATA record = {};
    std::size_t size = sizeof(record);
    // A frame that lies there has come in time, however late it is looked for.
    if (newBuffer.Wait(&record, size, std::clamp(left, milliseconds(0), kSlice))) {
      return record.BufferHandle;
    }
    if (left <= milliseconds(0)) {
      FailForTime(acquisition);
    }
  }
}

void CGrabber::FailForTime(const CAcquisition &acquisition) const {
  throw CCommandError(ExitCode::Timeout,
                      std::string(m_Incomplete > 0 ? "no whole frame" : "no frame") + " came within " +
                          Seconds(m_Limit) + " (" + Position() + "); " +
                          (acquisition.CameraStarted() ? "does the camera wait for a trigger?"
                                                       : "is the camera running, or does it wait for a trigger?"));
}

std::string CGrabber::Position() const {
  return "after " + std::to_string(m_Done) + " of " + Counted(m_Count, "frame");
}

void CGrabber::Summarise(const Session &session) {
  m_Warnings = session.errors.Summary();
  if (m_Incomplete > 0) {
    m_Warnings.push_back(Counted(m_Incomplete, "incomplete frame") + " left out");
  }
}

}  // namespace Lumivex::Consumer
