// SPDX-License-Identifier: MIT
// The Device and its remote port made by hand: records and parents that discovery does not give.
#include "Device.h"

#include <array>
#include <memory>

#include "DeviceInfo.h"
#include "DevicePortCxp.h"
#include "GenTL.h"
#include "GrabberFixture.h"
#include "GrbChannelHandle.h"
#include "Interface.h"
#include "InterfaceInfo.h"
#include "TL.h"

namespace GrabberTests {
namespace {

class DeviceByHand : public GrabberTest {
 protected:
  void SetUp() override {
    GrabberTest::SetUp();
    m_pInterface =
        CInterface::Create(std::make_shared<CTL>(), std::make_shared<CInterfaceInfo>("If", "Interface", "CXP", kBoard));
  }
  void TearDown() override {
    m_pInterface.reset();
    GrabberTest::TearDown();
  }
  static std::shared_ptr<CDeviceInfo> Info(const std::string &type = "CXP", const std::string &text = "text") {
    return std::make_shared<CDeviceInfo>(DEVICE_ACCESS_STATUS_READWRITE, text, text, text, text, type, kBoard,
                                         kChannel);
  }
  static std::string Text(CDevice &device, uint64_t address, size_t size) {
    std::vector<char> text(size + 1);
    device.ReadData(address, text.data(), &size);
    return text.data();
  }
  std::shared_ptr<CInterface> m_pInterface;
};

TEST_F(DeviceByHand, PortOfAnotherTechnologyIsNotImplemented) {
  for (const char *type : {"", "CX", "cxp", "CXP ", "GEV"}) {
    const std::shared_ptr<CDevice> device = CDevice::Create(m_pInterface, Info(type), DEVICE_ACCESS_READONLY);
    int marker = 0;
    PORT_HANDLE port = &marker;
    EXPECT_TRUE(Throws<notimplemented_error>("Unsupported TL technology.", "GenICam::Client::CDevice::GetPort",
                                             [&] { device->GetPort(&port); }));
    EXPECT_EQ(port, &marker);
    EXPECT_TRUE(Throws<invalidparameter_error>("Null pointer for Port handle", "GenICam::Client::CDevice::GetPort",
                                               [&] { device->GetPort(nullptr); }));
  }
}

// The type of the port stays, whatever the record says.
TEST_F(DeviceByHand, PortInfoHasItsOwnType) {
  const std::shared_ptr<CDevice> device = CDevice::Create(m_pInterface, Info("GEV"), DEVICE_ACCESS_READONLY);
  INFO_DATATYPE type = 0;
  std::array<char, 64> text{};
  size_t size = text.size();
  device->GetPortInfo(PORT_INFO_TLTYPE, &type, text.data(), &size);
  EXPECT_STREQ(text.data(), "CXP");
  size = text.size();
  device->GetInfo(DEVICE_INFO_TLTYPE, &type, text.data(), &size);
  EXPECT_STREQ(text.data(), "GEV");
}

// Texts of any length are cut to their register less one.
TEST_F(DeviceByHand, LongTextsAreCutToTheirRegisters) {
  const std::string text = std::string(300, 't') + "end";
  const std::shared_ptr<CDevice> device = CDevice::Create(m_pInterface, Info("CXP", text), DEVICE_ACCESS_READONLY);
  EXPECT_EQ(Text(*device, 0x000, 256), text.substr(0, 255));
  EXPECT_EQ(Text(*device, 0x100, 64), text.substr(0, 63));
  EXPECT_EQ(Text(*device, 0x140, 64), text.substr(0, 63));
  EXPECT_EQ(Text(*device, 0x2E0, 256), text.substr(0, 255));
  EXPECT_EQ(device->GetName(), text);
}

TEST_F(DeviceByHand, UrlsOwnChecks) {
  const std::shared_ptr<CDevice> device = CDevice::Create(m_pInterface, Info(), DEVICE_ACCESS_READONLY);
  std::array<char, 64> text{};
  EXPECT_TRUE(Throws<invalidparameter_error>("Invalid Size.", nullptr, [&] { device->GetURL(text.data(), nullptr); }));
  size_t size = 0;  // a size of 0 counts as enough here
  device->GetURL(text.data(), &size);
  EXPECT_EQ(size, 38U);
  EXPECT_STREQ(text.data(), "Local:LumivexTLDevice.xml;222c;24cd8");
}

// The remote port by itself -------------------------------------------------------------------------------------------

class PortByHand : public GrabberTest {
 protected:
  void SetUp() override {
    GrabberTest::SetUp();
    m_pChannel = std::make_shared<CGrbChannelHandle>(kBoard, kChannel, true);
    m_nMark = Script().Mark();
  }
  void TearDown() override {
    m_pChannel.reset();
    GrabberTest::TearDown();
  }
  std::shared_ptr<CGrbChannelHandle> m_pChannel;
  size_t m_nMark = 0;
};

TEST_F(PortByHand, LinkConfigurationNeedsTheParent) {
  CDevicePortCxp port(m_pChannel, DEVICE_ACCESS_CONTROL, nullptr);
  const std::array<uint8_t, 4> bytes = {0, 2, 0, 0x40};
  size_t size = bytes.size();
  EXPECT_TRUE(ThrowsIn<unknown_error>(
      "DevicePortCxp.cpp",
      "Writing to remote device LinkConfig register (0x4014): failed to retrieve handle to parent Device",
      "GenICam::Client::CDevicePortCxp::WriteData", [&] { port.WriteData(0x4014, bytes.data(), &size); }));
  // The parent is missed ahead of a value that is wrong, and behind a size that is.
  const std::array<uint8_t, 4> wrong = {0, 3, 0, 0x41};
  EXPECT_TRUE(ThrowsIn<unknown_error>(
      "DevicePortCxp.cpp",
      "Writing to remote device LinkConfig register (0x4014): failed to retrieve handle to parent Device",
      "GenICam::Client::CDevicePortCxp::WriteData", [&] { port.WriteData(0x4014, wrong.data(), &size); }));
  size = 2;
  EXPECT_NO_THROW(port.WriteData(0x4014, bytes.data(), &size));
  EXPECT_EQ(Script().Trace(m_nMark), Lines());
}

TEST_F(PortByHand, ChecksItsPointers) {
  CDevicePortCxp port(m_pChannel, DEVICE_ACCESS_CONTROL, nullptr);
  std::array<uint8_t, 4> bytes{};
  size_t size = 4;
  EXPECT_TRUE(Throws<invalidparameter_error>("Null pBuffer pointer", nullptr,
                                             [&] { port.ReadData(0x9000, nullptr, nullptr); }));
  EXPECT_TRUE(Throws<invalidparameter_error>("Null iSize pointer", nullptr,
                                             [&] { port.ReadData(0x9000, bytes.data(), nullptr); }));
  EXPECT_TRUE(Throws<invalidparameter_error>("Null pBuffer pointer", nullptr,
                                             [&] { port.WriteData(0x9000, nullptr, nullptr); }));
  EXPECT_TRUE(Throws<invalidparameter_error>("Null iSize pointer", nullptr,
                                             [&] { port.WriteData(0x9000, bytes.data(), nullptr); }));
  EXPECT_TRUE(
      Throws<invalidparameter_error>("Null pBuffer pointer", nullptr, [&] { port.WriteData(0x4014, nullptr, &size); }));
  EXPECT_TRUE(Throws<invalidparameter_error>("Null size pointer", nullptr,
                                             [&] { port.GetURL(reinterpret_cast<char *>(bytes.data()), nullptr); }));
  EXPECT_EQ(Script().Trace(m_nMark), Lines());
}

TEST_F(PortByHand, HasItsName) {
  EXPECT_EQ(CDevicePortCxp(m_pChannel, DEVICE_ACCESS_CONTROL, nullptr).GetName(), "Remote Device");
}

// Assertions ----------------------------------------------------------------------------------------------------------

using DeviceDeathTest = DeviceByHand;

TEST_F(DeviceDeathTest, NeedsItsParentAndItsRecord) {
  EXPECT_DEATH(CDevice::Create(nullptr, Info(), DEVICE_ACCESS_READONLY), "pParentInterface");
  EXPECT_DEATH(CDevice::Create(m_pInterface, nullptr, DEVICE_ACCESS_READONLY), "pDeviceInfo");
}

TEST_F(DeviceDeathTest, RemotePortNeedsAChannelHandle) {
  EXPECT_DEATH(CDevicePortCxp(nullptr, DEVICE_ACCESS_CONTROL, nullptr), "pGrbChannelHandle");
}

}  // namespace
}  // namespace GrabberTests
