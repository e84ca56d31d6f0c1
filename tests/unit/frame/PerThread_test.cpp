// SPDX-License-Identifier: MIT
#include "PerThread.h"

#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>

#include <gtest/gtest.h>

#include "GenTL.h"

using namespace GenICam::Client;

namespace {

/// Counts itself. Each test has a kind of its own: the objects of a kind are process-wide.
template <int kKind>
struct Counted {
  Counted() { ++s_nAlive; }
  Counted(const Counted &) = delete;
  Counted &operator=(const Counted &) = delete;
  ~Counted() { --s_nAlive; }
  inline static std::atomic<int> s_nAlive{0};
};

template <class Object>
Object &Of(CPerThread<Object> &objects) {
  return objects.Get([] { return std::make_unique<Object>(); });
}

/// For a function without arguments.
template <class Object>
CPerThread<Object> *s_pObjects = nullptr;

/// A thread that has used its object and waits to be told to end.
template <class Object>
class CUser {
 public:
  explicit CUser(CPerThread<Object> &objects)
      : m_Thread([this, &objects] {
          m_pObject = &Of(objects);
          m_Used.set_value();
          m_End.get_future().wait();
        }) {
    m_Used.get_future().wait();
  }
  CUser(const CUser &) = delete;
  CUser &operator=(const CUser &) = delete;
  ~CUser() { End(); }

  void End() {
    if (m_Thread.joinable()) {
      m_End.set_value();
      m_Thread.join();
    }
  }
  const Object *Used() const { return m_pObject; }

 private:
  const Object *m_pObject = nullptr;
  std::promise<void> m_Used;
  std::promise<void> m_End;
  std::thread m_Thread;
};

TEST(PerThread, MadeAtTheFirstUseAndKept) {
  using Object = Counted<1>;
  CPerThread<Object> objects;
  EXPECT_EQ(0, Object::s_nAlive);
  const Object *pFirst = &Of(objects);
  EXPECT_EQ(1, Object::s_nAlive);
  EXPECT_EQ(pFirst, &Of(objects));
  EXPECT_EQ(1, Object::s_nAlive);
}

TEST(PerThread, EachThreadHasItsOwnUntilItEnds) {
  using Object = Counted<2>;
  CPerThread<Object> objects;
  const Object *pOwn = &Of(objects);
  CUser<Object> user(objects);
  EXPECT_NE(pOwn, user.Used());
  EXPECT_EQ(2, Object::s_nAlive);
  user.End();
  EXPECT_EQ(1, Object::s_nAlive);
}

// An application may unload the library and keep its threads: their end must not come back into it.
TEST(PerThread, ThreadsOutliveTheLibrary) {
  using Object = Counted<3>;
  std::optional<CPerThread<Object>> objects(std::in_place);
  Of(*objects);
  CUser<Object> user(*objects);
  EXPECT_EQ(2, Object::s_nAlive);
  objects.reset();
  EXPECT_EQ(0, Object::s_nAlive);
  user.End();
  EXPECT_EQ(0, Object::s_nAlive);
}

TEST(PerThread, UseBehindTheEndIsRefused) {
  using Object = Counted<4>;
  std::optional<CPerThread<Object>> objects(std::in_place);
  CPerThread<Object> *pObjects = &*objects;
  Of(*objects);
  objects.reset();
  EXPECT_THROW(Of(*pObjects), std::system_error);
  EXPECT_EQ(0, Object::s_nAlive);
}

// A reloaded library may stand at the same address: the thread must not find the object of the one before.
TEST(PerThread, ANewOneStartsAfresh) {
  using Object = Counted<5>;
  std::optional<CPerThread<Object>> objects(std::in_place);
  Of(*objects);
  objects.reset();
  objects.emplace();
  EXPECT_EQ(0, Object::s_nAlive);
  Of(*objects);
  EXPECT_EQ(1, Object::s_nAlive);
  objects.reset();
  EXPECT_EQ(0, Object::s_nAlive);
}

// An application that unloads the library without closing it has no thread in here either.
TEST(PerThread, UnloadOfAnInitialisedLibraryLeavesNothing) {
  using Object = Counted<6>;
  std::optional<CPerThread<Object>> objects(std::in_place);
  const CUser<Object> user(*objects);
  ASSERT_EQ(GC_ERR_SUCCESS, GCInitLib());
  objects.reset();
  EXPECT_EQ(0, Object::s_nAlive);
  ASSERT_EQ(GC_ERR_SUCCESS, GCCloseLib());
}

// A process that ends without closing the library may have threads in here: what they use stays.
TEST(PerThreadDeathTest, EndOfTheProcessLeavesTheObjectsOfOtherThreads) {
  using Object = Counted<7>;
  const auto endTheProcess = [] {
    auto *objects = new CPerThread<Object>();
    // Neither this object nor the thread in it ends with the process.
    new CUser<Object>(*objects);
    std::atexit([] { std::_Exit(GCCloseLib() == GC_ERR_SUCCESS && Object::s_nAlive == 1 ? 0 : 1); });
    s_pObjects<Object> = objects;
    std::atexit([] { delete s_pObjects<Object>; });
    if (GCInitLib() == GC_ERR_SUCCESS) {
      std::exit(2);
    }
  };
  EXPECT_EXIT(endTheProcess(), testing::ExitedWithCode(0), "");
}

}  // namespace
