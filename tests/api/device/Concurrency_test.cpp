// SPDX-License-Identifier: MIT
// Several Consumer threads on one Device at once: what one of them gets must not depend on the others.
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

constexpr uint32_t kRounds = 100;

class ConcurrentDevice : public OpenDeviceTest {
 protected:
  // Runs the actions on threads of their own, kRounds times each, all let go at one moment.
  static void RunTogether(const std::vector<std::function<void(uint32_t)>> &actions) {
    std::atomic<size_t> ready{0};
    std::vector<std::thread> threads;
    for (const auto &action : actions) {
      threads.emplace_back([&ready, &action, count = actions.size()] {
        ++ready;
        WaitUntil([&] { return ready.load() == count; });
        for (uint32_t round = 0; round < kRounds; ++round) {
          action(round);
        }
      });
    }
    for (std::thread &thread : threads) {
      thread.join();
    }
  }
};

// Library handle, camera transfers and records of failure are shared or per thread, and none of them may mix.
TEST_F(ConcurrentDevice, FeaturesAndCameraRegistersDoNotMix) {
  PORT_HANDLE port = OpenRemotePort();
  Script().WriteCameraU32(kBoard, kChannel, 0x9000, 0x11111111);
  RunTogether({
      [this](uint32_t round) {
        EXPECT_EQ(WriteU32(m_hDevice, 0x614, round), GC_ERR_SUCCESS);
        EXPECT_EQ(ReadU32(m_hDevice, 0x614), round);
      },
      [this](uint32_t round) {
        EXPECT_EQ(WriteU32(m_hDevice, 0x618, round + 1000), GC_ERR_SUCCESS);
        EXPECT_EQ(ReadU32(m_hDevice, 0x618), round + 1000);
      },
      [port](uint32_t) { EXPECT_EQ(ReadU32Be(port, 0x9000), 0x11111111U); },
      [this](uint32_t) {
        uint32_t value = 0;
        EXPECT_GC(GC_ERR_ERROR, NotAvailable(0x500), TryRead(m_hDevice, 0x500, &value, sizeof(value)));
      },
  });
}

// The latches stand alone: each keeps what its one writer stored.
TEST_F(ConcurrentDevice, LatchesOfDifferentRegistersDoNotMix) {
  const auto writer = [this](uint32_t address) {
    return [this, address](uint32_t round) {
      EXPECT_EQ(WriteU32(m_hDevice, address, round), GC_ERR_SUCCESS);
      EXPECT_EQ(ReadU32(m_hDevice, address), round);
    };
  };
  RunTogether({writer(0x4F0), writer(0x4F4), writer(0x1850), writer(0x1860), writer(0x185C)});
}

// Discovery runs beside an open Device.
TEST_F(ConcurrentDevice, DiscoveryDoesNotDisturbTheFeatures) {
  RunTogether({
      [this](uint32_t round) {
        if (round % 10 == 0) {
          EXPECT_EQ(Gc().IFUpdateDeviceList(m_hInterface, nullptr, 0), GC_ERR_SUCCESS);
        }
      },
      [this](uint32_t round) {
        EXPECT_EQ(WriteU32(m_hDevice, 0x614, round), GC_ERR_SUCCESS);
        EXPECT_EQ(ReadU32(m_hDevice, 0x614), round);
      },
      [this](uint32_t) { EXPECT_EQ(DevInfo(m_hDevice, DEVICE_INFO_ID).Text(), "Channel #1"); },
  });
}

}  // namespace
}  // namespace DeviceTests
