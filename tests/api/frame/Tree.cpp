// SPDX-License-Identifier: MIT
#include "Tree.h"

namespace FrameTests {

namespace {

// Good arguments for whatever stands behind the handle. The checks under test come ahead of their use.
INFO_DATATYPE g_iType = INFO_DATATYPE_UNKNOWN;
char g_Buffer[4096];
size_t g_iSize = sizeof(g_Buffer);
void *g_pHandle = nullptr;
void *g_pPointer = nullptr;
uint32_t g_nCount = 0;
bool8_t g_bChanged = false;
GC_ERROR g_iError = GC_ERR_SUCCESS;
uint32_t g_nWord = 0;
PORT_REGISTER_STACK_ENTRY g_Entry = {0x4, &g_nWord, 4};
size_t g_iEntries = 1;
SINGLE_CHUNK_DATA g_Chunk;

size_t *Size(size_t size = sizeof(g_Buffer)) {
  g_iSize = size;
  return &g_iSize;
}
PORT_REGISTER_STACK_ENTRY *Entries() {
  g_Entry = {0x4, &g_nWord, 4};
  g_iEntries = 1;
  return &g_Entry;
}

}  // namespace

const std::vector<ExportRow> &Exports() {
  using F = const Functions &;
  using H = void *;
  static const std::vector<ExportRow> rows = {
      {"GCInitLib", Takes::Nothing, [](F gc, H) { return gc.GCInitLib(); }},
      {"GCCloseLib", Takes::Nothing, [](F gc, H) { return gc.GCCloseLib(); }},
      {"GCGetInfo", Takes::Nothing, [](F gc, H) { return gc.GCGetInfo(TL_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"GCGetLastError", Takes::Nothing, [](F gc, H) { return gc.GCGetLastError(&g_iError, g_Buffer, Size()); }},
      {"GCReadPort", Takes::Port, [](F gc, H h) { return gc.GCReadPort(h, 0x4, g_Buffer, Size(4)); }},
      {"GCWritePort", Takes::Port, [](F gc, H h) { return gc.GCWritePort(h, 0x4, g_Buffer, Size(4)); }},
      {"GCGetPortURL", Takes::Port, [](F gc, H h) { return gc.GCGetPortURL(h, g_Buffer, Size()); }},
      {"GCGetPortInfo", Takes::Port,
       [](F gc, H h) { return gc.GCGetPortInfo(h, PORT_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"GCGetNumPortURLs", Takes::Port, [](F gc, H h) { return gc.GCGetNumPortURLs(h, &g_nCount); }},
      {"GCGetPortURLInfo", Takes::Port,
       [](F gc, H h) { return gc.GCGetPortURLInfo(h, 0, URL_INFO_URL, &g_iType, g_Buffer, Size()); }},
      {"GCReadPortStacked", Takes::Port, [](F gc, H h) { return gc.GCReadPortStacked(h, Entries(), &g_iEntries); }},
      {"GCWritePortStacked", Takes::Port, [](F gc, H h) { return gc.GCWritePortStacked(h, Entries(), &g_iEntries); }},
      {"GCRegisterEvent", Takes::EventSource, [](F gc, H h) { return gc.GCRegisterEvent(h, EVENT_ERROR, &g_pHandle); }},
      {"GCUnregisterEvent", Takes::EventSource, [](F gc, H h) { return gc.GCUnregisterEvent(h, EVENT_ERROR); }},
      {"EventGetData", Takes::Event, [](F gc, H h) { return gc.EventGetData(h, g_Buffer, Size(), 0); }},
      {"EventGetDataInfo", Takes::Event,
       [](F gc, H h) { return gc.EventGetDataInfo(h, g_Buffer, 8, EVENT_DATA_ID, &g_iType, g_Buffer, Size()); }},
      {"EventGetInfo", Takes::Event,
       [](F gc, H h) { return gc.EventGetInfo(h, EVENT_EVENT_TYPE, &g_iType, g_Buffer, Size()); }},
      {"EventFlush", Takes::Event, [](F gc, H h) { return gc.EventFlush(h); }},
      {"EventKill", Takes::Event, [](F gc, H h) { return gc.EventKill(h); }},
      {"TLOpen", Takes::Nothing, [](F gc, H) { return gc.TLOpen(&g_pHandle); }},
      {"TLClose", Takes::System, [](F gc, H h) { return gc.TLClose(h); }},
      {"TLGetInfo", Takes::System, [](F gc, H h) { return gc.TLGetInfo(h, TL_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"TLGetNumInterfaces", Takes::System, [](F gc, H h) { return gc.TLGetNumInterfaces(h, &g_nCount); }},
      {"TLGetInterfaceID", Takes::System, [](F gc, H h) { return gc.TLGetInterfaceID(h, 0, g_Buffer, Size()); }},
      {"TLGetInterfaceInfo", Takes::System,
       [](F gc, H h) {
         return gc.TLGetInterfaceInfo(h, CScriptedGrb::kDefaultInterfaceId, INTERFACE_INFO_ID, &g_iType, g_Buffer,
                                      Size());
       }},
      {"TLOpenInterface", Takes::System,
       [](F gc, H h) { return gc.TLOpenInterface(h, CScriptedGrb::kDefaultInterfaceId, &g_pHandle); }},
      {"TLUpdateInterfaceList", Takes::System, [](F gc, H h) { return gc.TLUpdateInterfaceList(h, &g_bChanged, 100); }},
      {"IFClose", Takes::Interface, [](F gc, H h) { return gc.IFClose(h); }},
      {"IFGetInfo", Takes::Interface,
       [](F gc, H h) { return gc.IFGetInfo(h, INTERFACE_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"IFGetNumDevices", Takes::Interface, [](F gc, H h) { return gc.IFGetNumDevices(h, &g_nCount); }},
      {"IFGetDeviceID", Takes::Interface, [](F gc, H h) { return gc.IFGetDeviceID(h, 0, g_Buffer, Size()); }},
      {"IFUpdateDeviceList", Takes::Interface, [](F gc, H h) { return gc.IFUpdateDeviceList(h, &g_bChanged, 100); }},
      {"IFGetDeviceInfo", Takes::Interface,
       [](F gc, H h) { return gc.IFGetDeviceInfo(h, "Channel #1", DEVICE_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"IFOpenDevice", Takes::Interface,
       [](F gc, H h) { return gc.IFOpenDevice(h, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &g_pHandle); }},
      {"DevGetPort", Takes::Device, [](F gc, H h) { return gc.DevGetPort(h, &g_pHandle); }},
      {"DevGetNumDataStreams", Takes::Device, [](F gc, H h) { return gc.DevGetNumDataStreams(h, &g_nCount); }},
      {"DevGetDataStreamID", Takes::Device, [](F gc, H h) { return gc.DevGetDataStreamID(h, 0, g_Buffer, Size()); }},
      {"DevOpenDataStream", Takes::Device, [](F gc, H h) { return gc.DevOpenDataStream(h, "Stream #1", &g_pHandle); }},
      {"DevGetInfo", Takes::Device,
       [](F gc, H h) { return gc.DevGetInfo(h, DEVICE_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"DevClose", Takes::Device, [](F gc, H h) { return gc.DevClose(h); }},
      {"DSAnnounceBuffer", Takes::Stream,
       [](F gc, H h) { return gc.DSAnnounceBuffer(h, g_Buffer, sizeof(g_Buffer), nullptr, &g_pHandle); }},
      {"DSAllocAndAnnounceBuffer", Takes::Stream,
       [](F gc, H h) { return gc.DSAllocAndAnnounceBuffer(h, 64, nullptr, &g_pHandle); }},
      {"DSFlushQueue", Takes::Stream, [](F gc, H h) { return gc.DSFlushQueue(h, ACQ_QUEUE_OUTPUT_DISCARD); }},
      {"DSStartAcquisition", Takes::Stream,
       [](F gc, H h) { return gc.DSStartAcquisition(h, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE); }},
      {"DSStopAcquisition", Takes::Stream, [](F gc, H h) { return gc.DSStopAcquisition(h, ACQ_STOP_FLAGS_KILL); }},
      {"DSGetInfo", Takes::Stream,
       [](F gc, H h) { return gc.DSGetInfo(h, STREAM_INFO_ID, &g_iType, g_Buffer, Size()); }},
      {"DSGetBufferID", Takes::Stream, [](F gc, H h) { return gc.DSGetBufferID(h, 0, &g_pHandle); }},
      {"DSClose", Takes::Stream, [](F gc, H h) { return gc.DSClose(h); }},
      {"DSRevokeBuffer", Takes::Stream,
       [](F gc, H h) { return gc.DSRevokeBuffer(h, nullptr, &g_pPointer, &g_pPointer); }},
      {"DSQueueBuffer", Takes::Stream, [](F gc, H h) { return gc.DSQueueBuffer(h, nullptr); }},
      {"DSGetBufferInfo", Takes::Stream,
       [](F gc, H h) { return gc.DSGetBufferInfo(h, nullptr, BUFFER_INFO_SIZE, &g_iType, g_Buffer, Size()); }},
      {"DSGetBufferChunkData", Takes::Stream,
       [](F gc, H h) { return gc.DSGetBufferChunkData(h, nullptr, &g_Chunk, Size(1)); }},
  };
  return rows;
}

std::vector<ExportRow> ExportsWithHandle() {
  std::vector<ExportRow> rows;
  for (const ExportRow &row : Exports()) {
    if (row.takes != Takes::Nothing) {
      rows.push_back(row);
    }
  }
  return rows;
}

}  // namespace FrameTests
