// SPDX-License-Identifier: MIT
// IFGetDeviceInfo and DevGetInfo: the answers of a camera's record, and how they fill type, buffer and size.
#include <ostream>

#include <climits>

#include "DeviceFixture.h"

namespace {

using namespace DeviceTests;  // NOLINT

struct InfoRow {
  DEVICE_INFO_CMD command;
  const char *text;
};

std::ostream &operator<<(std::ostream &out, const InfoRow &row) { return out << row.command; }

constexpr InfoRow kTexts[] = {
    {DEVICE_INFO_ID, "Channel #1"},
    {DEVICE_INFO_VENDOR, "Lumivex Optics"},
    {DEVICE_INFO_MODEL, "Testcam 1"},
    {DEVICE_INFO_TLTYPE, "CXP"},
    {DEVICE_INFO_DISPLAYNAME, "Lumivex Optics Testcam 1(Channel #1)"},
};

class DeviceInfoText : public DeviceTest, public testing::WithParamInterface<InfoRow> {
 protected:
  static void ExpectText(const Info &info) {
    const std::string text = GetParam().text;
    EXPECT_EQ(info.result, GC_ERR_SUCCESS);
    EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
    EXPECT_EQ(info.size, text.size() + 1);
    EXPECT_EQ(info.Text(), text);
  }
};

TEST_P(DeviceInfoText, OfAListedDevice) {
  Discover();
  ExpectText(DeviceInfo(m_hInterface, "Channel #1", GetParam().command));
}

TEST_P(DeviceInfoText, OfAnOpenDevice) { ExpectText(DevInfo(OpenDevice(), GetParam().command)); }

TEST_P(DeviceInfoText, OfADeviceOpenForReading) {
  ExpectText(DevInfo(OpenDevice(DEVICE_ACCESS_READONLY), GetParam().command));
}

INSTANTIATE_TEST_SUITE_P(Commands, DeviceInfoText, testing::ValuesIn(kTexts));

using DeviceInfoOfDevice = DeviceTest;

// A record that took its words from the first channel only would show here.
TEST_F(DeviceInfoOfDevice, EachChannelHasItsOwnWords) {
  Script().SetCamera(kBoard, GRB_CHANNEL_2, CCamera().Vendor("Other Works").Model("Eye"));
  Discover();
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_ID).Text(), "Channel #2");
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_VENDOR).Text(), "Other Works");
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_MODEL).Text(), "Eye");
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_DISPLAYNAME).Text(), "Other Works Eye(Channel #2)");
}

// The registers need not hold a terminator.
TEST_F(DeviceInfoOfDevice, TextsThatFillTheirRegistersAreWhole) {
  const std::string vendor = "Vendor that fills 32 characters!";
  const std::string model = "Model that fills 32 characters!!";
  ASSERT_EQ(vendor.size(), 32U);
  ASSERT_EQ(model.size(), 32U);
  Script().SetCamera(kBoard, kChannel, CCamera().Vendor(vendor).Model(model));
  OpenDevice();
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_VENDOR).Text(), vendor);
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_MODEL).Text(), model);
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_DISPLAYNAME).Text(), vendor + " " + model + "(Channel #1)");
}

TEST_F(DeviceInfoOfDevice, EmptyTextsTakeOneByte) {
  Script().SetCamera(kBoard, kChannel, CCamera().Vendor("").Model(""));
  OpenDevice();
  const Info vendor = DevInfo(m_hDevice, DEVICE_INFO_VENDOR);
  EXPECT_EQ(vendor.size, 1U);
  EXPECT_EQ(vendor.Text(), "");
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_DISPLAYNAME).Text(), " (Channel #1)");
}

TEST_F(DeviceInfoOfDevice, ListedStatusTellsWhetherTheCameraIsFree) {
  Script().SetHeldElsewhere(kBoard, GRB_CHANNEL_2, true);
  Discover();
  const Info free = DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS);
  EXPECT_EQ(free.type, INFO_DATATYPE_INT32);
  EXPECT_EQ(free.As<int32_t>(), DEVICE_ACCESS_STATUS_READWRITE);
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #2", DEVICE_INFO_ACCESS_STATUS).As<int32_t>(),
            DEVICE_ACCESS_STATUS_NOACCESS);
}

TEST_F(DeviceInfoOfDevice, StatusOfTheListStaysWhatDiscoveryFound) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_ACCESS_STATUS).As<int32_t>(), DEVICE_ACCESS_STATUS_READONLY);
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS).As<int32_t>(),
            DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(DeviceInfoOfDevice, ADeviceOfOurOwnIsNotFreeAtTheNextDiscovery) {
  OpenDevice(DEVICE_ACCESS_CONTROL);
  ASSERT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_ACCESS_STATUS).As<int32_t>(),
            DEVICE_ACCESS_STATUS_NOACCESS);
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_ACCESS_STATUS).As<int32_t>(), DEVICE_ACCESS_STATUS_READWRITE);
}

struct StatusRow {
  DEVICE_ACCESS_FLAGS flags;
  DEVICE_ACCESS_STATUS status;
};

constexpr StatusRow kStatuses[] = {
    {DEVICE_ACCESS_READONLY, DEVICE_ACCESS_STATUS_READONLY},
    {DEVICE_ACCESS_CONTROL, DEVICE_ACCESS_STATUS_READWRITE},
    {DEVICE_ACCESS_EXCLUSIVE, DEVICE_ACCESS_STATUS_READWRITE},
    {1000, DEVICE_ACCESS_STATUS_NOACCESS},
    {1001, DEVICE_ACCESS_STATUS_NOACCESS},
    {INT_MAX, DEVICE_ACCESS_STATUS_NOACCESS},
};

class DeviceInfoStatus : public DeviceTest, public testing::WithParamInterface<StatusRow> {};

TEST_P(DeviceInfoStatus, FollowsTheFlagsOfTheOpen) {
  const Info info = DevInfo(OpenDevice(GetParam().flags), DEVICE_INFO_ACCESS_STATUS);
  EXPECT_EQ(info.type, INFO_DATATYPE_INT32);
  EXPECT_EQ(info.size, 4U);
  EXPECT_EQ(info.As<int32_t>(), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(Flags, DeviceInfoStatus, testing::ValuesIn(kStatuses));

class DeviceInfoUnknown : public DeviceTest, public testing::WithParamInterface<DEVICE_INFO_CMD> {};

TEST_P(DeviceInfoUnknown, CommandFailsAndLeavesTheCallersPlaces) {
  OpenDevice();
  const std::string message = Format("Unknown DEVICE_INFO_CMD 0x%08X.", static_cast<unsigned>(GetParam()));
  INFO_DATATYPE type = Info::kUntouchedType;
  char buffer[64] = "untouched";
  size_t size = sizeof(buffer);
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, message, Gc().DevGetInfo(m_hDevice, GetParam(), &type, buffer, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, message,
            Gc().IFGetDeviceInfo(m_hInterface, "Channel #1", GetParam(), &type, buffer, &size));
  EXPECT_STREQ(buffer, "untouched");
  EXPECT_EQ(size, sizeof(buffer));
}

INSTANTIATE_TEST_SUITE_P(Commands, DeviceInfoUnknown, testing::Values(6, 7, 8, 9, 100, 1000, -1, INT_MAX));

using DeviceInfoMarshalling = OpenDeviceTest;

TEST_F(DeviceInfoMarshalling, NullBufferAsksForTheSizeWhateverTheSizeWas) {
  for (const size_t before : {size_t{0}, size_t{3}, size_t{4096}}) {
    size_t size = before;
    INFO_DATATYPE type = Info::kUntouchedType;
    EXPECT_GC_OK(Gc().DevGetInfo(m_hDevice, DEVICE_INFO_MODEL, &type, nullptr, &size));
    EXPECT_EQ(size, sizeof("Testcam 1"));
    EXPECT_EQ(type, INFO_DATATYPE_STRING);
  }
}

TEST_F(DeviceInfoMarshalling, ExactSizeIsEnough) {
  char buffer[sizeof("Testcam 1") + 1];
  buffer[sizeof(buffer) - 1] = '#';
  size_t size = sizeof("Testcam 1");
  INFO_DATATYPE type = Info::kUntouchedType;
  EXPECT_GC_OK(Gc().DevGetInfo(m_hDevice, DEVICE_INFO_MODEL, &type, buffer, &size));
  EXPECT_STREQ(buffer, "Testcam 1");
  EXPECT_EQ(buffer[sizeof(buffer) - 1], '#');
  EXPECT_EQ(size, sizeof("Testcam 1"));
}

TEST_F(DeviceInfoMarshalling, OneByteTooFewFailsWithTheTypeWrittenAndTheSizeKept) {
  char buffer[] = "untouched";
  size_t size = sizeof("Testcam 1") - 1;
  INFO_DATATYPE type = Info::kUntouchedType;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().DevGetInfo(m_hDevice, DEVICE_INFO_MODEL, &type, buffer, &size));
  EXPECT_EQ(type, INFO_DATATYPE_STRING);
  EXPECT_EQ(size, sizeof("Testcam 1") - 1);
  EXPECT_STREQ(buffer, "untouched");
}

TEST_F(DeviceInfoMarshalling, LargerSizeShrinksToTheAnswer) {
  int32_t status[4] = {};
  size_t size = sizeof(status);
  INFO_DATATYPE type = Info::kUntouchedType;
  EXPECT_GC_OK(Gc().DevGetInfo(m_hDevice, DEVICE_INFO_ACCESS_STATUS, &type, status, &size));
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(type, INFO_DATATYPE_INT32);
  size = 3;
  type = Info::kUntouchedType;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
            Gc().DevGetInfo(m_hDevice, DEVICE_INFO_ACCESS_STATUS, &type, status, &size));
  EXPECT_EQ(type, INFO_DATATYPE_INT32);
  EXPECT_EQ(size, 3U);
}

// The order of the checks: type, size, room; and all of them ahead of the module.
TEST_F(DeviceInfoMarshalling, EntryChecksComeInTheirOrder) {
  constexpr const char *kFunction = "GenICam::Client::DevGetInfo";
  char buffer[64];
  size_t size = 0;
  INFO_DATATYPE type = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null type pointer.", kFunction,
                 Gc().DevGetInfo(m_hDevice, 99, nullptr, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", kFunction,
                 Gc().DevGetInfo(m_hDevice, 99, &type, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", kFunction,
                 Gc().DevGetInfo(m_hDevice, 99, &type, buffer, &size));
}

// The record is of the discovery, the remote port's words are of the open; a later discovery changes neither.
TEST_F(DeviceInfoOfDevice, OpenDeviceKeepsItsRecord) {
  Discover();
  Script().SetCamera(kBoard, kChannel, CCamera().Vendor("New").Model("Other"));
  OpenDevice();
  PORT_HANDLE port = OpenRemotePort();
  ASSERT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0));
  EXPECT_EQ(DeviceInfo(m_hInterface, "Channel #1", DEVICE_INFO_MODEL).Text(), "Other");
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_MODEL).Text(), "Testcam 1");
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_DISPLAYNAME).Text(), "Lumivex Optics Testcam 1(Channel #1)");
  EXPECT_EQ(ReadText(m_hDevice, 0x140, 64), "Testcam 1");
  EXPECT_EQ(PortInfo(port, PORT_INFO_VENDOR).Text(), "New");
  EXPECT_EQ(PortInfo(port, PORT_INFO_MODEL).Text(), "Other");
}

}  // namespace
