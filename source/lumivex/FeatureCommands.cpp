// SPDX-License-Identifier: MIT

#include "FeatureCommands.h"

#include "FeaturesCommand.h"
#include "GetCommand.h"
#include "SetCommand.h"

namespace Lumivex::Consumer {

std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands() {
  std::vector<std::unique_ptr<ICommand>> commands;
  commands.push_back(std::make_unique<CFeaturesCommand>());
  commands.push_back(std::make_unique<CGetCommand>());
  commands.push_back(std::make_unique<CSetCommand>());
  return commands;
}

}  // namespace Lumivex::Consumer
