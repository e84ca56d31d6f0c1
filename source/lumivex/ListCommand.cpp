// SPDX-License-Identifier: MIT
#include "ListCommand.h"

#include <iostream>

#include "GenTLNames.h"
#include "Platform.h"
#include "ProducerSearch.h"
#include "Text.h"

namespace Lumivex::Consumer {

std::vector<std::string> FormatCatalog(const std::vector<ProducerEntry> &producers) {
  // All cameras in one table, so that the columns stand under each other on all boards.
  std::vector<std::vector<std::string>> rows = {{"No.", "Camera", "Access", "Vendor", "Model", "Name"}};
  for (const ProducerEntry &producer : producers) {
    for (const BoardEntry &board : producer.boards) {
      for (const CameraEntry &camera : board.cameras) {
        rows.push_back({std::to_string(camera.number), OneLine(camera.id), AccessStatusText(camera.status),
                        OneLine(camera.vendor), OneLine(camera.model), OneLine(camera.name)});
      }
    }
  }
  const std::vector<std::string> table = AlignColumns(rows);

  std::vector<std::string> lines;
  auto row = table.begin();
  const std::string &head = *row++;
  for (const ProducerEntry &producer : producers) {
    lines.push_back("Producer " + OneLine(producer.name) + " " + OneLine(producer.version) + " (" +
                    producer.file.string() + ")");
    if (producer.boards.empty()) {
      lines.emplace_back("  no boards");
    }
    for (const BoardEntry &board : producer.boards) {
      lines.push_back("  Board " + OneLine(board.id) + " (" + OneLine(board.name) + ")");
      lines.push_back(board.cameras.empty() ? "    no cameras" : "    " + head);
      for (std::size_t i = 0; i < board.cameras.size(); ++i) {
        lines.push_back("    " + *row++);
      }
    }
  }
  return lines;
}

const CLI::App *CListCommand::Declare(CLI::App &app) {
  CLI::App *pCommand = app.add_subcommand("list", "Show the boards and cameras, and whether the cameras are free");
  AddProducerOption(*pCommand, m_ProducerFile);
  return pCommand;
}

ExitCode CListCommand::Run() {
  const CCatalog catalog(ChooseProducerFiles(m_ProducerFile, EnvironmentValue(kProducerPathVariable)));
  for (const std::string &line : FormatCatalog(catalog.Producers())) {
    std::cout << line << '\n';
  }
  RequireOutput();
  for (const CCommandError &failure : catalog.Failures()) {
    std::cerr << "lumivex: " << failure.what() << '\n';
  }
  return catalog.Failures().empty() ? ExitCode::Success : catalog.Failures().front().Code();
}

}  // namespace Lumivex::Consumer
