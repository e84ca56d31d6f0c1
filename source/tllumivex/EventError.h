// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "EventQueue.h"

namespace GenICam::Client {

/// Codes of the reports.
enum ErrorEventCode : int32_t {
  ERROR_EVENT_GENERAL = -10001,
  ERROR_EVENT_FIFO_OVERFLOW = -10002,
  ERROR_EVENT_SYNC_LOST = -10003,
};

/// One report: a code and a text.
///
/// Kept by value in its queue, under whose lock it is written and read; its storage serves one report after the other.
/// Copies and ToBuf may throw, for want of memory or of room.
class CErrorEventEntry : public virtual ICommonBaseType {
 public:
  static constexpr size_t kMaxEventSize = 2048;
  /// What the code and the terminator leave for the text; the size that a Consumer's block has to have.
  static constexpr size_t kMaxDataSize = kMaxEventSize - 5;

  CErrorEventEntry() : CErrorEventEntry(0, std::string()) {}
  CErrorEventEntry(int32_t iCode, const std::string &strText);
  CErrorEventEntry(const CErrorEventEntry &other);
  CErrorEventEntry &operator=(const CErrorEventEntry &other);

  /// Takes another report's place; its storage is used again.
  void Assign(int32_t iCode, const char *pText);

  /// Writes the data block: the code, the text, a zero. *piSize becomes the text's length plus 5.
  /// @throws invalidparameter_error if the block does not fit
  void ToBuf(void *pBuffer, size_t *piSize) const;

 private:
  int32_t m_iCode;
  std::string m_Text;
};

/// EVENT_ERROR of a data stream or a Device: a queue of at most 2000 reports.
///
/// Owned by its module from its opening to its close. Consumer threads take out, the library's callback thread puts in;
/// AddEvent waits for nobody and fails for nothing. Locks: those of CEventQueue. Throws what CEventQueue does, and
/// invalidparameter_error for a block that cannot be decoded.
class CEventError : public CEventQueue<CErrorEventEntry> {
 public:
  CEventError();

  using CEventQueue<CErrorEventEntry>::AddEvent;
  /// Takes a report in, without an entry made for it.
  void AddEvent(int32_t iCode, const char *pText);

  /// Decodes a block, whatever the event's state.
  void GetDataInfo(const void *pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd, INFO_DATATYPE *piType,
                   void *pOutBuffer, size_t *piOutSize) override;
};

}  // namespace GenICam::Client
