// SPDX-License-Identifier: MIT
// Transfers of the camera's registers: timeouts, chunks, statuses and the messages of failures.
#include <ostream>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

constexpr uint32_t kWholeTransfers = 0x70511;
constexpr uint32_t kCxp10 = 0x00010000;
constexpr uint32_t kCxp11 = 0x00010001;
constexpr uint32_t kOwnTiming = 0xFFFFFFFE;
constexpr uint32_t kAddress = 0x9000;

/// An open Device over a library and a camera of chosen revisions.
class CameraTransfer : public SettingsTest {
 protected:
  void OpenWith(uint32_t library, uint32_t camera) {
    SetParameter(GRB_REV_SW, library);
    Script().WriteCameraU32(kBoard, kChannel, 0x4, camera);
    Discover();
    m_nMark = Script().Mark();
    OpenDevice();
    m_hPort = OpenRemotePort();
  }
  Lines Calls() {
    Lines calls = Script().Trace(m_nMark);
    m_nMark = Script().Mark();
    return calls;
  }
  static std::string Read(uint32_t address, uint32_t size, uint32_t timeout) {
    return "ControlRead(" + HandleName(ControlHandle()) +
           Format(", GRB_PORT_CAMERA, 0x%x, %u, %u)", address, size, timeout);
  }
  GC_ERROR ReadSome(uint64_t address, size_t size) {
    m_Buffer.assign(size, 0xEE);
    return Gc().GCReadPort(m_hPort, address, m_Buffer.data(), &size);
  }

  PORT_HANDLE m_hPort = nullptr;
  size_t m_nMark = 0;
  std::vector<uint8_t> m_Buffer;
};

// Timeouts ------------------------------------------------------------------------------------------------------------

struct TimingRow {
  uint32_t library;
  uint32_t camera;
  bool chunks;
  bool ownTiming;
};

std::ostream &operator<<(std::ostream &out, const TimingRow &row) {
  return out << Format("library 0x%x, camera 0x%x", row.library, row.camera);
}

constexpr TimingRow kTimings[] = {
    {kWholeTransfers - 1, kCxp10, true, false},
    {kWholeTransfers - 1, kCxp11, true, false},
    {0, kCxp11, true, false},
    {kWholeTransfers, kCxp10, false, false},
    {kWholeTransfers, kCxp11, false, true},
    {0xFFFFFFFF, kCxp10, false, false},
    {0xFFFFFFFF, kCxp11, false, true},
    {kWholeTransfers, 0x00020000, false, false},
    {kWholeTransfers, 0x00010002, false, false},
    {kWholeTransfers, 0x01000100, false, false},
};

class CameraTiming : public CameraTransfer, public testing::WithParamInterface<TimingRow> {
 protected:
  static uint32_t TimeOut(uint32_t plain) { return GetParam().ownTiming ? kOwnTiming : plain; }
};

TEST_P(CameraTiming, OfReads) {
  OpenWith(GetParam().library, GetParam().camera);
  Calls();
  EXPECT_GC_OK(ReadSome(kAddress, 100));
  if (GetParam().chunks) {
    EXPECT_EQ(Calls(), (Lines{Read(kAddress, 64, kTimeOut), Read(kAddress + 64, 36, kTimeOut)}));
  } else {
    EXPECT_EQ(Calls(), (Lines{Read(kAddress, 100, TimeOut(kTimeOut))}));
  }
}

// A write is never split.
TEST_P(CameraTiming, OfWrites) {
  OpenWith(GetParam().library, GetParam().camera);
  Calls();
  EXPECT_GC_OK(WriteBytes(m_hPort, kAddress, std::vector<uint8_t>(100)));
  EXPECT_EQ(Calls(),
            (Lines{"ControlWrite(" + HandleName(ControlHandle()) +
                   Format(", GRB_PORT_CAMERA, 0x9000, 100, %u, ", TimeOut(kTimeOut)) + std::string(200, '0') + ")"}));
}

// The camera's revision is known from the first read on.
TEST_P(CameraTiming, OfTheIdentityReads) {
  OpenWith(GetParam().library, GetParam().camera);
  const GRB_HANDLE control = ControlHandle();
  const Lines identity = Script().Trace(Match(Op::ControlRead).Handle(control));
  EXPECT_EQ(identity, (Lines{Read(0x4, 4, 400), Read(0x2000, 32, TimeOut(400)), Read(0x2020, 32, TimeOut(400))}));
}

TEST_P(CameraTiming, OfTheRegisterTrio) {
  OpenWith(GetParam().library, GetParam().camera);
  Calls();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x4F8, 0x57));
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x4F8, 0x52));
  const std::vector<Call> calls = Script().Calls(m_nMark);
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].timeout, TimeOut(kTimeOut));
  EXPECT_EQ(calls[1].timeout, TimeOut(kTimeOut));
}

// Messages print the caller's timeout in any case.
TEST_P(CameraTiming, OfMessages) {
  m_Settings.Dword("TimeOut", 77);
  Apply();
  OpenWith(GetParam().library, GetParam().camera);
  const std::string words = "\n" + LibraryText("GRB_ControlWrite", GRB_WARNING_TIMEOUT);
  Script().On(Match(Op::ControlWrite), Bang(GRB_WARNING_TIMEOUT).Moved(2));
  EXPECT_GC(GC_ERR_TIMEOUT,
            "Timeout while writing 4 bytes to address 0x9000 in camera, 2 bytes written, timeout value was 77." + words,
            WriteU32Be(m_hPort, kAddress, 1));
}

INSTANTIATE_TEST_SUITE_P(Revisions, CameraTiming, testing::ValuesIn(kTimings));

// Chunks --------------------------------------------------------------------------------------------------------------

struct ChunkRow {
  size_t size;
  std::vector<uint32_t> chunks;
};

std::ostream &operator<<(std::ostream &out, const ChunkRow &row) { return out << row.size; }

class CameraChunks : public CameraTransfer, public testing::WithParamInterface<ChunkRow> {};

TEST_P(CameraChunks, CoverTheReadOfAnOldLibrary) {
  std::vector<uint8_t> bytes(GetParam().size);
  for (size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<uint8_t>(i * 3 + 1);
  }
  Script().SetCamera(kBoard, kChannel, CCamera().Bytes(kAddress, bytes));
  OpenWith(kWholeTransfers - 1, kCxp10);
  Calls();
  EXPECT_GC_OK(ReadSome(kAddress, GetParam().size));
  EXPECT_EQ(m_Buffer, bytes);
  Lines expected;
  uint32_t address = kAddress;
  for (const uint32_t chunk : GetParam().chunks) {
    expected.push_back(Read(address, chunk, kTimeOut));
    address += chunk;
  }
  EXPECT_EQ(Calls(), expected);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CameraChunks,
                         testing::Values(ChunkRow{1, {1}}, ChunkRow{4, {4}}, ChunkRow{63, {63}}, ChunkRow{64, {64}},
                                         ChunkRow{65, {64, 1}}, ChunkRow{128, {64, 64}}, ChunkRow{129, {64, 64, 1}},
                                         ChunkRow{200, {64, 64, 64, 8}}));

class CameraChunkFailure : public CameraTransfer {
 protected:
  void SetUp() override {
    CameraTransfer::SetUp();
    OpenWith(kWholeTransfers - 1, kCxp10);
    Calls();
  }
};

// The total stands where the bytes read stand otherwise, the size is 0, and the address is the last chunk's.
TEST_F(CameraChunkFailure, TimeoutOfTheSecondChunk) {
  Script().On(Match(Op::ControlRead).Address(0x140), Bang(GRB_WARNING_TIMEOUT).Moved(5));
  EXPECT_GC(GC_ERR_TIMEOUT,
            "Timeout while reading 0 bytes from address 0x140 in camera, 128 bytes read, timeout value was 800.\n" +
                LibraryText("GRB_ControlRead", GRB_WARNING_TIMEOUT),
            ReadSome(0x100, 128));
  EXPECT_EQ(Calls().size(), 2U);
}

TEST_F(CameraChunkFailure, ErrorOfTheFirstChunk) {
  Script().On(Match(Op::ControlRead).Address(0xABC0), Bang());
  EXPECT_GC(
      GC_ERR_IO,
      "Error while reading 0 bytes from address 0xabc0 in camera, 200 bytes read.\n" + LibraryText("GRB_ControlRead"),
      ReadSome(0xABC0, 200));
  EXPECT_EQ(Calls().size(), 1U);
}

TEST_F(CameraChunkFailure, ShortChunkEndsTheReadWithoutAFailure) {
  Script().On(Match(Op::ControlRead).Address(kAddress + 64), Reply::Status(GRB_OK).Moved(63));
  EXPECT_GC_OK(ReadSome(kAddress, 200));
  EXPECT_EQ(Calls().size(), 2U);
}

TEST_F(CameraChunkFailure, PassedStatusEndsTheReadWithoutAFailure) {
  Script().On(Match(Op::ControlRead).Address(kAddress), Reply::Status(GRB_WARNING_PASSED));
  EXPECT_GC_OK(ReadSome(kAddress, 200));
  EXPECT_EQ(Calls().size(), 1U);
}

// Statuses and messages -----------------------------------------------------------------------------------------------

class CameraStatus : public CameraTransfer, public testing::WithParamInterface<uint32_t> {
 protected:
  void SetUp() override {
    CameraTransfer::SetUp();
    OpenWith(kWholeTransfers, GetParam());
    Calls();
  }
};

TEST_P(CameraStatus, TimeoutOfARead) {
  Script().On(Match(Op::ControlRead), Bang(GRB_WARNING_TIMEOUT).Moved(3));
  EXPECT_GC_FROM(GC_ERR_TIMEOUT,
                 "Timeout while reading 100 bytes from address 0x9abc in camera, 3 bytes read, timeout value was "
                 "800.\n" +
                     LibraryText("GRB_ControlRead", GRB_WARNING_TIMEOUT),
                 "GenICam::Client::CGrbChannelHandle::CameraRead", ReadSome(0x9ABC, 100));
}

TEST_P(CameraStatus, ErrorOfARead) {
  for (const GRB_STATUS status : {1U, 0x8001U, 0x8004U, 0x8006U, 0xFFFFFFFFU}) {
    Script().On(Match(Op::ControlRead), Bang(status).Moved(3));
    EXPECT_GC(GC_ERR_IO,
              "Error while reading 100 bytes from address 0x9abc in camera, 3 bytes read.\n" +
                  LibraryText("GRB_ControlRead", status),
              ReadSome(0x9ABC, 100));
  }
}

TEST_P(CameraStatus, TimeoutOfAWrite) {
  Script().On(Match(Op::ControlWrite), Bang(GRB_WARNING_TIMEOUT).Moved(1));
  EXPECT_GC_FROM(
      GC_ERR_TIMEOUT,
      "Timeout while writing 5 bytes to address 0x9abc in camera, 1 bytes written, timeout value was 800.\n" +
          LibraryText("GRB_ControlWrite", GRB_WARNING_TIMEOUT),
      "GenICam::Client::CGrbChannelHandle::CameraWrite", WriteBytes(m_hPort, 0x9ABC, std::vector<uint8_t>(5)));
}

TEST_P(CameraStatus, ErrorOfAWrite) {
  for (const GRB_STATUS status : {1U, 0x8001U, 0x8004U, 0x8006U, 0xFFFFFFFFU}) {
    Script().On(Match(Op::ControlWrite), Bang(status).Moved(1));
    EXPECT_GC(GC_ERR_IO,
              "Error while writing 5 bytes to address 0x9abc in camera, 1 bytes written.\n" +
                  LibraryText("GRB_ControlWrite", status),
              WriteBytes(m_hPort, 0x9ABC, std::vector<uint8_t>(5)));
  }
}

TEST_P(CameraStatus, PassedCountsAsSuccess) {
  Script().On(Match(Op::ControlRead), Reply::Answer({1, 2, 3, 4}).WithStatus(GRB_WARNING_PASSED));
  EXPECT_GC_OK(ReadSome(kAddress, 4));
  EXPECT_EQ(m_Buffer, (std::vector<uint8_t>{1, 2, 3, 4}));
  Script().On(Match(Op::ControlWrite), Reply::Status(GRB_WARNING_PASSED));
  EXPECT_GC_OK(WriteU32Be(m_hPort, kAddress, 1));
}

// Nobody looks at the count of a success.
TEST_P(CameraStatus, ShortTransferIsNoFailure) {
  Script().On(Match(Op::ControlRead), Reply::Answer({1, 2}));
  size_t size = 4;
  uint8_t bytes[4] = {};
  EXPECT_GC_OK(Gc().GCReadPort(m_hPort, kAddress, bytes, &size));
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(bytes[0], 1);
  EXPECT_EQ(bytes[1], 2);
  Script().On(Match(Op::ControlWrite), Reply::Status(GRB_OK).Moved(0));
  EXPECT_GC_OK(WriteU32Be(m_hPort, kAddress, 1));
}

TEST_P(CameraStatus, AddressZeroPrintsAsZero) {
  Script().On(Match(Op::ControlRead), Bang().Moved(4));
  EXPECT_GC(GC_ERR_IO,
            "Error while reading 4 bytes from address 0x0 in camera, 4 bytes read.\n" + LibraryText("GRB_ControlRead"),
            ReadSome(0, 4));
}

INSTANTIATE_TEST_SUITE_P(Revisions, CameraStatus, testing::Values(kCxp10, kCxp11));

// A camera that goes away makes the transfers fail and leaves the Device as it is.
TEST_F(CameraTransfer, SilentCameraLeavesTheDevice) {
  OpenWith(kWholeTransfers, kCxp10);
  const CCamera camera = Script().Camera(kBoard, kChannel);
  Script().RemoveCamera(kBoard, kChannel);
  EXPECT_GC_CODE(GC_ERR_TIMEOUT, ReadSome(kAddress, 4));
  EXPECT_GC_CODE(GC_ERR_TIMEOUT, WriteU32Be(m_hPort, kAddress, 1));
  EXPECT_EQ(PortInfo(m_hPort, PORT_INFO_VENDOR).Text(), "Lumivex Optics");
  EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_MODEL).Text(), "Testcam 1");
  Script().SetCamera(kBoard, kChannel, camera);
  EXPECT_GC_OK(ReadSome(kAddress, 4));
}

// The rounded size, not the wanted one, is split, and stands in the message.
TEST_F(CameraTransfer, RoundedReadOfAnOldLibraryIsSplit) {
  SetParameter(GRB_REV_SW, 0x70510);
  Script().SetCamera(kBoard, kChannel, CCamera().Url(0, "Local:a.xml;9000;41"));
  PORT_HANDLE port = OpenRemotePort();
  EXPECT_EQ(PortUrl(port).result, GC_ERR_SUCCESS);
  const size_t mark = Script().Mark();
  uint8_t buffer[65];
  EXPECT_GC_OK(TryRead(port, 0x9000, buffer, sizeof(buffer)));
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].size, 64U);
  EXPECT_EQ(calls[1].address, 0x9040U);
  EXPECT_EQ(calls[1].size, 4U);
  Script().On(Match(Op::ControlRead).Address(0x9040), Bang());
  EXPECT_GC(
      GC_ERR_IO,
      "Error while reading 0 bytes from address 0x9040 in camera, 68 bytes read.\n" + LibraryText("GRB_ControlRead"),
      TryRead(port, 0x9000, buffer, sizeof(buffer)));
}

}  // namespace
}  // namespace DeviceTests
