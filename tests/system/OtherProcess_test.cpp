// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "Camera.h"

extern char **environ;

/// A camera that another process has open is busy: it is found, told to be so, and free again when that process is
/// gone.
namespace {

using namespace SystemTest;  // NOLINT

/// The second process, from its start until it has ended. What it says is read line by line.
class COtherProcess {
 public:
  explicit COtherProcess(const std::string &deviceId) {
    int input[2] = {};
    int output[2] = {};
    // Without the flag the child would hold its own input open, and never see its end.
    EXPECT_EQ(pipe2(input, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(output, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::string program = OTHER_PROCESS;
    std::string cti = CLoadedProducer::Path();
    std::string id = deviceId;
    char *const arguments[] = {program.data(), cti.data(), id.data(), nullptr};
    EXPECT_EQ(posix_spawn(&m_iProcess, program.c_str(), &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    m_iInput = input[1];
    m_iOutput = output[0];
  }
  ~COtherProcess() {
    if (m_iProcess != 0) {
      End();
    }
    close(m_iOutput);
  }
  COtherProcess(const COtherProcess &) = delete;
  COtherProcess &operator=(const COtherProcess &) = delete;

  std::string Line() const {
    std::string line;
    char letter = 0;
    while (read(m_iOutput, &letter, 1) == 1 && letter != '\n') {
      line += letter;
    }
    return line;
  }
  /// Lets it end; its exit status.
  int End() {
    close(m_iInput);
    return Wait();
  }
  /// Ends it where it stands.
  void Kill() {
    EXPECT_EQ(kill(m_iProcess, SIGKILL), 0);
    Wait();
    close(m_iInput);
  }

 private:
  int Wait() {
    int status = 0;
    EXPECT_EQ(waitpid(m_iProcess, &status, 0), m_iProcess);
    m_iProcess = 0;
    return status;
  }
  pid_t m_iProcess = 0;
  int m_iInput = -1;
  int m_iOutput = -1;
};

class OtherProcess : public SimulationTest {
 protected:
  int32_t Status(uint32_t channel) {
    IF_HANDLE const iface = OpenInterface();
    EXPECT_OK(Gc().IFUpdateDeviceList(iface, nullptr, 100));
    return Value<int32_t>([&](INFO_DATATYPE *type, void *buffer, size_t *size) {
      return Gc().IFGetDeviceInfo(iface, DeviceId(channel).c_str(), DEVICE_INFO_ACCESS_STATUS, type, buffer, size);
    });
  }
};

TEST_F(OtherProcess, FindsTheCameraThatWeHoldBusy) {
  CStream stream(OpenDevice(1, 64, 16), 1);
  stream.Announce(3);
  stream.Start();
  ASSERT_NE(stream.Next(), nullptr);
  COtherProcess other(DeviceId(1));
  std::istringstream line(other.Line());
  std::string word;
  uint32_t devices = 0;
  int32_t status = 0;
  GC_ERROR control = GC_ERR_SUCCESS;
  GC_ERROR reading = GC_ERR_ERROR;
  line >> word >> devices >> status >> control >> reading;
  std::string text;
  std::getline(line, text);
  EXPECT_EQ(word, "refused") << text;
  EXPECT_EQ(devices, 2U) << "a busy camera is left out";
  EXPECT_EQ(status, DEVICE_ACCESS_STATUS_NOACCESS);
  EXPECT_EQ(control, GC_ERR_ERROR);
  EXPECT_EQ(reading, GC_ERR_SUCCESS) << "reading needs no free camera";
  EXPECT_NE(text.find("Stream handle not valid"), std::string::npos) << text;
  // It has looked at the camera; our frames go on.
  stream.Queue(stream.Buffers()[0]);
  for (int frame = 0; frame < 10; ++frame) {
    BUFFER_HANDLE const buffer = stream.Next();
    ASSERT_NE(buffer, nullptr);
    stream.Queue(buffer);
  }
  EXPECT_EQ(other.End(), 0);
}

TEST_F(OtherProcess, GetsTheCameraThatWeDoNotHold) {
  OpenDevice(1);
  COtherProcess other(DeviceId(2));
  EXPECT_EQ(other.Line(), "open 2 1");
  EXPECT_EQ(Status(2), DEVICE_ACCESS_STATUS_NOACCESS);
  DEV_HANDLE device = nullptr;
  EXPECT_FAILED(GC_ERR_ERROR, Gc().IFOpenDevice(m_hInterface, DeviceId(2).c_str(), DEVICE_ACCESS_CONTROL, &device));
  EXPECT_EQ(device, nullptr);
  EXPECT_EQ(other.End(), 0);
  EXPECT_EQ(Status(2), DEVICE_ACCESS_STATUS_READWRITE);
  OpenDevice(2);
}

// A program that crashed must not keep the camera.
TEST_F(OtherProcess, FreesTheCameraWhenItIsKilled) {
  COtherProcess other(DeviceId(1));
  EXPECT_EQ(other.Line(), "open 2 1");
  EXPECT_EQ(Status(1), DEVICE_ACCESS_STATUS_NOACCESS);
  other.Kill();
  EXPECT_EQ(Status(1), DEVICE_ACCESS_STATUS_READWRITE);
  CStream stream(OpenDevice(1, 64, 16), 1);
  stream.Announce(3);
  stream.Start();
  EXPECT_NE(stream.Next(), nullptr);
  stream.Stop();
}

TEST_F(OtherProcess, GetsTheCameraOnceWeHaveClosedIt) {
  DEV_HANDLE const device = OpenDevice(1);
  EXPECT_EQ(Status(1), DEVICE_ACCESS_STATUS_NOACCESS) << "held by ourselves";
  EXPECT_OK(Gc().DevClose(device));
  COtherProcess other(DeviceId(1));
  EXPECT_EQ(other.Line(), "open 2 1");
  EXPECT_EQ(other.End(), 0);
}

}  // namespace
