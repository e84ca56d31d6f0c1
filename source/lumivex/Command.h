// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "CommandError.h"

namespace Lumivex::Consumer {

/// One of the things that lumivex can be told to do: `lumivex list`, `lumivex grab`, ...
///
/// main() makes them all, lets each declare its options, parses the command line, and runs the one that was named.
/// Ownership: main()'s; what they open goes with them, or before. Threads: one.
/// Throws: Run throws CCommandError; Declare nothing that a user could bring about.
class ICommand {
 public:
  virtual ~ICommand() = default;

  /// Adds the command with its options; the answer tells afterwards whether the user named it.
  virtual const CLI::App *Declare(CLI::App &app) = 0;

  virtual ExitCode Run() = 0;
};

/// Throws CCommandError when what was printed so far could not be written: Output, or ReaderGone or Interrupted where
/// that is why.
void RequireOutput();

/// Prints a value and the end of its line, unless it has one. Throws as RequireOutput.
void PrintValue(const std::string &value);

/// Adds the option that every command has: which Producer to load.
void AddProducerOption(CLI::App &command, std::string &file);

}  // namespace Lumivex::Consumer
