// SPDX-License-Identifier: MIT
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TLIError.h"
#include "TLIException.h"

using namespace GenICam::Client;

namespace {

TEST(TliError, NewRecordHasAnEmptyText) {
  const CTLIError record(1U);
  GC_ERROR code = 0;
  size_t size = 99;
  record.GetErrTxt(&code, nullptr, &size);
  EXPECT_EQ(1U, size);
}

TEST(TliError, NullSizeFailsWithItsOwnText) {
  const CTLIError record(1U);
  GC_ERROR code = 77;
  try {
    record.GetErrTxt(&code, nullptr, nullptr);
    FAIL();
  } catch (const invalidparameter_error &failure) {
    EXPECT_EQ("Null pointer for size of error string.", failure.GetDescription());
    EXPECT_EQ(77, code);
  }
}

TEST(TliError, TextFitsWithItsTerminatorAndNotWithout) {
  CTLIError record(1U);
  record.SetErrTxt(GC_ERR_TIMEOUT, "four");
  char text[16] = "untouched";
  GC_ERROR code = 77;
  size_t size = 4;
  try {
    record.GetErrTxt(&code, text, &size);
    FAIL();
  } catch (const invalidbuffer_error &failure) {
    EXPECT_EQ("Size of buffer is too small to contain error messsage.", failure.GetDescription());
  }
  EXPECT_EQ(4U, size);
  EXPECT_EQ(77, code);
  EXPECT_STREQ("untouched", text);

  size = 5;
  record.GetErrTxt(&code, text, &size);
  EXPECT_STREQ("four", text);
  EXPECT_EQ(5U, size);
  EXPECT_EQ(GC_ERR_TIMEOUT, code);

  size = sizeof(text);
  record.GetErrTxt(&code, text, &size);
  EXPECT_EQ(5U, size);
}

TEST(TliError, LaterTextReplacesTheEarlier) {
  CTLIError record(1U);
  record.SetErrTxt(GC_ERR_TIMEOUT, "a long text of an earlier failure");
  record.SetErrTxt(GC_ERR_IO, "x");
  char text[64] = {};
  GC_ERROR code = 0;
  size_t size = sizeof(text);
  record.GetErrTxt(&code, text, &size);
  EXPECT_STREQ("x", text);
  EXPECT_EQ(2U, size);
  EXPECT_EQ(GC_ERR_IO, code);
}

TEST(TliError, EachThreadHasItsOwnRecordAndKeepsIt) {
  CTLIError *pMine = &GetTLIError();
  EXPECT_EQ(pMine, &GetTLIError());
  pMine->SetErrTxt(GC_ERR_IO, "mine");
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([pMine, i] {
      CTLIError *pTheirs = &GetTLIError();
      EXPECT_NE(pMine, pTheirs);
      GC_ERROR code = 0;
      size_t size = 0;
      pTheirs->GetErrTxt(&code, nullptr, &size);
      EXPECT_EQ(1U, size) << "a record of an ended thread was taken over";
      for (int n = 0; n < 100; ++n) {
        pTheirs->SetErrTxt(i, std::to_string(i).c_str());
        pTheirs->GetErrTxt(&code, nullptr, &size);
        EXPECT_EQ(i, code);
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  char text[64] = {};
  GC_ERROR code = 0;
  size_t size = sizeof(text);
  pMine->GetErrTxt(&code, text, &size);
  EXPECT_STREQ("mine", text);
}

}  // namespace
