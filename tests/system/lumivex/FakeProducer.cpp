// SPDX-License-Identifier: MIT
/// \file
/// A Producer of its own, for the tests of lumivex: it does what the environment variable FAKE_PRODUCER says, a list
/// such as "boards=2;fail=DSStartAcquisition". Words: see kDefaults. It writes the calls that change its state, one a
/// line, to the file that FAKE_PRODUCER_LOG names. One thread at a time.

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "GenTL.h"

namespace {

using namespace GenICam::Client;

const std::map<std::string, std::string> kDefaults = {
    {"boards", "1"},        // number of boards
    {"cameras", "2"},       // cameras on each
    {"busy", "0"},          // 1: all cameras are listed as busy; 2: only opening one tells
    {"fail", ""},           // name of the function that fails
    {"frames", "1000000"},  // so many come, then none
    {"incomplete", "0"},    // so many frames come incomplete first
    {"lost", "0"},          // so many FIFO overflows are reported with the first frame
    {"width", "5"},         // pixels
    {"height", "3"},        // lines
    {"bytes", "1"},         // per pixel
    {"padding", "11"},      // bytes after each line
    {"tellpadding", "1"},   // 0: XPADDING is not answered
    {"format", "0x01080001"},
    {"description", "good"},  // of each module; or none, broken, elsewhere, missing, zip
    {"mode", "1"},            // where the feature Mode stands at first
};

struct Buffer {
  unsigned char *pMemory = nullptr;
  size_t size = 0;
  uint64_t frameId = 0;
};

struct State {
  std::map<std::string, std::string> words = kDefaults;
  std::string lastError;
  std::deque<Buffer *> input;
  size_t announced = 0;
  uint64_t frames = 0;
  uint64_t errorsReported = 0;
  uint64_t framesOfRun = 0;  // still to come in this run
  std::mutex mutex;
  std::condition_variable never;
};

// What each port describes: a feature of each kind, and some that cannot be had.
const std::string kDescription = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Fake" VendorName="Fake" StandardNameSpace="None" SchemaMajorVersion="1"
  SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
  ProductGuid="11111111-1111-1111-1111-111111111111" VersionGuid="11111111-1111-1111-1111-111111111111"
  xmlns="http://www.genicam.org/GenApi/Version_1_1">
<Category Name="Root"><pFeature>Control</pFeature><pFeature>Nothing</pFeature></Category>
<Category Name="Control">
  <pFeature>Mode</pFeature><pFeature>Gain</pFeature><pFeature>Size</pFeature><pFeature>Offset</pFeature>
  <pFeature>Enabled</pFeature><pFeature>Label</pFeature><pFeature>Secret</pFeature><pFeature>Broken</pFeature>
  <pFeature>Fixed</pFeature><pFeature>Absent</pFeature><pFeature>Doubtful</pFeature><pFeature>Blob</pFeature>
  <pFeature>Serial</pFeature><pFeature>Run</pFeature><pFeature>Gone</pFeature>
  <pFeature>Own</pFeature><pFeature>Constant</pFeature>
</Category>
<Category Name="Nothing"><pFeature>Hidden</pFeature></Category>
<Enumeration Name="Mode"><ToolTip>How it works.</ToolTip>
  <EnumEntry Name="Off"><Value>0</Value></EnumEntry><EnumEntry Name="On"><Value>1</Value></EnumEntry>
  <EnumEntry Name="Automatic"><Value>0x80000000</Value></EnumEntry><pValue>ModeReg</pValue></Enumeration>
<IntReg Name="ModeReg"><Address>0x0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<Float Name="Gain"><pValue>GainReg</pValue><Min>0.5</Min><Max>100000</Max><Unit>dB</Unit></Float>
<FloatReg Name="GainReg"><Address>0x8</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Endianess>LittleEndian</Endianess></FloatReg>
<Integer Name="Size"><pValue>SizeReg</pValue><Min>16</Min><Max>64</Max><Inc>16</Inc></Integer>
<IntReg Name="SizeReg"><Address>0x10</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<IntReg Name="Offset"><Address>0x14</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>
<Boolean Name="Enabled"><pValue>EnabledReg</pValue></Boolean>
<IntReg Name="EnabledReg"><Address>0x18</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<StringReg Name="Label"><Address>0x20</Address><Length>16</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
</StringReg>
<IntReg Name="Secret"><Address>0x30</Address><Length>4</Length><AccessMode>WO</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<IntReg Name="Broken"><Address>0x800</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<Integer Name="Fixed"><pIsLocked>SizeReg</pIsLocked><pValue>SizeReg</pValue></Integer>
<Integer Name="Absent"><pIsAvailable>Zero</pIsAvailable><pValue>SizeReg</pValue></Integer>
<Integer Name="Doubtful"><pIsLocked>Broken</pIsLocked><pValue>SizeReg</pValue></Integer>
<Integer Name="Zero"><Value>0</Value></Integer>
<Register Name="Blob"><Address>0x40</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort></Register>
<IntReg Name="Serial"><Address>0x40</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>
<Integer Name="Own"><ImposedAccessMode>RW</ImposedAccessMode><Value>3</Value></Integer>
<Integer Name="Constant"><Value>7</Value></Integer>
<Command Name="Run"><pValue>RunReg</pValue><CommandValue>7</CommandValue></Command>
<IntReg Name="RunReg"><Address>0x50</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Port</pPort>
  <Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<IntReg Name="Hidden"><Visibility>Invisible</Visibility><Address>0x54</Address><Length>4</Length>
  <AccessMode>RW</AccessMode><pPort>Port</pPort><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>
<Port Name="Port"/>
</RegisterDescription>
)";
constexpr uint64_t kDescriptionAddress = 0x1000;

State g_state;
std::string g_registers(0x100, '\0');
int g_tl, g_interface, g_device, g_stream, g_newBuffer, g_error;

uint64_t Number(const char *word) { return std::stoull(g_state.words.at(word), nullptr, 0); }

void Log(const std::string &line) {
  if (const char *file = std::getenv("FAKE_PRODUCER_LOG")) {
    std::ofstream(file, std::ios::app) << line << '\n';
  }
}

GC_ERROR Fail(GC_ERROR code, const std::string &text) {
  g_state.lastError = text;
  return code;
}

// The head of every call that matters: writes it down, and fails it if it is the one to fail.
GC_ERROR Enter(const char *function) {
  Log(function);
  return g_state.words.at("fail") == function ? Fail(GC_ERR_IO, "told to fail\n\tin two lines") : GC_ERR_SUCCESS;
}

GC_ERROR Answer(INFO_DATATYPE type, const void *pValue, size_t size, INFO_DATATYPE *piType, void *pBuffer,
                size_t *piSize) {
  *piType = type;
  if (pBuffer != nullptr) {
    if (*piSize < size) {
      return Fail(GC_ERR_INVALID_PARAMETER, "buffer too small");
    }
    std::memcpy(pBuffer, pValue, size);
  }
  *piSize = size;
  return GC_ERR_SUCCESS;
}

GC_ERROR AnswerText(const std::string &text, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return Answer(INFO_DATATYPE_STRING, text.c_str(), text.size() + 1, piType, pBuffer, piSize);
}

template <class Value>
GC_ERROR AnswerNumber(INFO_DATATYPE type, Value value, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return Answer(type, &value, sizeof(value), piType, pBuffer, piSize);
}

size_t LineBytes() { return Number("width") * Number("bytes") + Number("padding"); }
size_t Payload() { return LineBytes() * Number("height"); }

void Fill(Buffer &buffer) {
  const size_t used = Number("width") * Number("bytes");
  for (size_t y = 0; y < Number("height"); ++y) {
    for (size_t x = 0; x < LineBytes(); ++x) {
      buffer.pMemory[y * LineBytes() + x] =
          x < used ? static_cast<unsigned char>(16 * y + x + buffer.frameId) : static_cast<unsigned char>(0xEE);
    }
  }
}

// The description as an archive with one file, stored as it is.
std::string ZippedDescription() {
  const std::string name = "fake.xml";
  std::string zip;
  const auto add = [&](uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      zip += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
  };
  // What the file's own header and its row in the directory have in common: version to the lengths.
  const auto addFacts = [&] {
    add(10, 2);  // version
    add(0, 2);   // flags
    add(0, 2);   // stored
    add(0, 4);   // time and date
    add(0, 4);   // checksum, which nobody looks at
    add(kDescription.size(), 4);
    add(kDescription.size(), 4);
    add(name.size(), 2);
    add(0, 2);  // extra field
  };
  add(0x04034B50, 4);
  addFacts();
  zip += name + kDescription;
  const size_t directory = zip.size();
  add(0x02014B50, 4);
  add(10, 2);  // made by
  addFacts();
  add(0, 2);  // comment
  add(0, 2);  // disk
  add(0, 2);  // internal attributes
  add(0, 4);  // external attributes
  add(0, 4);  // where the file's header is
  zip += name;
  const size_t end = zip.size();
  add(0x06054B50, 4);
  add(0, 4);  // disks
  add(1, 2);
  add(1, 2);
  add(end - directory, 4);
  add(directory, 4);
  add(0, 2);  // comment
  return zip;
}

std::string Description() {
  const std::string &kind = g_state.words.at("description");
  return kind == "broken" ? "no XML" : kind == "zip" ? ZippedDescription() : kDescription;
}

void SetRegister(size_t address, const void *pValue, size_t size) {
  std::memcpy(g_registers.data() + address, pValue, size);
}

// The registers as they are before anything is written. Machines that run the tests are little-endian.
void ResetRegisters() {
  const auto mode = static_cast<uint32_t>(Number("mode"));
  const double gain = 2.5;
  const uint32_t size = 32;
  const int32_t offset = -5;
  SetRegister(0x0, &mode, sizeof(mode));
  SetRegister(0x8, &gain, sizeof(gain));
  SetRegister(0x10, &size, sizeof(size));
  SetRegister(0x14, &offset, sizeof(offset));
  SetRegister(0x20, "first\x1B[31m", 11);
  SetRegister(0x40, "\x01\x02\x03\x04", 4);
}

}  // namespace

extern "C" {
namespace GenICam {
namespace Client {

GC_API GCInitLib() {
  if (const char *words = std::getenv("FAKE_PRODUCER")) {
    std::istringstream stream(words);
    for (std::string word; std::getline(stream, word, ';');) {
      const size_t equals = word.find('=');
      g_state.words.at(word.substr(0, equals)) = word.substr(equals + 1);
    }
  }
  ResetRegisters();
  return Enter("GCInitLib");
}
GC_API GCCloseLib() { return Enter("GCCloseLib"); }
GC_API GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return AnswerText(iInfoCmd == TL_INFO_VERSION ? "9.9" : "Fake", piType, pBuffer, piSize);
}
GC_API GCGetLastError(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize) {
  *piErrorCode = GC_ERR_IO;
  INFO_DATATYPE type = 0;
  return AnswerText(g_state.lastError, &type, sErrText, piSize);
}
GC_API GCGetPortInfo(PORT_HANDLE, PORT_INFO_CMD, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return AnswerNumber<bool8_t>(INFO_DATATYPE_BOOL8, 0, piType, pBuffer, piSize);
}
GC_API GCGetNumPortURLs(PORT_HANDLE, uint32_t *piNumURLs) {
  *piNumURLs = g_state.words.at("description") == "none" ? 0 : 1;
  return Enter("GCGetNumPortURLs");
}
GC_API GCGetPortURLInfo(PORT_HANDLE, uint32_t, URL_INFO_CMD, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  std::ostringstream url;
  if (g_state.words.at("description") == "elsewhere") {
    url << "http://localhost/fake.xml";
  } else if (g_state.words.at("description") == "missing") {
    url << "file:////no%20such/fake.xml";
  } else {
    url << "Local:///fake.xml;" << std::hex << kDescriptionAddress << ';' << Description().size()
        << "?SchemaVersion=1.1";
  }
  return AnswerText(url.str(), piType, pBuffer, piSize);
}
GC_API GCReadPort(PORT_HANDLE, uint64_t iAddress, void *pBuffer, size_t *piSize) {
  const std::string description = Description();
  if (iAddress == kDescriptionAddress && *piSize == description.size()) {
    std::memcpy(pBuffer, description.data(), *piSize);
    return GC_ERR_SUCCESS;
  }
  if (iAddress + *piSize > g_registers.size()) {
    return Fail(GC_ERR_IO, "no camera");
  }
  std::memcpy(pBuffer, g_registers.data() + iAddress, *piSize);
  return GC_ERR_SUCCESS;
}
GC_API GCWritePort(PORT_HANDLE, uint64_t iAddress, const void *pBuffer, size_t *piSize) {
  const GC_ERROR result = Enter("GCWritePort");
  if (result != GC_ERR_SUCCESS) {
    return result;
  }
  if (iAddress + *piSize > g_registers.size()) {
    return Fail(GC_ERR_IO, "no camera");
  }
  SetRegister(static_cast<size_t>(iAddress), pBuffer, *piSize);
  return GC_ERR_SUCCESS;
}

GC_API GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) {
  if (hEventSrc != &g_stream) {
    return Fail(GC_ERR_NOT_IMPLEMENTED, "no such event");
  }
  *phEvent = iEventID == EVENT_NEW_BUFFER ? &g_newBuffer : &g_error;
  return Enter("GCRegisterEvent");
}
GC_API GCUnregisterEvent(EVENTSRC_HANDLE, EVENT_TYPE) { return Enter("GCUnregisterEvent"); }

GC_API EventGetData(EVENT_HANDLE hEvent, void *pBuffer, size_t *piSize, uint64_t iTimeout) {
  if (hEvent == &g_error) {
    if (g_state.frames == 0 || g_state.errorsReported == Number("lost")) {
      return Fail(GC_ERR_TIMEOUT, "nothing");
    }
    ++g_state.errorsReported;
    const char record[] = "\xEE\xD8\xFF\xFFoverflow";  // -10002
    std::memcpy(pBuffer, record, sizeof(record));
    *piSize = sizeof(record);
    return GC_ERR_SUCCESS;
  }
  if (g_state.words.at("fail") == "EventGetData") {
    return Fail(GC_ERR_ABORT, "told to fail");
  }
  if (g_state.framesOfRun == 0 || g_state.input.empty() || g_state.frames == Number("frames")) {
    std::unique_lock<std::mutex> lock(g_state.mutex);
    g_state.never.wait_for(lock, std::chrono::milliseconds(iTimeout), [] { return false; });
    return Fail(GC_ERR_TIMEOUT, "nothing");
  }
  Buffer *pFilled = g_state.input.front();
  g_state.input.pop_front();
  pFilled->frameId = ++g_state.frames;
  --g_state.framesOfRun;
  Fill(*pFilled);
  const EVENT_NEW_BUFFER_DATA record = {pFilled, nullptr};
  std::memcpy(pBuffer, &record, sizeof(record));
  *piSize = sizeof(record);
  return GC_ERR_SUCCESS;
}
GC_API EventGetDataInfo(EVENT_HANDLE, const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd,
                        INFO_DATATYPE *piType, void *pOutBuffer, size_t *piOutSize) {
  const char *pRecord = static_cast<const char *>(pInBuffer);
  return iInfoCmd == EVENT_DATA_VALUE
             ? Answer(INFO_DATATYPE_STRING, pRecord + 4, iInSize - 4, piType, pOutBuffer, piOutSize)
             : Answer(INFO_DATATYPE_INT32, pRecord, 4, piType, pOutBuffer, piOutSize);
}
GC_API EventGetInfo(EVENT_HANDLE, EVENT_INFO_CMD, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, 2048, piType, pBuffer, piSize);
}

GC_API TLOpen(TL_HANDLE *phTL) {
  *phTL = &g_tl;
  return Enter("TLOpen");
}
GC_API TLClose(TL_HANDLE) { return Enter("TLClose"); }
GC_API TLGetNumInterfaces(TL_HANDLE, uint32_t *piNumIfaces) {
  *piNumIfaces = static_cast<uint32_t>(Number("boards"));
  return GC_ERR_SUCCESS;
}
GC_API TLGetInterfaceID(TL_HANDLE, uint32_t iIndex, char *sID, size_t *piSize) {
  INFO_DATATYPE type = 0;
  return AnswerText("Board-#" + std::to_string(iIndex + 1), &type, sID, piSize);
}
GC_API TLGetInterfaceInfo(TL_HANDLE, const char *sIfaceID, INTERFACE_INFO_CMD, INFO_DATATYPE *piType, void *pBuffer,
                          size_t *piSize) {
  return AnswerText(std::string("Fake ") + sIfaceID, piType, pBuffer, piSize);
}
GC_API TLOpenInterface(TL_HANDLE, const char *, IF_HANDLE *phIface) {
  *phIface = &g_interface;
  return Enter("TLOpenInterface");
}
GC_API TLUpdateInterfaceList(TL_HANDLE, bool8_t *, uint64_t) { return Enter("TLUpdateInterfaceList"); }

GC_API IFClose(IF_HANDLE) { return Enter("IFClose"); }
GC_API IFGetNumDevices(IF_HANDLE, uint32_t *piNumDevices) {
  *piNumDevices = static_cast<uint32_t>(Number("cameras"));
  return GC_ERR_SUCCESS;
}
GC_API IFGetDeviceID(IF_HANDLE, uint32_t iIndex, char *sIDeviceID, size_t *piSize) {
  INFO_DATATYPE type = 0;
  return AnswerText("Channel #" + std::to_string(iIndex + 1), &type, sIDeviceID, piSize);
}
GC_API IFUpdateDeviceList(IF_HANDLE, bool8_t *, uint64_t) { return Enter("IFUpdateDeviceList"); }
GC_API IFGetDeviceInfo(IF_HANDLE, const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                       size_t *piSize) {
  if (iInfoCmd == DEVICE_INFO_ACCESS_STATUS) {
    const int32_t status = Number("busy") == 1 ? DEVICE_ACCESS_STATUS_NOACCESS : DEVICE_ACCESS_STATUS_READWRITE;
    return AnswerNumber(INFO_DATATYPE_INT32, status, piType, pBuffer, piSize);
  }
  return AnswerText(iInfoCmd == DEVICE_INFO_DISPLAYNAME ? std::string("Camera on ") + sDeviceID : "Fake", piType,
                    pBuffer, piSize);
}
GC_API IFOpenDevice(IF_HANDLE, const char *sDeviceID, DEVICE_ACCESS_FLAGS, DEV_HANDLE *phDevice) {
  if (Number("busy") == 2) {
    return Fail(GC_ERR_RESOURCE_IN_USE, "somebody has it");
  }
  Log(sDeviceID);
  *phDevice = &g_device;
  return Enter("IFOpenDevice");
}

GC_API DevGetPort(DEV_HANDLE, PORT_HANDLE *phRemoteDevice) {
  *phRemoteDevice = &g_device;
  return GC_ERR_SUCCESS;
}
GC_API DevGetNumDataStreams(DEV_HANDLE, uint32_t *piNumDataStreams) {
  *piNumDataStreams = 1;
  return GC_ERR_SUCCESS;
}
GC_API DevGetDataStreamID(DEV_HANDLE, uint32_t, char *sDataStreamID, size_t *piSize) {
  INFO_DATATYPE type = 0;
  return AnswerText("Stream #1", &type, sDataStreamID, piSize);
}
GC_API DevOpenDataStream(DEV_HANDLE, const char *, DS_HANDLE *phDataStream) {
  *phDataStream = &g_stream;
  return Enter("DevOpenDataStream");
}
GC_API DevGetInfo(DEV_HANDLE, DEVICE_INFO_CMD, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  return AnswerText("CXP", piType, pBuffer, piSize);
}
GC_API DevClose(DEV_HANDLE) { return Enter("DevClose"); }

GC_API DSAnnounceBuffer(DS_HANDLE, void *pBuffer, size_t iSize, void *, BUFFER_HANDLE *phBuffer) {
  const GC_ERROR result = Enter("DSAnnounceBuffer");
  if (result == GC_ERR_SUCCESS) {
    ++g_state.announced;
    *phBuffer = new Buffer{static_cast<unsigned char *>(pBuffer), iSize, 0};
  }
  return result;
}
GC_API DSFlushQueue(DS_HANDLE, ACQ_QUEUE_TYPE) {
  g_state.input.clear();
  return Enter("DSFlushQueue");
}
GC_API DSStartAcquisition(DS_HANDLE, ACQ_START_FLAGS, uint64_t iNumToAcquire) {
  g_state.framesOfRun = iNumToAcquire;
  return Enter("DSStartAcquisition");
}
GC_API DSStopAcquisition(DS_HANDLE, ACQ_STOP_FLAGS) {
  g_state.framesOfRun = 0;
  return Enter("DSStopAcquisition");
}
GC_API DSGetInfo(DS_HANDLE, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) {
  if (iInfoCmd == STREAM_INFO_PAYLOAD_SIZE) {
    return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, Payload(), piType, pBuffer, piSize);
  }
  return Fail(GC_ERR_NOT_IMPLEMENTED, "not told");
}
GC_API DSClose(DS_HANDLE) { return Enter("DSClose"); }
GC_API DSRevokeBuffer(DS_HANDLE, BUFFER_HANDLE hBuffer, void **, void **) {
  --g_state.announced;
  delete static_cast<Buffer *>(hBuffer);
  return Enter("DSRevokeBuffer");
}
GC_API DSQueueBuffer(DS_HANDLE, BUFFER_HANDLE hBuffer) {
  g_state.input.push_back(static_cast<Buffer *>(hBuffer));
  return g_state.words.at("fail") == "DSQueueBuffer" ? Fail(GC_ERR_IO, "told to fail") : GC_ERR_SUCCESS;
}
GC_API DSGetBufferInfo(DS_HANDLE, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                       size_t *piSize) {
  const Buffer &buffer = *static_cast<Buffer *>(hBuffer);
  switch (iInfoCmd) {
    case BUFFER_INFO_BASE:
      return AnswerNumber<void *>(INFO_DATATYPE_PTR, buffer.pMemory, piType, pBuffer, piSize);
    case BUFFER_INFO_SIZE:
      return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, buffer.size, piType, pBuffer, piSize);
    case BUFFER_INFO_SIZE_FILLED:
      return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, Payload(), piType, pBuffer, piSize);
    case BUFFER_INFO_WIDTH:
      return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, Number("width"), piType, pBuffer, piSize);
    case BUFFER_INFO_HEIGHT:
      return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, Number("height"), piType, pBuffer, piSize);
    case BUFFER_INFO_PIXELFORMAT:
      return AnswerNumber<uint64_t>(INFO_DATATYPE_UINT64, Number("format"), piType, pBuffer, piSize);
    case BUFFER_INFO_FRAMEID:
      return AnswerNumber<uint64_t>(INFO_DATATYPE_UINT64, buffer.frameId, piType, pBuffer, piSize);
    case BUFFER_INFO_IS_INCOMPLETE:
      return AnswerNumber<bool8_t>(INFO_DATATYPE_BOOL8, buffer.frameId <= Number("incomplete"), piType, pBuffer,
                                   piSize);
    case BUFFER_INFO_XPADDING:
      if (Number("tellpadding") != 0) {
        return AnswerNumber<size_t>(INFO_DATATYPE_SIZET, Number("padding"), piType, pBuffer, piSize);
      }
      break;
    default:
      break;
  }
  return Fail(GC_ERR_NOT_IMPLEMENTED, "not told");
}

}  // namespace Client
}  // namespace GenICam
}
