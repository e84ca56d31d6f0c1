// SPDX-License-Identifier: MIT
#include "FeatureCommands.h"

#include <cstddef>
#include <optional>

#include "FeaturesCommand.h"
#include "GetCommand.h"
#include "NodeMap.h"
#include "SetCommand.h"

namespace Lumivex::Consumer {

std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands() {
  std::vector<std::unique_ptr<ICommand>> commands;
  commands.push_back(std::make_unique<CFeaturesCommand>());
  commands.push_back(std::make_unique<CGetCommand>());
  commands.push_back(std::make_unique<CSetCommand>());
  return commands;
}

bool CanSetFeatures() noexcept { return true; }

void SetFeatures(const std::shared_ptr<const CDevice> &pDevice, const std::vector<std::string> &settings) {
  if (settings.empty()) {
    return;
  }
  const CNodeMap nodeMap(std::make_unique<const CModulePort>(pDevice));
  for (const std::string &setting : settings) {
    const std::size_t equals = setting.find('=');
    nodeMap.Set(setting.substr(0, equals),
                equals == std::string::npos ? std::nullopt : std::optional(setting.substr(equals + 1)));
  }
}

}  // namespace Lumivex::Consumer
