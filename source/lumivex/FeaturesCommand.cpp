// SPDX-License-Identifier: MIT
#include "FeaturesCommand.h"

#include <iostream>

#include "FeatureListing.h"
#include "Text.h"

namespace Lumivex::Consumer {

const CLI::App *CFeaturesCommand::Declare(CLI::App &app) {
  CLI::App *pCommand = app.add_subcommand("features", "Show the features of a camera, its grabber or another module");
  m_Options.Declare(*pCommand, CFeatureOptions::DevicePlace::Argument);
  pCommand->add_flag("-v,--verbose", m_Verbose,
                     "Show tool tips, entries, whole values, and features not meant for users too");
  pCommand->footer(
      "Access: r read, w write, - not, -- not available. Limits stand in parentheses behind the value.\n\n" +
      ExitCodeHelp());
  return pCommand;
}

ExitCode CFeaturesCommand::Run() {
  const CNodeMap nodeMap = m_Options.Open(PortUse::Reading);
  if (nodeMap.IsReduced()) {
    std::cerr << "lumivex: camera " << OneLine(nodeMap.CameraName())
              << " is busy: opened for reading only, where some features are not available\n";
  }
  for (const std::string &line : FormatFeatures(nodeMap, m_Verbose ? Detail::Verbose : Detail::Short)) {
    std::cout << line << '\n';
  }
  RequireOutput();
  return ExitCode::Success;
}

}  // namespace Lumivex::Consumer
