// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "Command.h"
#include "NodeMap.h"

namespace Lumivex::Consumer {

/// What the commands about features have in common: which Producer, which camera, which module; and the way there.
///
/// Where several cameras are there and none is named, who sits at a terminal is told which one was chosen; the output
/// stays free of it.
/// Ownership: member of the command; the features that Open makes hold their module open on their own.
/// Threads: one. Open throws CCommandError.
class CFeatureOptions {
 public:
  /// Where the camera's name stands on the command line.
  enum class DevicePlace { Argument, Option };

  void Declare(CLI::App &command, DevicePlace place);

  /// The features of the chosen module. Tells on the error output which Producers failed.
  CNodeMap Open(PortUse use) const;

 private:
  std::string m_ProducerFile;
  std::string m_Device;
  std::string m_DeviceArgument;  ///< The same, where it may stand without "--device".
  Module m_Module = Module::Device;
};

/// The line that tells which of several cameras was chosen; empty where one was wished, or there was no choice.
std::string ChosenCameraLine(const std::string &wish, const std::string &cameraName, std::size_t cameraCount);

}  // namespace Lumivex::Consumer
