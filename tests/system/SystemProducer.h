// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenTL.h"
#include "Producer.h"

/// The built Producer over the simulated frame-grabber library, loaded as Consumers load it. A test file says
/// `using namespace SystemTest;`.
namespace SystemTest {

using namespace GenICam::Client;  // NOLINT: tests speak GenTL
using TestSupport::Functions;

constexpr int kLazyLocal = RTLD_LAZY | RTLD_LOCAL;
constexpr std::chrono::seconds kBound{30};  ///< for what a working system does at once

/// The .cti in this process, from construction to destruction; one at a time. A failing load throws
/// std::runtime_error. One thread loads and unloads.
class CLoadedProducer {
 public:
  explicit CLoadedProducer(int flags = kLazyLocal, const std::string &path = Path());
  ~CLoadedProducer();
  CLoadedProducer(const CLoadedProducer &) = delete;
  CLoadedProducer &operator=(const CLoadedProducer &) = delete;

  static std::string Path();
  /// Whether the system has the file mapped.
  static bool IsMapped();

 private:
  void *m_pLibrary;
  Functions m_Functions;
};

/// The functions of the Producer that is loaded.
const Functions &Gc();

// Failures ------------------------------------------------------------------------------------------------------------

/// The calling thread's record.
struct LastErrorRecord {
  GC_ERROR code = GC_ERR_SUCCESS;
  std::string text;
};
LastErrorRecord LastError();

testing::AssertionResult CheckOk(GC_ERROR actual);
/// The call failed with one of the codes, and the record has that code and a text of its own.
testing::AssertionResult CheckFailed(const std::vector<GC_ERROR> &expected, GC_ERROR actual);

#define EXPECT_OK(call) EXPECT_TRUE(::SystemTest::CheckOk(call)) << #call
#define ASSERT_OK(call) ASSERT_TRUE(::SystemTest::CheckOk(call)) << #call
#define EXPECT_FAILED(code, call) EXPECT_TRUE(::SystemTest::CheckFailed({code}, (call))) << #call
#define ASSERT_FAILED(code, call) ASSERT_TRUE(::SystemTest::CheckFailed({code}, (call))) << #call

// Info functions ------------------------------------------------------------------------------------------------------

/// An info function with all bound but its last three arguments.
using InfoCall = std::function<GC_ERROR(INFO_DATATYPE *, void *, size_t *)>;
/// A function that answers with a text, with all bound but its last two arguments.
using TextCall = std::function<GC_ERROR(char *, size_t *)>;

/// Asks for the size, then for the text.
std::string SizedText(const TextCall &call);
std::string SizedText(const InfoCall &call);
/// Asks at once, with a buffer of that many bytes.
std::string TextWithin(size_t capacity, const TextCall &call);
std::string TextWithin(size_t capacity, const InfoCall &call);

/// Asks at once for a value. A failing call adds a failure and gives T().
template <class T>
T Value(const InfoCall &call) {
  T value{};
  INFO_DATATYPE type = 0;
  size_t size = sizeof(value);
  EXPECT_TRUE(CheckOk(call(&type, &value, &size)));
  EXPECT_EQ(size, sizeof(value));
  return value;
}

/// A call that this Producer does not know: it fails with the code and leaves the buffer alone.
void ExpectRefused(GC_ERROR code, const InfoCall &call);

template <class T>
T StreamValue(DS_HANDLE stream, STREAM_INFO_CMD cmd) {
  return Value<T>(
      [=](INFO_DATATYPE *type, void *buffer, size_t *size) { return Gc().DSGetInfo(stream, cmd, type, buffer, size); });
}

template <class T>
T BufferValue(DS_HANDLE stream, BUFFER_HANDLE handle, BUFFER_INFO_CMD cmd) {
  return Value<T>([=](INFO_DATATYPE *type, void *buffer, size_t *size) {
    return Gc().DSGetBufferInfo(stream, handle, cmd, type, buffer, size);
  });
}

// Ports ---------------------------------------------------------------------------------------------------------------

/// The pieces of a local URL.
struct UrlPieces {
  std::string name;
  uint64_t address = 0;
  size_t size = 0;
};
std::optional<UrlPieces> SplitUrl(const std::string &url);
/// What GCGetPortURLInfo answers to URL_INFO_URL of the first URL.
std::string PortUrl(PORT_HANDLE port);
/// The whole register that the URL names, in one read.
std::vector<char> ReadXmlRegister(PORT_HANDLE port);
/// The same without what fills it behind its last element.
std::string ReadXml(PORT_HANDLE port);

GC_ERROR WriteU32(PORT_HANDLE port, uint64_t address, uint32_t value);
uint32_t ReadU32(PORT_HANDLE port, uint64_t address);
/// The camera's side: big-endian.
GC_ERROR WriteU32Be(PORT_HANDLE port, uint64_t address, uint32_t value);
uint32_t ReadU32Be(PORT_HANDLE port, uint64_t address);

// Waiting -------------------------------------------------------------------------------------------------------------

/// Looks again and again until the condition holds. False: the bound ran out.
bool WaitUntil(const std::function<bool()> &condition, std::chrono::milliseconds bound = kBound);
/// The system's number of the calling thread, and whether the thread of a number sleeps in the system.
int ThreadNumber();
bool IsThreadAsleep(int number);

/// EventGetData of a new buffer with the time-out; null after a failure, whose code goes to `result`.
BUFFER_HANDLE NextBuffer(EVENT_HANDLE event, uint64_t timeout, GC_ERROR *result = nullptr, void **user = nullptr);

}  // namespace SystemTest
