// SPDX-License-Identifier: MIT
#include "FeatureCommands.h"

namespace Lumivex::Consumer {

std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands() { return {}; }

bool CanSetFeatures() noexcept { return false; }

void SetFeatures(const std::shared_ptr<const CDevice> &, const std::vector<std::string> &) {}

}  // namespace Lumivex::Consumer
