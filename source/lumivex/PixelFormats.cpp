// SPDX-License-Identifier: MIT
#include "PixelFormats.h"

#include "Text.h"

namespace Lumivex::Consumer {
namespace {

constexpr PixelFormatRow kPixelFormats[] = {
    // value    name        layout             bits bytes
    {0x01080001, "Mono8", PixelLayout::Grey, 8, 1},      {0x01100003, "Mono10", PixelLayout::Grey, 10, 2},
    {0x01100005, "Mono12", PixelLayout::Grey, 12, 2},    {0x01100025, "Mono14", PixelLayout::Grey, 14, 2},
    {0x01100007, "Mono16", PixelLayout::Grey, 16, 2},    {0x01080008, "BayerGR8", PixelLayout::Grey, 8, 1},
    {0x0110000C, "BayerGR10", PixelLayout::Grey, 10, 2}, {0x01100010, "BayerGR12", PixelLayout::Grey, 12, 2},
    {0x01100014, "BayerGR14", PixelLayout::Grey, 14, 2}, {0x0110002E, "BayerGR16", PixelLayout::Grey, 16, 2},
    {0x01080009, "BayerRG8", PixelLayout::Grey, 8, 1},   {0x0110000D, "BayerRG10", PixelLayout::Grey, 10, 2},
    {0x01100011, "BayerRG12", PixelLayout::Grey, 12, 2}, {0x01100015, "BayerRG14", PixelLayout::Grey, 14, 2},
    {0x0110002F, "BayerRG16", PixelLayout::Grey, 16, 2}, {0x0108000A, "BayerGB8", PixelLayout::Grey, 8, 1},
    {0x0110000E, "BayerGB10", PixelLayout::Grey, 10, 2}, {0x01100012, "BayerGB12", PixelLayout::Grey, 12, 2},
    {0x01100016, "BayerGB14", PixelLayout::Grey, 14, 2}, {0x01100030, "BayerGB16", PixelLayout::Grey, 16, 2},
    {0x0108000B, "BayerBG8", PixelLayout::Grey, 8, 1},   {0x0110000F, "BayerBG10", PixelLayout::Grey, 10, 2},
    {0x01100013, "BayerBG12", PixelLayout::Grey, 12, 2}, {0x01100017, "BayerBG14", PixelLayout::Grey, 14, 2},
    {0x01100031, "BayerBG16", PixelLayout::Grey, 16, 2}, {0x02180014, "RGB8", PixelLayout::Rgb, 8, 3},
    {0x02300018, "RGB10", PixelLayout::Rgb, 10, 6},      {0x0230001A, "RGB12", PixelLayout::Rgb, 12, 6},
    {0x0230005E, "RGB14", PixelLayout::Rgb, 14, 6},      {0x02300033, "RGB16", PixelLayout::Rgb, 16, 6},
    {0x02180015, "BGR8", PixelLayout::Bgr, 8, 3},        {0x02300019, "BGR10", PixelLayout::Bgr, 10, 6},
    {0x0230001B, "BGR12", PixelLayout::Bgr, 12, 6},      {0x0230004A, "BGR14", PixelLayout::Bgr, 14, 6},
    {0x0230004B, "BGR16", PixelLayout::Bgr, 16, 6},      {0x02200016, "RGBa8", PixelLayout::Rgba, 8, 4},
    {0x0240005F, "RGBa10", PixelLayout::Rgba, 10, 8},    {0x02400061, "RGBa12", PixelLayout::Rgba, 12, 8},
    {0x02400063, "RGBa14", PixelLayout::Rgba, 14, 8},    {0x02400064, "RGBa16", PixelLayout::Rgba, 16, 8},
    {0x02100032, "YUV422_8", PixelLayout::Yuyv, 8, 2},
};

}  // namespace

const PixelFormatRow *FindPixelFormat(uint64_t value) noexcept {
  for (const PixelFormatRow &row : kPixelFormats) {
    if (row.value == value) {
      return &row;
    }
  }
  return nullptr;
}

std::string PixelFormatName(uint64_t value) {
  const PixelFormatRow *pRow = FindPixelFormat(value);
  return pRow != nullptr ? pRow->name : Hexadecimal(value);
}

}  // namespace Lumivex::Consumer
