// SPDX-License-Identifier: MIT
/// @file
/// The header of the interface against its published numbers. The other tests speak in the header's own names and would
/// agree with a wrong value.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "GenTL.h"
#include "Producer.h"

using namespace GenICam::Client;

namespace {

struct ValueRow {
  const char *name;
  int32_t inHeader;
  int32_t published;
};

#define ROW(name, published) \
  { #name, name, published }
constexpr ValueRow kValues[] = {
    // GC_ERROR
    ROW(GC_ERR_SUCCESS, 0),
    ROW(GC_ERR_ERROR, -1001),
    ROW(GC_ERR_NOT_INITIALIZED, -1002),
    ROW(GC_ERR_NOT_IMPLEMENTED, -1003),
    ROW(GC_ERR_RESOURCE_IN_USE, -1004),
    ROW(GC_ERR_ACCESS_DENIED, -1005),
    ROW(GC_ERR_INVALID_HANDLE, -1006),
    ROW(GC_ERR_INVALID_ID, -1007),
    ROW(GC_ERR_NO_DATA, -1008),
    ROW(GC_ERR_INVALID_PARAMETER, -1009),
    ROW(GC_ERR_IO, -1010),
    ROW(GC_ERR_TIMEOUT, -1011),
    ROW(GC_ERR_ABORT, -1012),
    ROW(GC_ERR_INVALID_BUFFER, -1013),
    ROW(GC_ERR_NOT_AVAILABLE, -1014),
    ROW(GC_ERR_INVALID_ADDRESS, -1015),
    ROW(GC_ERR_CUSTOM_ID, -10000),
    // INFO_DATATYPE
    ROW(INFO_DATATYPE_UNKNOWN, 0),
    ROW(INFO_DATATYPE_STRING, 1),
    ROW(INFO_DATATYPE_STRINGLIST, 2),
    ROW(INFO_DATATYPE_INT16, 3),
    ROW(INFO_DATATYPE_UINT16, 4),
    ROW(INFO_DATATYPE_INT32, 5),
    ROW(INFO_DATATYPE_UINT32, 6),
    ROW(INFO_DATATYPE_INT64, 7),
    ROW(INFO_DATATYPE_UINT64, 8),
    ROW(INFO_DATATYPE_FLOAT64, 9),
    ROW(INFO_DATATYPE_PTR, 10),
    ROW(INFO_DATATYPE_BOOL8, 11),
    ROW(INFO_DATATYPE_SIZET, 12),
    ROW(INFO_DATATYPE_BUFFER, 13),
    ROW(INFO_DATATYPE_PTRDIFF, 14),
    ROW(INFO_DATATYPE_CUSTOM_ID, 1000),
    // TL_INFO_CMD
    ROW(TL_INFO_ID, 0),
    ROW(TL_INFO_VENDOR, 1),
    ROW(TL_INFO_MODEL, 2),
    ROW(TL_INFO_VERSION, 3),
    ROW(TL_INFO_TLTYPE, 4),
    ROW(TL_INFO_NAME, 5),
    ROW(TL_INFO_PATHNAME, 6),
    ROW(TL_INFO_DISPLAYNAME, 7),
    ROW(TL_INFO_CUSTOM_ID, 1000),
    // INTERFACE_INFO_CMD
    ROW(INTERFACE_INFO_ID, 0),
    ROW(INTERFACE_INFO_DISPLAYNAME, 1),
    ROW(INTERFACE_INFO_TLTYPE, 2),
    ROW(INTERFACE_INFO_CUSTOM_ID, 1000),
    // DEVICE_ACCESS_FLAGS
    ROW(DEVICE_ACCESS_UNKNOWN, 0),
    ROW(DEVICE_ACCESS_NONE, 1),
    ROW(DEVICE_ACCESS_READONLY, 2),
    ROW(DEVICE_ACCESS_CONTROL, 3),
    ROW(DEVICE_ACCESS_EXCLUSIVE, 4),
    ROW(DEVICE_ACCESS_CUSTOM_ID, 1000),
    // DEVICE_ACCESS_STATUS
    ROW(DEVICE_ACCESS_STATUS_UNKNOWN, 0),
    ROW(DEVICE_ACCESS_STATUS_READWRITE, 1),
    ROW(DEVICE_ACCESS_STATUS_READONLY, 2),
    ROW(DEVICE_ACCESS_STATUS_NOACCESS, 3),
    ROW(DEVICE_ACCESS_STATUS_CUSTOM_ID, 1000),
    // DEVICE_INFO_CMD
    ROW(DEVICE_INFO_ID, 0),
    ROW(DEVICE_INFO_VENDOR, 1),
    ROW(DEVICE_INFO_MODEL, 2),
    ROW(DEVICE_INFO_TLTYPE, 3),
    ROW(DEVICE_INFO_DISPLAYNAME, 4),
    ROW(DEVICE_INFO_ACCESS_STATUS, 5),
    ROW(DEVICE_INFO_CUSTOM_ID, 1000),
    // ACQ_STOP_FLAGS
    ROW(ACQ_STOP_FLAGS_DEFAULT, 0),
    ROW(ACQ_STOP_FLAGS_KILL, 1),
    ROW(ACQ_STOP_FLAGS_CUSTOM_ID, 1000),
    // ACQ_START_FLAGS
    ROW(ACQ_START_FLAGS_DEFAULT, 0),
    ROW(ACQ_START_FLAGS_CUSTOM_ID, 1000),
    // ACQ_QUEUE_TYPE
    ROW(ACQ_QUEUE_INPUT_TO_OUTPUT, 0),
    ROW(ACQ_QUEUE_OUTPUT_DISCARD, 1),
    ROW(ACQ_QUEUE_ALL_TO_INPUT, 2),
    ROW(ACQ_QUEUE_UNQUEUED_TO_INPUT, 3),
    ROW(ACQ_QUEUE_ALL_DISCARD, 4),
    ROW(ACQ_QUEUE_CUSTOM_ID, 1000),
    // STREAM_INFO_CMD
    ROW(STREAM_INFO_ID, 0),
    ROW(STREAM_INFO_NUM_DELIVERED, 1),
    ROW(STREAM_INFO_NUM_UNDERRUN, 2),
    ROW(STREAM_INFO_NUM_ANNOUNCED, 3),
    ROW(STREAM_INFO_NUM_QUEUED, 4),
    ROW(STREAM_INFO_NUM_AWAIT_DELIVERY, 5),
    ROW(STREAM_INFO_NUM_STARTED, 6),
    ROW(STREAM_INFO_PAYLOAD_SIZE, 7),
    ROW(STREAM_INFO_IS_GRABBING, 8),
    ROW(STREAM_INFO_DEFINES_PAYLOADSIZE, 9),
    ROW(STREAM_INFO_TLTYPE, 10),
    ROW(STREAM_INFO_NUM_CHUNKS_MAX, 11),
    ROW(STREAM_INFO_BUF_ANNOUNCE_MIN, 12),
    ROW(STREAM_INFO_BUF_ALIGNMENT, 13),
    ROW(STREAM_INFO_CUSTOM_ID, 1000),
    // BUFFER_INFO_CMD
    ROW(BUFFER_INFO_BASE, 0),
    ROW(BUFFER_INFO_SIZE, 1),
    ROW(BUFFER_INFO_USER_PTR, 2),
    ROW(BUFFER_INFO_TIMESTAMP, 3),
    ROW(BUFFER_INFO_NEW_DATA, 4),
    ROW(BUFFER_INFO_IS_QUEUED, 5),
    ROW(BUFFER_INFO_IS_ACQUIRING, 6),
    ROW(BUFFER_INFO_IS_INCOMPLETE, 7),
    ROW(BUFFER_INFO_TLTYPE, 8),
    ROW(BUFFER_INFO_SIZE_FILLED, 9),
    ROW(BUFFER_INFO_WIDTH, 10),
    ROW(BUFFER_INFO_HEIGHT, 11),
    ROW(BUFFER_INFO_XOFFSET, 12),
    ROW(BUFFER_INFO_YOFFSET, 13),
    ROW(BUFFER_INFO_XPADDING, 14),
    ROW(BUFFER_INFO_YPADDING, 15),
    ROW(BUFFER_INFO_FRAMEID, 16),
    ROW(BUFFER_INFO_IMAGEPRESENT, 17),
    ROW(BUFFER_INFO_IMAGEOFFSET, 18),
    ROW(BUFFER_INFO_PAYLOADTYPE, 19),
    ROW(BUFFER_INFO_PIXELFORMAT, 20),
    ROW(BUFFER_INFO_PIXELFORMAT_NAMESPACE, 21),
    ROW(BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 22),
    ROW(BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, 23),
    ROW(BUFFER_INFO_CHUNKLAYOUTID, 24),
    ROW(BUFFER_INFO_FILENAME, 25),
    ROW(BUFFER_INFO_CUSTOM_ID, 1000),
    // PAYLOADTYPE_INFO_ID
    ROW(PAYLOAD_TYPE_UNKNOWN, 0),
    ROW(PAYLOAD_TYPE_IMAGE, 1),
    ROW(PAYLOAD_TYPE_RAW_DATA, 2),
    ROW(PAYLOAD_TYPE_FILE, 3),
    ROW(PAYLOAD_TYPE_CHUNK_DATA, 4),
    ROW(PAYLOAD_TYPE_CUSTOM_ID, 1000),
    // PIXELFORMAT_NAMESPACE_ID
    ROW(PIXELFORMAT_NAMESPACE_UNKNOWN, 0),
    ROW(PIXELFORMAT_NAMESPACE_GEV, 1),
    ROW(PIXELFORMAT_NAMESPACE_IIDC, 2),
    ROW(PIXELFORMAT_NAMESPACE_CUSTOM_ID, 1000),
    // PORT_INFO_CMD
    ROW(PORT_INFO_ID, 0),
    ROW(PORT_INFO_VENDOR, 1),
    ROW(PORT_INFO_MODEL, 2),
    ROW(PORT_INFO_TLTYPE, 3),
    ROW(PORT_INFO_MODULE, 4),
    ROW(PORT_INFO_LITTLE_ENDIAN, 5),
    ROW(PORT_INFO_BIG_ENDIAN, 6),
    ROW(PORT_INFO_ACCESS_READ, 7),
    ROW(PORT_INFO_ACCESS_WRITE, 8),
    ROW(PORT_INFO_ACCESS_NA, 9),
    ROW(PORT_INFO_ACCESS_NI, 10),
    ROW(PORT_INFO_VERSION, 11),
    ROW(PORT_INFO_PORTNAME, 12),
    ROW(PORT_INFO_CUSTOM_ID, 1000),
    // URL_INFO_CMD
    ROW(URL_INFO_URL, 0),
    ROW(URL_INFO_SCHEMA_VER_MAJOR, 1),
    ROW(URL_INFO_SCHEMA_VER_MINOR, 2),
    ROW(URL_INFO_FILE_VER_MAJOR, 3),
    ROW(URL_INFO_FILE_VER_MINOR, 4),
    ROW(URL_INFO_FILE_VER_SUBMINOR, 5),
    ROW(URL_INFO_CUSTOM_ID, 1000),
    // EVENT_TYPE
    ROW(EVENT_ERROR, 0),
    ROW(EVENT_NEW_BUFFER, 1),
    ROW(EVENT_FEATURE_INVALIDATE, 2),
    ROW(EVENT_FEATURE_CHANGE, 3),
    ROW(EVENT_REMOTE_DEVICE, 4),
    ROW(EVENT_CUSTOM_ID, 1000),
    // EVENT_INFO_CMD
    ROW(EVENT_EVENT_TYPE, 0),
    ROW(EVENT_NUM_IN_QUEUE, 1),
    ROW(EVENT_NUM_FIRED, 2),
    ROW(EVENT_SIZE_MAX, 3),
    ROW(EVENT_INFO_DATA_SIZE_MAX, 4),
    ROW(EVENT_INFO_CUSTOM_ID, 1000),
    // EVENT_DATA_INFO_CMD
    ROW(EVENT_DATA_ID, 0),
    ROW(EVENT_DATA_VALUE, 1),
    ROW(EVENT_DATA_NUMID, 2),
    ROW(EVENT_DATA_CUSTOM_ID, 1000),
};
#undef ROW

TEST(GenTLHeader, ValuesAreThePublishedOnes) {
  std::set<std::string> names;
  for (const ValueRow &row : kValues) {
    EXPECT_EQ(row.published, row.inHeader) << row.name;
    names.insert(row.name);
  }
  EXPECT_EQ(164U, names.size());
}

TEST(GenTLHeader, ConstantsAreThePublishedOnes) {
  EXPECT_EQ(1, GenTLMajorVersion);
  EXPECT_EQ(3, GenTLMinorVersion);
  EXPECT_EQ(UINT64_MAX, GENTL_INFINITE);
  EXPECT_EQ(nullptr, GENTL_INVALID_HANDLE);
}

// ---------------------------------------------------------------------------------------------------------------------
// Types: a wrong one keeps this file from being built
// ---------------------------------------------------------------------------------------------------------------------

template <class T>
constexpr bool kIsHandle = std::is_same_v<T, void *>;
static_assert(kIsHandle<TL_HANDLE> && kIsHandle<IF_HANDLE> && kIsHandle<DEV_HANDLE> && kIsHandle<DS_HANDLE>);
static_assert(kIsHandle<PORT_HANDLE> && kIsHandle<BUFFER_HANDLE> && kIsHandle<EVENTSRC_HANDLE> &&
              kIsHandle<EVENT_HANDLE>);
static_assert(std::is_same_v<bool8_t, bool> && sizeof(bool8_t) == 1);

/// A list and the type that carries its values: 32 bits with a sign both, so that custom ids fit.
template <class Type, class List>
constexpr bool kIsList = std::is_same_v<Type, int32_t> &&std::is_same_v<std::underlying_type_t<List>, int32_t>;
static_assert(kIsList<GC_ERROR, GC_ERROR_LIST>);
static_assert(kIsList<INFO_DATATYPE, INFO_DATATYPE_LIST>);
static_assert(kIsList<TL_INFO_CMD, TL_INFO_CMD_LIST>);
static_assert(kIsList<INTERFACE_INFO_CMD, INTERFACE_INFO_CMD_LIST>);
static_assert(kIsList<DEVICE_ACCESS_FLAGS, DEVICE_ACCESS_FLAGS_LIST>);
static_assert(kIsList<DEVICE_ACCESS_STATUS, DEVICE_ACCESS_STATUS_LIST>);
static_assert(kIsList<DEVICE_INFO_CMD, DEVICE_INFO_CMD_LIST>);
static_assert(kIsList<ACQ_STOP_FLAGS, ACQ_STOP_FLAGS_LIST>);
static_assert(kIsList<ACQ_START_FLAGS, ACQ_START_FLAGS_LIST>);
static_assert(kIsList<ACQ_QUEUE_TYPE, ACQ_QUEUE_TYPE_LIST>);
static_assert(kIsList<STREAM_INFO_CMD, STREAM_INFO_CMD_LIST>);
static_assert(kIsList<BUFFER_INFO_CMD, BUFFER_INFO_CMD_LIST>);
static_assert(kIsList<PORT_INFO_CMD, PORT_INFO_CMD_LIST>);
static_assert(kIsList<URL_INFO_CMD, URL_INFO_CMD_LIST>);
static_assert(kIsList<EVENT_TYPE, EVENT_TYPE_LIST>);
static_assert(kIsList<EVENT_INFO_CMD, EVENT_INFO_CMD_LIST>);
static_assert(kIsList<EVENT_DATA_INFO_CMD, EVENT_DATA_INFO_CMD_LIST>);
static_assert(kIsList<PAYLOADTYPE_INFO_ID, PAYLOADTYPE_INFO_IDS>);
static_assert(kIsList<PIXELFORMAT_NAMESPACE_ID, PIXELFORMAT_NAMESPACE_IDS>);

// The records have no padding, and no alignment either.
static_assert(sizeof(EVENT_NEW_BUFFER_DATA) == 16 && alignof(EVENT_NEW_BUFFER_DATA) == 1);
static_assert(offsetof(EVENT_NEW_BUFFER_DATA, BufferHandle) == 0 && offsetof(EVENT_NEW_BUFFER_DATA, pUserPointer) == 8);
static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == 24 && alignof(PORT_REGISTER_STACK_ENTRY) == 1);
static_assert(offsetof(PORT_REGISTER_STACK_ENTRY, Address) == 0 && offsetof(PORT_REGISTER_STACK_ENTRY, pBuffer) == 8 &&
              offsetof(PORT_REGISTER_STACK_ENTRY, Size) == 16);
static_assert(sizeof(SINGLE_CHUNK_DATA) == 24 && alignof(SINGLE_CHUNK_DATA) == 1);
static_assert(offsetof(SINGLE_CHUNK_DATA, ChunkID) == 0 && offsetof(SINGLE_CHUNK_DATA, ChunkOffset) == 8 &&
              offsetof(SINGLE_CHUNK_DATA, ChunkLength) == 16);
static_assert(std::is_same_v<decltype(SINGLE_CHUNK_DATA::ChunkOffset), ptrdiff_t>);

/// A pointer type and the arguments of its function, in the types of the machine.
template <class Pointer, class... Arguments>
constexpr bool kTakes = std::is_same_v<Pointer, int32_t (*)(Arguments...)>;
static_assert(kTakes<PGCInitLib>);
static_assert(kTakes<PGCCloseLib>);
static_assert(kTakes<PGCGetInfo, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PGCGetLastError, int32_t *, char *, size_t *>);
static_assert(kTakes<PGCReadPort, void *, uint64_t, void *, size_t *>);
static_assert(kTakes<PGCWritePort, void *, uint64_t, const void *, size_t *>);
static_assert(kTakes<PGCGetPortURL, void *, char *, size_t *>);
static_assert(kTakes<PGCGetPortInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PGCGetNumPortURLs, void *, uint32_t *>);
static_assert(kTakes<PGCGetPortURLInfo, void *, uint32_t, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PGCReadPortStacked, void *, PORT_REGISTER_STACK_ENTRY *, size_t *>);
static_assert(kTakes<PGCWritePortStacked, void *, PORT_REGISTER_STACK_ENTRY *, size_t *>);
static_assert(kTakes<PGCRegisterEvent, void *, int32_t, void **>);
static_assert(kTakes<PGCUnregisterEvent, void *, int32_t>);
static_assert(kTakes<PEventGetData, void *, void *, size_t *, uint64_t>);
static_assert(kTakes<PEventGetDataInfo, void *, const void *, size_t, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PEventGetInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PEventFlush, void *>);
static_assert(kTakes<PEventKill, void *>);
static_assert(kTakes<PTLOpen, void **>);
static_assert(kTakes<PTLClose, void *>);
static_assert(kTakes<PTLGetInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PTLGetNumInterfaces, void *, uint32_t *>);
static_assert(kTakes<PTLGetInterfaceID, void *, uint32_t, char *, size_t *>);
static_assert(kTakes<PTLGetInterfaceInfo, void *, const char *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PTLOpenInterface, void *, const char *, void **>);
static_assert(kTakes<PTLUpdateInterfaceList, void *, bool8_t *, uint64_t>);
static_assert(kTakes<PIFClose, void *>);
static_assert(kTakes<PIFGetInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PIFGetNumDevices, void *, uint32_t *>);
static_assert(kTakes<PIFGetDeviceID, void *, uint32_t, char *, size_t *>);
static_assert(kTakes<PIFUpdateDeviceList, void *, bool8_t *, uint64_t>);
static_assert(kTakes<PIFGetDeviceInfo, void *, const char *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PIFOpenDevice, void *, const char *, int32_t, void **>);
static_assert(kTakes<PDevGetPort, void *, void **>);
static_assert(kTakes<PDevGetNumDataStreams, void *, uint32_t *>);
static_assert(kTakes<PDevGetDataStreamID, void *, uint32_t, char *, size_t *>);
static_assert(kTakes<PDevOpenDataStream, void *, const char *, void **>);
static_assert(kTakes<PDevGetInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PDevClose, void *>);
static_assert(kTakes<PDSAnnounceBuffer, void *, void *, size_t, void *, void **>);
static_assert(kTakes<PDSAllocAndAnnounceBuffer, void *, size_t, void *, void **>);
static_assert(kTakes<PDSFlushQueue, void *, int32_t>);
static_assert(kTakes<PDSStartAcquisition, void *, int32_t, uint64_t>);
static_assert(kTakes<PDSStopAcquisition, void *, int32_t>);
static_assert(kTakes<PDSGetInfo, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PDSGetBufferID, void *, uint32_t, void **>);
static_assert(kTakes<PDSClose, void *>);
static_assert(kTakes<PDSRevokeBuffer, void *, void *, void **, void **>);
static_assert(kTakes<PDSQueueBuffer, void *, void *>);
static_assert(kTakes<PDSGetBufferInfo, void *, void *, int32_t, int32_t *, void *, size_t *>);
static_assert(kTakes<PDSGetBufferChunkData, void *, void *, SINGLE_CHUNK_DATA *, size_t *>);

// A function and the pointer type that a Consumer calls it by are written twice.
#define LUMIVEX_SAME(function) static_assert(std::is_same_v<decltype(&function), P##function>);
LUMIVEX_GENTL_FUNCTIONS(LUMIVEX_SAME)
#undef LUMIVEX_SAME

}  // namespace
