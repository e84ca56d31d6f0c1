// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform.h"

namespace GenICam::Client {

/// A key of the settings store, open for reading.
///
/// Lives on the stack of the reading routine; closes the key in its destructor. A value that is absent and one of no
/// bytes are the same: empty. Faults are thrown as plain texts, which the reading routine swallows.
class regkey {
 public:
  /// A value with its type and its bytes.
  class value {
   public:
    bool IsEmpty() const { return m_Bytes.empty(); }
    /// @throws a plain text if the value is not a 32-bit number
    uint32_t AsNumber() const;
    /// The bytes as a zero-terminated text, whatever the type.
    std::string AsText() const;

   private:
    friend class regkey;
    uint32_t m_nType = Lumivex::Platform::kRegNone;
    std::vector<uint8_t> m_Bytes;
  };

  explicit regkey(const char *pSubKey);
  ~regkey();
  regkey(const regkey &) = delete;
  regkey &operator=(const regkey &) = delete;

  bool IsOpen() const { return m_pKey != nullptr; }
  value Query(const char *pName) const;
  /// The first of the two that is not empty.
  value Query(const char *pName, const char *pOlderName) const;

 private:
  Lumivex::Platform::RegistryKey *m_pKey = nullptr;
};

}  // namespace GenICam::Client
