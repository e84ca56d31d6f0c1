// SPDX-License-Identifier: MIT

#include "FeatureCommands.h"

namespace Lumivex::Consumer {

std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands() { return {}; }

}  // namespace Lumivex::Consumer
