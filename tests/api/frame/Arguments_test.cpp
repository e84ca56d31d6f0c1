// SPDX-License-Identifier: MIT
/// @file
/// Null pointers and sizes of zero in every function, and the order in which they are looked at.
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

/// A call with bad arguments. Where more than one is bad, the text tells which is looked at first.
struct ArgumentRow {
  const char *function;
  const char *bad;  ///< what is bad, in the order of the arguments
  const char *message;
  GC_ERROR (*call)(const Functions &gc, const Tree &tree);
};
std::ostream &operator<<(std::ostream &out, const ArgumentRow &row) { return out << row.function << ' ' << row.bad; }

INFO_DATATYPE g_iType = 0;
char g_Buffer[64];
size_t g_iZero = 0;
size_t g_iSize = sizeof(g_Buffer);
void *g_pHandle = nullptr;

size_t *Zero() {
  g_iZero = 0;
  return &g_iZero;
}
size_t *Some() {
  g_iSize = sizeof(g_Buffer);
  return &g_iSize;
}

constexpr const char *kType = "Null type pointer.";
constexpr const char *kPointerForType = "Null pointer for Type";
constexpr const char *kSize = "Null size pointer.";
constexpr const char *kRoom = "Size of buffer cannot be null.";

using F = const Functions &;
using T = const Tree &;

/// The three checks of an info function, each with all behind it bad as well.
#define LUMIVEX_INFO_ROWS(function, typeText, ...)                                                                 \
  {#function, "AllNull", typeText, [](F gc, T t) { return gc.function(__VA_ARGS__, nullptr, nullptr, nullptr); }}, \
      {#function, "TypeAndRoom", typeText,                                                                         \
       [](F gc, T t) { return gc.function(__VA_ARGS__, nullptr, g_Buffer, Zero()); }},                             \
      {#function, "Size", kSize, [](F gc, T t) { return gc.function(__VA_ARGS__, &g_iType, g_Buffer, nullptr); }}, \
      {#function, "SizeWithoutBuffer", kSize,                                                                      \
       [](F gc, T t) { return gc.function(__VA_ARGS__, &g_iType, nullptr, nullptr); }},                            \
  {                                                                                                                \
#function, "Room", kRoom, [](F gc, T t) { return gc.function(__VA_ARGS__, &g_iType, g_Buffer, Zero()); }       \
  }

const ArgumentRow kRows[] = {
    // The commands are bad too: they are looked at behind the pointers.
    {"GCGetInfo", "AllNull", kType, [](F gc, T) { return gc.GCGetInfo(77, nullptr, nullptr, nullptr); }},
    {"GCGetInfo", "TypeAndRoom", kType, [](F gc, T) { return gc.GCGetInfo(77, nullptr, g_Buffer, Zero()); }},
    {"GCGetInfo", "Size", kSize, [](F gc, T) { return gc.GCGetInfo(77, &g_iType, g_Buffer, nullptr); }},
    {"GCGetInfo", "Room", kRoom, [](F gc, T) { return gc.GCGetInfo(77, &g_iType, g_Buffer, Zero()); }},
    LUMIVEX_INFO_ROWS(TLGetInfo, kType, t.system, 77),
    LUMIVEX_INFO_ROWS(TLGetInfo, kType, t.system, TL_INFO_ID),
    LUMIVEX_INFO_ROWS(IFGetInfo, kType, t.iface, 77),
    LUMIVEX_INFO_ROWS(IFGetDeviceInfo, kType, t.iface, nullptr, 77),
    LUMIVEX_INFO_ROWS(DevGetInfo, kType, t.device, 77),
    LUMIVEX_INFO_ROWS(DSGetInfo, kType, t.stream, 77),
    LUMIVEX_INFO_ROWS(DSGetBufferInfo, kType, t.stream, nullptr, 77),
    LUMIVEX_INFO_ROWS(EventGetInfo, kType, t.errorEvent, 77),
    LUMIVEX_INFO_ROWS(EventGetInfo, kType, t.newBufferEvent, 77),
    LUMIVEX_INFO_ROWS(GCGetPortInfo, kPointerForType, t.system, 77),
    LUMIVEX_INFO_ROWS(GCGetPortInfo, kPointerForType, t.remote, 77),
    LUMIVEX_INFO_ROWS(GCGetPortURLInfo, kPointerForType, t.iface, 7, 77),
    LUMIVEX_INFO_ROWS(GCGetPortURLInfo, kPointerForType, t.remote, 7, 77),
    LUMIVEX_INFO_ROWS(TLGetInterfaceInfo, kType, t.system, "no such id", 77),
    {"TLGetInterfaceInfo", "AllNull", "Null pointer for Interface name.",
     [](F gc, T t) { return gc.TLGetInterfaceInfo(t.system, nullptr, 77, nullptr, nullptr, nullptr); }},
    {"TLGetInterfaceInfo", "NameAlone", "Null pointer for Interface name.",
     [](F gc, T t) { return gc.TLGetInterfaceInfo(t.system, nullptr, 0, &g_iType, g_Buffer, Some()); }},
    {"EventGetDataInfo", "AllNull", kType,
     [](F gc, T t) { return gc.EventGetDataInfo(t.errorEvent, nullptr, 0, 77, nullptr, nullptr, nullptr); }},
    {"EventGetDataInfo", "TypeAndData", kType,
     [](F gc, T t) { return gc.EventGetDataInfo(t.errorEvent, nullptr, 8, 0, nullptr, g_Buffer, Some()); }},
    {"EventGetDataInfo", "SizeAndData", kSize,
     [](F gc, T t) { return gc.EventGetDataInfo(t.errorEvent, nullptr, 8, 0, &g_iType, g_Buffer, nullptr); }},
    {"EventGetDataInfo", "RoomAndData", kRoom,
     [](F gc, T t) { return gc.EventGetDataInfo(t.errorEvent, nullptr, 8, 0, &g_iType, g_Buffer, Zero()); }},
    {"EventGetDataInfo", "Data", "Null pointer for event data.",
     [](F gc, T t) { return gc.EventGetDataInfo(t.errorEvent, nullptr, 8, 77, &g_iType, g_Buffer, Some()); }},
    {"EventGetDataInfo", "DataWithoutBuffer", "Null pointer for event data.",
     [](F gc, T t) { return gc.EventGetDataInfo(t.newBufferEvent, nullptr, 8, 0, &g_iType, nullptr, Zero()); }},
    {"EventGetData", "Size", kSize, [](F gc, T t) { return gc.EventGetData(t.errorEvent, g_Buffer, nullptr, 0); }},
    {"EventGetData", "Both", kSize, [](F gc, T t) { return gc.EventGetData(t.newBufferEvent, nullptr, nullptr, 0); }},
    {"EventGetData", "Room", kRoom, [](F gc, T t) { return gc.EventGetData(t.errorEvent, g_Buffer, Zero(), 0); }},
    {"GCReadPort", "Size", kSize, [](F gc, T t) { return gc.GCReadPort(t.system, 1, g_Buffer, nullptr); }},
    {"GCReadPort", "Both", kSize, [](F gc, T t) { return gc.GCReadPort(t.remote, 0, nullptr, nullptr); }},
    {"GCReadPort", "Room", kRoom, [](F gc, T t) { return gc.GCReadPort(t.system, 1, g_Buffer, Zero()); }},
    {"GCReadPort", "RoomOfTheCamera", kRoom, [](F gc, T t) { return gc.GCReadPort(t.remote, 8, g_Buffer, Zero()); }},
    {"GCWritePort", "Size", kSize, [](F gc, T t) { return gc.GCWritePort(t.system, 1, g_Buffer, nullptr); }},
    {"GCWritePort", "Both", kSize, [](F gc, T t) { return gc.GCWritePort(t.device, 0, nullptr, nullptr); }},
    {"GCWritePort", "Room", kRoom, [](F gc, T t) { return gc.GCWritePort(t.stream, 1, g_Buffer, Zero()); }},
    {"GCGetPortURL", "Both", kSize, [](F gc, T t) { return gc.GCGetPortURL(t.system, nullptr, nullptr); }},
    {"GCGetPortURL", "Size", kSize, [](F gc, T t) { return gc.GCGetPortURL(t.remote, g_Buffer, nullptr); }},
    {"GCGetPortURL", "Room", "Size of URL cannot be null.",
     [](F gc, T t) { return gc.GCGetPortURL(t.system, g_Buffer, Zero()); }},
    {"GCGetNumPortURLs", "Count", "Null pointer for iNumURLs.",
     [](F gc, T t) { return gc.GCGetNumPortURLs(t.system, nullptr); }},
    {"GCGetNumPortURLs", "CountOfTheCamera", "Null pointer for iNumURLs.",
     [](F gc, T t) { return gc.GCGetNumPortURLs(t.remote, nullptr); }},
    {"GCReadPortStacked", "Both", "Null PORT_REGISTER_STACK_ENTRY pointer.",
     [](F gc, T t) { return gc.GCReadPortStacked(t.system, nullptr, nullptr); }},
    {"GCReadPortStacked", "Entries", "Null PORT_REGISTER_STACK_ENTRY pointer.",
     [](F gc, T t) { return gc.GCReadPortStacked(t.system, nullptr, Some()); }},
    {"GCReadPortStacked", "Count", "Null pointer for 'number of entries' argument.",
     [](F gc, T t) {
       PORT_REGISTER_STACK_ENTRY entry = {};
       return gc.GCReadPortStacked(t.system, &entry, nullptr);
     }},
    {"GCWritePortStacked", "Both", "Null PORT_REGISTER_STACK_ENTRY pointer.",
     [](F gc, T t) { return gc.GCWritePortStacked(t.iface, nullptr, nullptr); }},
    {"GCWritePortStacked", "Count", "Null pointer for 'number of entries' argument.",
     [](F gc, T t) {
       PORT_REGISTER_STACK_ENTRY entry = {};
       return gc.GCWritePortStacked(t.iface, &entry, nullptr);
     }},
    // The id would be refused as not implemented: the pointer is looked at first.
    {"GCRegisterEvent", "Handle", "Null pointer for EVENT_HANDLE",
     [](F gc, T t) { return gc.GCRegisterEvent(t.system, 77, nullptr); }},
    {"GCRegisterEvent", "HandleOfADevice", "Null pointer for EVENT_HANDLE",
     [](F gc, T t) { return gc.GCRegisterEvent(t.device, EVENT_ERROR, nullptr); }},
    {"TLGetNumInterfaces", "Count", "Null pointer for number of interface.",
     [](F gc, T t) { return gc.TLGetNumInterfaces(t.system, nullptr); }},
    {"TLGetInterfaceID", "Both", kSize, [](F gc, T t) { return gc.TLGetInterfaceID(t.system, 77, nullptr, nullptr); }},
    {"TLGetInterfaceID", "Room", kRoom, [](F gc, T t) { return gc.TLGetInterfaceID(t.system, 77, g_Buffer, Zero()); }},
    {"TLOpenInterface", "Both", "Null pointer for Interface name.",
     [](F gc, T t) { return gc.TLOpenInterface(t.system, nullptr, nullptr); }},
    {"TLOpenInterface", "Name", "Null pointer for Interface name.",
     [](F gc, T t) { return gc.TLOpenInterface(t.system, nullptr, &g_pHandle); }},
    {"TLOpenInterface", "Handle", "Null IF_HANDLE pointer.",
     [](F gc, T t) { return gc.TLOpenInterface(t.system, "no such id", nullptr); }},
    {"IFGetNumDevices", "Count", "Null pointer for 'number of device' variable",
     [](F gc, T t) { return gc.IFGetNumDevices(t.iface, nullptr); }},
    {"IFGetDeviceID", "Both", kSize, [](F gc, T t) { return gc.IFGetDeviceID(t.iface, 77, nullptr, nullptr); }},
    {"IFGetDeviceID", "Room", kRoom, [](F gc, T t) { return gc.IFGetDeviceID(t.iface, 77, g_Buffer, Zero()); }},
    {"IFGetDeviceInfo", "NameBehindTheOthers", "Null pointer for Child's name.",
     [](F gc, T t) { return gc.IFGetDeviceInfo(t.iface, nullptr, 0, &g_iType, g_Buffer, Some()); }},
    {"IFOpenDevice", "AllBad", "Null pointer for Device name.",
     [](F gc, T t) { return gc.IFOpenDevice(t.iface, nullptr, DEVICE_ACCESS_NONE, nullptr); }},
    {"IFOpenDevice", "HandleAndFlags", "Null DEV_HANDLE pointer.",
     [](F gc, T t) { return gc.IFOpenDevice(t.iface, "no such id", DEVICE_ACCESS_NONE, nullptr); }},
    {"IFOpenDevice", "FlagsAheadOfTheName", "Invalid DEVICE_ACCESS_FLAGS.",
     [](F gc, T t) { return gc.IFOpenDevice(t.iface, "no such id", DEVICE_ACCESS_NONE, &g_pHandle); }},
    {"DevGetPort", "Handle", "Null pointer for Port handle",
     [](F gc, T t) { return gc.DevGetPort(t.device, nullptr); }},
    {"DevGetNumDataStreams", "Count", "Null pointer for 'number of channels' variable",
     [](F gc, T t) { return gc.DevGetNumDataStreams(t.device, nullptr); }},
    {"DevGetDataStreamID", "Both", kSize,
     [](F gc, T t) { return gc.DevGetDataStreamID(t.device, 77, nullptr, nullptr); }},
    {"DevGetDataStreamID", "Room", kRoom,
     [](F gc, T t) { return gc.DevGetDataStreamID(t.device, 77, g_Buffer, Zero()); }},
    {"DevOpenDataStream", "Both", "Null DS_HANDLE pointer.",
     [](F gc, T t) { return gc.DevOpenDataStream(t.device, nullptr, nullptr); }},
    {"DevOpenDataStream", "Name", "Null pointer for Stream ID",
     [](F gc, T t) { return gc.DevOpenDataStream(t.device, nullptr, &g_pHandle); }},
    {"DSAnnounceBuffer", "AllBad", "Invalid Memory Buffer.",
     [](F gc, T t) { return gc.DSAnnounceBuffer(t.stream, nullptr, 0, nullptr, nullptr); }},
    {"DSAnnounceBuffer", "HandleAndSize", "Invalid Buffer Handle.",
     [](F gc, T t) { return gc.DSAnnounceBuffer(t.stream, g_Buffer, 0, nullptr, nullptr); }},
    {"DSAnnounceBuffer", "Size", kRoom,
     [](F gc, T t) { return gc.DSAnnounceBuffer(t.stream, g_Buffer, 0, nullptr, &g_pHandle); }},
    {"DSAllocAndAnnounceBuffer", "Both", "Invalid Buffer Handle.",
     [](F gc, T t) { return gc.DSAllocAndAnnounceBuffer(t.stream, 0, nullptr, nullptr); }},
    {"DSAllocAndAnnounceBuffer", "Size", kRoom,
     [](F gc, T t) { return gc.DSAllocAndAnnounceBuffer(t.stream, 0, nullptr, &g_pHandle); }},
    {"DSGetBufferID", "Handle", "Null BUFFER_HANDLE pointer.",
     [](F gc, T t) { return gc.DSGetBufferID(t.stream, 77, nullptr); }},
    {"DSStartAcquisition", "Frames", "Number of frames to acquire must be at least one.",
     [](F gc, T t) { return gc.DSStartAcquisition(t.stream, 77, 0); }},
};

class BadArgument : public TreeTest, public testing::WithParamInterface<ArgumentRow> {};

TEST_P(BadArgument, FailsAndReachesNoHardware) {
  const size_t mark = Script().Mark();
  g_iType = -77;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, GetParam().message, GetParam().call(Gc(), m_Tree));
  EXPECT_EQ(-77, g_iType);
  EXPECT_EQ(0U, g_iZero);
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

std::string NameOfRow(const testing::TestParamInfo<ArgumentRow> &row) {
  return std::string(row.param.function) + "_" + row.param.bad + "_" + std::to_string(row.index);
}

INSTANTIATE_TEST_SUITE_P(Exports, BadArgument, testing::ValuesIn(kRows), NameOfRow);

/// The checks of the frame name the exported function; what a module says names the module's.
TEST_F(TreeTest, FrameChecksNameTheExportedFunction) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, kSize, "GenICam::Client::GCReadPort",
                 Gc().GCReadPort(m_Tree.system, 0, g_Buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, kRoom, "GenICam::Client::GCWritePort",
                 Gc().GCWritePort(m_Tree.system, 0, g_Buffer, &size));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, kType, "GenICam::Client::TLGetInfo",
                 Gc().TLGetInfo(m_Tree.system, 0, nullptr, nullptr, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, kSize, "GenICam::Client::IFGetInfo",
                 Gc().IFGetInfo(m_Tree.iface, 0, &type, nullptr, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for EVENT_HANDLE", "GenICam::Client::GCRegisterEvent",
                 Gc().GCRegisterEvent(m_Tree.system, 0, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null DEV_HANDLE pointer.", "GenICam::Client::IFOpenDevice",
                 Gc().IFOpenDevice(m_Tree.iface, "x", 4, nullptr));
}

/// Null outputs that are allowed.
TEST_F(TreeTest, NullOutputsThatAreAllowed) {
  EXPECT_GC_OK(Gc().TLUpdateInterfaceList(m_Tree.system, nullptr, 0));
  EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_Tree.iface, nullptr, 0));
  BUFFER_HANDLE buffer = nullptr;
  ASSERT_GC_OK(Gc().DSAllocAndAnnounceBuffer(m_Tree.stream, 64, nullptr, &buffer));
  EXPECT_GC_OK(Gc().DSRevokeBuffer(m_Tree.stream, buffer, nullptr, nullptr));
}

// ---------------------------------------------------------------------------------------------------------------------
// Sizes of text and number answers
// ---------------------------------------------------------------------------------------------------------------------

struct AnswerRow {
  const char *name;
  INFO_DATATYPE type;  ///< Info::kUntouchedType: the function has none
  GC_ERROR (*call)(const Functions &gc, const Tree &tree, INFO_DATATYPE *type, void *buffer, size_t *size);
  const char *marshaller = "SetReturnParam";  ///< whom a failure names
};
std::ostream &operator<<(std::ostream &out, const AnswerRow &row) { return out << row.name; }

constexpr INFO_DATATYPE kNone = Info::kUntouchedType;

const AnswerRow kAnswers[] = {
    {"GCGetInfo", 1, [](F gc, T, auto *y, void *b, size_t *s) { return gc.GCGetInfo(TL_INFO_MODEL, y, b, s); }},
    {"TLGetInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.TLGetInfo(t.system, TL_INFO_MODEL, y, b, s); }},
    {"TLGetInfoId", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.TLGetInfo(t.system, TL_INFO_ID, y, b, s); }},
    {"TLGetInterfaceID", kNone,
     [](F gc, T t, auto *, void *b, size_t *s) { return gc.TLGetInterfaceID(t.system, 0, static_cast<char *>(b), s); }},
    {"TLGetInterfaceInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.TLGetInterfaceInfo(t.system, CScriptedGrb::kDefaultInterfaceId, INTERFACE_INFO_DISPLAYNAME, y, b, s);
     }},
    {"IFGetInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.IFGetInfo(t.iface, INTERFACE_INFO_ID, y, b, s); }},
    {"IFGetDeviceID", kNone,
     [](F gc, T t, auto *, void *b, size_t *s) { return gc.IFGetDeviceID(t.iface, 0, static_cast<char *>(b), s); }},
    {"IFGetDeviceInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.IFGetDeviceInfo(t.iface, "Channel #1", DEVICE_INFO_MODEL, y, b, s);
     }},
    {"IFGetDeviceInfoStatus", 5,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.IFGetDeviceInfo(t.iface, "Channel #1", DEVICE_INFO_ACCESS_STATUS, y, b, s);
     }},
    {"DevGetInfo", 5,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.DevGetInfo(t.device, DEVICE_INFO_ACCESS_STATUS, y, b, s);
     }},
    {"DevGetDataStreamID", kNone,
     [](F gc, T t, auto *, void *b, size_t *s) {
       return gc.DevGetDataStreamID(t.device, 0, static_cast<char *>(b), s);
     }},
    {"DSGetInfo", 12,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.DSGetInfo(t.stream, STREAM_INFO_NUM_QUEUED, y, b, s); },
     "SetReturnParamSize_t"},
    {"DSGetInfoUint64", 8,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.DSGetInfo(t.stream, STREAM_INFO_NUM_DELIVERED, y, b, s); }},
    {"DSGetBufferInfo", 12,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.DSGetBufferInfo(t.stream, t.buffer, BUFFER_INFO_SIZE, y, b, s);
     },
     "SetReturnParamSize_t"},
    {"GCGetPortInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.GCGetPortInfo(t.iface, PORT_INFO_MODULE, y, b, s); }},
    {"GCGetPortURLInfo", 1,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.GCGetPortURLInfo(t.iface, 0, URL_INFO_URL, y, b, s); }},
    {"GCGetPortURLInfoNumber", 5,
     [](F gc, T t, auto *y, void *b, size_t *s) {
       return gc.GCGetPortURLInfo(t.system, 0, URL_INFO_FILE_VER_MAJOR, y, b, s);
     }},
    {"EventGetInfo", 5,
     [](F gc, T t, auto *y, void *b, size_t *s) { return gc.EventGetInfo(t.errorEvent, EVENT_EVENT_TYPE, y, b, s); }},
};

class AnswerSize : public TreeTest, public testing::WithParamInterface<AnswerRow> {
 protected:
  size_t Needed() {
    size_t size = 0;
    EXPECT_GC_OK(GetParam().call(Gc(), m_Tree, &m_iType, nullptr, &size));
    return size;
  }
  INFO_DATATYPE m_iType = kNone;
};

TEST_P(AnswerSize, NullBufferWithAnySizeAsks) {
  const size_t needed = Needed();
  EXPECT_GT(needed, 0U);
  EXPECT_EQ(GetParam().type, m_iType);
  size_t size = 12345;
  EXPECT_GC_OK(GetParam().call(Gc(), m_Tree, &m_iType, nullptr, &size));
  EXPECT_EQ(needed, size);
}

TEST_P(AnswerSize, ExactAndLargerFit) {
  const size_t needed = Needed();
  for (const size_t room : {needed, needed + 1, needed + 100}) {
    std::vector<uint8_t> buffer(room + 1, 0xEE);
    size_t size = room;
    EXPECT_GC_OK(GetParam().call(Gc(), m_Tree, &m_iType, buffer.data(), &size));
    EXPECT_EQ(needed, size);
    EXPECT_EQ(0xEE, buffer[needed]) << "written beyond the answer";
  }
}

TEST_P(AnswerSize, OneByteTooFewFailsWithTheTypeAndWithoutTheNeed) {
  const size_t needed = Needed();
  std::vector<uint8_t> buffer(needed, 0xEE);
  size_t size = needed - 1;
  m_iType = kNone;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Exported(GetParam().marshaller).c_str(),
                 GetParam().call(Gc(), m_Tree, &m_iType, buffer.data(), &size));
  EXPECT_EQ(needed - 1, size);
  EXPECT_EQ(GetParam().type, m_iType);
  EXPECT_EQ(std::vector<uint8_t>(needed, 0xEE), buffer);
}

INSTANTIATE_TEST_SUITE_P(Functions, AnswerSize, testing::ValuesIn(kAnswers),
                         [](const testing::TestParamInfo<AnswerRow> &row) { return std::string(row.param.name); });

}  // namespace
