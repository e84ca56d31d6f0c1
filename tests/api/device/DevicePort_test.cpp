// SPDX-License-Identifier: MIT
// The Device's own port: its info, its URL, its description, and the rules of addresses and sizes.
#include <cstring>
#include <ostream>

#include "DeviceFixture.h"

namespace {

using namespace DeviceTests;  // NOLINT

constexpr uint64_t kXmlAddress = 0x222C;
constexpr size_t kXmlText = 150740;
constexpr size_t kXmlSize = 150744;
constexpr const char *kUrl = "Local:LumivexTLDevice.xml;222c;24cd8";

struct PortRow {
  PORT_INFO_CMD command;
  const char *text;  // null: a flag
  bool flag;
};

std::ostream &operator<<(std::ostream &out, const PortRow &row) { return out << row.command; }

constexpr PortRow kPortInfo[] = {
    {PORT_INFO_ID, "Channel #1", false},
    {PORT_INFO_VENDOR, "Lumivex", false},
    {PORT_INFO_MODEL, "Lumivex Transport Layer", false},
    {PORT_INFO_TLTYPE, "CXP", false},
    {PORT_INFO_MODULE, "TLDevice", false},
    {PORT_INFO_LITTLE_ENDIAN, nullptr, true},
    {PORT_INFO_BIG_ENDIAN, nullptr, false},
    {PORT_INFO_ACCESS_READ, nullptr, true},
    {PORT_INFO_ACCESS_WRITE, nullptr, true},
    {PORT_INFO_ACCESS_NA, nullptr, false},
    {PORT_INFO_ACCESS_NI, nullptr, false},
    {PORT_INFO_VERSION, "1.1.11.0", false},
    {PORT_INFO_PORTNAME, "DevicePort", false},
};

class DevicePortInfo : public OpenDeviceTest, public testing::WithParamInterface<PortRow> {};

TEST_P(DevicePortInfo, Answers) {
  const size_t mark = Script().Mark();
  const Info info = PortInfo(m_hDevice, GetParam().command);
  EXPECT_EQ(info.result, GC_ERR_SUCCESS);
  if (GetParam().text != nullptr) {
    EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
    EXPECT_EQ(info.Text(), GetParam().text);
    EXPECT_EQ(info.size, std::string(GetParam().text).size() + 1);
  } else {
    EXPECT_EQ(info.type, INFO_DATATYPE_BOOL8);
    EXPECT_EQ(info.size, 1U);
    EXPECT_EQ(info.As<uint8_t>(), GetParam().flag ? 1 : 0);
  }
  EXPECT_EQ(Script().Trace(mark), Lines());
}

INSTANTIATE_TEST_SUITE_P(Commands, DevicePortInfo, testing::ValuesIn(kPortInfo));

using DevicePort = OpenDeviceTest;

TEST_F(DevicePort, InfoChecksItsArguments) {
  constexpr const char *kFunction = "GenICam::Client::GCGetPortInfo";
  INFO_DATATYPE type = 0;
  size_t size = 0;
  char buffer[16];
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for Type", kFunction,
                 Gc().GCGetPortInfo(m_hDevice, 99, nullptr, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", kFunction,
                 Gc().GCGetPortInfo(m_hDevice, 99, &type, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", kFunction,
                 Gc().GCGetPortInfo(m_hDevice, 99, &type, buffer, &size));
}

class DevicePortUnknown : public OpenDeviceTest, public testing::WithParamInterface<int32_t> {};

TEST_P(DevicePortUnknown, PortInfoCommandFails) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("Invalid Port Info Command %d", GetParam() + 13),
                 "GenICam::Client::CDevice::GetPortInfo",
                 Gc().GCGetPortInfo(m_hDevice, GetParam() + 13, &type, nullptr, &size));
}

TEST_P(DevicePortUnknown, UrlInfoCommandFails) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER,
                 Format("Invalid URL_INFO_CMD Command %08X", static_cast<unsigned>(GetParam() + 6)),
                 "GenICam::Client::CDevice::GetPortURLInfo",
                 Gc().GCGetPortURLInfo(m_hDevice, 0, GetParam() + 6, &type, nullptr, &size));
}

INSTANTIATE_TEST_SUITE_P(Commands, DevicePortUnknown, testing::Values(0, 1, 4, 994, 1000, -14, -1000));

// URL -----------------------------------------------------------------------------------------------------------------

TEST_F(DevicePort, HasOneUrl) {
  uint32_t count = 0;
  EXPECT_GC_OK(Gc().GCGetNumPortURLs(m_hDevice, &count));
  EXPECT_EQ(count, 1U);
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for iNumURLs.", "GenICam::Client::GCGetNumPortURLs",
                 Gc().GCGetNumPortURLs(m_hDevice, nullptr));
}

// The answer ends in two zero bytes, and no separator stands at the end.
TEST_F(DevicePort, UrlIsTheTextAndTwoZeros) {
  const size_t expected = std::string(kUrl).size() + 2;
  size_t size = 7;
  EXPECT_GC_OK(Gc().GCGetPortURL(m_hDevice, nullptr, &size));
  EXPECT_EQ(size, expected);
  const Info url = PortUrl(m_hDevice);
  EXPECT_EQ(url.size, expected);
  ASSERT_EQ(url.bytes.size(), expected);
  EXPECT_EQ(url.Text(), kUrl);
  EXPECT_EQ(url.bytes[expected - 1], 0);
  EXPECT_EQ(url.bytes[expected - 2], 0);
}

TEST_F(DevicePort, UrlInALargerBufferHasTheSameSize) {
  const Info url =
      AskInfoOnce([this](INFO_DATATYPE *, void *buffer,
                         size_t *size) { return Gc().GCGetPortURL(m_hDevice, static_cast<char *>(buffer), size); },
                  512);
  EXPECT_EQ(url.result, GC_ERR_SUCCESS);
  EXPECT_EQ(url.size, std::string(kUrl).size() + 2);
  EXPECT_EQ(url.Text(), kUrl);
}

// Unlike the other modules, the Device does not tell the need.
TEST_F(DevicePort, UrlInASmallBufferFailsAndKeepsTheSize) {
  for (const size_t size : {size_t{1}, std::string(kUrl).size(), std::string(kUrl).size() + 1}) {
    SCOPED_TRACE(size);
    size_t now = size;
    char text[64] = "untouched";
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Buffer Size.", Gc().GCGetPortURL(m_hDevice, text, &now));
    EXPECT_EQ(now, size);
    EXPECT_STREQ(text, "untouched");
  }
}

TEST_F(DevicePort, UrlChecksItsArguments) {
  constexpr const char *kFunction = "GenICam::Client::GCGetPortURL";
  char text[64];
  size_t size = 0;
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", kFunction,
                 Gc().GCGetPortURL(m_hDevice, text, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of URL cannot be null.", kFunction,
                 Gc().GCGetPortURL(m_hDevice, text, &size));
}

TEST_F(DevicePort, UrlInfoAnswersTheUrlAsAPlainText) {
  const Info info = UrlInfo(m_hDevice, 0, URL_INFO_URL);
  EXPECT_EQ(info.type, INFO_DATATYPE_STRING);
  EXPECT_EQ(info.Text(), kUrl);
  EXPECT_EQ(info.size, std::string(kUrl).size() + 1);
}

struct UrlRow {
  URL_INFO_CMD command;
  int32_t value;
};

constexpr UrlRow kUrlInfo[] = {{URL_INFO_SCHEMA_VER_MAJOR, 1},
                               {URL_INFO_SCHEMA_VER_MINOR, 0},
                               {URL_INFO_FILE_VER_MAJOR, 2},
                               {URL_INFO_FILE_VER_MINOR, 0},
                               {URL_INFO_FILE_VER_SUBMINOR, 0}};

TEST_F(DevicePort, UrlInfoAnswersTheVersionsKeptByHand) {
  for (const UrlRow &row : kUrlInfo) {
    SCOPED_TRACE(row.command);
    const Info info = UrlInfo(m_hDevice, 0, row.command);
    EXPECT_EQ(info.type, INFO_DATATYPE_INT32);
    EXPECT_EQ(info.size, 4U);
    EXPECT_EQ(info.As<int32_t>(), row.value);
  }
}

TEST_F(DevicePort, UrlInfoOfAnotherIndexFailsForEveryCommand) {
  INFO_DATATYPE type = 0;
  size_t size = 0;
  // The message takes the index for a signed number.
  for (const uint32_t index : {1U, 2U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    for (const URL_INFO_CMD command : {0, 1, 5, 6, 1000}) {
      EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, Format("URL Index %d is out of range", static_cast<int32_t>(index)),
                     "GenICam::Client::CDevice::GetPortURLInfo",
                     Gc().GCGetPortURLInfo(m_hDevice, index, command, &type, nullptr, &size));
    }
  }
}

TEST_F(DevicePort, UrlInfoChecksItsArguments) {
  constexpr const char *kFunction = "GenICam::Client::GCGetPortURLInfo";
  INFO_DATATYPE type = 0;
  size_t size = 0;
  char buffer[16];
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null pointer for Type", kFunction,
                 Gc().GCGetPortURLInfo(m_hDevice, 9, 99, nullptr, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", kFunction,
                 Gc().GCGetPortURLInfo(m_hDevice, 9, 99, &type, buffer, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", kFunction,
                 Gc().GCGetPortURLInfo(m_hDevice, 9, 99, &type, buffer, &size));
}

// Description ---------------------------------------------------------------------------------------------------------

class DeviceDescription : public DeviceTest, public testing::WithParamInterface<DEVICE_ACCESS_FLAGS> {};

TEST_P(DeviceDescription, IsServedWhateverTheAccess) {
  const std::vector<uint8_t> bytes = ReadBytes(OpenDevice(GetParam()), kXmlAddress, kXmlSize);
  ASSERT_EQ(bytes.size(), kXmlSize);
  // The byte order mark is kept, the text is whole, and one word of zeros stands behind it.
  EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 3), (std::vector<uint8_t>{0xEF, 0xBB, 0xBF}));
  const std::string text(bytes.begin(), bytes.begin() + kXmlText);
  EXPECT_EQ(text.find('\0'), std::string::npos);
  EXPECT_NE(text.find("ModelName=\"TL_Lumivex_Device\""), std::string::npos);
  EXPECT_NE(text.find("</RegisterDescription>"), std::string::npos);
  EXPECT_NE(text.find("Also change the version of the file and the schema in CDevice::GetPortURLInfo()"),
            std::string::npos);
  EXPECT_EQ(std::vector<uint8_t>(bytes.begin() + kXmlText, bytes.end()), std::vector<uint8_t>(4));
}

INSTANTIATE_TEST_SUITE_P(Flags, DeviceDescription, testing::Values(2, 3, 4, 1000));

TEST_F(DevicePort, DescriptionInPiecesIsTheSame) {
  const std::vector<uint8_t> whole = ReadBytes(m_hDevice, kXmlAddress, kXmlSize);
  std::vector<uint8_t> pieces;
  while (pieces.size() < kXmlSize) {
    const size_t size = std::min<size_t>(1020, kXmlSize - pieces.size());
    const std::vector<uint8_t> piece = ReadBytes(m_hDevice, kXmlAddress + pieces.size(), size);
    ASSERT_EQ(piece.size(), size);
    pieces.insert(pieces.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(pieces, whole);
}

TEST_F(DevicePort, DescriptionEndsTheMap) {
  EXPECT_EQ(ReadU32(m_hDevice, kXmlAddress + kXmlSize - 4), 0U);
  uint32_t words[2] = {};
  EXPECT_GC(GC_ERR_ERROR, NotAvailable(kXmlAddress + kXmlSize), TryRead(m_hDevice, kXmlAddress + kXmlSize, words, 4));
  EXPECT_GC(GC_ERR_ERROR, NotAvailable(kXmlAddress + kXmlSize),
            TryRead(m_hDevice, kXmlAddress + kXmlSize - 4, words, 8));
  EXPECT_GC(GC_ERR_ERROR, NotWritable(kXmlAddress), WriteU32(m_hDevice, kXmlAddress, 1));
}

TEST_F(DevicePort, DescriptionIsWhatTheUrlNames) {
  const auto url = ParseLocalUrl(PortUrl(m_hDevice).Text());
  ASSERT_TRUE(url.has_value());
  EXPECT_EQ(url->name, "LumivexTLDevice.xml");
  EXPECT_EQ(url->address, kXmlAddress);
  EXPECT_EQ(url->size, kXmlSize);
  EXPECT_EQ(ReadXml(m_hDevice).size(), kXmlText);
}

// Addresses and sizes -------------------------------------------------------------------------------------------------

TEST_F(DevicePort, TakesWholeWordsOnly) {
  uint32_t words[2] = {};
  constexpr const char *kText = "Address and/or uiSize have to be multiples of four.";
  for (const size_t size : {1U, 2U, 3U, 5U, 7U}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, kText, TryRead(m_hDevice, 0x3EC, words, size));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, kText, WriteBytes(m_hDevice, 0x3EC, std::vector<uint8_t>(size)));
  }
  for (const uint64_t address : {0x3EDU, 0x3EEU, 0x3EFU}) {
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, kText, TryRead(m_hDevice, address, words, 4));
    EXPECT_GC(GC_ERR_INVALID_PARAMETER, kText, WriteU32(m_hDevice, address, 0));
  }
}

TEST_F(DevicePort, RefusesAddressesBeyondAnyMap) {
  uint32_t word = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address is invalid.",
            TryRead(m_hDevice, 0xFFFFFFFFFFFFFFFFULL, &word, sizeof(word)));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address is invalid.", WriteU32(m_hDevice, 0xFFFFFFFFFFFFFFFFULL, 0));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Address too large: 0 <= 1844674407370955164 <= 461168601842738790",
            TryRead(m_hDevice, 0x199999999999999CULL, &word, sizeof(word)));
  EXPECT_GC(GC_ERR_ERROR, NotAvailable(0x1999999999999998ULL),
            TryRead(m_hDevice, 0x1999999999999998ULL, &word, sizeof(word)));
  EXPECT_GC(GC_ERR_ERROR, NotAvailable(0x100000600ULL), TryRead(m_hDevice, 0x100000600ULL, &word, sizeof(word)));
}

TEST_F(DevicePort, RefusesNullBuffersAndSizes) {
  uint32_t word = 0;
  size_t size = 4;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPort(m_hDevice, 0x3EC, nullptr, &size));
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCWritePort(m_hDevice, 0x3EC, nullptr, &size));
  size = 0;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPort(m_hDevice, 0x3EC, nullptr, &size));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Size of buffer cannot be null.", "GenICam::Client::GCReadPort",
                 Gc().GCReadPort(m_hDevice, 0x3EC, &word, &size));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", "GenICam::Client::GCReadPort",
                 Gc().GCReadPort(m_hDevice, 0x3EC, &word, nullptr));
  EXPECT_GC_FROM(GC_ERR_INVALID_PARAMETER, "Null size pointer.", "GenICam::Client::GCWritePort",
                 Gc().GCWritePort(m_hDevice, 0x3EC, &word, nullptr));
}

TEST_F(DevicePort, StackedEntriesAreNotCheckedByTheFrame) {
  uint32_t word = 0;
  PORT_REGISTER_STACK_ENTRY entry{0x3EC, &word, 0};
  size_t count = 1;
  EXPECT_GC(GC_ERR_INVALID_PARAMETER, "pBuffer is not valid.", Gc().GCReadPortStacked(m_hDevice, &entry, &count));
  EXPECT_EQ(count, 0U);
}

TEST_F(DevicePort, ReadOfAWordInsideATextGivesThatWord) {
  const std::vector<uint8_t> bytes = ReadBytes(m_hDevice, 0x4, 4);
  EXPECT_EQ(bytes, (std::vector<uint8_t>{'n', 'e', 'l', ' '}));
}

TEST_F(DevicePort, StackedReadStopsAtTheFirstFailure) {
  uint32_t words[3] = {1, 2, 3};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x3E4, &words[0], 4}, {0x504, &words[1], 4}, {0x3E4, &words[2], 4}};
  size_t count = 3;
  EXPECT_GC(GC_ERR_ERROR, NotAvailable(0x504), Gc().GCReadPortStacked(m_hDevice, entries, &count));
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(words[0], 1U);
  EXPECT_EQ(words[2], 3U);
}

TEST_F(DevicePort, StackedWriteKeepsWhatWasDone) {
  uint32_t words[3] = {640, 480, 8};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x614, &words[0], 4}, {0x3E8, &words[1], 4}, {0x618, &words[2], 4}};
  size_t count = 3;
  EXPECT_GC(GC_ERR_ERROR, NotWritable(0x3E8), Gc().GCWritePortStacked(m_hDevice, entries, &count));
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(Parameter(GRB_CAM_ACTIVE_XLENGTH), 640U);
  EXPECT_EQ(Parameter(GRB_CAM_ACTIVE_YLENGTH), 48U);
}

// The size of each entry is what the port answers, here fewer bytes than asked for.
TEST_F(DevicePort, StackedReadLeavesTheSizesOfThePort) {
  std::vector<char> text(1024);
  uint32_t words[2] = {};
  PORT_REGISTER_STACK_ENTRY entries[] = {{0x1004, text.data(), text.size()}, {0x604, words, sizeof(words)}};
  size_t count = 2;
  EXPECT_GC_OK(Gc().GCReadPortStacked(m_hDevice, entries, &count));
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(entries[0].Size, std::strlen(CScriptedGrb::kDefaultProperties) + 1);
  EXPECT_EQ(entries[1].Size, 4U);
}

}  // namespace
