// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
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
  bool readerGone = false;                         ///< Its output goes to a pipe that nobody reads.
  std::vector<int> closedFiles;                    ///< Standard streams that it does not get.
  int ignoredSignal = 0;                           ///< It starts with this one ignored; 0: none.
  uint64_t largestFile = 0;                        ///< Bytes that it may write to a file; 0: any number.
  int signalAfterOutput = 0;                       ///< Sent when the first line has been printed; 0: none.
  bool signalWhenFull = false;                     ///< Sent when its output waits to be read instead.
  int signalCount = 1;                             ///< So often, each when the one before has arrived.
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
