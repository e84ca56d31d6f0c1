// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

// The simulation claims channels by lock files; a folder of one's own keeps programs that run at once apart. Settings
// of the machine must not reach the tests, and frames come as fast as the link allows.
int main(int argc, char **argv) {
  testing::InitGoogleTest(&argc, argv);
  std::string folder = (std::filesystem::temp_directory_path() / "lumivex-system-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    std::cerr << "cannot make a folder like " << folder << '\n';
    return EXIT_FAILURE;
  }
  setenv("LUMIVEX_SIM_LOCK_DIR", folder.c_str(), 1);
  setenv("LUMIVEX_GENTL_REG", (folder + "/none.reg").c_str(), 1);
  setenv("LUMIVEX_SIM_FPS", "2000", 1);
  const int result = RUN_ALL_TESTS();
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return result;
}
