// SPDX-License-Identifier: MIT
#ifndef GRBSIM_PARAMETERSTORE_H
#define GRBSIM_PARAMETERSTORE_H

#include <cstdint>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "ParameterTable.h"

namespace grbsim {

/// The stored parameters of one channel, each twice: the value last set and the value in effect.
///
/// Owned by CSimChannel. Entered by any thread, the callback thread included; one lock of its own, under which nothing
/// is called. Set and SetByName fail on a value outside the row's set; what the rows' access and source say is the
/// channel's matter.
class CParameterStore {
 public:
  CParameterStore();

  /// Puts every parameter back to its initial value, in effect at once.
  void Reset();
  /// Sets a value; `immediate` puts it into effect as well.
  void Set(const ParameterRow &row, uint64_t value, bool immediate);
  /// Sets a value by the parameter's name in a GCF file, in effect at once. False if no such parameter is carried.
  bool SetByName(std::string_view name, uint64_t value);
  /// Puts all values last set into effect.
  void Flush();

  /// The value last set.
  uint64_t Get(const ParameterRow &row) const;
  /// The value in effect, by an identifier of the table.
  uint64_t InEffect(uint32_t identifier) const;
  /// Name and value last set of each parameter that a GCF file carries.
  std::vector<std::pair<const char *, uint64_t>> FileValues() const;

 private:
  static size_t Index(const ParameterRow &row) noexcept;

  mutable std::mutex m_Lock;
  std::vector<uint64_t> m_Set;       // guarded by m_Lock; one for each row of the table
  std::vector<uint64_t> m_InEffect;  // guarded by m_Lock
};

}  // namespace grbsim

#endif
