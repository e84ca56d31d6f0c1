// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_GRABCOMMAND_H_
#define LUMIVEX_CONSUMER_GRABCOMMAND_H_

#include <cstdint>
#include <string>

#include "Command.h"

namespace Lumivex::Consumer {

/// `lumivex grab`: frames of a camera as PNG files.
///
/// On a terminal it shows its progress and a summary; elsewhere it prints the names of the files, one a line, for other
/// programs to read.
/// Ownership: as ICommand. Threads: one.
class CGrabCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  std::string m_ProducerFile;
  std::string m_Device;
  std::string m_Output = "frame-%03d.png";
  uint64_t m_Count = 1;
  double m_Timeout = 5.0;  // seconds
};

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_GRABCOMMAND_H_
