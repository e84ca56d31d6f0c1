// SPDX-License-Identifier: MIT
#include "RegisterMap.h"

#include <algorithm>
#include <cstring>

#include "TLIException.h"

namespace GenICam::Client {

namespace {

constexpr uint64_t kWordSize = 4;
constexpr uint64_t kInvalidAddress = 0xFFFFFFFFFFFFFFFFULL;

/// The maximum size of a vector of 40-byte entries.
constexpr uint64_t kMaxEntries = 0x666666666666666ULL;

uint32_t LowWord(uint64_t nValue) { return static_cast<uint32_t>(nValue & 0xFFFFFFFFU); }
uint32_t HighWord(uint64_t nValue) { return static_cast<uint32_t>(nValue >> 32U); }

}  // namespace

CRegisterMap::CRegisterMap(uint64_t nEntries) {
  if (nEntries > kMaxEntries) {
    throw invalidparameter_error(
        FormatMessageText("Initial size is larger than possible: 0 < %I64u <= %I64u", nEntries, kMaxEntries), LVX_HERE);
  }
  m_Registers.reserve(nEntries);
}

CRegisterMap::~CRegisterMap() = default;

void CRegisterMap::Resize(uint64_t nEntries) {
  if (nEntries > kMaxEntries) {
    throw invalidparameter_error(
        FormatMessageText("Initial size is larger than possible: 0 < %I64u <= %I64u", nEntries, kMaxEntries), LVX_HERE);
  }
  m_Registers.resize(std::min<size_t>(nEntries, m_Registers.size()));
  m_Registers.reserve(nEntries);
}

void CRegisterMap::CheckAddress(uint64_t iAddress, uint64_t iSize) {
  if (iAddress == kInvalidAddress) {
    throw invalidparameter_error("Address is invalid.", LVX_HERE);
  }
  if (iAddress % kWordSize != 0 || iSize % kWordSize != 0) {
    throw invalidparameter_error("Address and/or uiSize have to be multiples of four.", LVX_HERE);
  }
  if (iAddress / kWordSize > kMaxEntries) {
    throw invalidparameter_error(FormatMessageText("Address too large: 0 <= %I64u <= %I64u", iAddress, kMaxEntries),
                                 LVX_HERE);
  }
}

void CRegisterMap::CheckBuffer(const void *pBuffer, uint64_t iSize) {
  if (pBuffer == nullptr || iSize == 0) {
    throw invalidparameter_error("pBuffer is not valid.", LVX_HERE);
  }
}

void CRegisterMap::CheckAccess(uint32_t nAccess) {
  if (nAccess < ACCESS_READ || nAccess > ACCESS_READ_WRITE) {
    throw invalidparameter_error("iAccess is an unknown ACCESS value.", LVX_HERE);
  }
}

void CRegisterMap::ThrowNoEntry(uint64_t iAddress, const char *pFunction, const char *pFile, uint32_t nLine) {
  CheckAddress(iAddress, kWordSize);
  throw outofrange_error(FormatMessageText("Register %I64X is not available (does not exist).", iAddress), pFunction,
                         pFile, nLine);
}

const RegisterEntry &CRegisterMap::GetRegisterEntry(uint64_t iAddress) const {
  const uint64_t iIndex = iAddress / kWordSize;
  if (iAddress % kWordSize == 0 && iIndex < m_Registers.size() && m_Registers[iIndex].nAccess != ACCESS_NONE) {
    return m_Registers[iIndex];
  }
  ThrowNoEntry(iAddress, LVX_HERE);
}

RegisterEntry &CRegisterMap::GetRegisterEntry(uint64_t iAddress) {
  return const_cast<RegisterEntry &>(static_cast<const CRegisterMap *>(this)->GetRegisterEntry(iAddress));
}

bool CRegisterMap::Read(uint64_t iAddress, uint32_t *pBuffer, uint64_t iSize) {
  CheckAddress(iAddress, iSize);
  CheckBuffer(pBuffer, iSize);
  // The caller's memory may have any alignment.
  auto *pBytes = reinterpret_cast<uint8_t *>(pBuffer);
  for (uint64_t iOffset = 0; iOffset < iSize; iOffset += kWordSize) {
    const uint32_t nValue = ReadReg(iAddress + iOffset);
    std::memcpy(pBytes + iOffset, &nValue, kWordSize);
  }
  return GetRegisterEntry(iAddress).bVirtual != 0;
}

uint32_t CRegisterMap::ReadReg(uint64_t iAddress) {
  RegisterEntry &entry = GetRegisterEntry(iAddress);
  if ((entry.nAccess & ACCESS_READ) == 0) {
    throw access_error(FormatMessageText("Register %I64X is not readable.", iAddress), LVX_HERE);
  }
  if (entry.pReadCallback != nullptr) {
    entry.pReadCallback(iAddress, &entry.nValue, entry.pContext);
  }
  return entry.nValue;
}

bool CRegisterMap::Write(uint64_t iAddress, const uint32_t *pBuffer, uint64_t iSize) {
  CheckAddress(iAddress, iSize);
  CheckBuffer(pBuffer, iSize);
  const auto *pBytes = reinterpret_cast<const uint8_t *>(pBuffer);
  for (uint64_t iOffset = 0; iOffset < iSize; iOffset += kWordSize) {
    uint32_t nValue = 0;
    std::memcpy(&nValue, pBytes + iOffset, kWordSize);
    WriteReg(iAddress + iOffset, nValue);
  }
  return GetRegisterEntry(iAddress).bVirtual != 0;
}

void CRegisterMap::WriteReg(uint64_t iAddress, uint32_t nValue) {
  RegisterEntry &entry = GetRegisterEntry(iAddress);
  if ((entry.nAccess & ACCESS_WRITE) == 0) {
    throw access_error(FormatMessageText("Register %I64X is not writable.", iAddress), LVX_HERE);
  }
  entry.nValue = nValue;
  if (entry.pWriteCallback != nullptr) {
    entry.pWriteCallback(iAddress, &entry.nValue, entry.pContext);
  }
}

void CRegisterMap::GrowTo(uint64_t iAddress) {
  const uint64_t iIndex = iAddress / kWordSize;
  if (iIndex >= m_Registers.size()) {
    m_Registers.resize(iIndex + 1);
  }
}

void CRegisterMap::AddRegister(uint64_t iAddress, uint32_t nAccess, uint32_t nValue, uint8_t nByteOrderFlag,
                               RegisterCallback pWriteCallback, void *pContext, RegisterCallback pReadCallback,
                               bool bVirtual) {
  CheckAddress(iAddress, kWordSize);
  CheckAccess(nAccess);
  GrowTo(iAddress);
  m_Registers[iAddress / kWordSize] = {
      nAccess, nValue, pWriteCallback, pReadCallback, pContext, nByteOrderFlag, static_cast<uint8_t>(bVirtual ? 1 : 0)};
}

void CRegisterMap::AddRegister64(uint64_t iAddress, uint32_t nAccess, uint64_t nValue, uint8_t nByteOrderFlag,
                                 bool bLowWordFirst, RegisterCallback pWriteCallback, void *pContext,
                                 RegisterCallback pReadCallback, bool bVirtual) {
  CheckAddress(iAddress, kWordSize);
  CheckAccess(nAccess);
  GrowTo(iAddress + kWordSize);
  AddRegister(iAddress, nAccess, bLowWordFirst ? LowWord(nValue) : HighWord(nValue), nByteOrderFlag, pWriteCallback,
              pContext, pReadCallback, bVirtual);
  AddRegister(iAddress + kWordSize, nAccess, bLowWordFirst ? HighWord(nValue) : LowWord(nValue), nByteOrderFlag,
              pWriteCallback, pContext, pReadCallback, bVirtual);
}

void CRegisterMap::AddString(uint64_t iAddress, uint32_t nAccess, const std::string &strText, uint64_t iSize,
                             uint8_t nByteOrderFlag, RegisterCallback pWriteCallback, void *pContext,
                             RegisterCallback pReadCallback, bool bVirtual) {
  CheckAddress(iAddress, iSize);
  CheckBuffer(strText.c_str(), iSize);
  // Backwards, so that the table grows at most once.
  for (uint64_t iOffset = iSize; iOffset > 0; iOffset -= kWordSize) {
    AddRegister(iAddress + iOffset - kWordSize, nAccess, 0, nByteOrderFlag, pWriteCallback, pContext, pReadCallback,
                bVirtual);
  }
  const std::string strCut = strText.substr(0, iSize - 1);
  PackText(iAddress, strCut.c_str(), strCut.size() + 1);
}

void CRegisterMap::AddBlock(uint64_t iAddress, uint32_t nAccess, const uint32_t *pBuffer, uint64_t iSize,
                            uint8_t nByteOrderFlag, RegisterCallback pWriteCallback, void *pContext,
                            RegisterCallback pReadCallback, bool bVirtual) {
  CheckAddress(iAddress, iSize);
  CheckBuffer(this, iSize);
  for (uint64_t iOffset = iSize; iOffset > 0; iOffset -= kWordSize) {
    const uint64_t iWord = iOffset / kWordSize - 1;
    AddRegister(iAddress + iWord * kWordSize, nAccess, pBuffer == nullptr ? 0 : pBuffer[iWord], nByteOrderFlag,
                pWriteCallback, pContext, pReadCallback, bVirtual);
  }
}

uint32_t CRegisterMap::GetAccess(uint64_t iAddress) const {
  try {
    return GetRegisterEntry(iAddress).nAccess;
  } catch (...) {
    return ACCESS_NONE;
  }
}

uint64_t CRegisterMap::GetValues(uint64_t iAddress, uint32_t *pBuffer, uint64_t iSize) const {
  CheckAddress(iAddress, iSize);
  CheckBuffer(pBuffer, iSize);
  const uint64_t nWords = iSize / kWordSize;
  for (uint64_t i = 0; i < nWords; ++i) {
    pBuffer[i] = GetValue(iAddress + i * kWordSize);
  }
  return nWords;
}

uint32_t CRegisterMap::GetValue(uint64_t iAddress) const { return GetRegisterEntry(iAddress).nValue; }

uint64_t CRegisterMap::GetValue64(uint64_t iAddress, bool bLowWordFirst) const {
  const uint64_t nFirst = GetValue(iAddress);
  const uint64_t nSecond = GetValue(iAddress + kWordSize);
  return bLowWordFirst ? (nSecond << 32U) | nFirst : (nFirst << 32U) | nSecond;
}

uint8_t CRegisterMap::GetByteOrderFlag(uint64_t iAddress) const {
  try {
    return GetRegisterEntry(iAddress).nByteOrderFlag;
  } catch (...) {
    return 0;
  }
}

void CRegisterMap::SetAccess(uint64_t iAddress, uint32_t nAccess) {
  CheckAccess(nAccess);
  GetRegisterEntry(iAddress).nAccess = nAccess;
}

void CRegisterMap::SetCallbacks(uint64_t iAddress, RegisterCallback pWriteCallback, void *pContext,
                                RegisterCallback pReadCallback) {
  RegisterEntry &entry = GetRegisterEntry(iAddress);
  entry.pWriteCallback = pWriteCallback;
  entry.pContext = pContext;
  entry.pReadCallback = pReadCallback;
}

void CRegisterMap::SetString(uint64_t iAddress, const std::string &strText) {
  const uint64_t iLength = strText.size();
  const uint64_t iBytes = (iLength + 1) % kWordSize == 0 ? iLength + 1 : (iLength + 5) & ~uint64_t{3};
  CheckAddress(iAddress, iBytes);
  PackText(iAddress, strText.c_str(), iLength + 1);
}

uint64_t CRegisterMap::SetValues(uint64_t iAddress, const uint32_t *pBuffer, uint64_t iSize) {
  CheckAddress(iAddress, iSize);
  CheckBuffer(pBuffer, iSize);
  const uint64_t nWords = iSize / kWordSize;
  for (uint64_t i = 0; i < nWords; ++i) {
    SetValue(iAddress + i * kWordSize, pBuffer[i]);
  }
  return nWords;
}

void CRegisterMap::SetValue(uint64_t iAddress, uint32_t nValue) { GetRegisterEntry(iAddress).nValue = nValue; }

void CRegisterMap::SetValue64(uint64_t iAddress, uint64_t nValue, bool bLowWordFirst) {
  SetValue(iAddress, bLowWordFirst ? LowWord(nValue) : HighWord(nValue));
  SetValue(iAddress + kWordSize, bLowWordFirst ? HighWord(nValue) : LowWord(nValue));
}

void CRegisterMap::SetByteOrderFlag(uint64_t iAddress, uint8_t nFlag) {
  GetRegisterEntry(iAddress).nByteOrderFlag = nFlag;
}

void CRegisterMap::PackText(uint64_t iAddress, const char *pText, uint64_t iBytes) {
  for (uint64_t iOffset = 0; iOffset < iBytes; iOffset += kWordSize) {
    uint32_t nWord = 0;
    std::memcpy(&nWord, pText + iOffset, std::min(kWordSize, iBytes - iOffset));
    SetValue(iAddress + iOffset, nWord);
  }
}

}  // namespace GenICam::Client
