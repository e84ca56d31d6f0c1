// SPDX-License-Identifier: MIT
#include "ReadPng.h"

#include <csetjmp>
#include <cstdio>
#include <memory>

#include <png.h>

namespace {

// libpng leaves this function by a jump, so nothing with a destructor may stand in it.
bool Decode(std::FILE *pFile, png_structp pPng, png_infop pInfo, png_bytepp *pRows) {
  if (setjmp(png_jmpbuf(pPng)) != 0) {
    return false;
  }
  png_init_io(pPng, pFile);
  png_read_png(pPng, pInfo, PNG_TRANSFORM_IDENTITY, nullptr);
  *pRows = png_get_rows(pPng, pInfo);
  return true;
}

}  // namespace

PngFile ReadPng(const std::string &file) {
  PngFile png;
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> pFile(std::fopen(file.c_str(), "rb"), std::fclose);
  if (!pFile) {
    return png;
  }
  png_structp pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop pInfo = png_create_info_struct(pPng);
  png_bytepp pRows = nullptr;
  if (Decode(pFile.get(), pPng, pInfo, &pRows)) {
    png.width = png_get_image_width(pPng, pInfo);
    png.height = png_get_image_height(pPng, pInfo);
    png.bitDepth = png_get_bit_depth(pPng, pInfo);
    png.channels = png_get_channels(pPng, pInfo);
    png_color_8p pBits = nullptr;
    if (png_get_sBIT(pPng, pInfo, &pBits) != 0) {
      png.significantBits = png.channels == 1 ? pBits->gray : pBits->green;
    }
    for (unsigned y = 0; y < png.height; ++y) {
      for (unsigned i = 0; i < png.width * png.channels; ++i) {
        png.samples.push_back(png.bitDepth == 16 ? pRows[y][2 * i] * 256U + pRows[y][2 * i + 1] : pRows[y][i]);
      }
    }
  }
  png_destroy_read_struct(&pPng, &pInfo, nullptr);
  return png;
}
