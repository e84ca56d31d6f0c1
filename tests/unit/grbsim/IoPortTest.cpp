// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "Grabber.h"

namespace {

class IoPort : public testing::Test {
 protected:
  IoPort() : m_Grabber(GRB_MODE_ACQ_ONLY, GRB_CHANNEL_1) {}

  uint32_t GetOutput(uint32_t port, uint32_t mask) {
    EXPECT_EQ(GRB_ParameterGet(m_Grabber.Handle(), port, &mask), GRB_OK);
    return mask;
  }

  CGrabber m_Grabber;
};

TEST_F(IoPort, EveryOutputStartsOnAMethodAndKeepsEachMethod) {
  for (uint32_t port = GRB_IO_422OUT_CHX; port <= GRB_IO_CCOUT_CH4; port += 0x100) {
    EXPECT_EQ(GetOutput(port, 1), GRB_IO_METHOD_BIT_CLEAR) << std::hex << port;
    for (const uint32_t method : {GRB_IO_METHOD_BIT_TIMERMX_POS, GRB_IO_METHOD_BIT_FIFO_WARN_NEG,
                                  GRB_IO_METHOD_BIT_FGTRIGD_NEG_CH4, GRB_IO_METHOD_BIT_CLEAR}) {
      EXPECT_EQ(m_Grabber.Set(port | 1U, method | 1U), GRB_OK);
      EXPECT_EQ(GetOutput(port, 1), method);
    }
  }
}

TEST_F(IoPort, BitsHaveMethodsOfTheirOwn) {
  EXPECT_EQ(m_Grabber.Set(GRB_IO_TTLOUT_CH2 | 1U, GRB_IO_METHOD_BIT_SET | 4U), GRB_OK);
  EXPECT_EQ(GetOutput(GRB_IO_TTLOUT_CH2, 4) & ~3U, GRB_IO_METHOD_BIT_SET);
  EXPECT_EQ(GetOutput(GRB_IO_TTLOUT_CH2, 1) & ~3U, GRB_IO_METHOD_BIT_CLEAR);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CH2), 4U);
  EXPECT_EQ(m_Grabber.Set(GRB_IO_TTLOUT_CH2 | 1U, GRB_IO_METHOD_BIT_CLEAR | 4U), GRB_OK);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CH2), 0U);
}

TEST_F(IoPort, OutputsAreWiredToTheInputsOfTheirKind) {
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CHX), 0U);
  EXPECT_EQ(m_Grabber.Set(GRB_IO_TTLOUT_CHX | 1U, GRB_IO_METHOD_BIT_SET | 1U), GRB_OK);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CHX), 1U);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CH1), 1U) << "CHX is the own channel";
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CH2), 0U);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_OPTOIN_CHX), 0U);
  EXPECT_EQ(m_Grabber.Set(GRB_IO_TTLOUT_CH1 | 1U, GRB_IO_METHOD_BIT_CLEAR | 1U), GRB_OK);
  EXPECT_EQ(m_Grabber.Get(GRB_IO_TTLIN_CHX), 0U);
}

TEST_F(IoPort, RefusesWhatIsNoMethodNoBitAndNoOutput) {
  EXPECT_NE(m_Grabber.Set(GRB_IO_TTLOUT_CHX | 1U, 0x03000001), GRB_OK);
  EXPECT_NE(m_Grabber.Set(GRB_IO_TTLOUT_CHX | 1U, 0x2E000001), GRB_OK);
  EXPECT_NE(m_Grabber.Set(GRB_IO_TTLOUT_CHX | 1U, GRB_IO_METHOD_BIT_SET), GRB_OK);
  EXPECT_NE(m_Grabber.Set(GRB_IO_TTLOUT_CHX | 1U, GRB_IO_METHOD_BIT_SET | 0x10), GRB_OK);
  EXPECT_NE(m_Grabber.Set(GRB_IO_TTLIN_CHX, 1), GRB_OK);
  EXPECT_NE(m_Grabber.Set(0xC0093800U - 0x80, 1), GRB_OK);
  uint32_t mask = 0;
  EXPECT_NE(GRB_ParameterGet(m_Grabber.Handle(), GRB_IO_TTLOUT_CHX, &mask), GRB_OK);
}

}  // namespace
