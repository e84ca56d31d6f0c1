// SPDX-License-Identifier: MIT
#include "FeatureOptions.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <utility>

#include "Catalog.h"
#include "Platform.h"
#include "ProducerSearch.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

constexpr const char *kCameraText =
    "Camera by id, name, board/id or number, as 'lumivex list' shows them (default: the first free one)";

const ModuleRow *FindModule(const std::string &name) {
  const auto *const pRow =
      std::find_if(std::begin(kModules), std::end(kModules), [&](const ModuleRow &row) { return name == row.name; });
  return pRow == std::end(kModules) ? nullptr : pRow;
}

/// The names of all modules, with a word in front of the last.
std::string ModuleNames(const std::string &word) {
  std::string names;
  for (const ModuleRow &row : kModules) {
    const bool last = &row == std::end(kModules) - 1;
    names += (names.empty() ? "" : last ? " " + word + " " : ", ") + row.name;
  }
  return names;
}

std::string CheckModule(const std::string &name) {
  return FindModule(name) != nullptr ? "" : "'" + name + "' is none of " + ModuleNames("and");
}

}  // namespace

void CFeatureOptions::Declare(CLI::App &command, DevicePlace place) {
  AddProducerOption(command, m_ProducerFile);
  command.add_option("-d,--device", m_Device, kCameraText)->type_name("CAMERA");
  if (place == DevicePlace::Argument) {
    command.add_option("device", m_DeviceArgument, "The same, without --device")->type_name("");
  }
  command
      .add_option_function<std::string>(
          "-m,--module", [this](const std::string &name) { m_Module = FindModule(name)->module; },
          "Whose features: " + ModuleNames("or") + " (default: device, the grabber)")
      ->type_name("MODULE")
      ->check(CLI::Validator(CheckModule, "", "module"));
}

CNodeMap CFeatureOptions::Open(PortUse use) const {
  if (!m_Device.empty() && !m_DeviceArgument.empty()) {
    throw CCommandError(ExitCode::Usage, "two cameras are named, '" + m_Device + "' and '" + m_DeviceArgument + "'");
  }
  const std::string &wish = m_Device.empty() ? m_DeviceArgument : m_Device;
  const CCatalog catalog(ChooseProducerFiles(m_ProducerFile, EnvironmentValue(kProducerPathVariable)));
  for (const CCommandError &failure : catalog.Failures()) {
    std::cerr << "lumivex: " << failure.what() << '\n';
  }
  auto pPort = std::make_unique<const CModulePort>(catalog, m_Module, wish, use);
  if (IsTerminal(stderr)) {
    std::cerr << ChosenCameraLine(wish, pPort->CameraName(), catalog.Cameras().size());
  }
  return CNodeMap(std::move(pPort));
}

std::string ChosenCameraLine(const std::string &wish, const std::string &cameraName, std::size_t cameraCount) {
  const bool told = wish.empty() && !cameraName.empty() && cameraCount > 1;
  return told ? "lumivex: camera " + OneLine(cameraName) + "\n" : "";
}

}  // namespace Lumivex::Consumer
