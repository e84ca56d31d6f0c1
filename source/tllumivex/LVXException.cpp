// SPDX-License-Identifier: MIT
#include "LVXException.h"

namespace Lumivex {

std::string ScopedFunctionName(const std::string &strSignature) {
  // The parameter list begins at the first bracket outside template arguments; "(anonymous" is part of a name.
  size_t nEnd = strSignature.size();
  int nDepth = 0;
  for (size_t i = 0; i < strSignature.size(); ++i) {
    const char c = strSignature[i];
    if (c == '<') {
      ++nDepth;
    } else if (c == '>') {
      --nDepth;
    } else if (c == '(' && nDepth == 0 && strSignature.compare(i, 10, "(anonymous") != 0) {
      nEnd = i;
      break;
    }
  }
  // The return type ends at the last blank outside template arguments.
  size_t nBegin = 0;
  nDepth = 0;
  for (size_t i = nEnd; i > 0; --i) {
    const char c = strSignature[i - 1];
    if (c == '>') {
      ++nDepth;
    } else if (c == '<') {
      --nDepth;
    } else if (nDepth == 0 && (c == ' ' || c == '*' || c == '&') &&
               strSignature.compare(i - 1, 11, " namespace)") != 0) {
      nBegin = i;
      break;
    }
  }
  // Compilers spell template arguments in their own ways: they are left out.
  std::string strName;
  nDepth = 0;
  for (const char c : strSignature.substr(nBegin, nEnd - nBegin)) {
    nDepth += c == '<' ? 1 : 0;
    if (nDepth == 0) {
      strName += c;
    }
    nDepth -= c == '>' ? 1 : 0;
  }
  return strName;
}

CLVXException::CLVXException(const char *pDescription, const char *pFunction, const char *pFile, uint32_t nLine)
    : m_strFunction(ScopedFunctionName(pFunction)), m_nLine(nLine), m_strFile(pFile), m_strDescription(pDescription) {
  ComposeWhat();
}

CLVXException::CLVXException(const std::string &strDescription, const char *pFunction, const char *pFile,
                             uint32_t nLine)
    : CLVXException(strDescription.c_str(), pFunction, pFile, nLine) {}

CLVXException::~CLVXException() = default;

void CLVXException::ComposeWhat() {
  const size_t nSeparator = m_strFile.find_last_of("/\\");
  const std::string strFileName = nSeparator == std::string::npos ? m_strFile : m_strFile.substr(nSeparator + 1);
  m_strWhat = m_strDescription;
  // Kept: no constructor sets a type, so the branch never runs.
  if (!m_strExceptionType.empty()) {
    m_strWhat += " : " + m_strExceptionType + " thrown";
  }
  m_strWhat +=
      " (function '" + m_strFunction + "()', file '" + strFileName + "', line " + std::to_string(m_nLine) + ")";
}

const char *CLVXException::what() const noexcept { return m_strWhat.c_str(); }
const std::string &CLVXException::GetDescription() const { return m_strDescription; }
const std::string &CLVXException::GetSourceFunction() const { return m_strFunction; }
const std::string &CLVXException::GetSourceFile() const { return m_strFile; }
uint32_t CLVXException::GetSourceLine() const { return m_nLine; }

}  // namespace Lumivex
