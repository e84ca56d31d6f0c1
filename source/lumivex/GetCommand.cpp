// SPDX-License-Identifier: MIT
#include "GetCommand.h"

namespace Lumivex::Consumer {

const CLI::App *CGetCommand::Declare(CLI::App &app) {
  CLI::App *pCommand = app.add_subcommand("get", "Print the value of a feature");
  m_Options.Declare(*pCommand, CFeatureOptions::DevicePlace::Option);
  pCommand->add_option("NAME", m_Name, "Name of the feature, as 'lumivex features' shows it")
      ->type_name("")
      ->required();
  return pCommand;
}

ExitCode CGetCommand::Run() {
  const CNodeMap nodeMap = m_Options.Open(PortUse::Reading);
  PrintValue(nodeMap.Get(m_Name));
  return ExitCode::Success;
}

}  // namespace Lumivex::Consumer
