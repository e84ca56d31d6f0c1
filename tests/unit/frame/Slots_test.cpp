// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ICommonBase.h"
#include "LVXException.h"
#include "RegisterMap.h"

using namespace GenICam::Client;
using Lumivex::CLVXException;

namespace {

/// The offset of a virtual operation in the table of its class. In the Itanium C++ ABI a pointer to a virtual member
/// holds 1 plus that offset.
template <class Member>
uintptr_t Offset(Member member) {
  uintptr_t words[2] = {};
  static_assert(sizeof(member) == sizeof(words), "a member pointer of two words");
  std::memcpy(words, &member, sizeof(words));
  return words[0] - 1;
}

void ExpectConsecutive(const std::vector<uintptr_t> &offsets) {
  for (size_t i = 1; i < offsets.size(); ++i) {
    EXPECT_EQ(offsets[i - 1] + sizeof(void *), offsets[i]) << "operation " << i << " stands out of its slot";
  }
}

// The destructor takes two places of the table.
constexpr uintptr_t kBehindDestructor = 2 * sizeof(void *);

TEST(Slots, LvxException) {
  EXPECT_EQ(kBehindDestructor, Offset(&CLVXException::what));
  ExpectConsecutive({Offset(&CLVXException::what), Offset(&CLVXException::GetDescription),
                     Offset(&CLVXException::GetSourceFunction), Offset(&CLVXException::GetSourceFile),
                     Offset(&CLVXException::GetSourceLine)});
}

TEST(Slots, Port) {
  EXPECT_EQ(kBehindDestructor, Offset(&IPort::ReadData));
  ExpectConsecutive({Offset(&IPort::ReadData), Offset(&IPort::WriteData), Offset(&IPort::GetURL),
                     Offset(&IPort::GetPortInfo), Offset(&IPort::GetNumPortURLs), Offset(&IPort::GetPortURLInfo)});
}

TEST(Slots, EventSource) {
  EXPECT_EQ(kBehindDestructor, Offset(&IEventSrc::Register));
  ExpectConsecutive({Offset(&IEventSrc::Register), Offset(&IEventSrc::Unregister)});
}

TEST(Slots, EventObject) {
  EXPECT_EQ(kBehindDestructor, Offset(&IEventObj::GetData));
  ExpectConsecutive({Offset(&IEventObj::GetData), Offset(&IEventObj::GetInfo), Offset(&IEventObj::GetDataInfo),
                     Offset(&IEventObj::Flush), Offset(&IEventObj::Kill)});
}

TEST(Slots, RegisterMap) {
  EXPECT_EQ(kBehindDestructor, Offset(&CRegisterMap::Read));
  ExpectConsecutive({Offset(&CRegisterMap::Read),
                     Offset(&CRegisterMap::ReadReg),
                     Offset(&CRegisterMap::Write),
                     Offset(&CRegisterMap::WriteReg),
                     Offset(&CRegisterMap::AddRegister),
                     Offset(&CRegisterMap::AddRegister64),
                     Offset(&CRegisterMap::AddString),
                     Offset(&CRegisterMap::AddBlock),
                     Offset(&CRegisterMap::GetAccess),
                     Offset(&CRegisterMap::GetValues),
                     Offset(&CRegisterMap::GetValue),
                     Offset(&CRegisterMap::GetValue64),
                     Offset(&CRegisterMap::GetByteOrderFlag),
                     Offset(&CRegisterMap::SetAccess),
                     Offset(&CRegisterMap::SetCallbacks),
                     Offset(&CRegisterMap::SetString),
                     Offset(&CRegisterMap::SetValues),
                     Offset(&CRegisterMap::SetValue),
                     Offset(&CRegisterMap::SetValue64),
                     Offset(&CRegisterMap::SetByteOrderFlag)});
}

TEST(Slots, RegisterEntryHasFortyBytes) { EXPECT_EQ(40U, sizeof(RegisterEntry)); }

TEST(Slots, StackEntryHasTwentyFourBytesInItsOrder) {
  EXPECT_EQ(24U, sizeof(PORT_REGISTER_STACK_ENTRY));
  EXPECT_EQ(0U, offsetof(PORT_REGISTER_STACK_ENTRY, Address));
  EXPECT_EQ(8U, offsetof(PORT_REGISTER_STACK_ENTRY, pBuffer));
  EXPECT_EQ(16U, offsetof(PORT_REGISTER_STACK_ENTRY, Size));
}

}  // namespace
