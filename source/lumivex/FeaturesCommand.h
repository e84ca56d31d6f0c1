// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "Command.h"
#include "FeatureOptions.h"

namespace Lumivex::Consumer {

/// `lumivex features`: the feature tree of a module, for people to read.
///
/// A feature that cannot be read says so in its line and does not end the listing.
/// Ownership: as ICommand; the module is open during Run. Threads: one.
/// Throws CCommandError: Interrupted also while the features are being read.
class CFeaturesCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  CFeatureOptions m_Options;
  bool m_Verbose = false;
};

}  // namespace Lumivex::Consumer
