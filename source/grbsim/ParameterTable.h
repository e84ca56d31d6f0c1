// SPDX-License-Identifier: MIT
#ifndef GRBSIM_PARAMETERTABLE_H
#define GRBSIM_PARAMETERTABLE_H

#include <cstddef>
#include <cstdint>

#include "ValueRange.h"

namespace grbsim {

/// What the void pointer of a parameter call points to.
enum class EValueType : uint8_t {
  U32,
  U64,
  Pointer,  // the pointer itself is the value
  Text,     // receives a const char*
  Command   // nothing; the pointer is not looked at
};

enum class EAccess : uint8_t { ReadOnly, WriteOnly, ReadWrite };

/// The identifiers under which a parameter may be written: with the lowest bit clear, set, or both.
enum class EForm : uint8_t { Cached, Immediate, Both };

/// Where a value comes from.
enum class ESource : uint8_t {
  Stored,  // the parameter store of the channel
  Board,   // the initial value, the same for a whole board; a handle in GRB_MODE_ENUMERATE answers it too
  Live     // computed by the channel at each read
};

/// Whether a GCF file carries the parameter.
enum class EInFile : uint8_t { No, Yes };

/// One parameter of the library: all that can be said of it without a channel.
struct ParameterRow {
  uint32_t identifier;  // with the lowest bit clear
  const char *name;
  EValueType type;
  EAccess access;
  EForm form;
  ESource source;
  EInFile inFile;
  uint64_t initial;
  ValueSet allowed;
};

/// The table, sorted by identifier.
const ParameterRow *ParameterRows() noexcept;
size_t ParameterRowCount() noexcept;

/// The row of an identifier in either form; null if there is none.
const ParameterRow *FindParameter(uint32_t identifier) noexcept;

/// The software revision of the library.
constexpr uint32_t kRevSwMajor = 8;
constexpr uint32_t kRevSwMinor = 2;
constexpr uint32_t kRevSwSubminor = 1;
constexpr uint32_t kRevSw = kRevSwMajor << 16 | kRevSwMinor << 8 | kRevSwSubminor;
/// The revision of the board's firmware.
constexpr uint32_t kRevHwMajor = 2;
constexpr uint32_t kRevHwMinor = 4;
constexpr uint32_t kRevHwSubminor = 3;
constexpr uint32_t kRevHw = kRevHwMajor << 16 | kRevHwMinor << 8 | kRevHwSubminor;
/// GRB_BOARD_INFO: slot 4, CoaXPress, not chained, camera control and image engine present.
constexpr uint32_t kBoardInfo = 0x00040103U;
/// GRB_PCIE_INFO: generation 3 in the upper half, 8 lanes in the lower.
constexpr uint32_t kPcieInfo = 0x00030008U;

}  // namespace grbsim

#endif
