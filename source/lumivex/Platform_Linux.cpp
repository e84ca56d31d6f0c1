// SPDX-License-Identifier: MIT
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "CommandError.h"
#include "Platform.h"

namespace Lumivex::Consumer {
namespace {

// Set by the handler, on whichever thread the system runs it.
std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a handler must not wait");

extern "C" void OnInterrupt(int) { g_interrupted = true; }

}  // namespace

CDynamicLibrary::CDynamicLibrary(const std::filesystem::path &file)
    : m_pHandle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (m_pHandle == nullptr) {
    const char *reason = dlerror();
    throw CCommandError(ExitCode::NoProducer,
                        "cannot load '" + file.string() + "': " + (reason != nullptr ? reason : "unknown reason"));
  }
}

CDynamicLibrary::~CDynamicLibrary() { dlclose(m_pHandle); }

void *CDynamicLibrary::Symbol(const char *name) const noexcept { return dlsym(m_pHandle, name); }

char PathListSeparator() noexcept { return ':'; }

std::string EnvironmentValue(const char *name) {
  const char *value = std::getenv(name);
  return value != nullptr ? value : "";
}

void ReserveStandardFiles() noexcept {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) == -1) {
      // The lowest free number is given out, so it becomes this one. Its direction is the wrong one on purpose.
      static_cast<void>(open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

bool IsReaderGone(std::FILE *file) noexcept {
  pollfd output = {fileno(file), POLLOUT, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

bool IsTerminal(std::FILE *file) noexcept { return isatty(fileno(file)) == 1; }

unsigned long ProcessNumber() noexcept { return static_cast<unsigned long>(getpid()); }

std::FILE *CreateNewFile(const std::filesystem::path &file) noexcept { return std::fopen(file.c_str(), "wbxe"); }

void CatchInterrupts() noexcept {
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    // nohup has SIGHUP ignored, and a script SIGINT for what it starts with an &.
    if (before.sa_handler == SIG_IGN) {
      continue;
    }
    // After the first signal the old action stands again: whoever asks twice is not kept waiting for an orderly end.
    // But a terminal that goes is told by the system and by the shell: both are one wish to end.
    action.sa_flags = signal == SIGHUP ? 0 : static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool Interrupted() noexcept { return g_interrupted; }

}  // namespace Lumivex::Consumer
