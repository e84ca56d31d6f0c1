// SPDX-License-Identifier: MIT
#include "ParameterStore.h"

#include "SimError.h"

namespace grbsim {

CParameterStore::CParameterStore() { Reset(); }

size_t CParameterStore::Index(const ParameterRow &row) noexcept { return static_cast<size_t>(&row - ParameterRows()); }

void CParameterStore::Reset() {
  std::vector<uint64_t> values;
  values.reserve(ParameterRowCount());
  for (size_t i = 0; i < ParameterRowCount(); ++i) {
    values.push_back(ParameterRows()[i].initial);
  }
  std::lock_guard<std::mutex> lock(m_Lock);
  m_Set = values;
  m_InEffect = std::move(values);
}

void CParameterStore::Set(const ParameterRow &row, uint64_t value, bool immediate) {
  if (!row.allowed.Contains(value)) {
    Fail(kStatusValue, "The value 0x%llX is not allowed for %s.", static_cast<unsigned long long>(value), row.name);
  }
  std::lock_guard<std::mutex> lock(m_Lock);
  m_Set[Index(row)] = value;
  if (immediate) {
    m_InEffect[Index(row)] = value;
  }
}

bool CParameterStore::SetByName(std::string_view name, uint64_t value) {
  for (size_t i = 0; i < ParameterRowCount(); ++i) {
    const ParameterRow &row = ParameterRows()[i];
    if (row.inFile == EInFile::Yes && name == row.name) {
      Set(row, value, true);
      return true;
    }
  }
  return false;
}

void CParameterStore::Flush() {
  std::lock_guard<std::mutex> lock(m_Lock);
  m_InEffect = m_Set;
}

uint64_t CParameterStore::Get(const ParameterRow &row) const {
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_Set[Index(row)];
}

uint64_t CParameterStore::InEffect(uint32_t identifier) const {
  const ParameterRow *row = FindParameter(identifier);
  std::lock_guard<std::mutex> lock(m_Lock);
  return m_InEffect[Index(*row)];
}

std::vector<std::pair<const char *, uint64_t>> CParameterStore::FileValues() const {
  std::vector<std::pair<const char *, uint64_t>> values;
  std::lock_guard<std::mutex> lock(m_Lock);
  for (size_t i = 0; i < ParameterRowCount(); ++i) {
    if (ParameterRows()[i].inFile == EInFile::Yes) {
      values.emplace_back(ParameterRows()[i].name, m_Set[i]);
    }
  }
  return values;
}

}  // namespace grbsim
