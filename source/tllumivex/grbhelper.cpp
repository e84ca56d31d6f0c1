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

/// The other side of the row whose member pFrom has the value; the caller hands its message and LVX_HERE on.
template <size_t nRows>
uint32_t Convert(const ConversionRow (&rows)[nRows], uint32_t ConversionRow::*pFrom, uint32_t ConversionRow::*pTo,
                 uint32_t nValue, const char *pMessage, const char *pFunction, const char *pFile, uint32_t nLine) {
  for (const ConversionRow &row : rows) {
    if (row.*pFrom == nValue) {
      return row.*pTo;
    }
  }
  throw unknown_error(FormatMessageText(pMessage, nValue), pFunction, pFile, nLine);
}

constexpr const char *kUnknownDecimation = "Unknown or unsupported decimation value 0x%08X";
constexpr const char *kUnknownScanType = "Unknown or unsupported scantype value 0x%08X";

}  // namespace

uint32_t CGRBHelper::ConvertInt2GrbDecimation(uint32_t nDecimation) {
  return Convert(kDecimations, &ConversionRow::nGenICam, &ConversionRow::nGrb, nDecimation, kUnknownDecimation,
                 LVX_HERE);
}

uint32_t CGRBHelper::ConvertGrbDecimation2Int(uint32_t nGrbDecimation) {
  return Convert(kDecimations, &ConversionRow::nGrb, &ConversionRow::nGenICam, nGrbDecimation, kUnknownDecimation,
                 LVX_HERE);
}

uint32_t CGRBHelper::ConvertGenICamScanType2Grb(uint32_t nScanType) {
  return Convert(kScanTypes, &ConversionRow::nGenICam, &ConversionRow::nGrb, nScanType, kUnknownScanType, LVX_HERE);
}

uint32_t CGRBHelper::ConvertGrbScanType2GenICam(uint32_t nGrbScanType) {
  return Convert(kScanTypes, &ConversionRow::nGrb, &ConversionRow::nGenICam, nGrbScanType, kUnknownScanType, LVX_HERE);
}

}  // namespace GenICam::Client
