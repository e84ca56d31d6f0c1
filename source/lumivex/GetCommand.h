// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "Command.h"
#include "FeatureOptions.h"

namespace Lumivex::Consumer {

/// `lumivex get`: the value of one feature and nothing else, for other programs to read.
///
/// A busy camera is opened for reading only, and what needs more is refused.
/// Ownership: as ICommand; the module is open during Run. Threads: one.
/// Throws CCommandError: NoFeature and FeatureAccess beside what every command does.
class CGetCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  CFeatureOptions m_Options;
  std::string m_Name;
};

}  // namespace Lumivex::Consumer
