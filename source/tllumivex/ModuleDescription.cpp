// SPDX-License-Identifier: MIT
#include "ModuleDescription.h"

#include <algorithm>
#include <cstring>

#include "Helper.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace Platform = Lumivex::Platform;

namespace {

struct UrlNumberRow {
  URL_INFO_CMD iInfoCmd;
  int32_t iAnswer;
};

// Kept: the schema version is not the 1.1 of the descriptions' own heads.
constexpr UrlNumberRow kUrlNumbers[] = {
    {URL_INFO_SCHEMA_VER_MAJOR, 1}, {URL_INFO_SCHEMA_VER_MINOR, 0},  {URL_INFO_FILE_VER_MAJOR, 2},
    {URL_INFO_FILE_VER_MINOR, 0},   {URL_INFO_FILE_VER_SUBMINOR, 0},
};

}  // namespace

std::vector<uint32_t> LoadDescription(const ModuleDescription &description, const char *pFunction, const char *pFile,
                                      uint32_t nLine) {
  const Platform::ModuleHandle module = Platform::LocalModuleHandle();
  const Platform::Resource *pResource = Platform::FindModuleResource(module, description.nNumber, description.pType);
  if (pResource == nullptr) {
    throw invalidparameter_error(FormatMessageText("Unable to find Resource, Error %d", Platform::LastError()),
                                 pFunction, pFile, nLine);
  }
  const Platform::LoadedResource *pLoaded = Platform::LoadModuleResource(module, pResource);
  if (pLoaded == nullptr) {
    throw invalidparameter_error(FormatMessageText("Unable to load Resource, Error %d", Platform::LastError()),
                                 pFunction, pFile, nLine);
  }
  const void *pText = Platform::LockModuleResource(pLoaded);
  if (pText == nullptr) {
    throw invalidparameter_error(description.pLockMessage, pFunction, pFile, nLine);
  }
  const uint32_t nSize = Platform::SizeOfModuleResource(module, pResource);
  // A size that is a multiple of four grows by a whole word, so that the text always ends in a zero.
  std::vector<uint32_t> words(nSize / sizeof(uint32_t) + 1, 0);
  std::memcpy(words.data(), pText, nSize);
  return words;
}

std::string FormatDescriptionUrl(const ModuleDescription &description, uint32_t nXmlSize) {
  return FormatMessageText(description.pUrlFormat, description.nXmlAddress, nXmlSize);
}

void GetDescriptionUrl(const ModuleDescription &description, uint32_t nXmlSize, char *sURL, size_t *piSize,
                       const char *pFunction, const char *pFile, uint32_t nLine) {
  const std::string strUrl = FormatDescriptionUrl(description, nXmlSize);
  if (piSize == nullptr) {
    throw invalidparameter_error("Invalid Buffer Size", pFunction, pFile, nLine);
  }
  const size_t nNeeded = strUrl.size() + 1;
  if (sURL != nullptr) {
    if (*piSize < nNeeded) {
      *piSize = nNeeded;
      throw invalidparameter_error("Invalid Buffer Size", pFunction, pFile, nLine);
    }
    // Kept: the terminator takes the place of the final separator.
    std::memcpy(sURL, strUrl.c_str(), strUrl.size());
    sURL[strUrl.size() - 1] = '\0';
  }
  *piSize = nNeeded;
}

void GetDescriptionUrlInfo(const ModuleDescription &description, uint32_t nXmlSize, uint32_t iURLIndex,
                           URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize,
                           const char *pFunction, const char *pFile, uint32_t nLine) {
  if (iURLIndex != 0) {
    throw invalidparameter_error(UnknownUrlText(iURLIndex), pFunction, pFile, nLine);
  }
  if (iInfoCmd == URL_INFO_URL) {
    char url[512] = {};
    size_t nSize = sizeof(url);
    GetDescriptionUrl(description, nXmlSize, url, &nSize, pFunction, pFile, nLine);
    SetReturnParam(pBuffer, piSize, piType, url);
    return;
  }
  const auto *pRow = std::find_if(std::begin(kUrlNumbers), std::end(kUrlNumbers),
                                  [iInfoCmd](const UrlNumberRow &row) { return row.iInfoCmd == iInfoCmd; });
  if (pRow == std::end(kUrlNumbers)) {
    throw invalidparameter_error(FormatMessageText(description.pUnknownCommand, iInfoCmd), pFunction, pFile, nLine);
  }
  SetReturnParam(pBuffer, piSize, piType, pRow->iAnswer);
}

void AnswerPortInfo(const PortAnswers &answers, PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                    size_t *piSize, const char *pFunction, const char *pFile, uint32_t nLine) {
  switch (iInfoCmd) {
    case PORT_INFO_ID:
      return SetReturnParam(pBuffer, piSize, piType, answers.strId);
    case PORT_INFO_VENDOR:
      return SetReturnParam(pBuffer, piSize, piType, answers.strVendor);
    case PORT_INFO_MODEL:
      return SetReturnParam(pBuffer, piSize, piType, answers.strModel);
    case PORT_INFO_TLTYPE:
      return SetReturnParam(pBuffer, piSize, piType, answers.strTLType);
    case PORT_INFO_MODULE:
      return SetReturnParam(pBuffer, piSize, piType, answers.pModule);
    case PORT_INFO_LITTLE_ENDIAN:
      return SetReturnParam(pBuffer, piSize, piType, !answers.bBigEndian);
    case PORT_INFO_BIG_ENDIAN:
      return SetReturnParam(pBuffer, piSize, piType, answers.bBigEndian);
    case PORT_INFO_ACCESS_READ:
      return SetReturnParam(pBuffer, piSize, piType, true);
    case PORT_INFO_ACCESS_WRITE:
      return SetReturnParam(pBuffer, piSize, piType, answers.bAccessWrite);
    case PORT_INFO_ACCESS_NA:
    case PORT_INFO_ACCESS_NI:
      return SetReturnParam(pBuffer, piSize, piType, false);
    case PORT_INFO_VERSION:
      return SetReturnParam(pBuffer, piSize, piType, GetModuleVersionText(Platform::LocalModuleHandle()));
    case PORT_INFO_PORTNAME:
      return SetReturnParam(pBuffer, piSize, piType, answers.pPortName);
    default:
      throw invalidparameter_error(FormatMessageText(answers.pUnknownCommand, iInfoCmd), pFunction, pFile, nLine);
  }
}

}  // namespace GenICam::Client
