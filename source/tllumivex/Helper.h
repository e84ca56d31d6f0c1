// SPDX-License-Identifier: MIT
/// @file
/// Shared by all modules: the answers of the info functions, the checks of the entry points, and what the Producer
/// knows of its own file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "GenTL.h"
#include "Platform.h"

namespace GenICam::Client {

/// @name SetReturnParam
/// The one way to fill the (type, buffer, size) triple of an info function.
///
/// The type is stored in any case. A null buffer asks for the size. A *piSize of 0 with a buffer counts as large
/// enough: the entry points keep their callers from it. After success *piSize is the number of bytes of the answer; it
/// is left alone when the buffer is too small.
/// @throws invalidparameter_error "Invalid Size.", "Invalid Type.", "Invalid Buffer Size."
/// @{
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, INFO_DATATYPE iType, const void *pData,
                    size_t iDataSize);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, const std::string &strValue);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, const char *pText);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, int32_t iValue);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, uint32_t nValue);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, uint64_t nValue);
void SetReturnParam(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, bool8_t bValue);
void SetReturnParamSize_t(void *pBuffer, size_t *piSize, INFO_DATATYPE *piType, size_t iValue);
/// @}

/// The throw of the checks below stands apart, so that each costs a comparison. @throws invalidparameter_error
[[noreturn]] void ThrowInvalidParameter(const char *pMessage, const char *pFunction, const char *pFile, uint32_t nLine);

/// @name Checks of the entry points
/// The caller hands its own LVX_HERE on, so that the text of a failure names the exported function.
/// @throws invalidparameter_error
/// @{
inline void RequirePointer(const void *pPointer, const char *pMessage, const char *pFunction, const char *pFile,
                           uint32_t nLine) {
  if (pPointer == nullptr) {
    ThrowInvalidParameter(pMessage, pFunction, pFile, nLine);
  }
}
/// The buffer rule: a buffer must not come with a size of 0.
inline void RequireRoom(const void *pBuffer, const size_t *piSize, const char *pFunction, const char *pFile,
                        uint32_t nLine) {
  if (pBuffer != nullptr && *piSize == 0) {
    ThrowInvalidParameter("Size of buffer cannot be null.", pFunction, pFile, nLine);
  }
}
/// The three checks of an info function, in their order: type, size, buffer rule.
void RequireInfoArguments(const char *pTypeMessage, const INFO_DATATYPE *piType, const void *pBuffer,
                          const size_t *piSize, const char *pFunction, const char *pFile, uint32_t nLine);
/// @}

/// The version of a module's file: four numbers, joined by dots; zeros if it carries no version record.
std::string GetModuleVersionText(Lumivex::Platform::ModuleHandle moduleHandle);

/// Full path of the Producer's own file, read with a buffer of nBufferSize bytes.
std::string GetLibraryPath(size_t nBufferSize);

/// File name of the Producer's own file.
/// @throws unknown_error with pMessage if the path has no folder
std::string GetLibraryFileName(size_t nBufferSize, const char *pMessage, const char *pFunction, const char *pFile,
                               uint32_t nLine);

/// The text without its double quotes, all of them: a user can paste a quoted path.
std::string WithoutQuotes(std::string strText);

/// The text of the failure of an event id that a module does not know.
std::string UnknownEventText(EVENT_TYPE iEventID);

/// The text of the failure of a URL index that a port does not have.
std::string UnknownUrlText(uint32_t iURLIndex);

/// Lower-case hexadecimal without leading zeros, as values print in messages that are put together from pieces.
std::string ToHex(uint64_t nValue);

/// Replaces the first "$(name)" of a text by the environment variable's content. A text without one is given back,
/// with every blank turned into "%20" if bReplaceSpaces is set.
/// @throws unknown_error
std::string ReplaceEnvironmentVariables(const std::string &strText, bool bReplaceSpaces);

}  // namespace GenICam::Client
