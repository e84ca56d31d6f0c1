// SPDX-License-Identifier: MIT
#include "DeviceImpl.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

#include "DeviceRegisters.h"
#include "GrbChannelHandle.h"
#include "GrbError.h"
#include "GrbStreamHandle.h"
#include "Helper.h"
#include "PixelFormat.h"
#include "Platform.h"
#include "Settings.h"
#include "TLIException.h"
#include "grbhelper.h"

namespace GenICam::Client {

namespace {

/// A failure names the operation that was asked for, not the helper that found it.
constexpr const char *kSetFunction = "GenICam::Client::CDeviceImpl::SetVirtualRegister";
constexpr const char *kGetFunction = "GenICam::Client::CDeviceImpl::GetVirtualRegister";

/// The letters of GRB_Register_Command. The whole 32-bit value counts.
constexpr uint32_t kCommandWrite = 'W';
constexpr uint32_t kCommandRead = 'R';

/// Kept: answers 1, though no register of the map has this address.
constexpr uint32_t kAddressOfOne = 0x1C4;

struct FilterFloor {
  uint32_t nId;
  uint64_t nNanoseconds;
};
constexpr FilterFloor kFilterFloors[] = {
    {GRB_FGTRIG_FILTER_NS, 66},
    {GRB_CAMTRIG_FILTER_NS, 66},
    {GRB_CAMTRIG_ENCODER_FILTER_NS, 2000},
};

/// The caller's memory may have any alignment.
template <class Value>
Value ValueIn(const void *pBuffer) {
  Value value = 0;
  std::memcpy(&value, pBuffer, sizeof(value));
  return value;
}

template <class Value>
void Answer(void *pBuffer, size_t *piSize, Value value) {
  INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
  SetReturnParam(pBuffer, piSize, &iType, value);
}

/// The mask of an I/O bit, counted from 1.
uint32_t BitMask(uint32_t nBit) { return nBit > 1 ? 1U << ((nBit - 1) & 31U) : 1U; }

}  // namespace

// Sorted by address.
constexpr CDeviceImpl::Row CDeviceImpl::kRows[] = {
    // address, name in messages, write identifier, read identifier, bits, write, read
    {0x04FC, "GRB_Handle", 0, 0, 32, nullptr, &CDeviceImpl::ReadHandle},
    {0x0600, "SCAN_TYPE", 0, 0, 32, &CDeviceImpl::WriteScanType, &CDeviceImpl::ReadScanType},
    {0x0604, "WIDTH", 0, 0, 32, &CDeviceImpl::WriteWidth, &CDeviceImpl::ReadWidth},
    {0x060C, "HEIGHT", 0, 0, 32, &CDeviceImpl::WriteHeight, &CDeviceImpl::ReadHeight},
    {0x0614, "INCOMING_WIDTH", GRB_CAM_ACTIVE_XLENGTH, GRB_CAM_ACTIVE_XLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x0618, "INCOMING_HEIGHT", GRB_CAM_ACTIVE_YLENGTH, GRB_CAM_ACTIVE_YLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x061C, "INCOMING_PIXELFORMAT", 0, 0, 32, &CDeviceImpl::WriteIncomingPixelFormat,
     &CDeviceImpl::ReadIncomingPixelFormat},
    {0x0620, "PIXELFORMAT", 0, 0, 32, &CDeviceImpl::WritePixelFormat, &CDeviceImpl::ReadPixelFormat},
    {0x0624, "DECIMATION_HORIZONTAL", GRB_ACQ_XSUB, GRB_ACQ_XSUB, 32, &CDeviceImpl::WriteDecimation,
     &CDeviceImpl::ReadDecimation},
    {0x0628, "DECIMATION_VERTICAL", GRB_ACQ_YSUB, GRB_ACQ_YSUB, 32, &CDeviceImpl::WriteDecimation,
     &CDeviceImpl::ReadDecimation},
    {0x062C, "OFFSETX", GRB_ROI_SRC_XOFFSET, GRB_ROI_SRC_XOFFSET, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x0630, "OFFSETY", GRB_ROI_SRC_YOFFSET, GRB_ROI_SRC_YOFFSET, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1000, "GRB_BOARD_INFO", 0, GRB_BOARD_INFO, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1004, "GRB_BOARD_PROPERTIES", 0, GRB_BOARD_PROPERTIES, 32, nullptr, &CDeviceImpl::ReadBoardProperties},
    {0x1408, "GRB_REV_HW_MAJOR", GRB_REV_HW_MAJOR, GRB_REV_HW_MAJOR, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x140C, "GRB_REV_HW_MINOR", GRB_REV_HW_MINOR, GRB_REV_HW_MINOR, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1410, "GRB_REV_HW_SUBMINOR", GRB_REV_HW_SUBMINOR, GRB_REV_HW_SUBMINOR, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1414, "GRB_REV_HW", GRB_REV_HW, GRB_REV_HW, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1418, "GRB_CAM_TYPE", GRB_CAM_TYPE, GRB_CAM_TYPE, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x141C, "GRB_CAM_SRC_DEPTH", GRB_CAM_SRC_DEPTH, GRB_CAM_SRC_DEPTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1420, "GRB_CAM_ACTIVE_XLENGTH", GRB_CAM_ACTIVE_XLENGTH, GRB_CAM_ACTIVE_XLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1424, "GRB_CAM_ACTIVE_YLENGTH", GRB_CAM_ACTIVE_YLENGTH, GRB_CAM_ACTIVE_YLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1428, "GRB_ACQ_XSUB", GRB_ACQ_XSUB, GRB_ACQ_XSUB, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x142C, "GRB_ACQ_YSUB", GRB_ACQ_YSUB, GRB_ACQ_YSUB, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1430, "GRB_ROI_XLENGTH", GRB_ROI_XLENGTH, GRB_ROI_XLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1434, "GRB_ROI_YLENGTH", GRB_ROI_YLENGTH, GRB_ROI_YLENGTH, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x143C, "GRB_CAM_SRC_COL", GRB_CAM_SRC_COL, GRB_CAM_SRC_COL, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1440, "GRB_PCIE_INFO", GRB_PCIE_INFO, GRB_PCIE_INFO, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1444, "GRB_LUT_SHIFT", GRB_LUT_SHIFT, GRB_LUT_SHIFT, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1448, "GRB_CONFIG_FILE_LOAD", 0, 0, 32, &CDeviceImpl::LoadConfigFile, nullptr},
    {0x184C, "GRB_ACQ_BLOCKING", GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1850, "GRB_IO_OUT_PORT", 0, 0, 32, &CDeviceImpl::WriteIoOutPort, &CDeviceImpl::ReadIoOutPort},
    {0x1858, "GRB_IO_OUT_METHOD", 0, 0, 32, &CDeviceImpl::WriteIoOutMethod, &CDeviceImpl::ReadIoOutMethod},
    {0x185C, "GRB_IO_OUT_BIT", 0, 0, 32, &CDeviceImpl::WriteIoOutBit, &CDeviceImpl::ReadIoOutBit},
    {0x1860, "GRB_IO_IN_PORT", 0, 0, 32, &CDeviceImpl::WriteIoInPort, &CDeviceImpl::ReadIoInPort},
    {0x1864, "GRB_IO_IN_VALUE", 0, 0, 32, nullptr, &CDeviceImpl::ReadIoInValue},
    {0x186C, "GRB_ROI_SRC_XOFFSET", 0, GRB_ROI_SRC_XOFFSET, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1870, "GRB_ROI_SRC_YOFFSET", 0, GRB_ROI_SRC_YOFFSET, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1874, "GRB_REV_SW_MAJOR", 0, GRB_REV_SW_MAJOR, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1878, "GRB_REV_SW_MINOR", 0, GRB_REV_SW_MINOR, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x187C, "GRB_REV_SW_SUBMINOR", 0, GRB_REV_SW_SUBMINOR, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1880, "GRB_REV_SW", 0, GRB_REV_SW, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1C84, "GRB_CONFIG_FILE_SAVE", 0, 0, 32, &CDeviceImpl::SaveConfigFile, nullptr},
    {0x1C88, "GRB_CAM_FORMAT", GRB_CAM_FORMAT, GRB_CAM_FORMAT, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1C8C, "GRB_ACQ_FIELD_MODE", GRB_ACQ_FIELD_MODE, GRB_ACQ_FIELD_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1C90, "GRB_LUT_BYPASS", GRB_LUT_BYPASS, GRB_LUT_BYPASS, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x1C94, "GRB_ROI_DST_XOFFSET", GRB_ROI_DST_XOFFSET, GRB_ROI_DST_XOFFSET, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1C98, "GRB_ROI_DST_YOFFSET", GRB_ROI_DST_YOFFSET, GRB_ROI_DST_YOFFSET, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1C9C, "GRB_DATASTREAM_VALID", GRB_DATASTREAM_VALID, GRB_DATASTREAM_VALID, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x1CA0, "GRB_CACHE_FLUSH", GRB_CACHE_FLUSH, 0, 32, &CDeviceImpl::FlushCache, nullptr},
    // Kept: a failed read of the bus format names the user format.
    {0x1CA4, "GRB_USR_FORMAT", 0, GRB_BUS_FORMAT, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x1CA8, "GRB_USR_FORMAT", 0, GRB_USR_FORMAT, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x2004, "GRB_CAMTRIG_SRC", GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2008, "GRB_CAMTRIG_ENCODER_MODE", GRB_CAMTRIG_ENCODER_MODE, GRB_CAMTRIG_ENCODER_MODE, 32,
     &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x200C, "GRB_CAMTRIG_ENCODER_SRC", GRB_CAMTRIG_ENCODER_SRC, GRB_CAMTRIG_ENCODER_SRC, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2010, "GRB_CAMTRIG_MULTIPLIER", GRB_CAMTRIG_MULTIPLIER, GRB_CAMTRIG_MULTIPLIER, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2014, "GRB_CAMTRIG_DIVIDER", GRB_CAMTRIG_DIVIDER, GRB_CAMTRIG_DIVIDER, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2018, "GRB_CAMTRIG_DELAY_MODE_D1CAM", GRB_CAMTRIG_DELAY_MODE_D1CAM, GRB_CAMTRIG_DELAY_MODE_D1CAM, 32,
     &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x201C, "GRB_CAMTRIG_CXPTRIG_SRC", GRB_CAMTRIG_CXPTRIG_SRC, GRB_CAMTRIG_CXPTRIG_SRC, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2020, "GRB_CAMTRIG_CXPTRIG_MODE", GRB_CAMTRIG_CXPTRIG_MODE, GRB_CAMTRIG_CXPTRIG_MODE, 32,
     &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x2024, "GRB_FGTRIG_SRC", GRB_FGTRIG_SRC, GRB_FGTRIG_SRC, 32, &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x2028, "GRB_FGTRIG_MODE", GRB_FGTRIG_MODE, GRB_FGTRIG_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x202C, "GRB_FGTRIG_DELAY_MODE", GRB_FGTRIG_DELAY_MODE, GRB_FGTRIG_DELAY_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2030, "GRB_COUNT_BUFFER_READY", GRB_COUNT_BUFFER_READY, GRB_COUNT_BUFFER_READY, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2034, "GRB_TIMERA1_PERIOD_NS", GRB_TIMERA1_PERIOD_NS, GRB_TIMERA1_PERIOD_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x203C, "GRB_TIMERD1FG_VALUE_NS", GRB_TIMERD1FG_VALUE_NS, GRB_TIMERD1FG_VALUE_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2044, "GRB_TIMERD1CAM_VALUE_NS", GRB_TIMERD1CAM_VALUE_NS, GRB_TIMERD1CAM_VALUE_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x204C, "GRB_TIMERM1_WIDTH_NS", GRB_TIMERM1_WIDTH_NS, GRB_TIMERM1_WIDTH_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2054, "GRB_TIMERM2_WIDTH_NS", GRB_TIMERM2_WIDTH_NS, GRB_TIMERM2_WIDTH_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x205C, "GRB_FGTRIG_FILTER_NS", GRB_FGTRIG_FILTER_NS, GRB_FGTRIG_FILTER_NS, 64, &CDeviceImpl::WriteFilter,
     &CDeviceImpl::ReadPlain},
    {0x2064, "GRB_CAMTRIG_FILTER_NS", GRB_CAMTRIG_FILTER_NS, GRB_CAMTRIG_FILTER_NS, 64, &CDeviceImpl::WriteFilter,
     &CDeviceImpl::ReadPlain},
    {0x206C, "GRB_CAMTRIG_ENCODER_FILTER_NS", GRB_CAMTRIG_ENCODER_FILTER_NS, GRB_CAMTRIG_ENCODER_FILTER_NS, 64,
     &CDeviceImpl::WriteFilter, &CDeviceImpl::ReadPlain},
    {0x2074, "GRB_EXPOSE", GRB_EXPOSE, 0, 32, &CDeviceImpl::Expose, nullptr},
    {0x2078, "GRB_CAMTRIG_DELAY_MODE_D2CAM", GRB_CAMTRIG_DELAY_MODE_D2CAM, GRB_CAMTRIG_DELAY_MODE_D2CAM, 32,
     &CDeviceImpl::WritePlain, &CDeviceImpl::ReadPlain},
    {0x207C, "GRB_TIMERD1FG_COUNT", GRB_TIMERD1FG_COUNT, GRB_TIMERD1FG_COUNT, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x208C, "GRB_TIMERD2CAM_VALUE_NS", GRB_TIMERD2CAM_VALUE_NS, GRB_TIMERD2CAM_VALUE_NS, 64, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x209C, "GRB_TIMERA1_MODE", GRB_TIMERA1_MODE, GRB_TIMERA1_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x20A0, "GRB_TIMERA1_PULSE_COUNT", GRB_TIMERA1_PULSE_COUNT, GRB_TIMERA1_PULSE_COUNT, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x20A4, "GRB_TIMERA1_SWTRIG", GRB_TIMERA1_SWTRIG_NOW, 0, 32, &CDeviceImpl::TriggerTimerA1, nullptr},
    {0x20B4, "GRB_COUNT_BUFFER_READY_NOW", 0, GRB_COUNT_BUFFER_READY_NOW, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x2204, "CXP_BITRATE_MODE", GRB_CXP_BITRATE_MODE_NOW, GRB_CXP_BITRATE_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2208, "CXP_BITRATE", 0, GRB_CXP_BITRATE, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x220C, "CXP_POCXP_MODE", GRB_CXP_POCXP_MODE_NOW, GRB_CXP_POCXP_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2210, "CXP_DISCOVERY_MODE", GRB_CXP_DISCOVERY_MODE_NOW, GRB_CXP_DISCOVERY_MODE, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2214, "CXP_DISCOVERY", 0, GRB_CXP_DISCOVERY, 32, nullptr, &CDeviceImpl::ReadPlain},
    {0x2218, "CXP_UPLINK_TEST", GRB_CXP_UPLINK_TEST_NOW, GRB_CXP_UPLINK_TEST, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x221C, "CXP_DOWNLINK_TEST", GRB_CXP_DOWNLINK_TEST_NOW, GRB_CXP_DOWNLINK_TEST, 32, &CDeviceImpl::WritePlain,
     &CDeviceImpl::ReadPlain},
    {0x2220, "CXP_INFO", 0, GRB_CXP_INFO, 32, nullptr, &CDeviceImpl::ReadPlain},
};

const CDeviceImpl::Row *CDeviceImpl::FindRow(uint32_t nAddress) {
  static_assert(
      [] {
        for (size_t i = 1; i < std::size(kRows); ++i) {
          if (kRows[i - 1].nAddress >= kRows[i].nAddress) {
            return false;
          }
        }
        return true;
      }(),
      "the search needs ascending addresses");
  // Kept: 0x608 and 0x610 are virtual registers that nothing serves.
  static_assert(
      [] {
        for (const DeviceRegister &reg : kDeviceRegisters) {
          bool bServed = reg.backing != Backing::Virtual || reg.nAddress == REG_REGISTER_ADDRESS ||
                         reg.nAddress == REG_REGISTER_DATA || reg.nAddress == REG_REGISTER_COMMAND ||
                         reg.nAddress == 0x608 || reg.nAddress == 0x610;
          for (const Row &row : kRows) {
            bServed = bServed || row.nAddress == reg.nAddress;
          }
          if (!bServed) {
            return false;
          }
        }
        return true;
      }(),
      "each virtual register has its row");
  const Row *pRow = std::lower_bound(std::begin(kRows), std::end(kRows), nAddress,
                                     [](const Row &row, uint32_t nValue) { return row.nAddress < nValue; });
  return pRow != std::end(kRows) && pRow->nAddress == nAddress ? pRow : nullptr;
}

CDeviceImpl::CDeviceImpl(const std::shared_ptr<CGrbChannelHandle> &pChannelHandle,
                         const std::shared_ptr<CGrbStreamHandle> &pStreamHandle)
    : m_pChannelHandle(pChannelHandle),
      m_pStreamHandle(pStreamHandle),
      m_dwRegisterAddress(0),
      m_dwRegisterData(0),
      m_dwIoInPort(GRB_IO_TTLIN_CHX),
      m_dwIoInBit(1),
      m_dwIoOutPort(GRB_IO_TTLOUT_CHX),
      m_dwIoOutBit(1) {
  LVX_ASSERT(pChannelHandle != 0);
}

void CDeviceImpl::SetVirtualRegister(uint32_t nAddress, void *pBuffer, size_t) {
  if (pBuffer == nullptr) {
    throw invalidparameter_error("Null pointer for buffer.", LVX_HERE);
  }
  if (SetTrioRegister(nAddress, pBuffer)) {
    return;
  }
  if (m_pStreamHandle == nullptr) {
    throw access_error(
        FormatMessageText("Attempting to write at address 0x%08X but there is no ACQ_ONLY handle.", nAddress),
        LVX_HERE);
  }
  const Row *pRow = FindRow(nAddress);
  if (pRow == nullptr || pRow->pWrite == nullptr) {
    throw unknown_error(FormatMessageText("Failed to set parameter 0x%08X: unknown parameter.", nAddress), LVX_HERE);
  }
  (this->*pRow->pWrite)(*pRow, pBuffer);
}

void CDeviceImpl::GetVirtualRegister(uint32_t nAddress, void *pBuffer, size_t *piSize) {
  if (GetTrioRegister(nAddress, pBuffer, piSize)) {
    return;
  }
  if (m_pStreamHandle == nullptr) {
    throw access_error(
        FormatMessageText("Attempting to read at address 0x%08X but there is no ACQ_ONLY handle.", nAddress), LVX_HERE);
  }
  const Row *pRow = FindRow(nAddress);
  if (pRow == nullptr || pRow->pRead == nullptr) {
    throw unknown_error(FormatMessageText("Failed to get parameter 0x%08X: unknown parameter.", nAddress), LVX_HERE);
  }
  (this->*pRow->pRead)(*pRow, pBuffer, piSize);
}

// The register trio gives raw access to the camera's registers. It needs the channel handle only.

bool CDeviceImpl::SetTrioRegister(uint32_t nAddress, const void *pBuffer) {
  if (nAddress == REG_REGISTER_ADDRESS) {
    m_dwRegisterAddress = ValueIn<uint32_t>(pBuffer);
    return true;
  }
  if (nAddress == REG_REGISTER_DATA) {
    m_dwRegisterData = ValueIn<uint32_t>(pBuffer);
    return true;
  }
  if (nAddress == REG_REGISTER_COMMAND) {
    const auto nCommand = ValueIn<uint32_t>(pBuffer);
    // Kept: any other letter does nothing.
    if (nCommand == kCommandWrite) {
      m_pChannelHandle->CameraWriteUInt32(m_dwRegisterData, m_dwRegisterAddress, Settings::TimeOut);
    } else if (nCommand == kCommandRead) {
      uint32_t nValue = m_dwRegisterData;
      m_dwRegisterData = *m_pChannelHandle->CameraReadUInt32(&nValue, m_dwRegisterAddress, Settings::TimeOut);
    }
    return true;
  }
  return false;
}

bool CDeviceImpl::GetTrioRegister(uint32_t nAddress, void *pBuffer, size_t *piSize) {
  switch (nAddress) {
    case kAddressOfOne:
      Answer(pBuffer, piSize, uint32_t{1});
      return true;
    case REG_REGISTER_ADDRESS:
      Answer(pBuffer, piSize, m_dwRegisterAddress.load());
      return true;
    case REG_REGISTER_DATA:
      Answer(pBuffer, piSize, m_dwRegisterData.load());
      return true;
    case REG_REGISTER_COMMAND:
      Answer(pBuffer, piSize, uint32_t{0});
      return true;
    default:
      return false;
  }
}

uint32_t CDeviceImpl::GetNested(uint32_t nAddress) {
  uint32_t nValue = 0;
  size_t iSize = sizeof(nValue);
  GetVirtualRegister(nAddress, &nValue, &iSize);
  return nValue;
}

void CDeviceImpl::Set(uint32_t nId, void *pValue, const char *pName) {
  if (GRB_ParameterSet(m_pStreamHandle->GetHandle(), nId, pValue) != GRB_OK) {
    throw unknown_error(std::string("Failed writing Device feature: ") + pName + ": " + CGrbError::GetText(),
                        kSetFunction, __FILE__, __LINE__);
  }
}

void CDeviceImpl::Get(uint32_t nId, void *pValue, const char *pName) {
  if (GRB_ParameterGet(m_pStreamHandle->GetHandle(), nId, pValue) != GRB_OK) {
    throw unknown_error(std::string("Failed reading Device feature: ") + pName + ": " + CGrbError::GetText(),
                        kGetFunction, __FILE__, __LINE__);
  }
}

uint32_t CDeviceImpl::Get32(const Row &row) {
  uint32_t nValue = 0;
  Get(row.nReadId, &nValue, row.pName);
  return nValue;
}

void CDeviceImpl::WritePlain(const Row &row, void *pBuffer) { Set(row.nWriteId, pBuffer, row.pName); }

void CDeviceImpl::ReadPlain(const Row &row, void *pBuffer, size_t *piSize) {
  if (row.nBits == 64) {
    uint64_t nValue = 0;
    Get(row.nReadId, &nValue, row.pName);
    Answer(pBuffer, piSize, nValue);
  } else {
    Answer(pBuffer, piSize, Get32(row));
  }
}

void CDeviceImpl::WriteScanType(const Row &row, void *pBuffer) {
  uint32_t nValue = CGRBHelper::ConvertGenICamScanType2Grb(ValueIn<uint32_t>(pBuffer));
  Set(GRB_CAM_TYPE, &nValue, row.pName);
}

void CDeviceImpl::ReadScanType(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nValue = 0;
  Get(GRB_CAM_TYPE, &nValue, row.pName);
  Answer(pBuffer, piSize, CGRBHelper::ConvertGrbScanType2GenICam(nValue));
}

void CDeviceImpl::WriteWidth(const Row &row, void *pBuffer) {
  uint32_t nValue = ValueIn<uint32_t>(pBuffer) * GetNested(REG_DECIMATION_HORIZONTAL);
  Set(GRB_ROI_XLENGTH, &nValue, row.pName);
}

void CDeviceImpl::ReadWidth(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nLength = 0;
  Get(GRB_ROI_XLENGTH, &nLength, row.pName);
  const uint32_t nDecimation = GetNested(REG_DECIMATION_HORIZONTAL);
  // Kept: unreachable, since no conversion gives 0. The misspelling is part of the text.
  if (nDecimation == 0) {
    throw unknown_error("Null horiziontal decimation.", kGetFunction, __FILE__, __LINE__);
  }
  Answer(pBuffer, piSize, nLength / nDecimation);
}

void CDeviceImpl::WriteHeight(const Row &row, void *pBuffer) {
  uint32_t nValue = ValueIn<uint32_t>(pBuffer) * GetNested(REG_DECIMATION_VERTICAL);
  Set(GRB_ROI_YLENGTH, &nValue, row.pName);
}

void CDeviceImpl::ReadHeight(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nLength = 0;
  Get(GRB_ROI_YLENGTH, &nLength, row.pName);
  const uint32_t nDecimation = GetNested(REG_DECIMATION_VERTICAL);
  // Kept: unreachable as well.
  if (nDecimation == 0) {
    throw unknown_error("Null vertical decimation.", kGetFunction, __FILE__, __LINE__);
  }
  Answer(pBuffer, piSize, nLength / nDecimation);
}

void CDeviceImpl::WriteIncomingPixelFormat(const Row &row, void *pBuffer) {
  const auto nPfnc = ValueIn<uint32_t>(pBuffer);
  uint32_t nDepth = CPixelFormat::GetBitsPerComponent(nPfnc);
  Set(GRB_CAM_SRC_DEPTH, &nDepth, row.pName);
  uint32_t nColour = CPixelFormat::To_GRB_SrcCol(nPfnc);
  Set(GRB_CAM_SRC_COL, &nColour, row.pName);
}

void CDeviceImpl::ReadIncomingPixelFormat(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nColour = 0;
  uint32_t nDepth = 0;
  Get(GRB_CAM_SRC_COL, &nColour, row.pName);
  Get(GRB_CAM_SRC_DEPTH, &nDepth, row.pName);
  Answer(pBuffer, piSize, CPixelFormat::To_PFNC(nColour, static_cast<PixelDepth>(nDepth)));
}

void CDeviceImpl::WritePixelFormat(const Row &row, void *pBuffer) {
  const auto nPfnc = ValueIn<uint32_t>(pBuffer);
  uint32_t nBusFormat = CPixelFormat::To_GRB_BusFormat(nPfnc);
  uint32_t nUsrFormat = CPixelFormat::To_GRB_UsrFormat(nPfnc);
  Set(GRB_BUS_FORMAT, &nBusFormat, row.pName);
  Set(GRB_USR_FORMAT, &nUsrFormat, row.pName);
}

void CDeviceImpl::ReadPixelFormat(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nUsrFormat = 0;
  Get(GRB_USR_FORMAT, &nUsrFormat, row.pName);
  Answer(pBuffer, piSize, CPixelFormat::To_PFNC(static_cast<GrbUsrFormat>(nUsrFormat)));
}

void CDeviceImpl::WriteDecimation(const Row &row, void *pBuffer) {
  uint32_t nValue = CGRBHelper::ConvertInt2GrbDecimation(ValueIn<uint32_t>(pBuffer));
  Set(row.nWriteId, &nValue, row.pName);
}

void CDeviceImpl::ReadDecimation(const Row &row, void *pBuffer, size_t *piSize) {
  Answer(pBuffer, piSize, CGRBHelper::ConvertGrbDecimation2Int(Get32(row)));
}

void CDeviceImpl::ReadHandle(const Row &, void *pBuffer, size_t *piSize) {
  Answer(pBuffer, piSize, m_pStreamHandle->GetHandle());
}

void CDeviceImpl::ReadBoardProperties(const Row &row, void *pBuffer, size_t *piSize) {
  const char *pProperties = nullptr;
  Get(row.nReadId, &pProperties, row.pName);
  Answer(pBuffer, piSize, std::string(pProperties != nullptr ? pProperties : ""));
}

void CDeviceImpl::LoadConfigFile(const Row &, void *pBuffer) {
  m_pStreamHandle->LoadGcf(static_cast<const char *>(pBuffer));
}

void CDeviceImpl::SaveConfigFile(const Row &, void *pBuffer) {
  std::string strPath = WithoutQuotes(static_cast<const char *>(pBuffer));
  if (GRB_Action(m_pStreamHandle->GetHandle(), GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, strPath.data()) != GRB_OK) {
    throw unknown_error("Failed saving GCF file: " + CGrbError::GetText(), kSetFunction, __FILE__, __LINE__);
  }
}

// The I/O family keeps its selection here: to the library a port is an identifier.

void CDeviceImpl::WriteIoOutPort(const Row &, void *pBuffer) { m_dwIoOutPort = ValueIn<uint32_t>(pBuffer); }

void CDeviceImpl::ReadIoOutPort(const Row &, void *pBuffer, size_t *piSize) {
  Answer(pBuffer, piSize, m_dwIoOutPort.load());
}

void CDeviceImpl::WriteIoOutBit(const Row &, void *pBuffer) { m_dwIoOutBit = ValueIn<uint32_t>(pBuffer); }

void CDeviceImpl::ReadIoOutBit(const Row &, void *pBuffer, size_t *piSize) {
  Answer(pBuffer, piSize, m_dwIoOutBit.load());
}

void CDeviceImpl::WriteIoInPort(const Row &, void *pBuffer) { m_dwIoInPort = ValueIn<uint32_t>(pBuffer); }

void CDeviceImpl::ReadIoInPort(const Row &, void *pBuffer, size_t *piSize) {
  Answer(pBuffer, piSize, m_dwIoInPort.load());
}

void CDeviceImpl::WriteIoOutMethod(const Row &, void *pBuffer) {
  uint32_t nMethod = ValueIn<uint32_t>(pBuffer) | BitMask(m_dwIoOutBit);
  // Kept: the failure of a write has a name of its own.
  Set(m_dwIoOutPort | 1U, &nMethod, "GRB_IO_METHOD");
}

void CDeviceImpl::ReadIoOutMethod(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nMethod = BitMask(m_dwIoOutBit);
  Get(m_dwIoOutPort, &nMethod, row.pName);
  Answer(pBuffer, piSize, nMethod & 0xFFFFFFFCU);
}

void CDeviceImpl::ReadIoInValue(const Row &row, void *pBuffer, size_t *piSize) {
  uint32_t nValue = 0;
  Get(m_dwIoInPort, &nValue, row.pName);
  // Kept: the test looks at the output bit, the mask takes the input bit.
  Answer(pBuffer, piSize, nValue & (m_dwIoOutBit > 1 ? 1U << (m_dwIoInBit - 1) : 1U));
}

void CDeviceImpl::WriteFilter(const Row &row, void *pBuffer) {
  auto nValue = ValueIn<uint64_t>(pBuffer);
  for (const FilterFloor &floor : kFilterFloors) {
    if (floor.nId == row.nWriteId && nValue > 0 && nValue < floor.nNanoseconds) {
      nValue = floor.nNanoseconds;
    }
  }
  Set(row.nWriteId, &nValue, row.pName);
}

void CDeviceImpl::FlushCache(const Row &row, void *) { Set(row.nWriteId, nullptr, row.pName); }

void CDeviceImpl::Expose(const Row &row, void *) {
  if (GRB_StreamRead(m_pStreamHandle->GetHandle(), row.nWriteId, nullptr) != GRB_OK) {
    throw unknown_error(std::string("Failed writing Device feature: ") + row.pName + ": " + CGrbError::GetText(),
                        kSetFunction, __FILE__, __LINE__);
  }
}

void CDeviceImpl::TriggerTimerA1(const Row &row, void *) {
  uint32_t nOne = 1;
  Set(row.nWriteId, &nOne, row.pName);
}

}  // namespace GenICam::Client
