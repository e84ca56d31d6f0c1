// SPDX-License-Identifier: MIT
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Helper.h"
#include "Producer.h"
#include "TLIException.h"

using namespace GenICam::Client;

namespace {

constexpr uint8_t kUntouched = 0xEE;
constexpr uint32_t kRawData[] = {0x04030201U};

/// One row of the family: what it stores and in which order it looks at its pointers.
struct Form {
  const char *name;
  std::function<void(uint8_t *, size_t *, INFO_DATATYPE *)> call;
  INFO_DATATYPE type;
  std::vector<uint8_t> bytes;
  bool sizeFirst;  ///< order of the two null checks
  const char *function = "GenICam::Client::SetReturnParam";
};
std::ostream &operator<<(std::ostream &out, const Form &form) { return out << form.name; }

template <class T>
std::vector<uint8_t> BytesOf(T value) {
  std::vector<uint8_t> bytes(sizeof(T));
  std::memcpy(bytes.data(), &value, sizeof(T));
  return bytes;
}

std::vector<uint8_t> TextBytes(const std::string &text) {
  std::vector<uint8_t> bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

std::vector<Form> AllForms() {
  return {
      {"raw4",
       [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, INFO_DATATYPE_INT32, kRawData, 4); },
       INFO_DATATYPE_INT32,
       {1, 2, 3, 4},
       true},
      {"rawUnknown",
       [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, INFO_DATATYPE_UNKNOWN, kRawData, 3); },
       INFO_DATATYPE_UNKNOWN,
       {1, 2, 3},
       true},
      {"rawBool",
       [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, INFO_DATATYPE_BOOL8, kRawData, 1); },
       INFO_DATATYPE_BOOL8,
       {1},
       true},
      {"string", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, std::string("CXP")); },
       INFO_DATATYPE_STRING, TextBytes("CXP"), true},
      {"emptyString", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, std::string()); },
       INFO_DATATYPE_STRING, TextBytes(""), true},
      {"longString", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, std::string(300, 'x')); },
       INFO_DATATYPE_STRING, TextBytes(std::string(300, 'x')), true},
      // A text without a length: it must not slip into the truth value's form.
      {"text", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, "CXP"); }, INFO_DATATYPE_STRING,
       TextBytes("CXP"), true},
      {"emptyText", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, ""); }, INFO_DATATYPE_STRING,
       TextBytes(""), true},
      {"int32", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, int32_t{-5}); },
       INFO_DATATYPE_INT32, BytesOf(int32_t{-5}), false},
      {"uint32", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, uint32_t{0xFFFFFFFEU}); },
       INFO_DATATYPE_UINT32, BytesOf(uint32_t{0xFFFFFFFEU}), false},
      {"uint64", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, uint64_t{0x0102030405060708}); },
       INFO_DATATYPE_UINT64, BytesOf(uint64_t{0x0102030405060708}), false},
      {"boolTrue",
       [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, bool8_t{true}); },
       INFO_DATATYPE_BOOL8,
       {1},
       false},
      {"boolFalse",
       [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParam(b, s, t, bool8_t{false}); },
       INFO_DATATYPE_BOOL8,
       {0},
       false},
      {"sizet", [](uint8_t *b, size_t *s, INFO_DATATYPE *t) { SetReturnParamSize_t(b, s, t, size_t{1} << 40U); },
       INFO_DATATYPE_SIZET, BytesOf(uint64_t{1} << 40U), false, "GenICam::Client::SetReturnParamSize_t"},
  };
}

class ReturnParam : public testing::TestWithParam<Form> {
 protected:
  size_t Needed() const { return GetParam().bytes.size(); }
  void Call() { GetParam().call(m_Buffer.data(), &m_nSize, &m_nType); }

  std::vector<uint8_t> m_Buffer = std::vector<uint8_t>(1000, kUntouched);
  size_t m_nSize = 0;
  INFO_DATATYPE m_nType = -77;

  void ExpectAnswer() const {
    EXPECT_EQ(GetParam().type, m_nType);
    EXPECT_EQ(Needed(), m_nSize);
    EXPECT_EQ(GetParam().bytes, std::vector<uint8_t>(m_Buffer.data(), m_Buffer.data() + Needed()));
    for (size_t i = Needed(); i < m_Buffer.size(); ++i) {
      ASSERT_EQ(kUntouched, m_Buffer[i]) << "byte " << i << " behind the answer was written";
    }
  }
};

/// The description of the failure, or "" if there was none.
template <class Action>
std::string FailureOf(Action action) {
  try {
    action();
  } catch (const invalidparameter_error &failure) {
    return failure.GetDescription();
  }
  return "";
}

TEST_P(ReturnParam, NullBufferAsksForTheSize) {
  for (const size_t before : {size_t{0}, size_t{1}, size_t{12345}}) {
    m_nSize = before;
    m_nType = -77;
    GetParam().call(nullptr, &m_nSize, &m_nType);
    EXPECT_EQ(Needed(), m_nSize);
    EXPECT_EQ(GetParam().type, m_nType);
  }
}

TEST_P(ReturnParam, ExactSizeIsEnough) {
  m_nSize = Needed();
  Call();
  ExpectAnswer();
}

TEST_P(ReturnParam, LargerSizeShrinksToTheAnswer) {
  m_nSize = Needed() + 8;
  Call();
  ExpectAnswer();
}

TEST_P(ReturnParam, SizeZeroCountsAsLargeEnough) {
  m_nSize = 0;
  Call();
  ExpectAnswer();
}

TEST_P(ReturnParam, OneByteTooFewFailsWithTheTypeStored) {
  m_nSize = Needed() - 1;
  if (m_nSize == 0) {
    // A size of 0 is not too small: a one-byte answer cannot fail.
    Call();
    ExpectAnswer();
    return;
  }
  EXPECT_EQ("Invalid Buffer Size.", FailureOf([&] { Call(); }));
  EXPECT_EQ(Needed() - 1, m_nSize) << "the caller does not get the needed size back";
  EXPECT_EQ(GetParam().type, m_nType);
  EXPECT_EQ(std::vector<uint8_t>(m_Buffer.size(), kUntouched), m_Buffer);
}

TEST_P(ReturnParam, NullPointersAreReportedInOrder) {
  EXPECT_EQ("Invalid Size.", FailureOf([&] { GetParam().call(m_Buffer.data(), nullptr, &m_nType); }));
  EXPECT_EQ(-77, m_nType) << "nothing is stored before the checks have passed";
  m_nSize = 1000;
  EXPECT_EQ("Invalid Type.", FailureOf([&] { GetParam().call(m_Buffer.data(), &m_nSize, nullptr); }));
  EXPECT_EQ(1000U, m_nSize);
  EXPECT_EQ(GetParam().sizeFirst ? "Invalid Size." : "Invalid Type.",
            FailureOf([&] { GetParam().call(m_Buffer.data(), nullptr, nullptr); }));
  EXPECT_EQ(std::vector<uint8_t>(m_Buffer.size(), kUntouched), m_Buffer);
}

TEST_P(ReturnParam, FailuresNameTheFamily) {
  const auto nameOf = [](const std::function<void()> &action) {
    try {
      action();
    } catch (const invalidparameter_error &failure) {
      const auto pieces = TestSupport::SplitFailureText(failure.what());
      return pieces ? pieces->function + " in " + pieces->file : std::string(failure.what());
    }
    return std::string("nothing was thrown");
  };
  const std::string expected = std::string(GetParam().function) + " in Helper.cpp";
  EXPECT_EQ(expected, nameOf([&] { GetParam().call(m_Buffer.data(), nullptr, &m_nType); }));
  EXPECT_EQ(expected, nameOf([&] { GetParam().call(m_Buffer.data(), &m_nSize, nullptr); }));
  if (Needed() > 1) {
    m_nSize = Needed() - 1;
    EXPECT_EQ(expected, nameOf([&] { Call(); }));
  }
}

TEST_P(ReturnParam, UnalignedBufferIsFilled) {
  m_nSize = Needed();
  GetParam().call(m_Buffer.data() + 1, &m_nSize, &m_nType);
  EXPECT_EQ(GetParam().bytes, std::vector<uint8_t>(m_Buffer.data() + 1, m_Buffer.data() + 1 + Needed()));
}

INSTANTIATE_TEST_SUITE_P(Forms, ReturnParam, testing::ValuesIn(AllForms()),
                         [](const testing::TestParamInfo<Form> &row) { return std::string(row.param.name); });

TEST(ReturnParamNumbers, FourBytesAreTooFewForA64BitAnswerAndSixteenShrink) {
  uint64_t answer[2] = {};
  size_t size = 4;
  INFO_DATATYPE type = -77;
  EXPECT_EQ("Invalid Buffer Size.", FailureOf([&] { SetReturnParam(answer, &size, &type, uint64_t{7}); }));
  size = 16;
  SetReturnParam(answer, &size, &type, uint64_t{7});
  EXPECT_EQ(8U, size);
  EXPECT_EQ(7U, answer[0]);
}

}  // namespace
