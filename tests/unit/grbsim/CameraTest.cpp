// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Grabber.h"

namespace {

struct Camera {
  uint32_t channel;
  uint32_t revision;
  const char *model;
  uint32_t width;
  uint32_t height;
  uint32_t pixelFormat;
  uint32_t linkConfig;
};

const Camera kCameras[] = {{GRB_CHANNEL_1, 0x00010000, "LX-M1300", 1280, 1024, 0x0101, 0x00020048},
                           {GRB_CHANNEL_2, 0x00010001, "LX-C2000", 1920, 1080, 0x02180014, 0x00040048}};

class EveryCamera : public testing::TestWithParam<Camera> {
 protected:
  EveryCamera() : m_Control(GRB_MODE_CONTROL, GetParam().channel) {
    EXPECT_EQ(m_Control.WriteWord(0x4000, 1), GRB_OK) << "whatever a test before has left";
  }

  std::string Text(uint32_t address, uint32_t length) {
    std::string text(length, '?');
    uint32_t size = length;
    EXPECT_EQ(m_Control.Read(address, text.data(), size), GRB_OK);
    EXPECT_EQ(size, length);
    return text.substr(0, text.find('\0'));
  }

  /// The text that the camera's URL leads to.
  std::string Description() {
    const uint32_t address = m_Control.ReadWord(0x0018);
    std::string url;
    for (uint32_t offset = 0; offset < 2048 && url.find('\0') == std::string::npos; offset += 4) {
      char word[4] = {};
      uint32_t size = 4;
      EXPECT_EQ(m_Control.Read(address + offset, word, size), GRB_OK);
      url.append(word, 4);
    }
    url.resize(url.find('\0'));
    const std::string head = std::string("Local:") + GetParam().model + ".xml;";
    EXPECT_EQ(url.substr(0, head.size()), head);
    const size_t middle = url.find(';', head.size());
    EXPECT_NE(middle, std::string::npos);
    const auto place = static_cast<uint32_t>(std::stoul(url.substr(head.size(), middle - head.size()), nullptr, 16));
    const auto length = static_cast<uint32_t>(std::stoul(url.substr(middle + 1), nullptr, 16));
    std::string xml((length + 3) / 4 * 4, '?');
    auto size = static_cast<uint32_t>(xml.size());
    EXPECT_EQ(m_Control.Read(place, xml.data(), size), GRB_OK) << "one read, in whole words";
    for (size_t i = length; i < xml.size(); ++i) {
      EXPECT_EQ(xml[i], '\0') << "zeros fill the last word";
    }
    xml.resize(length);
    return xml;
  }

  CGrabber m_Control;
};

TEST_P(EveryCamera, BootstrapRegistersAreTrue) {
  const Camera &camera = GetParam();
  EXPECT_EQ(m_Control.ReadWord(0x0000), 0xC0A79AE5U);
  EXPECT_EQ(m_Control.ReadWord(0x0004), camera.revision);
  EXPECT_EQ(m_Control.ReadWord(0x0008), 1U);
  EXPECT_EQ(m_Control.ReadWord(0x000C), 0U);
  EXPECT_EQ(m_Control.ReadWord(0x0010), 0x00010200U);
  EXPECT_EQ(m_Control.ReadWord(0x0014), 0x00010100U);
  EXPECT_EQ(m_Control.ReadWord(0x001C), 0U);
  EXPECT_EQ(Text(0x2000, 32), "Lumivex");
  EXPECT_EQ(Text(0x2020, 32), camera.model);
  EXPECT_FALSE(Text(0x2040, 48).empty());
  EXPECT_FALSE(Text(0x2070, 32).empty());
  EXPECT_FALSE(Text(0x20B0, 16).empty());
  EXPECT_EQ(m_Control.ReadWord(0x4000), 0U);
  EXPECT_EQ(m_Control.ReadWord(0x4004), 0U);
  EXPECT_EQ(m_Control.ReadWord(0x400C) % 4, 0U);
  EXPECT_EQ(m_Control.ReadWord(0x4010) % 4, 0U);
  EXPECT_EQ(m_Control.ReadWord(0x4014), camera.linkConfig);
  EXPECT_EQ(m_Control.ReadWord(0x4018), camera.linkConfig);
  EXPECT_EQ(m_Control.ReadWord(0x4024), 0U);
}

TEST_P(EveryCamera, AddressRegistersLeadToTheFeatures) {
  const Camera &camera = GetParam();
  EXPECT_EQ(m_Control.ReadWord(m_Control.ReadWord(0x3000)), camera.width);
  EXPECT_EQ(m_Control.ReadWord(m_Control.ReadWord(0x3004)), camera.height);
  for (uint32_t address = 0x3008; address <= 0x301C; address += 4) {
    EXPECT_GE(m_Control.ReadWord(address), 0x6000U) << std::hex << address;
  }
  EXPECT_EQ(m_Control.ReadWord(m_Control.ReadWord(0x3014)), camera.pixelFormat);
  EXPECT_EQ(m_Control.ReadWord(m_Control.ReadWord(0x301C)), 1U);
}

TEST_P(EveryCamera, UrlLeadsToTheDescription) {
  EXPECT_EQ(m_Control.WriteWord(0x000C, 0), GRB_OK);
  const std::string xml = Description();
  EXPECT_EQ(xml.substr(0, 5), "<?xml");
  const std::string tail = "</RegisterDescription>\n";
  ASSERT_GE(xml.size(), tail.size());
  EXPECT_EQ(xml.substr(xml.size() - tail.size()), tail);
}

// The description and the registers prove each other: an address, length or access that does not fit shows here.
TEST_P(EveryCamera, EveryRegisterOfTheDescriptionIsThere) {
  pugi::xml_document document;
  const std::string xml = Description();
  ASSERT_TRUE(document.load_buffer(xml.data(), xml.size()));
  const pugi::xml_node root = document.child("RegisterDescription");
  EXPECT_STREQ(root.child("Port").attribute("Name").value(), "Device");
  size_t registers = 0;
  for (const pugi::xml_node node : root.children()) {
    const std::string access = node.child_value("AccessMode");
    if (access.empty()) {
      continue;
    }
    ++registers;
    const std::string name = node.attribute("Name").value();
    const auto address = static_cast<uint32_t>(node.child("Address").text().as_ullong());
    std::string bytes(node.child("Length").text().as_uint(), '?');
    auto size = static_cast<uint32_t>(bytes.size());
    EXPECT_EQ(m_Control.Read(address, bytes.data(), size), GRB_OK) << name;
    EXPECT_EQ(size, bytes.size()) << name;
    if (access != "WO") {
      EXPECT_EQ(m_Control.Write(address, bytes.data(), size) == GRB_OK, access == "RW") << name;
    } else {
      EXPECT_EQ(m_Control.WriteWord(address, 1), GRB_OK) << name;
    }
  }
  EXPECT_GE(registers, 20U);
  for (const char *feature :
       {"Width", "Height", "PixelFormat", "AcquisitionMode", "AcquisitionStart", "AcquisitionStop",
        "AcquisitionFrameRate", "ExposureTime", "TestPattern", "DeviceVendorName"}) {
    EXPECT_TRUE(root.find_child_by_attribute("Name", feature)) << feature;
  }
  // Each entry of an enumeration is a value that the camera takes.
  for (const pugi::xml_node node : root.children("Enumeration")) {
    const pugi::xml_node target = root.find_child_by_attribute("Name", node.child_value("pValue"));
    for (const pugi::xml_node entry : node.children("EnumEntry")) {
      EXPECT_EQ(m_Control.WriteWord(target.child("Address").text().as_uint(), entry.child("Value").text().as_uint()),
                GRB_OK)
          << entry.attribute("Name").value();
    }
  }
  EXPECT_EQ(m_Control.WriteWord(0x4000, 1), GRB_OK);
}

TEST_P(EveryCamera, FrameRateAtPowerUpComesFromTheEnvironment) {
  EXPECT_EQ(m_Control.ReadWord(0x6020), 0x43FA0000U) << "500 as a float";
}

TEST_P(EveryCamera, ReadOnlyRegistersRefuseWrites) {
  for (const uint32_t address : {0x0000U, 0x0004U, 0x0008U, 0x0010U, 0x0018U, 0x2000U, 0x2020U, 0x20B0U, 0x3000U,
                                 0x4004U, 0x400CU, 0x4018U, 0x4028U, 0x4030U, 0x7000U, 0x10000U}) {
    const uint32_t before = m_Control.ReadWord(address);
    ClearHook();
    EXPECT_NE(m_Control.WriteWord(address, 1), GRB_OK) << std::hex << address;
    EXPECT_EQ(LastHook().function, "GRB_ControlWrite");
    EXPECT_NE(LastHook().text.find("read-only"), std::string::npos) << LastHook().text;
    EXPECT_EQ(m_Control.ReadWord(address), before);
  }
}

struct Refused {
  uint32_t address;
  uint32_t value;
};

TEST_P(EveryCamera, ValuesOutOfRangeAreRefused) {
  for (const Refused &row :
       {Refused{0x000C, 1}, Refused{0x4010, 33}, Refused{0x4010, 0}, Refused{0x4014, 0x00030048},
        Refused{0x4014, 0x00020041}, Refused{0x4014, 0}, Refused{0x6000, 0}, Refused{0x6000, 17}, Refused{0x6000, 4096},
        Refused{0x6004, 0}, Refused{0x6008, 0xFFFFFFFF}, Refused{0x600C, 3}, Refused{0x6020, 0},
        Refused{0x6020, 0x7FC00000}, Refused{0x6024, 0xBF800000}, Refused{0x6028, 3}}) {
    const uint32_t before = m_Control.ReadWord(row.address);
    ClearHook();
    EXPECT_NE(m_Control.WriteWord(row.address, row.value), GRB_OK) << std::hex << row.address << " " << row.value;
    EXPECT_NE(LastHook().text.find("invalid data"), std::string::npos) << LastHook().text;
    EXPECT_EQ(m_Control.ReadWord(row.address), before);
  }
}

TEST_P(EveryCamera, AddressesOutsideAreRefused) {
  for (const uint32_t address : {0x0020U, 0x1000U, 0x20D0U, 0x3020U, 0x4038U, 0x603CU, 0xFFFFFFFCU}) {
    uint8_t bytes[4] = {};
    uint32_t size = 4;
    ClearHook();
    EXPECT_NE(m_Control.Read(address, bytes, size), GRB_OK) << std::hex << address;
    EXPECT_EQ(size, 0U);
    EXPECT_NE(LastHook().text.find("invalid address"), std::string::npos) << LastHook().text;
    EXPECT_NE(m_Control.WriteWord(address, 0), GRB_OK);
  }
}

TEST_P(EveryCamera, TransfersAreOfWholeWords) {
  uint8_t bytes[8] = {};
  uint32_t size = 5;
  EXPECT_NE(m_Control.Read(0x2000, bytes, size), GRB_OK);
  EXPECT_EQ(size, 0U);
  size = 4;
  EXPECT_NE(m_Control.Read(0x2002, bytes, size), GRB_OK);
  size = 3;
  EXPECT_NE(m_Control.Write(0x20C0, bytes, size), GRB_OK);
}

TEST_P(EveryCamera, ReadThatRunsOutOfTheRegistersTellsHowFarItCame) {
  uint8_t bytes[16] = {};
  uint32_t size = sizeof(bytes);
  EXPECT_NE(m_Control.Read(0x20C8, bytes, size), GRB_OK);
  EXPECT_EQ(size, 8U);
}

TEST_P(EveryCamera, UserIdIsKeptThroughAReset) {
  const char id[16] = "left eye";
  uint32_t size = sizeof(id);
  EXPECT_EQ(m_Control.Write(0x20C0, id, size), GRB_OK);
  EXPECT_EQ(size, 16U);
  EXPECT_EQ(m_Control.WriteWord(0x6000, 640), GRB_OK);
  EXPECT_EQ(m_Control.WriteWord(0x4014, 0x00010028), GRB_OK);
  EXPECT_EQ(m_Control.ReadWord(0x4014), 0x00010028U);
  EXPECT_EQ(m_Control.WriteWord(0x4000, 1), GRB_OK);
  EXPECT_EQ(m_Control.ReadWord(0x4014), GetParam().linkConfig);
  EXPECT_EQ(m_Control.ReadWord(0x6000), GetParam().width);
  EXPECT_EQ(Text(0x20C0, 16), "left eye");
  EXPECT_EQ(m_Control.WriteWord(0x20C0, 0), GRB_OK);
}

TEST_P(EveryCamera, ConnectionTestCountsPacketsAndNoErrors) {
  const uint32_t before = m_Control.ReadWord(0x402C);
  EXPECT_EQ(m_Control.WriteWord(0x401C, 1), GRB_OK);
  EXPECT_EQ(m_Control.WriteWord(0x401C, 0), GRB_OK);
  EXPECT_GT(m_Control.ReadWord(0x402C), before);
  EXPECT_EQ(m_Control.ReadWord(0x402C), m_Control.ReadWord(0x4034));
  EXPECT_EQ(m_Control.WriteWord(0x4020, 1), GRB_OK);
  EXPECT_EQ(m_Control.WriteWord(0x4024, 77), GRB_OK);
  EXPECT_EQ(m_Control.ReadWord(0x4024), 0U);
}

TEST_P(EveryCamera, NoAnswerComesInNoTime) {
  uint8_t bytes[4] = {};
  uint32_t size = 4;
  EXPECT_EQ(m_Control.Read(4, bytes, size, 0), GRB_WARNING_TIMEOUT);
  EXPECT_EQ(size, 0U);
  size = 4;
  EXPECT_EQ(m_Control.Read(4, bytes, size, GRB_TIMEOUT_CXP11), GRB_OK);
  size = 4;
  EXPECT_EQ(m_Control.Write(0x20C0, bytes, size, 0), GRB_WARNING_TIMEOUT);
}

INSTANTIATE_TEST_SUITE_P(Table, EveryCamera, testing::ValuesIn(kCameras),
                         [](const testing::TestParamInfo<Camera> &row) {
                           return "Channel" + std::to_string(row.index + 1);
                         });

TEST(CameraFormats, RegisterSpeaksTheLanguageOfItsRevision) {
  CGrabber old(GRB_MODE_CONTROL, GRB_CHANNEL_1);
  CGrabber recent(GRB_MODE_CONTROL, GRB_CHANNEL_2);
  EXPECT_EQ(old.WriteWord(0x6008, 0x0103), GRB_OK);
  EXPECT_NE(old.WriteWord(0x6008, 0x01080001), GRB_OK);
  EXPECT_EQ(recent.WriteWord(0x6008, 0x01080001), GRB_OK);
  EXPECT_NE(recent.WriteWord(0x6008, 0x0101), GRB_OK);
  EXPECT_EQ(old.WriteWord(0x4000, 1), GRB_OK);
  EXPECT_EQ(recent.WriteWord(0x4000, 1), GRB_OK);
}

}  // namespace
