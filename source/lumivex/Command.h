// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_COMMAND_H_
#define LUMIVEX_CONSUMER_COMMAND_H_

#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

#include "CommandError.h"

namespace Lumivex::Consumer {

/// One of the things that lumivex can be told to do: `lumivex list`, `lumivex grab`, ...
///
/// Ownership: made by main(), which lets each declare its options, parses the command line, and runs the one that was
/// named. Threads: one. Run throws CCommandError.
class ICommand {
 public:
  virtual ~ICommand() = default;

  /// Adds the command with its options; the answer tells afterwards whether the user named it.
  virtual const CLI::App *Declare(CLI::App &app) = 0;

  virtual ExitCode Run() = 0;
};

/// Throws CCommandError(Output) when what was printed so far could not be written.
inline void RequireOutput() {
  if (!std::cout) {
    throw CCommandError(ExitCode::Output, "cannot write to the standard output");
  }
}

/// Adds the option that every command has: which Producer to load.
inline void AddProducerOption(CLI::App &command, std::string &file) {
  command.add_option("--cti", file, "Producer to load (default: all in GENICAM_GENTL64_PATH)")->type_name("PATH");
}

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_COMMAND_H_
