// SPDX-License-Identifier: MIT
// The payload size: format, width and height, lines filled up to 16 bytes, 32-bit arithmetic.
#include "StreamFixture.h"

namespace StreamTests {
namespace {

struct FormatRow {
  const char *name;
  uint32_t pfnc;
  uint32_t user;
  uint32_t bytes;
};

constexpr FormatRow kFormats[] = {
    {"Mono8", 0x01080001, 0xC0029E01, 1},     {"Mono10", 0x01100003, 0xC0029E13, 2},
    {"Mono12", 0x01100005, 0xC0029E14, 2},    {"Mono14", 0x01100025, 0xC0029E15, 2},
    {"Mono16", 0x01100007, 0xC0029E02, 2},    {"BayerGR8", 0x01080008, 0xC0029E28, 1},
    {"BayerGR10", 0x0110000C, 0xC0029E2C, 2}, {"BayerGR12", 0x01100010, 0xC0029E30, 2},
    {"BayerGR14", 0x01100014, 0xC0029E34, 2}, {"BayerGR16", 0x0110002E, 0xC0029E38, 2},
    {"BayerRG8", 0x01080009, 0xC0029E29, 1},  {"BayerRG10", 0x0110000D, 0xC0029E2D, 2},
    {"BayerRG12", 0x01100011, 0xC0029E31, 2}, {"BayerRG14", 0x01100015, 0xC0029E35, 2},
    {"BayerRG16", 0x0110002F, 0xC0029E39, 2}, {"BayerGB8", 0x0108000A, 0xC0029E2A, 1},
    {"BayerGB10", 0x0110000E, 0xC0029E2E, 2}, {"BayerGB12", 0x01100012, 0xC0029E32, 2},
    {"BayerGB14", 0x01100016, 0xC0029E36, 2}, {"BayerGB16", 0x01100030, 0xC0029E3A, 2},
    {"BayerBG8", 0x0108000B, 0xC0029E2B, 1},  {"BayerBG10", 0x0110000F, 0xC0029E2F, 2},
    {"BayerBG12", 0x01100013, 0xC0029E33, 2}, {"BayerBG14", 0x01100017, 0xC0029E37, 2},
    {"BayerBG16", 0x01100031, 0xC0029E3B, 2}, {"RGB8", 0x02180014, 0xC0029E12, 3},
    {"RGB10", 0x02300018, 0xC0029E3D, 6},     {"RGB12", 0x0230001A, 0xC0029E1D, 6},
    {"RGB14", 0x0230005E, 0xC0029E3F, 6},     {"RGB16", 0x02300033, 0xC0029E0E, 6},
    {"BGR8", 0x02180015, 0xC0029E11, 3},      {"BGR10", 0x02300019, 0xC0029E3C, 6},
    {"BGR12", 0x0230001B, 0xC0029E1C, 6},     {"BGR14", 0x0230004A, 0xC0029E3E, 6},
    {"BGR16", 0x0230004B, 0xC0029E09, 6},     {"RGBa8", 0x02200016, 0xC0029E23, 4},
    {"RGBa10", 0x0240005F, 0xC0029E24, 8},    {"RGBa12", 0x02400061, 0xC0029E25, 8},
    {"RGBa14", 0x02400063, 0xC0029E26, 8},    {"RGBa16", 0x02400064, 0xC0029E27, 8},
    {"YUV422_8", 0x02100032, 0xC0029E1E, 2},
};
static_assert(std::size(kFormats) == 41);

class PayloadFormats : public StreamTest, public testing::WithParamInterface<FormatRow> {};

TEST_P(PayloadFormats, LinesAreFilledUpToSixteenBytes) {
  const FormatRow &row = GetParam();
  OpenStream();
  SetParameter(GRB_USR_FORMAT, row.user);
  for (const uint32_t width : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 9U, 15U, 16U, 17U, 60U, 64U, 640U, 1001U, 2002U, 2004U}) {
    constexpr uint32_t kHeight = 3;
    SetSize(width, kHeight);
    const uint32_t bytes = width * row.bytes;
    const uint32_t line = (bytes + 15) / 16 * 16;
    EXPECT_EQ(line * kHeight, PayloadSize()) << width;
    EXPECT_EQ(line * kHeight, ReadU64(m_hStream, 0x34)) << width;
    const BUFFER_HANDLE buffer = AllocOf(line * kHeight);
    Queue(buffer);
    Start();
    EXPECT_EQ(line, Script().StreamOf().lineBytes) << width;
    EXPECT_EQ(kHeight, Script().StreamOf().lines) << width;
    ASSERT_TRUE(Script().DeliverFrame(0, 0x11));
    EXPECT_EQ(line - bytes, BufferNumber(buffer, BUFFER_INFO_XPADDING)) << width;
    EXPECT_EQ(width, BufferNumber(buffer, BUFFER_INFO_WIDTH));
    EXPECT_EQ(line * kHeight, BufferNumber(buffer, BUFFER_INFO_SIZE_FILLED)) << width;
    EXPECT_EQ(row.pfnc, BufferNumber(buffer, BUFFER_INFO_PIXELFORMAT));
    Flush(ACQ_QUEUE_ALL_DISCARD);
    ASSERT_GC_OK(Gc().DSRevokeBuffer(m_hStream, buffer, nullptr, nullptr));
  }
}

INSTANTIATE_TEST_SUITE_P(All, PayloadFormats, testing::ValuesIn(kFormats),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(StreamTest, OddLineOf2004Bytes) {
  OpenStream();
  SetSize(2004, 10);
  EXPECT_EQ(20160U, PayloadSize());
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  EXPECT_EQ(12U, BufferNumber(buffer, BUFFER_INFO_XPADDING));
}

TEST_F(StreamTest, DecimationShrinksThePayload) {
  OpenStream();
  SetSize(1280, 101);
  SetParameter(GRB_ACQ_XSUB, GRB_ACQ_X4);
  SetParameter(GRB_ACQ_YSUB, GRB_ACQ_X2);
  EXPECT_EQ(320U * 50U, PayloadSize()) << "remainders are dropped";
  const BUFFER_HANDLE buffer = Run(1).front();
  Frame();
  EXPECT_EQ(320U, BufferNumber(buffer, BUFFER_INFO_WIDTH));
  EXPECT_EQ(50U, BufferNumber(buffer, BUFFER_INFO_HEIGHT));
}

TEST_F(StreamTest, PayloadFollowsTheFeatures) {
  OpenStream();
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hDevice, 0x604, 100));
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hDevice, 0x60C, 10));
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hDevice, 0x620, 0x02180014));
  EXPECT_EQ(304U * 10U, PayloadSize());
  ASSERT_EQ(GC_ERR_SUCCESS, WriteU32(m_hDevice, 0x614, 7)) << "the camera's own width does not count";
  EXPECT_EQ(304U * 10U, PayloadSize());
}

TEST_F(StreamTest, WidestLineThatFits) {
  OpenStream();
  SetSize(0xFFFFFFF0U, 1);
  EXPECT_EQ(0xFFFFFFF0U, PayloadSize());
}

class TooWide : public StreamTest, public testing::WithParamInterface<std::pair<uint32_t, uint32_t>> {};

TEST_P(TooWide, IsRefused) {
  OpenStream();
  SetSize(GetParam().first, 1);
  SetParameter(GRB_USR_FORMAT, GetParam().second);
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_ERROR, "Buffer width size is too large.", "GenICam::Client::CStreamImpl::GetBufferWidthSize",
                 Gc().DSGetInfo(m_hStream, STREAM_INFO_PAYLOAD_SIZE, &type, nullptr, &size));
  uint64_t value = 0;
  EXPECT_GC(GC_ERR_ERROR, "Buffer width size is too large.", TryRead(m_hStream, 0x34, &value, 8));
  EXPECT_GC(GC_ERR_ERROR, "Buffer width size is too large.",
            Gc().DSStartAcquisition(m_hStream, ACQ_START_FLAGS_DEFAULT, 1));
}

INSTANTIATE_TEST_SUITE_P(All, TooWide,
                         testing::Values(std::pair{0xFFFFFFF1U, GRB_USR_FORMAT_MONO8},  // by the filling alone
                                         std::pair{0xFFFFFFFFU, GRB_USR_FORMAT_MONO8},
                                         std::pair{0x80000000U, GRB_USR_FORMAT_MONO16},
                                         std::pair{0x20000000U, GRB_USR_FORMAT_RGBA16},
                                         std::pair{0x55555551U, GRB_USR_FORMAT_RGB8}));

TEST_F(StreamTest, FrameOf4GiBWrapsAround) {
  // Kept: the product is made in 32 bits.
  OpenStream();
  SetSize(0x10000, 0x10000);
  EXPECT_EQ(0U, PayloadSize());
  SetSize(0x10000, 0x10001);
  EXPECT_EQ(0x10000U, PayloadSize());
  SetSize(0xFFFFFFF0U, 2);
  EXPECT_EQ(0xFFFFFFE0U, PayloadSize());
}

TEST_F(StreamTest, UnknownFormatFails) {
  OpenStream();
  SetParameter(GRB_USR_FORMAT, 0xC0029EFF);
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC(GC_ERR_ERROR, "Unknown or unsupported GRB_USR_FORMAT: c0029eff",
            Gc().DSGetInfo(m_hStream, STREAM_INFO_PAYLOAD_SIZE, &type, nullptr, &size));
}

struct QueryRow {
  uint32_t identifier;
  const char *feature;
};

class PayloadQueries : public StreamTest, public testing::WithParamInterface<QueryRow> {};

TEST_P(PayloadQueries, FailureNamesTheFeature) {
  OpenStream();
  Script().On(Match(Op::ParameterGet, GetParam().identifier), Broken());
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC(
      GC_ERR_ERROR,
      std::string("Failed reading Device feature: ") + GetParam().feature + ": " + LibraryText("GRB_ParameterGet"),
      Gc().DSGetInfo(m_hStream, STREAM_INFO_PAYLOAD_SIZE, &type, nullptr, &size));
}

INSTANTIATE_TEST_SUITE_P(All, PayloadQueries,
                         testing::Values(QueryRow{GRB_ROI_XLENGTH, "WIDTH"},
                                         QueryRow{GRB_ACQ_XSUB, "DECIMATION_HORIZONTAL"},
                                         QueryRow{GRB_USR_FORMAT, "PIXELFORMAT"}, QueryRow{GRB_ROI_YLENGTH, "HEIGHT"},
                                         QueryRow{GRB_ACQ_YSUB, "DECIMATION_VERTICAL"}));

TEST_F(StreamTest, PaddingIsThatOfARefusedWidthToo) {
  // The padding is told before the width is found to be too large.
  OpenStream();
  SetSize(2004, 3);
  const BUFFER_HANDLE buffer = Run(1).front();
  SetSize(0xFFFFFFF5U, 3);
  INFO_DATATYPE type = Info::kUntouchedType;
  size_t payload = 7;
  size_t size = sizeof(payload);
  EXPECT_GC_CODE(GC_ERR_ERROR, Gc().DSGetInfo(m_hStream, STREAM_INFO_PAYLOAD_SIZE, &type, &payload, &size));
  EXPECT_EQ(Info::kUntouchedType, type);
  EXPECT_EQ(7U, payload);
  EXPECT_EQ(sizeof(payload), size);
  Frame();
  EXPECT_EQ(11U, BufferNumber(buffer, BUFFER_INFO_XPADDING));
}

TEST_F(StreamTest, PayloadThatWrapsToZeroStartsWithAnyBuffer) {
  OpenStream();
  SetSize(0x10000, 0x10000);
  const BUFFER_HANDLE buffer = AllocOf(1);
  Queue(buffer);
  Start();
  Frame();
  EXPECT_EQ(0x10000U, BufferNumber(buffer, BUFFER_INFO_HEIGHT));
  EXPECT_EQ(0U, BufferNumber(buffer, BUFFER_INFO_SIZE_FILLED));
}

}  // namespace
}  // namespace StreamTests
