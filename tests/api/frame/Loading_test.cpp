// SPDX-License-Identifier: MIT
/// @file
/// Loading and unloading the Producer: several rounds, with threads that outlive it, and at the end of the process.
#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <future>
#include <iterator>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

class LoadingTest : public LoadedProducerTest {
 protected:
  void SetUp() override {
    LoadedProducerTest::SetUp();
    Script().Reset();
  }
  /// Opens system, interface, device and stream, as any Consumer would.
  static Tree OpenAll() {
    Tree tree;
    EXPECT_GC_OK(Gc().GCInitLib());
    EXPECT_GC_OK(Gc().TLOpen(&tree.system));
    EXPECT_GC_OK(Gc().TLOpenInterface(tree.system, CScriptedGrb::kDefaultInterfaceId, &tree.iface));
    EXPECT_GC_OK(Gc().IFOpenDevice(tree.iface, "Channel #1", DEVICE_ACCESS_EXCLUSIVE, &tree.device));
    EXPECT_GC_OK(Gc().DevOpenDataStream(tree.device, "Stream #1", &tree.stream));
    return tree;
  }
};

TEST_F(LoadingTest, RoundsOfLoadAndUnloadLeaveNothingMapped) {
  for (int i = 0; i < 5; ++i) {
    CProducer::Instance().Unload();
    ASSERT_FALSE(CProducer::IsMapped()) << "round " << i;
    CProducer::Instance().Load();
    ASSERT_TRUE(CProducer::IsMapped());
    OpenAll();
    EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  }
  EXPECT_EQ(0U, Script().CreatedHandles());
}

class LoadingMode : public LoadingTest, public testing::WithParamInterface<LoadMode> {};

TEST_P(LoadingMode, Works) {
  CProducer::Instance().Reload(GetParam());
  OpenAll();
  EXPECT_EQ("1.1.11.0", GcInfo(TL_INFO_VERSION).Text());
  EXPECT_EQ(CProducer::Path(), GcInfo(TL_INFO_PATHNAME).Text());
  EXPECT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  CProducer::Instance().Reload();
}

INSTANTIATE_TEST_SUITE_P(Modes, LoadingMode,
                         testing::Values(LoadMode::LazyLocal, LoadMode::NowLocal, LoadMode::LazyGlobal,
                                         LoadMode::NowGlobal));

/// Sends the process to a folder for a scope.
class CWorkingDirectory {
 public:
  explicit CWorkingDirectory(const std::filesystem::path &path) : m_Old(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~CWorkingDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(m_Old, ignored);
  }
  CWorkingDirectory(const CWorkingDirectory &) = delete;
  CWorkingDirectory &operator=(const CWorkingDirectory &) = delete;

 private:
  std::filesystem::path m_Old;
};

class RelativeName : public LoadingTest, public testing::WithParamInterface<bool> {};

// The path has to be found out while the library is being loaded: later the process may stand elsewhere.
TEST_P(RelativeName, GivesTheWholePathAllTheSame) {
  CProducer::Instance().Unload();
  const std::filesystem::path file = std::filesystem::canonical(CProducer::Path());
  const std::string folder = file.parent_path().filename().string();
  const std::string name = (GetParam() ? "../" + folder + "/" : "./") + file.filename().string();
  void *library = nullptr;
  {
    const CWorkingDirectory here(file.parent_path());
    library = dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
  }
  ASSERT_NE(nullptr, library) << dlerror();
  const auto init = reinterpret_cast<PGCInitLib>(dlsym(library, "GCInitLib"));
  const auto close = reinterpret_cast<PGCCloseLib>(dlsym(library, "GCCloseLib"));
  const auto getInfo = reinterpret_cast<PGCGetInfo>(dlsym(library, "GCGetInfo"));
  ASSERT_EQ(GC_ERR_SUCCESS, init());
  const auto textOf = [getInfo](TL_INFO_CMD command) {
    char text[4096] = {};
    size_t size = sizeof(text);
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    EXPECT_EQ(GC_ERR_SUCCESS, getInfo(command, &type, text, &size));
    return std::string(text);
  };
  EXPECT_EQ(file.string(), textOf(TL_INFO_PATHNAME));
  EXPECT_EQ(file.filename().string(), textOf(TL_INFO_ID));
  EXPECT_EQ(file.filename().string(), textOf(TL_INFO_NAME));
  EXPECT_EQ(GC_ERR_SUCCESS, close());
  EXPECT_EQ(0, dlclose(library));
  CProducer::Instance().Load();
}

INSTANTIATE_TEST_SUITE_P(Names, RelativeName, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool> &row) {
                           return row.param ? "ThroughTheParent" : "BesideTheProcess";
                         });

TEST_F(LoadingTest, LoadingAloneTouchesNoHardware) {
  CProducer::Instance().Unload();
  const size_t mark = Script().Mark();
  CProducer::Instance().Load();
  EXPECT_EQ(0U, Script().Calls(mark).size());
}

TEST_F(LoadingTest, UnloadedLibraryForgetsItsInitialisation) {
  ASSERT_GC_OK(Gc().GCInitLib());
  CProducer::Instance().Reload();
  EXPECT_GC(GC_ERR_NOT_INITIALIZED, kNotInitialised, Gc().GCCloseLib());
  EXPECT_GC_OK(Gc().GCInitLib());
}

TEST_F(LoadingTest, RecordsOfAnUnloadedLibraryAreGone) {
  ASSERT_GC_OK(Gc().GCInitLib());
  Gc().TLOpen(nullptr);
  CProducer::Instance().Reload();
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCInitLib());
  std::thread([] { EXPECT_EQ("", LastError().text); }).join();
}

/// A thread that calls the Producer when told to, and ends when told to.
class CWorker {
 public:
  CWorker() : m_Thread([this] { Run(); }) {}
  ~CWorker() {
    if (m_Thread.joinable()) {
      End();
    }
  }
  CWorker(const CWorker &) = delete;
  CWorker &operator=(const CWorker &) = delete;
  void Call() { Step(1); }
  void End() {
    Step(2);
    m_Thread.join();
  }

 private:
  void Step(int step) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    m_nStep = step;
    m_Condition.notify_all();
    m_Condition.wait(lock, [this] { return m_nStep == 0; });
  }
  void Run() {
    std::unique_lock<std::mutex> lock(m_Mutex);
    for (;;) {
      m_Condition.wait(lock, [this] { return m_nStep != 0; });
      const bool bEnd = m_nStep == 2;
      if (!bEnd) {
        EXPECT_EQ("CXP", GcInfo(TL_INFO_TLTYPE).Text());
      }
      m_nStep = 0;
      m_Condition.notify_all();
      if (bEnd) {
        return;
      }
    }
  }
  std::mutex m_Mutex;
  std::condition_variable m_Condition;
  int m_nStep = 0;
  std::thread m_Thread;
};

// The end of a thread deletes its record: not with code that is gone.
TEST_F(LoadingTest, ThreadThatCalledMayOutliveTheLibrary) {
  CWorker worker;
  ASSERT_GC_OK(Gc().GCInitLib());
  worker.Call();
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
  CProducer::Instance().Unload();
  worker.End();
  CProducer::Instance().Load();
}

TEST_F(LoadingTest, ThreadMayCallTheReloadedLibrary) {
  CWorker worker;
  for (int i = 0; i < 3; ++i) {
    ASSERT_GC_OK(Gc().GCInitLib());
    worker.Call();
    ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCCloseLib());
    CProducer::Instance().Reload();
  }
  worker.End();
}

// The unload of a library that nobody closed: a thread that called it ends behind it.
TEST_F(LoadingTest, ThreadMayEndBehindAnUnloadWithoutAClose) {
  ASSERT_EQ(GC_ERR_SUCCESS, Gc().GCInitLib());
  std::promise<void> called;
  std::promise<void> unloaded;
  std::thread worker([&] {
    Gc().TLOpen(nullptr);
    called.set_value();
    unloaded.get_future().wait();
  });
  called.get_future().wait();
  CProducer::Instance().Unload();
  unloaded.set_value();
  worker.join();
  EXPECT_FALSE(CProducer::IsMapped());
}

// ---------------------------------------------------------------------------------------------------------------------
// The end of the process
// ---------------------------------------------------------------------------------------------------------------------

using ProcessDeathTest = LoadingTest;

TEST_F(ProcessDeathTest, EndsCleanlyWithAllOpen) {
  // Modules that nobody closes keep each other alive: that this process leaks them is not the point here.
  const CScopedVariable options("ASAN_OPTIONS", std::string("detect_leaks=0"));
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        OpenAll();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ProcessDeathTest, EndsCleanlyWhileInitialised) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        Gc().GCInitLib();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

TL_HANDLE g_hAtExit = nullptr;

/// Runs behind the end of the library's own objects.
void CloseBehindTheEnd() {
  const GC_ERROR results[] = {Gc().TLClose(nullptr), Gc().TLClose(g_hAtExit), Gc().GCCloseLib(), Gc().GCCloseLib()};
  constexpr GC_ERROR kDue[] = {GC_ERR_INVALID_HANDLE, GC_ERR_SUCCESS, GC_ERR_SUCCESS, GC_ERR_NOT_INITIALIZED};
  for (const GC_ERROR result : results) {
    std::fprintf(stderr, "%d ", result);
  }
  std::_Exit(std::equal(std::begin(results), std::end(results), std::begin(kDue)) ? 0 : 1);
}

// A Consumer's global object that was there before the library, and closes it in its destructor. There is no place for
// texts any more, but what has been done is done: GC_ERR_ERROR would be a lie.
TEST_F(ProcessDeathTest, ClosesBehindTheEndOfMain) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        CProducer::Instance().Unload();
        std::atexit(CloseBehindTheEnd);
        CProducer::Instance().Load();
        Gc().GCInitLib();
        Gc().TLOpen(&g_hAtExit);
        std::exit(2);
      },
      testing::ExitedWithCode(0), "-1006 0 0 -1002 ");
}

PORT_HANDLE g_hPortAtExit = nullptr;

void ReadBehindTheEnd() {
  uint32_t nValue = 0;
  size_t iSize = sizeof(nValue);
  const GC_ERROR result = Gc().GCReadPort(g_hPortAtExit, 0, &nValue, &iSize);
  std::fprintf(stderr, "%d", result);
  std::_Exit(result == GC_ERR_TIMEOUT ? 0 : 1);
}

// A failure of the library has its code there too, though there are no words of the library to add any more.
TEST_F(ProcessDeathTest, TimesOutBehindTheEndOfMain) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        CProducer::Instance().Unload();
        std::atexit(ReadBehindTheEnd);
        CProducer::Instance().Load();
        Gc().DevGetPort(OpenAll().device, &g_hPortAtExit);
        Script().On(Match(Op::ControlRead), Reply::Status(GRB_WARNING_TIMEOUT));
        std::exit(2);
      },
      testing::ExitedWithCode(0), "-1011");
}

// A daemon thread that goes on calling while the process ends: what it uses must not go before it does.
TEST_F(ProcessDeathTest, EndsCleanlyWhileAThreadCalls) {
  const CScopedVariable options("ASAN_OPTIONS", std::string("detect_leaks=0"));
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        Gc().GCInitLib();
        TL_HANDLE hSystem = nullptr;
        Gc().TLOpen(&hSystem);
        std::promise<void> calling;
        std::thread([&calling, hSystem] {
          for (uint64_t i = 0;; ++i) {
            INFO_DATATYPE iType = INFO_DATATYPE_UNKNOWN;
            size_t iSize = 0;
            Gc().TLGetInfo(hSystem, TL_INFO_VENDOR, &iType, nullptr, &iSize);
            Gc().TLGetInfo(hSystem, -1, &iType, nullptr, &iSize);
            IF_HANDLE hIface = nullptr;
            Gc().TLOpenInterface(hSystem, "GL-CXP4-#1", &hIface);
            Gc().IFClose(hIface);
            if (i == 100) {
              calling.set_value();
            }
          }
        }).detach();
        calling.get_future().wait();
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
