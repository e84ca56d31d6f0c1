// SPDX-License-Identifier: MIT
#pragma once

#include "GenTL.h"

namespace Lumivex::Consumer {

namespace GenTL = GenICam::Client;

/// An exported function of a Producer: its name, for messages, and its address.
template <class Pointer>
struct Function {
  const char *name;
  Pointer address;
};

/// The functions that lumivex calls. X is called with each name; it adds the "P" of the pointer type itself.
#define LUMIVEX_GENTL_FUNCTIONS(X) \
  X(GCInitLib)                     \
  X(GCCloseLib)                    \
  X(GCGetInfo)                     \
  X(GCGetLastError)                \
  X(GCGetPortInfo)                 \
  X(GCGetNumPortURLs)              \
  X(GCGetPortURLInfo)              \
  X(GCReadPort)                    \
  X(GCWritePort)                   \
  X(GCRegisterEvent)               \
  X(GCUnregisterEvent)             \
  X(EventGetData)                  \
  X(EventGetDataInfo)              \
  X(EventGetInfo)                  \
  X(TLOpen)                        \
  X(TLClose)                       \
  X(TLGetNumInterfaces)            \
  X(TLGetInterfaceID)              \
  X(TLGetInterfaceInfo)            \
  X(TLOpenInterface)               \
  X(TLUpdateInterfaceList)         \
  X(IFClose)                       \
  X(IFGetNumDevices)               \
  X(IFGetDeviceID)                 \
  X(IFUpdateDeviceList)            \
  X(IFGetDeviceInfo)               \
  X(IFOpenDevice)                  \
  X(DevGetPort)                    \
  X(DevGetNumDataStreams)          \
  X(DevGetDataStreamID)            \
  X(DevOpenDataStream)             \
  X(DevGetInfo)                    \
  X(DevClose)                      \
  X(DSAnnounceBuffer)              \
  X(DSFlushQueue)                  \
  X(DSStartAcquisition)            \
  X(DSStopAcquisition)             \
  X(DSGetInfo)                     \
  X(DSClose)                       \
  X(DSRevokeBuffer)                \
  X(DSQueueBuffer)                 \
  X(DSGetBufferInfo)

/// The functions of one loaded Producer, each under its own name and with its own type.
struct FunctionTable {
// NOLINTNEXTLINE(bugprone-macro-parentheses): a declared name cannot stand in parentheses.
#define LUMIVEX_MEMBER(name) Function<GenTL::P##name> name{#name, nullptr};
  LUMIVEX_GENTL_FUNCTIONS(LUMIVEX_MEMBER)
#undef LUMIVEX_MEMBER
};

/// Calls visit(function) for each function of the table.
template <class Visitor>
void ForEachFunction(FunctionTable &table, Visitor visit) {
#define LUMIVEX_VISIT(name) visit(table.name);
  LUMIVEX_GENTL_FUNCTIONS(LUMIVEX_VISIT)
#undef LUMIVEX_VISIT
}

}  // namespace Lumivex::Consumer
