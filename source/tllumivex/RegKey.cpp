// SPDX-License-Identifier: MIT
#include "RegKey.h"

#include <algorithm>
#include <cstring>

namespace GenICam::Client {

namespace Platform = Lumivex::Platform;

uint32_t regkey::value::AsNumber() const {
  if (m_nType != Platform::kRegDword) {
    throw std::string(__FILE__) + "(" + std::to_string(__LINE__) + "): regkey: Type == REG_DWORD";
  }
  uint32_t nValue = 0;
  std::memcpy(&nValue, m_Bytes.data(), std::min(sizeof(nValue), m_Bytes.size()));
  return nValue;
}

std::string regkey::value::AsText() const {
  return std::string(m_Bytes.begin(), std::find(m_Bytes.begin(), m_Bytes.end(), uint8_t{0}));
}

regkey::regkey(const char *pSubKey) {
  const uint32_t nError = Platform::RegOpenKey(pSubKey, &m_pKey);
  if (nError != Platform::kErrorSuccess) {
    m_pKey = nullptr;
    // Kept: the words are fetched and dropped. A machine without the key runs on the defaults and reports nothing.
    static_cast<void>(Platform::ErrorText(nError));
  }
}

regkey::~regkey() {
  if (m_pKey != nullptr) {
    Platform::RegCloseKey(m_pKey);
  }
}

regkey::value regkey::Query(const char *pName) const {
  value result;
  uint32_t nSize = 0;
  if (Platform::RegQueryValue(m_pKey, pName, &result.m_nType, nullptr, &nSize) != Platform::kErrorSuccess) {
    return result;
  }
  // The value may grow between the two queries; it is asked for once more then.
  for (int nTry = 0; nTry < 2; ++nTry) {
    result.m_Bytes.assign(nSize, 0);
    const uint32_t nError = Platform::RegQueryValue(m_pKey, pName, &result.m_nType, result.m_Bytes.data(), &nSize);
    if (nError != Platform::kErrorMoreData && nSize <= result.m_Bytes.size()) {
      result.m_Bytes.resize(nError == Platform::kErrorSuccess ? nSize : 0);
      return result;
    }
  }
  return value();
}

regkey::value regkey::Query(const char *pName, const char *pOlderName) const {
  value result = Query(pName);
  return result.IsEmpty() ? Query(pOlderName) : result;
}

}  // namespace GenICam::Client
