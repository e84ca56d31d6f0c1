// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <memory>

#include "InterfaceInfo.h"

namespace GenICam::Client {

/// Board discovery for the System module: tries the board values, one after the other.
///
/// Owned by CTL; one operation, without a state. Runs on the calling thread, takes no lock of its own; the System sees
/// to it that lists are built one at a time. A board that cannot be opened is left out, not reported.
class CSystemImpl {
 public:
  /// Appends a description of each board that is there, in the order of the board values. Never fails for want of one.
  void CollectInterfaces(std::list<std::shared_ptr<CInterfaceInfo>> &Interfaces) const;
};

}  // namespace GenICam::Client
