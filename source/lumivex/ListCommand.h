// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "Catalog.h"
#include "Command.h"

namespace Lumivex::Consumer {

/// `lumivex list`: the boards and cameras that the Producers find, each camera with its number, ids, names and access.
///
/// Opens no camera, and so disturbs none that another program uses. A Producer that fails does not hide the others.
/// Ownership: as ICommand; what it opens is closed when Run ends. Threads: one.
/// Throws CCommandError, when no Producer is left that can be shown.
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
