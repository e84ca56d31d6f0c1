// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdlib.h>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Grabber.h"

int main(int argumentCount, char **arguments) {
  if (argumentCount == 2 && std::strcmp(arguments[1], "--hold-channel-1") == 0) {
    // The other process of ProcessTest: tells what came of the opening, then holds the channel until its input ends.
    CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
    const char answer = grabber.OpenStatus() == GRB_OK ? 'o' : 'b';
    char ignored = 0;
    return write(STDOUT_FILENO, &answer, 1) == 1 && read(STDIN_FILENO, &ignored, 1) == 0 ? 0 : 1;
  }
  testing::InitGoogleTest(&argumentCount, arguments);
  // Test programs run side by side; each has channels of its own.
  std::string folder = (std::filesystem::temp_directory_path() / "grbsim-test-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    std::perror("mkdtemp");
    return 1;
  }
  setenv("LUMIVEX_SIM_LOCK_DIR", folder.c_str(), 1);
  setenv("LUMIVEX_SIM_FPS", "500", 1);
  const int result = RUN_ALL_TESTS();
  std::filesystem::remove_all(folder);
  return result;
}
