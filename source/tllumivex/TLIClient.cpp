// SPDX-License-Identifier: MIT
#include "TLIClient.h"

#include <atomic>
#include <memory>
#include <string>

#include "DataStream.h"
#include "Device.h"
#include "Helper.h"
#include "Interface.h"
#include "ModuleDescription.h"
#include "Platform.h"
#include "Settings.h"
#include "TL.h"
#include "TLIError.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

// Zero or one. The System module's pointer is guarded by the order of calls.
std::atomic<uint32_t> g_nInitialisedCount{0};

// Without a destructor: a process may end while its threads call.
union SystemModule {
  SystemModule() : pTL() {}
  SystemModule(const SystemModule &) = delete;
  SystemModule &operator=(const SystemModule &) = delete;
  ~SystemModule() {}
  std::shared_ptr<CTL> pTL;
} g_SystemModule;
std::shared_ptr<CTL> &g_pTL = g_SystemModule.pTL;

/// Size of the buffer for the library's path, as each query has it.
constexpr size_t kInfoNamePathSize = 4096;
constexpr size_t kInfoPathSize = 2048;

template <class Error>
bool Is(const Lumivex::CLVXException &error) {
  return dynamic_cast<const Error *>(&error) != nullptr;
}

struct CatchRow {
  bool (*pIs)(const Lumivex::CLVXException &error);
  GC_ERROR iErrorCode;
};

constexpr CatchRow kCatchSequence[] = {
    {Is<dynamic_cast_error>, GC_ERR_ERROR},
    {Is<unknown_error>, GC_ERR_ERROR},
    {Is<outofrange_error>, GC_ERR_ERROR},
    {Is<access_error>, GC_ERR_ERROR},
    {Is<notinitialized_error>, GC_ERR_NOT_INITIALIZED},
    {Is<notimplemented_error>, GC_ERR_NOT_IMPLEMENTED},
    {Is<resourceinuse_error>, GC_ERR_RESOURCE_IN_USE},
    {Is<accessdenied_error>, GC_ERR_ACCESS_DENIED},
    {Is<invalidhandle_error>, GC_ERR_INVALID_HANDLE},
    {Is<invalidid_error>, GC_ERR_INVALID_ID},
    {Is<nodata_error>, GC_ERR_NO_DATA},
    {Is<invalidparameter_error>, GC_ERR_INVALID_PARAMETER},
    {Is<io_error>, GC_ERR_IO},
    {Is<timeout_error>, GC_ERR_TIMEOUT},
    {Is<abort_error>, GC_ERR_ABORT},
    {Is<invalidbuffer_error>, GC_ERR_INVALID_BUFFER},
    {Is<notavailable_error>, GC_ERR_NOT_AVAILABLE},
    {Is<invalidaddress_error>, GC_ERR_INVALID_ADDRESS},
};

/// A call that did its work has done so also where its words cannot be kept: for want of memory, or behind the end of
/// this library's own objects, while the process ends.
GC_ERROR Record(GC_ERROR iErrorCode, const char *pText) noexcept {
  try {
    GetTLIError().SetErrTxt(iErrorCode, pText);
  } catch (...) {
  }
  return iErrorCode;
}

GC_ERROR RecordUnknown() noexcept { return Record(GC_ERR_ERROR, "GenTL Producer: unknown exception"); }

/// The handle that an opening function gives out, or null.
template <class Module>
void *HandleOrNull(Module *pModule) {
  return pModule == nullptr ? nullptr : HandleOf(pModule);
}

enum class StackedAccess { Read, Write };

GC_ERROR StackedCall(StackedAccess access, PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries,
                     const char *pFunction, const char *pFile, uint32_t nLine) {
  size_t nDone = 0;
  const GC_ERROR result = ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequirePointer(pEntries, "Null PORT_REGISTER_STACK_ENTRY pointer.", pFunction, pFile, nLine);
    RequirePointer(piNumEntries, "Null pointer for 'number of entries' argument.", pFunction, pFile, nLine);
    for (size_t i = 0; i < *piNumEntries; ++i) {
      // The record is packed: its size may stand at any address.
      size_t iSize = pEntries[i].Size;
      if (access == StackedAccess::Read) {
        port.ReadData(pEntries[i].Address, pEntries[i].pBuffer, &iSize);
      } else {
        port.WriteData(pEntries[i].Address, pEntries[i].pBuffer, &iSize);
      }
      // A size that stays is not written: the entries may lie where nothing can be.
      if (iSize != pEntries[i].Size) {
        pEntries[i].Size = iSize;
      }
      ++nDone;
    }
  });
  if (piNumEntries != nullptr) {
    *piNumEntries = nDone;
  }
  return result;
}

}  // namespace

bool IsLibraryInitialised() noexcept { return g_nInitialisedCount != 0; }

bool MayBeInUseAtTheEnd() noexcept { return IsLibraryInitialised() && Lumivex::Platform::IsProcessEnding(); }

void ThrowIfLibraryNotInitialised() {
  if (!IsLibraryInitialised()) {
    throw notinitialized_error("GenTL Producer is not initialized. Call GCInitLib() first.", LVX_HERE);
  }
}

void ThrowIfTLNotOpened() {
  if (g_pTL == nullptr) {
    throw invalidhandle_error("No valid TL handle. Create one with TLOpen() first.", LVX_HERE);
  }
}

GC_ERROR RecordCurrentException() noexcept {
  try {
    throw;
  } catch (const Lumivex::CLVXException &error) {
    for (const CatchRow &row : kCatchSequence) {
      if (row.pIs(error)) {
        return Record(row.iErrorCode, error.what());
      }
    }
    return RecordUnknown();
  } catch (...) {
    return RecordUnknown();
  }
}

GC_ERROR RecordSuccess() noexcept {
  return Record(GC_ERR_SUCCESS, "No error, last function reset the last error to GC_ERR_SUCCESS.");
}

// Library

GC_API GCInitLib(void) {
  return ApiCall([] {
    if (g_nInitialisedCount != 0) {
      throw resourceinuse_error("GenTL producer already initialised. Call GCCloseLib() first.", LVX_HERE);
    }
    Lumivex::Platform::WatchForProcessEnd();
    ++g_nInitialisedCount;
    Settings::ReadSettings();
  });
}

GC_API GCCloseLib(void) {
  return ApiCall([] {
    ThrowIfLibraryNotInitialised();
    if (g_pTL != nullptr) {
      g_pTL->CloseAll();
      g_pTL.reset();
    }
    --g_nInitialisedCount;
  });
}

GC_API GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    ThrowIfLibraryNotInitialised();
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    switch (iInfoCmd) {
      case TL_INFO_ID:
      case TL_INFO_NAME:
        return SetReturnParam(pBuffer, piSize, piType,
                              GetLibraryFileName(kInfoNamePathSize, "Unable to parse filename", LVX_HERE));
      case TL_INFO_VENDOR:
        return SetReturnParam(pBuffer, piSize, piType, kVendorName);
      case TL_INFO_MODEL:
        return SetReturnParam(pBuffer, piSize, piType, kModelName);
      case TL_INFO_VERSION:
        return SetReturnParam(pBuffer, piSize, piType, GetModuleVersionText(Lumivex::Platform::LocalModuleHandle()));
      case TL_INFO_TLTYPE:
        return SetReturnParam(pBuffer, piSize, piType, "CXP");
      case TL_INFO_PATHNAME:
        return SetReturnParam(pBuffer, piSize, piType, GetLibraryPath(kInfoPathSize));
      case TL_INFO_DISPLAYNAME:
        return SetReturnParam(pBuffer, piSize, piType, "Lumivex GenTL");
      default:
        throw invalidparameter_error("Unsupported GCInfo parameter", LVX_HERE);
    }
  });
}

GC_API GCGetLastError(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize) {
  // A success leaves the record as it is, so that it can be asked again.
  return GuardedCall([&] {
    ThrowIfLibraryNotInitialised();
    RequirePointer(piErrorCode, "Null pointer for ErrorCode", LVX_HERE);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(sErrText, piSize, LVX_HERE);
    GetTLIError().GetErrTxt(piErrorCode, sErrText, piSize);
  });
}

// Ports

GC_API GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(pBuffer, piSize, LVX_HERE);
    port.ReadData(iAddress, pBuffer, piSize);
  });
}

GC_API GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(pBuffer, piSize, LVX_HERE);
    port.WriteData(iAddress, pBuffer, piSize);
  });
}

GC_API GCGetPortURL(PORT_HANDLE hPort, char *sURL, size_t *piSize) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    if (sURL != nullptr && *piSize == 0) {
      throw invalidparameter_error("Size of URL cannot be null.", LVX_HERE);
    }
    port.GetURL(sURL, piSize);
  });
}

GC_API GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequireInfoArguments("Null pointer for Type", piType, pBuffer, piSize, LVX_HERE);
    port.GetPortInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t *piNumURLs) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequirePointer(piNumURLs, "Null pointer for iNumURLs.", LVX_HERE);
    port.GetNumPortURLs(piNumURLs);
  });
}

GC_API GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                        void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    IPort &port = Opened<IPort>(hPort);
    RequireInfoArguments("Null pointer for Type", piType, pBuffer, piSize, LVX_HERE);
    port.GetPortURLInfo(iURLIndex, iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries) {
  return StackedCall(StackedAccess::Read, hPort, pEntries, piNumEntries, LVX_HERE);
}

GC_API GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries) {
  return StackedCall(StackedAccess::Write, hPort, pEntries, piNumEntries, LVX_HERE);
}

// Events

GC_API GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) {
  return ApiCall([&] {
    IEventSrc &eventSrc = Opened<IEventSrc>(hEventSrc);
    RequirePointer(phEvent, "Null pointer for EVENT_HANDLE", LVX_HERE);
    eventSrc.Register(iEventID, phEvent);
  });
}

GC_API GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
  return ApiCall([&] { Opened<IEventSrc>(hEventSrc).Unregister(iEventID); });
}

GC_API EventGetData(EVENT_HANDLE hEvent, void *pBuffer, size_t *piSize, uint64_t iTimeout) {
  return ApiCall([&] {
    IEventObj &event = Opened<IEventObj>(hEvent);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(pBuffer, piSize, LVX_HERE);
    if (!event.GetData(pBuffer, piSize, iTimeout)) {
      throw timeout_error("Timeout while acquiring data", LVX_HERE);
    }
  });
}

GC_API EventGetDataInfo(EVENT_HANDLE hEvent, const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd,
                        INFO_DATATYPE *piType, void *pOutBuffer, size_t *piOutSize) {
  return ApiCall([&] {
    IEventObj &event = Opened<IEventObj>(hEvent);
    RequireInfoArguments("Null type pointer.", piType, pOutBuffer, piOutSize, LVX_HERE);
    RequirePointer(pInBuffer, "Null pointer for event data.", LVX_HERE);
    event.GetDataInfo(pInBuffer, iInSize, iInfoCmd, piType, pOutBuffer, piOutSize);
  });
}

GC_API EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                    size_t *piSize) {
  return ApiCall([&] {
    IEventObj &event = Opened<IEventObj>(hEvent);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    event.GetInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API EventFlush(EVENT_HANDLE hEvent) {
  return ApiCall([&] { Opened<IEventObj>(hEvent).Flush(); });
}

GC_API EventKill(EVENT_HANDLE hEvent) {
  return ApiCall([&] { Opened<IEventObj>(hEvent).Kill(); });
}

// System

GC_API TLOpen(TL_HANDLE *phTL) {
  return ApiCall([&] {
    ThrowIfLibraryNotInitialised();
    if (g_pTL != nullptr) {
      throw resourceinuse_error("System module already opened in this process", LVX_HERE);
    }
    RequirePointer(phTL, "Null TL_HANDLE pointer.", LVX_HERE);
    g_pTL = std::make_shared<CTL>();
    *phTL = HandleOrNull(g_pTL.get());
    if (*phTL == nullptr) {
      throw dynamic_cast_error("Failed to create System module.", LVX_HERE);
    }
  });
}

GC_API TLClose(TL_HANDLE hTL) {
  return ApiCall([&] {
    const CTL &tl = Opened<CTL>(hTL);
    if (&tl != g_pTL.get()) {
      throw invalidhandle_error("Handle different from unique handle held by library.", LVX_HERE);
    }
    g_pTL->CloseAll();
    g_pTL.reset();
  });
}

GC_API TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    CTL &tl = Opened<CTL>(hTL);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    if (iInfoCmd == TL_INFO_ID) {
      SetReturnParam(pBuffer, piSize, piType,
                     GetLibraryFileName(kInfoPathSize, "Failed to extract module name.", LVX_HERE));
      return;
    }
    tl.GetInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API TLGetNumInterfaces(TL_HANDLE hTL, uint32_t *piNumIfaces) {
  return ApiCall([&] {
    CTL &tl = Opened<CTL>(hTL);
    RequirePointer(piNumIfaces, "Null pointer for number of interface.", LVX_HERE);
    *piNumIfaces = tl.GetNumInterfaces();
  });
}

GC_API TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char *sID, size_t *piSize) {
  return ApiCall([&] {
    CTL &tl = Opened<CTL>(hTL);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(sID, piSize, LVX_HERE);
    tl.GetInterfaceID(iIndex, sID, piSize);
  });
}

GC_API TLGetInterfaceInfo(TL_HANDLE hTL, const char *sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                          void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    CTL &tl = Opened<CTL>(hTL);
    RequirePointer(sIfaceID, "Null pointer for Interface name.", LVX_HERE);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    tl.GetInterfaceInfo(sIfaceID, iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API TLOpenInterface(TL_HANDLE hTL, const char *sIfaceID, IF_HANDLE *phIface) {
  return ApiCall([&] {
    CTL &tl = Opened<CTL>(hTL);
    RequirePointer(sIfaceID, "Null pointer for Interface name.", LVX_HERE);
    RequirePointer(phIface, "Null IF_HANDLE pointer.", LVX_HERE);
    *phIface = HandleOrNull(tl.GetInterface(sIfaceID));
  });
}

GC_API TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t *pbChanged, uint64_t iTimeout) {
  return ApiCall([&] {
    const bool bChanged = Opened<CTL>(hTL).UpdateInterfaceList(iTimeout);
    if (pbChanged != nullptr) {
      *pbChanged = bChanged;
    }
  });
}

// Interface

GC_API IFClose(IF_HANDLE hIface) {
  return ApiCall([&] { Opened<CInterface>(hIface).Close(); });
}

GC_API IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    const CInterface &iface = Opened<CInterface>(hIface);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    iface.GetInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API IFGetNumDevices(IF_HANDLE hIface, uint32_t *piNumDevices) {
  return ApiCall([&] {
    const CInterface &iface = Opened<CInterface>(hIface);
    RequirePointer(piNumDevices, "Null pointer for 'number of device' variable", LVX_HERE);
    *piNumDevices = iface.GetNumDevices();
  });
}

GC_API IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char *sIDeviceID, size_t *piSize) {
  return ApiCall([&] {
    const CInterface &iface = Opened<CInterface>(hIface);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(sIDeviceID, piSize, LVX_HERE);
    iface.GetDeviceID(iIndex, sIDeviceID, piSize);
  });
}

GC_API IFUpdateDeviceList(IF_HANDLE hIface, bool8_t *pbChanged, uint64_t iTimeout) {
  return ApiCall([&] { Opened<CInterface>(hIface).UpdateDeviceList(pbChanged, iTimeout); });
}

GC_API IFGetDeviceInfo(IF_HANDLE hIface, const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                       void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    const CInterface &iface = Opened<CInterface>(hIface);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    iface.GetDeviceInfo(sDeviceID, iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API IFOpenDevice(IF_HANDLE hIface, const char *sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE *phDevice) {
  return ApiCall([&] {
    CInterface &iface = Opened<CInterface>(hIface);
    RequirePointer(sDeviceID, "Null pointer for Device name.", LVX_HERE);
    RequirePointer(phDevice, "Null DEV_HANDLE pointer.", LVX_HERE);
    const bool bStandard = iOpenFlags >= DEVICE_ACCESS_READONLY && iOpenFlags <= DEVICE_ACCESS_EXCLUSIVE;
    if (!bStandard && iOpenFlags < DEVICE_ACCESS_CUSTOM_ID) {
      throw invalidparameter_error("Invalid DEVICE_ACCESS_FLAGS.", LVX_HERE);
    }
    *phDevice = HandleOrNull(iface.OpenDevice(sDeviceID, iOpenFlags));
  });
}

// Device

GC_API DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE *phRemoteDevice) {
  return ApiCall([&] { Opened<CDevice>(hDevice).GetPort(phRemoteDevice); });
}

GC_API DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t *piNumDataStreams) {
  return ApiCall([&] {
    const CDevice &device = Opened<CDevice>(hDevice);
    RequirePointer(piNumDataStreams, "Null pointer for 'number of channels' variable", LVX_HERE);
    *piNumDataStreams = device.GetNumDataStreams();
  });
}

GC_API DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char *sDataStreamID, size_t *piSize) {
  return ApiCall([&] {
    const CDevice &device = Opened<CDevice>(hDevice);
    RequirePointer(piSize, "Null size pointer.", LVX_HERE);
    RequireRoom(sDataStreamID, piSize, LVX_HERE);
    device.GetDataStreamID(iIndex, sDataStreamID, piSize);
  });
}

GC_API DevOpenDataStream(DEV_HANDLE hDevice, const char *sDataStreamID, DS_HANDLE *phDataStream) {
  return ApiCall([&] {
    CDevice &device = Opened<CDevice>(hDevice);
    RequirePointer(phDataStream, "Null DS_HANDLE pointer.", LVX_HERE);
    *phDataStream = HandleOrNull(device.OpenDataStream(sDataStreamID));
  });
}

GC_API DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    const CDevice &device = Opened<CDevice>(hDevice);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    device.GetInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API DevClose(DEV_HANDLE hDevice) {
  return ApiCall([&] { Opened<CDevice>(hDevice).Close(); });
}

// Data stream

GC_API DSAnnounceBuffer(DS_HANDLE hDataStream, void *pBuffer, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSAnnounceBuffer(pBuffer, iSize, pPrivate, phBuffer); });
}

GC_API DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSAllocAndAnnounceBuffer(iSize, pPrivate, phBuffer); });
}

GC_API DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSFlushQueue(iOperation); });
}

GC_API DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire) {
  return ApiCall([&] {
    CDataStream &dataStream = Opened<CDataStream>(hDataStream);
    if (iNumToAcquire == 0) {
      throw invalidparameter_error("Number of frames to acquire must be at least one.", LVX_HERE);
    }
    dataStream.DSStartAcquisition(iStartFlags, iNumToAcquire);
  });
}

GC_API DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSStopAcquisition(iStopFlags); });
}

GC_API DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                 size_t *piSize) {
  return ApiCall([&] {
    CDataStream &dataStream = Opened<CDataStream>(hDataStream);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    dataStream.DSGetInfo(iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE *phBuffer) {
  return ApiCall([&] {
    CDataStream &dataStream = Opened<CDataStream>(hDataStream);
    RequirePointer(phBuffer, "Null BUFFER_HANDLE pointer.", LVX_HERE);
    dataStream.DSGetBufferID(iIndex, phBuffer);
  });
}

GC_API DSClose(DS_HANDLE hDataStream) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).Close(); });
}

GC_API DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void **pBuffer, void **pPrivate) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSRevokeBuffer(hBuffer, pBuffer, pPrivate); });
}

GC_API DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
  return ApiCall([&] { Opened<CDataStream>(hDataStream).DSQueueBuffer(hBuffer); });
}

GC_API DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                       void *pBuffer, size_t *piSize) {
  return ApiCall([&] {
    CDataStream &dataStream = Opened<CDataStream>(hDataStream);
    RequireInfoArguments("Null type pointer.", piType, pBuffer, piSize, LVX_HERE);
    dataStream.DSGetBufferInfo(hBuffer, iInfoCmd, piType, pBuffer, piSize);
  });
}

GC_API DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE, SINGLE_CHUNK_DATA *, size_t *) {
  return ApiCall([&] {
    Opened<CDataStream>(hDataStream);
    throw notimplemented_error("Function is not supported.", LVX_HERE);
  });
}

}  // namespace GenICam::Client
