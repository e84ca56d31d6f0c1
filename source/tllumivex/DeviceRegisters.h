// SPDX-License-Identifier: MIT
/// @file
/// The Device port's address space, but for the description, which stands behind it.
#pragma once

#include <cstdint>

#include "RegisterMap.h"

namespace GenICam::Client {

/// Addresses that the code names.
enum DeviceRegisterAddress : uint32_t {
  REG_DEVICE_ID = 0x0000,
  REG_DEVICE_VENDOR_NAME = 0x0100,
  REG_DEVICE_MODEL_NAME = 0x0140,
  REG_DEVICE_DISPLAY_NAME = 0x02E0,
  REG_UNNAMED_ONE = 0x03E4,
  REG_STREAM_COUNT = 0x03E8,
  REG_STREAM_ID = 0x03F0,
  REG_REGISTER_ADDRESS = 0x04F0,
  REG_REGISTER_DATA = 0x04F4,
  REG_REGISTER_COMMAND = 0x04F8,
  REG_DATA_STREAM_OPEN = 0x0508,
  REG_WIDTH = 0x0604,
  REG_HEIGHT = 0x060C,
  REG_INCOMING_PIXEL_FORMAT = 0x061C,
  REG_PIXEL_FORMAT = 0x0620,
  REG_DECIMATION_HORIZONTAL = 0x0624,
  REG_DECIMATION_VERTICAL = 0x0628,
  REG_CONFIG_FILE_LOAD = 0x1448,
  REG_CONFIG_FILE = 0x144C,
  REG_ACQ_BLOCKING = 0x184C,
  REG_CONFIG_FILE_SAVE_NAME = 0x1884,
  REG_CONFIG_FILE_SAVE = 0x1C84,
  REG_CXP_BITRATE_MODE = 0x2204,
  REG_CXP_DISCOVERY_MODE = 0x2210,
};

/// Bytes of the two registers that hold a GCF file's name.
constexpr uint32_t kConfigFileNameSize = 1024;

/// Where a register's value lives: in the map, in the library, or in the map with a command behind it.
enum class Backing : uint8_t { Stored, Virtual, Callback };

/// One register of the Device.
struct DeviceRegister {
  uint32_t nAddress;
  uint32_t nBytes;
  uint32_t nAccess;
  Backing backing;
};

// Kept: the map allows writes to many registers that the description holds read-only; only GenApi refuses them.
constexpr DeviceRegister kDeviceRegisters[] = {
    // address, bytes, access, backing
    {0x0000, 256, ACCESS_READ, Backing::Stored},         // DeviceID
    {0x0100, 64, ACCESS_READ, Backing::Stored},          // DeviceVendorName
    {0x0140, 64, ACCESS_READ, Backing::Stored},          // DeviceModelName
    {0x02E0, 256, ACCESS_READ, Backing::Stored},         // DeviceDisplayName
    {0x03E4, 4, ACCESS_READ, Backing::Stored},           // no node
    {0x03E8, 4, ACCESS_READ, Backing::Stored},           // StreamCount
    {0x03EC, 4, ACCESS_READ_WRITE, Backing::Stored},     // r_StreamSelector
    {0x03F0, 256, ACCESS_READ, Backing::Stored},         // StreamID
    {0x04F0, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Register_Address
    {0x04F4, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Register_Data
    {0x04F8, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Register_Command
    {0x04FC, 4, ACCESS_READ, Backing::Virtual},          // GRB_Handle
    {0x0508, 4, ACCESS_READ, Backing::Stored},           // DataStreamOpen_Reg
    {0x0600, 4, ACCESS_READ_WRITE, Backing::Virtual},    // DeviceScanType_Reg
    {0x0604, 4, ACCESS_READ_WRITE, Backing::Virtual},    // Width_Reg
    {0x0608, 4, ACCESS_READ_WRITE, Backing::Virtual},    // no node
    {0x060C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // Height_Reg
    {0x0610, 4, ACCESS_READ_WRITE, Backing::Virtual},    // no node
    {0x0614, 4, ACCESS_READ_WRITE, Backing::Virtual},    // IncomingWidth_Reg
    {0x0618, 4, ACCESS_READ_WRITE, Backing::Virtual},    // IncomingHeight_Reg
    {0x061C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // IncomingPixelFormat_Reg
    {0x0620, 4, ACCESS_READ_WRITE, Backing::Virtual},    // PixelFormat_Reg
    {0x0624, 4, ACCESS_READ_WRITE, Backing::Virtual},    // DecimationHorizontal_Reg
    {0x0628, 4, ACCESS_READ_WRITE, Backing::Virtual},    // DecimationVertical_Reg
    {0x062C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // OffsetX_Reg
    {0x0630, 4, ACCESS_READ_WRITE, Backing::Virtual},    // OffsetY_Reg
    {0x1000, 4, ACCESS_READ, Backing::Virtual},          // GRB_BOARD_INFO
    {0x1004, 1024, ACCESS_READ, Backing::Virtual},       // GRB_BOARD_PROPERTIES
    {0x1408, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_REV_HW_MAJOR
    {0x140C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_REV_HW_MINOR
    {0x1410, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_REV_HW_SUBMINOR
    {0x1414, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_REV_HW
    {0x1418, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_TypeReg
    {0x141C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_Src_Depth_Reg
    {0x1420, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_Active_XLength_Reg
    {0x1424, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_Active_YLength_Reg
    {0x1428, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Acq_XSub_Reg
    {0x142C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Acq_YSub_Reg
    {0x1430, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_ROI_XLength_Reg
    {0x1434, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_ROI_YLength_Reg
    {0x143C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_Src_Col_Reg
    {0x1440, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_PCIE_INFO
    {0x1444, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_LUT_Shift_Reg
    {0x1448, 4, ACCESS_READ_WRITE, Backing::Callback},   // GRB_Config_File_Load_Reg
    {0x144C, 1024, ACCESS_READ_WRITE, Backing::Stored},  // GRB_CONFIG_FILE
    {0x184C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Acq_Blocking_Reg
    {0x1850, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_IO_Out_Port_Reg
    {0x1858, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_IO_Out_Method_Reg
    {0x185C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_IO_Out_Bit_Reg
    {0x1860, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Io_In_Port_Reg
    {0x1864, 4, ACCESS_READ, Backing::Virtual},          // GRB_IO_In_Value_Reg
    {0x186C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_ROI_SRC_XOFFSET_Reg
    {0x1870, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_ROI_SRC_YOFFSET_Reg
    {0x1874, 4, ACCESS_READ, Backing::Virtual},          // GRB_REV_SW_MAJOR
    {0x1878, 4, ACCESS_READ, Backing::Virtual},          // GRB_REV_SW_MINOR
    {0x187C, 4, ACCESS_READ, Backing::Virtual},          // GRB_REV_SW_SUBMINOR
    {0x1880, 4, ACCESS_READ, Backing::Virtual},          // GRB_REV_SW
    {0x1884, 1024, ACCESS_READ_WRITE, Backing::Stored},  // GRB_CONFIG_FILE_SAVE_NAME
    {0x1C84, 4, ACCESS_READ_WRITE, Backing::Callback},   // GRB_Config_File_Save_Name_Reg
    {0x1C88, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Cam_Format_Reg
    {0x1C8C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Acq_Field_Reg
    {0x1C90, 4, ACCESS_READ_WRITE, Backing::Virtual},    // no node
    {0x1C94, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Roi_Dst_XOffset_Reg
    {0x1C98, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Roi_Dst_YOffset_Reg
    {0x1C9C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_DataStreamValid_Reg
    {0x1CA0, 4, ACCESS_WRITE, Backing::Virtual},         // GRB_Cache_Flush_Reg
    {0x1CA4, 4, ACCESS_READ, Backing::Virtual},          // GRB_Bus_Format_Reg
    {0x1CA8, 4, ACCESS_READ, Backing::Virtual},          // GRB_Usr_Format_Reg
    {0x2004, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Src_Reg
    {0x2008, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Encoder_Mode_Reg
    {0x200C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Encoder_Src_Reg
    {0x2010, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Multiplier_Reg
    {0x2014, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Divider_Reg
    {0x2018, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Delay_Mode_D1Cam_Reg
    {0x201C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_CxpTrig_Src_Reg
    {0x2020, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_CxpTrig_Mode_Reg
    {0x2024, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_FgTrig_Src_Reg
    {0x2028, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_FgTrig_Mode_Reg
    {0x202C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_FgTrig_Delay_Mode_Reg
    {0x2030, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Count_Buffer_Ready_Reg
    {0x2034, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerA1_Period_Ns_Reg
    {0x203C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerD1Fg_Value_Ns_Reg
    {0x2044, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerD1Cam_Value_Ns_Reg
    {0x204C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerM1_Width_Ns_Reg
    {0x2054, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerM2_Width_Ns_Reg
    {0x205C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_FgTrig_Filter_Ns_Reg
    {0x2064, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Filter_Ns_Reg
    {0x206C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Encoder_Filter_Ns_Reg
    {0x2074, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_Expose_Reg
    {0x2078, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CamTrig_Delay_Mode_D2Cam_Reg
    {0x207C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerD1Fg_Count_Reg
    {0x208C, 8, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerD2Cam_Value_Ns_Reg
    {0x209C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerA1_Mode_Reg
    {0x20A0, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerA1_Pulse_Count_Reg
    {0x20A4, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_TimerA1_Swtrig_Reg
    {0x20B4, 4, ACCESS_READ, Backing::Virtual},          // GRB_Count_Buffer_Ready_Now_Reg
    {0x2204, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CxP_Bitrate_Mode_Reg
    {0x2208, 4, ACCESS_READ, Backing::Virtual},          // GRB_CxP_Bitrate_Reg
    {0x220C, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CxP_PoCxP_Mode_Reg
    {0x2210, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CxP_Discovery_Mode_Reg
    {0x2214, 4, ACCESS_READ, Backing::Virtual},          // GRB_CxP_Discovery_Reg
    {0x2220, 4, ACCESS_READ_WRITE, Backing::Virtual},    // GRB_CXP_INFO
};

constexpr bool DeviceRegistersAreDisjoint() {
  uint32_t nEnd = 0;
  for (const DeviceRegister &row : kDeviceRegisters) {
    if (row.nAddress < nEnd || row.nAddress % 4 != 0 || row.nBytes % 4 != 0) {
      return false;
    }
    nEnd = row.nAddress + row.nBytes;
  }
  return nEnd <= 0x222C;
}
static_assert(DeviceRegistersAreDisjoint(), "registers are whole words, ascend, and end ahead of the description");

}  // namespace GenICam::Client
