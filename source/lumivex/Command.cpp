// SPDX-License-Identifier: MIT
#include "Command.h"

#include <cstdio>
#include <iostream>

#include "Platform.h"

namespace Lumivex::Consumer {

void RequireOutput() {
  std::cout.flush();
  if (std::cout) {
    return;
  }
  if (IsReaderGone(stdout)) {
    throw CCommandError(ExitCode::ReaderGone, "the reader of the output has gone");
  }
  if (Interrupted()) {
    // The signal ended the wait for a reader who takes his time.
    throw CCommandError(ExitCode::Interrupted, "interrupted while the output was written");
  }
  throw CCommandError(ExitCode::Output, "cannot write to the standard output");
}

void PrintValue(const std::string &value) {
  std::cout << value << (value.empty() || value.back() != '\n' ? "\n" : "");
  RequireOutput();
}

void AddProducerOption(CLI::App &command, std::string &file) {
  const auto check = [](const std::string &path) { return std::string(path.empty() ? "the path is empty" : ""); };
  command.add_option("--cti", file, "Producer to load (default: all in GENICAM_GENTL64_PATH)")
      ->type_name("PATH")
      ->check(CLI::Validator(check, "", "path"));
}

}  // namespace Lumivex::Consumer
