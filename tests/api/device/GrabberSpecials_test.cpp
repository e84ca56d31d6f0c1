// SPDX-License-Identifier: MIT
// The virtual registers that do more than hand a parameter through: register trio, handle, board properties, inputs
// and outputs, filters, commands.
#include <cstring>
#include <ostream>

#include "DeviceFixture.h"

namespace DeviceTests {
namespace {

class GrabberSpecial : public OpenDeviceTest {
 protected:
  void ReopenWith(DEVICE_ACCESS_FLAGS flags) {
    CloseDevice();
    OpenDevice(flags);
  }
  GC_ERROR Read(uint32_t address) { return TryRead(m_hDevice, address, &m_nRead, sizeof(m_nRead)); }
  static std::string Set(uint32_t identifier, uint64_t value) {
    return "ParameterSet(" + HandleName(StreamHandle()) + ", " + NameOfCode(identifier) +
           Format(", 0x%llx)", static_cast<unsigned long long>(value));
  }

  uint32_t m_nRead = 0;
};

// Register trio -------------------------------------------------------------------------------------------------------

constexpr uint32_t kAddress = 0x4F0;
constexpr uint32_t kData = 0x4F4;
constexpr uint32_t kCommand = 0x4F8;

class RegisterTrio : public DeviceTest, public testing::WithParamInterface<DEVICE_ACCESS_FLAGS> {
 protected:
  void SetUp() override {
    DeviceTest::SetUp();
    OpenDevice(GetParam());
  }
  static std::string Write(uint32_t address, uint32_t value, uint32_t timeout = kTimeOut) {
    return "ControlWrite(" + HandleName(ControlHandle()) +
           Format(", GRB_PORT_CAMERA, 0x%x, 4, %u, %08x)", address, timeout, value);
  }
  static std::string Read(uint32_t address, uint32_t timeout = kTimeOut) {
    return "ControlRead(" + HandleName(ControlHandle()) + Format(", GRB_PORT_CAMERA, 0x%x, 4, %u)", address, timeout);
  }
};

TEST_P(RegisterTrio, LatchesAddressAndDataWithoutACallOfTheLibrary) {
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, kAddress), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, kData), 0U);
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x89ABCDEF));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 0x01234567));
  EXPECT_EQ(ReadU32(m_hDevice, kAddress), 0x89ABCDEFU);
  EXPECT_EQ(ReadU32(m_hDevice, kData), 0x01234567U);
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_P(RegisterTrio, LetterWSendsTheDataBigEndian) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 0x01020304));
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x57));
  EXPECT_EQ(Script().Trace(mark), (Lines{Write(0x9000, 0x01020304)}));
  EXPECT_EQ(Script().ReadCameraU32(kBoard, kChannel, 0x9000), 0x01020304U);
}

TEST_P(RegisterTrio, LetterRFetchesTheData) {
  Script().WriteCameraU32(kBoard, kChannel, 0x9000, 0xA1B2C3D4);
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x52));
  EXPECT_EQ(Script().Trace(mark), (Lines{Read(0x9000)}));
  EXPECT_EQ(ReadU32(m_hDevice, kData), 0xA1B2C3D4U);
  EXPECT_EQ(ReadU32(m_hDevice, kAddress), 0x9000U);
}

TEST_P(RegisterTrio, LetterWKeepsAddressAndData) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 0x01020304));
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x57));
  EXPECT_EQ(ReadU32(m_hDevice, kAddress), 0x9000U);
  EXPECT_EQ(ReadU32(m_hDevice, kData), 0x01020304U);
}

TEST_P(RegisterTrio, FailedLettersKeepTheData) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 5));
  for (const GRB_STATUS status : {kStatus, GRB_WARNING_TIMEOUT}) {
    Script().On(Match(Op::ControlRead), Bang(status));
    EXPECT_GC_CODE(status == kStatus ? GC_ERR_IO : GC_ERR_TIMEOUT, WriteU32(m_hDevice, kCommand, 0x52));
    Script().On(Match(Op::ControlWrite), Bang(status));
    EXPECT_GC_CODE(status == kStatus ? GC_ERR_IO : GC_ERR_TIMEOUT, WriteU32(m_hDevice, kCommand, 0x57));
    EXPECT_EQ(ReadU32(m_hDevice, kAddress), 0x9000U);
    EXPECT_EQ(ReadU32(m_hDevice, kData), 5U);
  }
}

// A read that moves nothing and succeeds leaves the data to the exchange of its bytes.
TEST_P(RegisterTrio, ShortLetterRSwapsWhatIsThere) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 5));
  Script().On(Match(Op::ControlRead), Reply::Status(GRB_OK).Moved(0));
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x52));
  EXPECT_EQ(ReadU32(m_hDevice, kData), 0x05000000U);
}

// The letter is the whole 32-bit value.
TEST_P(RegisterTrio, OtherValuesDoNothing) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0x9000));
  EXPECT_GC_OK(WriteU32(m_hDevice, kData, 5));
  const size_t mark = Script().Mark();
  for (const uint32_t command :
       {0U, 0x41U, 0x53U, 0x47U, 0x72U, 0x77U, 0x157U, 0x5700U, 0x57000000U, 0x52520052U, 0xFFFFFFFFU}) {
    EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, command));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
  EXPECT_EQ(ReadU32(m_hDevice, kData), 5U);
}

TEST_P(RegisterTrio, CommandReadsAsZero) {
  EXPECT_EQ(ReadU32(m_hDevice, kCommand), 0U);
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x41));
  EXPECT_EQ(ReadU32(m_hDevice, kCommand), 0U);
}

TEST_P(RegisterTrio, FailuresAreThoseOfTheCameraTransfer) {
  Script().RemoveCamera(kBoard, kChannel);
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 0xABCD));
  EXPECT_GC(GC_ERR_TIMEOUT,
            "Timeout while writing 4 bytes to address 0xabcd in camera, 0 bytes written, timeout value was 800.\n" +
                LibraryText("GRB_ControlWrite", GRB_WARNING_TIMEOUT, "No answer from the camera."),
            WriteU32(m_hDevice, kCommand, 0x57));
  EXPECT_GC(GC_ERR_TIMEOUT,
            "Timeout while reading 4 bytes from address 0xabcd in camera, 0 bytes read, timeout value was 800.\n" +
                LibraryText("GRB_ControlRead", GRB_WARNING_TIMEOUT, "No answer from the camera."),
            WriteU32(m_hDevice, kCommand, 0x52));
  Script().On(Match(Op::ControlRead), Bang().Moved(4));
  EXPECT_GC(
      GC_ERR_IO,
      "Error while reading 4 bytes from address 0xabcd in camera, 4 bytes read.\n" + LibraryText("GRB_ControlRead"),
      WriteU32(m_hDevice, kCommand, 0x52));
}

TEST_P(RegisterTrio, RefusesNullBuffersFirst) {
  size_t size = 4;
  for (const uint32_t address : {kAddress, kData, kCommand}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCWritePort(m_hDevice, address, nullptr, &size));
  }
}

// Every access that lets writes pass; the last has no stream handle.
INSTANTIATE_TEST_SUITE_P(Flags, RegisterTrio, testing::Values(3, 4, 1000, 1001));

TEST_F(GrabberSpecial, TrioOfADeviceOpenForReadingCanOnlyBeRead) {
  ReopenWith(DEVICE_ACCESS_READONLY);
  for (const uint32_t address : {kAddress, kData, kCommand}) {
    EXPECT_EQ(ReadU32(m_hDevice, address), 0U);
    EXPECT_GC(GC_ERR_ACCESS_DENIED, "Cannot write to device in READONLY mode.", WriteU32(m_hDevice, address, 0x57));
  }
}

TEST_F(GrabberSpecial, TriosOfTwoDevicesAreApart) {
  DEV_HANDLE other = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #2", kCustomAccess, &other));
  EXPECT_GC_OK(WriteU32(m_hDevice, kAddress, 1));
  EXPECT_EQ(ReadU32(other, kAddress), 0U);
}

class TrioSettings : public SettingsTest {};

TEST_F(TrioSettings, TimeOutIsPassedAsItStands) {
  m_Settings.Dword("TimeOut", 50);
  Apply();
  OpenDevice();
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x57));
  EXPECT_GC_OK(WriteU32(m_hDevice, kCommand, 0x52));
  const std::string h = HandleName(ControlHandle());
  EXPECT_EQ(Script().Trace(mark), (Lines{"ControlWrite(" + h + ", GRB_PORT_CAMERA, 0x0, 4, 50, 00000000)",
                                         "ControlRead(" + h + ", GRB_PORT_CAMERA, 0x0, 4, 50)"}));
}

// Handle and board properties -----------------------------------------------------------------------------------------

TEST_F(GrabberSpecial, HandleIsTheRawValueOfTheStreamHandle) {
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, 0x4FC), StreamHandle());
  EXPECT_EQ(Script().Trace(mark), Lines());
  EXPECT_GC(GC_ERR_ERROR, NotWritable(0x4FC), WriteU32(m_hDevice, 0x4FC, 1));
  ReopenWith(kCustomAccess);
  EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(0x4FC), Read(0x4FC));
}

class BoardProperties : public GrabberSpecial {
 protected:
  GC_ERROR Properties(size_t size) {
    m_Text.assign(size, '#');
    m_nSize = size;
    return Gc().GCReadPort(m_hDevice, 0x1004, m_Text.data(), &m_nSize);
  }
  std::vector<char> m_Text;
  size_t m_nSize = 0;
};

TEST_F(BoardProperties, AreTheLibrarysText) {
  const std::string expected = CScriptedGrb::kDefaultProperties;
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Properties(1024));
  EXPECT_EQ(m_nSize, expected.size() + 1);
  EXPECT_STREQ(m_Text.data(), expected.c_str());
  EXPECT_EQ(Script().Trace(mark), (Lines{"ParameterGet(" + HandleName(StreamHandle()) + ", GRB_BOARD_PROPERTIES)"}));
}

TEST_F(BoardProperties, BeginWithANullPointer) {
  const void *seen = this;
  Script().On(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES),
              Reply::Status(GRB_OK).Do([&seen](const Call &call) { std::memcpy(&seen, call.argument, sizeof(seen)); }));
  EXPECT_GC_OK(Properties(1024));
  EXPECT_EQ(seen, nullptr);
  EXPECT_EQ(m_nSize, 1U);
  EXPECT_STREQ(m_Text.data(), "");
}

TEST_F(BoardProperties, OfANullPointerAreEmpty) {
  Script().SetNullProperties(kBoard);
  EXPECT_GC_OK(Properties(1024));
  EXPECT_EQ(m_nSize, 1U);
  EXPECT_STREQ(m_Text.data(), "");
}

TEST_F(BoardProperties, NeedRoomForTextAndTerminator) {
  const std::string seven = "Model=7";
  Script().SetBoard(kBoard, seven);
  EXPECT_GC_OK(Properties(8));
  EXPECT_STREQ(m_Text.data(), seven.c_str());
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Properties(4));
  EXPECT_EQ(m_nSize, 4U);
  Script().SetBoard(kBoard, "Model=78");
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Properties(8));
}

TEST_F(BoardProperties, LongerThanTheRegisterAreRefused) {
  Script().SetBoard(kBoard, "Model=" + std::string(1023 - 6, 'x'));
  EXPECT_GC_OK(Properties(1024));
  EXPECT_EQ(m_nSize, 1024U);
  Script().SetBoard(kBoard, "Model=" + std::string(1024 - 6, 'x'));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Properties(1024));
}

TEST_F(BoardProperties, FailureNamesTheFeature) {
  Script().On(Match(Op::ParameterGet, GRB_BOARD_PROPERTIES), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedRead("GRB_BOARD_PROPERTIES"), Properties(1024));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
}

TEST_F(BoardProperties, CannotBeWrittenAndNeedAStream) {
  EXPECT_GC(GC_ERR_ERROR, NotWritable(0x1004), WriteU32(m_hDevice, 0x1004, 1));
  ReopenWith(DEVICE_ACCESS_READONLY);
  EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(0x1004), Properties(1024));
}

// Inputs and outputs --------------------------------------------------------------------------------------------------

constexpr uint32_t kOutPort = 0x1850;
constexpr uint32_t kOutMethod = 0x1858;
constexpr uint32_t kOutBit = 0x185C;
constexpr uint32_t kInPort = 0x1860;
constexpr uint32_t kInValue = 0x1864;

using InputsAndOutputs = GrabberSpecial;

TEST_F(InputsAndOutputs, SelectionsBeginAtTheirDefaultsAndStayHere) {
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, kOutPort), 0xC0092E00U);
  EXPECT_EQ(ReadU32(m_hDevice, kInPort), 0xC0091F00U);
  EXPECT_EQ(ReadU32(m_hDevice, kOutBit), 1U);
  for (const uint32_t address : {kOutPort, kInPort, kOutBit}) {
    EXPECT_GC_OK(WriteU32(m_hDevice, address, address + 7));
  }
  for (const uint32_t address : {kOutPort, kInPort, kOutBit}) {
    EXPECT_EQ(ReadU32(m_hDevice, address), address + 7);
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Each Device has selections of its own, and a Device opened anew has none of the one before.
TEST_F(InputsAndOutputs, SelectionsBelongToOneDevice) {
  constexpr uint32_t kDefaults[][2] = {{kOutPort, 0xC0092E00}, {kInPort, 0xC0091F00}, {kOutBit, 1}};
  for (const auto &row : kDefaults) {
    EXPECT_GC_OK(WriteU32(m_hDevice, row[0], 7));
  }
  DEV_HANDLE other = nullptr;
  ASSERT_GC_OK(Gc().IFOpenDevice(m_hInterface, "Channel #2", DEVICE_ACCESS_CONTROL, &other));
  for (const auto &row : kDefaults) {
    EXPECT_EQ(ReadU32(other, row[0]), row[1]);
    EXPECT_GC_OK(WriteU32(other, row[0], 9));
    EXPECT_EQ(ReadU32(m_hDevice, row[0]), 7U);
  }
  CloseDevice();
  OpenDevice();
  for (const auto &row : kDefaults) {
    EXPECT_EQ(ReadU32(m_hDevice, row[0]), row[1]);
    EXPECT_EQ(ReadU32(other, row[0]), 9U);
  }
}

TEST_F(InputsAndOutputs, SelectionsNeedAStreamToo) {
  ReopenWith(kCustomAccess);
  for (const uint32_t address : {kOutPort, kInPort, kOutBit, kOutMethod}) {
    EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(address), Read(address));
    EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(address), WriteU32(m_hDevice, address, 1));
  }
  EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(kInValue), Read(kInValue));
}

struct BitRow {
  uint32_t bit;
  uint32_t mask;
};

std::ostream &operator<<(std::ostream &out, const BitRow &row) { return out << row.bit; }

constexpr BitRow kBits[] = {{0, 1}, {1, 1}, {2, 2}, {3, 4}, {4, 8}, {17, 0x10000}, {32, 0x80000000}};

class OutputBit : public GrabberSpecial, public testing::WithParamInterface<BitRow> {};

TEST_P(OutputBit, MethodIsWrittenToThePortAtOnce) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kOutBit, GetParam().bit));
  uint32_t value = GRB_IO_METHOD_BIT_SET;
  size_t size = sizeof(value);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCWritePort(m_hDevice, kOutMethod, &value, &size));
  EXPECT_EQ(Script().Trace(mark), (Lines{Set(0xC0092E01, 0x01000000U | GetParam().mask)}));
  // The caller's value is not to be changed.
  EXPECT_NE(Script().Calls(mark)[0].argument, &value);
  EXPECT_EQ(value, GRB_IO_METHOD_BIT_SET);
}

TEST_P(OutputBit, MethodIsAskedWithTheMaskInPlace) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kOutBit, GetParam().bit));
  uint32_t seen = 0;
  Script().On(Match(Op::ParameterGet),
              Reply::Status(GRB_OK).Do([&seen](const Call &call) { std::memcpy(&seen, call.argument, sizeof(seen)); }));
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, kOutMethod), GetParam().mask & 0xFFFFFFFCU);
  EXPECT_EQ(seen, GetParam().mask);
  EXPECT_EQ(Script().Trace(mark), (Lines{"ParameterGet(" + HandleName(StreamHandle()) + ", 0xc0092e00)"}));
}

TEST_P(OutputBit, InputValueIsBitZeroWhateverTheOutputBit) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kOutBit, GetParam().bit));
  for (const uint32_t value : {0U, 1U, 2U, 3U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
    SetParameter(0xC0091F00, value);
    EXPECT_EQ(ReadU32(m_hDevice, kInValue), value & 1U);
  }
}

INSTANTIATE_TEST_SUITE_P(Bits, OutputBit, testing::ValuesIn(kBits));

TEST_F(InputsAndOutputs, ReadOfTheMethodClearsTheTwoLowBits) {
  SetParameter(0xC0092E00, 0x0100000F);
  EXPECT_EQ(ReadU32(m_hDevice, kOutMethod), 0x0100000CU);
}

// The port itself is the parameter.
TEST_F(InputsAndOutputs, SelectedPortsAreTheIdentifiers) {
  EXPECT_GC_OK(WriteU32(m_hDevice, kOutPort, GRB_IO_422OUT_CH2));
  EXPECT_GC_OK(WriteU32(m_hDevice, kInPort, GRB_IO_OPTOIN_CH4));
  SetParameter(GRB_IO_OPTOIN_CH4, 1);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, kOutMethod, GRB_IO_METHOD_BIT_CLEAR));
  EXPECT_EQ(ReadU32(m_hDevice, kOutMethod), 0x02000000U);
  EXPECT_EQ(ReadU32(m_hDevice, kInValue), 1U);
  const std::string h = HandleName(StreamHandle());
  EXPECT_EQ(Script().Trace(mark), (Lines{Set(0xC0092601, 0x02000001), "ParameterGet(" + h + ", 0xc0092600)",
                                         "ParameterGet(" + h + ", 0xc0091e00)"}));
}

TEST_F(InputsAndOutputs, InputIsAskedWithZeroInPlace) {
  uint32_t seen = 99;
  Script().On(Match(Op::ParameterGet),
              Reply::Status(GRB_OK).Do([&seen](const Call &call) { std::memcpy(&seen, call.argument, sizeof(seen)); }));
  EXPECT_EQ(ReadU32(m_hDevice, kInValue), 0U);
  EXPECT_EQ(seen, 0U);
}

// The names differ between write and read.
TEST_F(InputsAndOutputs, FailuresHaveTheirNames) {
  Script().On(Match(Op::ParameterSet), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("GRB_IO_METHOD"), WriteU32(m_hDevice, kOutMethod, GRB_IO_METHOD_BIT_SET));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  Script().On(Match(Op::ParameterGet), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedRead("GRB_IO_OUT_METHOD"), Read(kOutMethod));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
  Script().On(Match(Op::ParameterGet), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedRead("GRB_IO_IN_VALUE"), Read(kInValue));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
}

TEST_F(InputsAndOutputs, InputValueCannotBeWritten) {
  const size_t mark = Script().Mark();
  EXPECT_GC(GC_ERR_ERROR, NotWritable(kInValue), WriteU32(m_hDevice, kInValue, 1));
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Filters -------------------------------------------------------------------------------------------------------------

struct FilterRow {
  uint32_t address;
  const char *name;
  uint32_t identifier;
  uint64_t floor;
};

std::ostream &operator<<(std::ostream &out, const FilterRow &row) { return out << row.name; }

constexpr FilterRow kFilters[] = {
    {0x205C, "GRB_FGTRIG_FILTER_NS", 0xC0094600, 66},
    {0x2064, "GRB_CAMTRIG_FILTER_NS", 0xC0094700, 66},
    {0x206C, "GRB_CAMTRIG_ENCODER_FILTER_NS", 0xC0094800, 2000},
};

class Filter : public GrabberSpecial, public testing::WithParamInterface<FilterRow> {
 protected:
  GC_ERROR Write(uint64_t value) {
    m_nValue = value;
    m_nSize = sizeof(m_nValue);
    return Gc().GCWritePort(m_hDevice, GetParam().address, &m_nValue, &m_nSize);
  }
  uint64_t m_nValue = 0;
  size_t m_nSize = 0;
};

TEST_P(Filter, RaisesWhatIsBelowItsFloorAndLetsZeroPass) {
  const uint64_t floor = GetParam().floor;
  const uint64_t kRows[][2] = {{0, 0},
                               {1, floor},
                               {10, floor},
                               {floor - 1, floor},
                               {floor, floor},
                               {floor + 1, floor + 1},
                               {0x100000000ULL, 0x100000000ULL},
                               {0xFFFFFFFFFFFFFFFFULL, 0xFFFFFFFFFFFFFFFFULL}};
  for (const auto &row : kRows) {
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(Write(row[0]));
    EXPECT_EQ(Script().Trace(mark), (Lines{Set(GetParam().identifier, row[1])}));
    EXPECT_EQ(m_nValue, row[0]);
    EXPECT_EQ(ReadU64(m_hDevice, GetParam().address), row[1]);
  }
}

// A value of its own goes to the library, for the caller's is constant.
TEST_P(Filter, HandsACopyToTheLibrary) {
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Write(5));
  ASSERT_EQ(Script().Calls(mark).size(), 1U);
  EXPECT_NE(Script().Calls(mark)[0].argument, &m_nValue);
}

TEST_P(Filter, FailuresNameTheFeature) {
  Script().On(Match(Op::ParameterSet, GetParam().identifier), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite(GetParam().name), Write(100));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  Script().On(Match(Op::ParameterGet, GetParam().identifier), Bang());
  uint64_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().name), TryRead(m_hDevice, GetParam().address, &value, sizeof(value)));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
}

// The size is not looked at: the value is the eight bytes, and the lower half alone would be below the floor.
TEST_P(Filter, WriteOfHalfOfItHandsTheWholeOn) {
  m_nValue = 0x100000005ULL;
  m_nSize = 4;
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCWritePort(m_hDevice, GetParam().address, &m_nValue, &m_nSize));
  EXPECT_EQ(Script().Trace(mark), (Lines{Set(GetParam().identifier, 0x100000005ULL)}));
  EXPECT_EQ(m_nSize, 4U);
}

TEST_P(Filter, ReadOfHalfOfItFails) {
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Read(GetParam().address));
}

TEST_P(Filter, ReadIsOneCallOfItsIdentifier) {
  const size_t mark = Script().Mark();
  SetParameter(GetParam().identifier, 7);
  EXPECT_EQ(ReadU64(m_hDevice, GetParam().address), 7U);
  EXPECT_EQ(Script().Trace(mark),
            (Lines{"ParameterGet(" + HandleName(StreamHandle()) + ", " + NameOfCode(GetParam().identifier) + ")"}));
}

TEST_P(Filter, NeedsAStream) {
  ReopenWith(kCustomAccess);
  EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(GetParam().address), Write(100));
  EXPECT_GC(GC_ERR_ERROR, NoHandleToRead(GetParam().address), Read(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(Filters, Filter, testing::ValuesIn(kFilters));

// Commands ------------------------------------------------------------------------------------------------------------

class Commands : public GrabberSpecial, public testing::WithParamInterface<uint32_t> {};

TEST_P(Commands, FlushTheCacheWhateverIsWritten) {
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x1CA0, GetParam()));
  EXPECT_EQ(Script().Trace(mark), (Lines{"ParameterSet(" + HandleName(StreamHandle()) + ", GRB_CACHE_FLUSH, null)"}));
}

TEST_P(Commands, ExposeWhateverIsWritten) {
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x2074, GetParam()));
  EXPECT_EQ(Script().Trace(mark), (Lines{"StreamRead(" + HandleName(StreamHandle()) + ", GRB_EXPOSE)"}));
  EXPECT_EQ(Script().Calls(mark)[0].argument, nullptr);
}

TEST_P(Commands, TriggerTimerA1WithOneWhateverIsWritten) {
  uint32_t value = GetParam();
  size_t size = sizeof(value);
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(Gc().GCWritePort(m_hDevice, 0x20A4, &value, &size));
  EXPECT_EQ(Script().Trace(mark), (Lines{Set(0xC0095401, 1)}));
  EXPECT_NE(Script().Calls(mark)[0].argument, &value);
}

INSTANTIATE_TEST_SUITE_P(Values, Commands, testing::Values(0, 1, 7, 0xFFFFFFFFU));

TEST_F(GrabberSpecial, FailuresOfCommandsNameTheFeature) {
  const struct {
    uint32_t address;
    const char *name;
    Match match;
    const char *function;
  } kRows[] = {
      {0x1CA0, "GRB_CACHE_FLUSH", Match(Op::ParameterSet, GRB_CACHE_FLUSH), "GRB_ParameterSet"},
      {0x2074, "GRB_EXPOSE", Match(Op::StreamRead, GRB_EXPOSE), "GRB_StreamRead"},
      {0x20A4, "GRB_TIMERA1_SWTRIG", Match(Op::ParameterSet, GRB_TIMERA1_SWTRIG_NOW), "GRB_ParameterSet"},
  };
  for (const auto &row : kRows) {
    for (const GRB_STATUS status : {kStatus, GRB_WARNING_PASSED, GRB_WARNING_TIMEOUT}) {
      Script().On(row.match, Bang(status));
      EXPECT_GC(GC_ERR_ERROR,
                std::string("Failed writing Device feature: ") + row.name + ": " + LibraryText(row.function, status),
                WriteU32(m_hDevice, row.address, 1));
      EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
    }
  }
}

TEST_F(GrabberSpecial, CommandsCannotBeRead) {
  const size_t mark = Script().Mark();
  EXPECT_GC(GC_ERR_ERROR, NotReadable(0x1CA0), Read(0x1CA0));
  EXPECT_GC(GC_ERR_ERROR, UnknownToGet(0x2074), Read(0x2074));
  EXPECT_GC(GC_ERR_ERROR, UnknownToGet(0x20A4), Read(0x20A4));
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(GrabberSpecial, CommandsNeedAStream) {
  ReopenWith(kCustomAccess);
  for (const uint32_t address : {0x1CA0U, 0x2074U, 0x20A4U, 0x1448U, 0x1C84U}) {
    EXPECT_GC(GC_ERR_ERROR, NoHandleToWrite(address), WriteU32(m_hDevice, address, 1));
  }
}

}  // namespace
}  // namespace DeviceTests
