// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Producer.h"

namespace FrameTests {

using namespace TestSupport;
using namespace Scripted;

constexpr const char *kNotInitialised = "GenTL Producer is not initialized. Call GCInitLib() first.";
constexpr const char *kNoSystem = "No valid TL handle. Create one with TLOpen() first.";
constexpr const char *kInvalidHandle = "Invalid Device Handle";
constexpr const char *kVersion = "1.1.11.0";

/// Scoped name of an exported function, as the texts have it.
inline std::string Exported(const char *name) { return std::string("GenICam::Client::") + name; }

/// One handle of each kind.
struct Tree {
  TL_HANDLE system = nullptr;
  IF_HANDLE iface = nullptr;
  DEV_HANDLE device = nullptr;
  PORT_HANDLE remote = nullptr;
  DS_HANDLE stream = nullptr;
  BUFFER_HANDLE buffer = nullptr;
  EVENT_HANDLE errorEvent = nullptr;
  EVENT_HANDLE newBufferEvent = nullptr;
};

/// The whole tree, opened.
class TreeTest : public ProducerTest {
 protected:
  void SetUp() override {
    ProducerTest::SetUp();
    m_Tree.system = OpenSystem();
    m_Tree.iface = OpenInterface();
    m_Tree.device = OpenDevice();
    m_Tree.remote = OpenRemotePort();
    m_Tree.stream = OpenStream();
    const std::vector<BUFFER_HANDLE> buffers = QueueBuffers(1);
    ASSERT_EQ(1U, buffers.size());
    m_Tree.buffer = buffers[0];
    m_Tree.errorEvent = RegisterEvent(m_Tree.device, EVENT_ERROR);
    m_Tree.newBufferEvent = RegisterEvent(m_Tree.stream, EVENT_NEW_BUFFER);
  }
  Tree m_Tree;
};

/// Which handles a function takes as its first argument.
enum class Takes { Nothing, System, Interface, Device, Stream, Port, EventSource, Event };

/// A function with its first argument open and good ones for the rest.
struct ExportRow {
  const char *name;
  Takes takes;
  GC_ERROR (*call)(const Functions &gc, void *handle);
};
inline std::ostream &operator<<(std::ostream &out, const ExportRow &row) { return out << row.name; }

/// All 52.
const std::vector<ExportRow> &Exports();

/// Those that are called with a handle.
std::vector<ExportRow> ExportsWithHandle();

inline std::string NameOfExport(const testing::TestParamInfo<ExportRow> &row) { return row.param.name; }

}  // namespace FrameTests
