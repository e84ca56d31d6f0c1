// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Where Producers are looked for.

#include <filesystem>
#include <string>
#include <vector>

namespace Lumivex::Consumer {

/// The environment variable that lists the folders of Producers for programs of this width.
constexpr const char *kProducerPathVariable = sizeof(void *) == 8 ? "GENICAM_GENTL64_PATH" : "GENICAM_GENTL32_PATH";

/// The parts of a list of folders, in order, without the empty ones.
std::vector<std::string> SplitPathList(const std::string &list, char separator);

/// The .cti files of each folder: folders in the order of the list, files in that of their names, none twice.
/// Folders that are missing or closed to us are passed over.
std::vector<std::filesystem::path> FindProducerFiles(const std::vector<std::string> &folders);

/// The files to load: the one that the user named or, when that is empty, all that the environment variable leads to.
/// Never empty: throws CCommandError(NoProducer).
std::vector<std::filesystem::path> ChooseProducerFiles(const std::string &named, const std::string &pathList);

}  // namespace Lumivex::Consumer
