// SPDX-License-Identifier: MIT
#include "ProducerSearch.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <system_error>

#include "CommandError.h"
#include "Platform.h"

namespace Lumivex::Consumer {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> ProducerFilesOf(const fs::path &folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code unreadable;
    if (entry->path().extension() == ".cti" && entry->is_regular_file(unreadable)) {
      files.push_back(entry->path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

std::vector<std::string> SplitPathList(const std::string &list, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(list);
  for (std::string part; std::getline(stream, part, separator);) {
    if (!part.empty()) {
      parts.push_back(part);
    }
  }
  return parts;
}

std::vector<fs::path> FindProducerFiles(const std::vector<std::string> &folders) {
  std::vector<fs::path> files;
  std::vector<fs::path> seen;
  for (const std::string &folder : folders) {
    for (const fs::path &file : ProducerFilesOf(folder)) {
      std::error_code error;
      const fs::path canonical = fs::canonical(file, error);
      if (error || std::find(seen.begin(), seen.end(), canonical) != seen.end()) {
        continue;
      }
      seen.push_back(canonical);
      files.push_back(fs::absolute(file));
    }
  }
  return files;
}

std::vector<fs::path> ChooseProducerFiles(const std::string &named, const std::string &pathList) {
  if (!named.empty()) {
    std::error_code error;
    if (!fs::exists(named, error)) {
      throw CCommandError(ExitCode::NoProducer, "no Producer found: there is no file '" + named + "'");
    }
    if (fs::is_directory(named, error)) {
      throw CCommandError(ExitCode::NoProducer, "no Producer found: '" + named + "' is a folder, not a .cti file");
    }
    // With its folder, because the loader would look for a bare name elsewhere.
    return {fs::absolute(named)};
  }
  const std::string variable = kProducerPathVariable;
  if (pathList.empty()) {
    throw CCommandError(
        ExitCode::NoProducer,
        "no Producer found: " + variable + " is not set, or empty; set it to the folder of a .cti file or give --cti");
  }
  std::vector<fs::path> files = FindProducerFiles(SplitPathList(pathList, PathListSeparator()));
  if (files.empty()) {
    throw CCommandError(ExitCode::NoProducer,
                        "no Producer found: no .cti file in the folders of " + variable + " (" + pathList + ")");
  }
  return files;
}

}  // namespace Lumivex::Consumer
