// SPDX-License-Identifier: MIT

#ifndef LUMIVEX_CONSUMER_LISTCOMMAND_H_
#define LUMIVEX_CONSUMER_LISTCOMMAND_H_

#include <string>
#include <vector>

#include "Catalog.h"
#include "Command.h"

namespace Lumivex::Consumer {

/// `lumivex list`: the boards and cameras that the Producers find, each camera with its number, ids, names and access.
///
/// Ownership: as ICommand. Threads: one. Opens no camera.
class CListCommand : public ICommand {
 public:
  const CLI::App *Declare(CLI::App &app) override;
  ExitCode Run() override;

 private:
  std::string m_ProducerFile;
};

/// The list as lines of text.
std::vector<std::string> FormatCatalog(const std::vector<ProducerEntry> &producers);

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_LISTCOMMAND_H_
