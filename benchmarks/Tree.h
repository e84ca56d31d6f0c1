// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Producer.h"
#include "grblx64.h"

namespace Benchmarks {

/// A frame of 64 KiB: 256 x 256 pixels of one byte.
constexpr uint32_t kSmallEdge = 256;
/// A frame of 4 MiB.
constexpr uint32_t kLargeEdge = 2048;

/// A module's description: where it stands in the port's memory.
struct Description {
  uint64_t address = 0;
  size_t size = 0;
};
Description DescriptionOf(PORT_HANDLE port);

/// The open module tree over the scripted library in quiet mode: System, Interface, Device and Data stream.
///
/// There is one at a time; a benchmark makes one ahead of its loop. The constructor initialises the Producer, the
/// destructor closes it. Every failure ends the program.
class CTree {
 public:
  CTree();
  ~CTree();
  CTree(const CTree &) = delete;
  CTree &operator=(const CTree &) = delete;

  /// The steps of opening, for those who measure them. The constructor takes them all.
  static TL_HANDLE OpenSystem();
  static void DiscoverInterfaces(TL_HANDLE system);
  static IF_HANDLE OpenInterface(TL_HANDLE system);
  static void DiscoverDevices(IF_HANDLE iface);
  static DEV_HANDLE OpenDevice(IF_HANDLE iface);
  static DS_HANDLE OpenStream(DEV_HANDLE device);

  /// Edge of the square frames, in pixels of one byte.
  static void SetFrameEdge(uint32_t edge);
  /// Announces memory of the Producer for so many frames of the set size.
  void Announce(size_t count);
  void QueueAll();
  void Start();
  /// The library reports the next frame, on this thread. Nothing is written to the image.
  void Frame() const { m_pCallback(m_nStreamHandle, GRB_EVENT_BUFFER_READY, m_pContext); }
  /// The library reports that it lost data.
  void Overflow() const { m_pCallback(m_nStreamHandle, GRB_EVENT_FIFO_OVERFLOW, m_pContext); }
  /// Takes the oldest filled buffer.
  BUFFER_HANDLE Take() const {
    EVENT_NEW_BUFFER_DATA data;
    size_t size = sizeof(data);
    m_pEventGetData(m_hEvent, &data, &size, 0);
    return data.BufferHandle;
  }

  TL_HANDLE System() const { return m_hSystem; }
  IF_HANDLE Interface() const { return m_hInterface; }
  DEV_HANDLE Device() const { return m_hDevice; }
  DS_HANDLE Stream() const { return m_hStream; }
  EVENT_HANDLE ErrorEvent() const { return m_hErrorEvent; }
  /// The library's handle of the running stream.
  GRB_HANDLE LibraryStream() const { return m_nStreamHandle; }
  const std::vector<BUFFER_HANDLE> &Buffers() const { return m_Buffers; }

 private:
  TL_HANDLE m_hSystem = nullptr;
  IF_HANDLE m_hInterface = nullptr;
  DEV_HANDLE m_hDevice = nullptr;
  DS_HANDLE m_hStream = nullptr;
  EVENT_HANDLE m_hEvent = nullptr;
  EVENT_HANDLE m_hErrorEvent = nullptr;
  PEventGetData m_pEventGetData = nullptr;
  GRB_EVENT_CALLBACK m_pCallback = nullptr;
  GRB_HANDLE m_nStreamHandle = 0;
  void *m_pContext = nullptr;
  std::vector<BUFFER_HANDLE> m_Buffers;
};

}  // namespace Benchmarks
