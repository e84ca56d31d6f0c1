// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include <boost/thread/locks.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "GenTL.h"
#include "Helper.h"
#include "TLIException.h"

namespace GenICam::Client {

/// The children of a module: what the last discovery found, and what is open now.
///
/// A member of the parent module. The map owns the open children; a ChildInfo is an unchanging description with its id
/// first. A child that vanished from the known list stays open until it is closed.
/// Threads: any Consumer thread. Locks: its own recursive mutex, for the whole of each operation, also across a child's
/// close, which comes back through ReleaseChild.
/// Throws the registry's failures, as told at each operation.
template <class Child, class ChildInfo>
class CBaseImplementation {
 public:
  CBaseImplementation() = default;
  CBaseImplementation(const CBaseImplementation &) = delete;
  CBaseImplementation &operator=(const CBaseImplementation &) = delete;
  virtual ~CBaseImplementation() = default;

  using ChildPtr = std::shared_ptr<Child>;
  using ChildInfoPtr = std::shared_ptr<ChildInfo>;
  using ChildInfoList = std::list<ChildInfoPtr>;

  /// Takes an open child in. @throws invalidparameter_error, resourceinuse_error
  void AddChild(const ChildPtr &pChild) {
    const Lock lock(m_Lock);
    if (pChild == nullptr) {
      throw invalidparameter_error("Null child pointer.", LVX_HERE);
    }
    if (IsOpened(pChild.get()) || IsOpened(pChild->GetName())) {
      throw resourceinuse_error("Child already opened.", LVX_HERE);
    }
    m_OpenedChildren.emplace(pChild->GetName(), pChild);
  }

  /// Lets an open child go. @throws invalidhandle_error
  void ReleaseChild(const ChildPtr &pChild) {
    const Lock lock(m_Lock);
    if (pChild == nullptr) {
      throw invalidhandle_error("Invalid child handle.", LVX_HERE);
    }
    const auto entry = m_OpenedChildren.find(pChild->GetName());
    if (entry == m_OpenedChildren.end()) {
      throw invalidhandle_error(
          FormatMessageText("Couldn't find Child in list of opened children (%s).", pChild->GetName().c_str()),
          LVX_HERE);
    }
    m_OpenedChildren.erase(entry);
  }

  /// Id of the known child with that index. @throws invalidparameter_error
  std::string GetChildName(uint32_t iIndex) const {
    const Lock lock(m_Lock);
    uint32_t iCurrent = 0;
    for (const ChildInfoPtr &pInfo : m_KnownChildren) {
      if (iCurrent == iIndex) {
        return pInfo->GetId();
      }
      ++iCurrent;
    }
    throw invalidparameter_error(FormatMessageText("Child #%d does not exist.", static_cast<int32_t>(iIndex)),
                                 LVX_HERE);
  }

  /// The same, into a caller's buffer. The caller gets no type.
  void GetChildName(uint32_t iIndex, char *pBuffer, size_t *piSize) const {
    const Lock lock(m_Lock);
    INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
    SetReturnParam(pBuffer, piSize, &iType, GetChildName(iIndex));
  }

  /// The known child with that id. @throws invalidparameter_error
  ChildInfoPtr FindChild(const char *pName) const {
    const Lock lock(m_Lock);
    if (pName == nullptr) {
      throw invalidparameter_error("Null pointer for Child's name.", LVX_HERE);
    }
    for (const ChildInfoPtr &pInfo : m_KnownChildren) {
      if (pInfo->GetId() == pName) {
        return pInfo;
      }
    }
    throw invalidparameter_error(FormatMessageText("Invalid Child's name: %s", pName), LVX_HERE);
  }

  /// Number of known children, open or not.
  uint32_t GetNumChildren() const {
    const Lock lock(m_Lock);
    return static_cast<uint32_t>(m_KnownChildren.size());
  }

  bool IsOpened(const std::string &strName) const {
    const Lock lock(m_Lock);
    return m_OpenedChildren.find(strName) != m_OpenedChildren.end();
  }

  bool IsOpened(const Child *pChild) const {
    const Lock lock(m_Lock);
    for (const auto &entry : m_OpenedChildren) {
      if (entry.second.get() == pChild) {
        return true;
      }
    }
    return false;
  }

  /// Adopts a new discovery: what was known before leads, in the new order; newcomers follow. True if a child came or
  /// went.
  bool UpdateChildList(const ChildInfoList &newChildren) {
    const Lock lock(m_Lock);
    ChildInfoList oldChildren;
    oldChildren.swap(m_KnownChildren);
    ChildInfoList newcomers;
    for (const ChildInfoPtr &pNew : newChildren) {
      const auto known = FindById(oldChildren, pNew->GetId());
      if (known != oldChildren.end()) {
        m_KnownChildren.push_back(pNew);
        oldChildren.erase(known);
      } else {
        newcomers.push_back(pNew);
      }
    }
    const bool bChanged = !newcomers.empty() || !oldChildren.empty();
    m_KnownChildren.splice(m_KnownChildren.end(), newcomers);
    return bChanged;
  }

  /// Closes every open child, then forgets the known ones. A child's close ends in ReleaseChild.
  void CloseAll() {
    const Lock lock(m_Lock);
    while (!m_OpenedChildren.empty()) {
      m_OpenedChildren.begin()->second->Close();
    }
    m_KnownChildren.clear();
  }

 private:
  using Lock = boost::unique_lock<boost::recursive_mutex>;

  static typename ChildInfoList::iterator FindById(ChildInfoList &children, const std::string &strId) {
    auto entry = children.begin();
    while (entry != children.end() && (*entry)->GetId() != strId) {
      ++entry;
    }
    return entry;
  }

  mutable boost::recursive_mutex m_Lock;
  std::map<std::string, ChildPtr> m_OpenedChildren;
  ChildInfoList m_KnownChildren;
};

}  // namespace GenICam::Client
