// SPDX-License-Identifier: MIT
// The descriptions of System, Interface, Data Stream and Buffer, node by node.
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Description.h"

namespace {

// One node of a file. `elements` holds all of its elements but the words of Standard features, which are free where the
// row does not fix them.
struct NodeRow {
  const char *file;
  const char *group;
  const char *kind;
  const char *name;
  const char *nameSpace;
  const char *elements;
};

std::ostream &operator<<(std::ostream &out, const NodeRow &row) { return out << row.file << ": " << row.name; }

constexpr const char *kSystem = "LumivexTLSystem.xml";
constexpr const char *kInterface = "LumivexTLInterface.xml";
constexpr const char *kStream = "LumivexTLDataStream.xml";
constexpr const char *kBuffer = "LumivexTLBuffer.xml";
constexpr const char *kSysInfo = "SystemInformation";
constexpr const char *kIfEnum = "InterfaceEnumeration";
constexpr const char *kIfInfo = "InterfaceInformation";
constexpr const char *kDevEnum = "DeviceEnumeration";
constexpr const char *kStreamInfo = "StreamInformation";
constexpr const char *kHandling = "BufferHandlingControl";
constexpr const char *kAcquisition = "AcquisitionControl";

// In the order of the files.
constexpr NodeRow kNodes[] = {
    {kSystem, "Root", "Category", "Root", "Standard", "pFeature=SystemInformation|pFeature=InterfaceEnumeration"},
    {kSystem, kSysInfo, "Category", "SystemInformation", "Standard",
     "pFeature=TLID|pFeature=TLVendorName|pFeature=TLModelName|pFeature=TLVersion|pFeature=TLDisplayName|"
     "pFeature=TLPath|pFeature=TLType|pFeature=GenTLVersionMajor|pFeature=GenTLVersionMinor|"
     "pFeature=GenTLSFNCVersionMajor|pFeature=GenTLSFNCVersionMinor|pFeature=GenTLSFNCVersionSubMinor"},
    {kSystem, kSysInfo, "StringReg", "TLID", "Standard",
     "Visibility=Expert|Address=0x100|Length=256|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "StringReg", "TLVendorName", "Standard",
     "Visibility=Beginner|Address=0x48|Length=64|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "StringReg", "TLModelName", "Standard",
     "Visibility=Beginner|Address=0x88|Length=64|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "StringReg", "TLVersion", "Standard",
     "Visibility=Beginner|Address=0xC8|Length=16|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "StringReg", "TLDisplayName", "Standard",
     "Visibility=Expert|Address=0x600|Length=256|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "StringReg", "TLPath", "Standard",
     "Visibility=Expert|Address=0x200|Length=1024|AccessMode=RO|pPort=TLPort"},
    {kSystem, kSysInfo, "Enumeration", "TLType", "Standard", "Visibility=Expert|EnumEntry=CXP:1|Value=1"},
    {kSystem, kSysInfo, "IntReg", "GenTLVersionMajor", "Standard",
     "Visibility=Expert|Address=0xDC|Length=4|AccessMode=RO|pPort=TLPort|Sign=Unsigned|Endianess=LittleEndian"},
    {kSystem, kSysInfo, "IntReg", "GenTLVersionMinor", "Standard",
     "Visibility=Expert|Address=0xD8|Length=4|AccessMode=RO|pPort=TLPort|Sign=Unsigned|Endianess=LittleEndian"},
    {kSystem, kSysInfo, "Integer", "GenTLSFNCVersionMajor", "Standard", "Visibility=Expert|Value=1"},
    {kSystem, kSysInfo, "Integer", "GenTLSFNCVersionMinor", "Standard", "Visibility=Expert|Value=0"},
    {kSystem, kSysInfo, "Integer", "GenTLSFNCVersionSubMinor", "Standard", "Visibility=Expert|Value=0"},
    {kSystem, kIfEnum, "Category", "InterfaceEnumeration", "Standard",
     "Visibility=Expert|pFeature=InterfaceUpdateList|pFeature=InterfaceSelector|pFeature=InterfaceID|"
     "pFeature=InterfaceCount"},
    {kSystem, kIfEnum, "Command", "InterfaceUpdateList", "Standard",
     "DisplayName=Interface Update List|Visibility=Expert|pValue=r_InterfaceUpdateList|CommandValue=1"},
    {kSystem, kIfEnum, "IntReg", "r_InterfaceUpdateList", "",
     "Visibility=Expert|Address=0x44|Length=4|AccessMode=RW|pPort=TLPort|Sign=Unsigned|Endianess=LittleEndian"},
    {kSystem, kIfEnum, "Integer", "InterfaceSelector", "Standard",
     "Visibility=Expert|pIsAvailable=TLIndexAvailable|pValue=r_InterfaceSelector|Min=0|pMax=MaxTLIndex|"
     "Representation=PureNumber"},
    {kSystem, kIfEnum, "StringReg", "InterfaceID", "Standard",
     "Visibility=Expert|Address=0x740|Length=256|AccessMode=RO|pPort=TLPort"},
    {kSystem, kIfEnum, "IntReg", "InterfaceCount", "",
     "Visibility=Expert|Address=0x4|Length=4|AccessMode=RO|pPort=TLPort|Sign=Unsigned|Endianess=LittleEndian"},
    {kSystem, kIfEnum, "IntReg", "r_InterfaceSelector", "",
     "Visibility=Invisible|Address=0x8|Length=4|AccessMode=RW|pPort=TLPort|Cachable=NoCache|Sign=Unsigned|"
     "Endianess=LittleEndian|pSelected=InterfaceID"},
    {kSystem, kIfEnum, "IntSwissKnife", "MaxTLIndex", "", "pVariable=MAXINDEX:InterfaceCount|Formula=MAXINDEX - 1 "},
    {kSystem, kIfEnum, "IntSwissKnife", "TLIndexAvailable", "",
     "pVariable=MAXINDEX:InterfaceCount|Formula=((MAXINDEX - 1) < 0) ? 0 : 1"},
    {kSystem, "", "Port", "TLPort", "", "ToolTip=The GenICam port through which the System module is accessed."},

    {kInterface, "Root", "Category", "Root", "", "pFeature=InterfaceInformation|pFeature=DeviceEnumeration"},
    {kInterface, kIfInfo, "Category", "InterfaceInformation", "",
     "pFeature=InterfaceID|pFeature=InterfaceDisplayName|pFeature=InterfaceType"},
    {kInterface, kIfInfo, "StringReg", "InterfaceID", "Standard",
     "Visibility=Expert|Address=0x0|Length=256|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kIfInfo, "StringReg", "InterfaceDisplayName", "Standard",
     "Visibility=Expert|Address=0x100|Length=256|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kIfInfo, "Enumeration", "InterfaceType", "Standard", "Visibility=Expert|EnumEntry=CXP:1|Value=1"},
    {kInterface, kDevEnum, "Category", "DeviceEnumeration", "",
     "pFeature=DeviceUpdateList|pFeature=DeviceSelector|pFeature=DeviceCount|pFeature=DeviceID|"
     "pFeature=DeviceVendorName|pFeature=DeviceModelName|pFeature=DeviceType|pFeature=DeviceDisplayName|"
     "pFeature=DeviceAccessStatus"},
    {kInterface, kDevEnum, "Command", "DeviceUpdateList", "Standard",
     "DisplayName=Device Discovery|Visibility=Expert|pValue=r_UpdateDeviceList|CommandValue=1"},
    {kInterface, kDevEnum, "IntReg", "r_UpdateDeviceList", "",
     "Address=0x280|Length=4|AccessMode=RW|pPort=InterfacePort|Sign=Unsigned|Endianess=LittleEndian"},
    {kInterface, kDevEnum, "Integer", "DeviceSelector", "Standard",
     "Visibility=Expert|pValue=r_DeviceSelector|Min=0|pMax=MaxDeviceIndex|pSelected=DeviceID|"
     "pSelected=DeviceVendorName|pSelected=DeviceModelName|pSelected=DeviceType|pSelected=DeviceDisplayName|"
     "pSelected=DeviceAccessStatus"},
    {kInterface, kDevEnum, "IntReg", "r_DeviceSelector", "Custom",
     "pIsAvailable=DeviceIndexAvailable|Address=0x484|Length=4|AccessMode=RW|pPort=InterfacePort|Sign=Unsigned|"
     "Endianess=LittleEndian"},
    {kInterface, kDevEnum, "IntReg", "DeviceCount", "Custom",
     "Address=0x480|Length=4|AccessMode=RO|pPort=InterfacePort|Cachable=NoCache|PollingTime=500|Sign=Unsigned|"
     "Endianess=LittleEndian"},
    {kInterface, kDevEnum, "StringReg", "DeviceID", "Standard",
     "Visibility=Expert|pIsAvailable=DeviceIndexAvailable|Address=0x380|Length=256|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kDevEnum, "StringReg", "DeviceVendorName", "Standard",
     "Visibility=Expert|pIsAvailable=DeviceIndexAvailable|Address=0x488|Length=64|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kDevEnum, "StringReg", "DeviceModelName", "Standard",
     "Visibility=Expert|pIsAvailable=DeviceIndexAvailable|Address=0x4C8|Length=64|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kDevEnum, "StringReg", "DeviceType", "Standard",
     "Address=0x508|Length=32|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kDevEnum, "StringReg", "DeviceDisplayName", "Standard",
     "Visibility=Expert|pIsAvailable=DeviceIndexAvailable|Address=0x52C|Length=256|AccessMode=RO|pPort=InterfacePort"},
    {kInterface, kDevEnum, "Enumeration", "DeviceAccessStatus", "Standard",
     "DisplayName=Device Access Status|ToolTip=Device access status|"
     "Description=Device access status to indicate if a device is available or not|Visibility=Beginner|"
     "EnumEntry=ReadWrite:1|EnumEntry=ReadOnly:2|EnumEntry=NoAccess:3|pValue=DeviceAccessStatusReg"},
    {kInterface, kDevEnum, "IntReg", "DeviceAccessStatusReg", "",
     "pIsAvailable=DeviceIndexAvailable|Address=0x62C|Length=4|AccessMode=RO|pPort=InterfacePort|Sign=Unsigned|"
     "Endianess=LittleEndian"},
    {kInterface, kDevEnum, "IntSwissKnife", "MaxDeviceIndex", "",
     "pVariable=MAXINDEX:DeviceCount|Formula=MAXINDEX - 1"},
    {kInterface, kDevEnum, "IntSwissKnife", "DeviceIndexAvailable", "",
     "pVariable=MAXINDEX:DeviceCount|Formula=((MAXINDEX - 1) < 0) ? 0 : 1"},
    {kInterface, "", "Port", "InterfacePort", "", "ToolTip= Port giving access to the interface. "},

    {kStream, "Root", "Category", "Root", "",
     "pFeature=StreamInformation|pFeature=BufferHandlingControl|pFeature=AcquisitionControl"},
    {kStream, kStreamInfo, "Category", "StreamInformation", "",
     "pFeature=StreamID|pFeature=StreamType|pFeature=StreamDisplayname"},
    {kStream, kStreamInfo, "StringReg", "StreamID", "Standard",
     "Address=0x80|Length=64|AccessMode=RO|pPort=StreamPort"},
    {kStream, kStreamInfo, "Enumeration", "StreamType", "Standard", "EnumEntry=CXP:1|Value=1"},
    {kStream, kStreamInfo, "StringReg", "StreamDisplayname", "Standard",
     "Address=0x100|Length=256|AccessMode=RO|pPort=StreamPort"},
    {kStream, kHandling, "Category", "BufferHandlingControl", "",
     "pFeature=StreamAnnouncedBufferCount|pFeature=StreamBufferHandlingMode|pFeature=StreamAnnounceBufferMinimum|"
     "pFeature=PayloadSize"},
    {kStream, kHandling, "IntReg", "StreamAnnouncedBufferCount", "",
     "ToolTip=Number of announced (known) buffers on this stream.|Visibility=Expert|Streamable=No|Address=0x4|Length=8|"
     "AccessMode=RO|pPort=StreamPort|Cachable=NoCache|Sign=Unsigned|Endianess=LittleEndian"},
    {kStream, kHandling, "Enumeration", "StreamBufferHandlingMode", "Standard", "EnumEntry=OldestFirst:1|Value=1"},
    {kStream, kHandling, "Integer", "StreamAnnounceBufferMinimum", "",
     "ToolTip=Minimal number of buffers to announce to enable selected buffer handling mode.|Visibility=Expert|Value=1|"
     "Representation=PureNumber"},
    {kStream, kHandling, "IntReg", "PayloadSize", "",
     "ToolTip=Size of the expected data in bytes.|Visibility=Expert|Streamable=No|Address=0x34|Length=8|AccessMode=RO|"
     "pPort=StreamPort|Cachable=NoCache|Sign=Unsigned|Endianess=LittleEndian"},
    {kStream, kAcquisition, "Category", "AcquisitionControl", "", "pFeature=TestEventError"},
    {kStream, kAcquisition, "Command", "TestEventError", "",
     "Visibility=Invisible|pValue=TestEventErrorReg|CommandValue=1"},
    {kStream, kAcquisition, "IntReg", "TestEventErrorReg", "",
     "Visibility=Invisible|Address=0x014|Length=4|AccessMode=RW|pPort=StreamPort|Sign=Unsigned|Endianess=LittleEndian"},
    {kStream, "", "Port", "StreamPort", "", ""},

    {kBuffer, "", "Register", "BufferData", "",
     "DisplayName=Entire Buffer Data|Address=0x10|Length=8|AccessMode=RO|pPort=BufferPort|Cachable=NoCache"},
    {kBuffer, "", "Integer", "BufferUserData", "",
     "DisplayName=Pointer to User Data|Visibility=Beginner|pValue=BufferUserData_Reg|Representation=PureNumber"},
    {kBuffer, "", "IntReg", "BufferUserData_Reg", "",
     "Address=0x18|Length=8|AccessMode=RO|pPort=BufferPort|Cachable=NoCache|Sign=Unsigned|Endianess=LittleEndian"},
    {kBuffer, "", "Port", "BufferPort", "", ""},
};

class SmallDescription : public testing::TestWithParam<const char *> {};

TEST_P(SmallDescription, HoldsTheNodesOfTheTableInItsOrderAndNoOther) {
  const CDescription description(GetParam());
  std::vector<std::string> expected;
  for (const auto &row : kNodes) {
    if (row.file == std::string(GetParam())) {
      expected.push_back(row.name);
    }
  }
  std::vector<std::string> found;
  for (const auto &node : description.Nodes()) {
    found.push_back(node.Name());
  }
  EXPECT_EQ(expected, found);
}

INSTANTIATE_TEST_SUITE_P(Files, SmallDescription, testing::Values(kSystem, kInterface, kStream, kBuffer),
                         [](const auto &test) {
                           const std::string name = test.param;
                           return name.substr(0, name.find('.'));
                         });

class SmallDescriptionNode : public testing::TestWithParam<NodeRow> {};

TEST_P(SmallDescriptionNode, StandsAsInTheTable) {
  const auto &row = GetParam();
  const CDescription description(row.file);
  const auto &node = description.At(row.name);
  EXPECT_EQ(row.kind, node.Kind());
  EXPECT_EQ(row.nameSpace, node.NameSpace());
  EXPECT_EQ(row.group, node.group);
  std::vector<std::string> free;
  if (node.NameSpace() == "Standard") {
    for (const char *word : {"ToolTip", "Description", "DisplayName"}) {
      if (std::string(row.elements).find(std::string(word) + "=") == std::string::npos) {
        free.push_back(word);
      }
    }
  }
  EXPECT_EQ(ElementsFrom(row.elements), ElementsOf(node.xml, free));
}

INSTANTIATE_TEST_SUITE_P(Nodes, SmallDescriptionNode, testing::ValuesIn(kNodes), [](const auto &test) {
  const std::string file = test.param.file;
  return file.substr(0, file.find('.')) + "_" + test.param.name;
});

}  // namespace
