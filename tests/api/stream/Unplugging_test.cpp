// SPDX-License-Identifier: MIT
// A camera that goes away and comes back, in one process and without a new one.
#include "InsideWaiter.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

constexpr const char *kCamera = "Channel #1";
constexpr const char *kOther = "Channel #2";

class Unplugging : public StreamTest {
 protected:
  static void Unplug() { Script().RemoveCamera(GRB_BOARD_1, GRB_CHANNEL_1); }
  static void PlugIn() { Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera()); }

  /// The update says whether something changed, and the list is this then.
  void ExpectUpdate(bool changed, const std::vector<std::string> &cameras) {
    bool8_t answer = changed ? 0 : 1;
    EXPECT_GC_OK(Gc().IFUpdateDeviceList(m_hInterface, &answer, 0));
    EXPECT_EQ(changed, answer != 0);
    uint32_t count = 99;
    EXPECT_GC_OK(Gc().IFGetNumDevices(m_hInterface, &count));
    std::vector<std::string> found;
    for (uint32_t i = 0; i < count; ++i) {
      found.push_back(DeviceId(m_hInterface, i).Text());
    }
    EXPECT_EQ(cameras, found);
  }

  static std::string Silence(const char *head, const char *tail, const char *function) {
    return std::string("Timeout while ") + head + " in camera, 0 bytes " + tail +
           ", timeout value was 800.\nNo answer from the camera. (" + function + " returned error code 0x8000)";
  }

  /// Both directions, and what else needs the camera's answer.
  void ExpectSilence(PORT_HANDLE port) {
    uint32_t value = 7;
    EXPECT_GC(GC_ERR_TIMEOUT, Silence("reading 4 bytes from address 0x8000", "read", "GRB_ControlRead"),
              TryRead(port, CCamera::kWidthAddress, &value, 4));
    EXPECT_GC(GC_ERR_TIMEOUT, Silence("writing 4 bytes to address 0x8000", "written", "GRB_ControlWrite"),
              WriteU32Be(port, CCamera::kWidthAddress, 32));
  }

  void CloseDevice() {
    EXPECT_GC_OK(Gc().DSClose(m_hStream));
    m_hStream = nullptr;
    EXPECT_GC_OK(Gc().DevClose(m_hDevice));
    m_hDevice = nullptr;
    EXPECT_EQ(0U, Script().CreatedHandles());
  }

  void ExpectGone() {
    DEV_HANDLE device = this;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, std::string("Invalid Child's name: ") + kCamera,
              Gc().IFOpenDevice(m_hInterface, kCamera, DEVICE_ACCESS_EXCLUSIVE, &device));
    EXPECT_EQ(this, device);
  }

  /// Opens the camera anew and takes a frame from it.
  void ExpectAFrame() {
    const PORT_HANDLE port = OpenRemotePort();
    EXPECT_EQ(64U, ReadU32Be(port, CCamera::kWidthAddress));
    const EVENT_HANDLE event = NewBufferEvent();
    const BUFFER_HANDLE buffer = Run(1).front();
    Frame();
    EXPECT_EQ(buffer, Take(event));
    Stop();
  }
};

TEST_F(Unplugging, ClosedListedAndOpenedAnew) {
  const PORT_HANDLE port = OpenRemotePort();
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  Frame();
  Queue(Take(event));

  Unplug();
  EXPECT_EQ(GC_ERR_TIMEOUT, GetEvent(event, 5).result) << "no frames, and no failure";
  ExpectSilence(port);
  Stop();
  EXPECT_GC(GC_ERR_TIMEOUT, Silence("reading 4 bytes from address 0x4", "read", "GRB_ControlRead"),
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
  EXPECT_FALSE(Grabbing());
  CloseDevice();

  ExpectUpdate(true, {kOther});
  ExpectUpdate(false, {kOther});
  ExpectGone();
  PlugIn();
  ExpectGone();
  // A newcomer stands behind those that were known; by the next update it is known itself.
  ExpectUpdate(true, {kOther, kCamera});
  ExpectUpdate(false, {kCamera, kOther});
  ExpectAFrame();
}

TEST_F(Unplugging, RunningStreamIsClosedAsEver) {
  // Nobody stops it first.
  Run(2);
  Frame();
  Unplug();
  CloseDevice();
  ExpectUpdate(true, {kOther});
  PlugIn();
  ExpectUpdate(true, {kOther, kCamera});
  ExpectAFrame();
}

TEST_F(Unplugging, ManyTimes) {
  for (int round = 0; round < 5; ++round) {
    ExpectAFrame();
    Unplug();
    CloseDevice();
    ExpectUpdate(true, {kOther});
    ExpectGone();
    PlugIn();
    ExpectUpdate(true, {kOther, kCamera});
  }
}

// While a thread waits ------------------------------------------------------------------------------------------------

enum End { kKill, kClose };

class UnplugsUnderAWait : public Unplugging, public testing::WithParamInterface<End> {};

TEST_P(UnplugsUnderAWait, WaitEndsAndTheCameraComesBack) {
  const PORT_HANDLE port = OpenRemotePort();
  const EVENT_HANDLE event = NewBufferEvent();
  Run(2);
  {
    const CInsideWaiter waiter(event, GENTL_INFINITE);
    ASSERT_TRUE(waiter.Begins());
    Unplug();
    ExpectSilence(port);
    ExpectUpdate(true, {kOther});
    EXPECT_EQ(kCamera, DevInfo(m_hDevice, DEVICE_INFO_ID).Text()) << "what is open stays open";
    EXPECT_FALSE(waiter.Done());
    if (GetParam() == kKill) {
      EXPECT_GC_OK(Gc().EventKill(event));
      EXPECT_EQ(GC_ERR_ABORT, waiter.Result().result);
      Stop();
      CloseDevice();
    } else {
      EXPECT_GC_OK(Gc().DevClose(m_hDevice));
      m_hStream = nullptr;
      m_hDevice = nullptr;
      EXPECT_EQ(GC_ERR_ABORT, waiter.Result().result);
    }
  }
  ExpectGone();
  PlugIn();
  ExpectUpdate(true, {kOther, kCamera});
  ExpectAFrame();
}

INSTANTIATE_TEST_SUITE_P(All, UnplugsUnderAWait, testing::Values(kKill, kClose),
                         [](const auto &row) { return std::string(row.param == kKill ? "ByAKill" : "ByTheClose"); });

TEST_F(Unplugging, WaitOutlivesTheAbsence) {
  // A Consumer that does nothing about it has its frames again when the camera is back.
  const PORT_HANDLE port = OpenRemotePort();
  const EVENT_HANDLE event = NewBufferEvent();
  const std::vector<BUFFER_HANDLE> buffers = Run(2);
  const CInsideWaiter waiter(event, GENTL_INFINITE);
  EXPECT_TRUE(waiter.Begins());
  Unplug();
  ExpectUpdate(true, {kOther});
  PlugIn();
  ExpectUpdate(true, {kOther, kCamera});
  EXPECT_EQ(64U, ReadU32Be(port, CCamera::kWidthAddress));
  EXPECT_FALSE(waiter.Done());
  Frame();
  EXPECT_EQ(buffers[0], waiter.Result().NewBuffer().BufferHandle);
}

}  // namespace
}  // namespace StreamTests
