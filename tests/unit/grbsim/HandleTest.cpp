// SPDX-License-Identifier: MIT
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

constexpr uint32_t kChannels[] = {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4,
                                  GRB_CHANNEL_5, GRB_CHANNEL_6, GRB_CHANNEL_7, GRB_CHANNEL_8};

std::string Properties(const CGrabber &grabber) {
  const char *text = nullptr;
  EXPECT_EQ(GRB_ParameterGet(grabber.Handle(), GRB_BOARD_PROPERTIES, &text), GRB_OK);
  return text == nullptr ? "" : text;
}

class EveryChannel : public testing::TestWithParam<uint32_t> {};

TEST_P(EveryChannel, EnumerateOpensAndTellsTheProperties) {
  CGrabber grabber(GRB_MODE_ENUMERATE, GetParam());
  ASSERT_EQ(grabber.OpenStatus(), GRB_OK);
  const std::string text = Properties(grabber);
  EXPECT_NE(text.find("Name=Lumivex\n"), std::string::npos);
  EXPECT_NE(text.find("Model=LX-CXP-4\n"), std::string::npos);
  EXPECT_NE(text.find("SerialNumber="), std::string::npos);
}

TEST_P(EveryChannel, AbsentBoardDoesNotOpenInAnyMode) {
  for (const uint32_t mode : {GRB_MODE_ENUMERATE, GRB_MODE_CONTROL, GRB_MODE_ACQ_ONLY}) {
    for (uint32_t board = GRB_BOARD_2; board <= GRB_BOARD_7; ++board) {
      ClearHook();
      CGrabber grabber(mode, GetParam(), board);
      EXPECT_NE(grabber.OpenStatus(), GRB_OK);
      EXPECT_EQ(LastHook().calls, 1U);
      EXPECT_EQ(LastHook().function, "GRB_Open");
      EXPECT_EQ(LastHook().status, grabber.OpenStatus());
      EXPECT_EQ(LastHook().text, "There is no board " + std::to_string(board - GRB_BOARD_1 + 1) + ".");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Handle, EveryChannel, testing::ValuesIn(kChannels));

TEST(Handle, EnumerateAnswersBoardParametersOnly) {
  CGrabber grabber(GRB_MODE_ENUMERATE, GRB_CHANNEL_1);
  EXPECT_GE(grabber.Get(GRB_REV_SW), 0x70511U);
  uint32_t value = 0;
  EXPECT_NE(GRB_ParameterGet(grabber.Handle(), GRB_ROI_XLENGTH, &value), GRB_OK);
  EXPECT_NE(grabber.Set(GRB_ROI_XLENGTH, 64), GRB_OK);
}

TEST(Handle, ControlStandsBesideAcquisitionOnOneChannel) {
  CGrabber acquisition(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  CGrabber other(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  EXPECT_EQ(acquisition.OpenStatus(), GRB_OK);
  EXPECT_EQ(control.OpenStatus(), GRB_OK);
  EXPECT_EQ(other.OpenStatus(), GRB_OK);
  EXPECT_EQ(control.ReadWord(0), 0xC0A79AE5U);
  EXPECT_EQ(other.ReadWord(0), 0xC0A79AE5U);
}

TEST(Handle, ModesDoOnlyWhatTheyAreFor) {
  CGrabber acquisition(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  uint8_t bytes[4] = {};
  uint32_t size = 4;
  ClearHook();
  EXPECT_NE(acquisition.Read(0, bytes, size), GRB_OK);
  EXPECT_EQ(LastHook().text, "The camera is reached through a handle opened in GRB_MODE_CONTROL.");
  EXPECT_NE(control.Set(GRB_ROI_XLENGTH, 64), GRB_OK);
  EXPECT_EQ(LastHook().text, "Setting a parameter takes a handle opened in GRB_MODE_ACQ_ONLY.");
  EXPECT_NE(control.Stream(GRB_STREAM_STOP), GRB_OK);
  EXPECT_EQ(LastHook().text, "A stream operation takes a handle opened in GRB_MODE_ACQ_ONLY.");
  EXPECT_EQ(control.Get(GRB_ROI_XLENGTH), 1280U);
}

TEST(Handle, AcquisitionHasOneHolderForEachChannel) {
  CGrabber second;
  {
    CGrabber first(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
    ASSERT_EQ(first.OpenStatus(), GRB_OK);
    CGrabber neighbour(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_2);
    EXPECT_EQ(neighbour.OpenStatus(), GRB_OK);
    ClearHook();
    EXPECT_NE(second.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
    EXPECT_EQ(LastHook().text, "Board 1 channel 1 is already open for acquisition.");
    // A handle whose opening failed may be closed; that frees nothing of the holder's.
    EXPECT_EQ(second.Close(), GRB_OK);
    EXPECT_NE(second.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
  }
  EXPECT_EQ(second.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
}

TEST(Handle, AcquisitionOpensInitiallyAndAfterCloseAndReopenOnOneHandle) {
  CGrabber grabber;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(grabber.Open(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1), GRB_OK);
    EXPECT_NE(GRB_Open(grabber.Handle()), GRB_OK) << "an open handle cannot be opened";
    EXPECT_EQ(grabber.Close(), GRB_OK);
  }
}

TEST(Handle, ControlOpensWithoutCameraAndTheReadFailsAtOnce) {
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_3);
  ASSERT_EQ(control.OpenStatus(), GRB_OK);
  uint8_t bytes[4] = {};
  uint32_t size = 4;
  ClearHook();
  EXPECT_NE(control.Read(4, bytes, size), GRB_OK);
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(LastHook().text, "No camera is connected to the channel.");
}

TEST(Handle, UnopenedHandleAnswersNothingButOpenParameters) {
  CGrabber grabber;
  uint32_t value = 0;
  uint32_t address = 0;
  uint32_t size = 4;
  uint8_t bytes[4] = {};
  const GRB_HANDLE handle = grabber.Handle();
  ClearHook();
  EXPECT_NE(GRB_ParameterGet(handle, GRB_REV_SW, &value), GRB_OK);
  EXPECT_NE(GRB_ParameterSet(handle, GRB_ROI_XLENGTH, &value), GRB_OK);
  EXPECT_NE(GRB_StreamRead(handle, GRB_STREAM_STOP, nullptr), GRB_OK);
  EXPECT_NE(GRB_ControlRead(handle, GRB_PORT_CAMERA, &address, bytes, &size, 400), GRB_OK);
  EXPECT_NE(GRB_ControlWrite(handle, GRB_PORT_CAMERA, &address, bytes, &size, 400), GRB_OK);
  char path[] = "x";
  EXPECT_NE(GRB_Action(handle, GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, path), GRB_OK);
  EXPECT_EQ(LastHook().calls, 6U);
  EXPECT_EQ(LastHook().text, "The handle is not open.");
  EXPECT_EQ(grabber.Close(), GRB_OK);
}

TEST(Handle, OpenNamesTheParameterThatIsMissing) {
  CGrabber grabber;
  EXPECT_NE(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(LastHook().text, "The parameter GRB_OPEN_BOARD is not set.");
  grabber.Set(GRB_OPEN_BOARD, GRB_BOARD_1);
  EXPECT_NE(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(LastHook().text, "The parameter GRB_OPEN_CHANNEL is not set.");
  grabber.Set(GRB_OPEN_CHANNEL, GRB_CHANNEL_1);
  EXPECT_NE(GRB_Open(grabber.Handle()), GRB_OK);
  EXPECT_EQ(LastHook().text, "The parameter GRB_OPEN_MODE is not set.");
}

TEST(Handle, OpenParametersRefuseOtherValuesAndOpenHandles) {
  CGrabber grabber;
  EXPECT_NE(grabber.Set(GRB_OPEN_BOARD, GRB_BOARD_7 + 1), GRB_OK);
  EXPECT_NE(grabber.Set(GRB_OPEN_CHANNEL, GRB_CHANNEL_1 + 1), GRB_OK);
  EXPECT_NE(grabber.Set(GRB_OPEN_MODE, 0), GRB_OK);
  EXPECT_NE(grabber.Set(GRB_OPEN_VARIANT, 0), GRB_OK);
  EXPECT_NE(GRB_ParameterSet(grabber.Handle(), GRB_OPEN_BOARD, nullptr), GRB_OK);
  ASSERT_EQ(grabber.Open(GRB_MODE_CONTROL, GRB_CHANNEL_1), GRB_OK);
  EXPECT_NE(grabber.Set(GRB_OPEN_BOARD, GRB_BOARD_1), GRB_OK);
}

TEST(Handle, ValuesThatAreNoHandleAreRefused) {
  GRB_HANDLE stale = CGrabber().Handle();
  uint32_t value = 0;
  uint32_t size = 4;
  uint8_t bytes[4] = {};
  for (GRB_HANDLE handle : {GRB_HANDLE{0}, stale, GRB_HANDLE{0xFFFFFFFF}}) {
    EXPECT_NE(GRB_Open(handle), GRB_OK);
    EXPECT_NE(GRB_Close(&handle), GRB_OK);
    EXPECT_NE(GRB_Destroy(&handle), GRB_OK);
    EXPECT_NE(GRB_ParameterSet(handle, GRB_ROI_XLENGTH, &value), GRB_OK);
    EXPECT_NE(GRB_ParameterGet(handle, GRB_ROI_XLENGTH, &value), GRB_OK);
    EXPECT_NE(GRB_Action(handle, GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, bytes), GRB_OK);
    EXPECT_NE(GRB_StreamRead(handle, GRB_STREAM_STOP, nullptr), GRB_OK);
    EXPECT_NE(GRB_ControlRead(handle, GRB_PORT_CAMERA, &value, bytes, &size, 400), GRB_OK);
    EXPECT_NE(GRB_ControlWrite(handle, GRB_PORT_CAMERA, &value, bytes, &size, 400), GRB_OK);
  }
}

TEST(Handle, NullPointersAreRefused) {
  EXPECT_NE(GRB_Create(nullptr, nullptr), GRB_OK);
  EXPECT_NE(GRB_Close(nullptr), GRB_OK);
  EXPECT_NE(GRB_Destroy(nullptr), GRB_OK);
  CGrabber acquisition(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  uint32_t address = 0;
  uint32_t size = 4;
  uint8_t bytes[4] = {};
  ClearHook();
  EXPECT_NE(GRB_ParameterSet(acquisition.Handle(), GRB_ROI_XLENGTH, nullptr), GRB_OK);
  EXPECT_NE(GRB_ParameterGet(acquisition.Handle(), GRB_ROI_XLENGTH, nullptr), GRB_OK);
  EXPECT_NE(GRB_StreamRead(acquisition.Handle(), GRB_STREAM_START, nullptr), GRB_OK);
  EXPECT_NE(GRB_Action(acquisition.Handle(), GRB_ACTION_CONFIG, GRB_ACTION_CONFIG_SAVE, nullptr), GRB_OK);
  EXPECT_NE(GRB_ControlRead(control.Handle(), GRB_PORT_CAMERA, nullptr, bytes, &size, 400), GRB_OK);
  EXPECT_NE(GRB_ControlRead(control.Handle(), GRB_PORT_CAMERA, &address, nullptr, &size, 400), GRB_OK);
  EXPECT_NE(GRB_ControlRead(control.Handle(), GRB_PORT_CAMERA, &address, bytes, nullptr, 400), GRB_OK);
  EXPECT_NE(GRB_ControlWrite(control.Handle(), GRB_PORT_CAMERA, nullptr, bytes, &size, 400), GRB_OK);
  EXPECT_EQ(LastHook().calls, 8U);
  EXPECT_EQ(LastHook().text, "The argument 'config' is a null pointer.");
}

TEST(Handle, NullHookIsBorne) {
  GRB_HANDLE handle = 0;
  ASSERT_EQ(GRB_Create(&handle, nullptr), GRB_OK);
  EXPECT_NE(handle, 0U);
  EXPECT_NE(GRB_Open(handle), GRB_OK);
  EXPECT_EQ(GRB_Destroy(&handle), GRB_OK);
}

TEST(Handle, UnknownOperationsActionsAndPortsAreRefused) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  uint32_t address = 0;
  uint32_t size = 4;
  uint8_t bytes[4] = {};
  EXPECT_NE(grabber.Stream(0xC0030200), GRB_OK);
  EXPECT_EQ(LastHook().text, "There is no stream operation 0xC0030200.");
  EXPECT_NE(GRB_Action(grabber.Handle(), GRB_ACTION_CONFIG, 1, bytes), GRB_OK);
  EXPECT_NE(GRB_ControlRead(control.Handle(), 0xC0080003, &address, bytes, &size, 400), GRB_OK);
  EXPECT_EQ(LastHook().text, "There is no port 0xC0080003.");
}

// The hook must speak on the thread whose call failed: a user keeps one text for each thread.
TEST(Handle, HookSpeaksOnTheCallingThread) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  ClearHook();
  std::vector<std::thread> threads;
  for (uint32_t i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      const uint32_t identifier = 0xC0FFEE00U + 2 * i;
      for (int round = 0; round < 200; ++round) {
        EXPECT_NE(grabber.Set(identifier, 0), GRB_OK);
        char expected[80];
        std::snprintf(expected, sizeof(expected), "There is no parameter 0x%08X to be set.", identifier);
        EXPECT_EQ(LastHook().text, expected);
        EXPECT_EQ(LastHook().function, "GRB_ParameterSet");
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(LastHook().calls, 0U);
}

TEST(Handle, GrabberRegistersHaveFourBytes) {
  CGrabber grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  uint32_t value = 0xCAFE0001;
  uint32_t size = 4;
  uint32_t address = 0x20;
  auto *bytes = reinterpret_cast<uint8_t *>(&value);
  EXPECT_EQ(GRB_ControlWrite(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
  value = 0;
  EXPECT_EQ(GRB_ControlRead(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
  EXPECT_EQ(value, 0xCAFE0001U);
  EXPECT_EQ(size, 4U);
  size = 8;
  EXPECT_NE(GRB_ControlRead(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
  EXPECT_EQ(size, 0U);
  size = 4;
  address = 4;
  EXPECT_EQ(GRB_ControlRead(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
  EXPECT_EQ(value, grabber.Get(GRB_REV_HW));
  EXPECT_NE(GRB_ControlWrite(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
  address = 0x1000;
  size = 4;
  EXPECT_NE(GRB_ControlRead(grabber.Handle(), GRB_PORT_GRABBER, &address, bytes, &size, 400), GRB_OK);
}

TEST(Handle, DefaultHookWritesOneLine) {
  testing::internal::CaptureStderr();
  GRB_ErrHandlerDefault("GRB_Open", 0x9004, "There is no board 2.");
  GRB_ErrHandlerDefault(nullptr, 1, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "grblx64: GRB_Open: There is no board 2. (status 0x00009004)\n"
            "grblx64: unknown function: no description (status 0x00000001)\n");
}

// A race between the calls of several threads would show under a thread sanitizer.
TEST(Handle, ConcurrentCallsOnOneHandleAreBorne) {
  CGrabber acquisition(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1);
  CGrabber control(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  std::vector<std::thread> threads;
  for (uint32_t i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (uint32_t round = 0; round < 200; ++round) {
        EXPECT_EQ(acquisition.Set(GRB_ROI_XLENGTH, 64 + i), GRB_OK);
        EXPECT_EQ(acquisition.Flush(), GRB_OK);
        const uint32_t width = acquisition.Get(GRB_ROI_XLENGTH);
        EXPECT_TRUE(width >= 64 && width < 68);
        EXPECT_EQ(control.ReadWord(4), 0x00010000U);
        EXPECT_EQ(control.WriteWord(0x6000, 640), GRB_OK);
        CGrabber passing(GRB_MODE_CONTROL, GRB_CHANNEL_1);
        EXPECT_EQ(passing.OpenStatus(), GRB_OK);
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
}

}  // namespace
