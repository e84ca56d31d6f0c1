// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Command.h"

namespace Lumivex::Consumer {

/// `lumivex grab`: frames of a camera as PNG files.
///
/// On a terminal it shows its progress and a summary; elsewhere it prints the names of the files, one a line, for other
/// programs to read.
/// Features of the grabber can be set before, where lumivex can set features at all.
/// Ownership: as ICommand; the camera is open during Run. Threads: one. Throws CCommandError.
class CGrabCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  std::string m_ProducerFile;
  std::string m_Device;
  std::vector<std::string> m_Settings;  ///< "NAME=VALUE"
  std::string m_Output = "frame-%03d.png";
  uint64_t m_Count = 1;
  double m_Timeout = 5.0;  // seconds
};

}  // namespace Lumivex::Consumer
