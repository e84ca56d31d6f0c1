// SPDX-License-Identifier: MIT
#include "DeviceFixture.h"

#include <array>
#include <cstdarg>
#include <cstdio>

namespace DeviceTests {

std::string Format(const char *format, ...) {
  std::array<char, 2048> text{};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return text.data();
}

std::string LibraryText(std::string_view function, GRB_STATUS status, std::string_view description) {
  return std::string(description) + " (" + std::string(function) + Format(" returned error code 0x%x)", status);
}

namespace {

unsigned Word(uint64_t address) { return static_cast<unsigned>(address); }

unsigned long long Wide(uint64_t address) { return address; }

}  // namespace

std::string NotAvailable(uint64_t address) {
  return Format("Register %llX is not available (does not exist).", Wide(address));
}
std::string NotReadable(uint64_t address) { return Format("Register %llX is not readable.", Wide(address)); }
std::string NotWritable(uint64_t address) { return Format("Register %llX is not writable.", Wide(address)); }
std::string NoHandleToRead(uint64_t address) {
  return Format("Attempting to read at address 0x%08X but there is no ACQ_ONLY handle.", Word(address));
}
std::string NoHandleToWrite(uint64_t address) {
  return Format("Attempting to write at address 0x%08X but there is no ACQ_ONLY handle.", Word(address));
}
std::string UnknownToGet(uint64_t address) {
  return Format("Failed to get parameter 0x%08X: unknown parameter.", Word(address));
}
std::string UnknownToSet(uint64_t address) {
  return Format("Failed to set parameter 0x%08X: unknown parameter.", Word(address));
}
std::string FailedWrite(std::string_view name, std::string_view function) {
  return "Failed writing Device feature: " + std::string(name) + ": " + LibraryText(function);
}
std::string FailedRead(std::string_view name, std::string_view function) {
  return "Failed reading Device feature: " + std::string(name) + ": " + LibraryText(function);
}

testing::AssertionResult ComesFrom(const char *function, const char *file) {
  const ErrorRecord error = LastError();
  const std::optional<FailureText> text = SplitFailureText(error.text);
  if (!text.has_value()) {
    return testing::AssertionFailure() << "no function and file in \"" << error.text << "\"";
  }
  if (text->function != function || text->file != file) {
    return testing::AssertionFailure() << "the text names " << text->function << " in " << text->file << ", wanted "
                                       << function << " in " << file;
  }
  return testing::AssertionSuccess();
}

std::string HandleName(GRB_HANDLE handle) { return "h" + std::to_string(handle); }

Lines operator+(Lines left, const Lines &right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Lines OpenCalls(GRB_HANDLE handle, uint32_t mode, uint32_t channel, uint32_t board) {
  const std::string h = HandleName(handle);
  return {"ParameterSet(" + h + Format(", GRB_OPEN_BOARD, 0x%x)", board),
          "ParameterSet(" + h + Format(", GRB_OPEN_CHANNEL, 0x%x)", channel),
          "ParameterSet(" + h + Format(", GRB_OPEN_MODE, 0x%x)", mode),
          "ParameterSet(" + h + ", GRB_OPEN_VARIANT, 0xc0014000)", "Open(" + h + ")"};
}

Lines CreateAndOpenCalls(GRB_HANDLE handle, uint32_t mode, uint32_t channel, uint32_t board) {
  return Lines{"Create() -> " + HandleName(handle)} + OpenCalls(handle, mode, channel, board);
}

Lines IdentityCalls(GRB_HANDLE handle, uint32_t timeout) {
  const std::string h = HandleName(handle);
  return {"ParameterGet(" + h + ", GRB_REV_SW)", "ControlRead(" + h + ", GRB_PORT_CAMERA, 0x4, 4, 400)",
          "ControlRead(" + h + Format(", GRB_PORT_CAMERA, 0x2000, 32, %u)", timeout),
          "ControlRead(" + h + Format(", GRB_PORT_CAMERA, 0x2020, 32, %u)", timeout)};
}

Lines CloseCalls(GRB_HANDLE handle, size_t closes) {
  return Lines(closes, "Close(" + HandleName(handle) + ")") + Lines{"Destroy(" + HandleName(handle) + ")"};
}

std::vector<GRB_HANDLE> DeviceTest::Created(size_t mark) {
  std::vector<GRB_HANDLE> handles;
  for (const Call &call : Script().Calls(Match(Op::Create), mark)) {
    handles.push_back(call.handle);
  }
  return handles;
}

void DeviceTest::Discover() { ASSERT_GC_OK(Gc().IFUpdateDeviceList(OpenInterface(), nullptr, 0)); }

void DeviceTest::CloseDevice() {
  EXPECT_GC_OK(Gc().DevClose(m_hDevice));
  m_hDevice = nullptr;
  m_hStream = nullptr;
}

void OpenDeviceTest::SetUp() {
  DeviceTest::SetUp();
  ASSERT_NE(OpenDevice(), nullptr);
}

void SettingsTest::TearDown() {
  DeviceTest::TearDown();
  CProducer::Instance().Unload();
}

void SettingsTest::Apply() {
  m_Settings.Write();
  Reinitialise();
}

}  // namespace DeviceTests
