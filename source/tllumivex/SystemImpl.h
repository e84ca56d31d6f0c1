// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <memory>

#include "InterfaceInfo.h"

namespace GenICam::Client {

/// Board discovery for the System module: one operation, no state, on the calling thread, no lock.
class CSystemImpl {
 public:
  /// Appends a description of each board that is there, in the order of the board values. Never fails for want of one.
  void CollectInterfaces(std::list<std::shared_ptr<CInterfaceInfo>> &Interfaces) const;
};

}  // namespace GenICam::Client
