// SPDX-License-Identifier: MIT
/// @file
/// GCGetLastError: the record of each thread, its texts and sizes.
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

class LastErrorTest : public ProducerTest {
 protected:
  /// Leaves a failure of known code in the calling thread's record; gives its text.
  static std::string Fail() {
    TL_HANDLE *pNone = nullptr;
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Gc().TLOpen(pNone));
    return LastError().text;
  }
};

TEST_F(LastErrorTest, FailureLeavesCodeAndText) {
  Fail();
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, record.code);
  const auto pieces = SplitFailureText(record.text);
  ASSERT_TRUE(pieces);
  EXPECT_EQ("Null TL_HANDLE pointer.", pieces->message);
  EXPECT_EQ("GenICam::Client::TLOpen", pieces->function);
  EXPECT_GT(pieces->line, 0U);
  EXPECT_EQ(std::string::npos, pieces->file.find_first_of("/\\"));
}

TEST_F(LastErrorTest, LinesTellThePlacesApart) {
  INFO_DATATYPE type = 0;
  Gc().GCGetInfo(TL_INFO_ID, nullptr, nullptr, nullptr);
  const auto first = SplitFailureText(LastError().text);
  Gc().TLOpen(nullptr);
  const auto second = SplitFailureText(LastError().text);
  Gc().GCGetInfo(77, &type, nullptr, nullptr);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first->line, second->line);
}

TEST_F(LastErrorTest, SuccessResetsTheRecord) {
  Fail();
  ASSERT_EQ(GC_ERR_SUCCESS, GcInfo(TL_INFO_ID).result);
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_SUCCESS, record.code);
  EXPECT_EQ("No error, last function reset the last error to GC_ERR_SUCCESS.", record.text);
}

TEST_F(LastErrorTest, AskingTwiceGivesTheSame) {
  const std::string text = Fail();
  for (int i = 0; i < 3; ++i) {
    const ErrorRecord record = LastError();
    EXPECT_EQ(GC_ERR_SUCCESS, record.result);
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, record.code);
    EXPECT_EQ(text, record.text);
  }
}

TEST_F(LastErrorTest, NullTextAsksForTheSizeWhateverItWas) {
  const std::string text = Fail();
  for (const size_t before : {size_t{0}, size_t{1}, size_t{100000}}) {
    GC_ERROR code = 77;
    size_t size = before;
    EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCGetLastError(&code, nullptr, &size));
    EXPECT_EQ(text.size() + 1, size);
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, code);
  }
}

TEST_F(LastErrorTest, ExactSizeFits) {
  const std::string text = Fail();
  std::vector<char> buffer(text.size() + 2, 'u');
  GC_ERROR code = 77;
  size_t size = text.size() + 1;
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCGetLastError(&code, buffer.data(), &size));
  EXPECT_EQ(text, buffer.data());
  EXPECT_EQ(text.size() + 1, size);
  EXPECT_EQ('u', buffer.back());
}

TEST_F(LastErrorTest, LargerSizeShrinks) {
  const std::string text = Fail();
  std::vector<char> buffer(1000, 'u');
  GC_ERROR code = 77;
  size_t size = 1000;
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCGetLastError(&code, buffer.data(), &size));
  EXPECT_EQ(text.size() + 1, size);
}

TEST_F(LastErrorTest, OneByteTooFewLosesTheEarlierError) {
  const std::string text = Fail();
  std::vector<char> buffer(text.size(), 'u');
  GC_ERROR code = 77;
  size_t size = text.size();
  EXPECT_EQ(GC_ERR_INVALID_BUFFER, Gc().GCGetLastError(&code, buffer.data(), &size));
  EXPECT_EQ(text.size(), size);
  EXPECT_EQ(77, code);
  EXPECT_EQ(std::vector<char>(text.size(), 'u'), buffer);
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_INVALID_BUFFER, record.code);
  const auto pieces = SplitFailureText(record.text);
  ASSERT_TRUE(pieces);
  EXPECT_EQ("Size of buffer is too small to contain error messsage.", pieces->message);
  EXPECT_EQ("GenICam::Client::CTLIError::GetErrTxt", pieces->function);
}

TEST_F(LastErrorTest, TextOfASuccessNeedsItsSizeToo) {
  ASSERT_EQ(GC_ERR_SUCCESS, GcInfo(TL_INFO_ID).result);
  char buffer[100] = {};
  GC_ERROR code = 77;
  size_t size = std::strlen(kSuccessText);
  EXPECT_EQ(GC_ERR_INVALID_BUFFER, Gc().GCGetLastError(&code, buffer, &size));
}

struct CheckRow {
  const char *name;
  bool code;
  bool text;
  bool size;
  size_t value;
  const char *message;
};
std::ostream &operator<<(std::ostream &out, const CheckRow &row) { return out << row.name; }

class LastErrorArguments : public LastErrorTest, public testing::WithParamInterface<CheckRow> {};

TEST_P(LastErrorArguments, AreCheckedInOrderAndTheFailureIsRecorded) {
  Fail();
  GC_ERROR code = 77;
  char text[16] = {};
  size_t size = GetParam().value;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            Gc().GCGetLastError(GetParam().code ? &code : nullptr, GetParam().text ? text : nullptr,
                                GetParam().size ? &size : nullptr));
  EXPECT_EQ(77, code);
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, record.code);
  const auto pieces = SplitFailureText(record.text);
  ASSERT_TRUE(pieces) << record.text;
  EXPECT_EQ(GetParam().message, pieces->message);
  EXPECT_EQ("GenICam::Client::GCGetLastError", pieces->function);
}

INSTANTIATE_TEST_SUITE_P(Rows, LastErrorArguments,
                         testing::Values(CheckRow{"CodeFirst", false, true, false, 0, "Null pointer for ErrorCode"},
                                         CheckRow{"CodeAheadOfTheBufferRule", false, true, true, 0,
                                                  "Null pointer for ErrorCode"},
                                         CheckRow{"Size", true, true, false, 0, "Null size pointer."},
                                         CheckRow{"SizeWithoutText", true, false, false, 0, "Null size pointer."},
                                         CheckRow{"BufferRule", true, true, true, 0, "Size of buffer cannot be null."}),
                         [](const testing::TestParamInfo<CheckRow> &row) { return std::string(row.param.name); });

// ---------------------------------------------------------------------------------------------------------------------
// Threads
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(LastErrorTest, ThreadWithoutACallHasAnEmptyText) {
  Fail();
  std::thread([] {
    GC_ERROR code = 77;
    size_t size = 0;
    EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCGetLastError(&code, nullptr, &size));
    EXPECT_EQ(1U, size);
    char text[2] = {'u', 'u'};
    size = 1;
    EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCGetLastError(&code, text, &size));
    EXPECT_EQ('\0', text[0]);
    EXPECT_EQ('u', text[1]);
  }).join();
}

TEST_F(LastErrorTest, EachThreadHasItsOwnRecord) {
  const std::string mine = Fail();
  std::thread([&] {
    EXPECT_EQ(GC_ERR_INVALID_HANDLE, Gc().TLClose(nullptr));
    EXPECT_EQ(GC_ERR_INVALID_HANDLE, LastError().code);
  }).join();
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, record.code);
  EXPECT_EQ(mine, record.text);
}

TEST_F(LastErrorTest, ManyThreadsFailingAtOnceReadTheirOwnTexts) {
  const TL_HANDLE system = OpenSystem();
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([system, t] {
      const std::string id = "id of thread " + std::to_string(t);
      for (int i = 0; i < 200; ++i) {
        size_t size = 0;
        INFO_DATATYPE type = 0;
        EXPECT_GC(GC_ERR_INVALID_PARAMETER, "Invalid Child's name: " + id,
                  Gc().TLGetInterfaceInfo(system, id.c_str(), INTERFACE_INFO_ID, &type, nullptr, &size));
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
}

TEST_F(LastErrorTest, RecordSurvivesTheEndOfTheLibrary) {
  const std::string text = Fail();
  // The closing itself succeeds and says so; a failure behind it stays over the next initialisation on another thread.
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, Gc().GCCloseLib());
  std::thread([] { EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCInitLib()); }).join();
  const ErrorRecord record = LastError();
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, record.code);
  EXPECT_EQ(0U, record.text.find(kNotInitialised)) << record.text;
}

TEST_F(LastErrorTest, UninitialisedCallOverwritesTheRecord) {
  Fail();
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  GC_ERROR code = 77;
  char text[500] = {};
  size_t size = sizeof(text);
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, Gc().GCGetLastError(&code, text, &size));
  EXPECT_EQ(77, code);
  EXPECT_EQ(sizeof(text), size);
  const ErrorRecord record = LastErrorUninitialised();
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, record.code);
  const auto pieces = SplitFailureText(record.text);
  ASSERT_TRUE(pieces);
  EXPECT_EQ(kNotInitialised, pieces->message);
}

}  // namespace
