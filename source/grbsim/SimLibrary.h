// SPDX-License-Identifier: MIT
#ifndef GRBSIM_SIMLIBRARY_H
#define GRBSIM_SIMLIBRARY_H

#include <cstdint>
#include <memory>
#include <mutex>

#include "HandleTable.h"
#include "SimBoard.h"

namespace grbsim {

/// The state of the library in this process: the handles and the boards.
///
/// One object, made when the library is loaded, so that it outlives everything in the modules that were loaded after
/// it; gone when the library is unloaded, which ends every stream. The boards are made by the first call that asks for
/// one. Entered by any thread.
class CSimLibrary {
 public:
  static CSimLibrary &Instance();

  CSimLibrary() = default;
  ~CSimLibrary();
  CSimLibrary(const CSimLibrary &) = delete;
  CSimLibrary &operator=(const CSimLibrary &) = delete;

  CHandleTable &Handles() noexcept { return m_Handles; }
  /// A board by its number, 1 to 7; null if there is none.
  CSimBoard *Board(uint32_t number);

 private:
  std::once_flag m_BoardMade;
  std::unique_ptr<CSimBoard> m_pBoard;  // written once, under m_BoardMade
  CHandleTable m_Handles;
};

}  // namespace grbsim

#endif
