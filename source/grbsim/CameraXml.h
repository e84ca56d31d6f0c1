// SPDX-License-Identifier: MIT
/// The GenICam descriptions that the cameras carry: the files of the folder xml, turned into data by the build.
#ifndef GRBSIM_CAMERAXML_H
#define GRBSIM_CAMERAXML_H

#include <cstddef>

extern const unsigned char g_MonochromeCameraXml[];
extern const std::size_t g_MonochromeCameraXmlSize;
extern const unsigned char g_ColourCameraXml[];
extern const std::size_t g_ColourCameraXmlSize;

#endif
