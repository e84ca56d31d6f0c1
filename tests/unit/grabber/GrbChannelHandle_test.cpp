// SPDX-License-Identifier: MIT
// The channel handle: the identity of a camera, and what is not seen of its transfers from outside.
#include "GrbChannelHandle.h"

#include <array>
#include <memory>

#include "GrabberFixture.h"

namespace GrabberTests {
namespace {

/// Shows the lock.
class CTestChannel : public CGrbChannelHandle {
 public:
  using CGrbChannelHandle::CGrbChannelHandle;
  boost::recursive_mutex &Lock() { return m_Lock; }
};

using GrbChannelHandle = GrabberTest;

TEST_F(GrbChannelHandle, IdentifiesItsCamera) {
  const CGrbChannelHandle channel(kBoard, GRB_CHANNEL_2, true);
  EXPECT_TRUE(channel.IsValid());
  EXPECT_EQ(channel.GetId(), "Channel #2");
  EXPECT_EQ(channel.GetVendor(), "Lumivex Optics");
  EXPECT_EQ(channel.GetModel(), "Testcam 2");
  EXPECT_EQ(channel.GetTLType(), "CXP");
  EXPECT_EQ(channel.GetDisplayName(), "Lumivex Optics Testcam 2(Channel #2)");
}

TEST_F(GrbChannelHandle, TextsEndAtTheirZeroOrAt32Bytes) {
  CCamera camera;
  camera.Bytes(0x2000, {'a', 0, 'b'});
  camera.Text(0x2020, std::string(40, 'm'), 40);
  Script().SetCamera(kBoard, kChannel, camera);
  const CGrbChannelHandle channel(kBoard, kChannel, true);
  EXPECT_EQ(channel.GetVendor(), "a");
  EXPECT_EQ(channel.GetModel(), std::string(32, 'm'));
}

TEST_F(GrbChannelHandle, FailuresLeaveAnInvalidObjectWithoutNames) {
  const struct {
    const char *what;
    Match match;
    GRB_STATUS status = kStatus;
  } kRows[] = {
      {"board", Match(Op::ParameterSet, GRB_OPEN_BOARD)},
      {"channel", Match(Op::ParameterSet, GRB_OPEN_CHANNEL)},
      {"mode", Match(Op::ParameterSet, GRB_OPEN_MODE)},
      {"variant", Match(Op::ParameterSet, GRB_OPEN_VARIANT)},
      {"open", Match(Op::Open)},
      {"library", Match(Op::ParameterGet)},
      {"revision", Match(Op::ControlRead).Address(0x4)},
      {"vendor", Match(Op::ControlRead).Address(0x2000)},
      {"model", Match(Op::ControlRead).Address(0x2020)},
      // A remark is success to a camera transfer, and to nothing else.
      {"remark on the board", Match(Op::ParameterSet, GRB_OPEN_BOARD), GRB_WARNING_PASSED},
      {"remark on the channel", Match(Op::ParameterSet, GRB_OPEN_CHANNEL), GRB_WARNING_PASSED},
      {"remark on the mode", Match(Op::ParameterSet, GRB_OPEN_MODE), GRB_WARNING_PASSED},
      {"remark on the variant", Match(Op::ParameterSet, GRB_OPEN_VARIANT), GRB_WARNING_PASSED},
      {"remark on the open", Match(Op::Open), GRB_WARNING_PASSED},
      {"remark on the library", Match(Op::ParameterGet), GRB_WARNING_PASSED},
      {"timeout of the open", Match(Op::Open), GRB_WARNING_TIMEOUT},
      {"timeout of the revision", Match(Op::ControlRead).Address(0x4), GRB_WARNING_TIMEOUT},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.what);
    // Done with a remark: were it taken for success, all would go on well.
    Reply reply = Bang(row.status);
    Script().On(row.match, row.status == GRB_WARNING_PASSED ? reply.KeepEffect() : reply);
    const size_t mark = Script().Mark();
    {
      const CGrbChannelHandle channel(kBoard, kChannel, true);
      EXPECT_FALSE(channel.IsValid());
      EXPECT_EQ(channel.GetId(), "");
      EXPECT_EQ(channel.GetDisplayName(), "");
      EXPECT_EQ(channel.GetVendor(), "");
      EXPECT_EQ(channel.GetModel(), "");
      EXPECT_EQ(channel.GetTLType(), "");
      EXPECT_EQ(Script().Count(Match(Op::Close), mark), 1U);
    }
    EXPECT_EQ(Script().Count(Match(Op::Close), mark), 2U);
    EXPECT_EQ(Script().Count(Match(Op::Destroy), mark), 1U);
  }
}

// The close of the failed constructor is tried again by the destructor; no status of either is looked at.
TEST_F(GrbChannelHandle, FailuresOfItsEndAreNone) {
  Script().On(Match(Op::ParameterGet), Bang());
  Script().On(Match(Op::Close), Bang(), When::First(2));
  Script().On(Match(Op::Destroy), Bang().KeepEffect());
  const size_t mark = Script().Mark();
  std::string h;
  EXPECT_NO_THROW({
    const CGrbChannelHandle channel(kBoard, kChannel, true);
    EXPECT_FALSE(channel.IsValid());
    h = "h" + std::to_string(channel.GetHandle());
  });
  const std::string close = "Close(" + h + ") = 0x8123";
  EXPECT_EQ(Script().Trace(Match(Op::Close), mark), (Lines{close, close}));
  EXPECT_EQ(Script().Trace(mark).back(), "Destroy(" + h + ") = 0x8123");

  auto valid = std::make_unique<CGrbChannelHandle>(kBoard, kChannel, true);
  EXPECT_TRUE(valid->IsValid());
  Script().On(Match(Op::Close), Bang());
  Script().On(Match(Op::Destroy), Bang().KeepEffect());
  EXPECT_NO_THROW(valid.reset());
}

// The failure of the search is told to nobody; only the library's words are left.
TEST_F(GrbChannelHandle, SilentCameraThrowsNothing) {
  Script().RemoveCamera(kBoard, kChannel);
  EXPECT_NO_THROW({
    const CGrbChannelHandle channel(kBoard, kChannel, true);
    EXPECT_FALSE(channel.IsValid());
  });
  EXPECT_EQ(Words(), "No answer from the camera. (GRB_ControlRead returned error code 0x8000)");
}

TEST_F(GrbChannelHandle, EighthChannelHasNoNumber) {
  Script().SetCamera(kBoard, GRB_CHANNEL_8, CCamera());
  const CGrbChannelHandle channel(kBoard, GRB_CHANNEL_8, true);
  EXPECT_FALSE(channel.IsValid());
  EXPECT_EQ(Script().Count(Match(Op::ControlRead)), 1U);
}

TEST_F(GrbChannelHandle, CreationThatFailsThrows) {
  Script().On(Match(Op::Create), Bang());
  EXPECT_TRUE(Throws<unknown_error>(LibraryText("GRB_Create"), nullptr,
                                    [] { const CGrbChannelHandle channel(kBoard, kChannel, true); }));
}

// Transfers -----------------------------------------------------------------------------------------------------------

TEST_F(GrbChannelHandle, TransfersUseTheCallersMemory) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 8> bytes{};
  const size_t mark = Script().Mark();
  channel.CameraRead(bytes.data(), bytes.size(), 0x2000, 5);
  channel.CameraWrite(bytes.data(), bytes.size(), 0x9000, 6);
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].argument, bytes.data());
  EXPECT_EQ(calls[0].timeout, 5U);
  EXPECT_EQ(calls[1].argument, bytes.data());
  EXPECT_EQ(calls[1].timeout, 6U);
  EXPECT_EQ(bytes[0], 'L');
}

// What the library did not move stays as it was.
TEST_F(GrbChannelHandle, ShortReadKeepsTheRestOfTheBuffer) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 4> bytes = {9, 9, 9, 9};
  Script().On(Match(Op::ControlRead), Reply::Answer({1, 2}));
  channel.CameraRead(bytes.data(), bytes.size(), 0x9000, 5);
  EXPECT_EQ(bytes, (std::array<uint8_t, 4>{1, 2, 9, 9}));
}

TEST_F(GrbChannelHandle, WordsAreBigEndianOnTheWire) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  Script().SetCamera(kBoard, kChannel, CCamera().Bytes(0x9000, {0x01, 0x02, 0x03, 0x04}));
  uint32_t value = 0;
  EXPECT_EQ(channel.CameraReadUInt32(&value, 0x9000, 5), &value);
  EXPECT_EQ(value, 0x01020304U);
  const size_t mark = Script().Mark();
  channel.CameraWriteUInt32(0xA1B2C3D4, 0x9004, 5);
  EXPECT_EQ(Script().Calls(mark)[0].bytes, (std::vector<uint8_t>{0xA1, 0xB2, 0xC3, 0xD4}));
}

TEST_F(GrbChannelHandle, SizesAndAddressesPassTheirLow32Bits) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 4> bytes{};
  const size_t mark = Script().Mark();
  channel.CameraRead(bytes.data(), 0x100000004ULL, 0x100002000ULL, 5);
  channel.CameraWrite(bytes.data(), 0x100000004ULL, 0x100009000ULL, 5);
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].size, 4U);
  EXPECT_EQ(calls[0].address, 0x2000U);
  EXPECT_EQ(calls[1].size, 4U);
  EXPECT_EQ(calls[1].address, 0x9000U);
}

// A size word of its own, and the message tells what the library left in it.
TEST_F(GrbChannelHandle, MessagesOfTransfers) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 200> bytes{};
  const std::string read = "\n" + LibraryText("GRB_ControlRead");
  const std::string write = "\n" + LibraryText("GRB_ControlWrite");
  Script().On(Match(Op::ControlRead), Bang().Moved(150));
  EXPECT_TRUE(Throws<io_error>("Error while reading 200 bytes from address 0xab in camera, 150 bytes read." + read,
                               "GenICam::Client::CGrbChannelHandle::CameraRead",
                               [&] { channel.CameraRead(bytes.data(), 200, 0xAB, 5); }));
  Script().On(Match(Op::ControlWrite), Bang().Moved(150));
  EXPECT_TRUE(Throws<io_error>("Error while writing 200 bytes to address 0xab in camera, 150 bytes written." + write,
                               "GenICam::Client::CGrbChannelHandle::CameraWrite",
                               [&] { channel.CameraWrite(bytes.data(), 200, 0xAB, 5); }));
  // Of an address the low word is told, of a size all.
  constexpr uint64_t kFarAddress = 0x1234500009ABCULL;
  constexpr uint64_t kGreatSize = 0x1000000C8ULL;
  Script().On(Match(Op::ControlRead), Bang().Moved(150));
  EXPECT_TRUE(
      Throws<io_error>("Error while reading 4294967496 bytes from address 0x9abc in camera, 150 bytes read." + read,
                       nullptr, [&] { channel.CameraRead(bytes.data(), kGreatSize, kFarAddress, 5); }));
  Script().On(Match(Op::ControlWrite), Bang().Moved(150));
  EXPECT_TRUE(
      Throws<io_error>("Error while writing 4294967496 bytes to address 0x9abc in camera, 150 bytes written." + write,
                       nullptr, [&] { channel.CameraWrite(bytes.data(), kGreatSize, kFarAddress, 5); }));
  Script().On(Match(Op::ControlRead), Bang(GRB_WARNING_TIMEOUT).Moved(0));
  EXPECT_TRUE(Throws<timeout_error>(
      "Timeout while reading 4 bytes from address 0xab in camera, 0 bytes read, timeout value was 4294967295.\n" +
          LibraryText("GRB_ControlRead", "8000"),
      nullptr, [&] { channel.CameraReadUInt32(reinterpret_cast<uint32_t *>(bytes.data()), 0xAB, 0xFFFFFFFF); }));
  Script().On(Match(Op::ControlWrite), Bang(GRB_WARNING_TIMEOUT).Moved(0));
  EXPECT_TRUE(Throws<timeout_error>(
      "Timeout while writing 4 bytes to address 0xab in camera, 0 bytes written, timeout value was 0.\n" +
          LibraryText("GRB_ControlWrite", "8000"),
      nullptr, [&] { channel.CameraWriteUInt32(1, 0xAB, 0); }));
}

TEST_F(GrbChannelHandle, MessagesOfAReadInChunks) {
  Script().SetParameter(kBoard, kChannel, GRB_REV_SW, 0x70510);
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 200> bytes{};
  Script().On(Match(Op::ControlRead), Bang(GRB_WARNING_TIMEOUT).Moved(7), When::Nth(3));
  EXPECT_TRUE(Throws<timeout_error>(
      "Timeout while reading 0 bytes from address 0x180 in camera, 200 bytes read, timeout value was 800.\n" +
          LibraryText("GRB_ControlRead", "8000"),
      nullptr, [&] { channel.CameraRead(bytes.data(), 200, 0x100, 800); }));
}

TEST_F(GrbChannelHandle, ChunksGoToTheRunningPlaceInTheBuffer) {
  Script().SetParameter(kBoard, kChannel, GRB_REV_SW, 0x70510);
  CGrbChannelHandle channel(kBoard, kChannel, true);
  std::array<uint8_t, 130> bytes{};
  const size_t mark = Script().Mark();
  channel.CameraRead(bytes.data(), bytes.size(), 0x9000, 800);
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 3U);
  for (size_t i = 0; i < calls.size(); ++i) {
    EXPECT_EQ(calls[i].argument, bytes.data() + 64 * i);
    EXPECT_EQ(calls[i].address, 0x9000 + 64 * i);
  }
}

// Two threads can have transfers in flight on one handle.
TEST_F(GrbChannelHandle, TransfersTakeNoLock) {
  CTestChannel channel(kBoard, kChannel, true);
  uint32_t value = 0;
  for (const Op op : {Op::ControlRead, Op::ControlWrite}) {
    bool free = false;
    Script().On(Match(op), Reply::Pass().Do([&](const Call &) { free = IsFree(channel.Lock()); }));
    op == Op::ControlRead ? channel.CameraRead(&value, 4, 0, 1) : channel.CameraWrite(&value, 4, 0x9000, 1);
    EXPECT_TRUE(free);
  }
  const boost::unique_lock<boost::recursive_mutex> held(channel.Lock());
  std::async(std::launch::async, [&] { channel.CameraRead(&value, 4, 0, 1); }).get();
}

using GrbChannelHandleDeathTest = GrabberTest;

TEST_F(GrbChannelHandleDeathTest, TransfersNeedMemoryAndASize) {
  CGrbChannelHandle channel(kBoard, kChannel, true);
  uint32_t value = 0;
  EXPECT_DEATH(channel.CameraRead(nullptr, 0, 0, 1), "pvBuffer != 0");
  EXPECT_DEATH(channel.CameraRead(&value, 0, 0, 1), "nSize != 0");
  EXPECT_DEATH(channel.CameraWrite(nullptr, 0, 0, 1), "pvBuffer != 0");
  EXPECT_DEATH(channel.CameraWrite(&value, 0, 0, 1), "nSize != 0");
}

TEST_F(GrbChannelHandleDeathTest, NoHandleInSpiteOfSuccessIsAnAssertion) {
  Script().On(Match(Op::Create), Reply::Status(GRB_OK).HandleOut(0), When::Every());
  EXPECT_DEATH(CGrbChannelHandle(kBoard, kChannel, true), "m_hGrbChannel != 0");
}

}  // namespace
}  // namespace GrabberTests
