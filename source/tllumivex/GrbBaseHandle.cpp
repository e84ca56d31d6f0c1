// SPDX-License-Identifier: MIT
#include "GrbBaseHandle.h"

#include <string>

#include <boost/thread/lock_guard.hpp>

#include "GrbError.h"
#include "GrbUtility.h"
#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

using Guard = boost::lock_guard<boost::recursive_mutex>;

constexpr uint32_t kRegisterSize = 4;

}  // namespace

CGrbBaseHandle::CGrbBaseHandle(bool bQuietErrors) : m_hGrbChannel(0), m_bQuietErrors(bQuietErrors) {
  if (GRB_Create(&m_hGrbChannel, Hook()) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

CGrbBaseHandle::~CGrbBaseHandle() {
  if (m_hGrbChannel != 0) {
    GRB_Destroy(&m_hGrbChannel);
    m_hGrbChannel = 0;
  }
}

GRB_ERROR_HOOK CGrbBaseHandle::Hook() const { return m_bQuietErrors ? &GrbErrorHook : &GrbErrorHookVerbose; }

void CGrbBaseHandle::RecreateHandle() {
  const Guard guard(m_Lock);
  GRB_Destroy(&m_hGrbChannel);
  if (GRB_Create(&m_hGrbChannel, Hook()) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

void CGrbBaseHandle::GrabberRead(uint32_t *pValue, uint32_t nAddress, uint32_t nTimeout) {
  const Guard guard(m_Lock);
  uint32_t nSize = kRegisterSize;
  const GRB_STATUS nStatus = GRB_ControlRead(m_hGrbChannel, GRB_PORT_GRABBER, &nAddress,
                                             reinterpret_cast<uint8_t *>(pValue), &nSize, nTimeout);
  if (nStatus == GRB_OK) {
    return;
  }
  const std::string strWhere = "register 0x" + ToHex(nAddress) + " in grabber, " + std::to_string(nSize);
  if (nStatus == GRB_WARNING_TIMEOUT) {
    throw timeout_error(
        "Timeout while reading " + strWhere + " bytes read, timeout value was " + std::to_string(nTimeout) + ".",
        LVX_HERE);
  }
  throw io_error("Error while reading " + strWhere + " bytes read.", LVX_HERE);
}

void CGrbBaseHandle::GrabberWrite(uint32_t nValue, uint32_t nAddress, uint32_t nTimeout) {
  const Guard guard(m_Lock);
  uint32_t nSize = kRegisterSize;
  const GRB_STATUS nStatus = GRB_ControlWrite(m_hGrbChannel, GRB_PORT_GRABBER, &nAddress,
                                              reinterpret_cast<uint8_t *>(&nValue), &nSize, nTimeout);
  if (nStatus == GRB_OK) {
    return;
  }
  const std::string strWhere = "register 0x" + ToHex(nAddress) + " in grabber, " + std::to_string(nSize);
  if (nStatus == GRB_WARNING_TIMEOUT) {
    throw timeout_error(
        "Timeout while writing " + strWhere + " bytes written, timeout value was " + std::to_string(nTimeout) + ".",
        LVX_HERE);
  }
  throw io_error("Error while writing " + strWhere + " bytes written.", LVX_HERE);
}

void CGrbBaseHandle::FlushParameters() {
  const Guard guard(m_Lock);
  if (GRB_ParameterSet(m_hGrbChannel, GRB_CACHE_FLUSH, nullptr) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

void CGrbBaseHandle::ParameterGet(uint32_t nId, void *pValue) {
  const Guard guard(m_Lock);
  if (GRB_ParameterGet(m_hGrbChannel, nId, pValue) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

void CGrbBaseHandle::ParameterSet(uint32_t nId, void *pValue) {
  const Guard guard(m_Lock);
  if (GRB_ParameterSet(m_hGrbChannel, nId, pValue) != GRB_OK) {
    throw unknown_error(CGrbError::GetText(), LVX_HERE);
  }
}

GRB_STATUS CGrbBaseHandle::SetParametersAndOpen(uint32_t nBoard, uint32_t nChannel, uint32_t nMode) {
  const struct {
    uint32_t nId;
    uint32_t nValue;
  } kOpenParameters[] = {
      {GRB_OPEN_BOARD, nBoard},
      {GRB_OPEN_CHANNEL, nChannel},
      {GRB_OPEN_MODE, nMode},
      {GRB_OPEN_VARIANT, GRB_VARIANT_ANY},
  };
  for (const auto &row : kOpenParameters) {
    uint32_t nValue = row.nValue;
    const GRB_STATUS nStatus = GRB_ParameterSet(m_hGrbChannel, row.nId, &nValue);
    if (nStatus != GRB_OK) {
      return nStatus;
    }
  }
  return GRB_Open(m_hGrbChannel);
}

GRB_STATUS CGrbBaseHandle::CloseHandle() { return m_hGrbChannel == 0 ? GRB_OK : GRB_Close(&m_hGrbChannel); }

}  // namespace GenICam::Client
