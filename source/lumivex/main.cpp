// SPDX-License-Identifier: MIT
/// \file
/// lumivex: a GenTL Consumer for the command line. Exit codes: ExitCodes.h.

#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandError.h"
#include "CommandLine.h"
#include "ExitCodes.h"
#include "FeatureCommands.h"
#include "GrabCommand.h"
#include "ListCommand.h"
#include "Platform.h"

namespace {

using Lumivex::Consumer::CCommandError;
using Lumivex::Consumer::ExitCode;
using Lumivex::Consumer::ICommand;

struct Command {
  std::unique_ptr<ICommand> pCommand;
  const CLI::App *pDeclared;
};

int Complain(ExitCode code, const std::string &message) {
  std::cerr << "lumivex: " << message << std::endl;
  return static_cast<int>(code);
}

int Run(int argc, char **argv) {
  CLI::App app("Shows the cameras that GenTL Producers find, sets their features, and takes pictures.", "lumivex");
  app.set_version_flag("--version", std::string("lumivex ") + LUMIVEX_VERSION);
  app.require_subcommand(0, 1);
  app.footer(Lumivex::Consumer::ExitCodeHelp());

  std::vector<Command> commands;
  commands.push_back({std::make_unique<Lumivex::Consumer::CListCommand>(), nullptr});
  commands.push_back({std::make_unique<Lumivex::Consumer::CGrabCommand>(), nullptr});
  for (std::unique_ptr<ICommand> &pCommand : Lumivex::Consumer::MakeFeatureCommands()) {
    commands.push_back({std::move(pCommand), nullptr});
  }
  for (Command &command : commands) {
    command.pDeclared = command.pCommand->Declare(app);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success &wish) {
    const int code = app.exit(wish);
    Lumivex::Consumer::RequireOutput();
    return code;
  } catch (const CLI::ParseError &error) {
    return Complain(ExitCode::Usage, Lumivex::Consumer::ExplainFault(app, error));
  }

  Lumivex::Consumer::CatchInterrupts();
  for (const Command &command : commands) {
    if (command.pDeclared->parsed()) {
      return static_cast<int>(command.pCommand->Run());
    }
  }
  return Complain(ExitCode::Usage, "a command is missing, such as list or grab; see lumivex --help");
}

}  // namespace

int main(int argc, char **argv) {
  Lumivex::Consumer::ReserveStandardFiles();
  try {
    return Run(argc, argv);
  } catch (const CCommandError &error) {
    if (error.Code() == ExitCode::ReaderGone) {
      // Who has read enough is content, and needs no complaint.
      return static_cast<int>(error.Code());
    }
    return Complain(error.Code(), error.what());
  } catch (const std::exception &error) {
    return Complain(ExitCode::Internal, error.what());
  }
}
