// SPDX-License-Identifier: MIT
#include "GrbStreamHandle.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <boost/thread/lock_guard.hpp>

#include "GrbError.h"
#include "Helper.h"
#include "Platform.h"
#include "TLIException.h"

namespace GenICam::Client {

namespace {

/// A folder can be opened on some platforms, and is no file on any.
bool IsReadableFile(const std::string &strPath) {
  std::error_code error;
  return std::ifstream(strPath, std::ios::binary).is_open() && !std::filesystem::is_directory(strPath, error);
}

}  // namespace

CGrbStreamHandle::CGrbStreamHandle(uint32_t nBoard, uint32_t nChannel, bool bQuietErrors)
    : CGrbBaseHandle(bQuietErrors), m_bValid(false), m_nBoard(nBoard), m_nChannel(nChannel) {
  m_bValid = Open() == GRB_OK;
}

CGrbStreamHandle::~CGrbStreamHandle() { CloseHandle(); }

GRB_STATUS CGrbStreamHandle::Open() {
  LVX_ASSERT(m_hGrbChannel != 0);
  return SetParametersAndOpen(m_nBoard, m_nChannel, GRB_MODE_ACQ_ONLY);
}

void CGrbStreamHandle::LoadGcf(const char *pPath) {
  if (pPath == nullptr) {
    throw unknown_error("Null pointer for GCF file.", LVX_HERE);
  }
  const std::string strPath = WithoutQuotes(pPath);
  if (!IsReadableFile(strPath)) {
    throw invalidparameter_error(std::string("Configuration file specified does not exist: ") + pPath, LVX_HERE);
  }

  const boost::lock_guard<boost::recursive_mutex> guard(m_Lock);
  const char *pPlainPath = strPath.c_str();
  GRB_STATUS nStatus = CloseHandle();
  if (nStatus == GRB_OK) {
    nStatus = GRB_ParameterSet(m_hGrbChannel, GRB_OPEN_CONFIG_FILE, &pPlainPath);
  }
  if (nStatus == GRB_OK) {
    nStatus = Open();
  }
  if (nStatus == GRB_OK) {
    return;
  }
  RecreateHandle();
  Open();
  throw unknown_error("Failed loading GCF file (BoardNumber = " + ToHex(m_nBoard) +
                          " , ChannelNumber = " + ToHex(m_nChannel) + "): " + CGrbError::GetText(),
                      LVX_HERE);
}

}  // namespace GenICam::Client
