// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// The features of a module as lines for people to read.

#include <string>
#include <vector>

#include "NodeMap.h"

namespace Lumivex::Consumer {

/// How much is told of each feature.
enum class Detail {
  Short,   ///< One line each; features that are not meant for users are left out, long values are cut.
  Verbose  ///< All features and whole values, with tool tips and the entries of enumerations.
};

/// The tree: categories, and beneath each its features with access, value and limits. A feature that cannot be read
/// says why in the place of its value. Throws CCommandError(Interrupted) when the user asks for the end.
std::vector<std::string> FormatFeatures(const CNodeMap &nodeMap, Detail detail);

}  // namespace Lumivex::Consumer
