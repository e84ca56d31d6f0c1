// SPDX-License-Identifier: MIT
#include "RegisterMap.h"

#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TLIException.h"

using namespace GenICam::Client;

namespace {

constexpr uint64_t kMaxEntries = 461168601842738790ULL;
constexpr uint64_t kInvalidAddress = 0xFFFFFFFFFFFFFFFFULL;

/// A map whose registers are plain: no callback, no mark.
class CMap : public CRegisterMap {
 public:
  explicit CMap(uint64_t entries = 100) : CRegisterMap(entries) {}
  void Word(uint64_t address, uint32_t access, uint32_t value) {
    AddRegister(address, access, value, 0, nullptr, nullptr, nullptr, false);
  }
  void Text(uint64_t address, const std::string &text, uint64_t size, uint32_t access = ACCESS_READ) {
    AddString(address, access, text, size, 0, nullptr, nullptr, nullptr, false);
  }
  std::string Bytes(uint64_t address, uint64_t size) {
    std::vector<uint32_t> words(size / 4);
    GetValues(address, words.data(), size);
    return std::string(reinterpret_cast<const char *>(words.data()), size);
  }
};

/// The description of the failure of this class; anything else is a failure of the test.
template <class Error>
std::string FailureOf(const std::function<void()> &action) {
  try {
    action();
  } catch (const Error &failure) {
    return failure.GetDescription();
  } catch (const Lumivex::CLVXException &failure) {
    ADD_FAILURE() << "another class: " << failure.what();
    return "";
  }
  ADD_FAILURE() << "nothing was thrown";
  return "";
}

std::string Padded(const std::string &text, size_t size) { return text + std::string(size - text.size(), '\0'); }

// ---------------------------------------------------------------------------------------------------------------------
// Construction and Resize
// ---------------------------------------------------------------------------------------------------------------------

TEST(RegisterMap, NewMapIsAllHoles) {
  const CMap map(100);
  for (uint64_t address = 0; address < 440; address += 4) {
    EXPECT_EQ(0U, map.GetAccess(address));
  }
}

TEST(RegisterMap, EmptyMapIsLegal) {
  CMap map(0);
  EXPECT_EQ("Register 0 is not available (does not exist).", FailureOf<outofrange_error>([&] { map.ReadReg(0); }));
  map.Word(0, ACCESS_READ, 5);
  EXPECT_EQ(5U, map.ReadReg(0));
}

TEST(RegisterMap, TooManyEntriesFailInTheConstructorAndInResize) {
  const std::string expected = "Initial size is larger than possible: 0 < 461168601842738791 <= 461168601842738790";
  try {
    const CMap map(kMaxEntries + 1);
    FAIL();
  } catch (const invalidparameter_error &failure) {
    EXPECT_EQ(expected, failure.GetDescription());
    EXPECT_NE(std::string::npos, std::string(failure.what()).find("::CRegisterMap()'")) << failure.what();
  }
  CMap map;
  map.Word(0, ACCESS_READ, 5);
  try {
    map.Resize(kMaxEntries + 1);
    FAIL();
  } catch (const invalidparameter_error &failure) {
    EXPECT_EQ(expected, failure.GetDescription());
    EXPECT_NE(std::string::npos, std::string(failure.what()).find("::Resize()'")) << failure.what();
  }
  EXPECT_EQ(5U, map.ReadReg(0)) << "a refused Resize changes nothing";
  EXPECT_EQ("Initial size is larger than possible: 0 < 18446744073709551615 <= 461168601842738790",
            FailureOf<invalidparameter_error>([&] { map.Resize(UINT64_MAX); }));
}

TEST(RegisterMap, LargestCountPassesTheCheckAndFailsForWantOfMemory) {
  CMap map;
  map.Word(0, ACCESS_READ, 5);
  EXPECT_THROW(map.Resize(kMaxEntries), std::exception);
  try {
    map.Resize(kMaxEntries);
  } catch (const Lumivex::CLVXException &failure) {
    ADD_FAILURE() << "the largest count is legal: " << failure.what();
  } catch (const std::exception &) {
  }
  EXPECT_EQ(5U, map.ReadReg(0));
}

TEST(RegisterMap, ResizeKeepsWhatFitsAndDropsTheRest) {
  CMap map(100);
  map.Word(0, ACCESS_READ_WRITE, 1);
  map.Word(36, ACCESS_READ_WRITE, 2);
  map.Word(40, ACCESS_READ_WRITE, 3);
  map.Resize(10);
  EXPECT_EQ(1U, map.GetValue(0));
  EXPECT_EQ(2U, map.GetValue(36));
  EXPECT_EQ("Register 28 is not available (does not exist).", FailureOf<outofrange_error>([&] { map.GetValue(40); }));
}

// Catches entries that survive behind the end of a shrunken vector.
TEST(RegisterMap, ShrinkingAndGrowingGivesHoles) {
  CMap map(100);
  for (uint64_t address = 0; address < 400; address += 4) {
    map.Word(address, ACCESS_READ_WRITE, 7);
  }
  map.Resize(10);
  map.Resize(100);
  for (uint64_t address = 40; address < 400; address += 4) {
    EXPECT_EQ(0U, map.GetAccess(address)) << address;
    EXPECT_THROW(map.GetValue(address), outofrange_error) << address;
  }
  EXPECT_EQ(7U, map.GetValue(36));
}

TEST(RegisterMap, ShrinkingAndAddingFarBehindGivesHolesBetween) {
  CMap map(100);
  for (uint64_t address = 0; address < 400; address += 4) {
    map.Word(address, ACCESS_READ_WRITE, 7);
  }
  map.Resize(1);
  map.Word(400, ACCESS_READ, 9);
  for (uint64_t address = 4; address < 400; address += 4) {
    EXPECT_EQ(0U, map.GetAccess(address)) << address;
  }
  EXPECT_EQ(9U, map.GetValue(400));
}

TEST(RegisterMap, ResizeToNothingAndBack) {
  CMap map(10);
  map.Word(0, ACCESS_READ, 7);
  map.Resize(0);
  EXPECT_EQ(0U, map.GetAccess(0));
  map.Resize(10);
  EXPECT_EQ(0U, map.GetAccess(0));
}

// ---------------------------------------------------------------------------------------------------------------------
// The checks
// ---------------------------------------------------------------------------------------------------------------------

/// Every operation that takes an address; those with a size take four bytes.
struct AddressOperation {
  const char *name;
  std::function<void(CMap &, uint64_t)> call;
};
std::ostream &operator<<(std::ostream &out, const AddressOperation &operation) { return out << operation.name; }

uint32_t g_Word[4] = {1, 2, 3, 4};

std::vector<AddressOperation> AddressOperations() {
  return {
      {"Read", [](CMap &m, uint64_t a) { m.Read(a, g_Word, 4); }},
      {"ReadReg", [](CMap &m, uint64_t a) { m.ReadReg(a); }},
      {"Write", [](CMap &m, uint64_t a) { m.Write(a, g_Word, 4); }},
      {"WriteReg", [](CMap &m, uint64_t a) { m.WriteReg(a, 1); }},
      {"AddRegister", [](CMap &m, uint64_t a) { m.AddRegister(a, 1, 1, 0, nullptr, nullptr, nullptr, false); }},
      {"AddRegister64",
       [](CMap &m, uint64_t a) { m.AddRegister64(a, 1, 1, 0, true, nullptr, nullptr, nullptr, false); }},
      {"AddString", [](CMap &m, uint64_t a) { m.AddString(a, 1, "x", 4, 0, nullptr, nullptr, nullptr, false); }},
      {"AddBlock", [](CMap &m, uint64_t a) { m.AddBlock(a, 1, g_Word, 4, 0, nullptr, nullptr, nullptr, false); }},
      {"GetValues", [](CMap &m, uint64_t a) { m.GetValues(a, g_Word, 4); }},
      {"GetValue", [](CMap &m, uint64_t a) { m.GetValue(a); }},
      {"GetValue64", [](CMap &m, uint64_t a) { m.GetValue64(a, true); }},
      {"SetAccess", [](CMap &m, uint64_t a) { m.SetAccess(a, 1); }},
      {"SetCallbacks", [](CMap &m, uint64_t a) { m.SetCallbacks(a, nullptr, nullptr, nullptr); }},
      {"SetString", [](CMap &m, uint64_t a) { m.SetString(a, "x"); }},
      {"SetValues", [](CMap &m, uint64_t a) { m.SetValues(a, g_Word, 4); }},
      {"SetValue", [](CMap &m, uint64_t a) { m.SetValue(a, 1); }},
      {"SetValue64", [](CMap &m, uint64_t a) { m.SetValue64(a, 1, true); }},
      {"SetByteOrderFlag", [](CMap &m, uint64_t a) { m.SetByteOrderFlag(a, 1); }},
  };
}

class RegisterMapAddress : public testing::TestWithParam<AddressOperation> {
 protected:
  std::string Fail(uint64_t address) {
    return FailureOf<invalidparameter_error>([&] { GetParam().call(m_Map, address); });
  }
  CMap m_Map;
};

TEST_P(RegisterMapAddress, AllOnesIsInvalid) { EXPECT_EQ("Address is invalid.", Fail(kInvalidAddress)); }

TEST_P(RegisterMapAddress, HasToBeAMultipleOfFour) {
  for (const uint64_t address : {1ULL, 2ULL, 3ULL, 0x101ULL, 0xFFFFFFFFFFFFFFFEULL}) {
    EXPECT_EQ("Address and/or uiSize have to be multiples of four.", Fail(address)) << address;
  }
}

TEST_P(RegisterMapAddress, BeyondTheLargestCountIsTooLarge) {
  const uint64_t first = (kMaxEntries + 1) * 4;
  EXPECT_EQ("Address too large: 0 <= " + std::to_string(first) + " <= 461168601842738790", Fail(first));
  EXPECT_EQ("Address too large: 0 <= 18446744073709551612 <= 461168601842738790", Fail(kInvalidAddress - 3));
}

INSTANTIATE_TEST_SUITE_P(Operations, RegisterMapAddress, testing::ValuesIn(AddressOperations()),
                         [](const testing::TestParamInfo<AddressOperation> &row) { return row.param.name; });

/// Those that need the register to be there.
class RegisterMapHole : public testing::TestWithParam<AddressOperation> {};

TEST_P(RegisterMapHole, FailsWithTheAddressInUpperCaseHexadecimal) {
  for (const uint64_t address : {0x4CULL, 0x18CULL, 0xABCDEF0ULL}) {
    CMap map(100);
    map.Word(0x48, ACCESS_READ_WRITE, 1);
    char text[64] = {};
    std::snprintf(text, sizeof(text), "Register %llX is not available (does not exist).",
                  static_cast<unsigned long long>(address));
    EXPECT_EQ(text, FailureOf<outofrange_error>([&] { GetParam().call(map, address); }));
    EXPECT_EQ(0U, map.GetAccess(address));
  }
}

TEST_P(RegisterMapHole, LargestAddressIsAHoleLikeAnyOther) {
  CMap map(100);
  EXPECT_EQ("Register 1999999999999998 is not available (does not exist).",
            FailureOf<outofrange_error>([&] { GetParam().call(map, kMaxEntries * 4); }));
}

std::vector<AddressOperation> ExistingOperations() {
  std::vector<AddressOperation> result;
  for (const AddressOperation &operation : AddressOperations()) {
    if (std::strncmp(operation.name, "Add", 3) != 0) {
      result.push_back(operation);
    }
  }
  return result;
}

INSTANTIATE_TEST_SUITE_P(Operations, RegisterMapHole, testing::ValuesIn(ExistingOperations()),
                         [](const testing::TestParamInfo<AddressOperation> &row) { return row.param.name; });

struct SizeOperation {
  const char *name;
  std::function<void(CMap &, uint32_t *, uint64_t)> call;
  bool needsBuffer;
};
std::ostream &operator<<(std::ostream &out, const SizeOperation &operation) { return out << operation.name; }

std::vector<SizeOperation> SizeOperations() {
  return {
      {"Read", [](CMap &m, uint32_t *b, uint64_t s) { m.Read(0x10, b, s); }, true},
      {"Write", [](CMap &m, uint32_t *b, uint64_t s) { m.Write(0x10, b, s); }, true},
      {"GetValues", [](CMap &m, uint32_t *b, uint64_t s) { m.GetValues(0x10, b, s); }, true},
      {"SetValues", [](CMap &m, uint32_t *b, uint64_t s) { m.SetValues(0x10, b, s); }, true},
      {"AddString",
       [](CMap &m, uint32_t *, uint64_t s) { m.AddString(0x10, 1, "x", s, 0, nullptr, nullptr, nullptr, false); },
       false},
      {"AddBlock",
       [](CMap &m, uint32_t *b, uint64_t s) { m.AddBlock(0x10, 1, b, s, 0, nullptr, nullptr, nullptr, false); }, false},
  };
}

class RegisterMapSize : public testing::TestWithParam<SizeOperation> {
 protected:
  RegisterMapSize() { m_Map.Word(0x10, ACCESS_READ_WRITE, 1); }
  CMap m_Map;
};

TEST_P(RegisterMapSize, HasToBeAMultipleOfFour) {
  for (const uint64_t size : {1U, 2U, 3U, 5U, 6U, 7U}) {
    EXPECT_EQ("Address and/or uiSize have to be multiples of four.",
              FailureOf<invalidparameter_error>([&] { GetParam().call(m_Map, g_Word, size); }));
  }
}

TEST_P(RegisterMapSize, ZeroIsNoBuffer) {
  EXPECT_EQ("pBuffer is not valid.", FailureOf<invalidparameter_error>([&] { GetParam().call(m_Map, g_Word, 0); }));
}

TEST_P(RegisterMapSize, NullBufferIsNoBuffer) {
  if (GetParam().needsBuffer) {
    EXPECT_EQ("pBuffer is not valid.", FailureOf<invalidparameter_error>([&] { GetParam().call(m_Map, nullptr, 4); }));
  } else {
    EXPECT_EQ("pBuffer is not valid.", FailureOf<invalidparameter_error>([&] { GetParam().call(m_Map, nullptr, 0); }));
  }
  EXPECT_EQ(1U, m_Map.GetValue(0x10));
}

INSTANTIATE_TEST_SUITE_P(Operations, RegisterMapSize, testing::ValuesIn(SizeOperations()),
                         [](const testing::TestParamInfo<SizeOperation> &row) { return row.param.name; });

TEST(RegisterMap, AddressIsCheckedAheadOfTheBuffer) {
  CMap map;
  EXPECT_EQ("Address is invalid.", FailureOf<invalidparameter_error>([&] { map.Read(kInvalidAddress, nullptr, 3); }));
  EXPECT_EQ("Address and/or uiSize have to be multiples of four.",
            FailureOf<invalidparameter_error>([&] { map.Read(0, nullptr, 3); }));
  EXPECT_EQ("pBuffer is not valid.", FailureOf<invalidparameter_error>([&] { map.Read(0, nullptr, 4); }));
}

TEST(RegisterMap, AccessOtherThanOneTwoThreeIsUnknown) {
  for (const uint32_t access : {0U, 4U, 5U, 0xFFFFFFFFU}) {
    CMap map(1);
    EXPECT_EQ("iAccess is an unknown ACCESS value.",
              FailureOf<invalidparameter_error>([&] { map.Word(0, access, 1); }));
    EXPECT_EQ("iAccess is an unknown ACCESS value.", FailureOf<invalidparameter_error>([&] {
                map.AddRegister64(0, access, 1, 0, true, nullptr, nullptr, nullptr, false);
              }));
    EXPECT_EQ("iAccess is an unknown ACCESS value.",
              FailureOf<invalidparameter_error>([&] { map.Text(0, "x", 4, access); }));
    EXPECT_EQ("iAccess is an unknown ACCESS value.", FailureOf<invalidparameter_error>([&] {
                map.AddBlock(0, access, g_Word, 4, 0, nullptr, nullptr, nullptr, false);
              }));
    EXPECT_EQ(0U, map.GetAccess(0));
  }
}

TEST(RegisterMap, AddressIsCheckedAheadOfTheAccess) {
  CMap map;
  EXPECT_EQ("Address and/or uiSize have to be multiples of four.",
            FailureOf<invalidparameter_error>([&] { map.Word(2, 9, 1); }));
}

// ---------------------------------------------------------------------------------------------------------------------
// Single registers
// ---------------------------------------------------------------------------------------------------------------------

TEST(RegisterMap, ReadableWritableBoth) {
  CMap map;
  map.Word(0xABC, ACCESS_READ, 1);
  map.Word(0xDE0, ACCESS_WRITE, 2);
  map.Word(0xF00, ACCESS_READ_WRITE, 3);
  EXPECT_EQ(1U, map.ReadReg(0xABC));
  EXPECT_EQ("Register ABC is not writable.", FailureOf<access_error>([&] { map.WriteReg(0xABC, 9); }));
  EXPECT_EQ(1U, map.GetValue(0xABC)) << "a refused write stores nothing";
  EXPECT_EQ("Register DE0 is not readable.", FailureOf<access_error>([&] { map.ReadReg(0xDE0); }));
  map.WriteReg(0xDE0, 9);
  EXPECT_EQ(9U, map.GetValue(0xDE0));
  map.WriteReg(0xF00, 10);
  EXPECT_EQ(10U, map.ReadReg(0xF00));
}

TEST(RegisterMap, GetAndSetIgnoreRightsAndRunNoCallback) {
  CMap map;
  const auto callback = [](uint64_t, uint32_t *, void *pContext) { ++*static_cast<int *>(pContext); };
  int calls = 0;
  map.AddRegister(0, ACCESS_READ, 1, 0, callback, &calls, callback, false);
  map.AddRegister(4, ACCESS_WRITE, 2, 0, callback, &calls, callback, false);
  map.SetValue(0, 10);
  EXPECT_EQ(10U, map.GetValue(0));
  EXPECT_EQ(2U, map.GetValue(4));
  uint32_t words[2] = {};
  EXPECT_EQ(2U, map.GetValues(0, words, 8));
  EXPECT_EQ(10U, words[0]);
  words[1] = 20;
  EXPECT_EQ(2U, map.SetValues(0, words, 8));
  EXPECT_EQ(20U, map.GetValue(4));
  map.SetValue64(0, 0x0000000200000001ULL, true);
  EXPECT_EQ(0x0000000200000001ULL, map.GetValue64(0, true));
  map.SetString(0, "abc");
  EXPECT_EQ(0, calls);
}

TEST(RegisterMap, AddingTwiceOverwritesTheWholeEntry) {
  CMap map;
  const auto callback = [](uint64_t, uint32_t *, void *pContext) { ++*static_cast<int *>(pContext); };
  int calls = 0;
  map.AddRegister(8, ACCESS_READ_WRITE, 1, 5, callback, &calls, callback, true);
  map.Word(8, ACCESS_READ, 2);
  uint32_t word = 0;
  EXPECT_FALSE(map.Read(8, &word, 4)) << "the virtual mark of the first registration survived";
  EXPECT_EQ(2U, word);
  EXPECT_EQ(0, calls);
  EXPECT_EQ(1U, map.GetAccess(8));
  EXPECT_EQ(0U, map.GetByteOrderFlag(8));
}

TEST(RegisterMap, AddingPastTheEndGrows) {
  CMap map(1);
  map.Word(0x1000, ACCESS_READ, 7);
  EXPECT_EQ(7U, map.ReadReg(0x1000));
  EXPECT_EQ(0U, map.GetAccess(0xFFC));
  EXPECT_EQ(0U, map.GetAccess(0x1004));
}

TEST(RegisterMap, AccessAndFlagAreZeroOnAnyFailure) {
  CMap map;
  map.AddRegister(4, ACCESS_WRITE, 1, 0xAB, nullptr, nullptr, nullptr, false);
  EXPECT_EQ(2U, map.GetAccess(4));
  EXPECT_EQ(0xABU, map.GetByteOrderFlag(4));
  for (const uint64_t address : {uint64_t{0}, uint64_t{5}, uint64_t{0x100000}, kInvalidAddress, kInvalidAddress - 3}) {
    EXPECT_EQ(0U, map.GetAccess(address)) << address;
    EXPECT_EQ(0U, map.GetByteOrderFlag(address)) << address;
  }
}

TEST(RegisterMap, AccessAndFlagCanBeSet) {
  CMap map;
  map.Word(4, ACCESS_READ, 1);
  map.SetAccess(4, ACCESS_READ_WRITE);
  map.WriteReg(4, 2);
  EXPECT_EQ(2U, map.ReadReg(4));
  map.SetByteOrderFlag(4, 9);
  EXPECT_EQ(9U, map.GetByteOrderFlag(4));
  EXPECT_EQ(2U, map.ReadReg(4)) << "the flag has no effect anywhere";
}

// ---------------------------------------------------------------------------------------------------------------------
// Callbacks
// ---------------------------------------------------------------------------------------------------------------------

struct Recorder {
  std::vector<std::pair<uint64_t, uint32_t>> reads;
  std::vector<std::pair<uint64_t, uint32_t>> writes;
  static void OnRead(uint64_t address, uint32_t *pValue, void *pContext) {
    static_cast<Recorder *>(pContext)->reads.emplace_back(address, *pValue);
    *pValue += 1;
  }
  static void OnWrite(uint64_t address, uint32_t *pValue, void *pContext) {
    static_cast<Recorder *>(pContext)->writes.emplace_back(address, *pValue);
    *pValue *= 10;
  }
};
using Seen = std::vector<std::pair<uint64_t, uint32_t>>;

TEST(RegisterMapCallbacks, ReadCallbackRunsAheadOfTheReadAndWriteCallbackBehindTheWrite) {
  CMap map;
  Recorder recorder;
  map.AddRegister(0x20, ACCESS_READ_WRITE, 5, 0, Recorder::OnWrite, &recorder, Recorder::OnRead, false);
  EXPECT_EQ(6U, map.ReadReg(0x20)) << "a read gives what the callback left";
  EXPECT_EQ(6U, map.GetValue(0x20)) << "and the callback's value is stored";
  map.WriteReg(0x20, 7);
  EXPECT_EQ((Seen{{0x20, 5}}), recorder.reads);
  EXPECT_EQ((Seen{{0x20, 7}}), recorder.writes) << "the value stands in the entry when the callback runs";
  EXPECT_EQ(70U, map.GetValue(0x20));
}

TEST(RegisterMapCallbacks, RefusedAccessRunsNone) {
  CMap map;
  Recorder recorder;
  map.AddRegister(0, ACCESS_READ, 5, 0, Recorder::OnWrite, &recorder, Recorder::OnRead, false);
  map.AddRegister(4, ACCESS_WRITE, 5, 0, Recorder::OnWrite, &recorder, Recorder::OnRead, false);
  EXPECT_THROW(map.WriteReg(0, 1), access_error);
  EXPECT_THROW(map.ReadReg(4), access_error);
  EXPECT_TRUE(recorder.reads.empty());
  EXPECT_TRUE(recorder.writes.empty());
}

TEST(RegisterMapCallbacks, RunAfterEachSingleWord) {
  CMap map;
  Recorder recorder;
  map.AddBlock(0x10, ACCESS_READ_WRITE, g_Word, 12, 0, Recorder::OnWrite, &recorder, Recorder::OnRead, false);
  uint32_t words[3] = {7, 8, 9};
  map.Write(0x10, words, 12);
  EXPECT_EQ((Seen{{0x10, 7}, {0x14, 8}, {0x18, 9}}), recorder.writes);
  map.Read(0x10, words, 12);
  EXPECT_EQ((Seen{{0x10, 70}, {0x14, 80}, {0x18, 90}}), recorder.reads);
  EXPECT_EQ(71U, words[0]);
  EXPECT_EQ(91U, words[2]);
}

TEST(RegisterMapCallbacks, ThrowingWriteCallbackLeavesTheValueStored) {
  CMap map;
  map.AddRegister(
      8, ACCESS_READ_WRITE, 1, 0, [](uint64_t, uint32_t *, void *) { throw io_error(std::string("no"), LVX_HERE); },
      nullptr, nullptr, false);
  const uint32_t word = 99;
  EXPECT_EQ("no", FailureOf<io_error>([&] { map.Write(8, &word, 4); }));
  EXPECT_EQ(99U, map.GetValue(8));
}

TEST(RegisterMapCallbacks, ThrowingCallbackEndsTheWriteAtItsWord) {
  CMap map;
  const auto refuse = [](uint64_t address, uint32_t *, void *) {
    if (address == 4) {
      throw io_error(std::string("no"), LVX_HERE);
    }
  };
  map.AddBlock(0, ACCESS_READ_WRITE, g_Word, 12, 0, refuse, nullptr, nullptr, false);
  const uint32_t words[3] = {10, 20, 30};
  EXPECT_THROW(map.Write(0, words, 12), io_error);
  EXPECT_EQ(10U, map.GetValue(0));
  EXPECT_EQ(20U, map.GetValue(4));
  EXPECT_EQ(3U, map.GetValue(8));
}

TEST(RegisterMapCallbacks, CanBeSetLater) {
  CMap map;
  Recorder recorder;
  map.Word(4, ACCESS_READ_WRITE, 1);
  map.SetCallbacks(4, Recorder::OnWrite, &recorder, Recorder::OnRead);
  map.WriteReg(4, 2);
  map.ReadReg(4);
  EXPECT_EQ((Seen{{4, 2}}), recorder.writes);
  EXPECT_EQ((Seen{{4, 20}}), recorder.reads);
  map.SetCallbacks(4, nullptr, nullptr, nullptr);
  map.WriteReg(4, 2);
  EXPECT_EQ(1U, recorder.writes.size());
}

// ---------------------------------------------------------------------------------------------------------------------
// Several words
// ---------------------------------------------------------------------------------------------------------------------

TEST(RegisterMap, ReadStopsAtAHoleWithTheWordsBeforeDelivered) {
  CMap map;
  map.Word(0, ACCESS_READ, 11);
  map.Word(8, ACCESS_READ, 33);
  uint32_t words[3] = {1, 2, 3};
  EXPECT_EQ("Register 4 is not available (does not exist).",
            FailureOf<outofrange_error>([&] { map.Read(0, words, 12); }));
  EXPECT_EQ(11U, words[0]);
  EXPECT_EQ(2U, words[1]);
  EXPECT_EQ(3U, words[2]);
}

TEST(RegisterMap, ReadStopsAtAWriteOnlyWord) {
  CMap map;
  map.Word(0, ACCESS_READ, 11);
  map.Word(4, ACCESS_WRITE, 22);
  uint32_t words[2] = {1, 2};
  EXPECT_EQ("Register 4 is not readable.", FailureOf<access_error>([&] { map.Read(0, words, 8); }));
  EXPECT_EQ(11U, words[0]);
  EXPECT_EQ(2U, words[1]);
}

TEST(RegisterMap, FailingWordLeavesTheEarlierOnesWritten) {
  CMap map;
  map.Word(0, ACCESS_READ_WRITE, 1);
  map.Word(4, ACCESS_READ, 2);
  map.Word(8, ACCESS_READ_WRITE, 3);
  const uint32_t words[3] = {10, 20, 30};
  EXPECT_EQ("Register 4 is not writable.", FailureOf<access_error>([&] { map.Write(0, words, 12); }));
  EXPECT_EQ(10U, map.GetValue(0));
  EXPECT_EQ(2U, map.GetValue(4));
  EXPECT_EQ(3U, map.GetValue(8));
}

TEST(RegisterMap, ReadAndWriteTellTheVirtualMarkOfTheFirstRegister) {
  CMap map;
  map.AddRegister(0, ACCESS_READ_WRITE, 1, 0, nullptr, nullptr, nullptr, true);
  map.AddRegister(4, ACCESS_READ_WRITE, 1, 0, nullptr, nullptr, nullptr, false);
  map.AddRegister(8, ACCESS_READ_WRITE, 1, 0, nullptr, nullptr, nullptr, true);
  uint32_t words[2] = {};
  EXPECT_TRUE(map.Read(0, words, 8));
  EXPECT_TRUE(map.Write(0, words, 8));
  EXPECT_FALSE(map.Read(4, words, 8));
  EXPECT_FALSE(map.Write(4, words, 8));
  EXPECT_TRUE(map.Read(8, words, 4));
}

/// Read and Write go through ReadReg and WriteReg as virtual operations.
class CCountingMap : public CMap {
 public:
  uint32_t ReadReg(uint64_t address) override {
    addresses.push_back(address);
    return static_cast<uint32_t>(address) + 1000U;
  }
  void WriteReg(uint64_t address, uint32_t value) override {
    addresses.push_back(address);
    values.push_back(value);
  }
  std::vector<uint64_t> addresses;
  std::vector<uint32_t> values;
};

TEST(RegisterMap, ReadAndWriteCallTheVirtualWordOperationsInOrder) {
  CCountingMap map;
  map.AddBlock(0x10, ACCESS_READ_WRITE, g_Word, 12, 0, nullptr, nullptr, nullptr, true);
  uint32_t words[3] = {};
  EXPECT_TRUE(map.Read(0x10, words, 12));
  EXPECT_EQ((std::vector<uint64_t>{0x10, 0x14, 0x18}), map.addresses);
  EXPECT_EQ(1000U + 0x18U, words[2]);
  map.addresses.clear();
  EXPECT_TRUE(map.Write(0x10, words, 12));
  EXPECT_EQ((std::vector<uint64_t>{0x10, 0x14, 0x18}), map.addresses);
  EXPECT_EQ((std::vector<uint32_t>{1000U + 0x10U, 1000U + 0x14U, 1000U + 0x18U}), map.values);
}

TEST(RegisterMap, BufferOfAnyAlignmentIsServed) {
  CMap map;
  map.Text(0, "abcdefgh", 12, ACCESS_READ_WRITE);
  alignas(4) uint8_t bytes[17] = {};
  for (size_t shift = 1; shift < 4; ++shift) {
    map.Read(0, reinterpret_cast<uint32_t *>(bytes + shift), 12);
    EXPECT_STREQ("abcdefgh", reinterpret_cast<const char *>(bytes + shift));
    map.Write(0, reinterpret_cast<const uint32_t *>(bytes + shift), 12);
    EXPECT_EQ(Padded("abcdefgh", 12), map.Bytes(0, 12));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// 64-bit registers
// ---------------------------------------------------------------------------------------------------------------------

TEST(RegisterMap64, WordsStandInTheOrderAskedFor) {
  CMap map(1);
  map.AddRegister64(0x10, ACCESS_READ, 0x1122334455667788ULL, 3, true, nullptr, nullptr, nullptr, true);
  EXPECT_EQ(0x55667788U, map.GetValue(0x10));
  EXPECT_EQ(0x11223344U, map.GetValue(0x14));
  EXPECT_EQ(0x1122334455667788ULL, map.GetValue64(0x10, true));
  EXPECT_EQ(0x5566778811223344ULL, map.GetValue64(0x10, false));
  map.AddRegister64(0x20, ACCESS_READ, 0x1122334455667788ULL, 0, false, nullptr, nullptr, nullptr, false);
  EXPECT_EQ(0x11223344U, map.GetValue(0x20));
  EXPECT_EQ(0x55667788U, map.GetValue(0x24));
  EXPECT_EQ(0x1122334455667788ULL, map.GetValue64(0x20, false));
}

TEST(RegisterMap64, BothWordsHaveAllAttributes) {
  CMap map(1);
  Recorder recorder;
  map.AddRegister64(0x10, ACCESS_READ_WRITE, 0, 3, true, Recorder::OnWrite, &recorder, Recorder::OnRead, true);
  uint32_t word = 2;
  for (const uint64_t address : {0x10U, 0x14U}) {
    EXPECT_EQ(3U, map.GetAccess(address));
    EXPECT_EQ(3U, map.GetByteOrderFlag(address));
    EXPECT_TRUE(map.Write(address, &word, 4));
    EXPECT_TRUE(map.Read(address, &word, 4));
    word = 2;
  }
  EXPECT_EQ((Seen{{0x10, 2}, {0x14, 2}}), recorder.writes);
  EXPECT_EQ((Seen{{0x10, 20}, {0x14, 20}}), recorder.reads);
}

TEST(RegisterMap64, SetFollowsTheSameRule) {
  CMap map;
  map.AddRegister64(0, ACCESS_READ, 0, 0, true, nullptr, nullptr, nullptr, false);
  map.SetValue64(0, 0xAAAAAAAABBBBBBBBULL, true);
  EXPECT_EQ(0xBBBBBBBBU, map.GetValue(0));
  EXPECT_EQ(0xAAAAAAAAU, map.GetValue(4));
  map.SetValue64(0, 0xAAAAAAAABBBBBBBBULL, false);
  EXPECT_EQ(0xAAAAAAAAU, map.GetValue(0));
  EXPECT_EQ(0xBBBBBBBBU, map.GetValue(4));
}

TEST(RegisterMap64, SecondWordAtTheEndGrowsTheMap) {
  CMap map(5);
  map.AddRegister64(16, ACCESS_READ, 0x0000000200000001ULL, 0, true, nullptr, nullptr, nullptr, false);
  EXPECT_EQ(1U, map.GetValue(16));
  EXPECT_EQ(2U, map.GetValue(20));
}

// ---------------------------------------------------------------------------------------------------------------------
// Strings
// ---------------------------------------------------------------------------------------------------------------------

struct StringRow {
  const char *text;
  uint64_t size;
  const char *stored;
};

class RegisterMapString : public testing::TestWithParam<StringRow> {};

TEST_P(RegisterMapString, IsPackedInMemoryOrderAndZeroFilled) {
  CMap map(1);
  map.Text(0x40, GetParam().text, GetParam().size);
  EXPECT_EQ(Padded(GetParam().stored, GetParam().size), map.Bytes(0x40, GetParam().size));
  EXPECT_EQ(0U, map.GetAccess(0x3C));
  EXPECT_EQ(0U, map.GetAccess(0x40 + GetParam().size)) << "a word behind the register was made";
}

INSTANTIATE_TEST_SUITE_P(Texts, RegisterMapString,
                         testing::Values(StringRow{"", 4, ""}, StringRow{"", 64, ""}, StringRow{"abc", 4, "abc"},
                                         StringRow{"abcd", 4, "abc"}, StringRow{"abcdefgh", 4, "abc"},
                                         StringRow{"abcd", 8, "abcd"}, StringRow{"abcdefg", 8, "abcdefg"},
                                         StringRow{"abcdefgh", 8, "abcdefg"}, StringRow{"abcdefghi", 8, "abcdefg"},
                                         StringRow{"Lumivex", 64, "Lumivex"}));

TEST(RegisterMapStrings, EveryWordIsARegister) {
  CMap map;
  map.Text(0x40, "Lumivex", 16);
  for (uint64_t address = 0x40; address < 0x50; address += 4) {
    EXPECT_EQ(1U, map.GetAccess(address));
  }
  uint32_t word = 0;
  map.Read(0x44, &word, 4);
  EXPECT_EQ(0, std::memcmp(&word, "vex\0", 4));
}

TEST(RegisterMapStrings, LongOldTextIsGoneWhereTheNewRegisterStands) {
  CMap map;
  map.Text(0x40, "Lumivex GenTL with a long tail", 64);
  map.Text(0x40, "Lumivex", 16);
  EXPECT_EQ(Padded("Lumivex", 16) + "th a long tail", map.Bytes(0x40, 32).substr(0, 30))
      << "only the words of its own size are replaced";
}

TEST(RegisterMapStrings, AttributesReachEveryWord) {
  CMap map;
  Recorder recorder;
  map.AddString(0, ACCESS_READ_WRITE, "abcdefgh", 12, 7, Recorder::OnWrite, &recorder, Recorder::OnRead, true);
  uint32_t word = 1;
  for (const uint64_t address : {0U, 4U, 8U}) {
    EXPECT_EQ(7U, map.GetByteOrderFlag(address));
    EXPECT_TRUE(map.Write(address, &word, 4));
  }
  EXPECT_EQ(3U, recorder.writes.size());
}

/// The text, and the bytes that it takes of 16 that held 'x'.
struct SetStringRow {
  const char *text;
  size_t taken;
};

class RegisterMapSetString : public testing::TestWithParam<SetStringRow> {};

TEST_P(RegisterMapSetString, ReplacesWholeWordsAndLeavesTheTail) {
  CMap map;
  const std::vector<uint32_t> old(4, 0x78787878U);
  map.AddBlock(0, ACCESS_READ, old.data(), 16, 0, nullptr, nullptr, nullptr, false);
  map.SetString(0, GetParam().text);
  EXPECT_EQ(Padded(GetParam().text, GetParam().taken) + std::string(16 - GetParam().taken, 'x'), map.Bytes(0, 16));
}

INSTANTIATE_TEST_SUITE_P(Texts, RegisterMapSetString,
                         testing::Values(SetStringRow{"", 4}, SetStringRow{"a", 4}, SetStringRow{"ab", 4},
                                         SetStringRow{"abc", 4}, SetStringRow{"abcd", 8}, SetStringRow{"abcdefg", 8},
                                         SetStringRow{"abcdefgh", 12}, SetStringRow{"abcdefghijklmno", 16}));

TEST(RegisterMapStrings, SetStringIntoAHoleFailsWithTheWordsBeforeStored) {
  CMap map;
  map.Text(0, "", 8);
  EXPECT_EQ("Register 8 is not available (does not exist).",
            FailureOf<outofrange_error>([&] { map.SetString(0, "abcdefgh"); }));
  EXPECT_EQ("abcdefgh", map.Bytes(0, 8));
}

// ---------------------------------------------------------------------------------------------------------------------
// Blocks
// ---------------------------------------------------------------------------------------------------------------------

TEST(RegisterMapBlocks, TakeTheirWords) {
  CMap map(1);
  map.AddBlock(0x20, ACCESS_READ, g_Word, 16, 0, nullptr, nullptr, nullptr, false);
  for (uint64_t i = 0; i < 4; ++i) {
    EXPECT_EQ(g_Word[i], map.ReadReg(0x20 + 4 * i));
  }
  EXPECT_EQ(0U, map.GetAccess(0x1C));
  EXPECT_EQ(0U, map.GetAccess(0x30));
}

TEST(RegisterMapBlocks, NoBufferIsABlockOfZeros) {
  CMap map(1);
  map.Word(0x24, ACCESS_READ_WRITE, 7);
  map.AddBlock(0x20, ACCESS_READ, nullptr, 16, 0, nullptr, nullptr, nullptr, false);
  for (uint64_t address = 0x20; address < 0x30; address += 4) {
    EXPECT_EQ(0U, map.ReadReg(address));
    EXPECT_EQ(ACCESS_READ, map.GetAccess(address));
  }
  EXPECT_EQ(0U, map.GetAccess(0x1C));
  EXPECT_EQ(0U, map.GetAccess(0x30));
}

TEST(RegisterMapBlocks, LargeBlockIsReadInOneCall) {
  std::vector<uint32_t> words(40000);
  for (size_t i = 0; i < words.size(); ++i) {
    words[i] = static_cast<uint32_t>(i * 2654435761U);
  }
  CMap map;
  map.AddBlock(0x222C, ACCESS_READ, words.data(), words.size() * 4, 0, nullptr, nullptr, nullptr, false);
  std::vector<uint32_t> read(words.size());
  map.Read(0x222C, read.data(), read.size() * 4);
  EXPECT_EQ(words, read);
}

}  // namespace
