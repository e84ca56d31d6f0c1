// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What is wrong with a command line. Pure functions.

#include <string>

#include <CLI/CLI.hpp>

namespace Lumivex::Consumer {

/// The fault of a command line that could not be parsed, in one line and in our words, and where help is.
std::string ExplainFault(const CLI::App &app, const CLI::ParseError &error);

}  // namespace Lumivex::Consumer
