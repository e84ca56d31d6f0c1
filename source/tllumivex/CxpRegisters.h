// SPDX-License-Identifier: MIT
/// @file
/// Bootstrap registers of a CoaXPress camera (CoaXPress 1.1): 32 bits, big-endian, but for the texts.
#pragma once

#include <cstdint>

namespace GenICam::Client {

enum CxpRegister : uint32_t {
  CXP_REVISION = 0x0004,
  CXP_XML_MANIFEST_SIZE = 0x0008,
  CXP_XML_MANIFEST_SELECTOR = 0x000C,
  CXP_XML_VERSION = 0x0010,
  CXP_XML_SCHEMA_VERSION = 0x0014,
  CXP_XML_URL_ADDRESS = 0x0018,
  CXP_DEVICE_VENDOR_NAME = 0x2000,
  CXP_DEVICE_MODEL_NAME = 0x2020,
  CXP_WIDTH_ADDRESS = 0x3000,
  CXP_HEIGHT_ADDRESS = 0x3004,
  CXP_PIXEL_FORMAT_ADDRESS = 0x3014,
  CXP_CONNECTION_CONFIG = 0x4014,
};

/// Content of CXP_REVISION in a camera of revision 1.1.
constexpr uint32_t CXP_REVISION_1_1 = 0x00010001;

/// Between the order of the wire and that of the host.
constexpr uint32_t SwapBytes(uint32_t nValue) {
  return (nValue >> 24U) | ((nValue >> 8U) & 0xFF00U) | ((nValue << 8U) & 0xFF0000U) | (nValue << 24U);
}

}  // namespace GenICam::Client
