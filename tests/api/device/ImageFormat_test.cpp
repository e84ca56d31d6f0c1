// SPDX-License-Identifier: MIT
// The image format family of virtual registers: what a feature write and read become at the library.
#include <atomic>
#include <ostream>
#include <thread>

#include "DeviceFixture.h"
#include "PixelFormatTable.h"

namespace DeviceTests {

static std::ostream &operator<<(std::ostream &out, const PixelFormatRow &row) { return out << row.name; }

namespace {

std::string Set(const char *name, uint64_t value) {
  return "ParameterSet(" + HandleName(Script().OpenHandle(kBoard, kChannel, GRB_MODE_ACQ_ONLY)) + ", " + name +
         Format(", 0x%llx)", static_cast<unsigned long long>(value));
}

std::string Get(const char *name) {
  return "ParameterGet(" + HandleName(Script().OpenHandle(kBoard, kChannel, GRB_MODE_ACQ_ONLY)) + ", " + name + ")";
}

class ImageFormat : public OpenDeviceTest {
 protected:
  GC_ERROR Read(uint32_t address) {
    m_nRead = 0xDEADBEEF;
    return TryRead(m_hDevice, address, &m_nRead, sizeof(m_nRead));
  }

  uint32_t m_nRead = 0;
};

// Width and Height ----------------------------------------------------------------------------------------------------

struct LengthRow {
  const char *name;
  uint32_t address;
  uint32_t length;
  const char *lengthName;
  uint32_t decimationAddress;
  uint32_t decimation;
  const char *decimationName;
  const char *decimationMessage;
};

std::ostream &operator<<(std::ostream &out, const LengthRow &row) { return out << row.name; }

constexpr LengthRow kLengths[] = {
    {"WIDTH", 0x604, GRB_ROI_XLENGTH, "GRB_ROI_XLENGTH", 0x624, GRB_ACQ_XSUB, "GRB_ACQ_XSUB", "DECIMATION_HORIZONTAL"},
    {"HEIGHT", 0x60C, GRB_ROI_YLENGTH, "GRB_ROI_YLENGTH", 0x628, GRB_ACQ_YSUB, "GRB_ACQ_YSUB", "DECIMATION_VERTICAL"},
};

struct DecimationRow {
  uint32_t factor;
  uint32_t value;
};

constexpr DecimationRow kDecimations[] = {{1, 0xC0020701}, {2, 0xC0020702}, {4, 0xC0020703}, {8, 0xC0020704}};

class ImageLength : public ImageFormat, public testing::WithParamInterface<LengthRow> {};

TEST_P(ImageLength, WriteMultipliesByTheDecimation) {
  for (const DecimationRow &row : kDecimations) {
    SetParameter(GetParam().decimation, row.value);
    const size_t mark = Script().Mark();
    EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().address, 640));
    EXPECT_EQ(Script().Trace(mark),
              (Lines{Get(GetParam().decimationName), Set(GetParam().lengthName, 640 * row.factor)}));
  }
}

TEST_P(ImageLength, ReadDividesByTheDecimation) {
  SetParameter(GetParam().length, 1280);
  for (const DecimationRow &row : kDecimations) {
    SetParameter(GetParam().decimation, row.value);
    const size_t mark = Script().Mark();
    EXPECT_EQ(ReadU32(m_hDevice, GetParam().address), 1280 / row.factor);
    EXPECT_EQ(Script().Trace(mark), (Lines{Get(GetParam().lengthName), Get(GetParam().decimationName)}));
  }
}

TEST_P(ImageLength, ChangesWithTheDecimationAndLeavesTheLibrarysLength) {
  EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().decimationAddress, 2));
  EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().address, 640));
  EXPECT_EQ(Parameter(GetParam().length), 1280U);
  EXPECT_EQ(ReadU32(m_hDevice, GetParam().address), 640U);
  EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().decimationAddress, 4));
  EXPECT_EQ(Parameter(GetParam().length), 1280U);
  EXPECT_EQ(ReadU32(m_hDevice, GetParam().address), 320U);
}

TEST_P(ImageLength, DropsTheRemainder) {
  SetParameter(GetParam().length, 641);
  SetParameter(GetParam().decimation, GRB_ACQ_X2);
  EXPECT_EQ(ReadU32(m_hDevice, GetParam().address), 320U);
}

TEST_P(ImageLength, IsUnsigned) {
  SetParameter(GetParam().length, 0xFFFFFFFE);
  SetParameter(GetParam().decimation, GRB_ACQ_X2);
  EXPECT_EQ(ReadU32(m_hDevice, GetParam().address), 0x7FFFFFFFU);
}

TEST_P(ImageLength, MultipliesIn32BitsWithoutACheck) {
  SetParameter(GetParam().decimation, GRB_ACQ_X2);
  EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().address, 0x80000003));
  EXPECT_EQ(Parameter(GetParam().length), 6U);
}

TEST_P(ImageLength, TouchesItsOwnAxisOnly) {
  const LengthRow &other = GetParam().address == kLengths[0].address ? kLengths[1] : kLengths[0];
  const uint64_t before = Parameter(other.length);
  SetParameter(other.decimation, GRB_ACQ_X8);
  EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().address, 100));
  EXPECT_EQ(Parameter(GetParam().length), 100U);
  EXPECT_EQ(Parameter(other.length), before);
}

TEST_P(ImageLength, FailureOfTheLengthNamesTheFeature) {
  Script().On(Match(Op::ParameterSet, GetParam().length), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite(GetParam().name), WriteU32(m_hDevice, GetParam().address, 640));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  Script().On(Match(Op::ParameterGet, GetParam().length), Bang());
  const size_t mark = Script().Mark();
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().name), Read(GetParam().address));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
  EXPECT_EQ(Script().Count(Match(Op::ParameterGet), mark), 1U);
}

TEST_P(ImageLength, FailureOfTheNestedDecimationNamesThat) {
  const size_t mark = Script().Mark();
  Script().On(Match(Op::ParameterGet, GetParam().decimation), Bang(), When::Every());
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().decimationMessage), WriteU32(m_hDevice, GetParam().address, 640));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
  EXPECT_EQ(Script().Count(Match(Op::ParameterSet), mark), 0U);
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().decimationMessage), Read(GetParam().address));
}

TEST_P(ImageLength, UnknownDecimationOfTheLibraryFails) {
  SetParameter(GetParam().decimation, 0);
  const size_t mark = Script().Mark();
  constexpr const char *kText = "Unknown or unsupported decimation value 0x00000000";
  EXPECT_GC(GC_ERR_ERROR, kText, Read(GetParam().address));
  EXPECT_GC(GC_ERR_ERROR, kText, Read(GetParam().decimationAddress));
  EXPECT_GC(GC_ERR_ERROR, kText, WriteU32(m_hDevice, GetParam().address, 640));
  EXPECT_EQ(Script().Count(Match(Op::ParameterSet), mark), 0U);
}

TEST_P(ImageLength, DecimationConvertsBothWays) {
  for (const DecimationRow &row : kDecimations) {
    size_t mark = Script().Mark();
    EXPECT_GC_OK(WriteU32(m_hDevice, GetParam().decimationAddress, row.factor));
    EXPECT_EQ(Script().Trace(mark), (Lines{Set(GetParam().decimationName, row.value)}));
    mark = Script().Mark();
    EXPECT_EQ(ReadU32(m_hDevice, GetParam().decimationAddress), row.factor);
    EXPECT_EQ(Script().Trace(mark), (Lines{Get(GetParam().decimationName)}));
  }
}

TEST_P(ImageLength, DecimationOfAnotherFactorFailsWithoutACallOfTheLibrary) {
  const size_t mark = Script().Mark();
  for (const uint32_t factor : {0U, 3U, 5U, 16U, 0xC0020701U}) {
    EXPECT_GC(GC_ERR_ERROR, Format("Unknown or unsupported decimation value 0x%08X", factor),
              WriteU32(m_hDevice, GetParam().decimationAddress, factor));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_P(ImageLength, FailureOfTheDecimationNamesTheFeature) {
  Script().On(Match(Op::ParameterSet, GetParam().decimation), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite(GetParam().decimationMessage),
            WriteU32(m_hDevice, GetParam().decimationAddress, 2));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  Script().On(Match(Op::ParameterGet, GetParam().decimation), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedRead(GetParam().decimationMessage), Read(GetParam().decimationAddress));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
}

INSTANTIATE_TEST_SUITE_P(Axes, ImageLength, testing::ValuesIn(kLengths));

// Scan type -----------------------------------------------------------------------------------------------------------

TEST_F(ImageFormat, ScanTypeConvertsBothWays) {
  constexpr uint32_t kRows[][2] = {{0, 0xC0021901}, {1, 0xC0021903}};
  for (const auto &row : kRows) {
    size_t mark = Script().Mark();
    EXPECT_GC_OK(WriteU32(m_hDevice, 0x600, row[0]));
    EXPECT_EQ(Script().Trace(mark), (Lines{Set("GRB_CAM_TYPE", row[1])}));
    mark = Script().Mark();
    EXPECT_EQ(ReadU32(m_hDevice, 0x600), row[0]);
    EXPECT_EQ(Script().Trace(mark), (Lines{Get("GRB_CAM_TYPE")}));
  }
}

TEST_F(ImageFormat, ScanTypeOfACameraWithoutRoiFails) {
  for (const uint32_t type : {0xC0021904U, 0xC0021902U, 0U}) {
    SetParameter(GRB_CAM_TYPE, type);
    EXPECT_GC(GC_ERR_ERROR, Format("Unknown or unsupported scantype value 0x%08X", type), Read(0x600));
  }
}

TEST_F(ImageFormat, UnknownScanTypeFailsWithoutACallOfTheLibrary) {
  const size_t mark = Script().Mark();
  for (const uint32_t type : {2U, 0xC0021901U}) {
    EXPECT_GC(GC_ERR_ERROR, Format("Unknown or unsupported scantype value 0x%08X", type),
              WriteU32(m_hDevice, 0x600, type));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(ImageFormat, FailureOfTheScanTypeNamesTheFeature) {
  Script().On(Match(Op::ParameterSet, GRB_CAM_TYPE), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedWrite("SCAN_TYPE"), WriteU32(m_hDevice, 0x600, 0));
  EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
  Script().On(Match(Op::ParameterGet, GRB_CAM_TYPE), Bang());
  EXPECT_GC(GC_ERR_ERROR, FailedRead("SCAN_TYPE"), Read(0x600));
  EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
}

// Pixel formats -------------------------------------------------------------------------------------------------------

class ImagePixelFormat : public ImageFormat, public testing::WithParamInterface<PixelFormatRow> {};

TEST_P(ImagePixelFormat, WriteSetsBusThenUserFormat) {
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x620, GetParam().pfnc));
  EXPECT_EQ(Script().Trace(mark),
            (Lines{Set("GRB_BUS_FORMAT", GetParam().busFormat), Set("GRB_USR_FORMAT", GetParam().usrFormat)}));
}

TEST_P(ImagePixelFormat, ReadGoesByTheUserFormatAlone) {
  SetParameter(GRB_USR_FORMAT, GetParam().usrFormat);
  SetParameter(GRB_BUS_FORMAT, 0);
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, 0x620), GetParam().pfnc);
  EXPECT_EQ(Script().Trace(mark), (Lines{Get("GRB_USR_FORMAT")}));
}

TEST_P(ImagePixelFormat, IncomingWriteSetsDepthThenColour) {
  const size_t mark = Script().Mark();
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x61C, GetParam().pfnc));
  EXPECT_EQ(Script().Trace(mark),
            (Lines{Set("GRB_CAM_SRC_DEPTH", GetParam().bits), Set("GRB_CAM_SRC_COL", GetParam().srcCol)}));
}

TEST_P(ImagePixelFormat, IncomingReadGoesByColourAndDepth) {
  SetParameter(GRB_CAM_SRC_COL, GetParam().srcCol);
  SetParameter(GRB_CAM_SRC_DEPTH, GetParam().bits);
  const size_t mark = Script().Mark();
  EXPECT_EQ(ReadU32(m_hDevice, 0x61C), GetParam().pfnc);
  EXPECT_EQ(Script().Trace(mark), (Lines{Get("GRB_CAM_SRC_COL"), Get("GRB_CAM_SRC_DEPTH")}));
}

INSTANTIATE_TEST_SUITE_P(Formats, ImagePixelFormat, testing::ValuesIn(kPixelFormats));

TEST_F(ImageFormat, UnknownPixelFormatFailsWithoutACallOfTheLibrary) {
  const size_t mark = Script().Mark();
  for (const uint32_t format : {0U, 0x01080002U, 0xFFFFFFFFU}) {
    const std::string message = Format("Unknown or unsupported PFNC PixelFormat: %x", format);
    EXPECT_GC(GC_ERR_ERROR, message, WriteU32(m_hDevice, 0x620, format));
    EXPECT_GC(GC_ERR_ERROR, message, WriteU32(m_hDevice, 0x61C, format));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

TEST_F(ImageFormat, UnknownUserFormatFailsAtTheRead) {
  SetParameter(GRB_USR_FORMAT, 0);
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported GRB_USR_FORMAT: 0", Read(0x620));
  SetParameter(GRB_USR_FORMAT, 0xC0022601);
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported GRB_USR_FORMAT: c0022601", Read(0x620));
}

// The depth prints in hexadecimal as well.
TEST_F(ImageFormat, UnknownColourAndDepthFailAtTheRead) {
  SetParameter(GRB_CAM_SRC_COL, 7);
  SetParameter(GRB_CAM_SRC_DEPTH, 12);
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported combination of GRB_SRC_COL: 7 and pixel depth of: c", Read(0x61C));
  SetParameter(GRB_CAM_SRC_COL, 0xC0021205);
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported combination of GRB_SRC_COL: c0021205 and pixel depth of: c",
            Read(0x61C));
}

TEST_F(ImageFormat, PixelFormatsThatTheLibraryHasNoColourForPassZero) {
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x61C, 0x02180015));
  EXPECT_EQ(Parameter(GRB_CAM_SRC_COL), 0U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x61C), 0x02180015U);
}

// A failure of the second step leaves the first in force; a failure of the first stops ahead of the second.
TEST_F(ImageFormat, TwoStepWritesAreNotTakenBack) {
  struct {
    uint32_t address;
    const char *name;
    uint32_t first;
    uint32_t second;
    uint64_t firstValue;
  } const kRows[] = {{0x620, "PIXELFORMAT", GRB_BUS_FORMAT, GRB_USR_FORMAT, 0xC0022631},
                     {0x61C, "INCOMING_PIXELFORMAT", GRB_CAM_SRC_DEPTH, GRB_CAM_SRC_COL, 12}};
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.name);
    const uint64_t before = Parameter(row.second);
    Script().On(Match(Op::ParameterSet, row.second), Bang());
    EXPECT_GC(GC_ERR_ERROR, FailedWrite(row.name), WriteU32(m_hDevice, row.address, 0x01100011));
    EXPECT_TRUE(ComesFrom(kFeatureWrite, kFeatureFile));
    EXPECT_EQ(Parameter(row.first), row.firstValue);
    EXPECT_EQ(Parameter(row.second), before);

    Script().On(Match(Op::ParameterSet, row.first), Bang());
    const size_t mark = Script().Mark();
    EXPECT_GC(GC_ERR_ERROR, FailedWrite(row.name), WriteU32(m_hDevice, row.address, 0x01080001));
    EXPECT_EQ(Script().Count(Match(Op::ParameterSet), mark), 1U);
    EXPECT_EQ(Parameter(row.first), row.firstValue);
  }
}

// The first failure ends the read: behind the colour's the depth is not asked.
TEST_F(ImageFormat, FailuresOfPixelFormatReadsNameTheFeature) {
  const struct {
    uint32_t address;
    const char *name;
    uint32_t identifier;
    size_t calls;
  } kRows[] = {{0x620, "PIXELFORMAT", GRB_USR_FORMAT, 1},
               {0x61C, "INCOMING_PIXELFORMAT", GRB_CAM_SRC_COL, 1},
               {0x61C, "INCOMING_PIXELFORMAT", GRB_CAM_SRC_DEPTH, 2}};
  for (const auto &row : kRows) {
    SCOPED_TRACE(NameOfCode(row.identifier));
    Script().On(Match(Op::ParameterGet, row.identifier), Bang());
    const size_t mark = Script().Mark();
    EXPECT_GC(GC_ERR_ERROR, FailedRead(row.name), Read(row.address));
    EXPECT_TRUE(ComesFrom(kFeatureRead, kFeatureFile));
    EXPECT_EQ(Script().Count(Match(Op::ParameterGet), mark), row.calls);
  }
}

// Registers in the map that nothing stands behind.
TEST_F(ImageFormat, RegistersWithoutAHandlerAreUnknownParameters) {
  const size_t mark = Script().Mark();
  for (const uint32_t address : {0x608U, 0x610U}) {
    EXPECT_GC(GC_ERR_ERROR, UnknownToGet(address), Read(address));
    EXPECT_GC(GC_ERR_ERROR, UnknownToSet(address), WriteU32(m_hDevice, address, 1));
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

// Nothing is remembered on this side.
TEST_F(ImageFormat, ReadsAskTheLibraryEachTime) {
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x604, 640));
  SetParameter(GRB_ROI_XLENGTH, 100);
  EXPECT_EQ(ReadU32(m_hDevice, 0x604), 100U);
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x620, 0x01080001));
  SetParameter(GRB_USR_FORMAT, 0xC0029E12);
  EXPECT_EQ(ReadU32(m_hDevice, 0x620), 0x02180014U);
}

// Offsets are not scaled.
TEST_F(ImageFormat, OffsetsPassWhateverTheDecimation) {
  SetParameter(GRB_ACQ_XSUB, GRB_ACQ_X4);
  SetParameter(GRB_ACQ_YSUB, GRB_ACQ_X4);
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x62C, 24));
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x630, 12));
  EXPECT_EQ(Parameter(GRB_ROI_SRC_XOFFSET), 24U);
  EXPECT_EQ(Parameter(GRB_ROI_SRC_YOFFSET), 12U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x62C), 24U);
  EXPECT_EQ(ReadU32(m_hDevice, 0x630), 12U);
}

// The payload follows the image that is delivered, at each question anew; what the camera sends does not count.
TEST_F(ImageFormat, PayloadFollowsTheDeliveredImageAlone) {
  OpenStream();
  constexpr uint32_t kDelivered[][2] = {{0x604, 64}, {0x60C, 48}, {0x620, 0x01080001}};
  for (const auto &row : kDelivered) {
    EXPECT_GC_OK(WriteU32(m_hDevice, row[0], row[1]));
  }
  EXPECT_EQ(PayloadSize(), 64U * 48U);
  constexpr uint32_t kOthers[][2] = {{0x614, 128}, {0x618, 96}, {0x61C, 0x01100011}, {0x62C, 8}, {0x630, 4}};
  for (const auto &row : kOthers) {
    EXPECT_GC_OK(WriteU32(m_hDevice, row[0], row[1]));
    EXPECT_EQ(PayloadSize(), 64U * 48U) << Format("0x%X", row[0]);
  }
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x624, 2));
  EXPECT_EQ(PayloadSize(), 32U * 48U);
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x628, 4));
  EXPECT_EQ(PayloadSize(), 32U * 12U);
  EXPECT_GC_OK(WriteU32(m_hDevice, 0x620, 0x01100007));
  EXPECT_EQ(PayloadSize(), 64U * 12U);
}

// Two threads fail at one moment: each gets the words of its own failure. They meet inside the library, so no lock of
// the handle is held there.
TEST_F(ImageFormat, WordsOfAFailureBelongToTheirThread) {
  std::atomic<int> inside{0};
  const auto meet = [&inside](const Call &) {
    ++inside;
    EXPECT_TRUE(WaitUntil([&inside] { return inside.load() >= 2; }));
  };
  Script().On(Match(Op::ParameterSet, GRB_CAM_ACTIVE_XLENGTH), Reply::Failure(1, "First.").Do(meet));
  Script().On(Match(Op::ParameterSet, GRB_CAM_ACTIVE_YLENGTH), Reply::Failure(2, "Second.").Do(meet));
  std::thread other([this] {
    EXPECT_GC(GC_ERR_ERROR,
              "Failed writing Device feature: INCOMING_HEIGHT: " + LibraryText("GRB_ParameterSet", 2, "Second."),
              WriteU32(m_hDevice, 0x618, 1));
  });
  EXPECT_GC(GC_ERR_ERROR,
            "Failed writing Device feature: INCOMING_WIDTH: " + LibraryText("GRB_ParameterSet", 1, "First."),
            WriteU32(m_hDevice, 0x614, 1));
  other.join();
}

}  // namespace

}  // namespace DeviceTests
