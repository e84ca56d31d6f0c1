// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace GenICam::Client {

/// @name The vocabularies that share the name To_PFNC
/// @{
enum class CoaXPressFormat : uint32_t {};
enum class GrbUsrFormat : uint32_t {};
enum class GrbDstFormat : uint32_t {};
enum class PixelDepth : uint32_t {};
/// @}

/// Translates pixel formats among PFNC values, CoaXPress codes and the library's constants, and tells their sizes.
///
/// Several PFNC values may share a library constant, so a way there and back need not end where it began.
/// All over one constant table of 41 rows; the first row that matches decides. No instances, no state: safe from any
/// thread. All operations throw unknown_error if no row matches.
class CPixelFormat {
 public:
  CPixelFormat() = delete;

  /// PFNC value of a CoaXPress pixel format code (CoaXPress 1.1).
  static uint32_t To_PFNC(CoaXPressFormat nCoaXPress);
  /// PFNC value of a value of GRB_USR_FORMAT.
  static uint32_t To_PFNC(GrbUsrFormat nUsrFormat);
  /// PFNC value of a value of GRB_CAM_SRC_COL and the bits of a component.
  static uint32_t To_PFNC(uint32_t nSrcCol, PixelDepth nDepth);
  /// PFNC value of a value of GRB_CAM_SRC_COL and a destination format.
  static uint32_t To_PFNC(uint32_t nSrcCol, GrbDstFormat nDstFormat);

  static uint32_t To_GRB_DstFormat(uint32_t nPfnc);
  static uint32_t To_GRB_SrcCol(uint32_t nPfnc);
  static uint32_t To_GRB_UsrFormat(uint32_t nPfnc);
  static uint32_t To_GRB_BusFormat(uint32_t nPfnc);
  /// Bits of one colour component.
  static uint32_t GetBitsPerComponent(uint32_t nPfnc);
  /// Bytes that one pixel takes in a buffer.
  static uint32_t GetBytesPerPixel(uint32_t nPfnc);
};

}  // namespace GenICam::Client
