// SPDX-License-Identifier: MIT
#pragma once

#include <future>
#include <string>
#include <string_view>
#include <vector>

#include <boost/thread/recursive_mutex.hpp>
#include <gtest/gtest.h>

#include "GrbError.h"
#include "LVXException.h"
#include "ScriptedGrb.h"
#include "TLIException.h"

/// What the tests of the frame-grabber binding share.
namespace GrabberTests {

using namespace GenICam::Client;  // NOLINT
using namespace Scripted;         // NOLINT

using Lines = std::vector<std::string>;

constexpr uint32_t kBoard = GRB_BOARD_1;
constexpr uint32_t kChannel = GRB_CHANNEL_1;
constexpr GRB_STATUS kStatus = 0x8123;

inline Reply Bang(GRB_STATUS status = kStatus) { return Reply::Failure(status, "Bang."); }

/// The words that a failing function of the library leaves.
inline std::string LibraryText(std::string_view function, std::string_view status = "8123") {
  return "Bang. (" + std::string(function) + " returned error code 0x" + std::string(status) + ")";
}

/// Whether the action throws exactly this class with this description, from this function (null: from any).
template <class Error, class Action>
testing::AssertionResult Throws(const std::string &description, const char *function, Action &&action) {
  try {
    action();
  } catch (const Error &error) {
    if (error.GetDescription() != description) {
      return testing::AssertionFailure() << "the text is \"" << error.GetDescription() << "\", wanted \"" << description
                                         << "\"";
    }
    if (function != nullptr && error.GetSourceFunction() != function) {
      return testing::AssertionFailure() << "the text names " << error.GetSourceFunction() << ", wanted " << function;
    }
    return testing::AssertionSuccess();
  } catch (const std::exception &error) {
    return testing::AssertionFailure() << "another class: " << error.what();
  }
  return testing::AssertionFailure() << "nothing was thrown";
}

/// The same, and the source is this file, whatever folder it lies in.
template <class Error, class Action>
testing::AssertionResult ThrowsIn(const char *file, const std::string &description, const char *function,
                                  Action &&action) {
  std::string source;
  const testing::AssertionResult result = Throws<Error>(description, function, [&] {
    try {
      action();
    } catch (const Error &error) {
      source = error.GetSourceFile();
      source.erase(0, source.find_last_of("/\\") + 1);
      throw;
    }
  });
  if (result && source != file) {
    return testing::AssertionFailure() << "the file is " << source << ", wanted " << file;
  }
  return result;
}

/// Whether another thread can take the lock now.
inline bool IsFree(boost::recursive_mutex &lock) {
  return std::async(std::launch::async,
                    [&lock] {
                      if (!lock.try_lock()) {
                        return false;
                      }
                      lock.unlock();
                      return true;
                    })
      .get();
}

/// A scripted library at its default. No handle may be left at the end.
class GrabberTest : public testing::Test {
 protected:
  void SetUp() override {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    Script().Reset();
    CGrbError::Get().SetText("");
  }
  void TearDown() override {
    Script().CancelAll();
    EXPECT_EQ(Script().CreatedHandles(), 0U);
    Script().Reset();
  }
  static std::string Words() { return CGrbError::GetText(); }
};

}  // namespace GrabberTests
