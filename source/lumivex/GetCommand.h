// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_GETCOMMAND_H_
#define LUMIVEX_CONSUMER_GETCOMMAND_H_

#include <string>

#include "Command.h"
#include "FeatureOptions.h"

namespace Lumivex::Consumer {

/// `lumivex get`: the value of one feature and nothing else, for other programs to read.
///
/// Ownership: as ICommand. Threads: one.
class CGetCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  CFeatureOptions m_Options;
  std::string m_Name;
};

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_GETCOMMAND_H_
