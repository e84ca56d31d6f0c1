// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Platform.h"

/// The platform as a test wants it: stands in the place of the system's own file and fails on demand.
///
/// Used on one thread. Reset() gives a good platform: resources of 9 bytes, the path below, version 1.2.3.4, no
/// settings key.
namespace FakePlatform {

/// A value of the settings store. A later query may meet a larger value: the sizes follow one another.
struct StoredValue {
  uint32_t type = Lumivex::Platform::kRegDword;
  std::vector<uint8_t> bytes;
};

/// One query of a value, in the shape in which it came.
struct Query {
  std::string name;
  bool withBuffer = false;
  uint32_t room = 0;
};

struct State {
  const void *module = nullptr;
  std::string path;
  std::vector<size_t> pathSizes;  ///< buffer size of each question for the path
  bool hasVersion = true;
  uint32_t versionMs = 0;
  uint32_t versionLs = 0;

  uint32_t lastError = 0;
  std::string resource;                                          ///< content of every resource
  std::vector<std::pair<uint16_t, std::string>> resourcesAsked;  ///< number and type name of each search
  bool failFind = false;
  bool failLoad = false;
  bool failLock = false;
  std::function<void()> onFind;  ///< runs inside the search; may throw

  uint32_t openKeyResult = Lumivex::Platform::kErrorFileNotFound;
  std::vector<std::string> keysOpened;
  std::vector<uint32_t> errorTexts;  ///< numbers whose words were asked for
  int keysOpen = 0;
  std::map<std::string, StoredValue> values;
  std::vector<Query> queries;
  std::function<void(const Query &)> onQuery;  ///< runs ahead of the answer; may change the values

  uint32_t environmentResult = 0;
  std::string environmentContent;

  bool failSlot = false;  ///< a thread finds no memory for what it keeps

  std::vector<std::pair<std::string, std::string>> messages;  ///< text and title
};

constexpr const char *kPath = "C:\\Program Files\\Lumivex\\fake.cti";

State &Get();
void Reset();

}  // namespace FakePlatform
