// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What is done to texts before they are printed. All are pure functions.

#include <cstdint>
#include <string>
#include <vector>

namespace Lumivex::Consumer {

/// Brings a text into one printable line: runs of white space become one blank, control characters "?".
/// Names come from cameras; unfiltered, they could steer the user's terminal.
std::string OneLine(const std::string &text);

/// "1 frame", "2 frames".
std::string Counted(uint64_t count, const std::string &noun);

/// "0x" and at least eight hexadecimal digits.
std::string Hexadecimal(uint64_t value);

/// Lines of a table whose columns are as wide as their widest cell, two blanks apart; no blanks at line ends.
std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>> &rows);

}  // namespace Lumivex::Consumer
