// SPDX-License-Identifier: MIT
#ifndef GRBSIM_CAMERAMODEL_H
#define GRBSIM_CAMERAMODEL_H

#include <cstddef>
#include <cstdint>

#include "ValueRange.h"

namespace grbsim {

/// What tells one camera model from another: identity, sensor, link and description.
struct CameraModel {
  uint32_t revision;  // of CoaXPress: major in the upper half, minor in the lower
  const char *vendor;
  const char *model;
  const char *manufacturerInfo;
  const char *version;
  const char *serialNumber;
  uint32_t width;  // of the sensor, in pixels
  uint32_t height;
  uint32_t pfnc;          // pixel format at power-up
  uint32_t pixelFormat;   // the same as the camera's own register holds it
  ValueSet pixelFormats;  // what that register accepts
  uint32_t linkConfig;    // ConnectionConfigDefault
  const char *xmlName;
  const unsigned char *xml;
  const size_t *xmlSize;
};

/// The cameras behind channel 1 and up; null where none is connected.
const CameraModel *CameraModelOfChannel(uint32_t channel) noexcept;

}  // namespace grbsim

#endif
