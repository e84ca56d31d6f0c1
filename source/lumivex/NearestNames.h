// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What the user may have meant by a name that is none. Pure functions.

#include <cstddef>
#include <string>
#include <vector>

namespace Lumivex::Consumer {

/// Number of characters to put in, take away, replace or swap with their neighbour to make one text the other. Capitals
/// count as small letters.
std::size_t EditDistance(const std::string &one, const std::string &other);

/// The names next to a wish, nearest first, at most three; none that is too far off to be meant. A name that holds the
/// wish, or is held by it, is near too.
std::vector<std::string> NearestNames(const std::string &wish, const std::vector<std::string> &names);

/// "; did you mean Width or WidthMax?", or nothing when no name is near.
std::string DidYouMean(const std::string &wish, const std::vector<std::string> &names);

}  // namespace Lumivex::Consumer
