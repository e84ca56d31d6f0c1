// SPDX-License-Identifier: MIT
/// @file
/// The shared faces of the module tree. Every handle is the address of an object's ICommonBaseType part.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <typeinfo>

#include "GenTL.h"
#include "LiveHandles.h"
#include "TLIException.h"

namespace GenICam::Client {

/// Root of everything that a handle can point at: modules, their ports and event objects.
///
/// A virtual base of all: there is one such part per object, and its address is the handle. It has no more than a
/// virtual destructor, so that a handle can be cast back to any of the object's faces (TypeCast).
class ICommonBaseType {
 public:
  ICommonBaseType() = default;
  ICommonBaseType(const ICommonBaseType &) = delete;
  ICommonBaseType &operator=(const ICommonBaseType &) = delete;
  virtual ~ICommonBaseType() = default;
};

/// The port face of a module: its memory and its description.
class IPort : public virtual ICommonBaseType {
 public:
  /// Reads *piSize bytes of port memory.
  virtual void ReadData(uint64_t iAddress, void *pBuffer, size_t *piSize) = 0;
  /// Writes *piSize bytes of port memory.
  virtual void WriteData(uint64_t iAddress, const void *pBuffer, size_t *piSize) = 0;
  /// Delivers the port's first URL.
  virtual void GetURL(char *sURL, size_t *piSize) = 0;
  /// Answers a PORT_INFO_CMD.
  virtual void GetPortInfo(PORT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) = 0;
  /// Delivers the number of URLs.
  virtual void GetNumPortURLs(uint32_t *piNumURLs) = 0;
  /// Answers a URL_INFO_CMD.
  virtual void GetPortURLInfo(uint32_t iURLIndex, URL_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer,
                              size_t *piSize) = 0;
};

/// The event source face of a module.
class IEventSrc : public virtual ICommonBaseType {
 public:
  /// Enables the event object of this id and hands it out.
  virtual void Register(EVENT_TYPE iEventID, EVENT_HANDLE *phEvent) = 0;
  /// Disables it again.
  virtual void Unregister(EVENT_TYPE iEventID) = 0;
};

/// An event object. Owned by its event source, of which it never outlives the module.
class IEventObj : public virtual ICommonBaseType {
 public:
  explicit IEventObj(int32_t iEventType) : m_iEventType(iEventType) {
    CLiveHandles::Enter(static_cast<ICommonBaseType *>(this));
  }
  ~IEventObj() override { CLiveHandles::Leave(static_cast<ICommonBaseType *>(this)); }

  /// Delivers the oldest data block, or waits for one, up to iTimeout milliseconds. False: there was none.
  virtual bool GetData(void *pBuffer, size_t *piSize, uint64_t iTimeout) = 0;
  /// Answers an EVENT_INFO_CMD.
  virtual void GetInfo(EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE *piType, void *pBuffer, size_t *piSize) = 0;
  /// Decodes a block that GetData delivered.
  virtual void GetDataInfo(const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                           void *pOutBuffer, size_t *piOutSize) = 0;
  /// Drops what is waiting.
  virtual void Flush() = 0;
  /// Ends the current wait, or the next one.
  virtual void Kill() = 0;

 protected:
  const int32_t m_iEventType;
};

/// The module kinds. Stored in each module and read by nothing.
enum ModuleKind : uint32_t {
  MODULE_KIND_NONE = 0,
  MODULE_KIND_SYSTEM = 3,
  MODULE_KIND_INTERFACE = 4,
  MODULE_KIND_DEVICE = 5,
  MODULE_KIND_REMOTE_DEVICE = 6,
  MODULE_KIND_DATA_STREAM = 7,
  MODULE_KIND_BUFFER = 8,
};

/// Base of all modules: a port, an event source, and a name by which the parent knows the module.
class ICommonBase : public IPort, public IEventSrc, public virtual ICommonBaseType {
 public:
  ICommonBase(const std::string &strName, ModuleKind nModuleKind) : m_strName(strName), m_nModuleKind(nModuleKind) {
    CLiveHandles::Enter(static_cast<ICommonBaseType *>(this));
  }
  ~ICommonBase() override {
    CLiveHandles::Leave(static_cast<ICommonBaseType *>(this));
    m_nModuleKind = MODULE_KIND_NONE;
  }

  /// A copy of the module's name.
  std::string GetName() const { return m_strName; }

 private:
  std::string m_strName;
  uint32_t m_nModuleKind;
};

/// The handle of an object.
template <class Object>
void *HandleOf(Object *pObject) {
  return static_cast<ICommonBaseType *>(pObject);
}

/// dynamic_cast with a memory. The search through the class tree costs more than the rest of a short call, and its
/// answer is the same for all objects of a class: T's offset in the object. So it is made once for each class.
/// Takes a lock at a class' first cast only.
template <class T>
T *CheckedCast(ICommonBaseType *pObject) {
  struct Known {
    std::atomic<const std::type_info *> pClass{nullptr};
    std::atomic<ptrdiff_t> nOffset{0};
  };
  constexpr size_t kClasses = 8;
  static Known s_Known[kClasses];
  static std::mutex s_Lock;

  if (pObject == nullptr) {
    return nullptr;
  }
  const std::type_info *pClass = &typeid(*pObject);
  char *pWhole = static_cast<char *>(dynamic_cast<void *>(pObject));
  for (const Known &known : s_Known) {
    const std::type_info *pKnown = known.pClass.load(std::memory_order_acquire);
    if (pKnown == pClass) {
      return reinterpret_cast<T *>(pWhole + known.nOffset.load(std::memory_order_relaxed));
    }
    if (pKnown == nullptr) {
      break;
    }
  }
  T *pCast = dynamic_cast<T *>(pObject);
  if (pCast != nullptr) {
    const std::lock_guard<std::mutex> guard(s_Lock);
    for (Known &known : s_Known) {
      const std::type_info *pKnown = known.pClass.load(std::memory_order_relaxed);
      if (pKnown == pClass) {
        break;
      }
      if (pKnown == nullptr) {
        known.nOffset.store(reinterpret_cast<char *>(pCast) - pWhole, std::memory_order_relaxed);
        known.pClass.store(pClass, std::memory_order_release);
        break;
      }
    }
  }
  return pCast;
}

/// Checked down-cast of a handle to T. A null handle and a closed one take the same path as one of another class.
/// Kept: the text says Device, whatever the kind of handle.
/// @throws invalidhandle_error
template <class T>
T *TypeCast(void *pHandle) {
  T *pObject = CLiveHandles::IsLive(pHandle) ? CheckedCast<T>(static_cast<ICommonBaseType *>(pHandle)) : nullptr;
  if (pObject == nullptr) {
    throw invalidhandle_error("Invalid Device Handle", LVX_HERE);
  }
  return pObject;
}

}  // namespace GenICam::Client
