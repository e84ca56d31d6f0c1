// SPDX-License-Identifier: MIT
#include "TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <stdlib.h>
#include <system_error>

namespace fs = std::filesystem;

CTemporaryFolder::CTemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "lumivex-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("cannot make a temporary folder");
  }
  m_Path = name;
}

CTemporaryFolder::~CTemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(m_Path, ignored);
}

std::vector<std::string> CTemporaryFolder::Names() const {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(m_Path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}
