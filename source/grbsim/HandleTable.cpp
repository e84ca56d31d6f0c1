// SPDX-License-Identifier: MIT
#include "HandleTable.h"

#include <utility>

namespace grbsim {

GRB_HANDLE CHandleTable::Add(GRB_ERROR_HOOK hook) {
  std::lock_guard<std::mutex> lock(m_Lock);
  // After four billion handles the values begin anew, past 0 and past those still in use.
  while (m_hNext == 0 || m_Handles.count(m_hNext) != 0) {
    ++m_hNext;
  }
  const GRB_HANDLE value = m_hNext++;
  m_Handles.emplace(value, std::make_shared<CSimHandle>(value, hook));
  return value;
}

std::shared_ptr<CSimHandle> CHandleTable::Find(GRB_HANDLE value) const {
  std::lock_guard<std::mutex> lock(m_Lock);
  const auto found = m_Handles.find(value);
  return found == m_Handles.end() ? nullptr : found->second;
}

std::shared_ptr<CSimHandle> CHandleTable::Remove(GRB_HANDLE value) {
  std::lock_guard<std::mutex> lock(m_Lock);
  const auto found = m_Handles.find(value);
  if (found == m_Handles.end()) {
    return nullptr;
  }
  std::shared_ptr<CSimHandle> handle = std::move(found->second);
  m_Handles.erase(found);
  return handle;
}

void CHandleTable::CloseAll() {
  std::map<GRB_HANDLE, std::shared_ptr<CSimHandle>> handles;
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    handles.swap(m_Handles);
  }
  for (const auto &[value, handle] : handles) {
    handle->Close();
  }
}

}  // namespace grbsim
