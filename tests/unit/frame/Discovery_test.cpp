// SPDX-License-Identifier: MIT
#include <list>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "Interface.h"
#include "InterfaceImpl.h"
#include "ScriptedGrb.h"
#include "SystemImpl.h"
#include "TL.h"

using namespace GenICam::Client;
using namespace Scripted;

namespace {

class Discovery : public testing::Test {
 protected:
  void SetUp() override { Script().Reset(); }
  void TearDown() override {
    EXPECT_EQ(0U, Script().CreatedHandles());
    Script().Reset();
  }
};

std::shared_ptr<CInterfaceInfo> Info(uint32_t board = GRB_BOARD_1) {
  return std::make_shared<CInterfaceInfo>("id", "display", "CXP", board);
}

TEST_F(Discovery, InterfaceInfoKeepsWhatItWasGiven) {
  const CInterfaceInfo info("id", "display", "type", GRB_BOARD_7);
  EXPECT_EQ("id", info.GetId());
  EXPECT_EQ("display", info.GetDisplayName());
  EXPECT_EQ("type", info.GetTLType());
  EXPECT_EQ(GRB_BOARD_7, info.GetBoard());
}

TEST_F(Discovery, BoardsComeInTheOrderOfTheirValuesWithTheirBoard) {
  Script().RemoveAllBoards();
  Script().SetBoard(GRB_BOARD_6, "Model=B\nName=N\n");
  Script().SetBoard(GRB_BOARD_2, "Model=A CXP\nName=N\n");
  std::list<std::shared_ptr<CInterfaceInfo>> boards;
  CSystemImpl().CollectInterfaces(boards);
  ASSERT_EQ(2U, boards.size());
  EXPECT_EQ("A CXP-#2", boards.front()->GetId());
  EXPECT_EQ("CXP", boards.front()->GetTLType());
  EXPECT_EQ(GRB_BOARD_2, boards.front()->GetBoard());
  EXPECT_EQ("B-#6", boards.back()->GetId());
  EXPECT_EQ("N B #6", boards.back()->GetDisplayName());
  EXPECT_EQ("", boards.back()->GetTLType());
  EXPECT_EQ(GRB_BOARD_6, boards.back()->GetBoard());
}

TEST_F(Discovery, CamerasComeWithBoardAndChannel) {
  Script().SetBoard(GRB_BOARD_3);
  Script().SetCamera(GRB_BOARD_3, GRB_CHANNEL_5, CCamera());
  std::list<std::shared_ptr<CDeviceInfo>> devices;
  CInterfaceImpl(Info(GRB_BOARD_3)).CollectDevices(devices);
  ASSERT_EQ(1U, devices.size());
  EXPECT_EQ("Channel #5", devices.front()->GetId());
}

using DiscoveryDeathTest = Discovery;

TEST_F(DiscoveryDeathTest, ListsHaveToBeEmpty) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  std::list<std::shared_ptr<CInterfaceInfo>> boards = {Info()};
  EXPECT_DEATH(CSystemImpl().CollectInterfaces(boards), "Interfaces\\.empty\\(\\)");
  std::list<std::shared_ptr<CDeviceInfo>> devices = {nullptr};
  EXPECT_DEATH(CInterfaceImpl(Info()).CollectDevices(devices), "Devices\\.empty\\(\\)");
}

TEST_F(DiscoveryDeathTest, PointersHaveToBeThere) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(CInterfaceImpl(nullptr), "pInterfaceInfo");
  EXPECT_DEATH(CInterface::Create(nullptr, Info()), "pParentTL");
  const auto pSystem = std::make_shared<CTL>();
  EXPECT_DEATH(CInterface::Create(pSystem, nullptr), "pInterfaceInfo");
}

}  // namespace
