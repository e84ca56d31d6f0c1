// SPDX-License-Identifier: MIT
// Closing a stream, or anything above it, while threads are inside EventGetData: all of them are sent home, and none
// looks at what is gone.
#include <chrono>
#include <memory>

#include "InsideWaiter.h"
#include "StreamFixture.h"

namespace StreamTests {
namespace {

using Clock = std::chrono::steady_clock;

constexpr uint64_t kHour = 3600000;  ///< a close that waits for the time-out never comes back within the bound

using Waiters = std::vector<std::unique_ptr<CInsideWaiter>>;

/// Which export closes.
enum Level { kStream, kDevice, kInterface, kSystem, kLibrary };
constexpr const char *kLevelNames[] = {"Stream", "Device", "Interface", "System", "Library"};

struct ClosingRow {
  Level level;
  uint64_t timeout;
  size_t waiters;  ///< on each event
};

void PrintTo(const ClosingRow &row, std::ostream *out) { *out << kLevelNames[row.level]; }

std::string NameOfRow(const testing::TestParamInfo<ClosingRow> &row) {
  return std::string(kLevelNames[row.param.level]) + (row.param.timeout == GENTL_INFINITE ? "_Infinite_" : "_Hour_") +
         std::to_string(row.param.waiters);
}

class ClosingTest : public StreamTest {
 protected:
  GC_ERROR Close(Level level) {
    switch (level) {
      case kStream:
        return Gc().DSClose(m_hStream);
      case kDevice:
        return Gc().DevClose(m_hDevice);
      case kInterface:
        return Gc().IFClose(m_hInterface);
      case kSystem:
        return Gc().TLClose(m_hSystem);
      default:
        return Gc().GCCloseLib();
    }
  }

  void Forget(Level level) {
    m_hStream = nullptr;
    m_hDevice = level >= kDevice ? nullptr : m_hDevice;
    m_hInterface = level >= kInterface ? nullptr : m_hInterface;
    m_hSystem = level >= kSystem ? nullptr : m_hSystem;
  }

  static void Add(Waiters &waiters, EVENT_HANDLE event, uint64_t timeout, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      waiters.push_back(std::make_unique<CInsideWaiter>(event, timeout));
      ASSERT_TRUE(waiters.back()->Begins());
    }
  }

  /// Also the second and the third: a Consumer's loop that takes a time-out for "nothing yet" would come back to an
  /// object that is gone.
  static void ExpectAllAborted(const Waiters &waiters) {
    for (const auto &waiter : waiters) {
      const EventResult result = waiter->Result();
      EXPECT_EQ(GC_ERR_ABORT, result.result) << NameOfError(result.result) << " " << result.error.text;
    }
  }
};

class Closing : public ClosingTest, public testing::WithParamInterface<ClosingRow> {};

TEST_P(Closing, SendsEveryWaiterHome) {
  const ClosingRow &row = GetParam();
  const EVENT_HANDLE buffers = NewBufferEvent();
  const EVENT_HANDLE errors = ErrorEvent();
  const EVENT_HANDLE deviceErrors = RegisterEvent(m_hDevice, EVENT_ERROR);
  Run(2);
  Waiters ofStream;
  Waiters ofDevice;
  Add(ofStream, buffers, row.timeout, row.waiters);
  Add(ofStream, errors, row.timeout, row.waiters);
  Add(ofDevice, deviceErrors, row.timeout, row.waiters);

  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(GC_ERR_SUCCESS, Close(row.level));
  EXPECT_LT(Clock::now() - begin, kBound);
  ExpectAllAborted(ofStream);
  if (row.level == kStream) {
    for (const auto &waiter : ofDevice) {
      EXPECT_FALSE(waiter->Done()) << "the Device stays open";
    }
    EXPECT_GC_OK(Gc().DevClose(m_hDevice));
    Forget(kDevice);
  } else {
    Forget(row.level);
  }
  ExpectAllAborted(ofDevice);
  EXPECT_EQ(0U, Script().CreatedHandles());

  if (row.level == kLibrary) {
    ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCInitLib());
  }
  const EVENT_HANDLE again = NewBufferEvent();
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  EXPECT_EQ(buffer, Take(again)) << "a new stream knows nothing of the old one's end";
}

std::vector<ClosingRow> ClosingRows() {
  std::vector<ClosingRow> rows;
  for (const Level level : {kStream, kDevice, kInterface, kSystem, kLibrary}) {
    for (const uint64_t timeout : {uint64_t{GENTL_INFINITE}, kHour}) {
      rows.push_back({level, timeout, 1});
      rows.push_back({level, timeout, 3});
    }
  }
  return rows;
}

INSTANTIATE_TEST_SUITE_P(All, Closing, testing::ValuesIn(ClosingRows()), NameOfRow);

TEST_F(ClosingTest, WaitersOfAStreamThatNeverRan) {
  Waiters waiters;
  Add(waiters, NewBufferEvent(), GENTL_INFINITE, 2);
  Add(waiters, ErrorEvent(), GENTL_INFINITE, 2);
  EXPECT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  for (const auto &waiter : waiters) {
    const EventResult result = waiter->Result();
    EXPECT_EQ(GC_ERR_ABORT, result.result) << result.error.text;
    EXPECT_EQ("Wait terminated", SplitFailureText(result.error.text).value_or(FailureText{}).message);
  }
}

TEST_F(ClosingTest, FailingCloseLeavesTheWaitersInTheirWaits) {
  const EVENT_HANDLE event = NewBufferEvent();
  Run(1);
  Waiters waiters;
  Add(waiters, event, GENTL_INFINITE, 1);
  Add(waiters, ErrorEvent(), GENTL_INFINITE, 1);
  Script().On(Match(Op::StreamRead, GRB_STREAM_STOP), Broken());
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DevClose(m_hDevice));
  for (const auto &waiter : waiters) {
    EXPECT_FALSE(waiter->Done());
  }
  EXPECT_GC_OK(Gc().DevClose(m_hDevice));
  Forget(kDevice);
  ExpectAllAborted(waiters);
}

TEST_F(ClosingTest, CloseRightBehindAKill) {
  // What a Consumer does that does not join its thread first.
  for (int round = 0; round < 50; ++round) {
    const EVENT_HANDLE event = NewBufferEvent();
    Run(1);
    Waiters waiters;
    Add(waiters, event, GENTL_INFINITE, 1);
    EXPECT_GC_OK(Gc().EventKill(event));
    EXPECT_GC_OK(Gc().DSClose(m_hStream));
    m_hStream = nullptr;
    ExpectAllAborted(waiters);
  }
}

TEST_F(ClosingTest, CloseRightBehindAFrame) {
  const EVENT_HANDLE event = NewBufferEvent();
  for (int round = 0; round < 50; ++round) {
    const EVENT_HANDLE current = round == 0 ? event : NewBufferEvent();
    const BUFFER_HANDLE buffer = Run(1).front();
    Waiters waiters;
    Add(waiters, current, GENTL_INFINITE, 1);
    Frame();
    EXPECT_GC_OK(Gc().DSClose(m_hStream));
    m_hStream = nullptr;
    // The frame, the end, or nothing: the close may be faster, and takes the frame off the list ahead of its end.
    const EventResult result = waiters.front()->Result();
    if (result.result == GC_ERR_SUCCESS) {
      EXPECT_EQ(buffer, result.NewBuffer().BufferHandle);
    } else if (result.result != GC_ERR_TIMEOUT) {
      EXPECT_EQ(GC_ERR_ABORT, result.result) << result.error.text;
    }
  }
}

TEST_F(ClosingTest, WaitersOfAnotherStreamStay) {
  DEV_HANDLE device = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(OpenInterface(), "Channel #2", DEVICE_ACCESS_EXCLUSIVE, &device));
  DS_HANDLE stream = nullptr;
  ASSERT_GC_OK(Gc().DevOpenDataStream(device, "Stream #1", &stream));
  const EVENT_HANDLE other = RegisterEvent(stream, EVENT_NEW_BUFFER);
  Waiters here;
  Waiters there;
  Add(here, NewBufferEvent(), GENTL_INFINITE, 1);
  Add(there, other, GENTL_INFINITE, 1);
  EXPECT_GC_OK(Gc().DevClose(m_hDevice));
  Forget(kDevice);
  ExpectAllAborted(here);
  EXPECT_FALSE(there.front()->Done());
  EXPECT_GC_OK(Gc().EventKill(other));
  ExpectAllAborted(there);
  EXPECT_GC_OK(Gc().DevClose(device));
}

TEST_F(ClosingTest, WaitersOnADisabledEventAreSentHomeToo) {
  // Unregistering does not end a wait; the close has to.
  Waiters waiters;
  Add(waiters, NewBufferEvent(), GENTL_INFINITE, 1);
  Add(waiters, ErrorEvent(), GENTL_INFINITE, 1);
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_NEW_BUFFER));
  EXPECT_GC_OK(Gc().GCUnregisterEvent(m_hStream, EVENT_ERROR));
  EXPECT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  ExpectAllAborted(waiters);
}

TEST_F(ClosingTest, EventsOfAClosedStreamAreNoEvents) {
  const EVENT_HANDLE event = NewBufferEvent();
  Waiters waiters;
  Add(waiters, event, GENTL_INFINITE, 1);
  EXPECT_GC_OK(Gc().DSClose(m_hStream));
  m_hStream = nullptr;
  ExpectAllAborted(waiters);
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, GetEvent(event, GENTL_INFINITE).result) << "the loop's next turn ends it";
}

}  // namespace
}  // namespace StreamTests
