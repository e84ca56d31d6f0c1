// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "SimPlatform.h"

namespace grbsim {
namespace {

std::string LockFolder() {
  for (const char *name : {"LUMIVEX_SIM_LOCK_DIR", "TMPDIR"}) {
    const std::optional<std::string> folder = EnvironmentText(name);
    if (folder && !folder->empty()) {
      return *folder;
    }
  }
  return "/tmp";
}

int OpenLockFile(const std::string &path) {
  const int created = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
  // In a sticky folder the system refuses O_CREAT on the file of another user; an advisory lock needs no more than
  // reading.
  return created >= 0 ? created : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
}

}  // namespace

std::optional<std::string> EnvironmentText(const char *name) {
  const char *text = std::getenv(name);
  return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

CChannelClaim::CChannelClaim(const std::string &name)
    : m_iFile(OpenLockFile(LockFolder() + "/lumivex-sim-" + name + ".lock")), m_bHeld(true) {
  if (m_iFile < 0) {
    return;
  }
  int result = 0;
  do {
    result = ::flock(m_iFile, LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  m_bHeld = result == 0 || errno != EWOULDBLOCK;
}

CChannelClaim::~CChannelClaim() {
  // The file stays: removing it would let a third process lock a new file of the same name beside a held one.
  if (m_iFile >= 0) {
    ::close(m_iFile);
  }
}

}  // namespace grbsim
