// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_TESTS_SYSTEM_RUNPROGRAM_H_
#define LUMIVEX_TESTS_SYSTEM_RUNPROGRAM_H_

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// How to start lumivex.
struct ProgramStart {
  std::vector<std::string> arguments;
  std::map<std::string, std::string> environment;  ///< Beside the test's own; an empty value takes a variable away.
  std::filesystem::path folder;                    ///< Where it runs; empty: where the test does.
  std::string outputFile;                          ///< Takes its output; empty: ProgramEnd::output does.
  int signalAfterOutput = 0;                       ///< Sent when the first line has been printed; 0: none.
};

/// What became of it.
struct ProgramEnd {
  int exitCode = -1;  ///< Minus the signal when one ended it.
  std::string output;
  std::string errors;
};

/// Runs the program that was built and waits for its end.
ProgramEnd RunLumivex(const ProgramStart &start);

/// The lines of a text.
std::vector<std::string> Lines(const std::string &text);

#endif  // LUMIVEX_TESTS_SYSTEM_RUNPROGRAM_H_
