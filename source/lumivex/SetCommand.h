// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "Command.h"
#include "FeatureOptions.h"

namespace Lumivex::Consumer {

/// `lumivex set`: writes one feature, and prints the value that stands there afterwards; executes a command.
///
/// What stands afterwards need not be what was written: the hardware may round it.
/// Ownership: as ICommand; the module is open during Run. Threads: one.
/// Throws CCommandError: NoFeature, FeatureAccess and FeatureValue beside what every command does.
class CSetCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  CFeatureOptions m_Options;
  std::string m_Name;
  std::string m_Value;
  const CLI::Option *m_pValueOption = nullptr;  ///< Tells an empty value from none.
};

}  // namespace Lumivex::Consumer
