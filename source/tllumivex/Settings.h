// SPDX-License-Identifier: MIT
/// @file
/// The maintenance settings: process-wide values, written by GCInitLib and at no other time, read by whoever needs
/// them. No lock: GCInitLib runs alone. A value that is gone from the store keeps what it held.
#pragma once

#include <cstdint>
#include <string>

namespace GenICam::Client::Settings {

/// `DebugInfoOutputDir`, older `DebugOutputXML`: folder for the dump of the camera's XML.
extern std::string &DebugInfoOutputDir;
/// `DebugCameraURL`, with "file:///" in front of it.
extern std::string &DebugCameraURL;
/// `DebugOutputEnable`, older `DebugOutputDebugString`: the dump is on.
extern bool DebugOutputEnable;
/// `DebugAllowPopupsFromGrabline`. Kept: stored, and nothing looks at it.
extern bool DebugAllowPopupsFromGrabline;
/// `EnableDebugCameraURL`: the remote port answers with DebugCameraURL.
extern bool EnableDebugCameraURL;
/// `TimeOut` of camera register transfers, in the frame-grabber library's unit.
extern uint32_t TimeOut;
/// `Cxpv11Enable`: take the image format addresses from the next three.
extern bool Cxpv11Enable;
/// Camera register addresses of the image format, for cameras that do not publish them.
extern uint32_t Cxpv11PixelFormatAddress;
extern uint32_t Cxpv11WidthAddress;
extern uint32_t Cxpv11HeightAddress;

/// Reads all settings from the store. No failure is ever reported: what was read before a fault holds.
void ReadSettings();

}  // namespace GenICam::Client::Settings
