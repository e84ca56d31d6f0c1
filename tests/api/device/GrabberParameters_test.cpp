// SPDX-License-Identifier: MIT
// The virtual registers that hand one parameter of the library through, row by row.
#include <cstring>
#include <ostream>
#include <thread>

#include "DeviceFixture.h"
#include "GrabberParameterTable.h"

namespace DeviceTests {

static std::ostream &operator<<(std::ostream &out, const ParameterRow &row) {
  return out << Format("0x%04X ", row.address) << row.name;
}

namespace {

/// A value whose every byte counts, so that a width or an order that is wrong shows.
constexpr uint64_t kValue = 0x8192A3B4C5D6E7F8ULL;

class GrabberParameter : public DeviceTest, public testing::WithParamInterface<ParameterRow> {
 protected:
  static size_t Bytes() { return GetParam().bits / 8; }
  static uint64_t ValueInWidth() { return GetParam().bits == 64 ? kValue : kValue & 0xFFFFFFFFU; }

  GC_ERROR Write() {
    m_nBuffer = kValue;
    m_nSize = Bytes();
    return Gc().GCWritePort(m_hDevice, GetParam().address, &m_nBuffer, &m_nSize);
  }
  GC_ERROR Read() {
    m_nBuffer = 0;
    m_nSize = Bytes();
    return Gc().GCReadPort(m_hDevice, GetParam().address, &m_nBuffer, &m_nSize);
  }
  // What a raw write meets where there is no write.
  static std::string WriteRefusal() {
    return GetParam().access == Access::R ? NotWritable(GetParam().address) : UnknownToSet(GetParam().address);
  }

  uint64_t m_nBuffer = 0;
  size_t m_nSize = 0;
};

TEST_P(GrabberParameter, WriteHandsTheCallersPointerToTheLibrary) {
  OpenDevice();
  const GRB_HANDLE stream = StreamHandle();
  const size_t mark = Script().Mark();
  if (GetParam().write == 0) {
    EXPECT_GC(GC_ERR_ERROR, WriteRefusal(), Write());
    EXPECT_EQ(Script().Trace(mark), Lines());
    return;
  }
  EXPECT_GC_OK(Write());
  EXPECT_EQ(m_nSize, Bytes());
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].op, Op::ParameterSet);
  EXPECT_EQ(calls[0].handle, stream);
  EXPECT_EQ(calls[0].code, GetParam().write);
  EXPECT_EQ(calls[0].argument, &m_nBuffer);
  EXPECT_EQ(calls[0].value, ValueInWidth());
  EXPECT_EQ(calls[0].thread, std::this_thread::get_id());
}

TEST_P(GrabberParameter, ReadAnswersTheLibrarysValue) {
  SetParameter(GetParam().read, kValue);
  OpenDevice();
  const GRB_HANDLE stream = StreamHandle();
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Read());
  EXPECT_EQ(m_nSize, Bytes());
  EXPECT_EQ(m_nBuffer, ValueInWidth());
  const std::vector<Call> calls = Script().Calls(mark);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].op, Op::ParameterGet);
  EXPECT_EQ(calls[0].handle, stream);
  EXPECT_EQ(calls[0].code, GetParam().read);
  // Into a place of its own: a failing read must not touch the caller's buffer.
  EXPECT_NE(calls[0].argument, &m_nBuffer);
}

TEST_P(GrabberParameter, FailedWriteNamesTheFeature) {
  OpenDevice();
  if (GetParam().write == 0) {
    EXPECT_GC(GC_ERR_ERROR, WriteRefusal(), Write());
    return;
  }
  Script().On(Match(Op::ParameterSet, GetParam().write), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite(GetParam().name), Write());
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  // Once more, as if nothing had been.
  EXPECT_GC_OK(Write());
}

TEST_P(GrabberParameter, FailedReadNamesTheFeatureAndLeavesTheBuffer) {
  OpenDevice();
  Script().On(Match(Op::ParameterGet, GetParam().read), Bang());
  // The map's copy of the word may reach the buffer ahead of the library; the library's value must not.
  SetParameter(GetParam().read, kValue);
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().name), Read());
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
  EXPECT_NE(m_nBuffer, ValueInWidth());
  EXPECT_GC_OK(Read());
}

TEST_P(GrabberParameter, WithoutAStreamThereIsNothingToAskOrTell) {
  for (const DEVICE_ACCESS_FLAGS flags : {DEVICE_ACCESS_FLAGS{DEVICE_ACCESS_READONLY}, kCustomAccess}) {
    OpenDevice(flags);
    const size_t mark = Script().Mark();
    EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(GetParam().address), Read());
    if (flags == DEVICE_ACCESS_READONLY) {
      EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", Write());
    } else if (GetParam().access == Access::R) {
      EXPECT_GC(GC_ERR_ERROR, NotWritable(GetParam().address), Write());
    } else {
      EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(GetParam().address), Write());
    }
    EXPECT_EQ(Script().Trace(mark), Lines());
    CloseDevice();
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, GrabberParameter, testing::ValuesIn(kParameters));

using GrabberRegisters = OpenDeviceTest;

// Nothing but success is success here.
TEST_F(GrabberRegisters, WarningsAreFailures) {
  for (const ParameterRow &row : kParameters) {
    SCOPED_TRACE(row);
    for (const GRB_STATUS status : {GRB_WARNING_TIMEOUT, GRB_WARNING_PASSED, 1U, 0xFFFFFFFFU}) {
      uint64_t value = kValue;
      if (row.write != 0) {
        Script().On(Match(Op::ParameterSet, row.write), Bang(status));
        size_t size = row.bits / 8;
        EXPECT_GC(
            GC_ERR_ERROR,
            std::string("Failed writing Device feature: ") + row.name + ": " + LibraryText("GRB_ParameterSet", status),
            Gc().GCWritePort(m_hDevice, row.address, &value, &size));
      }
      Script().On(Match(Op::ParameterGet, row.read), Bang(status));
      EXPECT_GC(
          GC_ERR_ERROR,
          std::string("Failed reading Device feature: ") + row.name + ": " + LibraryText("GRB_ParameterGet", status),
          TryRead(m_hDevice, row.address, &value, row.bits / 8));
    }
  }
}

TEST_F(GrabberRegisters, SizesFollowTheWidth) {
  for (const ParameterRow &row : kParameters) {
    SCOPED_TRACE(row);
    uint64_t value = 0;
    size_t size = 4;
    if (row.bits == 64) {
      EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.",
                Gc().GCReadPort(m_hDevice, row.address, &value, &size));
    } else {
      EXPECT_GC_OK(Gc().GCReadPort(m_hDevice, row.address, &value, &size));
    }
    EXPECT_EQ(size, 4U);
    size = 2;
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address and/or uiSize have to be multiples of four.",
              Gc().GCReadPort(m_hDevice, row.address, &value, &size));
  }
}

// The answer says how many bytes it has, however many were asked for.
TEST_F(GrabberRegisters, SizesAboveTheWidthAreLowered) {
  SetParameter(GRB_TIMERA1_PERIOD_NS, kValue);
  uint64_t values[2] = {};
  size_t size = sizeof(values);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCReadPort(m_hDevice, 0x2034, values, &size));
  EXPECT_EQ(size, 8U);
  EXPECT_EQ(values[0], kValue);
  EXPECT_EQ(Script().Trace(mark), (Lines{"ParameterGet(" + HandleName(StreamHandle()) + ", GRB_TIMERA1_PERIOD_NS)"}));
}

// The number of bytes that the library takes follows from the parameter, not from the caller's size.
TEST_F(GrabberRegisters, WritesOfHalfOfAWideParameterHandTheWholeOn) {
  size_t wide = 0;
  for (const ParameterRow &row : kParameters) {
    if (row.bits != 64) {
      continue;
    }
    SCOPED_TRACE(row);
    uint64_t value = kValue;
    size_t size = 4;
    EXPECT_GC_OK(Gc().GCWritePort(m_hDevice, row.address, &value, &size));
    EXPECT_EQ(Parameter(row.write), kValue);
    ++wide;
  }
  EXPECT_EQ(wide, 7U);
}

// Known to the dispatchers, but with no register: no port access reaches them.
TEST_F(GrabberRegisters, LinkTestsCannotBeReached) {
  const size_t mark = Script().Mark();
  for (const uint32_t address : {0x2218U, 0x221CU}) {
    uint32_t value = 0;
    EXPECT_GC(GC_ERR_ERROR, NotAvailable(address), TryRead(m_hDevice, address, &value, sizeof(value)));
    EXPECT_GC(GC_ERR_ERROR, NotAvailable(address), WriteU32(m_hDevice, address, 1));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// The vertical register is on its own, whatever the description makes of it.
TEST_F(GrabberRegisters, BothSubSamplingsAreReadSeparately) {
  SetParameter(GRB_ACQ_XSUB, GRB_ACQ_X2);
  SetParameter(GRB_ACQ_YSUB, GRB_ACQ_X8);
  EXPECT_EQ(ReadU32(m_hDevice, 0x1428), GRB_ACQ_X2);
  EXPECT_EQ(ReadU32(m_hDevice, 0x142C), GRB_ACQ_X8);
}

// A feature that is read-only by its description is no such thing to a raw write.
TEST_F(GrabberRegisters, RawWriteToAReadOnlyFeatureReachesTheLibrary) {
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x1408, 9));
  EXPECT_EQ(Parameter(GRB_REV_HW_MAJOR), 9U);
}

TEST_F(GrabberRegisters, FailureWithoutAHookShowsTheWordsOfTheOneBefore) {
  Script().On(Match(Op::ParameterSet, GRB_CAMTRIG_SRC), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("GRB_CAMTRIG_SRC"), WriteU32(m_hDevice, 0x2004, 1));
  Script().On(Match(Op::ParameterGet, GRB_FGTRIG_SRC), Reply::Status(kStatus));
  uint32_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, "Failed reading Device feature: GRB_FGTRIG_SRC: " + LibraryText("GRB_ParameterSet"),
            TryRead(m_hDevice, 0x2024, &value, sizeof(value)));
}

TEST_F(GrabberRegisters, FailureWithoutAHookOnAFreshThreadHasNoWords) {
  Script().On(Match(Op::ParameterSet, GRB_CAMTRIG_SRC), Bang());
  EXPECT_GC_CODE(GC_ERR_ERROR, WriteU32(m_hDevice, 0x2004, 1));
  std::thread([this] {
    Script().On(Match(Op::ParameterSet, GRB_CAMTRIG_SRC), Reply::Status(kStatus));
    EXPECT_GC(GC_ERR_ERROR, "Failed writing Device feature: GRB_CAMTRIG_SRC: ", WriteU32(m_hDevice, 0x2004, 1));
  }).join();
}

struct HookRow {
  const char *what;
  Reply reply;
  const char *text;
};

TEST_F(GrabberRegisters, WordsOfAFailureComeFromTheHooksArguments) {
  const HookRow kRows[] = {
      {"all", Reply::Failure(0x8ABC, "Words.").Function("GRB_Some"), "Words. (GRB_Some returned error code 0x8abc)"},
      {"no function", Reply::Failure(1, "Words.").NullFunction(), "Words."},
      {"no description", Reply::Failure(0x10, "").Function("GRB_Some").NullDescription(),
       "No description of error provided by GRB library. (GRB_Some returned error code 0x10)"},
      {"neither", Reply::Failure(0xF, "").NullFunction().NullDescription(),
       "No description of error provided by GRB library."},
      {"empty ones", Reply::Failure(0xF, "").Function(""), " ( returned error code 0xf)"},
  };
  for (const HookRow &row : kRows) {
    SCOPED_TRACE(row.what);
    Script().On(Match(Op::ParameterSet, GRB_LUT_SHIFT), row.reply);
    EXPECT_GC(GC_ERR_ERROR, std::string("Failed writing Device feature: GRB_LUT_SHIFT: ") + row.text,
              WriteU32(m_hDevice, 0x1444, 1));
  }
}

// The message is joined and not formatted: none of the library's words is cut off.
TEST_F(GrabberRegisters, WordsOfAFailureAreWhole) {
  const std::string words(1000, 'w');
  Script().On(Match(Op::ParameterSet, GRB_LUT_SHIFT), Reply::Failure(kStatus, words).NullFunction());
  EXPECT_GC(GC_ERR_ERROR, "Failed writing Device feature: GRB_LUT_SHIFT: " + words, WriteU32(m_hDevice, 0x1444, 1));
  Script().On(Match(Op::ParameterGet, GRB_LUT_SHIFT), Reply::Failure(kStatus, words).NullFunction());
  uint32_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, "Failed reading Device feature: GRB_LUT_SHIFT: " + words,
            TryRead(m_hDevice, 0x1444, &value, sizeof(value)));
}

}  // namespace

}  // namespace DeviceTests
