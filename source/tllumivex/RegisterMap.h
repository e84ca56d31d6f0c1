// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace GenICam::Client {

/// Called after a write through WriteReg and before a read through ReadReg. It can change the value, and a read gives
/// what it left there.
using RegisterCallback = void (*)(uint64_t iAddress, uint32_t *pValue, void *pContext);

/// Access of a register; 0 is a hole.
enum RegisterAccess : uint32_t { ACCESS_NONE = 0, ACCESS_READ = 1, ACCESS_WRITE = 2, ACCESS_READ_WRITE = 3 };

/// One 32-bit word of port memory. All zero is a hole.
struct RegisterEntry {
  uint32_t nAccess;
  uint32_t nValue;
  RegisterCallback pWriteCallback;
  RegisterCallback pReadCallback;
  void *pContext;
  uint8_t nByteOrderFlag;
  uint8_t bVirtual;
};
static_assert(sizeof(RegisterEntry) == 40, "the largest entry count follows from this size");

/// The port memory of a module: a sparse table of 32-bit registers, addressed by byte address in steps of four.
///
/// A member of its module, filled once by the module's InitPort. Read, ReadReg, Write and WriteReg are what a client
/// does: they check the access right and run callbacks. The Get and Set operations are what the module does to its own
/// registers: no rights, no callbacks. An operation of several words that fails keeps the words before the failure.
/// Threads: whoever drives the port; one at a time. Takes no lock.
/// Throws invalidparameter_error for an address, size, buffer or access that cannot be, outofrange_error for a hole,
/// access_error for a register that is not readable or not writable.
class CRegisterMap {
 public:
  /// @param nEntries number of words @throws invalidparameter_error
  explicit CRegisterMap(uint64_t nEntries);
  CRegisterMap(const CRegisterMap &) = delete;
  CRegisterMap &operator=(const CRegisterMap &) = delete;
  virtual ~CRegisterMap();

  /// Reads iSize bytes, word by word from first to last. @return the virtual mark of the first register
  virtual bool Read(uint64_t iAddress, uint32_t *pBuffer, uint64_t iSize);
  /// Reads one register: runs its read callback, then gives the value.
  virtual uint32_t ReadReg(uint64_t iAddress);
  /// Writes iSize bytes, word by word from first to last. @return the virtual mark of the first register
  virtual bool Write(uint64_t iAddress, const uint32_t *pBuffer, uint64_t iSize);
  /// Writes one register: stores the value, then runs its write callback.
  virtual void WriteReg(uint64_t iAddress, uint32_t nValue);

  /// Adds one word, in place of whatever stood there. Adding an address twice is legal, the later one wins.
  virtual void AddRegister(uint64_t iAddress, uint32_t nAccess, uint32_t nValue, uint8_t nByteOrderFlag,
                           RegisterCallback pWriteCallback, void *pContext, RegisterCallback pReadCallback,
                           bool bVirtual);
  /// Adds two words that hold a 64-bit value.
  virtual void AddRegister64(uint64_t iAddress, uint32_t nAccess, uint64_t nValue, uint8_t nByteOrderFlag,
                             bool bLowWordFirst, RegisterCallback pWriteCallback, void *pContext,
                             RegisterCallback pReadCallback, bool bVirtual);
  /// Adds iSize bytes that hold a text, cut to iSize - 1 characters and followed by zeros.
  virtual void AddString(uint64_t iAddress, uint32_t nAccess, const std::string &strText, uint64_t iSize,
                         uint8_t nByteOrderFlag, RegisterCallback pWriteCallback, void *pContext,
                         RegisterCallback pReadCallback, bool bVirtual);
  /// Adds iSize bytes with the buffer's content, or zeros if it is null.
  virtual void AddBlock(uint64_t iAddress, uint32_t nAccess, const uint32_t *pBuffer, uint64_t iSize,
                        uint8_t nByteOrderFlag, RegisterCallback pWriteCallback, void *pContext,
                        RegisterCallback pReadCallback, bool bVirtual);

  /// Access of a register, 0 on any failure.
  virtual uint32_t GetAccess(uint64_t iAddress) const;
  /// @return number of words
  virtual uint64_t GetValues(uint64_t iAddress, uint32_t *pBuffer, uint64_t iSize) const;
  virtual uint32_t GetValue(uint64_t iAddress) const;
  virtual uint64_t GetValue64(uint64_t iAddress, bool bLowWordFirst) const;
  /// The flag stored with a register, 0 on any failure. Nothing depends on it.
  virtual uint8_t GetByteOrderFlag(uint64_t iAddress) const;

  virtual void SetAccess(uint64_t iAddress, uint32_t nAccess);
  virtual void SetCallbacks(uint64_t iAddress, RegisterCallback pWriteCallback, void *pContext,
                            RegisterCallback pReadCallback);
  /// Stores a text with its terminator, padded to whole words. Words behind it keep what they held.
  virtual void SetString(uint64_t iAddress, const std::string &strText);
  /// @return number of words
  virtual uint64_t SetValues(uint64_t iAddress, const uint32_t *pBuffer, uint64_t iSize);
  virtual void SetValue(uint64_t iAddress, uint32_t nValue);
  virtual void SetValue64(uint64_t iAddress, uint64_t nValue, bool bLowWordFirst);
  virtual void SetByteOrderFlag(uint64_t iAddress, uint8_t nFlag);

  /// Gives the map nEntries words: new ones are holes, a smaller number drops registers.
  void Resize(uint64_t nEntries);

 private:
  static void CheckAddress(uint64_t iAddress, uint64_t iSize);
  static void CheckBuffer(const void *pBuffer, uint64_t iSize);
  static void CheckAccess(uint32_t nAccess);
  [[noreturn]] static void ThrowNoEntry(uint64_t iAddress, const char *pFunction, const char *pFile, uint32_t nLine);
  const RegisterEntry &GetRegisterEntry(uint64_t iAddress) const;
  RegisterEntry &GetRegisterEntry(uint64_t iAddress);

  void GrowTo(uint64_t iAddress);
  void PackText(uint64_t iAddress, const char *pText, uint64_t iBytes);

  /// Ends at the highest register. What Resize makes room for behind it is holes, and memory that nothing writes.
  std::vector<RegisterEntry> m_Registers;
};

}  // namespace GenICam::Client
