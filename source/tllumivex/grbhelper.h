// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace GenICam::Client {

/// Conversions between GenICam feature values and library parameter values: scan types and decimations.
///
/// Pure functions: no instances, no state, no lock, safe from any thread. All throw unknown_error on a value that they
/// do not know, with the value in the text.
class CGRBHelper {
 public:
  static uint32_t ConvertInt2GrbDecimation(uint32_t nDecimation);
  static uint32_t ConvertGrbDecimation2Int(uint32_t nGrbDecimation);
  static uint32_t ConvertGenICamScanType2Grb(uint32_t nScanType);
  static uint32_t ConvertGrbScanType2GenICam(uint32_t nGrbScanType);
};

}  // namespace GenICam::Client
