// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Where a module's description lies. Pure functions.

#include <cstdint>
#include <optional>
#include <string>

namespace Lumivex::Consumer {

/// A description as it was found.
struct PortFile {
  std::string name;
  std::string bytes;
};

/// A place in a port's registers, "Local:name;address;size", or a file, "File:///path".
struct PortUrl {
  bool local = false;
  std::string name;      ///< Of the file; for a file on disk its path.
  uint64_t address = 0;  ///< In the registers.
  uint64_t size = 0;     ///< Bytes there.
};

/// Takes a URL apart; nothing when it is of no kind that is known. Numbers are hexadecimal; what follows a "?" is left
/// out, and so are slashes before the name; those before a path become one.
std::optional<PortUrl> ParsePortUrl(const std::string &url);

}  // namespace Lumivex::Consumer
