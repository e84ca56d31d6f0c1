// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A PNG file as it was stored, without any conversion. `bitDepth` 0: it could not be read.
struct PngFile {
  unsigned width = 0;
  unsigned height = 0;
  unsigned bitDepth = 0;
  unsigned channels = 0;
  unsigned significantBits = 0;
  std::vector<unsigned> samples;  // line by line, pixel by pixel
};

PngFile ReadPng(const std::string &file);
