// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_FEATUREOPTIONS_H_
#define LUMIVEX_CONSUMER_FEATUREOPTIONS_H_

#include <string>

#include "Command.h"
#include "NodeMap.h"

namespace Lumivex::Consumer {

/// What the commands about features have in common: which Producer, which camera, which module; and the way there.
///
/// Ownership: member of the command. Threads: one. Open throws CCommandError.
class CFeatureOptions {
 public:
  /// Where the camera's name stands on the command line.
  enum class DevicePlace { Argument, Option };

  void Declare(CLI::App &command, DevicePlace place);

  /// The features of the chosen module. Complains on the error output about Producers that failed.
  CNodeMap Open(PortUse use) const;

 private:
  std::string m_ProducerFile;
  std::string m_Device;
  Module m_Module = Module::Device;
};

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_FEATUREOPTIONS_H_
