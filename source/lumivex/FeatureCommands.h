// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What lumivex can do with features. It needs Aravis: without it the build takes NoFeatureCommands.cpp, which can do
/// none of it.

#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "Device.h"

namespace Lumivex::Consumer {

/// features, get and set; or nothing.
std::vector<std::unique_ptr<ICommand>> MakeFeatureCommands();

/// Whether SetFeatures can do it.
bool CanSetFeatures() noexcept;

/// Writes features of a device that is open for control, one after the other. A setting is "NAME=VALUE", or the name
/// alone of a command, which is executed. Throws as CNodeMap::Set; what was set before stands.
void SetFeatures(const std::shared_ptr<const CDevice> &pDevice, const std::vector<std::string> &settings);

}  // namespace Lumivex::Consumer
