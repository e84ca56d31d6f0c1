// SPDX-License-Identifier: MIT

/// \file
/// The commands about features. They need Aravis: without it the build takes NoFeatureCommands.cpp, and there are none.

#ifndef LUMIVEX_CONSUMER_FEATURECOMMANDS_H_
#define LUMIVEX_CONSUMER_FEATURECOMMANDS_H_

#include <memory>
#include <vector>

#include "Command.h"

namespace Lumivex::Consumer {

/// features, get and set; or nothing.
std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands();

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_FEATURECOMMANDS_H_
