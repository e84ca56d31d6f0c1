// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "grblx64.h"

namespace GenICam::Client {

/// Conversions between the library's values and what people and CoaXPress see: numbers of boards and channels in the
/// ids, and the link that a camera's ConnectionConfig asks for.
///
/// Pure functions over constant tables: no instances, no state, no lock, safe from any thread. A value that is in no
/// table throws, as each of them says.
class CGrbUtility {
 public:
  /// Board value to the number in ids, 1 to 7. @throws unknown_error
  static uint32_t GrbBoardEnumValueToInt(uint32_t nBoard);
  /// Channel value to the number in ids, 1 to 7. @throws unknown_error, also for GRB_CHANNEL_8
  static uint32_t GrbChannelEnumValueToInt(uint32_t nChannel);
  /// ConnectionConfig (CoaXPress 1.1, host order) to the value of GRB_CXP_DISCOVERY_MODE. @throws
  /// invalidparameter_error
  static uint32_t GetCXPDiscoveryModeGrbParam(uint32_t nConnectionConfig);
  /// ConnectionConfig (CoaXPress 1.1, host order) to the value of GRB_CXP_BITRATE_MODE. @throws
  /// invalidparameter_error
  static uint32_t GetCXPBitrateModeGrbParam(uint32_t nConnectionConfig);
};

/// The channel values in the order in which discovery tries them.
constexpr uint32_t kChannelValues[] = {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4,
                                       GRB_CHANNEL_5, GRB_CHANNEL_6, GRB_CHANNEL_7, GRB_CHANNEL_8};

/// Keeps the words of a library failure for the calling thread. It only records.
void GrbErrorHook(const char *pFunction, GRB_STATUS nStatus, const char *pDescription) noexcept;

/// The same, after the library's own handler has told the user. Kept: every handle is made quiet.
void GrbErrorHookVerbose(const char *pFunction, GRB_STATUS nStatus, const char *pDescription) noexcept;

}  // namespace GenICam::Client
