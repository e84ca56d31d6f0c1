// SPDX-License-Identifier: MIT
#include "Settings.h"

#include "RegKey.h"
#include "TLIClient.h"

namespace GenICam::Client::Settings {

namespace {

/// A text that stays while there may be threads in the exports.
union Text {
  Text() : strText() {}
  Text(const Text &) = delete;
  Text &operator=(const Text &) = delete;
  ~Text() {
    if (!MayBeInUseAtTheEnd()) {
      strText.~basic_string();
    }
  }
  std::string strText;
};

Text g_DebugInfoOutputDir;
Text g_DebugCameraURL;

}  // namespace

std::string &DebugInfoOutputDir = g_DebugInfoOutputDir.strText;
std::string &DebugCameraURL = g_DebugCameraURL.strText;
bool DebugOutputEnable = false;
bool DebugAllowPopupsFromGrabline = false;
bool EnableDebugCameraURL = false;
uint32_t TimeOut = 800;
bool Cxpv11Enable = false;
uint32_t Cxpv11PixelFormatAddress = 0;
uint32_t Cxpv11WidthAddress = 0;
uint32_t Cxpv11HeightAddress = 0;

namespace {

constexpr const char *kKey = "SOFTWARE\\Lumivex\\GenTL";

void Assign(bool &bVariable, const regkey::value &value) {
  if (!value.IsEmpty()) {
    bVariable = value.AsNumber() != 0;
  }
}

void Assign(uint32_t &nVariable, const regkey::value &value) {
  if (!value.IsEmpty()) {
    nVariable = value.AsNumber();
  }
}

void ReadFrom(const regkey &key) {
  const regkey::value folder = key.Query("DebugInfoOutputDir", "DebugOutputXML");
  if (!folder.IsEmpty()) {
    DebugInfoOutputDir = folder.AsText();
  }
  const regkey::value url = key.Query("DebugCameraURL");
  if (!url.IsEmpty() && !url.AsText().empty()) {
    DebugCameraURL = "file:///" + url.AsText();
  }
  Assign(DebugOutputEnable, key.Query("DebugOutputEnable", "DebugOutputDebugString"));
  Assign(DebugAllowPopupsFromGrabline, key.Query("DebugAllowPopupsFromGrabline"));
  const regkey::value enableUrl = key.Query("EnableDebugCameraURL");
  if (enableUrl.IsEmpty()) {
    EnableDebugCameraURL = !DebugCameraURL.empty();
  } else {
    EnableDebugCameraURL = enableUrl.AsNumber() != 0;
  }
  Assign(TimeOut, key.Query("TimeOut"));
  Assign(Cxpv11Enable, key.Query("Cxpv11Enable"));
  Assign(Cxpv11PixelFormatAddress, key.Query("Cxpv11PixelFormatAddress"));
  Assign(Cxpv11WidthAddress, key.Query("Cxpv11WidthAddress"));
  Assign(Cxpv11HeightAddress, key.Query("Cxpv11HeightAddress"));
}

}  // namespace

void ReadSettings() {
  try {
    const regkey key(kKey);
    if (key.IsOpen()) {
      ReadFrom(key);
    }
  } catch (...) {
    // Kept: a text in place of a number ends the reading there, without a trace.
  }
}

}  // namespace GenICam::Client::Settings
