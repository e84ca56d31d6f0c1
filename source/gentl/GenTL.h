// SPDX-License-Identifier: MIT

/// \file
/// The C interface between a GenTL Consumer and a GenTL Producer: names, values and types of GenTL 1.0 to 1.3.
/// Source: GenTL 1.3. The declarations hold its facts, the words are our own.
///
/// C11 sees plain names. C++ sees the same functions, with C linkage, in GenICam::Client.
///
/// Rules that hold for every function, unless its comment says otherwise:
/// - It answers GC_ERR_SUCCESS or a negative code; GCGetLastError gives the text of a failure to the thread
///   that had it, until that thread's next call.
/// - GC_ERR_NOT_INITIALIZED comes before GCInitLib and after GCCloseLib, GC_ERR_INVALID_HANDLE for a handle that is
///   not, or no longer, open, GC_ERR_INVALID_PARAMETER for a null pointer where an answer has to go.
/// - Sizes: `*piSize` counts bytes. In: the room in the caller's buffer. Out: the bytes written. With a null buffer
///   nothing is written and `*piSize` is the room needed. A text counts with its closing zero.
/// - Info queries: `*piType` becomes the type of the answer; it decides how the bytes in the buffer are to be read.
/// - Indices begin at 0. Time limits count milliseconds; GENTL_INFINITE waits without end.

#ifndef GC_TLI_CLIENT_H_
#define GC_TLI_CLIENT_H_

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

/// Version of the interface declared here.
#define GenTLMajorVersion 1
#define GenTLMinorVersion 3

/// Makes a function visible outside of its library. A Producer is built with GCTLIDLL_EXPORTS defined.
#if defined(_WIN32)
#if defined(GCTLIDLL_EXPORTS)
#define GC_IMPORT_EXPORT __declspec(dllexport)
#else
#define GC_IMPORT_EXPORT __declspec(dllimport)
#endif
#else
#define GC_IMPORT_EXPORT __attribute__((visibility("default")))
#endif

/// Calling convention: it has to be named on 32-bit x86 Windows only.
#if defined(_WIN32) && (defined(_M_IX86) || defined(__i386__))
#define GC_CALLTYPE __stdcall
#else
#define GC_CALLTYPE
#endif

/// Head of every function: `GC_API TLClose(TL_HANDLE hTL);`
#define GC_API GC_IMPORT_EXPORT GC_ERROR GC_CALLTYPE

/// Head of a function pointer type: `GC_API_P(PTLClose)(TL_HANDLE hTL);`
#define GC_API_P(function) typedef GC_ERROR(GC_CALLTYPE *function)

/// The handle that no module ever has.
#ifdef __cplusplus
#define GENTL_INVALID_HANDLE nullptr
#else
#define GENTL_INVALID_HANDLE NULL
#endif

/// As a time limit: without end. As a number of buffers: until stopped.
#define GENTL_INFINITE 0xFFFFFFFFFFFFFFFFULL

// In C++ the lists have the width of the types that carry them, so that a custom id can be cast to its list.
#ifdef __cplusplus
#define GENTL_LIST_BASE : int32_t
#else
#define GENTL_LIST_BASE
#endif

#ifdef __cplusplus
extern "C" {
namespace GenICam {
namespace Client {
#endif

// ---------------------------------------------------------------------------------------------------------------------
// Types
// ---------------------------------------------------------------------------------------------------------------------

/// Truth value of one byte.
#ifdef __cplusplus
typedef bool bool8_t;
#else
typedef uint8_t bool8_t;
#endif

typedef void *TL_HANDLE;        ///< A system (transport layer): from TLOpen to TLClose.
typedef void *IF_HANDLE;        ///< An interface: from TLOpenInterface to IFClose.
typedef void *DEV_HANDLE;       ///< A device, seen from the host: from IFOpenDevice to DevClose.
typedef void *DS_HANDLE;        ///< A data stream: from DevOpenDataStream to DSClose.
typedef void *PORT_HANDLE;      ///< Any module's register map; the device itself has the one of DevGetPort.
typedef void *BUFFER_HANDLE;    ///< A buffer: from its announcement to DSRevokeBuffer.
typedef void *EVENTSRC_HANDLE;  ///< A module that events are registered on.
typedef void *EVENT_HANDLE;     ///< A registered event: from GCRegisterEvent to GCUnregisterEvent.

/// Results of the functions: 0 for success, negative for failures.
enum GC_ERROR_LIST GENTL_LIST_BASE {
  GC_ERR_SUCCESS = 0,                ///< Done.
  GC_ERR_ERROR = -1001,              ///< A failure that no other code describes.
  GC_ERR_NOT_INITIALIZED = -1002,    ///< The library has not been started with GCInitLib.
  GC_ERR_NOT_IMPLEMENTED = -1003,    ///< This Producer has no such function or answer.
  GC_ERR_RESOURCE_IN_USE = -1004,    ///< It is open or started already.
  GC_ERR_ACCESS_DENIED = -1005,      ///< The access asked for is not granted.
  GC_ERR_INVALID_HANDLE = -1006,     ///< The handle is null, closed, or of another kind.
  GC_ERR_INVALID_ID = -1007,         ///< Nothing has this id.
  GC_ERR_NO_DATA = -1008,            ///< There is nothing to hand out.
  GC_ERR_INVALID_PARAMETER = -1009,  ///< An argument cannot be used as it is.
  GC_ERR_IO = -1010,                 ///< The exchange with the device failed.
  GC_ERR_TIMEOUT = -1011,            ///< The time limit passed.
  GC_ERR_ABORT = -1012,              ///< The operation was ended from outside before it was done.
  GC_ERR_INVALID_BUFFER = -1013,     ///< A buffer is too small, or cannot be used for the operation.
  GC_ERR_NOT_AVAILABLE = -1014,      ///< The answer exists, but not at present.
  GC_ERR_INVALID_ADDRESS = -1015,    ///< The register map has nothing at this address.
  GC_ERR_CUSTOM_ID = -10000          ///< A Producer's own codes begin here and go down.
};
typedef int32_t GC_ERROR;  ///< One of GC_ERROR_LIST.

/// Type of the value that an info query answers with.
enum INFO_DATATYPE_LIST GENTL_LIST_BASE {
  INFO_DATATYPE_UNKNOWN = 0,      ///< Not stated.
  INFO_DATATYPE_STRING = 1,       ///< Text that ends with a zero.
  INFO_DATATYPE_STRINGLIST = 2,   ///< Texts that each end with a zero, and one more zero after the last.
  INFO_DATATYPE_INT16 = 3,        ///< int16_t
  INFO_DATATYPE_UINT16 = 4,       ///< uint16_t
  INFO_DATATYPE_INT32 = 5,        ///< int32_t, every list among them
  INFO_DATATYPE_UINT32 = 6,       ///< uint32_t
  INFO_DATATYPE_INT64 = 7,        ///< int64_t
  INFO_DATATYPE_UINT64 = 8,       ///< uint64_t
  INFO_DATATYPE_FLOAT64 = 9,      ///< double
  INFO_DATATYPE_PTR = 10,         ///< void *
  INFO_DATATYPE_BOOL8 = 11,       ///< bool8_t
  INFO_DATATYPE_SIZET = 12,       ///< size_t
  INFO_DATATYPE_BUFFER = 13,      ///< Bytes without a type.
  INFO_DATATYPE_PTRDIFF = 14,     ///< ptrdiff_t
  INFO_DATATYPE_CUSTOM_ID = 1000  ///< A Producer's own types begin here.
};
typedef int32_t INFO_DATATYPE;  ///< One of INFO_DATATYPE_LIST.

/// What GCGetInfo and TLGetInfo can be asked about the Producer and its system.
enum TL_INFO_CMD_LIST GENTL_LIST_BASE {
  TL_INFO_ID = 0,           ///< STRING: id of the system.
  TL_INFO_VENDOR = 1,       ///< STRING: who makes the Producer.
  TL_INFO_MODEL = 2,        ///< STRING: which of the maker's Producers it is.
  TL_INFO_VERSION = 3,      ///< STRING: version of the Producer.
  TL_INFO_TLTYPE = 4,       ///< STRING: transport layer type, such as CXP or Mixed.
  TL_INFO_NAME = 5,         ///< STRING: file name of the Producer.
  TL_INFO_PATHNAME = 6,     ///< STRING: file name of the Producer with its directory.
  TL_INFO_DISPLAYNAME = 7,  ///< STRING: name for people to read.
  TL_INFO_CUSTOM_ID = 1000  ///< A Producer's own queries begin here.
};
typedef int32_t TL_INFO_CMD;  ///< One of TL_INFO_CMD_LIST.

/// What TLGetInterfaceInfo and IFGetInfo can be asked about an interface.
enum INTERFACE_INFO_CMD_LIST GENTL_LIST_BASE {
  INTERFACE_INFO_ID = 0,           ///< STRING: id of the interface.
  INTERFACE_INFO_DISPLAYNAME = 1,  ///< STRING: name for people to read.
  INTERFACE_INFO_TLTYPE = 2,       ///< STRING: transport layer type.
  INTERFACE_INFO_CUSTOM_ID = 1000  ///< A Producer's own queries begin here.
};
typedef int32_t INTERFACE_INFO_CMD;  ///< One of INTERFACE_INFO_CMD_LIST.

/// The access that IFOpenDevice is asked for.
enum DEVICE_ACCESS_FLAGS_LIST GENTL_LIST_BASE {
  DEVICE_ACCESS_UNKNOWN = 0,      ///< Not stated; no access to ask for.
  DEVICE_ACCESS_NONE = 1,         ///< No access.
  DEVICE_ACCESS_READONLY = 2,     ///< Reading; others may read and write.
  DEVICE_ACCESS_CONTROL = 3,      ///< Reading and writing; others may read.
  DEVICE_ACCESS_EXCLUSIVE = 4,    ///< Reading and writing; others are kept out.
  DEVICE_ACCESS_CUSTOM_ID = 1000  ///< A Producer's own flags begin here.
};
typedef int32_t DEVICE_ACCESS_FLAGS;  ///< One of DEVICE_ACCESS_FLAGS_LIST.

/// The access that a device would grant now.
enum DEVICE_ACCESS_STATUS_LIST GENTL_LIST_BASE {
  DEVICE_ACCESS_STATUS_UNKNOWN = 0,      ///< Not known.
  DEVICE_ACCESS_STATUS_READWRITE = 1,    ///< Reading and writing.
  DEVICE_ACCESS_STATUS_READONLY = 2,     ///< Reading only.
  DEVICE_ACCESS_STATUS_NOACCESS = 3,     ///< None.
  DEVICE_ACCESS_STATUS_CUSTOM_ID = 1000  ///< A Producer's own states begin here.
};
typedef int32_t DEVICE_ACCESS_STATUS;  ///< One of DEVICE_ACCESS_STATUS_LIST.

/// What IFGetDeviceInfo and DevGetInfo can be asked about a device.
enum DEVICE_INFO_CMD_LIST GENTL_LIST_BASE {
  DEVICE_INFO_ID = 0,             ///< STRING: id of the device.
  DEVICE_INFO_VENDOR = 1,         ///< STRING: who makes the device.
  DEVICE_INFO_MODEL = 2,          ///< STRING: which of the maker's devices it is.
  DEVICE_INFO_TLTYPE = 3,         ///< STRING: transport layer type.
  DEVICE_INFO_DISPLAYNAME = 4,    ///< STRING: name for people to read.
  DEVICE_INFO_ACCESS_STATUS = 5,  ///< INT32: one of DEVICE_ACCESS_STATUS_LIST.
  DEVICE_INFO_CUSTOM_ID = 1000    ///< A Producer's own queries begin here.
};
typedef int32_t DEVICE_INFO_CMD;  ///< One of DEVICE_INFO_CMD_LIST.

/// How DSStopAcquisition ends a run.
enum ACQ_STOP_FLAGS_LIST GENTL_LIST_BASE {
  ACQ_STOP_FLAGS_DEFAULT = 0,      ///< The buffer being filled is finished first.
  ACQ_STOP_FLAGS_KILL = 1,         ///< At once; the buffer being filled stays incomplete.
  ACQ_STOP_FLAGS_CUSTOM_ID = 1000  ///< A Producer's own flags begin here.
};
typedef int32_t ACQ_STOP_FLAGS;  ///< One of ACQ_STOP_FLAGS_LIST.

/// How DSStartAcquisition begins a run.
enum ACQ_START_FLAGS_LIST GENTL_LIST_BASE {
  ACQ_START_FLAGS_DEFAULT = 0,      ///< The ordinary way.
  ACQ_START_FLAGS_CUSTOM_ID = 1000  ///< A Producer's own flags begin here.
};
typedef int32_t ACQ_START_FLAGS;  ///< One of ACQ_START_FLAGS_LIST.

/// What DSFlushQueue does with the buffers of a stream.
enum ACQ_QUEUE_TYPE_LIST GENTL_LIST_BASE {
  ACQ_QUEUE_INPUT_TO_OUTPUT = 0,    ///< Buffers waiting to be filled go to the output queue as they are.
  ACQ_QUEUE_OUTPUT_DISCARD = 1,     ///< Buffers waiting for delivery leave the output queue.
  ACQ_QUEUE_ALL_TO_INPUT = 2,       ///< All buffers go to the input pool, delivered ones and waiting ones alike.
  ACQ_QUEUE_UNQUEUED_TO_INPUT = 3,  ///< Buffers in no queue go to the input pool.
  ACQ_QUEUE_ALL_DISCARD = 4,        ///< All buffers leave the input pool and the output queue.
  ACQ_QUEUE_CUSTOM_ID = 1000        ///< A Producer's own operations begin here.
};
typedef int32_t ACQ_QUEUE_TYPE;  ///< One of ACQ_QUEUE_TYPE_LIST.

/// What DSGetInfo can be asked about a data stream.
enum STREAM_INFO_CMD_LIST GENTL_LIST_BASE {
  STREAM_INFO_ID = 0,                   ///< STRING: id of the data stream.
  STREAM_INFO_NUM_DELIVERED = 1,        ///< UINT64: buffers handed out since the run began.
  STREAM_INFO_NUM_UNDERRUN = 2,         ///< UINT64: frames lost because no buffer was queued.
  STREAM_INFO_NUM_ANNOUNCED = 3,        ///< SIZET: buffers announced.
  STREAM_INFO_NUM_QUEUED = 4,           ///< SIZET: buffers in the input pool.
  STREAM_INFO_NUM_AWAIT_DELIVERY = 5,   ///< SIZET: buffers in the output queue.
  STREAM_INFO_NUM_STARTED = 6,          ///< UINT64: frames begun since the run began.
  STREAM_INFO_PAYLOAD_SIZE = 7,         ///< SIZET: bytes that a buffer has to hold.
  STREAM_INFO_IS_GRABBING = 8,          ///< BOOL8: a run is on.
  STREAM_INFO_DEFINES_PAYLOADSIZE = 9,  ///< BOOL8: the stream's payload size holds, rather than the device's.
  STREAM_INFO_TLTYPE = 10,              ///< STRING: transport layer type.
  STREAM_INFO_NUM_CHUNKS_MAX = 11,      ///< SIZET: most chunks that a buffer can have; 0 when not known.
  STREAM_INFO_BUF_ANNOUNCE_MIN = 12,    ///< SIZET: least number of buffers to announce before a run.
  STREAM_INFO_BUF_ALIGNMENT = 13,       ///< SIZET: alignment of a buffer's memory, in bytes.
  STREAM_INFO_CUSTOM_ID = 1000          ///< A Producer's own queries begin here.
};
typedef int32_t STREAM_INFO_CMD;  ///< One of STREAM_INFO_CMD_LIST.

/// What DSGetBufferInfo can be asked about a buffer.
enum BUFFER_INFO_CMD_LIST GENTL_LIST_BASE {
  BUFFER_INFO_BASE = 0,                         ///< PTR: begin of the memory.
  BUFFER_INFO_SIZE = 1,                         ///< SIZET: bytes of the memory.
  BUFFER_INFO_USER_PTR = 2,                     ///< PTR: pPrivate of the announcement.
  BUFFER_INFO_TIMESTAMP = 3,                    ///< UINT64: time of the frame, in units of the device.
  BUFFER_INFO_NEW_DATA = 4,                     ///< BOOL8: filled since it was last queued.
  BUFFER_INFO_IS_QUEUED = 5,                    ///< BOOL8: in the input pool or the output queue.
  BUFFER_INFO_IS_ACQUIRING = 6,                 ///< BOOL8: being filled.
  BUFFER_INFO_IS_INCOMPLETE = 7,                ///< BOOL8: part of the frame is missing.
  BUFFER_INFO_TLTYPE = 8,                       ///< STRING: transport layer type.
  BUFFER_INFO_SIZE_FILLED = 9,                  ///< SIZET: bytes written by the last frame.
  BUFFER_INFO_WIDTH = 10,                       ///< SIZET: pixels in a line.
  BUFFER_INFO_HEIGHT = 11,                      ///< SIZET: lines of the image as it was asked for.
  BUFFER_INFO_XOFFSET = 12,                     ///< SIZET: first column on the sensor, in pixels.
  BUFFER_INFO_YOFFSET = 13,                     ///< SIZET: first line on the sensor.
  BUFFER_INFO_XPADDING = 14,                    ///< SIZET: bytes after each line.
  BUFFER_INFO_YPADDING = 15,                    ///< SIZET: bytes after the last line.
  BUFFER_INFO_FRAMEID = 16,                     ///< UINT64: number of the frame.
  BUFFER_INFO_IMAGEPRESENT = 17,                ///< BOOL8: there is an image in it.
  BUFFER_INFO_IMAGEOFFSET = 18,                 ///< SIZET: bytes before the image.
  BUFFER_INFO_PAYLOADTYPE = 19,                 ///< SIZET: one of PAYLOADTYPE_INFO_IDS.
  BUFFER_INFO_PIXELFORMAT = 20,                 ///< UINT64: pixel format, numbered as its namespace does.
  BUFFER_INFO_PIXELFORMAT_NAMESPACE = 21,       ///< UINT64: one of PIXELFORMAT_NAMESPACE_IDS.
  BUFFER_INFO_DELIVERED_IMAGEHEIGHT = 22,       ///< SIZET: lines that came.
  BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE = 23,  ///< SIZET: bytes of chunk data that came.
  BUFFER_INFO_CHUNKLAYOUTID = 24,               ///< UINT64: changes when the order of the chunks does.
  BUFFER_INFO_FILENAME = 25,                    ///< STRING: file name, for a payload that is a file.
  BUFFER_INFO_CUSTOM_ID = 1000                  ///< A Producer's own queries begin here.
};
typedef int32_t BUFFER_INFO_CMD;  ///< One of BUFFER_INFO_CMD_LIST.

/// What a buffer holds; the answer to BUFFER_INFO_PAYLOADTYPE.
enum PAYLOADTYPE_INFO_IDS GENTL_LIST_BASE {
  PAYLOAD_TYPE_UNKNOWN = 0,      ///< Not known.
  PAYLOAD_TYPE_IMAGE = 1,        ///< An image without compression.
  PAYLOAD_TYPE_RAW_DATA = 2,     ///< Bytes without a layout known here.
  PAYLOAD_TYPE_FILE = 3,         ///< A file.
  PAYLOAD_TYPE_CHUNK_DATA = 4,   ///< Chunks, the image being one of them.
  PAYLOAD_TYPE_CUSTOM_ID = 1000  ///< A Producer's own payload types begin here.
};
typedef int32_t PAYLOADTYPE_INFO_ID;  ///< One of PAYLOADTYPE_INFO_IDS.

/// Which table numbers the pixel format; the answer to BUFFER_INFO_PIXELFORMAT_NAMESPACE.
enum PIXELFORMAT_NAMESPACE_IDS GENTL_LIST_BASE {
  PIXELFORMAT_NAMESPACE_UNKNOWN = 0,      ///< Not known.
  PIXELFORMAT_NAMESPACE_GEV = 1,          ///< The table of GigE Vision 1.x.
  PIXELFORMAT_NAMESPACE_IIDC = 2,         ///< The table of IIDC 1.x.
  PIXELFORMAT_NAMESPACE_CUSTOM_ID = 1000  ///< A Producer's own tables begin here.
};
typedef int32_t PIXELFORMAT_NAMESPACE_ID;  ///< One of PIXELFORMAT_NAMESPACE_IDS.

/// What GCGetPortInfo can be asked about a module's port.
enum PORT_INFO_CMD_LIST GENTL_LIST_BASE {
  PORT_INFO_ID = 0,             ///< STRING: id of the module.
  PORT_INFO_VENDOR = 1,         ///< STRING: who makes the module.
  PORT_INFO_MODEL = 2,          ///< STRING: which of the maker's modules it is.
  PORT_INFO_TLTYPE = 3,         ///< STRING: transport layer type.
  PORT_INFO_MODULE = 4,         ///< STRING: kind of module.
  PORT_INFO_LITTLE_ENDIAN = 5,  ///< BOOL8: registers are little endian.
  PORT_INFO_BIG_ENDIAN = 6,     ///< BOOL8: registers are big endian.
  PORT_INFO_ACCESS_READ = 7,    ///< BOOL8: registers can be read.
  PORT_INFO_ACCESS_WRITE = 8,   ///< BOOL8: registers can be written.
  PORT_INFO_ACCESS_NA = 9,      ///< BOOL8: the port is not available at present.
  PORT_INFO_ACCESS_NI = 10,     ///< BOOL8: the port is not implemented.
  PORT_INFO_VERSION = 11,       ///< STRING: version of the module.
  PORT_INFO_PORTNAME = 12,      ///< STRING: name of the port in the module's description.
  PORT_INFO_CUSTOM_ID = 1000    ///< A Producer's own queries begin here.
};
typedef int32_t PORT_INFO_CMD;  ///< One of PORT_INFO_CMD_LIST.

/// What GCGetPortURLInfo can be asked about a place where a module's description is found.
enum URL_INFO_CMD_LIST GENTL_LIST_BASE {
  URL_INFO_URL = 0,                ///< STRING: the place.
  URL_INFO_SCHEMA_VER_MAJOR = 1,   ///< INT32: major version of the schema of the description.
  URL_INFO_SCHEMA_VER_MINOR = 2,   ///< INT32: minor version of the schema.
  URL_INFO_FILE_VER_MAJOR = 3,     ///< INT32: major version of the description itself.
  URL_INFO_FILE_VER_MINOR = 4,     ///< INT32: minor version of the description.
  URL_INFO_FILE_VER_SUBMINOR = 5,  ///< INT32: subminor version of the description.
  URL_INFO_CUSTOM_ID = 1000        ///< A Producer's own queries begin here.
};
typedef int32_t URL_INFO_CMD;  ///< One of URL_INFO_CMD_LIST.

/// The events that can be registered on a module.
enum EVENT_TYPE_LIST GENTL_LIST_BASE {
  EVENT_ERROR = 0,               ///< A failure outside of any call.
  EVENT_NEW_BUFFER = 1,          ///< A buffer has been filled; data streams only.
  EVENT_FEATURE_INVALIDATE = 2,  ///< A cached feature is no longer true.
  EVENT_FEATURE_CHANGE = 3,      ///< A feature has been given a value.
  EVENT_REMOTE_DEVICE = 4,       ///< The device has sent an event of its own.
  EVENT_CUSTOM_ID = 1000         ///< A Producer's own events begin here.
};
typedef int32_t EVENT_TYPE;  ///< One of EVENT_TYPE_LIST.

/// What EventGetInfo can be asked about a registered event.
enum EVENT_INFO_CMD_LIST GENTL_LIST_BASE {
  EVENT_EVENT_TYPE = 0,          ///< INT32: one of EVENT_TYPE_LIST.
  EVENT_NUM_IN_QUEUE = 1,        ///< SIZET: records waiting in the queue.
  EVENT_NUM_FIRED = 2,           ///< UINT64: records posted since the registration.
  EVENT_SIZE_MAX = 3,            ///< SIZET: most bytes that EventGetData writes.
  EVENT_INFO_DATA_SIZE_MAX = 4,  ///< SIZET: most bytes that EventGetDataInfo answers with for EVENT_DATA_VALUE.
  EVENT_INFO_CUSTOM_ID = 1000    ///< A Producer's own queries begin here.
};
typedef int32_t EVENT_INFO_CMD;  ///< One of EVENT_INFO_CMD_LIST.

/// What EventGetDataInfo can be asked about one record; type and meaning depend on the event.
enum EVENT_DATA_INFO_CMD_LIST GENTL_LIST_BASE {
  EVENT_DATA_ID = 0,           ///< What the record is about.
  EVENT_DATA_VALUE = 1,        ///< What it carries.
  EVENT_DATA_NUMID = 2,        ///< UINT64: its subject as a number.
  EVENT_DATA_CUSTOM_ID = 1000  ///< A Producer's own queries begin here.
};
typedef int32_t EVENT_DATA_INFO_CMD;  ///< One of EVENT_DATA_INFO_CMD_LIST.

// ---------------------------------------------------------------------------------------------------------------------
// Records, without padding
// ---------------------------------------------------------------------------------------------------------------------

#pragma pack(push, 1)

/// What EventGetData hands out for EVENT_NEW_BUFFER.
typedef struct EVENT_NEW_BUFFER_DATA {
  BUFFER_HANDLE BufferHandle;  ///< The buffer that was filled.
  void *pUserPointer;          ///< pPrivate of its announcement.
} EVENT_NEW_BUFFER_DATA;

/// One access of GCReadPortStacked or GCWritePortStacked.
typedef struct PORT_REGISTER_STACK_ENTRY {
  uint64_t Address;  ///< First byte in the register map.
  void *pBuffer;     ///< Where the bytes go to, or come from.
  size_t Size;       ///< Number of bytes.
} PORT_REGISTER_STACK_ENTRY;

/// One chunk in a buffer, as DSGetBufferChunkData lists it.
typedef struct SINGLE_CHUNK_DATA {
  uint64_t ChunkID;       ///< Id of the chunk.
  ptrdiff_t ChunkOffset;  ///< Bytes from the begin of the buffer to the chunk's data.
  size_t ChunkLength;     ///< Bytes of data.
} SINGLE_CHUNK_DATA;

#pragma pack(pop)

static_assert(sizeof(bool8_t) == 1, "bool8_t is one byte");
static_assert(sizeof(EVENT_NEW_BUFFER_DATA) == 2 * sizeof(void *), "EVENT_NEW_BUFFER_DATA has no padding");
static_assert(sizeof(PORT_REGISTER_STACK_ENTRY) == sizeof(uint64_t) + sizeof(void *) + sizeof(size_t),
              "PORT_REGISTER_STACK_ENTRY has no padding");
static_assert(sizeof(SINGLE_CHUNK_DATA) == sizeof(uint64_t) + sizeof(ptrdiff_t) + sizeof(size_t),
              "SINGLE_CHUNK_DATA has no padding");

// ---------------------------------------------------------------------------------------------------------------------
// Library
// ---------------------------------------------------------------------------------------------------------------------

/// Starts the library. GC_ERR_RESOURCE_IN_USE when it has been started already.
GC_API GCInitLib(void);

/// Ends the library; all modules have to be closed before.
GC_API GCCloseLib(void);

/// Answers about the Producer without a system being open. Sizes in bytes, in and out.
GC_API GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Code and text that the last call in the calling thread has left; it can be asked again. `*piSize` counts the text
/// with its closing zero; a null sErrText asks for it. GC_ERR_INVALID_BUFFER when the room does not suffice.
GC_API GCGetLastError(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize);

// ---------------------------------------------------------------------------------------------------------------------
// Ports: the register map that each module has
// ---------------------------------------------------------------------------------------------------------------------

/// Reads `*piSize` bytes from iAddress into pBuffer; `*piSize` becomes the bytes read.
/// GC_ERR_INVALID_ADDRESS where the map has nothing, GC_ERR_ACCESS_DENIED where it cannot be read.
GC_API GCReadPort(PORT_HANDLE hPort, uint64_t iAddress, void *pBuffer, size_t *piSize);

/// Writes `*piSize` bytes from pBuffer to iAddress; `*piSize` becomes the bytes written.
/// GC_ERR_INVALID_ADDRESS where the map has nothing, GC_ERR_ACCESS_DENIED where it cannot be written.
GC_API GCWritePort(PORT_HANDLE hPort, uint64_t iAddress, const void *pBuffer, size_t *piSize);

/// The first place where the port's description is found; superseded by GCGetPortURLInfo.
/// `*piSize` counts the text with its closing zero; a null sURL asks for it.
GC_API GCGetPortURL(PORT_HANDLE hPort, char *sURL, size_t *piSize);

/// Answers about the module behind the port. Sizes in bytes, in and out.
GC_API GCGetPortInfo(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Number of places where the port's description is found.
GC_API GCGetNumPortURLs(PORT_HANDLE hPort, uint32_t *piNumURLs);

/// Answers about one of these places. Sizes in bytes, in and out.
GC_API GCGetPortURLInfo(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                        void *pBuffer, size_t *piSize);

/// Does `*piNumEntries` reads in their order; the first failure ends it.
/// `*piNumEntries` becomes the number of reads that succeeded; the code is that of the one that failed.
GC_API GCReadPortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries);

/// Does `*piNumEntries` writes in their order; the first failure ends it.
/// `*piNumEntries` becomes the number of writes that succeeded; the code is that of the one that failed.
GC_API GCWritePortStacked(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries);

// ---------------------------------------------------------------------------------------------------------------------
// Events
// ---------------------------------------------------------------------------------------------------------------------

/// Registers an event on a module; its records are queued from now on.
/// GC_ERR_RESOURCE_IN_USE when it is registered already, GC_ERR_NOT_IMPLEMENTED when the module does not have it.
GC_API GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE *phEvent);

/// Ends a registration; its handle must not be used any more.
GC_API GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID);

/// Takes the oldest record from the queue; waits for one for at most iTimeout ms, 0 being a look only.
/// `*piSize`: room in, bytes written out. GC_ERR_TIMEOUT when none came, GC_ERR_ABORT after EventKill.
GC_API EventGetData(EVENT_HANDLE hEvent, void *pBuffer, size_t *piSize, uint64_t iTimeout);

/// Answers about a record that EventGetData wrote: pInBuffer and iInSize (bytes) are that record.
/// `*piOutSize`: room in, bytes written or needed out.
GC_API EventGetDataInfo(EVENT_HANDLE hEvent, const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd,
                        INFO_DATATYPE *piType, void *pOutBuffer, size_t *piOutSize);

/// Answers about the event itself. Sizes in bytes, in and out.
GC_API EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Throws away the records that wait in the queue.
GC_API EventFlush(EVENT_HANDLE hEvent);

/// Ends one waiting EventGetData with GC_ERR_ABORT; when none waits, the next one.
GC_API EventKill(EVENT_HANDLE hEvent);

// ---------------------------------------------------------------------------------------------------------------------
// System
// ---------------------------------------------------------------------------------------------------------------------

/// Opens the system, of which there is one. GC_ERR_RESOURCE_IN_USE when it is open.
GC_API TLOpen(TL_HANDLE *phTL);

/// Closes the system.
GC_API TLClose(TL_HANDLE hTL);

/// Answers about the system. Sizes in bytes, in and out.
GC_API TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Number of interfaces in the list that TLUpdateInterfaceList made last.
GC_API TLGetNumInterfaces(TL_HANDLE hTL, uint32_t *piNumIfaces);

/// Id of an interface. `*piSize` counts the text with its closing zero; a null sID asks for it.
GC_API TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char *sID, size_t *piSize);

/// Answers about an interface, which need not be open. Sizes in bytes, in and out.
GC_API TLGetInterfaceInfo(TL_HANDLE hTL, const char *sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                          void *pBuffer, size_t *piSize);

/// Opens an interface of the list. GC_ERR_RESOURCE_IN_USE when it is open.
GC_API TLOpenInterface(TL_HANDLE hTL, const char *sIfaceID, IF_HANDLE *phIface);

/// Makes the list of interfaces anew, within iTimeout ms. `*pbChanged` tells whether it differs from the last one;
/// the pointer may be null.
GC_API TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t *pbChanged, uint64_t iTimeout);

// ---------------------------------------------------------------------------------------------------------------------
// Interface
// ---------------------------------------------------------------------------------------------------------------------

/// Closes the interface.
GC_API IFClose(IF_HANDLE hIface);

/// Answers about the interface. Sizes in bytes, in and out.
GC_API IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Number of devices in the list that IFUpdateDeviceList made last.
GC_API IFGetNumDevices(IF_HANDLE hIface, uint32_t *piNumDevices);

/// Id of a device. `*piSize` counts the text with its closing zero; a null sIDeviceID asks for it.
GC_API IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char *sIDeviceID, size_t *piSize);

/// Makes the list of devices anew, within iTimeout ms. `*pbChanged` tells whether it differs from the last one;
/// the pointer may be null.
GC_API IFUpdateDeviceList(IF_HANDLE hIface, bool8_t *pbChanged, uint64_t iTimeout);

/// Answers about a device, which need not be open. Sizes in bytes, in and out.
GC_API IFGetDeviceInfo(IF_HANDLE hIface, const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                       void *pBuffer, size_t *piSize);

/// Opens a device of the list with the access asked for. GC_ERR_RESOURCE_IN_USE when it is open,
/// GC_ERR_ACCESS_DENIED when the access is not granted.
GC_API IFOpenDevice(IF_HANDLE hIface, const char *sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE *phDevice);

// ---------------------------------------------------------------------------------------------------------------------
// Device
// ---------------------------------------------------------------------------------------------------------------------

/// The port to the registers of the device itself; it is valid until DevClose.
GC_API DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE *phRemoteDevice);

/// Number of data streams that the device has.
GC_API DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t *piNumDataStreams);

/// Id of a data stream. `*piSize` counts the text with its closing zero; a null sDataStreamID asks for it.
GC_API DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char *sDataStreamID, size_t *piSize);

/// Opens a data stream of the device. GC_ERR_RESOURCE_IN_USE when it is open.
GC_API DevOpenDataStream(DEV_HANDLE hDevice, const char *sDataStreamID, DS_HANDLE *phDataStream);

/// Answers about the device. Sizes in bytes, in and out.
GC_API DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Closes the device and what is open below it.
GC_API DevClose(DEV_HANDLE hDevice);

// ---------------------------------------------------------------------------------------------------------------------
// Data stream and its buffers
// ---------------------------------------------------------------------------------------------------------------------

/// Makes iSize bytes of the caller's memory known as a buffer; the caller keeps them until it has been revoked.
/// pPrivate comes back with the buffer. GC_ERR_RESOURCE_IN_USE when this memory is announced already.
GC_API DSAnnounceBuffer(DS_HANDLE hDataStream, void *pBuffer, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);

/// As DSAnnounceBuffer, with iSize bytes of the Producer's memory, which go when the buffer is revoked.
GC_API DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);

/// Moves buffers between the input pool and the output queue, or out of them.
GC_API DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation);

/// Begins a run that ends by itself after iNumToAcquire frames; GENTL_INFINITE: with DSStopAcquisition only.
/// GC_ERR_RESOURCE_IN_USE when a run is on.
GC_API DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire);

/// Ends the run. Buffers in the output queue can still be fetched.
GC_API DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags);

/// Answers about the data stream. Sizes in bytes, in and out.
GC_API DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);

/// Handle of an announced buffer; indices change when a buffer is announced or revoked.
GC_API DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE *phBuffer);

/// Closes the data stream: its run ends, its buffers are revoked, its events are unregistered.
GC_API DSClose(DS_HANDLE hDataStream);

/// Takes a buffer back. `*pBuffer` becomes its memory, null when that was the Producer's; `*pPrivate` what came with
/// its announcement. Both pointers may be null. GC_ERR_RESOURCE_IN_USE while it is queued.
GC_API DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void **pBuffer, void **pPrivate);

/// Puts a buffer into the input pool, to be filled.
GC_API DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer);

/// Answers about a buffer. Sizes in bytes, in and out.
GC_API DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                       void *pBuffer, size_t *piSize);

/// Lists the chunks of a filled buffer. `*piNumChunks` counts entries: room in, entries written out; with a null
/// pChunkData, entries needed. GC_ERR_NO_DATA when it has none.
GC_API DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA *pChunkData,
                            size_t *piNumChunks);

// ---------------------------------------------------------------------------------------------------------------------
// Function pointer types, for Consumers that look the functions up in a loaded library
// ---------------------------------------------------------------------------------------------------------------------

GC_API_P(PGCInitLib)(void);
GC_API_P(PGCCloseLib)(void);
GC_API_P(PGCGetInfo)(TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PGCGetLastError)(GC_ERROR *piErrorCode, char *sErrText, size_t *piSize);
GC_API_P(PGCReadPort)(PORT_HANDLE hPort, uint64_t iAddress, void *pBuffer, size_t *piSize);
GC_API_P(PGCWritePort)(PORT_HANDLE hPort, uint64_t iAddress, const void *pBuffer, size_t *piSize);
GC_API_P(PGCGetPortURL)(PORT_HANDLE hPort, char *sURL, size_t *piSize);
GC_API_P(PGCGetPortInfo)
(PORT_HANDLE hPort, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PGCGetNumPortURLs)(PORT_HANDLE hPort, uint32_t *piNumURLs);
GC_API_P(PGCGetPortURLInfo)
(PORT_HANDLE hPort, uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PGCReadPortStacked)(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries);
GC_API_P(PGCWritePortStacked)(PORT_HANDLE hPort, PORT_REGISTER_STACK_ENTRY *pEntries, size_t *piNumEntries);
GC_API_P(PGCRegisterEvent)(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE *phEvent);
GC_API_P(PGCUnregisterEvent)(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID);
GC_API_P(PEventGetData)(EVENT_HANDLE hEvent, void *pBuffer, size_t *piSize, uint64_t iTimeout);
GC_API_P(PEventGetDataInfo)
(EVENT_HANDLE hEvent, const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
 void *pOutBuffer, size_t *piOutSize);
GC_API_P(PEventGetInfo)
(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PEventFlush)(EVENT_HANDLE hEvent);
GC_API_P(PEventKill)(EVENT_HANDLE hEvent);
GC_API_P(PTLOpen)(TL_HANDLE *phTL);
GC_API_P(PTLClose)(TL_HANDLE hTL);
GC_API_P(PTLGetInfo)(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PTLGetNumInterfaces)(TL_HANDLE hTL, uint32_t *piNumIfaces);
GC_API_P(PTLGetInterfaceID)(TL_HANDLE hTL, uint32_t iIndex, char *sID, size_t *piSize);
GC_API_P(PTLGetInterfaceInfo)
(TL_HANDLE hTL, const char *sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
 size_t *piSize);
GC_API_P(PTLOpenInterface)(TL_HANDLE hTL, const char *sIfaceID, IF_HANDLE *phIface);
GC_API_P(PTLUpdateInterfaceList)(TL_HANDLE hTL, bool8_t *pbChanged, uint64_t iTimeout);
GC_API_P(PIFClose)(IF_HANDLE hIface);
GC_API_P(PIFGetInfo)
(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PIFGetNumDevices)(IF_HANDLE hIface, uint32_t *piNumDevices);
GC_API_P(PIFGetDeviceID)(IF_HANDLE hIface, uint32_t iIndex, char *sIDeviceID, size_t *piSize);
GC_API_P(PIFUpdateDeviceList)(IF_HANDLE hIface, bool8_t *pbChanged, uint64_t iTimeout);
GC_API_P(PIFGetDeviceInfo)
(IF_HANDLE hIface, const char *sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
 size_t *piSize);
GC_API_P(PIFOpenDevice)(IF_HANDLE hIface, const char *sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE *phDevice);
GC_API_P(PDevGetPort)(DEV_HANDLE hDevice, PORT_HANDLE *phRemoteDevice);
GC_API_P(PDevGetNumDataStreams)(DEV_HANDLE hDevice, uint32_t *piNumDataStreams);
GC_API_P(PDevGetDataStreamID)(DEV_HANDLE hDevice, uint32_t iIndex, char *sDataStreamID, size_t *piSize);
GC_API_P(PDevOpenDataStream)(DEV_HANDLE hDevice, const char *sDataStreamID, DS_HANDLE *phDataStream);
GC_API_P(PDevGetInfo)
(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PDevClose)(DEV_HANDLE hDevice);
GC_API_P(PDSAnnounceBuffer)
(DS_HANDLE hDataStream, void *pBuffer, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);
GC_API_P(PDSAllocAndAnnounceBuffer)(DS_HANDLE hDataStream, size_t iSize, void *pPrivate, BUFFER_HANDLE *phBuffer);
GC_API_P(PDSFlushQueue)(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation);
GC_API_P(PDSStartAcquisition)(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire);
GC_API_P(PDSStopAcquisition)(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags);
GC_API_P(PDSGetInfo)
(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize);
GC_API_P(PDSGetBufferID)(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE *phBuffer);
GC_API_P(PDSClose)(DS_HANDLE hDataStream);
GC_API_P(PDSRevokeBuffer)(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void **pBuffer, void **pPrivate);
GC_API_P(PDSQueueBuffer)(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer);
GC_API_P(PDSGetBufferInfo)
(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
 size_t *piSize);
GC_API_P(PDSGetBufferChunkData)
(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, SINGLE_CHUNK_DATA *pChunkData, size_t *piNumChunks);

#ifdef __cplusplus
}  // namespace Client
}  // namespace GenICam
}  // extern "C"
#endif

#undef GENTL_LIST_BASE

#endif  // GC_TLI_CLIENT_H_
