// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// What the Device's description is to hold, table by table. "-" is a cell with nothing in it. The rows stand in the
// order of the file, but for the registers, which stand in the order of their addresses.

struct BandRow {
  const char *name;
  std::uint32_t base;
};

struct RegisterRow {
  const char *band;
  std::uint32_t address;
  const char *node;
  // The features that take their value from the register, or "itself".
  const char *features;
  std::uint32_t bytes;
  const char *access;
  // N: not cached. A: available with a stream only. L: locked during acquisition; or the name of the node that locks.
  const char *marks;
};

struct CategoryRow {
  const char *name;
  const char *features;
};

struct FeatureRow {
  const char *name;
  const char *kind;
  const char *valueFrom;
  const char *visibility;
  const char *streamable;
  const char *limits;
  const char *invalidators;
  const char *other;
};

struct FormulaRow {
  const char *name;
  const char *group;
  const char *nameSpace;
  const char *visibility;
  const char *variables;
  const char *formula;
};

struct EnumerationRow {
  const char *name;
  const char *valueFrom;
  std::uint32_t count;
  // Runs, separated by semicolons: "NAME VALUE", or "from VALUE in steps of STEP: NAME, NAME".
  const char *entries;
};

struct ToolTipRow {
  const char *node;
  const char *toolTip;
};

inline constexpr BandRow kBands[] = {
    {"DeviceRegistersBaseAddress", 0x0000000}, {"DeviceGenICamBaseAddress", 0x0000600},
    {"DeviceGrablineBaseAddress", 0x0001000},  {"DeviceGrablineTriggerBaseAddress", 0x0002000},
    {"DeviceCxPBaseAddress", 0x0002200},
};

inline constexpr RegisterRow kRegisters[] = {
    {"DeviceRegistersBaseAddress", 0x0000, "DeviceID", "itself", 256, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x0100, "DeviceVendorName", "itself", 64, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x0140, "DeviceModelName", "itself", 64, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x02E0, "DeviceDisplayName", "itself", 256, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x03E8, "StreamCount", "itself", 4, "RO", "N"},
    {"DeviceRegistersBaseAddress", 0x03EC, "r_StreamSelector", "StreamSelector", 4, "RW", ""},
    {"DeviceRegistersBaseAddress", 0x03F0, "StreamID", "itself", 256, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x04F0, "GRB_Register_Address", "itself", 4, "RW", ""},
    {"DeviceRegistersBaseAddress", 0x04F4, "GRB_Register_Data", "itself", 4, "RW", "N"},
    {"DeviceRegistersBaseAddress", 0x04F8, "GRB_Register_Command", "itself", 4, "RW", ""},
    {"DeviceRegistersBaseAddress", 0x04FC, "GRB_Handle", "itself", 4, "RO", "N A"},
    {"DeviceRegistersBaseAddress", 0x0500, "GRB_INTRPT_TEST", "itself", 4, "RO", ""},
    {"DeviceRegistersBaseAddress", 0x0508, "DataStreamOpen_Reg", "DataStreamOpen", 4, "RO", "N"},
    {"DeviceGenICamBaseAddress", 0x0600, "DeviceScanType_Reg", "DeviceScanType", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0604, "Width_Reg", "Width", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x060C, "Height_Reg", "Height", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0614, "IncomingWidth_Reg", "IncomingWidth", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0618, "IncomingHeight_Reg", "IncomingHeight", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x061C, "IncomingPixelFormat_Reg", "IncomingPixelFormat", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0620, "PixelFormat_Reg", "PixelFormat", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0624, "DecimationHorizontal_Reg", "DecimationHorizontal", 4, "RW", "A L"},
    {"DeviceGenICamBaseAddress", 0x0628, "DecimationVertical_Reg", "DecimationVertical", 4, "RW", "A L"},
    {"DeviceGenICamBaseAddress", 0x062C, "OffsetX_Reg", "OffsetX", 4, "RW", "N A L"},
    {"DeviceGenICamBaseAddress", 0x0630, "OffsetY_Reg", "OffsetY", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1000, "GRB_BOARD_INFO", "itself", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1004, "GRB_BOARD_PROPERTIES", "itself", 1024, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1408, "GRB_REV_HW_MAJOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x140C, "GRB_REV_HW_MINOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1410, "GRB_REV_HW_SUBMINOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1414, "GRB_REV_HW", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1418, "GRB_Cam_TypeReg", "GRB_CAM_TYPE", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x141C, "GRB_Cam_Src_Depth_Reg", "GRB_CAM_SRC_DEPTH", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1420, "GRB_Cam_Active_XLength_Reg", "GRB_CAM_ACTIVE_XLENGTH", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1424, "GRB_Cam_Active_YLength_Reg", "GRB_CAM_ACTIVE_YLENGTH", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1428, "GRB_Acq_XSub_Reg", "GRB_ACQ_XSUB, GRB_ACQ_YSUB", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x142C, "GRB_Acq_YSub_Reg", "-", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1430, "GRB_ROI_XLength_Reg", "GRB_ROI_XLENGTH", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1434, "GRB_ROI_YLength_Reg", "GRB_ROI_YLENGTH", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x143C, "GRB_Cam_Src_Col_Reg", "GRB_CAM_SRC_COL", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1440, "GRB_PCIE_INFO", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1444, "GRB_LUT_Shift_Reg", "GRB_BIT_SHIFT, GRB_LUT_SHIFT", 4, "RW", "N A L signed"},
    {"DeviceGrablineBaseAddress", 0x1448, "GRB_Config_File_Load_Reg", "GRB_CONFIG_FILE_LOAD", 4, "WO", "N A L signed"},
    {"DeviceGrablineBaseAddress", 0x144C, "GRB_CONFIG_FILE", "itself", 1024, "RW", "L"},
    {"DeviceGrablineBaseAddress", 0x1504, "GRB_Intrpt_Test_Test_Reg", "GRB_INTRPT_TEST_Test", 4, "RW", "N L signed"},
    {"DeviceGrablineBaseAddress", 0x184C, "GRB_Acq_Blocking_Reg", "GRB_ACQ_BLOCKING", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1850, "GRB_IO_Out_Port_Reg", "GRB_IO_OUT_PORT", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1858, "GRB_IO_Out_Method_Reg", "GRB_IO_OUT_METHOD", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x185C, "GRB_IO_Out_Bit_Reg", "GRB_IO_OUT_BIT", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1860, "GRB_Io_In_Port_Reg", "GRB_IO_IN_PORT", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1864, "GRB_IO_In_Value_Reg", "GRB_IO_IN_VALUE", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x186C, "GRB_ROI_SRC_XOFFSET_Reg", "GRB_ROI_SRC_XOFFSET", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1870, "GRB_ROI_SRC_YOFFSET_Reg", "GRB_ROI_SRC_YOFFSET", 4, "RO", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1874, "GRB_REV_SW_MAJOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1878, "GRB_REV_SW_MINOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x187C, "GRB_REV_SW_SUBMINOR", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1880, "GRB_REV_SW", "itself", 4, "RO", "A"},
    {"DeviceGrablineBaseAddress", 0x1884, "GRB_CONFIG_FILE_SAVE_NAME", "itself", 1024, "RW", "L"},
    {"DeviceGrablineBaseAddress", 0x1C84, "GRB_Config_File_Save_Name_Reg", "GRB_CONFIG_FILE_SAVE", 4, "WO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1C88, "GRB_Cam_Format_Reg", "GRB_CAM_FORMAT", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1C8C, "GRB_Acq_Field_Reg", "GRB_ACQ_FIELD_MODE", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1C94, "GRB_Roi_Dst_XOffset_Reg", "GRB_ROI_DST_XOFFSET", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1C98, "GRB_Roi_Dst_YOffset_Reg", "GRB_ROI_DST_YOFFSET", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1C9C, "GRB_DataStreamValid_Reg", "GRB_DATASTREAM_VALID", 4, "RW", "N A L"},
    {"DeviceGrablineBaseAddress", 0x1CA0, "GRB_Cache_Flush_Reg", "GRB_CACHE_FLUSH", 4, "WO", "N A L signed"},
    {"DeviceGrablineBaseAddress", 0x1CA4, "GRB_Bus_Format_Reg", "GRB_BUS_FORMAT", 4, "RO", "N A"},
    {"DeviceGrablineBaseAddress", 0x1CA8, "GRB_Usr_Format_Reg", "GRB_USR_FORMAT", 4, "RO", "N A"},
    {"DeviceGrablineTriggerBaseAddress", 0x2004, "GRB_CamTrig_Src_Reg", "GRB_CAMTRIG_SRC", 4, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2008, "GRB_CamTrig_Encoder_Mode_Reg", "GRB_CAMTRIG_ENCODER_MODE", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x200C, "GRB_CamTrig_Encoder_Src_Reg", "GRB_CAMTRIG_ENCODER_SRC", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2010, "GRB_CamTrig_Multiplier_Reg", "GRB_CAMTRIG_MULTIPLIER", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2014, "GRB_CamTrig_Divider_Reg", "GRB_CAMTRIG_DIVIDER", 4, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2018, "GRB_CamTrig_Delay_Mode_D1Cam_Reg", "GRB_CAMTRIG_DELAY_MODE_D1CAM", 4,
     "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x201C, "GRB_CamTrig_CxpTrig_Src_Reg", "GRB_CAMTRIG_CXPTRIG_SRC", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2020, "GRB_CamTrig_CxpTrig_Mode_Reg", "GRB_CAMTRIG_CXPTRIG_MODE", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2024, "GRB_FgTrig_Src_Reg", "GRB_FGTRIG_SRC", 4, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2028, "GRB_FgTrig_Mode_Reg", "GRB_FGTRIG_MODE", 4, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x202C, "GRB_FgTrig_Delay_Mode_Reg", "GRB_FGTRIG_DELAY_MODE", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2030, "GRB_Count_Buffer_Ready_Reg", "GRB_COUNT_BUFFER_READY", 4, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2034, "GRB_TimerA1_Period_Ns_Reg", "GRB_TIMERA1_PERIOD_NS", 8, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x203C, "GRB_TimerD1Fg_Value_Ns_Reg", "GRB_TIMERD1FG_VALUE_NS", 8, "RW",
     "N A TimerD1FgValueNsLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x2044, "GRB_TimerD1Cam_Value_Ns_Reg", "GRB_TIMERD1CAM_VALUE_NS", 8, "RW",
     "N A TimerD1CamValueNsLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x204C, "GRB_TimerM1_Width_Ns_Reg", "GRB_TIMERM1_WIDTH_NS", 8, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2054, "GRB_TimerM2_Width_Ns_Reg", "GRB_TIMERM2_WIDTH_NS", 8, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x205C, "GRB_FgTrig_Filter_Ns_Reg", "GRB_FGTRIG_FILTER_NS", 8, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2064, "GRB_CamTrig_Filter_Ns_Reg", "GRB_CAMTRIG_FILTER_NS", 8, "RW",
     "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x206C, "GRB_CamTrig_Encoder_Filter_Ns_Reg", "GRB_CAMTRIG_ENCODER_FILTER_NS",
     8, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x2074, "GRB_Expose_Reg", "GRB_EXPOSE", 4, "WO", "N A"},
    {"DeviceGrablineTriggerBaseAddress", 0x2078, "GRB_CamTrig_Delay_Mode_D2Cam_Reg", "GRB_CAMTRIG_DELAY_MODE_D2CAM", 4,
     "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x207C, "GRB_TimerD1Fg_Count_Reg", "GRB_TIMERD1FG_COUNT", 8, "RW",
     "N A TimerD1FgCountLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x208C, "GRB_TimerD2Cam_Value_Ns_Reg", "GRB_TIMERD2CAM_VALUE_NS", 8, "RW",
     "N A TimerD2CamValueNsLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x209C, "GRB_TimerA1_Mode_Reg", "GRB_TIMERA1_MODE", 4, "RW", "N A L"},
    {"DeviceGrablineTriggerBaseAddress", 0x20A0, "GRB_TimerA1_Pulse_Count_Reg", "GRB_TIMERA1_PULSE_COUNT", 4, "RW",
     "N A TimerA1PulseCountLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x20A4, "GRB_TimerA1_Swtrig_Reg", "GRB_TIMERA1_SWTRIG", 4, "WO",
     "N A TimerA1SwTrigLocked"},
    {"DeviceGrablineTriggerBaseAddress", 0x20B4, "GRB_Count_Buffer_Ready_Now_Reg", "GRB_COUNT_BUFFER_READY_NOW", 4,
     "RO", "N A L"},
    {"DeviceCxPBaseAddress", 0x2204, "GRB_CxP_Bitrate_Mode_Reg", "GRB_CXP_BITRATE_MODE", 4, "RW", "N A L"},
    {"DeviceCxPBaseAddress", 0x2208, "GRB_CxP_Bitrate_Reg", "GRB_CXP_BITRATE", 4, "RO", "N A L"},
    {"DeviceCxPBaseAddress", 0x220C, "GRB_CxP_PoCxP_Mode_Reg", "GRB_CXP_POCXP_MODE", 4, "RW", "N A L"},
    {"DeviceCxPBaseAddress", 0x2210, "GRB_CxP_Discovery_Mode_Reg", "GRB_CXP_DISCOVERY_MODE", 4, "RW", "N A L"},
    {"DeviceCxPBaseAddress", 0x2214, "GRB_CxP_Discovery_Reg", "GRB_CXP_DISCOVERY", 4, "RO", "N A L"},
    {"DeviceCxPBaseAddress", 0x2220, "GRB_CXP_INFO", "itself", 4, "RO", "A"},
};

// Addresses that the Device serves or knows of, and that no node names.
inline constexpr std::uint32_t kAddressesWithoutNode[] = {0x03E4, 0x0608, 0x0610, 0x1C90, 0x222C, 0x2218, 0x221C};

inline constexpr CategoryRow kCategories[] = {
    {"Root",
     "TLParamsLocked, DeviceInformation, DeviceControl, StreamEnumeration, ImageFormatControl, GRB_CacheFlush, "
     "GRB_BoardInformation, GRB_VersionInformation, GRB_CoaXPressConfiguration, GRB_ConfigurationFile, "
     "GRB_AcquisitionControl, GRB_BasicCameraSettings, GRB_ImageDataControl, GRB_CameraTriggerControl, "
     "GRB_FrameGrabberTriggerControl, GRB_CounterTimer, GRB_IO_IN, GRB_IO_OUT, GRB_Misc"},
    {"DeviceInformation", "DeviceID, DeviceVendorName, DeviceModelName, DeviceType, DeviceDisplayName"},
    {"DeviceControl", "DeviceScanType"},
    {"StreamEnumeration", "StreamSelector, StreamCount, StreamID"},
    {"ImageFormatControl",
     "PixelFormat, Width, WidthMax, Height, HeightMax, OffsetX, OffsetY, DecimationHorizontal, "
     "DecimationVertical, IncomingPixelFormat, IncomingWidth, IncomingHeight"},
    {"GRB_CacheFlush", "GRB_CACHE_FLUSH"},
    {"GRB_BoardInformation", "GRB_BOARD_INFO, GRB_PCIE_INFO, GRB_BOARD_PROPERTIES"},
    {"GRB_VersionInformation",
     "GRB_REV_HW_MAJOR, GRB_REV_HW_MINOR, GRB_REV_HW_SUBMINOR, GRB_REV_HW, GRB_REV_SW_MAJOR, GRB_REV_SW_MINOR, "
     "GRB_REV_SW_SUBMINOR, GRB_REV_SW"},
    {"GRB_CoaXPressConfiguration",
     "GRB_CXP_INFO, GRB_CXP_BITRATE_MODE, GRB_CXP_BITRATE, GRB_CXP_DISCOVERY_MODE, GRB_CXP_DISCOVERY, "
     "GRB_CXP_POCXP_MODE"},
    {"GRB_ImageDataControl",
     "GRB_ACQ_XSUB, GRB_ACQ_YSUB, GRB_ROI_SRC_XOFFSET, GRB_ROI_SRC_YOFFSET, GRB_ROI_DST_XOFFSET, "
     "GRB_ROI_DST_YOFFSET, GRB_ROI_XLENGTH, GRB_ROI_YLENGTH, GRB_BIT_SHIFT, GRB_BUS_FORMAT, GRB_USR_FORMAT"},
    {"GRB_AcquisitionControl", "GRB_ACQ_BLOCKING, GRB_ACQ_FIELD_MODE, GRB_DATASTREAM_VALID"},
    {"GRB_ConfigurationFile", "GRB_CONFIG_FILE, GRB_CONFIG_FILE_LOAD, GRB_CONFIG_FILE_SAVE_NAME, GRB_CONFIG_FILE_SAVE"},
    {"GRB_Misc", "GRB_Register_Address, GRB_Register_Data, GRB_Register_Command, GRB_Handle"},
    {"GRB_BasicCameraSettings",
     "GRB_CAM_TYPE, GRB_CAM_FORMAT, GRB_CAM_SRC_COL, GRB_CAM_SRC_DEPTH, GRB_CAM_ACTIVE_XLENGTH, "
     "GRB_CAM_ACTIVE_YLENGTH"},
    {"GRB_CameraTriggerControl",
     "GRB_CAMTRIG_SRC, GRB_EXPOSE, GRB_CAMTRIG_FILTER_NS, GRB_CAMTRIG_ENCODER_MODE, GRB_CAMTRIG_ENCODER_SRC, "
     "GRB_CAMTRIG_ENCODER_FILTER_NS, GRB_CAMTRIG_MULTIPLIER, GRB_CAMTRIG_DIVIDER, "
     "GRB_CAMTRIG_DELAY_MODE_D1CAM, GRB_CAMTRIG_DELAY_MODE_D2CAM, GRB_CAMTRIG_CXPTRIG_SRC, "
     "GRB_CAMTRIG_CXPTRIG_MODE"},
    {"GRB_FrameGrabberTriggerControl", "GRB_FGTRIG_SRC, GRB_FGTRIG_MODE, GRB_FGTRIG_DELAY_MODE, GRB_FGTRIG_FILTER_NS"},
    {"GRB_CounterTimer",
     "GRB_COUNT_BUFFER_READY, GRB_COUNT_BUFFER_READY_NOW, GRB_TIMERA1_PERIOD_NS, GRB_TIMERA1_MODE, "
     "GRB_TIMERA1_PULSE_COUNT, GRB_TIMERA1_SWTRIG, GRB_TIMERD1FG_VALUE_NS, GRB_TIMERD1FG_COUNT, "
     "GRB_TIMERD1CAM_VALUE_NS, GRB_TIMERD2CAM_VALUE_NS, GRB_TIMERM1_WIDTH_NS, GRB_TIMERM2_WIDTH_NS"},
    {"GRB_IO_IN", "GRB_IO_IN_PORT, GRB_IO_IN_VALUE"},
    {"GRB_IO_OUT", "GRB_IO_OUT_PORT, GRB_IO_OUT_METHOD, GRB_IO_OUT_BIT"},
    {"GRB_INTRPT_TESTData", "GRB_INTRPT_TEST, GRB_INTRPT_TEST_Test"},
};

inline constexpr const char *kStandardNodes[] = {"Root",
                                                 "DeviceInformation",
                                                 "DeviceID",
                                                 "DeviceVendorName",
                                                 "DeviceModelName",
                                                 "DeviceType",
                                                 "DeviceDisplayName",
                                                 "DeviceScanType",
                                                 "StreamSelector",
                                                 "StreamID",
                                                 "PixelFormat",
                                                 "Width",
                                                 "WidthMax",
                                                 "Height",
                                                 "HeightMax",
                                                 "OffsetX",
                                                 "OffsetY",
                                                 "DecimationHorizontal",
                                                 "DecimationVertical",
                                                 "DevicePort",
                                                 "TLParamsLocked"};

inline constexpr FeatureRow kFeatures[] = {
    {"DeviceType", "Enumeration", "-", "-", "-", "-", "-", "-"},
    {"DeviceScanType", "Enumeration", "DeviceScanType_Reg", "Expert", "Yes", "-", "-", "-"},
    {"StreamSelector", "Integer", "r_StreamSelector", "Beginner", "No", "0 .. MaxStreamIndex", "-", "selects StreamID"},
    {"PixelFormat", "Enumeration", "PixelFormat_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"Width", "Integer", "Width_Reg", "Beginner", "Yes", "- .. WidthMax", "-", "-"},
    {"Height", "Integer", "Height_Reg", "Beginner", "Yes", "- .. HeightMax", "-", "-"},
    {"OffsetX", "Integer", "OffsetX_Reg", "Beginner", "Yes", "0 .. OffsetXMax", "-", "-"},
    {"OffsetY", "Integer", "OffsetY_Reg", "Beginner", "Yes", "0 .. OffsetYMax", "-", "-"},
    {"DecimationHorizontal", "Integer", "DecimationHorizontal_Reg", "Expert", "Yes", "1 .. 1", "-", "-"},
    {"DecimationVertical", "Integer", "DecimationVertical_Reg", "Expert", "Yes", "1 .. 1", "-", "-"},
    {"IncomingPixelFormat", "Enumeration", "IncomingPixelFormat_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"IncomingWidth", "Integer", "IncomingWidth_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"IncomingHeight", "Integer", "IncomingHeight_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CACHE_FLUSH", "Command", "GRB_Cache_Flush_Reg", "Beginner", "-", "-", "-", "writes 1; imposed WO"},
    {"GRB_CXP_BITRATE_MODE", "Enumeration", "GRB_CxP_Bitrate_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CXP_BITRATE", "Enumeration", "GRB_CxP_Bitrate_Reg", "Beginner", "Yes", "-", "GRB_CXP_BITRATE_MODE", "-"},
    {"GRB_CXP_DISCOVERY_MODE", "Enumeration", "GRB_CxP_Discovery_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CXP_DISCOVERY", "Enumeration", "GRB_CxP_Discovery_Reg", "Beginner", "Yes", "-", "GRB_CXP_DISCOVERY_MODE",
     "-"},
    {"GRB_CXP_POCXP_MODE", "Enumeration", "GRB_CxP_PoCxP_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_ACQ_XSUB", "Enumeration", "GRB_Acq_XSub_Reg", "Beginner", "-", "-", "DecimationHorizontal", "-"},
    {"GRB_ACQ_YSUB", "Enumeration", "GRB_Acq_XSub_Reg", "Beginner", "-", "-", "DecimationVertical", "-"},
    {"GRB_ROI_SRC_XOFFSET", "Integer", "GRB_ROI_SRC_XOFFSET_Reg", "Beginner", "No", "-", "OffsetX", "-"},
    {"GRB_ROI_SRC_YOFFSET", "Integer", "GRB_ROI_SRC_YOFFSET_Reg", "Beginner", "No", "-", "OffsetY", "-"},
    {"GRB_ROI_DST_XOFFSET", "Integer", "GRB_Roi_Dst_XOffset_Reg", "Guru", "Yes", "-", "-", "-"},
    {"GRB_ROI_DST_YOFFSET", "Integer", "GRB_Roi_Dst_YOffset_Reg", "Guru", "Yes", "-", "-", "-"},
    {"GRB_ROI_XLENGTH", "Integer", "GRB_ROI_XLength_Reg", "Beginner", "-", "-", "Width, DecimationHorizontal", "-"},
    {"GRB_ROI_YLENGTH", "Integer", "GRB_ROI_YLength_Reg", "Beginner", "-", "-", "Height, DecimationVertical", "-"},
    {"GRB_BIT_SHIFT", "Integer", "GRB_LUT_Shift_Reg", "Expert", "Yes", "-", "-", "-"},
    {"GRB_LUT_SHIFT", "Integer", "GRB_LUT_Shift_Reg", "Invisible", "-", "-", "-", "-"},
    {"GRB_BUS_FORMAT", "Enumeration", "GRB_Bus_Format_Reg", "Beginner", "-", "-", "PixelFormat", "-"},
    {"GRB_USR_FORMAT", "Enumeration", "GRB_Usr_Format_Reg", "Beginner", "-", "-", "PixelFormat", "-"},
    {"GRB_ACQ_BLOCKING", "Boolean", "GRB_Acq_Blocking_Reg", "Expert", "Yes", "-", "-", "on 1, off 2"},
    {"GRB_ACQ_FIELD_MODE", "Enumeration", "GRB_Acq_Field_Reg", "Expert", "Yes", "-", "-", "-"},
    {"GRB_DATASTREAM_VALID", "Enumeration", "GRB_DataStreamValid_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CONFIG_FILE_LOAD", "Command", "GRB_Config_File_Load_Reg", "Beginner", "-", "-", "-", "writes 1; imposed WO"},
    {"GRB_CONFIG_FILE_SAVE", "Command", "GRB_Config_File_Save_Name_Reg", "Beginner", "-", "-", "-",
     "writes 1; imposed WO; locked by TLParamsLocked"},
    {"GRB_CAM_TYPE", "Enumeration", "GRB_Cam_TypeReg", "Expert", "-", "-", "DeviceScanType", "-"},
    {"GRB_CAM_FORMAT", "Enumeration", "GRB_Cam_Format_Reg", "Expert", "Yes", "-", "-", "-"},
    {"GRB_CAM_SRC_COL", "Enumeration", "GRB_Cam_Src_Col_Reg", "Expert", "-", "-", "IncomingPixelFormat", "-"},
    {"GRB_CAM_SRC_DEPTH", "Integer", "GRB_Cam_Src_Depth_Reg", "Expert", "-", "-", "IncomingPixelFormat", "-"},
    {"GRB_CAM_ACTIVE_XLENGTH", "Integer", "GRB_Cam_Active_XLength_Reg", "Expert", "-", "-", "IncomingWidth", "-"},
    {"GRB_CAM_ACTIVE_YLENGTH", "Integer", "GRB_Cam_Active_YLength_Reg", "Expert", "-", "-", "IncomingHeight", "-"},
    {"GRB_CAMTRIG_SRC", "Enumeration", "GRB_CamTrig_Src_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_EXPOSE", "Command", "GRB_Expose_Reg", "Beginner", "-", "-", "-", "writes 1; imposed WO"},
    {"GRB_CAMTRIG_FILTER_NS", "Integer", "GRB_CamTrig_Filter_Ns_Reg", "Beginner", "Yes", "0 .. 262144", "-", "-"},
    {"GRB_CAMTRIG_ENCODER_MODE", "Enumeration", "GRB_CamTrig_Encoder_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CAMTRIG_ENCODER_SRC", "Enumeration", "GRB_CamTrig_Encoder_Src_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CAMTRIG_ENCODER_FILTER_NS", "Integer", "GRB_CamTrig_Encoder_Filter_Ns_Reg", "Beginner", "Yes", "0 .. 2000",
     "-", "-"},
    {"GRB_CAMTRIG_MULTIPLIER", "Integer", "GRB_CamTrig_Multiplier_Reg", "Beginner", "Yes", "1 .. 1023", "-", "-"},
    {"GRB_CAMTRIG_DIVIDER", "Integer", "GRB_CamTrig_Divider_Reg", "Beginner", "Yes", "1 .. 1023", "-", "-"},
    {"GRB_CAMTRIG_DELAY_MODE_D1CAM", "Enumeration", "GRB_CamTrig_Delay_Mode_D1Cam_Reg", "Beginner", "Yes", "-", "-",
     "-"},
    {"GRB_CAMTRIG_DELAY_MODE_D2CAM", "Enumeration", "GRB_CamTrig_Delay_Mode_D2Cam_Reg", "Beginner", "Yes", "-", "-",
     "-"},
    {"GRB_CAMTRIG_CXPTRIG_SRC", "Enumeration", "GRB_CamTrig_CxpTrig_Src_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_CAMTRIG_CXPTRIG_MODE", "Enumeration", "GRB_CamTrig_CxpTrig_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_FGTRIG_SRC", "Enumeration", "GRB_FgTrig_Src_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_FGTRIG_MODE", "Enumeration", "GRB_FgTrig_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_FGTRIG_DELAY_MODE", "Enumeration", "GRB_FgTrig_Delay_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_FGTRIG_FILTER_NS", "Integer", "GRB_FgTrig_Filter_Ns_Reg", "Beginner", "Yes", "0 .. 262144", "-", "-"},
    {"GRB_COUNT_BUFFER_READY", "Integer", "GRB_Count_Buffer_Ready_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_COUNT_BUFFER_READY_NOW", "Integer", "GRB_Count_Buffer_Ready_Now_Reg", "Expert", "No", "-", "-", "-"},
    {"GRB_TIMERA1_PERIOD_NS", "Integer", "GRB_TimerA1_Period_Ns_Reg", "Beginner", "Yes", "4 .. 17179869000", "-", "-"},
    {"GRB_TIMERA1_MODE", "Enumeration", "GRB_TimerA1_Mode_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_TIMERA1_PULSE_COUNT", "Integer", "GRB_TimerA1_Pulse_Count_Reg", "Beginner", "Yes", "1 .. 65535", "-", "-"},
    {"GRB_TIMERA1_SWTRIG", "Command", "GRB_TimerA1_Swtrig_Reg", "Beginner", "-", "-", "-", "writes 1; imposed WO"},
    {"GRB_TIMERD1FG_VALUE_NS", "Integer", "GRB_TimerD1Fg_Value_Ns_Reg", "Beginner", "Yes", "1 .. 17179869000", "-",
     "-"},
    {"GRB_TIMERD1FG_COUNT", "Integer", "GRB_TimerD1Fg_Count_Reg", "Beginner", "Yes", "1 .. 17179869", "-", "-"},
    {"GRB_TIMERD1CAM_VALUE_NS", "Integer", "GRB_TimerD1Cam_Value_Ns_Reg", "Beginner", "Yes", "1 .. 17179869000", "-",
     "-"},
    {"GRB_TIMERD2CAM_VALUE_NS", "Integer", "GRB_TimerD2Cam_Value_Ns_Reg", "Beginner", "Yes", "1 .. 17179869000", "-",
     "-"},
    {"GRB_TIMERM1_WIDTH_NS", "Integer", "GRB_TimerM1_Width_Ns_Reg", "Beginner", "Yes", "0 .. 17179869000", "-", "-"},
    {"GRB_TIMERM2_WIDTH_NS", "Integer", "GRB_TimerM2_Width_Ns_Reg", "Beginner", "Yes", "0 .. 17179869000", "-", "-"},
    {"GRB_IO_IN_PORT", "Enumeration", "GRB_Io_In_Port_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_IO_IN_VALUE", "Integer", "GRB_IO_In_Value_Reg", "Beginner", "Yes", "0 .. 1", "GRB_IO_IN_PORT", "-"},
    {"GRB_IO_OUT_PORT", "Enumeration", "GRB_IO_Out_Port_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_IO_OUT_METHOD", "Enumeration", "GRB_IO_Out_Method_Reg", "Beginner", "Yes", "-", "-", "-"},
    {"GRB_IO_OUT_BIT", "Integer", "GRB_IO_Out_Bit_Reg", "Beginner", "Yes", "1 .. 4", "-", "-"},
    {"GRB_INTRPT_TEST_Test", "Command", "GRB_Intrpt_Test_Test_Reg", "Beginner", "-", "-", "-", "writes 1"},
    {"DataStreamOpen", "Integer", "DataStreamOpen_Reg", "Invisible", "-", "-", "-", "imposed RO"},
    {"TLParamsLocked", "Integer", "-", "Invisible", "-", "-", "-", "imposed RW; constant 0"},
};

inline constexpr FormulaRow kFormulas[] = {
    {"MaxStreamIndex", "StreamEnumeration", "-", "-", "MAXINDEX = StreamCount", "MAXINDEX - 1"},
    {"StreramIndexAvailable", "StreamEnumeration", "-", "-", "MAXINDEX = StreamCount", "((MAXINDEX - 1) < 0) ? 0 : 1"},
    {"WidthMax", "ImageFormatControl", "Standard", "Expert",
     "IncomingWidth = IncomingWidth, DECIMATION = DecimationHorizontal",
     "DECIMATION ? IncomingWidth / DECIMATION : IncomingWidth"},
    {"HeightMax", "ImageFormatControl", "Standard", "Expert",
     "IncomingHeight = IncomingHeight, DECIMATION = DecimationVertical",
     "DECIMATION ? IncomingHeight / DECIMATION : IncomingHeight"},
    {"OffsetYMax", "ImageFormatControl", "Custom", "Invisible", "HEIGHTMAX = HeightMax, HEIGHT = Height",
     "HEIGHTMAX - HEIGHT"},
    {"OffsetXMax", "ImageFormatControl", "Custom", "Invisible", "WIDTHMAX = WidthMax, WIDTH = Width",
     "WIDTHMAX - WIDTH"},
    {"TimerD1CamValueNsLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "CAMTRIG_DELAY_MODE_D1CAM = GRB_CAMTRIG_DELAY_MODE_D1CAM, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:((CAMTRIG_DELAY_MODE_D1CAM = 0xc0093e02) ? 0:1)"},
    {"TimerD1CamCountLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "CAMTRIG_DELAY_MODE_D1CAM = GRB_CAMTRIG_DELAY_MODE_D1CAM, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:((CAMTRIG_DELAY_MODE_D1CAM = 0xc0093e03) ? 0:1)"},
    {"TimerD2CamValueNsLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "CAMTRIG_DELAY_MODE_D2CAM = GRB_CAMTRIG_DELAY_MODE_D2CAM, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:((CAMTRIG_DELAY_MODE_D2CAM = 0xc0093e02) ? 0:1)"},
    {"TimerD1FgValueNsLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "FGTRIG_DELAY_MODE = GRB_FGTRIG_DELAY_MODE, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:((FGTRIG_DELAY_MODE = 0xc0027803) ? 0:1)"},
    {"TimerD1FgCountLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "FGTRIG_DELAY_MODE = GRB_FGTRIG_DELAY_MODE, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:(((FGTRIG_DELAY_MODE = 0xc0027802) ? 0:1) && ((FGTRIG_DELAY_MODE = 0xc0027804) ? "
     "0:1))"},
    {"TimerA1PulseCountLocked", "GRB_CounterTimer", "Custom", "Invisible",
     "TIMERA1_MODE = GRB_TIMERA1_MODE, TLPARAMS_LOCKED = TLParamsLocked",
     "TLPARAMS_LOCKED ? 1:((TIMERA1_MODE = 0xc0095202) ? 0:1)"},
    {"TimerA1SwTrigLocked", "GRB_CounterTimer", "Custom", "Invisible", "TIMERA1_MODE = GRB_TIMERA1_MODE",
     "(TIMERA1_MODE = 0xc0095202 ? 0:1)"},
    {"SwTrigLocked", "GRB_CameraTriggerControl", "Custom", "Invisible", "CAMTRIG_SRC = GRB_CAMTRIG_SRC",
     "(CAMTRIG_SRC = 0xc0027204 ? 0:1) && (CAMTRIG_SRC = 0xc0027216 ? 0:1) && (CAMTRIG_SRC = 0xc0027217 ? 0:1) "
     "&& (CAMTRIG_SRC = 0xc0027218 ? 0:1) && (CAMTRIG_SRC = 0xc0027219 ? 0:1)"},
};

inline constexpr EnumerationRow kEnumerations[] = {
    {"DeviceType", "-", 1, "CXP 0x00000001"},
    {"DeviceScanType", "DeviceScanType_Reg", 2, "Linescan 0x00000000; Areascan 0x00000001"},
    {"PixelFormat", "PixelFormat_Reg", 41,
     "Mono8 0x01080001; Mono10 0x01100003; Mono12 0x01100005; Mono14 0x01100025; Mono16 0x01100007; BayerGR8 "
     "0x01080008; from 0x0110000C in steps of 0x4: BayerGR10, BayerGR12, BayerGR14; BayerGR16 0x0110002E; "
     "BayerRG8 0x01080009; from 0x0110000D in steps of 0x4: BayerRG10, BayerRG12, BayerRG14; BayerRG16 "
     "0x0110002F; BayerGB8 0x0108000A; BayerGB10 0x0110000E; BayerGB14 0x01100016; BayerGB16 0x01100030; "
     "BayerGB12 0x01100012; BayerBG8 0x0108000B; from 0x0110000F in steps of 0x4: BayerBG10, BayerBG12, "
     "BayerBG14; BayerBG16 0x01100031; RGB8 0x02180014; RGB10 0x02300018; RGB12 0x0230001A; RGB14 0x0230005E; "
     "RGB16 0x02300033; BGR8 0x02180015; BGR10 0x02300019; BGR12 0x0230001B; BGR14 0x0230004A; BGR16 "
     "0x0230004B; RGBa8 0x02200016; from 0x0240005F in steps of 0x2: RGBa10, RGBa12, RGBa14; RGBa16 "
     "0x02400064; YUV422_8 0x02100032"},
    {"IncomingPixelFormat", "IncomingPixelFormat_Reg", 36,
     "Mono8 0x01080001; Mono10 0x01100003; Mono12 0x01100005; Mono14 0x01100025; Mono16 0x01100007; BayerGR8 "
     "0x01080008; from 0x0110000C in steps of 0x4: BayerGR10, BayerGR12, BayerGR14; BayerGR16 0x0110002E; "
     "BayerRG8 0x01080009; from 0x0110000D in steps of 0x4: BayerRG10, BayerRG12, BayerRG14; BayerRG16 "
     "0x0110002F; BayerGB8 0x0108000A; BayerGB10 0x0110000E; BayerGB14 0x01100016; BayerGB16 0x01100030; "
     "BayerGB12 0x01100012; BayerBG8 0x0108000B; from 0x0110000F in steps of 0x4: BayerBG10, BayerBG12, "
     "BayerBG14; BayerBG16 0x01100031; RGB8 0x02180014; RGB10 0x02300018; RGB12 0x0230001A; RGB14 0x0230005E; "
     "RGB16 0x02300033; RGBa8 0x02200016; from 0x0240005F in steps of 0x2: RGBa10, RGBa12, RGBa14; RGBa16 "
     "0x02400064; YUV422_8 0x02100032"},
    {"GRB_CXP_BITRATE_MODE", "GRB_CxP_Bitrate_Mode_Reg", 6,
     "from 0xC0091001 in steps of 0x1: AUTO, CXP1, CXP2, CXP3, CXP5, CXP6"},
    {"GRB_CXP_BITRATE", "GRB_CxP_Bitrate_Reg", 6,
     "UNKNOWN 0xC0090201; from 0xC0091002 in steps of 0x1: CXP1, CXP2, CXP3, CXP5, CXP6"},
    {"GRB_CXP_DISCOVERY_MODE", "GRB_CxP_Discovery_Mode_Reg", 4,
     "from 0xC0091201 in steps of 0x1: CXP_DISCOVERY_AUTO, CXP_DISCOVERY_1X, CXP_DISCOVERY_2X, CXP_DISCOVERY_4X"},
    {"GRB_CXP_DISCOVERY", "GRB_CxP_Discovery_Reg", 4,
     "CXP_DISCOVERY_UNKNOWN 0xC0090401; from 0xC0091202 in steps of 0x1: CXP_DISCOVERY_1X, CXP_DISCOVERY_2X, "
     "CXP_DISCOVERY_4X"},
    {"GRB_CXP_POCXP_MODE", "GRB_CxP_PoCxP_Mode_Reg", 4,
     "from 0xC0091101 in steps of 0x1: CXP_POCXP_AUTO, CXP_POCXP_OFF, CXP_POCXP_TRIP_RESET, CXP_POCXP_FORCEON"},
    {"GRB_ACQ_XSUB", "GRB_Acq_XSub_Reg", 4,
     "from 0xC0020701 in steps of 0x1: GRB_ACQ_X1, GRB_ACQ_X2, GRB_ACQ_X4, GRB_ACQ_X8"},
    {"GRB_ACQ_YSUB", "GRB_Acq_XSub_Reg", 4,
     "from 0xC0020701 in steps of 0x1: GRB_ACQ_X1, GRB_ACQ_X2, GRB_ACQ_X4, GRB_ACQ_X8"},
    {"GRB_BUS_FORMAT", "GRB_Bus_Format_Reg", 41,
     "GRB_BUS_FORMAT_MONO8 0xC0022601; from 0xC0022613 in steps of 0x1: GRB_BUS_FORMAT_MONO10, "
     "GRB_BUS_FORMAT_MONO12, GRB_BUS_FORMAT_MONO14; GRB_BUS_FORMAT_MONO16 0xC0022602; from 0xC0022628 in steps "
     "of 0x4: GRB_BUS_FORMAT_BAYER_GR8, GRB_BUS_FORMAT_BAYER_GR10, GRB_BUS_FORMAT_BAYER_GR12, "
     "GRB_BUS_FORMAT_BAYER_GR14, GRB_BUS_FORMAT_BAYER_GR16; from 0xC0022629 in steps of 0x4: "
     "GRB_BUS_FORMAT_BAYER_RG8, GRB_BUS_FORMAT_BAYER_RG10, GRB_BUS_FORMAT_BAYER_RG12, "
     "GRB_BUS_FORMAT_BAYER_RG14; GRB_BUS_FORMAT_BAYER_RG16 0xC0022636; from 0xC002262A in steps of 0x4: "
     "GRB_BUS_FORMAT_BAYER_GB8, GRB_BUS_FORMAT_BAYER_GB10, GRB_BUS_FORMAT_BAYER_GB12, "
     "GRB_BUS_FORMAT_BAYER_GB14, GRB_BUS_FORMAT_BAYER_GB16; from 0xC002262B in steps of 0x4: "
     "GRB_BUS_FORMAT_BAYER_BG8, GRB_BUS_FORMAT_BAYER_BG10, GRB_BUS_FORMAT_BAYER_BG12, "
     "GRB_BUS_FORMAT_BAYER_BG14, GRB_BUS_FORMAT_BAYER_BG16; GRB_BUS_FORMAT_RGB8 0xC0022612; "
     "GRB_BUS_FORMAT_RGB10 0xC002263D; GRB_BUS_FORMAT_RGB12 0xC002261D; GRB_BUS_FORMAT_RGB14 0xC002263F; "
     "GRB_BUS_FORMAT_RGB16 0xC002260E; GRB_BUS_FORMAT_BGR8 0xC0022611; GRB_BUS_FORMAT_BGR10 0xC002263C; "
     "GRB_BUS_FORMAT_BGR12 0xC002261C; GRB_BUS_FORMAT_BGR14 0xC002263E; GRB_BUS_FORMAT_BGR16 0xC0022609; from "
     "0xC0022623 in steps of 0x1: GRB_BUS_FORMAT_RGBA8, GRB_BUS_FORMAT_RGBA10, GRB_BUS_FORMAT_RGBA12, "
     "GRB_BUS_FORMAT_RGBA14, GRB_BUS_FORMAT_RGBA16; GRB_BUS_FORMAT_YUV422_8 0xC002261E"},
    {"GRB_USR_FORMAT", "GRB_Usr_Format_Reg", 41,
     "GRB_USR_FORMAT_MONO8 0xC0029E01; from 0xC0029E13 in steps of 0x1: GRB_USR_FORMAT_MONO10, "
     "GRB_USR_FORMAT_MONO12, GRB_USR_FORMAT_MONO14; GRB_USR_FORMAT_MONO16 0xC0029E02; from 0xC0029E28 in steps "
     "of 0x4: GRB_USR_FORMAT_BAYER_GR8, GRB_USR_FORMAT_BAYER_GR10, GRB_USR_FORMAT_BAYER_GR12, "
     "GRB_USR_FORMAT_BAYER_GR14, GRB_USR_FORMAT_BAYER_GR16; from 0xC0029E29 in steps of 0x4: "
     "GRB_USR_FORMAT_BAYER_RG8, GRB_USR_FORMAT_BAYER_RG10, GRB_USR_FORMAT_BAYER_RG12, "
     "GRB_USR_FORMAT_BAYER_RG14, GRB_USR_FORMAT_BAYER_RG16; from 0xC0029E2A in steps of 0x4: "
     "GRB_USR_FORMAT_BAYER_GB8, GRB_USR_FORMAT_BAYER_GB10, GRB_USR_FORMAT_BAYER_GB12, "
     "GRB_USR_FORMAT_BAYER_GB14, GRB_USR_FORMAT_BAYER_GB16; from 0xC0029E2B in steps of 0x4: "
     "GRB_USR_FORMAT_BAYER_BG8, GRB_USR_FORMAT_BAYER_BG10, GRB_USR_FORMAT_BAYER_BG12, "
     "GRB_USR_FORMAT_BAYER_BG14, GRB_USR_FORMAT_BAYER_BG16; GRB_USR_FORMAT_RGB8 0xC0029E12; "
     "GRB_USR_FORMAT_RGB10 0xC0029E3D; GRB_USR_FORMAT_RGB12 0xC0029E1D; GRB_USR_FORMAT_RGB14 0xC0029E3F; "
     "GRB_USR_FORMAT_RGB16 0xC0029E0E; GRB_USR_FORMAT_BGR8 0xC0029E11; GRB_USR_FORMAT_BGR10 0xC0029E3C; "
     "GRB_USR_FORMAT_BGR12 0xC0029E1C; GRB_USR_FORMAT_BGR14 0xC0029E3E; GRB_USR_FORMAT_BGR16 0xC0029E09; from "
     "0xC0029E23 in steps of 0x1: GRB_USR_FORMAT_RGBA8, GRB_USR_FORMAT_RGBA10, GRB_USR_FORMAT_RGBA12, "
     "GRB_USR_FORMAT_RGBA14, GRB_USR_FORMAT_RGBA16; GRB_USR_FORMAT_YUV422_8 0xC0029E1E"},
    {"GRB_ACQ_FIELD_MODE", "GRB_Acq_Field_Reg", 12,
     "from 0xC0020601 in steps of 0x1: GRB_ACQ_FRAME_12, GRB_ACQ_FRAME_21, GRB_ACQ_FIELD_12, GRB_ACQ_FIELD_21, "
     "GRB_ACQ_FIELD_1, GRB_ACQ_FIELD_2, GRB_ACQ_FIELD_NEXT, GRB_ACQ_LINE_DOUBLE_12, GRB_ACQ_LINE_DOUBLE_21, "
     "GRB_ACQ_LINE_DOUBLE_NEXT, GRB_ACQ_LINE_DOUBLE_1, GRB_ACQ_LINE_DOUBLE_2"},
    {"GRB_DATASTREAM_VALID", "GRB_DataStreamValid_Reg", 4,
     "from 0xC0022501 in steps of 0x1: GRB_DATASTREAM_ALWAYS, GRB_DATASTREAM_LINE_ONLY, "
     "GRB_DATASTREAM_FRAME_ONLY, GRB_DATASTREAM_FRAME_AND_LINE"},
    {"GRB_CAM_TYPE", "GRB_Cam_TypeReg", 4,
     "from 0xC0021901 in steps of 0x1: GRB_CAM_LINESCAN_ROI, GRB_CAM_LINESCAN_NO_ROI, GRB_CAM_AREASCAN_ROI, "
     "GRB_CAM_AREASCAN_NO_ROI"},
    {"GRB_CAM_FORMAT", "GRB_Cam_Format_Reg", 2, "GRB_CAM_NON_INTERLACED 0xC0020F02; GRB_CAM_INTERLACED 0xC0020F01"},
    {"GRB_CAM_SRC_COL", "GRB_Cam_Src_Col_Reg", 8,
     "GRB_CAM_SRC_MONO 0x00000001; GRB_CAM_SRC_RGB 0x00000003; GRB_CAM_SRC_RGBA 0xC0021206; from 0xC0021201 in "
     "steps of 0x1: GRB_CAM_SRC_BAY_RGGB, GRB_CAM_SRC_BAY_GRBG, GRB_CAM_SRC_BAY_GBRG, GRB_CAM_SRC_BAY_BGGR, "
     "GRB_CAM_SRC_YUV"},
    {"GRB_CAMTRIG_SRC", "GRB_CamTrig_Src_Reg", 39,
     "GRB_CAMTRIG_SRC_NONE 0xC0027203; GRB_CAMTRIG_SRC_FGTRIGA_CHX 0xC0027202; GRB_CAMTRIG_SRC_SWTRIG_CHX "
     "0xC0027204; GRB_CAMTRIG_SRC_TIMERA1_CHX 0xC0027209; from 0xC002721A in steps of 0x1: "
     "GRB_CAMTRIG_SRC_TIMERA1_CH1, GRB_CAMTRIG_SRC_TIMERA1_CH2, GRB_CAMTRIG_SRC_TIMERA1_CH3, "
     "GRB_CAMTRIG_SRC_TIMERA1_CH4, GRB_CAMTRIG_SRC_422IN_CHX_0_RISE, GRB_CAMTRIG_SRC_422IN_CH1_0_RISE, "
     "GRB_CAMTRIG_SRC_422IN_CH2_0_RISE, GRB_CAMTRIG_SRC_422IN_CH3_0_RISE, GRB_CAMTRIG_SRC_422IN_CH4_0_RISE, "
     "GRB_CAMTRIG_SRC_422IN_CHX_0_FALL, GRB_CAMTRIG_SRC_422IN_CH1_0_FALL, GRB_CAMTRIG_SRC_422IN_CH2_0_FALL, "
     "GRB_CAMTRIG_SRC_422IN_CH3_0_FALL, GRB_CAMTRIG_SRC_422IN_CH4_0_FALL, GRB_CAMTRIG_SRC_OPTOIN_CHX_0_RISE, "
     "GRB_CAMTRIG_SRC_OPTOIN_CH1_0_RISE, GRB_CAMTRIG_SRC_OPTOIN_CH2_0_RISE, GRB_CAMTRIG_SRC_OPTOIN_CH3_0_RISE, "
     "GRB_CAMTRIG_SRC_OPTOIN_CH4_0_RISE, GRB_CAMTRIG_SRC_OPTOIN_CHX_0_FALL, GRB_CAMTRIG_SRC_OPTOIN_CH1_0_FALL, "
     "GRB_CAMTRIG_SRC_OPTOIN_CH2_0_FALL, GRB_CAMTRIG_SRC_OPTOIN_CH3_0_FALL, GRB_CAMTRIG_SRC_OPTOIN_CH4_0_FALL, "
     "GRB_CAMTRIG_SRC_TTLIN_CHX_0_RISE, GRB_CAMTRIG_SRC_TTLIN_CH1_0_RISE, GRB_CAMTRIG_SRC_TTLIN_CH2_0_RISE, "
     "GRB_CAMTRIG_SRC_TTLIN_CH3_0_RISE, GRB_CAMTRIG_SRC_TTLIN_CH4_0_RISE, GRB_CAMTRIG_SRC_TTLIN_CHX_0_FALL, "
     "GRB_CAMTRIG_SRC_TTLIN_CH1_0_FALL, GRB_CAMTRIG_SRC_TTLIN_CH2_0_FALL, GRB_CAMTRIG_SRC_TTLIN_CH3_0_FALL, "
     "GRB_CAMTRIG_SRC_TTLIN_CH4_0_FALL, GRB_CAMTRIG_SRC_ENCODER_CHX"},
    {"GRB_CAMTRIG_ENCODER_MODE", "GRB_CamTrig_Encoder_Mode_Reg", 5,
     "from 0xC0093801 in steps of 0x1: GRB_CAMTRIG_ENCODER_MODE1, GRB_CAMTRIG_ENCODER_MODE2, "
     "GRB_CAMTRIG_ENCODER_MODE3, GRB_CAMTRIG_ENCODER_MODE4, GRB_CAMTRIG_ENCODER_MODE5"},
    {"GRB_CAMTRIG_ENCODER_SRC", "GRB_CamTrig_Encoder_Src_Reg", 15,
     "from 0xC0093901 in steps of 0x1: GRB_CAMTRIG_SRC_422IN_CHX_0, GRB_CAMTRIG_SRC_422IN_CH1_0, "
     "GRB_CAMTRIG_SRC_422IN_CH2_0, GRB_CAMTRIG_SRC_422IN_CH3_0, GRB_CAMTRIG_SRC_422IN_CH4_0, "
     "GRB_CAMTRIG_SRC_OPTOIN_CHX_0, GRB_CAMTRIG_SRC_OPTOIN_CH1_0, GRB_CAMTRIG_SRC_OPTOIN_CH2_0, "
     "GRB_CAMTRIG_SRC_OPTOIN_CH3_0, GRB_CAMTRIG_SRC_OPTOIN_CH4_0, GRB_CAMTRIG_SRC_TTLIN_CHX_0, "
     "GRB_CAMTRIG_SRC_TTLIN_CH1_0, GRB_CAMTRIG_SRC_TTLIN_CH2_0, GRB_CAMTRIG_SRC_TTLIN_CH3_0, "
     "GRB_CAMTRIG_SRC_TTLIN_CH4_0"},
    {"GRB_CAMTRIG_DELAY_MODE_D1CAM", "GRB_CamTrig_Delay_Mode_D1Cam_Reg", 2,
     "GRB_CAMTRIG_DELAY_NONE 0xC0093E01; GRB_CAMTRIG_DELAY_TIME 0xC0093E02"},
    {"GRB_CAMTRIG_DELAY_MODE_D2CAM", "GRB_CamTrig_Delay_Mode_D2Cam_Reg", 2,
     "GRB_CAMTRIG_DELAY_NONE 0xC0093E01; GRB_CAMTRIG_DELAY_TIME 0xC0093E02"},
    {"GRB_CAMTRIG_CXPTRIG_SRC", "GRB_CamTrig_CxpTrig_Src_Reg", 18,
     "from 0xC0093C01 in steps of 0x1: GRB_CAMTRIG_CXPTRIG_NONE, GRB_CAMTRIG_CXPTRIG_TIMERM1_CHX, "
     "GRB_CAMTRIG_CXPTRIG_TIMERM1_CH1, GRB_CAMTRIG_CXPTRIG_TIMERM1_CH2, GRB_CAMTRIG_CXPTRIG_TIMERM1_CH3, "
     "GRB_CAMTRIG_CXPTRIG_TIMERM1_CH4, GRB_CAMTRIG_CXPTRIG_TIMERM2_CHX, GRB_CAMTRIG_CXPTRIG_TIMERM2_CH1, "
     "GRB_CAMTRIG_CXPTRIG_TIMERM2_CH2, GRB_CAMTRIG_CXPTRIG_TIMERM2_CH3, GRB_CAMTRIG_CXPTRIG_TIMERM2_CH4, "
     "GRB_CAMTRIG_CXPTRIG_SW_RISE, GRB_CAMTRIG_CXPTRIG_SW_FALL, GRB_CAMTRIG_CXPTRIG_FGTRIGD_CHX, "
     "GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH1, GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH2, GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH3, "
     "GRB_CAMTRIG_CXPTRIG_FGTRIGD_CH4"},
    {"GRB_CAMTRIG_CXPTRIG_MODE", "GRB_CamTrig_CxpTrig_Mode_Reg", 6,
     "from 0xC0093D01 in steps of 0x1: GRB_CAMTRIG_CXPTRIG_RISEFALL, GRB_CAMTRIG_CXPTRIG_RISEFALL_INV, "
     "GRB_CAMTRIG_CXPTRIG_RISE, GRB_CAMTRIG_CXPTRIG_RISE_INV, GRB_CAMTRIG_CXPTRIG_FALL, "
     "GRB_CAMTRIG_CXPTRIG_FALL_INV"},
    {"GRB_FGTRIG_SRC", "GRB_FgTrig_Src_Reg", 20,
     "from 0xC002041C in steps of 0x1: GRB_FGTRIG_SRC_TIMERA1_CHX, GRB_FGTRIG_SRC_TIMERA1_CH1, "
     "GRB_FGTRIG_SRC_TIMERA1_CH2, GRB_FGTRIG_SRC_TIMERA1_CH3, GRB_FGTRIG_SRC_TIMERA1_CH4, "
     "GRB_FGTRIG_SRC_422IN_CHX_0, GRB_FGTRIG_SRC_422IN_CH1_0, GRB_FGTRIG_SRC_422IN_CH2_0, "
     "GRB_FGTRIG_SRC_422IN_CH3_0, GRB_FGTRIG_SRC_422IN_CH4_0, GRB_FGTRIG_SRC_OPTOIN_CHX_0, "
     "GRB_FGTRIG_SRC_OPTOIN_CH1_0, GRB_FGTRIG_SRC_OPTOIN_CH2_0, GRB_FGTRIG_SRC_OPTOIN_CH3_0, "
     "GRB_FGTRIG_SRC_OPTOIN_CH4_0, GRB_FGTRIG_SRC_TTLIN_CHX_0, GRB_FGTRIG_SRC_TTLIN_CH1_0, "
     "GRB_FGTRIG_SRC_TTLIN_CH2_0, GRB_FGTRIG_SRC_TTLIN_CH3_0, GRB_FGTRIG_SRC_TTLIN_CH4_0"},
    {"GRB_FGTRIG_MODE", "GRB_FgTrig_Mode_Reg", 11,
     "from 0xC0020501 in steps of 0x1: GRB_FGTRIG_FREERUN, GRB_FGTRIG_FIRST_POS_EDGE, "
     "GRB_FGTRIG_FIRST_NEG_EDGE, GRB_FGTRIG_EACH_POS_EDGE, GRB_FGTRIG_EACH_NEG_EDGE, "
     "GRB_FGTRIG_FIRST_POS_LEVEL, GRB_FGTRIG_FIRST_NEG_LEVEL, GRB_FGTRIG_EACH_POS_LEVEL, "
     "GRB_FGTRIG_EACH_NEG_LEVEL, GRB_FGTRIG_GATED_POS_LEVEL, GRB_FGTRIG_GATED_NEG_LEVEL"},
    {"GRB_FGTRIG_DELAY_MODE", "GRB_FgTrig_Delay_Mode_Reg", 8,
     "from 0xC0027801 in steps of 0x1: GRB_FGTRIG_DELAY_NONE, GRB_FGTRIG_DELAY_LINE, GRB_FGTRIG_DELAY_TIME, "
     "GRB_FGTRIG_DELAY_TIMERM1_CHX, GRB_FGTRIG_DELAY_TIMERM1_CH1, GRB_FGTRIG_DELAY_TIMERM1_CH2, "
     "GRB_FGTRIG_DELAY_TIMERM1_CH3, GRB_FGTRIG_DELAY_TIMERM1_CH4"},
    {"GRB_TIMERA1_MODE", "GRB_TimerA1_Mode_Reg", 2,
     "GRB_TIMERA1_MODE_RUN 0xC0095201; GRB_TIMERA1_MODE_N_PULSES 0xC0095202"},
    {"GRB_IO_IN_PORT", "GRB_Io_In_Port_Reg", 15,
     "from 0xC0091500 in steps of 0x100: GRB_IO_422IN_CHX, GRB_IO_422IN_CH1, GRB_IO_422IN_CH2, "
     "GRB_IO_422IN_CH3, GRB_IO_422IN_CH4, GRB_IO_OPTOIN_CHX, GRB_IO_OPTOIN_CH1, GRB_IO_OPTOIN_CH2, "
     "GRB_IO_OPTOIN_CH3, GRB_IO_OPTOIN_CH4, GRB_IO_TTLIN_CHX, GRB_IO_TTLIN_CH1, GRB_IO_TTLIN_CH2, "
     "GRB_IO_TTLIN_CH3, GRB_IO_TTLIN_CH4"},
    {"GRB_IO_OUT_PORT", "GRB_IO_Out_Port_Reg", 20,
     "from 0xC0092400 in steps of 0x100: GRB_IO_422OUT_CHX, GRB_IO_422OUT_CH1, GRB_IO_422OUT_CH2, "
     "GRB_IO_422OUT_CH3, GRB_IO_422OUT_CH4, GRB_IO_OPTOOUT_CHX, GRB_IO_OPTOOUT_CH1, GRB_IO_OPTOOUT_CH2, "
     "GRB_IO_OPTOOUT_CH3, GRB_IO_OPTOOUT_CH4, GRB_IO_TTLOUT_CHX, GRB_IO_TTLOUT_CH1, GRB_IO_TTLOUT_CH2, "
     "GRB_IO_TTLOUT_CH3, GRB_IO_TTLOUT_CH4, GRB_IO_CCOUT_CHX, GRB_IO_CCOUT_CH1, GRB_IO_CCOUT_CH2, "
     "GRB_IO_CCOUT_CH3, GRB_IO_CCOUT_CH4"},
    {"GRB_IO_OUT_METHOD", "GRB_IO_Out_Method_Reg", 38,
     "GRB_IO_METHOD_BIT_SET 0x01000000; GRB_IO_METHOD_BIT_CLEAR 0x02000000; from 0x04000000 in steps of "
     "0x1000000: GRB_IO_METHOD_BIT_TIMERMX_POS, GRB_IO_METHOD_BIT_FGTRIGD_POS, "
     "GRB_IO_METHOD_BIT_FIFO_WARN_POS; from 0x08000000 in steps of 0x1000000: GRB_IO_METHOD_BIT_TIMERMX_NEG, "
     "GRB_IO_METHOD_BIT_FGTRIGD_NEG, GRB_IO_METHOD_BIT_FIFO_WARN_NEG; from 0x10000000 in steps of 0x1000000: "
     "GRB_IO_METHOD_BIT_TIMERM1_POS_CHX, GRB_IO_METHOD_BIT_TIMERM1_NEG_CHX, GRB_IO_METHOD_BIT_TIMERM1_POS_CH1, "
     "GRB_IO_METHOD_BIT_TIMERM1_NEG_CH1, GRB_IO_METHOD_BIT_TIMERM1_POS_CH2, GRB_IO_METHOD_BIT_TIMERM1_NEG_CH2, "
     "GRB_IO_METHOD_BIT_TIMERM1_POS_CH3, GRB_IO_METHOD_BIT_TIMERM1_NEG_CH3, GRB_IO_METHOD_BIT_TIMERM1_POS_CH4, "
     "GRB_IO_METHOD_BIT_TIMERM1_NEG_CH4, GRB_IO_METHOD_BIT_TIMERM2_POS_CHX, GRB_IO_METHOD_BIT_TIMERM2_NEG_CHX, "
     "GRB_IO_METHOD_BIT_TIMERM2_POS_CH1, GRB_IO_METHOD_BIT_TIMERM2_NEG_CH1, GRB_IO_METHOD_BIT_TIMERM2_POS_CH2, "
     "GRB_IO_METHOD_BIT_TIMERM2_NEG_CH2, GRB_IO_METHOD_BIT_TIMERM2_POS_CH3, GRB_IO_METHOD_BIT_TIMERM2_NEG_CH3, "
     "GRB_IO_METHOD_BIT_TIMERM2_POS_CH4, GRB_IO_METHOD_BIT_TIMERM2_NEG_CH4, GRB_IO_METHOD_BIT_FGTRIGD_POS_CHX, "
     "GRB_IO_METHOD_BIT_FGTRIGD_NEG_CHX, GRB_IO_METHOD_BIT_FGTRIGD_POS_CH1, GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH1, "
     "GRB_IO_METHOD_BIT_FGTRIGD_POS_CH2, GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH2, GRB_IO_METHOD_BIT_FGTRIGD_POS_CH3, "
     "GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH3, GRB_IO_METHOD_BIT_FGTRIGD_POS_CH4, GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH4"},
};

inline constexpr ToolTipRow kToolTips[] = {
    {"GRB_CACHE_FLUSH",
     "The GRB library uses a cache to optimize access to the hardware. Parameter updates are stored and any "
     "necessary hardware writes only occur when this feature is actioned."},
    {"GRB_BOARD_INFO",
     "Returns information about the PCI bus slot, the camera interface, the chaining status, and the board "
     "capabilities."},
    {"GRB_BOARD_PROPERTIES", "Description of the hardware."},
    {"GRB_ROI_DST_XOFFSET", "Defines the destination ROI X offset in image pixels."},
    {"GRB_ROI_DST_YOFFSET", "Defines the destination ROI Y offset in image pixels."},
    {"GRB_BIT_SHIFT",
     "Bitwise shift of the pixel data. A positive number shifts to the right while a negative number shifts to "
     "the left."},
    {"GRB_LUT_SHIFT",
     "Deprecated; use GRB_BIT_SHIFT instead. Bitwise shift of the pixel data. A positive number shifts to the "
     "right while a negative number shifts to the left."},
    {"GRB_ACQ_BLOCKING",
     "Controls the behavior of the hardware acquisition engine. When turned-on, the acquisition engine waits "
     "until the next buffer is available to write to it."},
    {"GRB_ACQ_FIELD_MODE",
     "Defines which of the image fields is captured in area scan mode. This parameter is only used if "
     "GRB_CAM_FORMAT is GRB_CAM_INTERLACED."},
    {"GRB_ACQ_FRAME_12", "Capture the next frame, interleaving the fields. First line in the frame is from field 1."},
    {"GRB_ACQ_FRAME_21", "Capture the next frame, interleaving the fields. First line in the frame is from field 2."},
    {"GRB_ACQ_FIELD_12", "Capture fields sequentially starting with the next 1st field."},
    {"GRB_ACQ_FIELD_21", "Capture fields sequentially starting with the next 2nd field."},
    {"GRB_ACQ_FIELD_1", "Capture 1st fields only."},
    {"GRB_ACQ_FIELD_2", "Capture 2nd fields only."},
    {"GRB_ACQ_FIELD_NEXT", "Capture starting with the next field (either 1st or 2nd)."},
    {"GRB_ACQ_LINE_DOUBLE_12",
     "Capture frames formed by line duplication of each field, starting with the next 1st field."},
    {"GRB_ACQ_LINE_DOUBLE_21",
     "Capture frames formed by line duplication of each field, starting with the next 2nd field."},
    {"GRB_ACQ_LINE_DOUBLE_NEXT",
     "Capture frames formed by line duplication of each field, starting with the next field (either 1st or "
     "2nd)."},
    {"GRB_ACQ_LINE_DOUBLE_1", "Capture frames formed by line duplication of 1st fields only."},
    {"GRB_ACQ_LINE_DOUBLE_2", "Capture frames formed by line duplication of 2nd fields only."},
    {"GRB_DATASTREAM_VALID", "Determines the conditions for capturing image data."},
    {"GRB_DATASTREAM_ALWAYS", "Always capture image data."},
    {"GRB_DATASTREAM_LINE_ONLY", "Only capture image data when LINE is asserted."},
    {"GRB_DATASTREAM_FRAME_ONLY", "Only capture image data when FRAME is asserted."},
    {"GRB_DATASTREAM_FRAME_AND_LINE", "Only capture image data when FRAME and LINE are both asserted."},
    {"GRB_CONFIG_FILE", "Selects a GRB Configuration File (GCF) to be loaded."},
    {"GRB_CONFIG_FILE_LOAD", "Loads the GCF file selected in GRB_CONFIG_FILE."},
    {"GRB_CONFIG_FILE_SAVE_NAME", "Selects a GCF file into which the current configuration will be saved."},
    {"GRB_CONFIG_FILE_SAVE", "Saves current configuration to the GCF file selected in GRB_CONFIG_FILE_SAVE_NAME."},
    {"GRB_CAM_TYPE", "Type of image produced by the camera"},
    {"GRB_CAM_FORMAT", "Selects the camera data format."},
    {"GRB_CAM_NON_INTERLACED", "Non-interlaced frame."},
    {"GRB_CAM_INTERLACED", "Interlaced frame."},
    {"GRB_CAMTRIG_SRC", "Defines the source of the trigger signal sent to the camera."},
    {"GRB_CAMTRIG_FILTER_NS",
     "Controls a filter that can eliminate spurious trigger pulses from external input signals. If set to 0, "
     "bypasses the filter, actual minimum is 66 ns."},
    {"GRB_CAMTRIG_ENCODER_FILTER_NS",
     "Controls a filter that can eliminate spurious encoder pulses. A value of zero (default) bypasses the "
     "filter. A non-zero value sets the filter to eliminate pulses up to the specified width; but also results "
     "in a trigger latency of the same value. The filter is applied to both “A” and “B” inputs to the encoder "
     "module. The filter value is set in nanoseconds. Current firmware has a fixed filter width of 2us; so any "
     "non-zero value will result in a 2us filter being enabled. Actual minimum is 66 ns."},
    {"GRB_CAMTRIG_MULTIPLIER", "Multiplier factor between GRB_CAMTRIG_SRC trigger and the trigger to the camera."},
    {"GRB_CAMTRIG_DIVIDER", "Divider factor between GRB_CAMTRIG_SRC trigger and the trigger to the camera."},
    {"GRB_FGTRIG_FILTER_NS",
     "Controls a filter that can eliminate spurious trigger pulses from external input signals. A non-zero "
     "value sets the filter to eliminate pulses up to the specified width; but also results in a trigger "
     "latency of the same value. A value of zero bypasses the filter. Also the filter is automatically "
     "bypassed if a trigger source other than from an external input is selected. The filter value is set in "
     "nanoseconds, but the firmware cannot set values to nanosecond resolution. Therefore the nearest "
     "achievable value is set to that requested, and the value set can be read back via GRB_ParameterGet. The "
     "range is 64ns to 261us, with a variable resolution, and a tolerance of +-4ns. The default value is 200ns."},
    {"GRB_COUNT_BUFFER_READY",
     "This parameter allows an interrupt to be generated every GRB_COUNT_BUFFER_READY times that an image "
     "buffer is filled with data."},
    {"GRB_COUNT_BUFFER_READY_NOW", "The current value of the BUFFER_READY interrupt event counter."},
    {"GRB_TIMERA1_PERIOD_NS", "Timer used for both frame grabber and camera triggering."},
    {"GRB_TIMERA1_MODE", "Controls the operation of the astable timer TIMERA1 for the current channel."},
    {"GRB_TIMERA1_MODE_RUN", "The astable timer runs continuously."},
    {"GRB_TIMERA1_MODE_N_PULSES",
     "The astable timer generates GRB_TIMERA1_PULSE_COUNT pulses each time it is triggered."},
    {"GRB_TIMERA1_PULSE_COUNT",
     "Defines the number of pulses produced by astable timer TIMERA1 for the current channel when in mode "
     "GRB_TIMERA1_MODE_N_PULSES."},
    {"GRB_TIMERA1_SWTRIG",
     "Writing a 1 to this register results in GRB_TIMERA1_PULSE_COUNT pulses being produced by astable timer "
     "TIMERA1 for the current channel when in mode GRB_TIMERA1_MODE_N_PULSES."},
    {"GRB_TIMERD1FG_VALUE_NS", "Timer used to delay frame grabber triggering."},
    {"GRB_TIMERD1FG_COUNT", "Timer (number of lines) used to delay frame grabber triggering."},
    {"GRB_TIMERD1CAM_VALUE_NS", "Timer used to delay camera triggering."},
    {"GRB_TIMERD2CAM_VALUE_NS", "Timer used to delay camera triggering."},
    {"GRB_TIMERM1_WIDTH_NS", "Timer used for camera triggering and exposure control."},
    {"GRB_TIMERM2_WIDTH_NS", "Timer used for camera triggering and exposure control."},
};
