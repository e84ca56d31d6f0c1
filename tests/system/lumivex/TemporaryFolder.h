// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A new, empty folder that goes, with all that is in it, when the object does.
class CTemporaryFolder {
 public:
  CTemporaryFolder();
  CTemporaryFolder(const CTemporaryFolder &) = delete;
  CTemporaryFolder &operator=(const CTemporaryFolder &) = delete;
  ~CTemporaryFolder();

  const std::filesystem::path &Path() const { return m_Path; }
  std::string File(const std::string &name) const { return (m_Path / name).string(); }

  /// Names of all that is in it, hidden files too, sorted.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path m_Path;
};
