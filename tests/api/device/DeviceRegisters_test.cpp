// SPDX-License-Identifier: MIT
// The Device's address space: which words exist, with which rights, and where their values lie.
#include <ostream>

#include "DeviceFixture.h"
#include "DeviceRegisterTable.h"

namespace DeviceTests {

static std::ostream &operator<<(std::ostream &out, const RegisterRow &row) {
  return out << Format("0x%04X", row.address);
}

namespace {

class DeviceRegister : public DeviceTest, public testing::WithParamInterface<RegisterRow> {
 protected:
  static GC_ERROR Read(PORT_HANDLE port, uint32_t address) {
    uint32_t word = 0;
    return TryRead(port, address, &word, sizeof(word));
  }
};

// Without a stream handle and without rights: the map decides first, then the dispatcher misses its handle.
TEST_P(DeviceRegister, ReadWordByWordWithoutAStream) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  const size_t mark = Script().Mark();
  const RegisterRow &row = GetParam();
  for (uint32_t word = row.address; word < row.address + row.bytes; word += 4) {
    if (row.backing == Backing::Absent) {
      EXPECT_GC(GC_ERR_ERROR, NotAvailable(word), Read(m_hDevice, word));
    } else if (!row.IsReadable()) {
      EXPECT_GC(GC_ERR_ERROR, NotReadable(word), Read(m_hDevice, word));
    } else if (row.backing == Backing::Virtual && !IsTrio(word)) {
      EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(word), Read(m_hDevice, word));
    } else {
      EXPECT_GC_OK(Read(m_hDevice, word));
    }
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_P(DeviceRegister, WriteWordByWordWithoutAStream) {
  OpenDevice(kCustomAccess);
  const size_t mark = Script().Mark();
  const RegisterRow &row = GetParam();
  for (uint32_t word = row.address; word < row.address + row.bytes; word += 4) {
    if (row.backing == Backing::Absent) {
      EXPECT_GC(GC_ERR_ERROR, NotAvailable(word), WriteU32(m_hDevice, word, 0));
    } else if (!row.IsWritable()) {
      EXPECT_GC(GC_ERR_ERROR, NotWritable(word), WriteU32(m_hDevice, word, 0));
    } else if (row.backing == Backing::Stored || IsTrio(word)) {
      EXPECT_GC_OK(WriteU32(m_hDevice, word, 0));
    } else {
      EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(word), WriteU32(m_hDevice, word, 0));
    }
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

INSTANTIATE_TEST_SUITE_P(All, DeviceRegister, testing::ValuesIn(kRegisters));

using DeviceRegisterMap = DeviceTest;

// The missing handle is found ahead of a value that no conversion knows.
TEST_F(DeviceRegisterMap, UnknownScanTypeWithoutAStreamMissesTheStream) {
  OpenDevice(kCustomAccess);
  EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(0x600), WriteU32(m_hDevice, 0x600, 2));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
}

TEST_F(DeviceRegisterMap, RefusesEveryWriteOnADeviceOpenForReading) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  for (const RegisterRow &row : kRegisters) {
    SCOPED_TRACE(row);
    EXPECT_GC_FROM(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.",
                   "GenICam::Client::CDevice::WriteData", WriteU32(m_hDevice, row.address, 0));
  }
}

// A plain register is no business of the library.
TEST_F(DeviceRegisterMap, StoredValuesAreKeptWithoutACallOfTheLibrary) {
  OpenDevice();
  const size_t mark = Script().Mark();
  size_t kept = 0;
  for (const RegisterRow &row : kRegisters) {
    if (row.backing != Backing::Stored) {
      continue;
    }
    SCOPED_TRACE(row);
    EXPECT_EQ(ReadBytes(m_hDevice, row.address, row.bytes).size(), row.bytes);
    if (row.IsWritable()) {
      std::vector<uint8_t> bytes(row.bytes);
      for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<uint8_t>(i * 7 + 1);
      }
      EXPECT_GC_OK(WriteBytes(m_hDevice, row.address, bytes));
      EXPECT_EQ(ReadBytes(m_hDevice, row.address, row.bytes), bytes);
      ++kept;
    }
  }
  EXPECT_EQ(kept, 3U);
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Only the first word of a longer virtual register is known to the dispatchers.
TEST_F(DeviceRegisterMap, InnerWordsOfVirtualRegistersAreUnknownParameters) {
  OpenDevice();
  const size_t mark = Script().Mark();
  size_t words = 0;
  for (const RegisterRow &row : kRegisters) {
    if (row.backing != Backing::Virtual) {
      continue;
    }
    SCOPED_TRACE(row);
    for (uint32_t word = row.address + 4; word < row.address + row.bytes; word += 4) {
      ++words;
      uint32_t value = 0;
      EXPECT_GC(GC_ERR_ERROR, UnknownToGet(word), TryRead(m_hDevice, word, &value, sizeof(value)));
      EXPECT_GC(GC_ERR_ERROR, row.IsWritable() ? UnknownToSet(word) : NotWritable(word), WriteU32(m_hDevice, word, 1));
    }
  }
  EXPECT_EQ(words, 255U + 10U);  // the board properties, and the upper halves
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Every word that no row names, with either right.
TEST_F(DeviceRegisterMap, HasNoOtherWords) {
  OpenDevice(kCustomAccess);
  size_t holes = 0;
  for (uint32_t word = 0; word < kRegistersEnd; word += 4) {
    if (FindRegister(word) != nullptr) {
      continue;
    }
    ++holes;
    uint32_t value = 0;
    ASSERT_GC(GC_ERR_ERROR, NotAvailable(word), TryRead(m_hDevice, word, &value, sizeof(value)));
    ASSERT_GC(GC_ERR_ERROR, NotAvailable(word), WriteU32(m_hDevice, word, 0));
  }
  EXPECT_GT(holes, 1000U);
}

TEST_F(DeviceRegisterMap, HolesRefuseWritesOfADeviceOpenForReadingAsWell) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", WriteU32(m_hDevice, 0x500, 0));
  EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", WriteU32(m_hDevice, 0x501, 0));
  EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.",
            WriteU32(m_hDevice, 0xFFFFFFFFFFFFFFFFULL, 0));
}

// Of two described registers that have no entry of their own, only the first is a hole.
TEST_F(DeviceRegisterMap, InterruptTestInsideTheFileNameIsAWordOfTheFileName) {
  OpenDevice();
  EXPECT_GC_OK(WriteText(m_hDevice, 0x144C, std::string(0x1504 - 0x144C, '.') + "abcd", 1024));
  EXPECT_EQ(ReadText(m_hDevice, 0x1504, 4), "abcd");
}

struct TextRow {
  uint32_t address;
  size_t size;
  const char *text;
};

constexpr TextRow kTexts[] = {
    {0x0000, 256, "Channel #1"}, {0x0100, 64, "Lumivex Optics"},
    {0x0140, 64, "Testcam 1"},   {0x02E0, 256, "Lumivex Optics Testcam 1(Channel #1)"},
    {0x03F0, 256, "Stream #1"},  {0x144C, 1024, ""},
    {0x1884, 1024, ""},
};

TEST_F(DeviceRegisterMap, TextsHaveTheirFirstContentsAndZerosBehind) {
  OpenDevice();
  for (const TextRow &row : kTexts) {
    SCOPED_TRACE(row.text);
    std::vector<uint8_t> expected(row.text, row.text + std::string(row.text).size());
    expected.resize(row.size);
    EXPECT_EQ(ReadBytes(m_hDevice, row.address, row.size), expected);
  }
}

TEST_F(DeviceRegisterMap, NumbersHaveTheirFirstContents) {
  OpenDevice();
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E4), 1U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E8), 1U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x3EC), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x508), 1U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x1448), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x1C84), 0U);
}

TEST_F(DeviceRegisterMap, WithoutAStreamTheStreamRegistersSaySo) {
  OpenDevice(DEVICE_ACCESS_READONLY);
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E4), 1U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x3E8), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x508), 0U);
  std::vector<uint8_t> expected(256);
  expected[0] = '-';
  EXPECT_EQ(ReadBytes(m_hDevice, 0x3F0, 256), expected);
}

TEST_F(DeviceRegisterMap, TextsThatFillTheCamerasRegistersAreWhole) {
  const std::string vendor(32, 'V');
  const std::string model(32, 'M');
  Script().SetCamera(kBoard, kChannel, CCamera().Vendor(vendor).Model(model));
  OpenDevice();
  EXPECT_EQ(ReadText(m_hDevice, 0x100, 64), vendor);
  EXPECT_EQ(ReadText(m_hDevice, 0x140, 64), model);
  EXPECT_EQ(ReadText(m_hDevice, 0x2E0, 256), vendor + " " + model + "(Channel #1)");
}

// The selector is stored and no more.
TEST_F(DeviceRegisterMap, StreamSelectorChangesNothingElse) {
  OpenDevice();
  const size_t mark = Script().Mark();
  for (const uint32_t selector : {1U, 0U, 77U, 0xFFFFFFFFU}) {
    EXPECT_GC_OK(WriteU32(m_hDevice, 0x3EC, selector));
    EXPECT_EQ(ReadU32(m_hDevice, 0x3EC), selector);
    EXPECT_EQ(ReadText(m_hDevice, 0x3F0, 256), "Stream #1");
    EXPECT_EQ(ReadU32(m_hDevice, 0x3E8), 1U);
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(DeviceRegisterMap, FileNamesCanBeEnteredBeforeAStreamExists) {
  OpenDevice(kCustomAccess);
  EXPECT_GC_OK(WriteText(m_hDevice, 0x144C, "load.gcf", 1024));
  EXPECT_GC_OK(WriteText(m_hDevice, 0x1884, "save.gcf", 1024));
  EXPECT_EQ(ReadText(m_hDevice, 0x144C, 1024), "load.gcf");
  EXPECT_EQ(ReadText(m_hDevice, 0x1884, 1024), "save.gcf");
}

// The first word decides whether a longer access goes on to the library.
TEST_F(DeviceRegisterMap, AccessThatBeginsAtAStoredWordStaysInTheMap) {
  OpenDevice();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x184C, GRB_ACQ_BLOCKING_OFF));
  SetParameter(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_ON);
  const size_t mark = Script().Mark();
  const std::vector<uint8_t> bytes = ReadBytes(m_hDevice, 0x1848, 8);
  ASSERT_EQ(bytes.size(), 8U);
  EXPECT_EQ(bytes[4], GRB_ACQ_BLOCKING_OFF);  // the copy that the write left
  EXPECT_GC_OK(WriteBytes(m_hDevice, 0x1848, std::vector<uint8_t>(8)));
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// The map keeps a word that the library refused. It is seen only from the word ahead.
TEST_F(DeviceRegisterMap, RefusedWriteStaysInTheMapsCopy) {
  OpenDevice();
  SetParameter(GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_ON);
  Script().On(Match(Op::ParameterSet, GRB_ACQ_BLOCKING), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("GRB_ACQ_BLOCKING"), WriteU32(m_hDevice, 0x184C, 77));
  const std::vector<uint8_t> bytes = ReadBytes(m_hDevice, 0x1848, 8);
  ASSERT_EQ(bytes.size(), 8U);
  EXPECT_EQ(bytes[4], 77);
  EXPECT_EQ(ReadU32(m_hDevice, 0x184C), GRB_ACQ_BLOCKING_ON);
}

TEST_F(DeviceRegisterMap, AccessThatBeginsAtAVirtualWordIsOneParameter) {
  OpenDevice();
  SetParameter(GRB_ROI_XLENGTH, 640);
  uint32_t words[2] = {0xAAAAAAAA, 0xBBBBBBBB};
  size_t size = sizeof(words);
  EXPECT_GC_OK(Gc().GCReadPort(m_hDevice, 0x604, words, &size));
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(words[0], 640U);

  words[0] = 320;
  words[1] = 5;
  size = sizeof(words);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCWritePort(m_hDevice, 0x614, words, &size));
  EXPECT_EQ(Script().Trace(mark),
            (Lines{"ParameterSet(" + HandleName(StreamHandle()) + ", GRB_CAM_ACTIVE_XLENGTH, 0x140)"}));
}

TEST_F(DeviceRegisterMap, FailingWordStopsALongerWriteAheadOfTheLibrary) {
  OpenDevice();
  const size_t mark = Script().Mark();
  uint32_t words[2] = {GRB_LUT_BYPASS, 1};
  size_t size = sizeof(words);
  EXPECT_GC(GC_ERR_ERROR, NotWritable(0x1864), Gc().GCWritePort(m_hDevice, 0x1860, words, &size));
  EXPECT_EQ(Script().Trace(mark), Lines());
  EXPECT_EQ(ReadU32(m_hDevice, 0x1860), 0xC0091F00U);
}

}  // namespace

}  // namespace DeviceTests
