// SPDX-License-Identifier: MIT
#include "CameraModel.h"

#include <iterator>

#include "CameraXml.h"

namespace grbsim {
namespace {

constexpr uint32_t kCxpMono8 = 0x0101;
constexpr uint32_t kCxpMono12 = 0x0103;
constexpr uint32_t kPfncMono8 = 0x01080001;
constexpr uint32_t kPfncRgb8 = 0x02180014;

// A camera of revision 1.0 tells CoaXPress codes, one of 1.1 values of the pixel format naming convention.
constexpr ValueRange kMonochromeFormats[] = {{kCxpMono8, kCxpMono12}};
constexpr ValueRange kColourFormats[] = {{kPfncMono8, kPfncMono8},
                                         {0x01080009, 0x01080009},  // BayerRG8
                                         {0x01100011, 0x01100011},  // BayerRG12
                                         {kPfncRgb8, kPfncRgb8},
                                         {0x02300033, 0x02300033}};  // RGB16

const CameraModel kModels[] = {
    {0x00010000, "Lumivex", "LX-M1300", "Simulated monochrome camera", "1.2.0", "LXM13-000417", 1280, 1024, kPfncMono8,
     kCxpMono8, SetOf(kMonochromeFormats), 0x00020048, "LX-M1300.xml", g_MonochromeCameraXml,
     &g_MonochromeCameraXmlSize},
    {0x00010001, "Lumivex", "LX-C2000", "Simulated colour camera", "2.0.1", "LXC20-000093", 1920, 1080, kPfncRgb8,
     kPfncRgb8, SetOf(kColourFormats), 0x00040048, "LX-C2000.xml", g_ColourCameraXml, &g_ColourCameraXmlSize}};

}  // namespace

const CameraModel *CameraModelOfChannel(uint32_t channel) noexcept {
  return channel >= 1 && channel <= std::size(kModels) ? &kModels[channel - 1] : nullptr;
}

}  // namespace grbsim
