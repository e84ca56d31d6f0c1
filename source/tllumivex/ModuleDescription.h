// SPDX-License-Identifier: MIT
/// @file
/// What the four modules with a register map have in common: their description in the port memory, the URL under which
/// a Consumer finds it there, and the shape of their port answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "GenTL.h"
#include "RegisterMap.h"

namespace GenICam::Client {

/// Where a module's description comes from and where it stands.
struct ModuleDescription {
  const char *pType;            ///< type name of the resource
  uint16_t nNumber;             ///< number of the resource
  uint32_t nXmlAddress;         ///< address in the port memory
  const char *pUrlFormat;       ///< of address and size
  const char *pLockMessage;     ///< when the resource cannot be locked
  const char *pUnknownCommand;  ///< format of the failure of an unknown URL_INFO_CMD
};

constexpr ModuleDescription kSystemDescription = {
    "TLREGS",
    115,
    0x940,
    "Local:LumivexTLSystem.xml;%x;%x;",
    "Unable Lock Resource",
    "Invalid URL_INFO_CMD Command %08X",
};
constexpr ModuleDescription kInterfaceDescription = {
    "INTERFACEREGS",
    116,
    0x700,
    "Local:LumivexTLInterface.xml;%x;%x;",
    "Unable Lock Resource",
    "Invalid URL Info Command %d",
};
constexpr ModuleDescription kDeviceDescription = {
    "DEVTLREGS",
    118,
    0x222C,
    "Local:LumivexTLDevice.xml;%x;%x;",
    "Unable to Lock Resource",
    "Invalid URL_INFO_CMD Command %08X",
};
constexpr ModuleDescription kDataStreamDescription = {
    "DSREGS",
    121,
    0x200,
    "Local:LumivexTLDataStream.xml;%x;%x;",
    "Unable Lock Resource",
    "Invalid URL_INFO_CMD Command %08X",
};

// The module hands its own LVX_HERE on: a failure names the module's operation.

/// The description's text, followed by at least one zero byte, in whole words.
/// @throws invalidparameter_error if the resource cannot be found, loaded or locked
std::vector<uint32_t> LoadDescription(const ModuleDescription &description, const char *pFunction, const char *pFile,
                                      uint32_t nLine);

/// The description's URL, with the final separator.
std::string FormatDescriptionUrl(const ModuleDescription &description, uint32_t nXmlSize);

/// Delivers the URL without its final separator; the size counts it all the same.
/// @throws invalidparameter_error "Invalid Buffer Size", with the size needed in *piSize
void GetDescriptionUrl(const ModuleDescription &description, uint32_t nXmlSize, char *sURL, size_t *piSize,
                       const char *pFunction, const char *pFile, uint32_t nLine);

/// Answers a URL_INFO_CMD of a module with one URL. @throws invalidparameter_error
void GetDescriptionUrlInfo(const ModuleDescription &description, uint32_t nXmlSize, uint32_t iURLIndex,
                           URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize,
                           const char *pFunction, const char *pFile, uint32_t nLine);

/// What a port answers to the PORT_INFO_CMD queries that differ from port to port.
struct PortAnswers {
  std::string strId;
  std::string strVendor;
  std::string strModel;
  std::string strTLType;
  const char *pModule;
  bool bBigEndian;
  bool bAccessWrite;
  const char *pPortName;
  const char *pUnknownCommand;  ///< format of the failure of an unknown command
};

/// Vendor and model of the Producer's own ports.
constexpr const char *kVendorName = "Lumivex";
constexpr const char *kModelName = "Lumivex Transport Layer";

/// Answers a PORT_INFO_CMD. @throws invalidparameter_error
void AnswerPortInfo(const PortAnswers &answers, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                    size_t *piSize, const char *pFunction, const char *pFile, uint32_t nLine);

}  // namespace GenICam::Client
