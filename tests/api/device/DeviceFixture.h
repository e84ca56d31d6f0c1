// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Producer.h"
#include "ScriptedGrb.h"

/// What the tests of the Device and its remote port share: the default board and channel, texts, and expected calls.
namespace DeviceTests {

using namespace TestSupport;  // NOLINT
using namespace Scripted;     // NOLINT

using Lines = std::vector<std::string>;

constexpr uint32_t kBoard = GRB_BOARD_1;
constexpr uint32_t kChannel = GRB_CHANNEL_1;
/// Access flags that open the Device without a stream handle and still let writes pass.
constexpr DEVICE_ACCESS_FLAGS kCustomAccess = DEVICE_ACCESS_CUSTOM_ID;
/// A status with no meaning of its own.
constexpr GRB_STATUS kStatus = 0x8123;
/// The default of the camera transfers' timeout.
constexpr uint32_t kTimeOut = 800;
/// The timeout of the identity reads.
constexpr uint32_t kIdentityTimeOut = 400;

/// printf into a string.
std::string Format(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// The words that a failing function of the library leaves for the calling thread.
std::string LibraryText(std::string_view function, GRB_STATUS status = kStatus, std::string_view description = "Bang.");

/// A failure of the library with those words.
inline Reply Bang(GRB_STATUS status = kStatus) { return Reply::Failure(status, "Bang."); }

std::string NotAvailable(uint64_t address);
std::string NotReadable(uint64_t address);
std::string NotWritable(uint64_t address);
std::string NoHandleToRead(uint64_t address);
std::string NoHandleToWrite(uint64_t address);
std::string UnknownToGet(uint64_t address);
std::string UnknownToSet(uint64_t address);
/// "Failed writing Device feature: <name>: <words of GRB_ParameterSet or another function>"
std::string FailedWrite(std::string_view name, std::string_view function = "GRB_ParameterSet");
std::string FailedRead(std::string_view name, std::string_view function = "GRB_ParameterGet");

/// Where the failures of features come from, whatever small function finds them.
constexpr const char *kFeatureWrite = "GenICam::Client::CDeviceImpl::SetVirtualRegister";
constexpr const char *kFeatureRead = "GenICam::Client::CDeviceImpl::GetVirtualRegister";
constexpr const char *kFeatureFile = "DeviceImpl.cpp";
/// Whether the calling thread's failure names this function, without parentheses, and this file.
testing::AssertionResult ComesFrom(const char *function, const char *file);

/// The address of no object that a test asks for: what a failing call must leave in an out variable.
inline void *Marker() {
  static int marker = 0;
  return &marker;
}

/// The calls that set the open parameters and open: of a handle that has been created.
Lines OpenCalls(GRB_HANDLE handle, uint32_t mode, uint32_t channel = kChannel, uint32_t board = kBoard);
/// GRB_Create and the above.
Lines CreateAndOpenCalls(GRB_HANDLE handle, uint32_t mode, uint32_t channel = kChannel, uint32_t board = kBoard);
/// The calls that ask library and camera who they are.
Lines IdentityCalls(GRB_HANDLE handle, uint32_t timeout = kIdentityTimeOut);
/// GRB_Close, times over, and GRB_Destroy.
Lines CloseCalls(GRB_HANDLE handle, size_t closes = 1);
Lines operator+(Lines left, const Lines &right);

std::string HandleName(GRB_HANDLE handle);

/// A Producer with a script, and short words for the handles of the default channel.
class DeviceTest : public ProducerTest {
 protected:
  static GRB_HANDLE ControlHandle() { return Script().OpenHandle(kBoard, kChannel, GRB_MODE_CONTROL); }
  static GRB_HANDLE StreamHandle() { return Script().OpenHandle(kBoard, kChannel, GRB_MODE_ACQ_ONLY); }
  static void SetParameter(uint32_t identifier, uint64_t value) {
    Script().SetParameter(kBoard, kChannel, identifier, value);
  }
  static uint64_t Parameter(uint32_t identifier) { return Script().Parameter(kBoard, kChannel, identifier); }
  /// The handles of all GRB_Create calls since the mark.
  static std::vector<GRB_HANDLE> Created(size_t mark);

  /// Fills the Interface's list, so that a later open does not.
  void Discover();
  /// Closes the Device; the next OpenDevice() opens it anew.
  void CloseDevice();
};

/// The same, with the Device open and all rights.
class OpenDeviceTest : public DeviceTest {
 protected:
  void SetUp() override;
};

/// A DeviceTest that may change the settings. The values live as long as the library is loaded, so it is unloaded at
/// the end.
class SettingsTest : public DeviceTest {
 protected:
  void TearDown() override;

  /// Has the settings file read.
  void Apply();

  CSettingsFile m_Settings;
};

}  // namespace DeviceTests
