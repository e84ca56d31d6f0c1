// SPDX-License-Identifier: MIT
#include "SimCamera.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "SimError.h"
#include "SimPlatform.h"

namespace grbsim {
namespace {

// Bootstrap registers of the CoaXPress standard.
constexpr uint32_t kStandard = 0x0000;
constexpr uint32_t kRevision = 0x0004;
constexpr uint32_t kXmlManifestSize = 0x0008;
constexpr uint32_t kXmlManifestSelector = 0x000C;
constexpr uint32_t kXmlVersion = 0x0010;
constexpr uint32_t kXmlSchemaVersion = 0x0014;
constexpr uint32_t kXmlUrlAddress = 0x0018;
constexpr uint32_t kIidc2Address = 0x001C;
constexpr uint32_t kDeviceVendorName = 0x2000;
constexpr uint32_t kDeviceModelName = 0x2020;
constexpr uint32_t kDeviceManufacturerInfo = 0x2040;
constexpr uint32_t kDeviceVersion = 0x2070;
constexpr uint32_t kDeviceSerialNumber = 0x20B0;
constexpr uint32_t kDeviceUserId = 0x20C0;
constexpr uint32_t kWidthAddress = 0x3000;
constexpr uint32_t kConnectionReset = 0x4000;
constexpr uint32_t kDeviceConnectionId = 0x4004;
constexpr uint32_t kMasterHostConnectionId = 0x4008;
constexpr uint32_t kControlPacketSizeMax = 0x400C;
constexpr uint32_t kStreamPacketSizeMax = 0x4010;
constexpr uint32_t kConnectionConfig = 0x4014;
constexpr uint32_t kConnectionConfigDefault = 0x4018;
constexpr uint32_t kTestMode = 0x401C;
constexpr uint32_t kTestErrorCountSelector = 0x4020;
constexpr uint32_t kTestErrorCount = 0x4024;
constexpr uint32_t kTestPacketCountTx = 0x4028;
constexpr uint32_t kTestPacketCountRx = 0x4030;

// The maker's own space.
constexpr uint32_t kWidth = 0x6000;
constexpr uint32_t kHeight = 0x6004;
constexpr uint32_t kPixelFormat = 0x6008;
constexpr uint32_t kAcquisitionMode = 0x600C;
constexpr uint32_t kAcquisitionStart = 0x6010;
constexpr uint32_t kAcquisitionStop = 0x6014;
constexpr uint32_t kTapGeometry = 0x6018;
constexpr uint32_t kImageStreamId = 0x601C;
constexpr uint32_t kAcquisitionFrameRate = 0x6020;
constexpr uint32_t kExposureTime = 0x6024;
constexpr uint32_t kTestPattern = 0x6028;
constexpr uint32_t kSensorWidth = 0x602C;
constexpr uint32_t kSensorHeight = 0x6030;
constexpr uint32_t kAcquisitionFrameCount = 0x6034;
constexpr uint32_t kDeviceTemperature = 0x6038;
constexpr uint32_t kXmlUrl = 0x7000;
constexpr uint32_t kXmlUrlBytes = 256;
constexpr uint32_t kXmlFile = 0x10000;

// Values of AcquisitionMode.
constexpr uint32_t kContinuous = 0;
constexpr uint32_t kSingleFrame = 1;
constexpr uint32_t kMultiFrame = 2;

// Codes of a control acknowledgement.
constexpr uint32_t kBadAddress = 0x40;
constexpr uint32_t kBadData = 0x41;
constexpr uint32_t kReadOnly = 0x43;
constexpr uint32_t kSizeMismatch = 0x46;

constexpr ValueRange kSelectors[] = {{0, 0}};  // one file in the manifest
constexpr ValueRange kOnOff[] = {{0, 1}};
constexpr ValueRange kLinks[] = {{0, 4}};
constexpr ValueRange kModes[] = {{kContinuous, kMultiFrame}};
constexpr ValueRange kPatterns[] = {{0, static_cast<uint64_t>(EPattern::HorizontalRampMoving)}};
constexpr ValueRange kLinkCounts[] = {{1, 2}, {4, 4}};
constexpr uint32_t kSpeeds[] = {0x28, 0x30, 0x38, 0x40, 0x48};

constexpr float kDefaultFrameRate = 100.0F;
constexpr float kLowestFrameRate = 0.1F;
constexpr float kHighestFrameRate = 100000.0F;
constexpr float kShortestExposure = 1.0F;        // us
constexpr float kLongestExposure = 10000000.0F;  // us

uint32_t BitsOf(float value) {
  uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

float FloatOf(uint32_t bits) {
  float value = 0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

// The wire is big-endian, whatever the host is.
uint32_t FromWire(const uint8_t *bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

void ToWire(uint8_t *bytes, uint32_t value) {
  for (int i = 0; i < 4; ++i) {
    bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
  }
}

const char *CodeText(uint32_t code) {
  switch (code) {
    case kBadAddress:
      return "invalid address";
    case kBadData:
      return "invalid data";
    case kReadOnly:
      return "write to a read-only address";
    default:
      return "size mismatch";
  }
}

[[noreturn]] void Refuse(const char *operation, uint32_t address, uint32_t code) {
  Fail(kStatusCameraRefused, "The camera refused to %s address 0x%08X: %s (acknowledgement 0x%02X).", operation,
       address, CodeText(code), code);
}

void RequireWords(const char *operation, uint32_t address, uint32_t size) {
  if (address % 4 != 0) {
    Refuse(operation, address, kBadAddress);
  }
  if (size % 4 != 0) {
    Refuse(operation, address, kSizeMismatch);
  }
}

float FrameRateAtPowerUp() {
  const std::optional<std::string> text = EnvironmentText("LUMIVEX_SIM_FPS");
  const float rate = text ? std::strtof(text->c_str(), nullptr) : kDefaultFrameRate;
  return rate > 0 ? std::clamp(rate, kLowestFrameRate, kHighestFrameRate) : kDefaultFrameRate;
}

}  // namespace

CSimCamera::CSimCamera(const CameraModel &model) : m_Model(model), m_PowerUpFrameRate(FrameRateAtPowerUp()) {
  BuildBootstrap();
  BuildFeatures();
  m_PowerUpBytes = m_Bytes;
}

void CSimCamera::AddBlock(uint32_t address, const unsigned char *data, uint32_t size) {
  const uint32_t bytes = (size + 3) / 4 * 4;
  m_Registers[address] = Register{address, bytes, false, {nullptr, 0}};
  std::vector<uint8_t> &block = m_Bytes[address];
  block.assign(data, data + size);
  block.resize(bytes);
}

void CSimCamera::AddWord(uint32_t address, uint32_t value, bool writable, ValueSet allowed) {
  unsigned char bytes[4];
  ToWire(bytes, value);
  AddBlock(address, bytes, sizeof(bytes));
  m_Registers[address].writable = writable;
  m_Registers[address].allowed = allowed;
}

void CSimCamera::AddRange(uint32_t address, uint32_t value, uint32_t first, uint32_t last) {
  m_Limits[address] = ValueRange{first, last};
  AddWord(address, value, true, ValueSet{&m_Limits[address], 1});
}

void CSimCamera::AddFloat(uint32_t address, float value, bool writable) { AddWord(address, BitsOf(value), writable); }

void CSimCamera::AddText(uint32_t address, uint32_t bytes, const char *text, bool writable) {
  std::vector<unsigned char> field(bytes);
  std::memcpy(field.data(), text, std::min<size_t>(std::strlen(text), bytes));
  AddBlock(address, field.data(), bytes);
  m_Registers[address].writable = writable;
}

void CSimCamera::BuildBootstrap() {
  AddWord(kStandard, 0xC0A79AE5);
  AddWord(kRevision, m_Model.revision);
  AddWord(kXmlManifestSize, 1);
  AddWord(kXmlManifestSelector, 0, true, SetOf(kSelectors));
  AddWord(kXmlVersion, 0x00010200);        // 1.2.0
  AddWord(kXmlSchemaVersion, 0x00010100);  // 1.1.0
  AddWord(kXmlUrlAddress, kXmlUrl);
  AddWord(kIidc2Address, 0);
  AddText(kDeviceVendorName, 32, m_Model.vendor);
  AddText(kDeviceModelName, 32, m_Model.model);
  AddText(kDeviceManufacturerInfo, 48, m_Model.manufacturerInfo);
  AddText(kDeviceVersion, 32, m_Model.version);
  AddText(kDeviceSerialNumber, 16, m_Model.serialNumber);
  AddText(kDeviceUserId, 16, "", true);
  uint32_t address = kWidthAddress;
  for (const uint32_t feature : {kWidth, kHeight, kAcquisitionMode, kAcquisitionStart, kAcquisitionStop, kPixelFormat,
                                 kTapGeometry, kImageStreamId}) {
    AddWord(address, feature);
    address += 4;
  }
  AddWord(kConnectionReset, 0, true, SetOf(kOnOff));
  AddWord(kDeviceConnectionId, 0);
  AddWord(kMasterHostConnectionId, 1, true);
  AddWord(kControlPacketSizeMax, 128);
  AddRange(kStreamPacketSizeMax, 4096, 32, 65536);
  AddWord(kConnectionConfig, m_Model.linkConfig, true);
  AddWord(kConnectionConfigDefault, m_Model.linkConfig);
  AddWord(kTestMode, 0, true, SetOf(kOnOff));
  AddWord(kTestErrorCountSelector, 0, true, SetOf(kLinks));
  AddWord(kTestErrorCount, 0, true);
  for (const uint32_t counter : {kTestPacketCountTx, kTestPacketCountRx}) {
    AddWord(counter, 0);
    AddWord(counter + 4, 0);
  }
}

void CSimCamera::BuildFeatures() {
  AddRange(kWidth, m_Model.width, 16, m_Model.width);
  AddRange(kHeight, m_Model.height, 1, m_Model.height);
  AddWord(kPixelFormat, m_Model.pixelFormat, true, m_Model.pixelFormats);
  AddWord(kAcquisitionMode, kContinuous, true, SetOf(kModes));
  AddWord(kAcquisitionStart, 0, true);
  AddWord(kAcquisitionStop, 0, true);
  AddWord(kTapGeometry, 0);
  AddWord(kImageStreamId, 1);
  AddFloat(kAcquisitionFrameRate, m_PowerUpFrameRate, true);
  AddFloat(kExposureTime, 5000.0F, true);
  AddWord(kTestPattern, static_cast<uint32_t>(EPattern::MovingDiagonal), true, SetOf(kPatterns));
  AddWord(kSensorWidth, m_Model.width);
  AddWord(kSensorHeight, m_Model.height);
  AddRange(kAcquisitionFrameCount, 1, 1, 65535);
  AddFloat(kDeviceTemperature, 41.5F, false);

  char url[kXmlUrlBytes];
  std::snprintf(url, sizeof(url), "Local:%s;%X;%zX", m_Model.xmlName, kXmlFile, *m_Model.xmlSize);
  AddText(kXmlUrl, kXmlUrlBytes, url);
  AddBlock(kXmlFile, m_Model.xml, static_cast<uint32_t>(*m_Model.xmlSize));
}

void CSimCamera::PowerUp() {
  std::vector<uint8_t> userId = m_Bytes[kDeviceUserId];
  m_Bytes = m_PowerUpBytes;
  m_Bytes[kDeviceUserId] = std::move(userId);
  m_bAcquiring = true;
  m_iFramesLeft = 0;
}

const CSimCamera::Register *CSimCamera::Find(uint32_t address) const noexcept {
  auto next = m_Registers.upper_bound(address);
  if (next == m_Registers.begin()) {
    return nullptr;
  }
  const Register &candidate = std::prev(next)->second;
  return address - candidate.address < candidate.bytes ? &candidate : nullptr;
}

uint32_t CSimCamera::Word(uint32_t address) const { return FromWire(m_Bytes.at(address).data()); }

void CSimCamera::SetWord(uint32_t address, uint32_t value) { ToWire(m_Bytes.at(address).data(), value); }

void CSimCamera::Read(uint32_t address, uint8_t *buffer, uint32_t size, uint32_t &moved) {
  moved = 0;
  RequireWords("read", address, size);
  std::lock_guard<std::mutex> lock(m_Lock);
  while (moved < size) {
    const uint32_t current = address + moved;
    const Register *source = Find(current);
    if (source == nullptr) {
      Refuse("read", current, kBadAddress);
    }
    const uint32_t offset = current - source->address;
    const uint32_t bytes = std::min(size - moved, source->bytes - offset);
    std::memcpy(buffer + moved, m_Bytes.at(source->address).data() + offset, bytes);
    moved += bytes;
  }
}

void CSimCamera::CheckValue(const Register &target, uint32_t address, uint32_t value) const {
  bool allowed = target.allowed.count == 0 || target.allowed.Contains(value);
  switch (address) {
    case kStreamPacketSizeMax:
      allowed = allowed && value % 4 == 0;
      break;
    case kConnectionConfig:
      allowed = IsInRanges(kLinkCounts, value >> 16) &&
                std::find(std::begin(kSpeeds), std::end(kSpeeds), value & 0xFFFFU) != std::end(kSpeeds);
      break;
    case kWidth:
      allowed = allowed && value % 16 == 0;
      break;
    case kAcquisitionFrameRate:
      allowed = FloatOf(value) >= kLowestFrameRate && FloatOf(value) <= kHighestFrameRate;
      break;
    case kExposureTime:
      allowed = FloatOf(value) >= kShortestExposure && FloatOf(value) <= kLongestExposure;
      break;
    default:
      break;
  }
  if (!allowed) {
    Refuse("write", address, kBadData);
  }
}

void CSimCamera::Write(uint32_t address, const uint8_t *buffer, uint32_t size, uint32_t &moved) {
  moved = 0;
  RequireWords("write", address, size);
  std::lock_guard<std::mutex> lock(m_Lock);
  for (; moved < size; moved += 4) {
    const uint32_t current = address + moved;
    const Register *target = Find(current);
    if (target == nullptr) {
      Refuse("write", current, kBadAddress);
    }
    if (!target->writable) {
      Refuse("write", current, kReadOnly);
    }
    const uint32_t value = FromWire(buffer + moved);
    CheckValue(*target, current, value);
    std::memcpy(m_Bytes.at(target->address).data() + (current - target->address), buffer + moved, 4);
    Act(current, value);
  }
}

void CSimCamera::Act(uint32_t address, uint32_t value) {
  switch (address) {
    case kConnectionReset:
      if (value == 1) {
        PowerUp();
      }
      break;
    case kTestMode:
      // The counters show the packets of a test that ran without a fault.
      for (const uint32_t counter : {kTestPacketCountTx, kTestPacketCountRx}) {
        SetWord(counter + 4, Word(counter + 4) + (value == 1 ? 1024U : 0U));
      }
      break;
    case kTestErrorCount:
      SetWord(kTestErrorCount, 0);
      break;
    case kAcquisitionStart: {
      SetWord(kAcquisitionStart, 0);
      const uint32_t mode = Word(kAcquisitionMode);
      m_bAcquiring = true;
      m_iFramesLeft = mode == kSingleFrame ? 1 : mode == kMultiFrame ? Word(kAcquisitionFrameCount) : 0;
      break;
    }
    case kAcquisitionStop:
      SetWord(kAcquisitionStop, 0);
      m_bAcquiring = false;
      m_iFramesLeft = 0;
      break;
    default:
      break;
  }
}

bool CSimCamera::TakeFrame() {
  std::lock_guard<std::mutex> lock(m_Lock);
  if (m_bAcquiring && m_iFramesLeft != 0) {
    m_bAcquiring = --m_iFramesLeft != 0;
    return true;
  }
  return m_bAcquiring;
}

bool CSimCamera::IsSending() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_bAcquiring;
}

double CSimCamera::FrameRate() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return static_cast<double>(FloatOf(Word(kAcquisitionFrameRate)));
}

EPattern CSimCamera::Pattern() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return static_cast<EPattern>(Word(kTestPattern));
}

uint32_t CSimCamera::LinkConfig() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return Word(kConnectionConfig);
}

void CSimCamera::SetLink(uint32_t links, uint32_t speed) {
  const auto part = [&](uint32_t wanted, uint32_t mask) {
    return wanted != 0 ? wanted & mask : m_Model.linkConfig & mask;
  };
  std::lock_guard<std::mutex> lock(m_Lock);
  SetWord(kConnectionConfig, part(links, 0xFFFF0000U) | part(speed, 0x0000FFFFU));
}

}  // namespace grbsim
