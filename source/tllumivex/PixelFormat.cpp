// SPDX-License-Identifier: MIT
#include "PixelFormat.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

struct PixelFormatEntry {
  uint32_t Pfnc;
  uint32_t CoaXPress;         // 0xFFFFFFFF where the standard has none
  uint32_t BusFormat;         // GRB_BUS_FORMAT
  uint32_t UsrFormat;         // GRB_USR_FORMAT
  uint32_t SrcCol;            // GRB_CAM_SRC_COL, 0 where the library has none
  uint32_t DstFormat;         // 0 where the library has none
  uint32_t BitsPerComponent;  // GRB_CAM_SRC_DEPTH
  uint32_t BytesPerPixel;
};

// The order matters: the first match decides. Sources: PFNC; CoaXPress 1.1.
// clang-format off: the columns stand under one another.
constexpr PixelFormatEntry kPixelFormats[] = {
    // PFNC, CoaXPress, bus, user, source colour, destination, bits, bytes
    {0x01080001, 0x0101, 0xC0022601, 0xC0029E01, 1, 0xC0022601, 8, 1},            // Mono8
    {0x01100003, 0x0102, 0xC0022613, 0xC0029E13, 1, 0xC0022613, 10, 2},           // Mono10
    {0x01100005, 0x0103, 0xC0022614, 0xC0029E14, 1, 0xC0022614, 12, 2},           // Mono12
    {0x01100025, 0x0104, 0xC0022615, 0xC0029E15, 1, 0xC0022615, 14, 2},           // Mono14
    {0x01100007, 0x0105, 0xC0022602, 0xC0029E02, 1, 0xC0022602, 16, 2},           // Mono16
    {0x01080008, 0x0311, 0xC0022628, 0xC0029E28, 0xC0021202, 0xC0022616, 8, 1},   // BayerGR8
    {0x0110000C, 0x0312, 0xC002262C, 0xC0029E2C, 0xC0021202, 0xC0022617, 10, 2},  // BayerGR10
    {0x01100010, 0x0313, 0xC0022630, 0xC0029E30, 0xC0021202, 0xC0022618, 12, 2},  // BayerGR12
    {0x01100014, 0x0314, 0xC0022634, 0xC0029E34, 0xC0021202, 0xC0022619, 14, 2},  // BayerGR14
    {0x0110002E, 0x0315, 0xC0022638, 0xC0029E38, 0xC0021202, 0xC002261A, 16, 2},  // BayerGR16
    {0x01080009, 0x0321, 0xC0022629, 0xC0029E29, 0xC0021201, 0xC0022616, 8, 1},   // BayerRG8
    {0x0110000D, 0x0322, 0xC002262D, 0xC0029E2D, 0xC0021201, 0xC0022617, 10, 2},  // BayerRG10
    {0x01100011, 0x0323, 0xC0022631, 0xC0029E31, 0xC0021201, 0xC0022618, 12, 2},  // BayerRG12
    {0x01100015, 0x0324, 0xC0022635, 0xC0029E35, 0xC0021201, 0xC0022619, 14, 2},  // BayerRG14
    {0x0110002F, 0x0325, 0xC0022639, 0xC0029E39, 0xC0021201, 0xC002261A, 16, 2},  // BayerRG16
    {0x0108000A, 0x0331, 0xC002262A, 0xC0029E2A, 0xC0021203, 0xC0022616, 8, 1},   // BayerGB8
    {0x0110000E, 0x0332, 0xC002262E, 0xC0029E2E, 0xC0021203, 0xC0022617, 10, 2},  // BayerGB10
    {0x01100012, 0x0333, 0xC0022632, 0xC0029E32, 0xC0021203, 0xC0022618, 12, 2},  // BayerGB12
    {0x01100016, 0x0334, 0xC0022636, 0xC0029E36, 0xC0021203, 0xC0022619, 14, 2},  // BayerGB14
    {0x01100030, 0x0335, 0xC002263A, 0xC0029E3A, 0xC0021203, 0xC002261A, 16, 2},  // BayerGB16
    {0x0108000B, 0x0341, 0xC002262B, 0xC0029E2B, 0xC0021204, 0xC0022616, 8, 1},   // BayerBG8
    {0x0110000F, 0x0342, 0xC002262F, 0xC0029E2F, 0xC0021204, 0xC0022617, 10, 2},  // BayerBG10
    {0x01100013, 0x0343, 0xC0022633, 0xC0029E33, 0xC0021204, 0xC0022618, 12, 2},  // BayerBG12
    {0x01100017, 0x0344, 0xC0022637, 0xC0029E37, 0xC0021204, 0xC0022619, 14, 2},  // BayerBG14
    {0x01100031, 0x0345, 0xC002263B, 0xC0029E3B, 0xC0021204, 0xC002261A, 16, 2},  // BayerBG16
    {0x02180014, 0x0401, 0xC0022612, 0xC0029E12, 3, 0xC0022612, 8, 3},            // RGB8
    {0x02300018, 0x0402, 0xC002263D, 0xC0029E3D, 3, 0, 10, 6},                    // RGB10
    {0x0230001A, 0x0403, 0xC002261D, 0xC0029E1D, 3, 0xC002261D, 12, 6},           // RGB12
    {0x0230005E, 0x0404, 0xC002263F, 0xC0029E3F, 3, 0, 14, 6},                    // RGB14
    {0x02300033, 0x0405, 0xC002260E, 0xC0029E0E, 3, 0xC002260E, 16, 6},           // RGB16
    {0x02180015, 0xFFFFFFFF, 0xC0022611, 0xC0029E11, 0, 0xC0022611, 8, 3},        // BGR8
    {0x02300019, 0xFFFFFFFF, 0xC002263C, 0xC0029E3C, 0, 0, 10, 6},                // BGR10
    {0x0230001B, 0xFFFFFFFF, 0xC002261C, 0xC0029E1C, 0, 0xC002261C, 12, 6},       // BGR12
    {0x0230004A, 0xFFFFFFFF, 0xC002263E, 0xC0029E3E, 0, 0, 14, 6},                // BGR14
    {0x0230004B, 0xFFFFFFFF, 0xC0022609, 0xC0029E09, 0, 0xC0022609, 16, 6},       // BGR16
    {0x02200016, 0x0501, 0xC0022623, 0xC0029E23, 0xC0021206, 0, 8, 4},            // RGBa8
    {0x0240005F, 0x0502, 0xC0022624, 0xC0029E24, 0xC0021206, 0, 10, 8},           // RGBa10
    {0x02400061, 0x0503, 0xC0022625, 0xC0029E25, 0xC0021206, 0, 12, 8},           // RGBa12
    {0x02400063, 0x0504, 0xC0022626, 0xC0029E26, 0xC0021206, 0, 14, 8},           // RGBa14
    {0x02400064, 0x0505, 0xC0022627, 0xC0029E27, 0xC0021206, 0, 16, 8},           // RGBa16
    {0x02100032, 0x0621, 0xC002261E, 0xC0029E1E, 0xC0021205, 0xC002261E, 8, 2},   // YUV422_8
};
// clang-format on

constexpr bool PfncValuesAreUnique() {
  for (size_t i = 0; i < std::size(kPixelFormats); ++i) {
    for (size_t j = i + 1; j < std::size(kPixelFormats); ++j) {
      if (kPixelFormats[i].Pfnc == kPixelFormats[j].Pfnc) {
        return false;
      }
    }
  }
  return true;
}
static_assert(std::size(kPixelFormats) == 41, "one row for each entry of the PixelFormat feature");
static_assert(PfncValuesAreUnique(), "a PFNC value names one row");

template <class Matches>
const PixelFormatEntry *Find(Matches matches) {
  const PixelFormatEntry *pEntry = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats), matches);
  return pEntry == std::end(kPixelFormats) ? nullptr : pEntry;
}

/// The entry of a PFNC value; the caller hands its own LVX_HERE on.
const PixelFormatEntry &EntryOfPfnc(uint32_t nPfnc, const char *pFunction, const char *pFile, uint32_t nLine) {
  const PixelFormatEntry *pEntry = Find([nPfnc](const PixelFormatEntry &entry) { return entry.Pfnc == nPfnc; });
  if (pEntry == nullptr) {
    throw unknown_error("Unknown or unsupported PFNC PixelFormat: " + ToHex(nPfnc), pFunction, pFile, nLine);
  }
  return *pEntry;
}

}  // namespace

uint32_t CPixelFormat::To_PFNC(CoaXPressFormat nCoaXPress) {
  const auto nCode = static_cast<uint32_t>(nCoaXPress);
  const PixelFormatEntry *pEntry = Find([nCode](const PixelFormatEntry &entry) { return entry.CoaXPress == nCode; });
  if (pEntry == nullptr) {
    throw unknown_error("Unknown or unsupported CoaXPress PixelFormat: " + ToHex(nCode), LVX_HERE);
  }
  return pEntry->Pfnc;
}

uint32_t CPixelFormat::To_PFNC(GrbUsrFormat nUsrFormat) {
  const auto nFormat = static_cast<uint32_t>(nUsrFormat);
  const PixelFormatEntry *pEntry =
      Find([nFormat](const PixelFormatEntry &entry) { return entry.UsrFormat == nFormat; });
  if (pEntry == nullptr) {
    throw unknown_error("Unknown or unsupported GRB_USR_FORMAT: " + ToHex(nFormat), LVX_HERE);
  }
  return pEntry->Pfnc;
}

uint32_t CPixelFormat::To_PFNC(uint32_t nSrcCol, PixelDepth nDepth) {
  const auto nBits = static_cast<uint32_t>(nDepth);
  const PixelFormatEntry *pEntry = Find([nSrcCol, nBits](const PixelFormatEntry &entry) {
    return entry.SrcCol == nSrcCol && entry.BitsPerComponent == nBits;
  });
  if (pEntry == nullptr) {
    // Kept: the depth prints in hexadecimal, too.
    throw unknown_error(
        "Unknown or unsupported combination of GRB_SRC_COL: " + ToHex(nSrcCol) + " and pixel depth of: " + ToHex(nBits),
        LVX_HERE);
  }
  return pEntry->Pfnc;
}

uint32_t CPixelFormat::To_PFNC(uint32_t nSrcCol, GrbDstFormat nDstFormat) {
  const auto nFormat = static_cast<uint32_t>(nDstFormat);
  const PixelFormatEntry *pEntry = Find([nSrcCol, nFormat](const PixelFormatEntry &entry) {
    return entry.SrcCol == nSrcCol && entry.DstFormat == nFormat;
  });
  if (pEntry == nullptr) {
    throw unknown_error("Unknown or unsupported combination of GRB_SRC_COL: " + ToHex(nSrcCol) +
                            " and GRB_DST_FORMAT: " + ToHex(nFormat),
                        LVX_HERE);
  }
  return pEntry->Pfnc;
}

uint32_t CPixelFormat::To_GRB_DstFormat(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).DstFormat; }
uint32_t CPixelFormat::To_GRB_SrcCol(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).SrcCol; }
uint32_t CPixelFormat::To_GRB_UsrFormat(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).UsrFormat; }
uint32_t CPixelFormat::To_GRB_BusFormat(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).BusFormat; }
uint32_t CPixelFormat::GetBitsPerComponent(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).BitsPerComponent; }
uint32_t CPixelFormat::GetBytesPerPixel(uint32_t nPfnc) { return EntryOfPfnc(nPfnc, LVX_HERE).BytesPerPixel; }

}  // namespace GenICam::Client
