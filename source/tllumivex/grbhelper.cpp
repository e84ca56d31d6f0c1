// SPDX-License-Identifier: MIT
#include "grbhelper.h"

#include "TLIException.h"
#include "grblx64.h"

namespace GenICam::Client {

namespace {

struct ConversionRow {
  uint32_t nGenICam;
  uint32_t nGrb;
};

constexpr ConversionRow kDecimations[] = {
    {1, GRB_ACQ_X1},
    {2, GRB_ACQ_X2},
    {4, GRB_ACQ_X4},
    {8, GRB_ACQ_X8},
};

// Kept: the two camera types without a region of interest have no scan type.
constexpr ConversionRow kScanTypes[] = {
    {0, GRB_CAM_LINESCAN_ROI},
    {1, GRB_CAM_AREASCAN_ROI},
};

}  // namespace

uint32_t CGRBHelper::ConvertInt2GrbDecimation(uint32_t nDecimation) {
  for (const ConversionRow &row : kDecimations) {
    if (row.nGenICam == nDecimation) {
      return row.nGrb;
    }
  }
  throw unknown_error(FormatMessageText("Unknown or unsupported decimation value 0x%08X", nDecimation), LVX_HERE);
}

uint32_t CGRBHelper::ConvertGrbDecimation2Int(uint32_t nGrbDecimation) {
  for (const ConversionRow &row : kDecimations) {
    if (row.nGrb == nGrbDecimation) {
      return row.nGenICam;
    }
  }
  throw unknown_error(FormatMessageText("Unknown or unsupported decimation value 0x%08X", nGrbDecimation), LVX_HERE);
}

uint32_t CGRBHelper::ConvertGenICamScanType2Grb(uint32_t nScanType) {
  for (const ConversionRow &row : kScanTypes) {
    if (row.nGenICam == nScanType) {
      return row.nGrb;
    }
  }
  throw unknown_error(FormatMessageText("Unknown or unsupported scantype value 0x%08X", nScanType), LVX_HERE);
}

uint32_t CGRBHelper::ConvertGrbScanType2GenICam(uint32_t nGrbScanType) {
  for (const ConversionRow &row : kScanTypes) {
    if (row.nGrb == nGrbScanType) {
      return row.nGenICam;
    }
  }
  throw unknown_error(FormatMessageText("Unknown or unsupported scantype value 0x%08X", nGrbScanType), LVX_HERE);
}

}  // namespace GenICam::Client
