// SPDX-License-Identifier: MIT
#include "SetCommand.h"

#include <optional>

namespace Lumivex::Consumer {

const CLI::App *CSetCommand::Declare(CLI::App &app) {
  CLI::App *pCommand = app.add_subcommand("set", "Change the value of a feature, or execute a command");
  m_Options.Declare(*pCommand, CFeatureOptions::DevicePlace::Option);
  pCommand->add_option("NAME", m_Name, "Name of the feature, as 'lumivex features' shows it")
      ->type_name("")
      ->required();
  m_pValueOption = pCommand
                       ->add_option("VALUE", m_Value,
                                    "Its new value: a number (also 0x...), the name of an entry, true or false, or a "
                                    "text. A command takes none. Put -- before a value that begins with -")
                       ->type_name("");
  pCommand->footer(
      "Prints the value that stands afterwards: the hardware may round what was given.\n"
      "A feature of the grabber holds while the camera is open, so during this command only; 'lumivex grab --set'\n"
      "sets it for a grab.\n\n" +
      ExitCodeHelp());
  return pCommand;
}

ExitCode CSetCommand::Run() {
  const CNodeMap nodeMap = m_Options.Open(PortUse::Writing);
  nodeMap.Set(m_Name, m_pValueOption->count() > 0 ? std::optional<std::string>(m_Value) : std::nullopt);
  if (nodeMap.Kind(m_Name) != FeatureKind::Command && nodeMap.Access(m_Name).readable) {
    PrintValue(nodeMap.Get(m_Name));
  }
  return ExitCode::Success;
}

}  // namespace Lumivex::Consumer
