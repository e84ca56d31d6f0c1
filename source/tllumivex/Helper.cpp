// SPDX-License-Identifier: MIT
#include "Helper.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "TLIException.h"

namespace GenICam::Client {

namespace {

enum class NullCheckOrder { SizeThenType, TypeThenSize };

/// The caller hands its own LVX_HERE on: a failure names the family.
void StoreReturnParam(NullCheckOrder order, void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, INFO_DATATYPE iType,
                      const void *pData, size_t iDataSize, const char *pFunction, const char *pFile, uint32_t nLine) {
  if (order == NullCheckOrder::TypeThenSize && piType == nullptr) {
    throw invalidparameter_error("Invalid Type.", pFunction, pFile, nLine);
  }
  if (piSize == nullptr) {
    throw invalidparameter_error("Invalid Size.", pFunction, pFile, nLine);
  }
  if (piType == nullptr) {
    throw invalidparameter_error("Invalid Type.", pFunction, pFile, nLine);
  }
  *piType = iType;
  if (pBuffer != nullptr) {
    if (*piSize != 0 && *piSize < iDataSize) {
      throw invalidparameter_error("Invalid Buffer Size.", pFunction, pFile, nLine);
    }
    std::memcpy(pBuffer, pData, iDataSize);
  }
  *piSize = iDataSize;
}

template <class Value>
void StoreNumber(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, INFO_DATATYPE iType, Value value,
                 const char *pFunction, const char *pFile, uint32_t nLine) {
  StoreReturnParam(NullCheckOrder::TypeThenSize, pBuffer, piSize, piType, iType, &value, sizeof(value), pFunction,
                   pFile, nLine);
}

}  // namespace

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, INFO_DATATYPE iType, const void *pData,
                    size_t iDataSize) {
  StoreReturnParam(NullCheckOrder::SizeThenType, pBuffer, piSize, piType, iType, pData, iDataSize, LVX_HERE);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, const std::string &strValue) {
  SetReturnParam(pBuffer, piSize, piType, INFO_DATATYPE_STRING, strValue.c_str(), strValue.size() + 1);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, const char *pText) {
  SetReturnParam(pBuffer, piSize, piType, INFO_DATATYPE_STRING, pText, std::strlen(pText) + 1);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, int32_t iValue) {
  StoreNumber(pBuffer, piSize, piType, INFO_DATATYPE_INT32, iValue, LVX_HERE);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, uint32_t nValue) {
  StoreNumber(pBuffer, piSize, piType, INFO_DATATYPE_UINT32, nValue, LVX_HERE);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, uint64_t nValue) {
  StoreNumber(pBuffer, piSize, piType, INFO_DATATYPE_UINT64, nValue, LVX_HERE);
}

void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, bool8_t bValue) {
  StoreNumber(pBuffer, piSize, piType, INFO_DATATYPE_BOOL8, static_cast<uint8_t>(bValue ? 1 : 0), LVX_HERE);
}

void SetReturnParamSize_t(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, size_t iValue) {
  StoreNumber(pBuffer, piSize, piType, INFO_DATATYPE_SIZET, iValue, LVX_HERE);
}

void ThrowInvalidParameter(const char *pMessage, const char *pFunction, const char *pFile, uint32_t nLine) {
  throw invalidparameter_error(pMessage, pFunction, pFile, nLine);
}

void RequireInfoArguments(const char *pTypeMessage, const INFO_DATATYPE *piType, const void *pBuffer,
                          const size_t *piSize, const char *pFunction, const char *pFile, uint32_t nLine) {
  RequirePointer(piType, pTypeMessage, pFunction, pFile, nLine);
  RequirePointer(piSize, "Null size pointer.", pFunction, pFile, nLine);
  RequireRoom(pBuffer, piSize, pFunction, pFile, nLine);
}

std::string GetModuleVersionText(Lumivex::Platform::ModuleHandle moduleHandle) {
  Lumivex::Platform::FixedFileVersion version = {};
  if (!Lumivex::Platform::ReadFileVersion(moduleHandle, version)) {
    version = {};
  }
  const auto high = [](uint32_t nWord) { return std::to_string(nWord >> 16); };
  const auto low = [](uint32_t nWord) { return std::to_string(nWord & 0xFFFFU); };
  return high(version.dwFileVersionMS) + "." + low(version.dwFileVersionMS) + "." + high(version.dwFileVersionLS) +
         "." + low(version.dwFileVersionLS);
}

std::string GetLibraryPath(size_t nBufferSize) {
  return Lumivex::Platform::ModuleFileName(Lumivex::Platform::LocalModuleHandle(), nBufferSize);
}

std::string GetLibraryFileName(size_t nBufferSize, const char *pMessage, const char *pFunction, const char *pFile,
                               uint32_t nLine) {
  const std::string strPath = GetLibraryPath(nBufferSize);
  const size_t nSeparator = strPath.rfind(Lumivex::Platform::kFileSeparator);
  if (nSeparator == std::string::npos) {
    throw unknown_error(pMessage, pFunction, pFile, nLine);
  }
  return strPath.substr(nSeparator + 1);
}

std::string WithoutQuotes(std::string strText) {
  strText.erase(std::remove(strText.begin(), strText.end(), '"'), strText.end());
  return strText;
}

std::string UnknownEventText(EVENT_TYPE iEventID) {
  return FormatMessageText("Event ID %ld not implemented", static_cast<long>(iEventID));
}

std::string UnknownUrlText(uint32_t iURLIndex) {
  return FormatMessageText("URL Index %ld is out of range", static_cast<long>(static_cast<int32_t>(iURLIndex)));
}

std::string ToHex(uint64_t nValue) {
  char text[2 * sizeof(nValue) + 1] = {};
  std::snprintf(text, sizeof(text), "%" PRIx64, nValue);
  return text;
}

std::string ReplaceEnvironmentVariables(const std::string &strText, bool bReplaceSpaces) {
  constexpr uint32_t kBufferSize = 256;

  std::string strResult(strText);
  const size_t nBegin = strResult.find("$(");
  const size_t nEnd = nBegin == std::string::npos ? nBegin : strResult.find(')', nBegin);
  if (nEnd != std::string::npos) {
    const std::string strName = strResult.substr(nBegin + 2, nEnd - nBegin - 2);
    char content[kBufferSize] = {};
    const uint32_t nLength = Lumivex::Platform::ReadEnvironmentVariable(strName.c_str(), content, kBufferSize);
    if (nLength == 0) {
      const uint32_t nError = Lumivex::Platform::LastError();
      if (nError != Lumivex::Platform::kErrorEnvVarNotFound) {
        throw unknown_error(
            FormatMessageText("Unknown error %u while reading environment variable '%s'", nError, strName.c_str()),
            LVX_HERE);
      }
      throw unknown_error(FormatMessageText("Environment variable '%s' not found", strName.c_str()), LVX_HERE);
    }
    // Kept: a longer content asks for more than 256 bytes and passes.
    if (nLength == kBufferSize) {
      throw unknown_error(FormatMessageText("Environment variable's content too large (must be <256 chars)"), LVX_HERE);
    }
    return strResult.replace(nBegin, nEnd - nBegin + 1, content);
  }
  if (bReplaceSpaces) {
    for (size_t nAt = strResult.find(' '); nAt != std::string::npos; nAt = strResult.find(' ', nAt)) {
      strResult.replace(nAt, 1, "%20");
    }
  }
  return strResult;
}

}  // namespace GenICam::Client
