// SPDX-License-Identifier: MIT
#include "SimLibrary.h"

namespace grbsim {
namespace {

constexpr uint32_t kPresent = 1;  // the number of the one board

CSimLibrary s_Library;

}  // namespace

CSimLibrary &CSimLibrary::Instance() { return s_Library; }

CSimLibrary::~CSimLibrary() { m_Handles.CloseAll(); }

CSimBoard *CSimLibrary::Board(uint32_t number) {
  if (number != kPresent) {
    return nullptr;
  }
  std::call_once(m_BoardMade, [this] { m_pBoard = std::make_unique<CSimBoard>(kPresent); });
  return m_pBoard.get();
}

}  // namespace grbsim
