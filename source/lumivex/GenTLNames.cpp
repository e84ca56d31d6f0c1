// SPDX-License-Identifier: MIT
#include "GenTLNames.h"

namespace Lumivex::Consumer {
namespace {

struct ErrorRow {
  GenTL::GC_ERROR code;
  const char *name;
};

// The last seven are of later versions of GenTL: GenTL.h has no names for them, but Producers may answer with them.
constexpr ErrorRow kErrors[] = {
    {GenTL::GC_ERR_SUCCESS, "GC_ERR_SUCCESS"},
    {GenTL::GC_ERR_ERROR, "GC_ERR_ERROR"},
    {GenTL::GC_ERR_NOT_INITIALIZED, "GC_ERR_NOT_INITIALIZED"},
    {GenTL::GC_ERR_NOT_IMPLEMENTED, "GC_ERR_NOT_IMPLEMENTED"},
    {GenTL::GC_ERR_RESOURCE_IN_USE, "GC_ERR_RESOURCE_IN_USE"},
    {GenTL::GC_ERR_ACCESS_DENIED, "GC_ERR_ACCESS_DENIED"},
    {GenTL::GC_ERR_INVALID_HANDLE, "GC_ERR_INVALID_HANDLE"},
    {GenTL::GC_ERR_INVALID_ID, "GC_ERR_INVALID_ID"},
    {GenTL::GC_ERR_NO_DATA, "GC_ERR_NO_DATA"},
    {GenTL::GC_ERR_INVALID_PARAMETER, "GC_ERR_INVALID_PARAMETER"},
    {GenTL::GC_ERR_IO, "GC_ERR_IO"},
    {GenTL::GC_ERR_TIMEOUT, "GC_ERR_TIMEOUT"},
    {GenTL::GC_ERR_ABORT, "GC_ERR_ABORT"},
    {GenTL::GC_ERR_INVALID_BUFFER, "GC_ERR_INVALID_BUFFER"},
    {GenTL::GC_ERR_NOT_AVAILABLE, "GC_ERR_NOT_AVAILABLE"},
    {GenTL::GC_ERR_INVALID_ADDRESS, "GC_ERR_INVALID_ADDRESS"},
    {-1016, "GC_ERR_BUFFER_TOO_SMALL"},
    {-1017, "GC_ERR_INVALID_INDEX"},
    {-1018, "GC_ERR_PARSING_CHUNK_DATA"},
    {-1019, "GC_ERR_INVALID_VALUE"},
    {-1020, "GC_ERR_RESOURCE_EXHAUSTED"},
    {-1021, "GC_ERR_OUT_OF_MEMORY"},
    {-1022, "GC_ERR_BUSY"},
};

}  // namespace

std::string ErrorName(GenTL::GC_ERROR code) {
  for (const ErrorRow &row : kErrors) {
    if (row.code == code) {
      return row.name;
    }
  }
  return code <= GenTL::GC_ERR_CUSTOM_ID ? "custom error" : "unknown error";
}

std::string AccessStatusText(GenTL::DEVICE_ACCESS_STATUS status) {
  switch (status) {
    case GenTL::DEVICE_ACCESS_STATUS_READWRITE:
      return "read/write";
    case GenTL::DEVICE_ACCESS_STATUS_READONLY:
      return "read only";
    case GenTL::DEVICE_ACCESS_STATUS_NOACCESS:
      return "busy";
    default:
      return "unknown";
  }
}

}  // namespace Lumivex::Consumer
