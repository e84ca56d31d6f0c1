// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "BaseImplementation.h"
#include "ICommonBase.h"
#include "TLIException.h"

using namespace GenICam::Client;

namespace {

/// A description with an id, and a mark that tells the old object from the new one.
class CFakeInfo {
 public:
  CFakeInfo(std::string id, int generation) : m_nGeneration(generation), m_strId(std::move(id)) {}
  std::string GetId() const { return m_strId; }
  int Generation() const { return m_nGeneration; }

 private:
  int m_nGeneration;
  std::string m_strId;
};

class CFakeChild;
using Registry = CBaseImplementation<CFakeChild, CFakeInfo>;

/// A child whose close ends in ReleaseChild, as that of every module does.
class CFakeChild : public std::enable_shared_from_this<CFakeChild> {
 public:
  CFakeChild(std::string name, Registry *pParent) : m_strName(std::move(name)), m_pParent(pParent) { ++s_nAlive; }
  ~CFakeChild() { --s_nAlive; }
  CFakeChild(const CFakeChild &) = delete;
  CFakeChild &operator=(const CFakeChild &) = delete;

  std::string GetName() const { return m_strName; }
  void Close() {
    if (onClose) {
      onClose();
    }
    m_pParent->ReleaseChild(shared_from_this());
  }
  std::function<void()> onClose;
  static std::atomic<int> s_nAlive;

 private:
  std::string m_strName;
  Registry *m_pParent;
};
std::atomic<int> CFakeChild::s_nAlive{0};

Registry::ChildInfoList Infos(const std::vector<std::string> &ids, int generation = 1) {
  Registry::ChildInfoList list;
  for (const std::string &id : ids) {
    list.push_back(std::make_shared<CFakeInfo>(id, generation));
  }
  return list;
}

template <class Error>
std::string FailureOf(const std::function<void()> &action) {
  try {
    action();
  } catch (const Error &failure) {
    return failure.GetDescription();
  } catch (const Lumivex::CLVXException &failure) {
    ADD_FAILURE() << "another class: " << failure.what();
    return "";
  }
  ADD_FAILURE() << "nothing was thrown";
  return "";
}

class ChildRegistry : public testing::Test {
 protected:
  std::shared_ptr<CFakeChild> Open(const std::string &name) {
    auto pChild = std::make_shared<CFakeChild>(name, &m_Registry);
    m_Registry.AddChild(pChild);
    return pChild;
  }
  std::vector<std::string> Known() const {
    std::vector<std::string> names;
    for (uint32_t i = 0; i < m_Registry.GetNumChildren(); ++i) {
      names.push_back(m_Registry.GetChildName(i));
    }
    return names;
  }
  Registry m_Registry;
};

// ---------------------------------------------------------------------------------------------------------------------
// Opened children
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(ChildRegistry, OwnsAnAddedChildUntilItsRelease) {
  CFakeChild *pRaw = Open("A").get();
  EXPECT_EQ(1, CFakeChild::s_nAlive);
  EXPECT_TRUE(m_Registry.IsOpened(std::string("A")));
  EXPECT_TRUE(m_Registry.IsOpened(pRaw));
  EXPECT_FALSE(m_Registry.IsOpened(std::string("B")));
  m_Registry.ReleaseChild(pRaw->shared_from_this());
  EXPECT_FALSE(m_Registry.IsOpened(std::string("A")));
  EXPECT_EQ(0, CFakeChild::s_nAlive);
}

TEST_F(ChildRegistry, NullChildIsRefused) {
  EXPECT_EQ("Null child pointer.", FailureOf<invalidparameter_error>([&] { m_Registry.AddChild(nullptr); }));
}

TEST_F(ChildRegistry, SameChildIsRefused) {
  const auto pChild = Open("A");
  EXPECT_EQ("Child already opened.", FailureOf<resourceinuse_error>([&] { m_Registry.AddChild(pChild); }));
  EXPECT_TRUE(m_Registry.IsOpened(pChild.get()));
}

TEST_F(ChildRegistry, SameNameIsRefusedAndTheFirstChildStays) {
  const auto pChild = Open("A");
  const auto pOther = std::make_shared<CFakeChild>("A", &m_Registry);
  EXPECT_EQ("Child already opened.", FailureOf<resourceinuse_error>([&] { m_Registry.AddChild(pOther); }));
  EXPECT_TRUE(m_Registry.IsOpened(pChild.get()));
  EXPECT_FALSE(m_Registry.IsOpened(pOther.get()));
}

TEST_F(ChildRegistry, ReleaseOfNullFails) {
  EXPECT_EQ("Invalid child handle.", FailureOf<invalidhandle_error>([&] { m_Registry.ReleaseChild(nullptr); }));
}

TEST_F(ChildRegistry, SecondReleaseFailsWithTheName) {
  const auto pChild = Open("Channel #1");
  m_Registry.ReleaseChild(pChild);
  EXPECT_EQ("Couldn't find Child in list of opened children (Channel #1).",
            FailureOf<invalidhandle_error>([&] { m_Registry.ReleaseChild(pChild); }));
}

TEST_F(ChildRegistry, NameCanBeOpenedAgainOnceReleased) {
  m_Registry.ReleaseChild(Open("A"));
  Open("A");
  EXPECT_TRUE(m_Registry.IsOpened(std::string("A")));
}

TEST_F(ChildRegistry, OpenedAndKnownAreCountedApart) {
  Open("A");
  EXPECT_EQ(0U, m_Registry.GetNumChildren());
  m_Registry.UpdateChildList(Infos({"B", "C"}));
  EXPECT_EQ(2U, m_Registry.GetNumChildren());
  EXPECT_FALSE(m_Registry.IsOpened(std::string("B")));
}

// ---------------------------------------------------------------------------------------------------------------------
// Known children
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(ChildRegistry, NamesStandInOrderAndEndAtTheCount) {
  m_Registry.UpdateChildList(Infos({"A", "B"}));
  EXPECT_EQ("A", m_Registry.GetChildName(0));
  EXPECT_EQ("B", m_Registry.GetChildName(1));
  EXPECT_EQ("Child #2 does not exist.", FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(2); }));
  EXPECT_EQ("Child #-1 does not exist.",
            FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(0xFFFFFFFFU); }));
}

TEST_F(ChildRegistry, EmptyListHasNoFirstName) {
  EXPECT_EQ("Child #0 does not exist.", FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(0); }));
}

TEST_F(ChildRegistry, NameGoesIntoABuffer) {
  m_Registry.UpdateChildList(Infos({"Channel #1"}));
  size_t size = 0;
  m_Registry.GetChildName(0, nullptr, &size);
  EXPECT_EQ(11U, size);
  char text[16] = {};
  m_Registry.GetChildName(0, text, &size);
  EXPECT_STREQ("Channel #1", text);
  size = 10;
  EXPECT_EQ("Invalid Buffer Size.",
            FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(0, text, &size); }));
  EXPECT_EQ(10U, size);
  EXPECT_EQ("Invalid Size.", FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(0, text, nullptr); }));
  EXPECT_EQ("Child #1 does not exist.",
            FailureOf<invalidparameter_error>([&] { m_Registry.GetChildName(1, text, nullptr); }))
      << "the index is looked at first";
}

TEST_F(ChildRegistry, FindComparesExactly) {
  m_Registry.UpdateChildList(Infos({"Channel #1", "Channel #11"}));
  EXPECT_EQ("Channel #11", m_Registry.FindChild("Channel #11")->GetId());
  for (const char *name : {"channel #1", "Channel #", "Channel #1 ", "", "Channel #111"}) {
    EXPECT_EQ("Invalid Child's name: " + std::string(name),
              FailureOf<invalidparameter_error>([&] { m_Registry.FindChild(name); }));
  }
}

TEST_F(ChildRegistry, FindOfNullFails) {
  EXPECT_EQ("Null pointer for Child's name.",
            FailureOf<invalidparameter_error>([&] { m_Registry.FindChild(nullptr); }));
}

TEST_F(ChildRegistry, FindOnAnEmptyListIsAnInvalidParameter) {
  EXPECT_EQ("Invalid Child's name: A", FailureOf<invalidparameter_error>([&] { m_Registry.FindChild("A"); }));
}

TEST_F(ChildRegistry, LongNameIsCutWithTheMessage) {
  const std::string name(400, 'n');
  const std::string message = FailureOf<invalidparameter_error>([&] { m_Registry.FindChild(name.c_str()); });
  EXPECT_EQ(255U, message.size());
  EXPECT_EQ(0U, message.find("Invalid Child's name: nnn"));
}

// ---------------------------------------------------------------------------------------------------------------------
// Update
// ---------------------------------------------------------------------------------------------------------------------

struct UpdateRow {
  const char *name;
  std::vector<std::string> before;
  std::vector<std::string> discovered;
  std::vector<std::string> after;
  bool changed;
};
std::ostream &operator<<(std::ostream &out, const UpdateRow &row) { return out << row.name; }

class ChildRegistryUpdate : public testing::TestWithParam<UpdateRow> {};

TEST_P(ChildRegistryUpdate, KeepsTheListStable) {
  Registry registry;
  registry.UpdateChildList(Infos(GetParam().before, 1));
  EXPECT_EQ(GetParam().changed, registry.UpdateChildList(Infos(GetParam().discovered, 2)));
  ASSERT_EQ(GetParam().after.size(), registry.GetNumChildren());
  for (uint32_t i = 0; i < registry.GetNumChildren(); ++i) {
    EXPECT_EQ(GetParam().after[i], registry.GetChildName(i)) << i;
    EXPECT_EQ(2, registry.FindChild(GetParam().after[i].c_str())->Generation()) << "the new object is adopted";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Discoveries, ChildRegistryUpdate,
    testing::Values(UpdateRow{"NothingTwice", {}, {}, {}, false}, UpdateRow{"First", {}, {"A", "B"}, {"A", "B"}, true},
                    UpdateRow{"Same", {"A", "B"}, {"A", "B"}, {"A", "B"}, false},
                    UpdateRow{"OtherOrder", {"A", "B", "C"}, {"C", "A", "B"}, {"C", "A", "B"}, false},
                    UpdateRow{"Gone", {"A", "B"}, {"B"}, {"B"}, true}, UpdateRow{"AllGone", {"A", "B"}, {}, {}, true},
                    UpdateRow{"NewcomerBehind", {"A", "B"}, {"N", "A", "B"}, {"A", "B", "N"}, true},
                    UpdateRow{"NewcomersKeepTheirOrder", {"B"}, {"N", "A", "B", "M"}, {"B", "N", "A", "M"}, true},
                    UpdateRow{"OneForAnother", {"A"}, {"B"}, {"B"}, true},
                    UpdateRow{"MixedOrder", {"A", "B", "C"}, {"N", "C", "M", "A"}, {"C", "A", "N", "M"}, true}),
    [](const testing::TestParamInfo<UpdateRow> &row) { return std::string(row.param.name); });

TEST_F(ChildRegistry, UpdateLeavesTheCallersListAlone) {
  const Registry::ChildInfoList list = Infos({"A", "B"});
  m_Registry.UpdateChildList(list);
  m_Registry.UpdateChildList(list);
  EXPECT_EQ(2U, list.size());
}

TEST_F(ChildRegistry, VanishedChildStaysOpenAndCanBeClosed) {
  m_Registry.UpdateChildList(Infos({"A"}));
  const auto pChild = Open("A");
  EXPECT_TRUE(m_Registry.UpdateChildList(Infos({})));
  EXPECT_TRUE(m_Registry.IsOpened(pChild.get()));
  EXPECT_EQ("Invalid Child's name: A", FailureOf<invalidparameter_error>([&] { m_Registry.FindChild("A"); }));
  pChild->Close();
  EXPECT_FALSE(m_Registry.IsOpened(pChild.get()));
}

TEST_F(ChildRegistry, KnownListSurvivesTheCloseOfAChild) {
  m_Registry.UpdateChildList(Infos({"A"}));
  Open("A")->Close();
  EXPECT_EQ((std::vector<std::string>{"A"}), Known());
}

// ---------------------------------------------------------------------------------------------------------------------
// Close all
// ---------------------------------------------------------------------------------------------------------------------

TEST_F(ChildRegistry, CloseAllClosesInTheOrderOfNamesAndForgetsTheKnown) {
  m_Registry.UpdateChildList(Infos({"B", "A", "C"}));
  std::vector<std::string> closed;
  for (const char *name : {"C", "A", "B"}) {
    Open(name)->onClose = [&closed, name] { closed.emplace_back(name); };
  }
  m_Registry.CloseAll();
  EXPECT_EQ((std::vector<std::string>{"A", "B", "C"}), closed);
  EXPECT_EQ(0U, m_Registry.GetNumChildren());
  EXPECT_EQ(0, CFakeChild::s_nAlive);
}

TEST_F(ChildRegistry, CloseAllOfNothingForgetsTheKnown) {
  m_Registry.UpdateChildList(Infos({"A"}));
  m_Registry.CloseAll();
  EXPECT_EQ(0U, m_Registry.GetNumChildren());
}

TEST_F(ChildRegistry, FailingCloseLeavesTheRestOpenAndTheLockFree) {
  bool bFail = true;
  m_Registry.UpdateChildList(Infos({"A", "B", "C"}));
  for (const char *name : {"A", "B", "C"}) {
    Open(name)->onClose = [&bFail, name] {
      if (bFail && name == std::string("B")) {
        throw io_error(std::string("stuck"), LVX_HERE);
      }
    };
  }
  EXPECT_EQ("stuck", FailureOf<io_error>([&] { m_Registry.CloseAll(); }));
  EXPECT_FALSE(m_Registry.IsOpened(std::string("A")));
  EXPECT_TRUE(m_Registry.IsOpened(std::string("B")));
  EXPECT_TRUE(m_Registry.IsOpened(std::string("C")));
  EXPECT_EQ(3U, m_Registry.GetNumChildren()) << "the known list is cleared only at the end";
  uint32_t count = 0;
  std::thread([&] { count = m_Registry.GetNumChildren(); }).join();
  EXPECT_EQ(3U, count) << "another thread gets the lock";
  bFail = false;
  m_Registry.CloseAll();
  EXPECT_EQ(0, CFakeChild::s_nAlive);
}

TEST_F(ChildRegistry, ChildMayCallBackInWhileItIsClosed) {
  m_Registry.UpdateChildList(Infos({"A"}));
  uint32_t count = 0;
  Open("A")->onClose = [&] {
    count = m_Registry.GetNumChildren();
    m_Registry.IsOpened(std::string("A"));
    size_t size = 0;
    m_Registry.GetChildName(0, nullptr, &size);
  };
  m_Registry.CloseAll();
  EXPECT_EQ(1U, count);
}

// The lock is held across a child's close: a thread that asks meanwhile has to wait for its end.
TEST_F(ChildRegistry, LockIsHeldAcrossAClose) {
  m_Registry.UpdateChildList(Infos({"A"}));
  std::atomic<bool> bAsked{false};
  std::atomic<bool> bAnswered{false};
  bool bAnsweredInside = false;
  std::thread asker;
  uint32_t count = 99;
  Open("A")->onClose = [&] {
    asker = std::thread([&] {
      bAsked = true;
      count = m_Registry.GetNumChildren();
      bAnswered = true;
    });
    while (!bAsked) {
      std::this_thread::yield();
    }
    for (int i = 0; i < 1000 && !bAnswered; ++i) {
      std::this_thread::yield();
    }
    bAnsweredInside = bAnswered;
  };
  m_Registry.CloseAll();
  asker.join();
  EXPECT_FALSE(bAnsweredInside);
  EXPECT_EQ(0U, count) << "the answer was given ahead of the end of close all";
}

TEST_F(ChildRegistry, BearsManyThreads) {
  const auto list = Infos({"A", "B", "C"});
  m_Registry.UpdateChildList(list);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([this, &list, t] {
      for (int i = 0; i < 200; ++i) {
        const std::string name = std::to_string(t);
        const auto pChild = Open(name);
        EXPECT_TRUE(m_Registry.IsOpened(name));
        EXPECT_FALSE(m_Registry.UpdateChildList(list));
        EXPECT_EQ(3U, m_Registry.GetNumChildren());
        EXPECT_EQ("B", m_Registry.FindChild("B")->GetId());
        pChild->Close();
      }
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
  EXPECT_EQ(0, CFakeChild::s_nAlive);
}

// ---------------------------------------------------------------------------------------------------------------------
// TypeCast
// ---------------------------------------------------------------------------------------------------------------------

class CFakeModule : public ICommonBase {
 public:
  CFakeModule() : ICommonBase("Fake", MODULE_KIND_SYSTEM) {}
  void ReadData(uint64_t, void *, size_t *) override {}
  void WriteData(uint64_t, const void *, size_t *) override {}
  void GetURL(char *, size_t *) override {}
  void GetPortInfo(PORT_INFO_CMD, INFO_DATATYPE *, void *, size_t *) override {}
  void GetNumPortURLs(uint32_t *) override {}
  void GetPortURLInfo(uint32_t, URL_INFO_CMD, INFO_DATATYPE *, void *, size_t *) override {}
  void Register(EVENT_TYPE, EVENT_HANDLE *) override {}
  void Unregister(EVENT_TYPE) override {}
};

class CFakeEvent : public IEventObj {
 public:
  CFakeEvent() : IEventObj(0) {}
  bool GetData(void *, size_t *, uint64_t) override { return false; }
  void GetInfo(EVENT_INFO_CMD, INFO_DATATYPE *, void *, size_t *) override {}
  void GetDataInfo(const void *, size_t, EVENT_DATA_INFO_CMD, INFO_DATATYPE *, void *, size_t *) override {}
  void Flush() override {}
  void Kill() override {}
};

TEST(TypeCast, ReachesEveryFaceOfAModule) {
  CFakeModule module;
  void *handle = static_cast<ICommonBaseType *>(&module);
  EXPECT_EQ(static_cast<IPort *>(&module), TypeCast<IPort>(handle));
  EXPECT_EQ(static_cast<IEventSrc *>(&module), TypeCast<IEventSrc>(handle));
  EXPECT_EQ(&module, TypeCast<CFakeModule>(handle));
  EXPECT_EQ("Fake", TypeCast<CFakeModule>(handle)->GetName());
}

TEST(TypeCast, AnotherClassAndNullFailAlike) {
  CFakeModule module;
  CFakeEvent event;
  void *moduleHandle = static_cast<ICommonBaseType *>(&module);
  void *eventHandle = static_cast<ICommonBaseType *>(&event);
  EXPECT_EQ(&event, TypeCast<IEventObj>(eventHandle));
  const std::string text = "Invalid Device Handle";
  EXPECT_EQ(text, FailureOf<invalidhandle_error>([&] { TypeCast<IEventObj>(moduleHandle); }));
  EXPECT_EQ(text, FailureOf<invalidhandle_error>([&] { TypeCast<IPort>(eventHandle); }));
  EXPECT_EQ(text, FailureOf<invalidhandle_error>([&] { TypeCast<IEventSrc>(eventHandle); }));
  EXPECT_EQ(text, FailureOf<invalidhandle_error>([&] { TypeCast<IPort>(nullptr); }));
}

TEST(TypeCast, FailureNamesTheFunctionWithoutItsTarget) {
  try {
    TypeCast<IPort>(nullptr);
    FAIL();
  } catch (const invalidhandle_error &failure) {
    EXPECT_EQ(0U, std::string(failure.what()).find("Invalid Device Handle (function 'GenICam::Client::TypeCast()', "))
        << failure.what();
  }
}

template <int kKind>
class CKindOfModule : public CFakeModule {
 public:
  // The classes differ in where their faces stand.
  char m_Content[1 + kKind] = {};
};

template <int... kKinds>
void ExpectCastsOf(std::integer_sequence<int, kKinds...>) {
  const auto expectCast = [](CFakeModule &module) {
    EXPECT_EQ(static_cast<IEventSrc *>(&module), TypeCast<IEventSrc>(HandleOf(&module)));
    EXPECT_EQ(nullptr, CheckedCast<IEventObj>(&module));
  };
  std::tuple<CKindOfModule<kKinds>...> modules;
  for (int round = 0; round < 2; ++round) {
    (expectCast(std::get<CKindOfModule<kKinds>>(modules)), ...);
  }
}

// The cast remembers a few classes; those beyond are cast as well.
TEST(TypeCast, MoreClassesThanItRemembers) { ExpectCastsOf(std::make_integer_sequence<int, 20>()); }

TEST(TypeCast, OneRootForAllFaces) {
  CFakeModule module;
  EXPECT_EQ(static_cast<ICommonBaseType *>(static_cast<IPort *>(&module)),
            static_cast<ICommonBaseType *>(static_cast<IEventSrc *>(&module)));
}

}  // namespace
