// SPDX-License-Identifier: MIT
#include "RunProgram.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "TemporaryFolder.h"

namespace {

/// Waits until no signal is on its way to a process, or it has ended: the next one is a second one then.
void WaitUntilTaken(pid_t process) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  bool pending = true;
  while (pending && std::chrono::steady_clock::now() < end) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    pending = false;
    for (std::string line; std::getline(status, line);) {
      if (line.find("State:\tZ") == 0) {
        return;
      }
      pending = pending || (line.find("ShdPnd:") == 0 && line.find_first_not_of("0 \t", 7) != std::string::npos);
    }
  }
}

constexpr int kSmallestPipe = 4096;  // bytes

/// Waits until a process waits to write short lines to a pipe that is full, or has ended.
void WaitUntilFull(pid_t process, int pipe) {
  constexpr int kLongestLine = 32;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (std::chrono::steady_clock::now() < end) {
    int waiting = 0;
    ioctl(pipe, FIONREAD, &waiting);
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string stat;
    std::getline(file, stat);
    const char state = stat.empty() ? 'Z' : stat.at(stat.rfind(')') + 2);
    if (state == 'Z' || (state == 'S' && waiting > kSmallestPipe - kLongestLine)) {
      return;
    }
  }
}

[[noreturn]] void BecomeLumivex(const ProgramStart &start, int output, const std::string &errorFile) {
  const int errors = open(errorFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  dup2(start.outputFile.empty() ? output : open(start.outputFile.c_str(), O_WRONLY), STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  if (!start.folder.empty()) {
    std::filesystem::current_path(start.folder);
  }
  for (const auto &[name, value] : start.environment) {
    if (value.empty()) {
      unsetenv(name.c_str());
    } else {
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
  // Whatever started the tests may have signals ignored, which a program inherits.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ}) {
    std::signal(signal, signal == start.ignoredSignal ? SIG_IGN : SIG_DFL);
  }
  if (start.largestFile > 0) {
    const rlimit limit = {start.largestFile, start.largestFile};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  for (const int file : start.closedFiles) {
    close(file);
  }
  std::vector<std::string> texts = {LUMIVEX_PROGRAM};
  texts.insert(texts.end(), start.arguments.begin(), start.arguments.end());
  std::vector<char *> arguments;
  for (std::string &text : texts) {
    arguments.push_back(text.data());
  }
  arguments.push_back(nullptr);
  execv(LUMIVEX_PROGRAM, arguments.data());
  _exit(127);
}

}  // namespace

ProgramEnd RunLumivex(const ProgramStart &start) {
  const CTemporaryFolder folder;
  const std::string errorFile = folder.File("errors");
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  if (start.readerGone) {
    close(ends[0]);
  }
  if (start.signalWhenFull && fcntl(ends[1], F_SETPIPE_SZ, kSmallestPipe) < 0) {
    throw std::runtime_error("no small pipe");
  }
  const pid_t child = fork();
  if (child == 0) {
    BecomeLumivex(start, ends[1], errorFile);
  }
  close(ends[1]);
  ProgramEnd end;
  bool signalled = start.signalAfterOutput == 0;
  const auto signalNow = [&] {
    for (int i = 0; i < start.signalCount; ++i) {
      kill(child, start.signalAfterOutput);
      WaitUntilTaken(child);
    }
    signalled = true;
  };
  if (start.signalWhenFull) {
    WaitUntilFull(child, ends[0]);
    signalNow();
  }
  std::array<char, 4096> piece{};
  for (ssize_t got = 0; !start.readerGone && (got = read(ends[0], piece.data(), piece.size())) > 0;) {
    end.output.append(piece.data(), static_cast<size_t>(got));
    if (!signalled && end.output.find('\n') != std::string::npos) {
      signalNow();
    }
  }
  if (!start.readerGone) {
    close(ends[0]);
  }
  int status = 0;
  waitpid(child, &status, 0);
  end.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  std::ostringstream errors;
  errors << std::ifstream(errorFile).rdbuf();
  end.errors = errors.str();
  return end;
}

std::vector<std::string> Lines(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}
