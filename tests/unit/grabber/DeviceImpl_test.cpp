// SPDX-License-Identifier: MIT
// The dispatchers of virtual registers, called directly: what no port access reaches.
#include "DeviceImpl.h"

#include <array>
#include <cstring>
#include <memory>

#include <climits>

#include "GrabberFixture.h"
#include "GrbChannelHandle.h"
#include "GrbStreamHandle.h"

namespace GrabberTests {
namespace {

class DeviceImpl : public GrabberTest {
 protected:
  void SetUp() override {
    GrabberTest::SetUp();
    m_pChannel = std::make_shared<CGrbChannelHandle>(kBoard, kChannel, true);
    m_pStream = std::make_shared<CGrbStreamHandle>(kBoard, kChannel, true);
    m_pDevice = std::make_unique<CDeviceImpl>(m_pChannel, m_pStream);
    m_pBare = std::make_unique<CDeviceImpl>(m_pChannel, nullptr);
    m_nMark = Script().Mark();
  }
  void TearDown() override {
    m_pDevice.reset();
    m_pBare.reset();
    m_pStream.reset();
    m_pChannel.reset();
    GrabberTest::TearDown();
  }
  uint32_t Get(CDeviceImpl &device, uint32_t address) {
    uint32_t value = 0;
    m_nSize = sizeof(value);
    device.GetVirtualRegister(address, &value, &m_nSize);
    return value;
  }
  Lines Calls() const { return Script().Trace(m_nMark); }

  std::shared_ptr<CGrbChannelHandle> m_pChannel;
  std::shared_ptr<CGrbStreamHandle> m_pStream;
  std::unique_ptr<CDeviceImpl> m_pDevice;
  std::unique_ptr<CDeviceImpl> m_pBare;  // without a stream handle
  size_t m_nMark = 0;
  size_t m_nSize = 0;
};

std::string Format(const char *format, uint32_t value) {
  char text[128];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

constexpr const char *kSet = "GenICam::Client::CDeviceImpl::SetVirtualRegister";
constexpr const char *kGet = "GenICam::Client::CDeviceImpl::GetVirtualRegister";
constexpr const char *kFile = "DeviceImpl.cpp";

TEST_F(DeviceImpl, WriteOfANullBufferFailsAheadOfAllElse) {
  for (const uint32_t address : {0x4F0U, 0x4F4U, 0x4F8U, 0x604U, 0x608U, 0x1CA0U, 0xFFFFFFFFU}) {
    for (CDeviceImpl *const device : {m_pDevice.get(), m_pBare.get()}) {
      EXPECT_TRUE(Throws<invalidparameter_error>("Null pointer for buffer.", kSet,
                                                 [=] { device->SetVirtualRegister(address, nullptr, 4); }));
    }
  }
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(DeviceImpl, AnswersOneAtAnAddressOfNoRegister) {
  EXPECT_EQ(Get(*m_pDevice, 0x1C4), 1U);
  EXPECT_EQ(Get(*m_pBare, 0x1C4), 1U);
  EXPECT_EQ(m_nSize, 4U);
  uint32_t value = 5;
  EXPECT_TRUE(Throws<unknown_error>("Failed to set parameter 0x000001C4: unknown parameter.", kSet,
                                    [&] { m_pDevice->SetVirtualRegister(0x1C4, &value, 4); }));
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(DeviceImpl, UnknownAddressesFail) {
  uint32_t value = 0;
  size_t size = 4;
  for (const uint32_t address : {0U, 0x3E4U, 0x4ECU, 0x500U, 0x5FCU, 0x608U, 0x610U, 0x634U, 0x144CU, 0x1438U, 0x1854U,
                                 0x1868U, 0x1884U, 0x2038U, 0x2224U, 0x222CU, 0x605U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Failed to set parameter 0x%08X: unknown parameter.", address), kSet,
                                      [&] { m_pDevice->SetVirtualRegister(address, &value, 4); }));
    EXPECT_TRUE(Throws<unknown_error>(Format("Failed to get parameter 0x%08X: unknown parameter.", address), kGet,
                                      [&] { m_pDevice->GetVirtualRegister(address, &value, &size); }));
  }
  EXPECT_EQ(Calls(), Lines());
}

// The missing handle is found ahead of the missing case.
TEST_F(DeviceImpl, WithoutAStreamHandleEveryOtherAddressFails) {
  uint32_t value = 0;
  size_t size = 4;
  for (const uint32_t address : {0U, 0x4FCU, 0x604U, 0x608U, 0x1448U, 0x1850U, 0x1C84U, 0x2218U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(
        Throws<access_error>(Format("Attempting to write at address 0x%08X but there is no ACQ_ONLY handle.", address),
                             kSet, [&] { m_pBare->SetVirtualRegister(address, &value, 4); }));
    EXPECT_TRUE(
        Throws<access_error>(Format("Attempting to read at address 0x%08X but there is no ACQ_ONLY handle.", address),
                             kGet, [&] { m_pBare->GetVirtualRegister(address, &value, &size); }));
  }
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(DeviceImpl, LinkTestsAreKnownHere) {
  const struct {
    uint32_t address;
    const char *name;
    uint32_t write;
    uint32_t read;
  } kRows[] = {{0x2218, "CXP_UPLINK_TEST", 0xC0091301, 0xC0091300},
               {0x221C, "CXP_DOWNLINK_TEST", 0xC0091401, 0xC0091400}};
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.name);
    uint32_t value = 0x12345678;
    size_t mark = Script().Mark();
    m_pDevice->SetVirtualRegister(row.address, &value, 4);
    ASSERT_EQ(Script().Calls(mark).size(), 1U);
    EXPECT_EQ(Script().Calls(mark)[0].code, row.write);
    EXPECT_EQ(Script().Calls(mark)[0].argument, &value);
    EXPECT_EQ(Script().Calls(mark)[0].handle, m_pStream->GetHandle());
    mark = Script().Mark();
    EXPECT_EQ(Get(*m_pDevice, row.address), 0x12345678U);
    EXPECT_EQ(Script().Calls(mark)[0].code, row.read);
    Script().On(Match(Op::ParameterSet), Bang());
    EXPECT_TRUE(ThrowsIn<unknown_error>(
        kFile, std::string("Failed writing Device feature: ") + row.name + ": " + LibraryText("GRB_ParameterSet"), kSet,
        [&] { m_pDevice->SetVirtualRegister(row.address, &value, 4); }));
    Script().On(Match(Op::ParameterGet), Bang());
    EXPECT_TRUE(ThrowsIn<unknown_error>(
        kFile, std::string("Failed reading Device feature: ") + row.name + ": " + LibraryText("GRB_ParameterGet"), kGet,
        [&] { Get(*m_pDevice, row.address); }));
  }
}

// Sizes ---------------------------------------------------------------------------------------------------------------

class DeviceImplSizes : public DeviceImpl, public testing::WithParamInterface<std::pair<uint32_t, size_t>> {
 protected:
  uint32_t Address() const { return GetParam().first; }
  size_t Bytes() const { return GetParam().second; }
};

TEST_P(DeviceImplSizes, ZeroAndEnoughAreSetToTheAnswers) {
  for (const size_t size : {size_t{0}, Bytes(), Bytes() + 1, size_t{64}}) {
    std::array<uint8_t, 64> buffer{};
    m_nSize = size;
    m_pDevice->GetVirtualRegister(Address(), buffer.data(), &m_nSize);
    EXPECT_EQ(m_nSize, Bytes());
  }
}

TEST_P(DeviceImplSizes, TooFewFailAndStay) {
  for (size_t size = 1; size < Bytes(); ++size) {
    std::array<uint8_t, 64> buffer;
    buffer.fill(0xEE);
    m_nSize = size;
    EXPECT_TRUE(Throws<invalidparameter_error>(
        "Invalid Buffer Size.", nullptr, [&] { m_pDevice->GetVirtualRegister(Address(), buffer.data(), &m_nSize); }));
    EXPECT_EQ(m_nSize, size);
    EXPECT_EQ(buffer[0], 0xEE);
  }
}

TEST_P(DeviceImplSizes, NullBufferAsksForTheSize) {
  m_nSize = 77;
  m_pDevice->GetVirtualRegister(Address(), nullptr, &m_nSize);
  EXPECT_EQ(m_nSize, Bytes());
}

TEST_P(DeviceImplSizes, NullSizeFails) {
  std::array<uint8_t, 64> buffer{};
  EXPECT_TRUE(Throws<invalidparameter_error>(
      "Invalid Size.", nullptr, [&] { m_pDevice->GetVirtualRegister(Address(), buffer.data(), nullptr); }));
}

INSTANTIATE_TEST_SUITE_P(Widths, DeviceImplSizes,
                         testing::Values(std::make_pair(0x1C4U, 4U), std::make_pair(0x4F0U, 4U),
                                         std::make_pair(0x4F8U, 4U), std::make_pair(0x4FCU, 4U),
                                         std::make_pair(0x604U, 4U), std::make_pair(0x614U, 4U),
                                         std::make_pair(0x620U, 4U), std::make_pair(0x1850U, 4U),
                                         std::make_pair(0x1858U, 4U), std::make_pair(0x1864U, 4U),
                                         std::make_pair(0x2034U, 8U), std::make_pair(0x205CU, 8U)));

TEST_F(DeviceImpl, BoardPropertiesFollowTheRuleOfTexts) {
  const std::string text = CScriptedGrb::kDefaultProperties;
  std::array<char, 1024> buffer{};
  m_nSize = 0;  // counts as enough
  m_pDevice->GetVirtualRegister(0x1004, buffer.data(), &m_nSize);
  EXPECT_EQ(buffer.data(), text);
  EXPECT_EQ(m_nSize, text.size() + 1);
  m_nSize = text.size();
  EXPECT_TRUE(Throws<invalidparameter_error>("Invalid Buffer Size.", nullptr,
                                             [&] { m_pDevice->GetVirtualRegister(0x1004, buffer.data(), &m_nSize); }));
  m_pDevice->GetVirtualRegister(0x1004, nullptr, &m_nSize);
  EXPECT_EQ(m_nSize, text.size() + 1);
}

// How much the library takes follows from the parameter.
TEST_F(DeviceImpl, WritesDoNotLookAtTheSize) {
  for (const size_t size : {size_t{0}, size_t{1}, size_t{1024}}) {
    uint64_t value = 0x0102030405060708ULL + size;
    m_pDevice->SetVirtualRegister(0x2034, &value, size);
    EXPECT_EQ(Script().Parameter(kBoard, kChannel, GRB_TIMERA1_PERIOD_NS), value);
    uint32_t width = 100 + static_cast<uint32_t>(size);
    m_pDevice->SetVirtualRegister(0x604, &width, size);
    EXPECT_EQ(Script().Parameter(kBoard, kChannel, GRB_ROI_XLENGTH), width);
  }
}

// Files ---------------------------------------------------------------------------------------------------------------

TEST_F(DeviceImpl, FileCommandsCanOnlyBeWritten) {
  size_t size = 4;
  uint32_t value = 0;
  for (const uint32_t address : {0x1448U, 0x1C84U, 0x1CA0U, 0x2074U, 0x20A4U}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Failed to get parameter 0x%08X: unknown parameter.", address), kGet,
                                      [&] { m_pDevice->GetVirtualRegister(address, &value, &size); }));
  }
}

TEST_F(DeviceImpl, ReadOnlyCasesCannotBeWritten) {
  uint32_t value = 0;
  for (const uint32_t address : {0x4FCU, 0x1000U, 0x1004U, 0x1864U, 0x186CU, 0x1870U, 0x1874U, 0x1880U, 0x1CA4U,
                                 0x1CA8U, 0x20B4U, 0x2208U, 0x2214U, 0x2220U}) {
    EXPECT_TRUE(Throws<unknown_error>(Format("Failed to set parameter 0x%08X: unknown parameter.", address), kSet,
                                      [&] { m_pDevice->SetVirtualRegister(address, &value, 4); }));
  }
  EXPECT_EQ(Calls(), Lines());
}

TEST_F(DeviceImpl, SaveTakesTheTextToItsFirstZero) {
  char text[1024] = "a\"b\".gcf\0behind";
  m_pDevice->SetVirtualRegister(0x1C84, text, sizeof(text));
  EXPECT_EQ(Calls(),
            (Lines{"Action(h" + std::to_string(m_pStream->GetHandle()) + ", 0xc0040100, 0xc0040007, \"ab.gcf\")"}));
}

// Shared handles ------------------------------------------------------------------------------------------------------

TEST_F(DeviceImpl, HoldsItsHandles) {
  const GRB_HANDLE stream = m_pStream->GetHandle();
  m_pStream.reset();
  m_pChannel.reset();
  EXPECT_EQ(Get(*m_pDevice, 0x4FC), stream);
  m_pBare.reset();
  m_nMark = Script().Mark();
  m_pDevice.reset();
  // The stream handle goes ahead of the channel handle.
  const std::vector<Call> closes = Script().Calls(Match(Op::Close), m_nMark);
  ASSERT_EQ(closes.size(), 2U);
  EXPECT_EQ(closes[0].handle, stream);
  EXPECT_NE(closes[1].handle, stream);
}

using DeviceImplDeathTest = GrabberTest;

TEST_F(DeviceImplDeathTest, NeedsAChannelHandle) { EXPECT_DEATH(CDeviceImpl(nullptr, nullptr), "pChannelHandle != 0"); }

}  // namespace
}  // namespace GrabberTests
