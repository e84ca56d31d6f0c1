// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What Aravis' node map asks for memory: an ArvDevice whose memory is a port of the Producer.

#include <memory>
#include <optional>

#include <arv.h>

#include "CommandError.h"
#include "ModulePort.h"

namespace Lumivex::Consumer {

/// A port, and why its last transfer failed. Aravis knows errors as texts only; the exit code must outlive its way
/// through them.
struct PortAccess {
  std::unique_ptr<const CModulePort> pPort;
  std::optional<CCommandError> failure;
};

/// A new device; the caller holds its only reference. The access must outlive it.
/// Numbers keep the byte order of the port: each register's description tells which one it is. Only the single-word
/// operations, which have no description, follow what the port says of itself.
ArvDevice *NewPortDevice(PortAccess &access);

/// Tells the device its node map, which it does not own.
void SetNodeMap(ArvDevice *device, ArvGc *gc);

}  // namespace Lumivex::Consumer
