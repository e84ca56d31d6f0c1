// SPDX-License-Identifier: MIT

#include "FeatureOptions.h"

#include <iostream>
#include <map>
#include <memory>

#include "Catalog.h"
#include "Platform.h"
#include "ProducerSearch.h"

namespace Lumivex::Consumer {
namespace {

const std::map<std::string, Module> &ModuleNames() {
  static const std::map<std::string, Module> names = {{"system", Module::System},
                                                      {"interface", Module::Interface},
                                                      {"device", Module::Device},
                                                      {"stream", Module::Stream},
                                                      {"camera", Module::Camera}};
  return names;
}

std::string CheckModule(const std::string &name) {
  return ModuleNames().count(name) > 0 ? "" : "'" + name + "' is none of system, interface, device, stream and camera";
}

}  // namespace

void CFeatureOptions::Declare(CLI::App &command, DevicePlace place) {
  AddProducerOption(command, m_ProducerFile);
  command
      .add_option(place == DevicePlace::Argument ? "-d,--device,device" : "-d,--device", m_Device,
                  "Camera by id, name, board/id or number, as 'lumivex list' shows them (default: the first free one)")
      ->type_name(place == DevicePlace::Argument ? "" : "CAMERA");
  command
      .add_option_function<std::string>(
          "-m,--module", [this](const std::string &name) { m_Module = ModuleNames().at(name); },
          "Whose features: system, interface, device (the grabber, the default), stream or camera")
      ->type_name("MODULE")
      ->check(CLI::Validator(CheckModule, "", "module"));
}

CNodeMap CFeatureOptions::Open(PortUse use) const {
  const CCatalog catalog(ChooseProducerFiles(m_ProducerFile, EnvironmentValue(kProducerPathVariable)));
  for (const CCommandError &failure : catalog.Failures()) {
    std::cerr << "lumivex: " << failure.what() << '\n';
  }
  return CNodeMap(std::make_unique<const CModulePort>(catalog, m_Module, m_Device, use));
}

}  // namespace Lumivex::Consumer
