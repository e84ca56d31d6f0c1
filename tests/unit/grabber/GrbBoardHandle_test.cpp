// SPDX-License-Identifier: MIT
// The board handle: its names out of the property text, and its endings.
#include "GrbBoardHandle.h"

#include <array>
#include <cstring>
#include <memory>

#include "GrabberFixture.h"

namespace GrabberTests {
namespace {

using GrbBoardHandle = GrabberTest;

TEST_F(GrbBoardHandle, NamesABoardByModelNameAndNumber) {
  Script().SetBoard(GRB_BOARD_2, "Name=N\nModel=M\n");
  const CGrbBoardHandle board(GRB_BOARD_2, true);
  EXPECT_TRUE(board.IsValid());
  EXPECT_EQ(board.GetId(), "M-#2");
  EXPECT_EQ(board.GetDisplayName(), "N M #2");
  EXPECT_EQ(board.GetTLType(), "");
}

TEST_F(GrbBoardHandle, KnowsCoaXPressByItsModel) {
  for (const char *model : {"CXP", "aCXP", "CXPb", "GL-CXP4"}) {
    Script().SetBoard(kBoard, std::string("Model=") + model);
    EXPECT_EQ(CGrbBoardHandle(kBoard, true).GetTLType(), "CXP");
  }
  Script().SetBoard(kBoard, "Model=CX P\nName=CXP");
  EXPECT_EQ(CGrbBoardHandle(kBoard, true).GetTLType(), "");
}

// Whatever fails: no exception, nothing named, the handle closed and destroyed.
TEST_F(GrbBoardHandle, FailuresLeaveAnInvalidObject) {
  const struct {
    const char *what;
    std::function<void()> prepare;
    bool isAsked;  // whether the properties are asked for
  } kRows[] = {
      {"no board", [] { Script().RemoveAllBoards(); }, false},
      {"first parameter", [] { Script().On(Match(Op::ParameterSet), Bang(), When::Every()); }, false},
      {"properties", [] { Script().On(Match(Op::ParameterGet), Bang()); }, true},
      {"warning", [] { Script().On(Match(Op::ParameterGet), Bang(GRB_WARNING_PASSED)); }, true},
      {"null properties", [] { Script().SetNullProperties(kBoard); }, true},
      {"no model", [] { Script().SetBoard(kBoard, "Name=N\nModel="); }, true},
      {"no name", [] { Script().SetBoard(kBoard, "Model=CXP\nName"); }, true},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.what);
    row.prepare();
    const size_t mark = Script().Mark();
    {
      const CGrbBoardHandle board(kBoard, true);
      EXPECT_FALSE(board.IsValid());
      EXPECT_EQ(board.GetId(), "");
      EXPECT_EQ(board.GetDisplayName(), "");
      EXPECT_EQ(board.GetTLType(), "");
      EXPECT_NE(board.GetHandle(), 0U);
    }
    EXPECT_EQ(Script().Count(Match(Op::ParameterGet), mark), row.isAsked ? 1U : 0U);
    EXPECT_EQ(Script().Count(Match(Op::Close), mark), 1U);
    EXPECT_EQ(Script().Count(Match(Op::Destroy), mark), 1U);
    Script().Reset();
  }
}

TEST_F(GrbBoardHandle, FailingParameterSkipsToTheNextChannel) {
  Script().On(Match(Op::ParameterSet, GRB_OPEN_MODE), Bang());
  const CGrbBoardHandle board(kBoard, true);
  EXPECT_TRUE(board.IsValid());
  const std::string h = "h" + std::to_string(board.GetHandle());
  const Lines calls = Script().Trace();
  ASSERT_GE(calls.size(), 5U);
  EXPECT_EQ(calls[3], "ParameterSet(" + h + ", GRB_OPEN_MODE, 0xc0010000) = 0x8123");
  EXPECT_EQ(calls[4], "ParameterSet(" + h + ", GRB_OPEN_BOARD, 0xc0010001)");
  EXPECT_EQ(calls[5], "ParameterSet(" + h + ", GRB_OPEN_CHANNEL, 0xc0010020)");
}

// A channel that opens with a remark only has not opened.
TEST_F(GrbBoardHandle, WarningOfAnOpenSkipsToTheNextChannel) {
  for (const GRB_STATUS status : {GRB_WARNING_PASSED, GRB_WARNING_TIMEOUT}) {
    Script().On(Match(Op::Open), Bang(status));
    const size_t mark = Script().Mark();
    const CGrbBoardHandle board(kBoard, true);
    EXPECT_TRUE(board.IsValid());
    const std::vector<Call> opens = Script().Calls(Match(Op::Open), mark);
    ASSERT_EQ(opens.size(), 2U);
    EXPECT_EQ(opens[0].channel, GRB_CHANNEL_1);
    EXPECT_EQ(opens[1].channel, GRB_CHANNEL_2);
  }
}

// The statuses of the end are not looked at.
TEST_F(GrbBoardHandle, FailuresOfItsEndAreNone) {
  auto board = std::make_unique<CGrbBoardHandle>(kBoard, true);
  const std::string h = "h" + std::to_string(board->GetHandle());
  Script().On(Match(Op::Close), Bang());
  Script().On(Match(Op::Destroy), Bang().KeepEffect());
  const size_t mark = Script().Mark();
  EXPECT_NO_THROW(board.reset());
  EXPECT_EQ(Script().Trace(mark), (Lines{"Close(" + h + ") = 0x8123", "Destroy(" + h + ") = 0x8123"}));
}

TEST_F(GrbBoardHandle, CreationThatFailsThrows) {
  Script().On(Match(Op::Create), Bang());
  EXPECT_TRUE(
      Throws<unknown_error>(LibraryText("GRB_Create"), nullptr, [] { const CGrbBoardHandle board(kBoard, true); }));
}

// Property text -------------------------------------------------------------------------------------------------------

constexpr const char *kFunction = "GenICam::Client::CGrbBoardHandle::PropertyGet";
constexpr const char *kNoToken = "Failed parsing board properties: couldn't find requested token.";

std::string Property(const char *text, const char *key) {
  std::array<char, 256> value;
  value.fill('#');
  CGrbBoardHandle::PropertyGet(value.data(), text, key);
  return value.data();
}

TEST_F(GrbBoardHandle, PropertiesAreFoundByTheirKey) {
  const struct {
    const char *text;
    const char *key;
    const char *value;
  } kRows[] = {
      {"Model=M\nName=N\n", "Model", "M"},
      {"Model=M\nName=N\n", "Name", "N"},
      {"Model=M\nName=N", "Name", "N"},
      {"Model=M\nName=N\n", "Serial", ""},
      {"", "Model", ""},
      {"\n\n==\n", "Model", ""},
      {"model=M", "Model", ""},
      {"Models=M", "Model", ""},
      {"Mode=M", "Model", ""},
      {"Model=a b\tc", "Model", "a b\tc"},
      {"Model = M", "Model ", " M"},
      {"Model=A=B\nName=N", "B", "Name"},  // the second separator ends a value, and keys shift
      {"Model=A=B\nName=N", "Name", ""},
      {"Model=\nName=N\n", "Model", "Name"},  // a run of separators counts as one
      {"Model=\nName=N\n", "Name", ""},
      {"\n\nModel==M", "Model", "M"},
      {"Name=Model\nModel=M", "Model", "M"},  // a value is no key
      {"Model=first\nModel=second", "Model", "first"},
      {"Model=M\r\nName=N", "Model", "M\r"},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Property(row.text, row.key), row.value);
  }
}

TEST_F(GrbBoardHandle, KeyWithoutAValueThrows) {
  for (const char *text : {"Model", "Model=", "Model=\n", "Name=N\nModel", "Name=N\nModel=\n\n"}) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(Throws<unknown_error>(kNoToken, kFunction, [&] { Property(text, "Model"); }));
  }
}

// The names stand crossed against the arguments, and the checks come in their order.
TEST_F(GrbBoardHandle, NullArgumentsOfPropertiesThrow) {
  char out[256];
  EXPECT_TRUE(Throws<unknown_error>("Failed parsing board properties: NULL property string pointer.", kFunction,
                                    [] { CGrbBoardHandle::PropertyGet(nullptr, nullptr, nullptr); }));
  EXPECT_TRUE(Throws<unknown_error>("Failed parsing board properties: NULL return pointer.", kFunction,
                                    [&] { CGrbBoardHandle::PropertyGet(out, nullptr, nullptr); }));
  EXPECT_TRUE(Throws<unknown_error>("Failed parsing board properties: NULL property value pointer.", kFunction,
                                    [&] { CGrbBoardHandle::PropertyGet(out, "Model=M", nullptr); }));
}

TEST_F(GrbBoardHandle, PropertiesAreCopiedUpTo256Bytes) {
  for (const size_t length : {size_t{254}, size_t{255}, size_t{256}, size_t{257}, size_t{5000}}) {
    SCOPED_TRACE(length);
    const std::string text = "Model=" + std::string(length, 'm');
    std::array<char, 257> out;
    out.fill('#');
    CGrbBoardHandle::PropertyGet(out.data(), text.c_str(), "Model");
    const size_t copied = std::min(length, size_t{256});
    EXPECT_EQ(std::string(out.data(), copied), std::string(copied, 'm'));
    if (length < 256) {
      EXPECT_EQ(out[length], '\0');
    }
    EXPECT_EQ(out[256], '#');
  }
}

// A value that fills the buffer has no terminator: it is read as bounded.
TEST_F(GrbBoardHandle, LongModelsAreCutAt256Characters) {
  Script().SetBoard(kBoard, "Model=" + std::string(300, 'm') + "\nName=" + std::string(256, 'n'));
  const CGrbBoardHandle board(kBoard, true);
  EXPECT_EQ(board.GetId(), std::string(256, 'm') + "-#1");
  EXPECT_EQ(board.GetDisplayName(), std::string(256, 'n') + " " + std::string(256, 'm') + " #1");
}

TEST_F(GrbBoardHandle, TextOfTheLibraryIsNotCutApart) {
  static char text[] = "Model=M\nName=N\n";
  const std::string before(text, sizeof(text));
  EXPECT_EQ(Property(text, "Name"), "N");
  EXPECT_EQ(std::string(text, sizeof(text)), before);
}

using GrbBoardHandleDeathTest = GrabberTest;

TEST_F(GrbBoardHandleDeathTest, NoHandleInSpiteOfSuccessIsAnAssertion) {
  Script().On(Match(Op::Create), Reply::Status(GRB_OK).HandleOut(0), When::Every());
  EXPECT_DEATH(CGrbBoardHandle(kBoard, true), "m_hGrbChannel != 0");
}

}  // namespace
}  // namespace GrabberTests
