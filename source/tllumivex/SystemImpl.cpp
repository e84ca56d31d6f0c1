// SPDX-License-Identifier: MIT
#include "SystemImpl.h"

#include <cstdint>

#include "GrbBoardHandle.h"
#include "Platform.h"

namespace GenICam::Client {

void CSystemImpl::CollectInterfaces(std::list<std::shared_ptr<CInterfaceInfo>> &Interfaces) const {
  LVX_ASSERT(Interfaces.empty());
  for (uint32_t nBoard = GRB_BOARD_1; nBoard <= GRB_BOARD_7; ++nBoard) {
    try {
      const CGrbBoardHandle board(nBoard, true);
      if (board.IsValid()) {
        Interfaces.push_back(
            std::make_shared<CInterfaceInfo>(board.GetId(), board.GetDisplayName(), board.GetTLType(), nBoard));
      }
    } catch (...) {
      // A board whose handle cannot be created counts as absent.
    }
  }
}

}  // namespace GenICam::Client
