// SPDX-License-Identifier: MIT
#include "Tree.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ScriptedGrb.h"

namespace Benchmarks {

using Scripted::CScriptedGrb;
using Scripted::Script;

Description DescriptionOf(PORT_HANDLE port) {
  char url[256];
  size_t size = sizeof(url);
  Must(Gc().GCGetPortURL(port, url, &size), "GCGetPortURL");
  unsigned long long address = 0;
  size_t bytes = 0;
  const char *numbers = std::strchr(url, ';');
  if (numbers == nullptr || std::sscanf(numbers, ";%llx;%zx", &address, &bytes) != 2) {
    std::fprintf(stderr, "lumivex_benchmarks: no local URL: %s\n", url);
    std::exit(2);
  }
  return {address, bytes};
}

TL_HANDLE CTree::OpenSystem() {
  TL_HANDLE system = nullptr;
  Must(Gc().TLOpen(&system), "TLOpen");
  return system;
}

void CTree::DiscoverInterfaces(TL_HANDLE system) {
  bool8_t changed = 0;
  Must(Gc().TLUpdateInterfaceList(system, &changed, 0), "TLUpdateInterfaceList");
}

IF_HANDLE CTree::OpenInterface(TL_HANDLE system) {
  IF_HANDLE iface = nullptr;
  Must(Gc().TLOpenInterface(system, CScriptedGrb::kDefaultInterfaceId, &iface), "TLOpenInterface");
  return iface;
}

void CTree::DiscoverDevices(IF_HANDLE iface) {
  bool8_t changed = 0;
  Must(Gc().IFUpdateDeviceList(iface, &changed, 0), "IFUpdateDeviceList");
}

DEV_HANDLE CTree::OpenDevice(IF_HANDLE iface) {
  DEV_HANDLE device = nullptr;
  Must(Gc().IFOpenDevice(iface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &device), "IFOpenDevice");
  return device;
}

DS_HANDLE CTree::OpenStream(DEV_HANDLE device) {
  DS_HANDLE stream = nullptr;
  Must(Gc().DevOpenDataStream(device, "Stream #1", &stream), "DevOpenDataStream");
  return stream;
}

CTree::CTree() : m_pEventGetData(Gc().EventGetData) {
  Script().SetQuiet(true);
  SetFrameEdge(kSmallEdge);
  Must(Gc().GCInitLib(), "GCInitLib");
  m_hSystem = OpenSystem();
  DiscoverInterfaces(m_hSystem);
  m_hInterface = OpenInterface(m_hSystem);
  DiscoverDevices(m_hInterface);
  m_hDevice = OpenDevice(m_hInterface);
  m_hStream = OpenStream(m_hDevice);
  Must(Gc().GCRegisterEvent(m_hStream, EVENT_NEW_BUFFER, &m_hEvent), "GCRegisterEvent");
  Must(Gc().GCRegisterEvent(m_hStream, EVENT_ERROR, &m_hErrorEvent), "GCRegisterEvent");
}

CTree::~CTree() {
  Must(Gc().GCCloseLib(), "GCCloseLib");
  Script().Reset();
}

void CTree::SetFrameEdge(uint32_t edge) {
  Script().SetParameter(GRB_BOARD_1, GRB_CHANNEL_1, GRB_ROI_XLENGTH, edge);
  Script().SetParameter(GRB_BOARD_1, GRB_CHANNEL_1, GRB_ROI_YLENGTH, edge);
}

void CTree::Announce(size_t count) {
  size_t payload = 0;
  size_t size = sizeof(payload);
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  Must(Gc().DSGetInfo(m_hStream, STREAM_INFO_PAYLOAD_SIZE, &type, &payload, &size), "DSGetInfo");
  for (size_t i = 0; i < count; ++i) {
    BUFFER_HANDLE buffer = nullptr;
    Must(Gc().DSAllocAndAnnounceBuffer(m_hStream, payload, nullptr, &buffer), "DSAllocAndAnnounceBuffer");
    m_Buffers.push_back(buffer);
  }
}

void CTree::QueueAll() {
  for (BUFFER_HANDLE buffer : m_Buffers) {
    Must(Gc().DSQueueBuffer(m_hStream, buffer), "DSQueueBuffer");
  }
}

void CTree::Start() {
  Must(Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE), "DSStartAcquisition");
  const Scripted::Stream stream = Script().StreamOf();
  m_pCallback = stream.callback;
  m_nStreamHandle = stream.handle;
  m_pContext = stream.context;
}

}  // namespace Benchmarks
