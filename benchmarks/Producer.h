// SPDX-License-Identifier: MIT
#pragma once

#include "GenTL.h"

namespace Benchmarks {

using namespace GenICam::Client;  // NOLINT: benchmarks speak GenTL

// clang-format off
/// The functions that the benchmarks use. The formatter has no stable way to break this list.
#define LUMIVEX_BENCHMARK_FUNCTIONS(X) \
  X(GCInitLib) X(GCCloseLib) X(GCGetInfo) X(GCGetLastError) X(GCReadPort) X(GCWritePort) X(GCGetPortURL) \
  X(GCGetNumPortURLs) X(GCRegisterEvent) X(EventGetData) X(TLOpen) X(TLClose) X(TLGetNumInterfaces) \
  X(TLOpenInterface) X(TLUpdateInterfaceList) X(IFClose) X(IFUpdateDeviceList) X(IFOpenDevice) X(DevOpenDataStream) \
  X(DevClose) X(DSAnnounceBuffer) X(DSAllocAndAnnounceBuffer) X(DSFlushQueue) X(DSStartAcquisition) \
  X(DSStopAcquisition) X(DSGetInfo) X(DSClose) X(DSQueueBuffer) X(DSGetBufferInfo)
// clang-format on

/// Pointers to the functions of the built Producer, under their own names.
struct Functions {
#define LUMIVEX_MEMBER(name) P##name name = nullptr;
  LUMIVEX_BENCHMARK_FUNCTIONS(LUMIVEX_MEMBER)
#undef LUMIVEX_MEMBER
};

/// The functions; the first call loads the Producer, which stays. Ends the program when it cannot be loaded.
const Functions &Gc();

/// Ends the program with the Producer's text unless the call succeeded: a failing call measures nothing.
void Must(GC_ERROR result, const char *what);

}  // namespace Benchmarks
