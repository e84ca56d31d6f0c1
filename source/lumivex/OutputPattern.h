// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Lumivex::Consumer {

/// The name of the output files, with the place where the number of the frame goes.
///
/// The place is written %d, with a width (%3d: filled with blanks) or a width after a zero (%03d: with zeros); %%
/// stands for one per cent sign. It is read here and never reaches a printf. A name for more than one frame has exactly
/// one place, a name for one frame may have none. The constructor throws CCommandError(Usage). A value: copied freely,
/// constant, any thread.
class COutputPattern {
 public:
  COutputPattern(const std::string &pattern, uint64_t count);

  /// The name of the file of a frame.
  std::string Name(uint64_t number) const;

 private:
  void ReadConversion(const std::string &pattern, std::size_t &position);

  std::string m_Before;
  std::string m_After;
  std::size_t m_Width = 0;
  char m_Fill = ' ';
  bool m_bNumbered = false;
};

}  // namespace Lumivex::Consumer
