// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "GrbBaseHandle.h"

namespace GenICam::Client {

/// Tells whether there is a board behind a board value, and what it is called.
///
/// Opens the board through the first channel that lets it, and reads its properties.
/// Made for a moment by CSystemImpl, on the stack of one thread; a board that is absent or unreadable gives an object
/// that is not valid. Takes no lock of its own. The constructor throws only when no library handle can be created.
class CGrbBoardHandle : public CGrbBaseHandle {
 public:
  CGrbBoardHandle(uint32_t nBoard, bool bQuietErrors);
  ~CGrbBoardHandle() override;

  bool IsValid() const override { return !m_strId.empty(); }

  /// "<Model>-#<n>"
  std::string GetId() const { return m_strId; }
  /// "<Name> <Model> #<n>"
  std::string GetDisplayName() const { return m_strDisplayName; }
  /// "CXP" if the model contains it, else empty.
  std::string GetTLType() const { return m_strTLType; }

  /// Room for the value of a property.
  static constexpr size_t kPropertySize = 256;

  /// Finds a key in a text of "key=value" lines; separators are runs of '=' and newlines. The value is copied with its
  /// terminator, but never more than kPropertySize bytes; an absent key gives an empty text.
  /// @throws unknown_error
  static void PropertyGet(char *pOut, const char *pProperties, const char *pKey);

 private:
  GRB_STATUS TryOpen(uint32_t nChannel);
  void Identify();

  uint32_t m_nBoard;
  uint32_t m_nChannel;
  std::string m_strId;
  std::string m_strDisplayName;
  std::string m_strTLType;
};

}  // namespace GenICam::Client
