// SPDX-License-Identifier: MIT
#ifndef GRBSIM_PIXELLAYOUT_H
#define GRBSIM_PIXELLAYOUT_H

#include <cstdint>

#include "grblx64.h"

namespace grbsim {

/// What stands in the components of a pixel, and in which order.
enum class EPixelKind : uint8_t { Mono, BayerGR, BayerRG, BayerGB, BayerBG, Rgb, Bgr, Rgba, Yuv422 };

/// One pixel format in all its vocabularies, with what the renderer needs of it.
struct PixelLayout {
  uint32_t usrFormat;      // GRB_USR_FORMAT
  uint32_t busFormat;      // GRB_BUS_FORMAT
  uint32_t pfnc;           // value of the pixel format naming convention
  uint32_t cxpCode;        // code of the CoaXPress standard; 0 where it has none
  uint32_t sourceColour;   // GRB_CAM_SRC_COL
  uint32_t bits;           // of one component; in 16 bits, low end first, above 8
  uint32_t bytesPerPixel;  // in a destination
  EPixelKind kind;
};

/// The layout of a user format; null if there is none.
const PixelLayout *FindLayoutByUsrFormat(uint32_t usrFormat) noexcept;
/// The layout of a naming-convention value; null if there is none.
const PixelLayout *FindLayoutByPfnc(uint32_t pfnc) noexcept;

}  // namespace grbsim

#endif
