// SPDX-License-Identifier: MIT
#ifndef GRBSIM_VALUERANGE_H
#define GRBSIM_VALUERANGE_H

#include <cstddef>
#include <cstdint>

namespace grbsim {

/// A run of allowed values, both ends included.
struct ValueRange {
  uint64_t first;
  uint64_t last;
};

/// A set of runs, as a column of a constant table.
struct ValueSet {
  const ValueRange *ranges;
  size_t count;

  constexpr bool Contains(uint64_t value) const {
    for (size_t i = 0; i < count; ++i) {
      if (value >= ranges[i].first && value <= ranges[i].last) {
        return true;
      }
    }
    return false;
  }
};

template <size_t Count>
constexpr bool IsInRanges(const ValueRange (&ranges)[Count], uint64_t value) {
  return ValueSet{ranges, Count}.Contains(value);
}

template <size_t Count>
constexpr ValueSet SetOf(const ValueRange (&ranges)[Count]) {
  return ValueSet{ranges, Count};
}

}  // namespace grbsim

#endif
