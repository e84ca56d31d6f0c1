// SPDX-License-Identifier: MIT
#ifndef GRBSIM_HANDLETABLE_H
#define GRBSIM_HANDLETABLE_H

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "SimHandle.h"
#include "grblx64.h"

namespace grbsim {

/// The handles that exist. A value is not given out again, so that a stale one is always told from a live one.
///
/// Owned by CSimLibrary; entered by any thread; one lock of its own, under which nothing is called.
class CHandleTable {
 public:
  GRB_HANDLE Add(GRB_ERROR_HOOK hook);
  /// Null if there is no such handle.
  std::shared_ptr<CSimHandle> Find(GRB_HANDLE value) const;
  /// Takes a handle out; null if there is none.
  std::shared_ptr<CSimHandle> Remove(GRB_HANDLE value);
  /// Takes out and closes all handles.
  void CloseAll();

 private:
  mutable std::mutex m_Lock;
  std::map<GRB_HANDLE, std::shared_ptr<CSimHandle>> m_Handles;  // guarded by m_Lock
  GRB_HANDLE m_hNext = 0x00010001U;                             // guarded by m_Lock
};

}  // namespace grbsim

#endif
