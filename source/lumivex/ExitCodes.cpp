// SPDX-License-Identifier: MIT
#include "ExitCodes.h"

#include <vector>

#include "Text.h"

namespace Lumivex::Consumer {

std::string ExitCodeHelp() {
  std::vector<std::vector<std::string>> rows;
  for (const ExitCodeRow &row : kExitCodes) {
    rows.push_back({" ", std::to_string(static_cast<int>(row.code)), row.text});
  }
  std::string text = "Exit codes:\n";
  for (const std::string &line : AlignColumns(rows)) {
    text += line + "\n";
  }
  return text;
}

}  // namespace Lumivex::Consumer
