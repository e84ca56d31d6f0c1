// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace DeviceTests {

/// Access in the map, which is what raw reads and writes meet.
enum class Access { None, R, W, RW };
/// Where the value of a register lies. Absent: described, but not in the map.
enum class Backing { Stored, Virtual, Callback, Absent };

struct RegisterRow {
  uint32_t address;
  uint32_t bytes;
  Access access;
  Backing backing;

  constexpr bool IsReadable() const { return access == Access::R || access == Access::RW; }
  constexpr bool IsWritable() const { return access == Access::W || access == Access::RW; }
};

/// All registers of the Device's port below its description, in the order of their addresses. 0x1504 has no row: it
/// lies inside the file name at 0x144C.
constexpr RegisterRow kRegisters[] = {
    {0x0000, 256, Access::R, Backing::Stored},   {0x0100, 64, Access::R, Backing::Stored},
    {0x0140, 64, Access::R, Backing::Stored},    {0x02E0, 256, Access::R, Backing::Stored},
    {0x03E4, 4, Access::R, Backing::Stored},     {0x03E8, 4, Access::R, Backing::Stored},
    {0x03EC, 4, Access::RW, Backing::Stored},    {0x03F0, 256, Access::R, Backing::Stored},
    {0x04F0, 4, Access::RW, Backing::Virtual},   {0x04F4, 4, Access::RW, Backing::Virtual},
    {0x04F8, 4, Access::RW, Backing::Virtual},   {0x04FC, 4, Access::R, Backing::Virtual},
    {0x0500, 4, Access::None, Backing::Absent},  {0x0508, 4, Access::R, Backing::Stored},
    {0x0600, 4, Access::RW, Backing::Virtual},   {0x0604, 4, Access::RW, Backing::Virtual},
    {0x0608, 4, Access::RW, Backing::Virtual},   {0x060C, 4, Access::RW, Backing::Virtual},
    {0x0610, 4, Access::RW, Backing::Virtual},   {0x0614, 4, Access::RW, Backing::Virtual},
    {0x0618, 4, Access::RW, Backing::Virtual},   {0x061C, 4, Access::RW, Backing::Virtual},
    {0x0620, 4, Access::RW, Backing::Virtual},   {0x0624, 4, Access::RW, Backing::Virtual},
    {0x0628, 4, Access::RW, Backing::Virtual},   {0x062C, 4, Access::RW, Backing::Virtual},
    {0x0630, 4, Access::RW, Backing::Virtual},   {0x1000, 4, Access::R, Backing::Virtual},
    {0x1004, 1024, Access::R, Backing::Virtual}, {0x1408, 4, Access::RW, Backing::Virtual},
    {0x140C, 4, Access::RW, Backing::Virtual},   {0x1410, 4, Access::RW, Backing::Virtual},
    {0x1414, 4, Access::RW, Backing::Virtual},   {0x1418, 4, Access::RW, Backing::Virtual},
    {0x141C, 4, Access::RW, Backing::Virtual},   {0x1420, 4, Access::RW, Backing::Virtual},
    {0x1424, 4, Access::RW, Backing::Virtual},   {0x1428, 4, Access::RW, Backing::Virtual},
    {0x142C, 4, Access::RW, Backing::Virtual},   {0x1430, 4, Access::RW, Backing::Virtual},
    {0x1434, 4, Access::RW, Backing::Virtual},   {0x143C, 4, Access::RW, Backing::Virtual},
    {0x1440, 4, Access::RW, Backing::Virtual},   {0x1444, 4, Access::RW, Backing::Virtual},
    {0x1448, 4, Access::RW, Backing::Callback},  {0x144C, 1024, Access::RW, Backing::Stored},
    {0x184C, 4, Access::RW, Backing::Virtual},   {0x1850, 4, Access::RW, Backing::Virtual},
    {0x1858, 4, Access::RW, Backing::Virtual},   {0x185C, 4, Access::RW, Backing::Virtual},
    {0x1860, 4, Access::RW, Backing::Virtual},   {0x1864, 4, Access::R, Backing::Virtual},
    {0x186C, 4, Access::RW, Backing::Virtual},   {0x1870, 4, Access::RW, Backing::Virtual},
    {0x1874, 4, Access::R, Backing::Virtual},    {0x1878, 4, Access::R, Backing::Virtual},
    {0x187C, 4, Access::R, Backing::Virtual},    {0x1880, 4, Access::R, Backing::Virtual},
    {0x1884, 1024, Access::RW, Backing::Stored}, {0x1C84, 4, Access::RW, Backing::Callback},
    {0x1C88, 4, Access::RW, Backing::Virtual},   {0x1C8C, 4, Access::RW, Backing::Virtual},
    {0x1C90, 4, Access::RW, Backing::Virtual},   {0x1C94, 4, Access::RW, Backing::Virtual},
    {0x1C98, 4, Access::RW, Backing::Virtual},   {0x1C9C, 4, Access::RW, Backing::Virtual},
    {0x1CA0, 4, Access::W, Backing::Virtual},    {0x1CA4, 4, Access::R, Backing::Virtual},
    {0x1CA8, 4, Access::R, Backing::Virtual},    {0x2004, 4, Access::RW, Backing::Virtual},
    {0x2008, 4, Access::RW, Backing::Virtual},   {0x200C, 4, Access::RW, Backing::Virtual},
    {0x2010, 4, Access::RW, Backing::Virtual},   {0x2014, 4, Access::RW, Backing::Virtual},
    {0x2018, 4, Access::RW, Backing::Virtual},   {0x201C, 4, Access::RW, Backing::Virtual},
    {0x2020, 4, Access::RW, Backing::Virtual},   {0x2024, 4, Access::RW, Backing::Virtual},
    {0x2028, 4, Access::RW, Backing::Virtual},   {0x202C, 4, Access::RW, Backing::Virtual},
    {0x2030, 4, Access::RW, Backing::Virtual},   {0x2034, 8, Access::RW, Backing::Virtual},
    {0x203C, 8, Access::RW, Backing::Virtual},   {0x2044, 8, Access::RW, Backing::Virtual},
    {0x204C, 8, Access::RW, Backing::Virtual},   {0x2054, 8, Access::RW, Backing::Virtual},
    {0x205C, 8, Access::RW, Backing::Virtual},   {0x2064, 8, Access::RW, Backing::Virtual},
    {0x206C, 8, Access::RW, Backing::Virtual},   {0x2074, 4, Access::RW, Backing::Virtual},
    {0x2078, 4, Access::RW, Backing::Virtual},   {0x207C, 8, Access::RW, Backing::Virtual},
    {0x208C, 8, Access::RW, Backing::Virtual},   {0x209C, 4, Access::RW, Backing::Virtual},
    {0x20A0, 4, Access::RW, Backing::Virtual},   {0x20A4, 4, Access::RW, Backing::Virtual},
    {0x20B4, 4, Access::R, Backing::Virtual},    {0x2204, 4, Access::RW, Backing::Virtual},
    {0x2208, 4, Access::R, Backing::Virtual},    {0x220C, 4, Access::RW, Backing::Virtual},
    {0x2210, 4, Access::RW, Backing::Virtual},   {0x2214, 4, Access::R, Backing::Virtual},
    {0x2220, 4, Access::RW, Backing::Virtual},
};

/// Served without a stream handle.
constexpr bool IsTrio(uint32_t address) { return address == 0x4F0 || address == 0x4F4 || address == 0x4F8; }

/// First address behind the registers: the description's.
constexpr uint32_t kRegistersEnd = 0x222C;

/// The row that a word belongs to, or null: a hole.
constexpr const RegisterRow *FindRegister(uint32_t address) {
  for (const RegisterRow &row : kRegisters) {
    if (address >= row.address && address < row.address + row.bytes) {
      return &row;
    }
  }
  return nullptr;
}

constexpr bool AreSortedAndDisjoint() {
  uint32_t end = 0;
  for (const RegisterRow &row : kRegisters) {
    if (row.address < end || row.address % 4 != 0 || row.bytes % 4 != 0 || row.bytes == 0) {
      return false;
    }
    end = row.address + row.bytes;
  }
  return end <= kRegistersEnd;
}
static_assert(AreSortedAndDisjoint(), "a slip in the table");

}  // namespace DeviceTests
