// SPDX-License-Identifier: MIT
#include "ScriptedGrb.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <mutex>
#include <ostream>
#include <utility>

namespace Scripted {

namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kChannels[] = {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4,
                                  GRB_CHANNEL_5, GRB_CHANNEL_6, GRB_CHANNEL_7, GRB_CHANNEL_8};
constexpr size_t kBoardCount = 7;
constexpr size_t kChannelCount = std::size(kChannels);
constexpr size_t kNowhere = static_cast<size_t>(-1);

size_t BoardIndex(uint32_t board) {
  return board >= GRB_BOARD_1 && board <= GRB_BOARD_7 ? board - GRB_BOARD_1 : kNowhere;
}

size_t ChannelIndex(uint32_t channel) {
  const auto *const found = std::find(std::begin(kChannels), std::end(kChannels), channel);
  return found == std::end(kChannels) ? kNowhere : static_cast<size_t>(found - std::begin(kChannels));
}

struct CodeName {
  uint32_t code;
  const char *name;
};

#define ROW(name) \
  { name, #name }
constexpr CodeName kCodeNames[] = {
    ROW(GRB_OPEN_CONFIG_FILE),
    ROW(GRB_OPEN_VARIANT),
    ROW(GRB_OPEN_BOARD),
    ROW(GRB_OPEN_CHANNEL),
    ROW(GRB_OPEN_MODE),
    ROW(GRB_PORT_GRABBER),
    ROW(GRB_PORT_CAMERA),
    ROW(GRB_STREAM_START),
    ROW(GRB_STREAM_STOP),
    ROW(GRB_STREAM_RELEASE),
    ROW(GRB_STREAM_ABORT),
    ROW(GRB_EXPOSE),
    ROW(GRB_ACTION_CONFIG),
    ROW(GRB_CACHE_FLUSH),
    ROW(GRB_CACHE_FLUSH_BUFFERS),
    ROW(GRB_BOARD_PROPERTIES),
    ROW(GRB_ACQ_NUM_BUFFERS),
    ROW(GRB_DST_LIST),
    ROW(GRB_DST_LIST_KIND),
    ROW(GRB_DST_LINE_BYTES),
    ROW(GRB_DST_LINES),
    ROW(GRB_EVENT_CONTEXT),
    ROW(GRB_EVENT_MASK),
    ROW(GRB_EVENT_MASK_NOW),
    ROW(GRB_ACQ_BLOCKING),
    ROW(GRB_BOARD_INFO),
    ROW(GRB_REV_HW_MAJOR),
    ROW(GRB_REV_HW_MINOR),
    ROW(GRB_REV_HW_SUBMINOR),
    ROW(GRB_REV_HW),
    ROW(GRB_CAM_TYPE),
    ROW(GRB_CAM_SRC_DEPTH),
    ROW(GRB_CAM_ACTIVE_XLENGTH),
    ROW(GRB_CAM_ACTIVE_YLENGTH),
    ROW(GRB_ACQ_XSUB),
    ROW(GRB_ACQ_YSUB),
    ROW(GRB_ROI_XLENGTH),
    ROW(GRB_ROI_YLENGTH),
    ROW(GRB_CAM_SRC_COL),
    ROW(GRB_PCIE_INFO),
    ROW(GRB_LUT_SHIFT),
    ROW(GRB_ROI_SRC_XOFFSET),
    ROW(GRB_ROI_SRC_YOFFSET),
    ROW(GRB_REV_SW_MAJOR),
    ROW(GRB_REV_SW_MINOR),
    ROW(GRB_REV_SW_SUBMINOR),
    ROW(GRB_REV_SW),
    ROW(GRB_CAM_FORMAT),
    ROW(GRB_ACQ_FIELD_MODE),
    ROW(GRB_LUT_BYPASS),
    ROW(GRB_ROI_DST_XOFFSET),
    ROW(GRB_ROI_DST_YOFFSET),
    ROW(GRB_DATASTREAM_VALID),
    ROW(GRB_BUS_FORMAT),
    ROW(GRB_USR_FORMAT),
    ROW(GRB_CAMTRIG_SRC),
    ROW(GRB_CAMTRIG_ENCODER_MODE),
    ROW(GRB_CAMTRIG_ENCODER_SRC),
    ROW(GRB_CAMTRIG_MULTIPLIER),
    ROW(GRB_CAMTRIG_DIVIDER),
    ROW(GRB_CAMTRIG_DELAY_MODE_D1CAM),
    ROW(GRB_CAMTRIG_CXPTRIG_SRC),
    ROW(GRB_CAMTRIG_CXPTRIG_MODE),
    ROW(GRB_FGTRIG_SRC),
    ROW(GRB_FGTRIG_MODE),
    ROW(GRB_FGTRIG_DELAY_MODE),
    ROW(GRB_COUNT_BUFFER_READY),
    ROW(GRB_TIMERA1_PERIOD_NS),
    ROW(GRB_TIMERD1FG_VALUE_NS),
    ROW(GRB_TIMERD1CAM_VALUE_NS),
    ROW(GRB_TIMERM1_WIDTH_NS),
    ROW(GRB_TIMERM2_WIDTH_NS),
    ROW(GRB_CAMTRIG_DELAY_MODE_D2CAM),
    ROW(GRB_TIMERD1FG_COUNT),
    ROW(GRB_TIMERD2CAM_VALUE_NS),
    ROW(GRB_TIMERA1_MODE),
    ROW(GRB_TIMERA1_PULSE_COUNT),
    ROW(GRB_COUNT_BUFFER_READY_NOW),
    ROW(GRB_CXP_BITRATE_MODE),
    ROW(GRB_CXP_BITRATE_MODE_NOW),
    ROW(GRB_CXP_BITRATE),
    ROW(GRB_CXP_POCXP_MODE),
    ROW(GRB_CXP_POCXP_MODE_NOW),
    ROW(GRB_CXP_DISCOVERY_MODE),
    ROW(GRB_CXP_DISCOVERY_MODE_NOW),
    ROW(GRB_CXP_DISCOVERY),
    ROW(GRB_CXP_UPLINK_TEST),
    ROW(GRB_CXP_UPLINK_TEST_NOW),
    ROW(GRB_CXP_DOWNLINK_TEST),
    ROW(GRB_CXP_DOWNLINK_TEST_NOW),
    ROW(GRB_CXP_INFO),
    ROW(GRB_FGTRIG_FILTER_NS),
    ROW(GRB_CAMTRIG_FILTER_NS),
    ROW(GRB_CAMTRIG_ENCODER_FILTER_NS),
    ROW(GRB_TIMERA1_SWTRIG_NOW),
};
#undef ROW

constexpr uint32_t kWideIdentifiers[] = {
    GRB_TIMERA1_PERIOD_NS, GRB_TIMERD1FG_VALUE_NS,        GRB_TIMERD1CAM_VALUE_NS, GRB_TIMERM1_WIDTH_NS,
    GRB_TIMERM2_WIDTH_NS,  GRB_TIMERD1FG_COUNT,           GRB_TIMERD2CAM_VALUE_NS, GRB_FGTRIG_FILTER_NS,
    GRB_CAMTRIG_FILTER_NS, GRB_CAMTRIG_ENCODER_FILTER_NS,
};

struct DefaultParameter {
  uint32_t identifier;
  uint64_t value;
};

/// What a fresh channel holds: a 64 x 48 area-scan camera in Mono8, and a plausible value for the rest.
constexpr DefaultParameter kDefaultParameters[] = {
    {GRB_BOARD_INFO, 0x00010001},
    {GRB_REV_HW_MAJOR, 2},
    {GRB_REV_HW_MINOR, 3},
    {GRB_REV_HW_SUBMINOR, 4},
    {GRB_REV_HW, 0x00020304},
    {GRB_REV_SW_MAJOR, 7},
    {GRB_REV_SW_MINOR, 5},
    {GRB_REV_SW_SUBMINOR, 17},
    {GRB_REV_SW, 0x00070511},
    {GRB_CAM_TYPE, GRB_CAM_AREASCAN_ROI},
    {GRB_CAM_SRC_DEPTH, 8},
    {GRB_CAM_SRC_COL, GRB_CAM_SRC_MONO},
    {GRB_CAM_ACTIVE_XLENGTH, 64},
    {GRB_CAM_ACTIVE_YLENGTH, 48},
    {GRB_ACQ_XSUB, GRB_ACQ_X1},
    {GRB_ACQ_YSUB, GRB_ACQ_X1},
    {GRB_ROI_XLENGTH, 64},
    {GRB_ROI_YLENGTH, 48},
    {GRB_BUS_FORMAT, GRB_BUS_FORMAT_MONO8},
    {GRB_USR_FORMAT, GRB_USR_FORMAT_MONO8},
    {GRB_ACQ_BLOCKING, GRB_ACQ_BLOCKING_ON},
    {GRB_CAM_FORMAT, GRB_CAM_NON_INTERLACED},
    {GRB_ACQ_FIELD_MODE, GRB_ACQ_FIELD_12},
    {GRB_DATASTREAM_VALID, GRB_DATASTREAM_ALWAYS},
    {GRB_CAMTRIG_SRC, GRB_CAMTRIG_SRC_NONE},
    {GRB_CAMTRIG_ENCODER_MODE, GRB_CAMTRIG_ENCODER_MODE1},
    {GRB_CAMTRIG_ENCODER_SRC, GRB_CAMTRIG_SRC_422IN_CHX_0},
    {GRB_CAMTRIG_MULTIPLIER, 1},
    {GRB_CAMTRIG_DIVIDER, 1},
    {GRB_CAMTRIG_DELAY_MODE_D1CAM, GRB_CAMTRIG_DELAY_NONE},
    {GRB_CAMTRIG_DELAY_MODE_D2CAM, GRB_CAMTRIG_DELAY_NONE},
    {GRB_CAMTRIG_CXPTRIG_SRC, GRB_CAMTRIG_CXPTRIG_NONE},
    {GRB_CAMTRIG_CXPTRIG_MODE, GRB_CAMTRIG_CXPTRIG_RISEFALL},
    {GRB_FGTRIG_SRC, GRB_FGTRIG_SRC_TIMERA1_CHX},
    {GRB_FGTRIG_MODE, GRB_FGTRIG_FREERUN},
    {GRB_FGTRIG_DELAY_MODE, GRB_FGTRIG_DELAY_NONE},
    {GRB_TIMERA1_PERIOD_NS, 10000000},
    {GRB_TIMERA1_MODE, GRB_TIMERA1_MODE_RUN},
    {GRB_TIMERA1_PULSE_COUNT, 1},
    {GRB_CXP_BITRATE_MODE, GRB_CXP_BITRATE_MODE_AUTO},
    {GRB_CXP_BITRATE, GRB_CXP_BITRATE_UNKNOWN},
    {GRB_CXP_POCXP_MODE, GRB_CXP_POCXP_AUTO},
    {GRB_CXP_DISCOVERY_MODE, GRB_CXP_DISCOVERY_AUTO},
    {GRB_CXP_DISCOVERY, GRB_CXP_DISCOVERY_UNKNOWN},
};

constexpr const char *kDefaultXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<RegisterDescription ModelName=\"Testcam\" VendorName=\"Lumivex_Optics\" StandardNameSpace=\"None\"\n"
    "  SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\"\n"
    "  MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\"\n"
    "  ProductGuid=\"0b5f2c44-1d7e-4f5a-9a53-6a1f6c1d2e01\" VersionGuid=\"0b5f2c44-1d7e-4f5a-9a53-6a1f6c1d2e02\"\n"
    "  xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n"
    "  <Category Name=\"Root\"><pFeature>Width</pFeature></Category>\n"
    "  <IntReg Name=\"Width\"><Address>0x8000</Address><Length>4</Length><AccessMode>RW</AccessMode>\n"
    "    <pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>\n"
    "  <Port Name=\"Device\"/>\n"
    "</RegisterDescription>\n";

std::string Hex(uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof(text), "0x%llx", static_cast<unsigned long long>(value));
  return text;
}

/// Identifiers whose value is the pointer itself.
bool IsPointer(uint32_t identifier) { return identifier == GRB_DST_LIST || identifier == GRB_EVENT_CONTEXT; }

/// Identifiers that take a null value.
bool IsCommand(uint32_t identifier) { return identifier == GRB_CACHE_FLUSH || identifier == GRB_CACHE_FLUSH_BUFFERS; }

/// An identifier and its immediate form share one value.
uint32_t StoredUnder(uint32_t identifier) { return identifier & ~1U; }

uint64_t FromPointer(const void *pointer) { return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer)); }

uint64_t LoadValue(uint32_t identifier, const void *value) {
  if (CScriptedGrb::Is64Bit(identifier)) {
    uint64_t wide = 0;
    std::memcpy(&wide, value, sizeof(wide));
    return wide;
  }
  uint32_t narrow = 0;
  std::memcpy(&narrow, value, sizeof(narrow));
  return narrow;
}

void StoreValue(uint32_t identifier, uint64_t value, void *out) {
  if (CScriptedGrb::Is64Bit(identifier)) {
    std::memcpy(out, &value, sizeof(value));
    return;
  }
  const auto narrow = static_cast<uint32_t>(value);
  std::memcpy(out, &narrow, sizeof(narrow));
}

/// Values by identifier, without locks and without requests to the heap: benchmarks read and write through it.
class CParameterTable {
 public:
  void Set(uint32_t key, uint64_t value) {
    if (Cell *const cell = Find(key, true)) {
      cell->value.store(value, std::memory_order_release);
    }
  }

  uint64_t Get(uint32_t key) const {
    const Cell *const cell = const_cast<CParameterTable *>(this)->Find(key, false);
    return cell == nullptr ? 0 : cell->value.load(std::memory_order_acquire);
  }

  void Clear() {
    for (Cell &cell : m_Cells) {
      cell.key.store(0, std::memory_order_relaxed);
      cell.value.store(0, std::memory_order_relaxed);
    }
  }

 private:
  static constexpr size_t kCells = 512;
  struct Cell {
    std::atomic<uint32_t> key{0};
    std::atomic<uint64_t> value{0};
  };

  Cell *Find(uint32_t key, bool insert) {
    const size_t first = ((key >> 8U) * 31U + key) % kCells;
    for (size_t step = 0; step < kCells; ++step) {
      Cell &cell = m_Cells[(first + step) % kCells];
      uint32_t found = cell.key.load(std::memory_order_acquire);
      if (found == 0 && insert && cell.key.compare_exchange_strong(found, key)) {
        return &cell;
      }
      if (found == key) {
        return &cell;
      }
      if (found == 0) {
        return nullptr;
      }
    }
    return nullptr;
  }

  std::array<Cell, kCells> m_Cells;
};

/// For a callback that a test holds up.
constexpr std::chrono::seconds kFinalCallbackBound(10);

/// A thread of the library: does what is posted, in turn.
class CWorker {
 public:
  CWorker() : m_Thread([this] { Run(); }) {}

  ~CWorker() {
    {
      const std::lock_guard<std::mutex> lock(m_Mutex);
      m_bStop = true;
    }
    m_Changed.notify_all();
    m_Thread.join();
  }

  CWorker(const CWorker &) = delete;
  CWorker &operator=(const CWorker &) = delete;

  std::future<void> Post(std::function<void()> action) {
    std::packaged_task<void()> task(std::move(action));
    std::future<void> done = task.get_future();
    {
      const std::lock_guard<std::mutex> lock(m_Mutex);
      m_Tasks.push_back(std::move(task));
    }
    m_Changed.notify_all();
    return done;
  }

  bool WaitIdle(std::chrono::milliseconds bound) {
    std::unique_lock<std::mutex> lock(m_Mutex);
    return m_Changed.wait_for(lock, bound, [this] { return m_Tasks.empty() && !m_bBusy; });
  }

  bool IsThisThread() const { return m_Thread.get_id() == std::this_thread::get_id(); }

 private:
  void Run() {
    std::unique_lock<std::mutex> lock(m_Mutex);
    for (;;) {
      m_Changed.wait(lock, [this] { return m_bStop || !m_Tasks.empty(); });
      if (m_Tasks.empty()) {
        return;
      }
      std::packaged_task<void()> task = std::move(m_Tasks.front());
      m_Tasks.pop_front();
      m_bBusy = true;
      lock.unlock();
      task();
      task = {};
      lock.lock();
      m_bBusy = false;
      m_Changed.notify_all();
    }
  }

  std::mutex m_Mutex;
  std::condition_variable m_Changed;
  std::deque<std::packaged_task<void()>> m_Tasks;
  bool m_bStop = false;
  bool m_bBusy = false;
  std::thread m_Thread;  // last: it uses all of the above
};

/// One channel of a board.
struct ChannelState {
  CParameterTable parameters;
  std::atomic<bool> enumerable{true};
  std::atomic<bool> heldElsewhere{false};
  std::atomic<GRB_HANDLE> holder{0};
  std::mutex memory;  // guards the two below
  std::optional<CCamera> camera;
  std::map<uint32_t, uint32_t> grabberRegisters;
};

struct BoardState {
  std::atomic<bool> present{false};
  std::atomic<const char *> properties{nullptr};
  std::array<ChannelState, kChannelCount> channels;
};

/// The start of a stream, as it was found. Guarded by the script's mutex.
struct Started {
  const void *listPointer = nullptr;
  std::vector<Destination> destinations;
  bool terminated = false;
  uint32_t numBuffers = 0;
  uint32_t listKind = 0;
  uint32_t lineBytes = 0;
  uint32_t lines = 0;
  uint32_t eventMask = 0;
};

/// A handle's place. Handle n stands at n modulo kSlots; its stream can be looked at until the place is taken again.
struct HandleState {
  std::atomic<GRB_HANDLE> handle{0};  // 0: destroyed
  std::atomic<GRB_HANDLE> number{0};  // the handle that stands or stood here
  std::atomic<GRB_ERROR_HOOK> hook{nullptr};
  std::atomic<uint32_t> board{0};
  std::atomic<uint32_t> channel{0};
  std::atomic<uint32_t> mode{0};
  std::atomic<bool> open{false};
  std::atomic<bool> running{false};
  std::atomic<GRB_EVENT_CALLBACK> callback{nullptr};
  std::atomic<void *> context{nullptr};
  std::atomic<uint64_t> starts{0};
  std::atomic<uint64_t> stops{0};
  std::atomic<uint64_t> releases{0};
  std::atomic<uint64_t> aborts{0};
  std::atomic<uint64_t> exposes{0};
  std::atomic<uint64_t> callbacks{0};
  std::recursive_mutex callbackMutex;  // held through a callback: those of one stream never overlap
  Started started;
  std::shared_ptr<CWorker> worker;  // guarded by the script's mutex

  void Clear() {
    board = 0;
    channel = 0;
    mode = 0;
    open = false;
    ClearStream();
  }

  void ClearStream() {
    running = false;
    callback = nullptr;
    context = nullptr;
    starts = 0;
    stops = 0;
    releases = 0;
    aborts = 0;
    exposes = 0;
    callbacks = 0;
  }
};

/// What an operation's own work came to; a description makes a call of the hook.
struct Effect {
  GRB_STATUS status = GRB_OK;
  const char *description = nullptr;
};

/// The caller's places that a reply can fill.
struct Places {
  uint8_t *buffer = nullptr;
  uint32_t *size = nullptr;
  void *value = nullptr;
  GRB_HANDLE *handle = nullptr;
  GRB_ERROR_HOOK hook = nullptr;
};

constexpr const char *kFunctionNames[] = {
    "GRB_Create", "GRB_Destroy",    "GRB_Open",        "GRB_Close",        "GRB_ParameterSet",     "GRB_ParameterGet",
    "GRB_Action", "GRB_StreamRead", "GRB_ControlRead", "GRB_ControlWrite", "GRB_ErrHandlerDefault"};

}  // namespace

// Names ---------------------------------------------------------------------------------------------------------------

const char *NameOf(Op op) { return kFunctionNames[static_cast<size_t>(op)] + std::strlen("GRB_"); }

std::string NameOfCode(uint32_t code) {
  for (const CodeName &row : kCodeNames) {
    if (row.code == code) {
      return row.name;
    }
  }
  return Hex(code);
}

std::string ToString(const Call &call) {
  const std::string handle = "h" + std::to_string(call.handle);
  std::string text = std::string(NameOf(call.op)) + "(";
  const auto quoted = [](const std::string &word) { return "\"" + word + "\""; };
  switch (call.op) {
    case Op::Create:
      text += ")";
      if (call.status == GRB_OK) {
        text += " -> " + handle;
      }
      break;
    case Op::Destroy:
    case Op::Open:
    case Op::Close:
      text += handle + ")";
      break;
    case Op::ParameterSet:
      text += handle + ", " + NameOfCode(call.code) + ", ";
      if (call.argument == nullptr) {
        text += "null)";
      } else if (IsPointer(call.code)) {
        text += "ptr)";
      } else if (call.code == GRB_OPEN_CONFIG_FILE) {
        text += quoted(call.text) + ")";
      } else {
        text += Hex(call.value.value_or(0)) + ")";
      }
      break;
    case Op::ParameterGet:
    case Op::StreamRead:
      text += handle + ", " + NameOfCode(call.code) + ")";
      break;
    case Op::Action:
      text += handle + ", " + Hex(call.code) + ", " + Hex(call.subCode) + ", " + quoted(call.text) + ")";
      break;
    case Op::ControlRead:
    case Op::ControlWrite:
      text += handle + ", " + NameOfCode(call.code) + ", " + Hex(call.address) + ", " + std::to_string(call.size) +
              ", " + std::to_string(call.timeout);
      if (call.op == Op::ControlWrite) {
        text += ", ";
        for (const uint8_t byte : call.bytes) {
          char digits[4];
          std::snprintf(digits, sizeof(digits), "%02x", static_cast<unsigned>(byte));
          text += digits;
        }
      }
      text += ")";
      break;
    case Op::ErrHandlerDefault:
      text += quoted(call.text.substr(0, call.text.find('\n'))) + ", " + Hex(call.code) + ", " +
              quoted(call.text.substr(call.text.find('\n') + 1)) + ")";
      break;
  }
  if (call.status != GRB_OK) {
    text += " = " + Hex(call.status);
  }
  return text;
}

std::ostream &operator<<(std::ostream &out, const Call &call) { return out << ToString(call); }

std::vector<uint8_t> BigEndian(uint32_t value) {
  return {static_cast<uint8_t>(value >> 24U), static_cast<uint8_t>(value >> 16U), static_cast<uint8_t>(value >> 8U),
          static_cast<uint8_t>(value)};
}

uint32_t FromBigEndian(const uint8_t *bytes) {
  return (static_cast<uint32_t>(bytes[0]) << 24U) | (static_cast<uint32_t>(bytes[1]) << 16U) |
         (static_cast<uint32_t>(bytes[2]) << 8U) | static_cast<uint32_t>(bytes[3]);
}

// Match ---------------------------------------------------------------------------------------------------------------

Match &Match::Code(uint32_t code) {
  m_Code = code;
  return *this;
}

Match &Match::Address(uint32_t address) {
  m_Address = address;
  return *this;
}

Match &Match::Mode(uint32_t mode) {
  m_Mode = mode;
  return *this;
}

Match &Match::Board(uint32_t board) {
  m_Board = board;
  return *this;
}

Match &Match::Channel(uint32_t channel) {
  m_Channel = channel;
  return *this;
}

Match &Match::Handle(GRB_HANDLE handle) {
  m_Handle = handle;
  return *this;
}

Match &Match::Thread(std::thread::id thread) {
  m_Thread = thread;
  return *this;
}

bool Match::Fits(const Call &call) const {
  const bool transfer = call.op == Op::ControlRead || call.op == Op::ControlWrite;
  const auto agrees = [](const auto &wanted, const auto &found) { return !wanted || *wanted == found; };
  return agrees(m_Op, call.op) && agrees(m_Code, call.code) && agrees(m_Mode, call.mode) &&
         agrees(m_Board, call.board) && agrees(m_Channel, call.channel) && agrees(m_Handle, call.handle) &&
         agrees(m_Thread, call.thread) && (!m_Address || (transfer && *m_Address == call.address));
}

// Reply ---------------------------------------------------------------------------------------------------------------

Reply Reply::Failure(GRB_STATUS status, std::string description) {
  Reply reply;
  reply.m_nStatus = status;
  reply.m_bOwnStatus = true;
  reply.m_bHook = true;
  reply.m_strDescription = std::move(description);
  reply.m_nMoved = 0;
  return reply;
}

Reply Reply::Status(GRB_STATUS status) {
  Reply reply;
  reply.m_nStatus = status;
  reply.m_bOwnStatus = true;
  return reply;
}

Reply Reply::Answer(std::vector<uint8_t> bytes) {
  Reply reply = Status(GRB_OK);
  reply.m_Bytes = std::move(bytes);
  return reply;
}

Reply Reply::Value(uint64_t value) {
  Reply reply = Status(GRB_OK);
  reply.m_nValue = value;
  return reply;
}

Reply Reply::Pass() {
  Reply reply;
  reply.m_bEffect = true;
  return reply;
}

Reply &Reply::NoHook() {
  m_bHook = false;
  return *this;
}

Reply &Reply::Function(std::string name) {
  m_strFunction = std::move(name);
  m_bNullFunction = false;
  return *this;
}

Reply &Reply::NullFunction() {
  m_bNullFunction = true;
  return *this;
}

Reply &Reply::NullDescription() {
  m_strDescription.reset();
  return *this;
}

Reply &Reply::WithStatus(GRB_STATUS status) {
  m_nStatus = status;
  m_bOwnStatus = true;
  return *this;
}

Reply &Reply::Moved(uint32_t count) {
  m_nMoved = count;
  return *this;
}

Reply &Reply::Bytes(std::vector<uint8_t> bytes) {
  m_Bytes = std::move(bytes);
  return *this;
}

Reply &Reply::KeepEffect() {
  m_bEffect = true;
  return *this;
}

Reply &Reply::HandleOut(GRB_HANDLE handle) {
  m_nHandleOut = handle;
  return *this;
}

Reply &Reply::Do(std::function<void(const Call &)> action) {
  m_Action = std::move(action);
  return *this;
}

// CCamera -------------------------------------------------------------------------------------------------------------

CCamera::CCamera(bool complete) {
  if (!complete) {
    return;
  }
  Revision(0x10000).Vendor("Lumivex Optics").Model("Testcam 1").Xml(kDefaultXml);
  Width(64).Height(48).PixelFormat(0x01080001);
  U32(0x3000, kWidthAddress).U32(0x3004, kHeightAddress).U32(0x3014, kPixelFormatAddress);
}

CCamera::CCamera() : CCamera(true) {}

CCamera CCamera::Empty() { return CCamera(false); }

CCamera &CCamera::Revision(uint32_t revision) { return U32(0x0004, revision); }

CCamera &CCamera::Vendor(std::string_view text) { return Text(0x2000, text, 32); }

CCamera &CCamera::Model(std::string_view text) { return Text(0x2020, text, 32); }

CCamera &CCamera::Width(uint32_t width) { return U32(kWidthAddress, width); }

CCamera &CCamera::Height(uint32_t height) { return U32(kHeightAddress, height); }

CCamera &CCamera::PixelFormat(uint32_t value) { return U32(kPixelFormatAddress, value); }

CCamera &CCamera::ManifestSize(uint32_t entries) { return U32(0x0008, entries); }

CCamera &CCamera::Url(uint32_t index, std::string_view url, uint32_t version, uint32_t schema) {
  const uint32_t address = kUrlAddress + 0x1000U * index;
  Text(address, url, url.size() + 1);
  m_Manifest[index] = Entry{version, schema, address};
  if (ReadU32(0x0008) < index + 1) {
    ManifestSize(index + 1);
  }
  Select(ReadU32(0x000C));
  return *this;
}

CCamera &CCamera::Xml(std::string_view text, uint32_t address, std::string_view name) {
  m_strXml = text;
  Text(address, text, text.size());
  char place[48];
  std::snprintf(place, sizeof(place), ";%x;%zx", static_cast<unsigned>(address), text.size());
  return Url(0, "Local:" + std::string(name) + place);
}

CCamera &CCamera::U32(uint32_t address, uint32_t value) { return Bytes(address, BigEndian(value)); }

CCamera &CCamera::Text(uint32_t address, std::string_view text, size_t size) {
  std::vector<uint8_t> bytes(text.begin(), text.end());
  bytes.resize(size);
  return Bytes(address, bytes);
}

CCamera &CCamera::Bytes(uint32_t address, const std::vector<uint8_t> &bytes) {
  for (size_t i = 0; i < bytes.size(); ++i) {
    const auto at = static_cast<uint32_t>(address + i);
    m_Pages[at / kPage][at % kPage] = bytes[i];
  }
  return *this;
}

uint32_t CCamera::ReadU32(uint32_t address) const {
  uint8_t bytes[4];
  WireRead(address, bytes, sizeof(bytes));
  return FromBigEndian(bytes);
}

std::vector<uint8_t> CCamera::ReadBytes(uint32_t address, size_t size) const {
  std::vector<uint8_t> bytes(size);
  WireRead(address, bytes.data(), size);
  return bytes;
}

void CCamera::WireRead(uint32_t address, uint8_t *buffer, size_t size) const {
  size_t done = 0;
  while (done < size) {
    const auto at = static_cast<uint32_t>(address + done);
    const size_t part = std::min(size - done, kPage - at % kPage);
    const auto page = m_Pages.find(at / kPage);
    if (page == m_Pages.end()) {
      std::memset(buffer + done, 0, part);
    } else {
      std::memcpy(buffer + done, page->second.data() + at % kPage, part);
    }
    done += part;
  }
}

void CCamera::WireWrite(uint32_t address, const uint8_t *buffer, size_t size) {
  for (size_t i = 0; i < size; ++i) {
    const auto at = static_cast<uint32_t>(address + i);
    m_Pages[at / kPage][at % kPage] = buffer[i];
  }
  if (address <= 0x000C && address + size > 0x000C) {
    Select(ReadU32(0x000C));
  }
}

void CCamera::Select(uint32_t index) {
  const auto entry = m_Manifest.find(index);
  if (entry != m_Manifest.end()) {
    U32(0x0010, entry->second.version).U32(0x0014, entry->second.schema).U32(0x0018, entry->second.address);
  }
}

// The script ----------------------------------------------------------------------------------------------------------

struct CScriptedGrbImpl {
  static constexpr size_t kSlots = 1024;

  static CScriptedGrbImpl &Instance() { return *Script().m_pImpl; }

  struct Rule {
    RuleId id = 0;
    Match match;
    Reply reply;
    When when;
    uint32_t seen = 0;
    uint32_t hits = 0;
  };

  mutable std::mutex mutex;
  mutable std::condition_variable changed;
  // Guarded by the mutex.
  std::vector<Call> calls;
  uint64_t era = 0;  // counts the emptyings of the record: a call that began before one must not be completed after it
  std::vector<Rule> rules;
  RuleId lastRule = 0;
  std::deque<std::string> texts;  // property texts stay where they are, for whoever holds a pointer to one
  std::vector<std::shared_ptr<CWorker>> retired;
  GRB_HANDLE lastHandle = 0;
  // Not guarded: atomics, or guarded by themselves.
  std::atomic<bool> quiet{false};
  std::atomic<size_t> ruleCount{0};
  std::atomic<GRB_HANDLE> latestStream{0};
  std::atomic<FinalCallback> finalCallback{FinalCallback::OwnThread};
  std::atomic<uint32_t> finalEvents{0};
  std::array<BoardState, kBoardCount> boards;
  std::array<HandleState, kSlots> slots;

  // Places ------------------------------------------------------------------------------------------------------------

  HandleState *Find(GRB_HANDLE handle) {
    HandleState &slot = slots[handle % kSlots];
    return handle != 0 && slot.handle.load() == handle ? &slot : nullptr;
  }

  HandleState *FindStream(GRB_HANDLE handle) {
    const GRB_HANDLE wanted = handle == 0 ? latestStream.load() : handle;
    HandleState &slot = slots[wanted % kSlots];
    return wanted != 0 && slot.number.load() == wanted ? &slot : nullptr;
  }

  ChannelState *Channel(uint32_t board, uint32_t channel) {
    const size_t boardIndex = BoardIndex(board);
    const size_t channelIndex = ChannelIndex(channel);
    return boardIndex == kNowhere || channelIndex == kNowhere ? nullptr : &boards[boardIndex].channels[channelIndex];
  }

  ChannelState *Channel(const HandleState &state) { return Channel(state.board.load(), state.channel.load()); }

  // The frame of an operation -----------------------------------------------------------------------------------------

  std::optional<Reply> TakeRule(const Call &call) {
    for (auto rule = rules.rbegin(); rule != rules.rend(); ++rule) {
      if (!rule->match.Fits(call)) {
        continue;
      }
      ++rule->seen;
      if (rule->seen > rule->when.skip && rule->hits < rule->when.count) {
        ++rule->hits;
        return rule->reply;
      }
    }
    return std::nullopt;
  }

  template <class Own>
  GRB_STATUS Run(Call &call, const Places &places, Own &&own) {
    HandleState *const state = Find(call.handle);
    GRB_ERROR_HOOK hook = places.hook;
    if (state != nullptr) {
      hook = state->hook.load();
      call.board = state->board.load();
      call.channel = state->channel.load();
      call.mode = state->mode.load();
    }
    const bool recorded = !quiet.load(std::memory_order_relaxed);
    if (!recorded && ruleCount.load(std::memory_order_relaxed) == 0) {
      return Finish(call, hook, own(call, state));
    }

    call.thread = std::this_thread::get_id();
    std::optional<Reply> reply;
    size_t index = 0;
    uint64_t begun = 0;
    {
      const std::lock_guard<std::mutex> lock(mutex);
      reply = TakeRule(call);
      begun = era;
      index = calls.size();
      if (recorded) {
        calls.push_back(call);
      }
    }

    Effect effect;
    if (!reply || reply->m_bEffect) {
      effect = own(call, state);
    }
    if (reply) {
      Apply(*reply, call, places);
      if (reply->m_bOwnStatus) {
        effect.status = reply->m_nStatus;
        effect.description = nullptr;
      }
    }
    if (reply && reply->m_bHook && hook != nullptr) {
      const std::string function = reply->m_strFunction.value_or(kFunctionNames[static_cast<size_t>(call.op)]);
      hook(reply->m_bNullFunction ? nullptr : function.c_str(), effect.status,
           reply->m_strDescription ? reply->m_strDescription->c_str() : nullptr);
    }
    call.status = effect.status;
    if (reply && reply->m_Action) {
      reply->m_Action(call);
    }
    Finish(call, hook, effect);
    if (recorded) {
      {
        const std::lock_guard<std::mutex> lock(mutex);
        if (era == begun) {
          calls[index] = call;
        }
      }
      changed.notify_all();
    }
    return call.status;
  }

  static GRB_STATUS Finish(Call &call, GRB_ERROR_HOOK hook, const Effect &effect) {
    call.status = effect.status;
    if (effect.description != nullptr && hook != nullptr) {
      hook(kFunctionNames[static_cast<size_t>(call.op)], effect.status, effect.description);
    }
    return effect.status;
  }

  static void Apply(const Reply &reply, Call &call, const Places &places) {
    if (reply.m_Bytes && places.buffer != nullptr && call.op == Op::ControlRead) {
      const size_t count = std::min<size_t>(reply.m_Bytes->size(), call.size);
      std::copy_n(reply.m_Bytes->begin(), count, places.buffer);
      call.bytes.assign(places.buffer, places.buffer + count);
      call.moved = static_cast<uint32_t>(count);
      if (places.size != nullptr) {
        *places.size = call.moved;
      }
    }
    if (reply.m_nMoved && places.size != nullptr && !(reply.m_Bytes && *reply.m_nMoved == 0)) {
      call.moved = *reply.m_nMoved;
      *places.size = call.moved;
    }
    if (!reply.m_Bytes && !reply.m_nMoved && !reply.m_bEffect) {
      call.moved = call.size;
    }
    if (reply.m_nValue && places.value != nullptr && call.op == Op::ParameterGet) {
      call.value = *reply.m_nValue;
      if (call.code == GRB_BOARD_PROPERTIES) {
        std::memcpy(places.value, &*reply.m_nValue, sizeof(void *));
      } else {
        StoreValue(call.code, *reply.m_nValue, places.value);
      }
    }
    if (reply.m_nHandleOut && places.handle != nullptr && call.op == Op::Create) {
      *places.handle = *reply.m_nHandleOut;
    }
  }

  bool Recording() const {
    return !quiet.load(std::memory_order_relaxed) || ruleCount.load(std::memory_order_relaxed) != 0;
  }

  // The operations' own work ------------------------------------------------------------------------------------------

  Effect Create(Call &call, GRB_HANDLE *handle, GRB_ERROR_HOOK hook) {
    if (handle == nullptr) {
      return {kStatusBadArgument, "Null pointer for the handle."};
    }
    const std::lock_guard<std::mutex> lock(mutex);
    for (size_t tries = 0; tries < kSlots; ++tries) {
      const GRB_HANDLE number = ++lastHandle;
      HandleState &slot = slots[number % kSlots];
      if (slot.handle.load() != 0) {
        continue;
      }
      Retire(slot);
      slot.Clear();
      slot.hook = hook;
      slot.number = number;
      slot.handle = number;
      call.handle = number;
      *handle = number;
      return {};
    }
    return {kStatusBadState, "Too many handles."};
  }

  /// Takes the slot's thread out of service; the script's mutex is held. The thread itself ends with Reset().
  void Retire(HandleState &slot) {
    if (slot.worker) {
      retired.push_back(std::move(slot.worker));
      slot.worker.reset();
    }
  }

  void CloseHandle(HandleState &state) {
    if (!state.open.exchange(false)) {
      return;
    }
    state.running = false;
    state.callback = nullptr;  // callbacks still posted find nothing to call
    if (ChannelState *const channel = Channel(state)) {
      GRB_HANDLE holder = state.handle.load();
      channel->holder.compare_exchange_strong(holder, 0);
    }
    std::shared_ptr<CWorker> worker;
    {
      const std::lock_guard<std::mutex> lock(mutex);
      worker = state.worker;
    }
    if (worker && !worker->IsThisThread()) {
      worker->WaitIdle(std::chrono::seconds(5));
    }
  }

  Effect Destroy(HandleState *state) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    CloseHandle(*state);
    state->handle = 0;
    return {};
  }

  Effect Open(HandleState *state) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (state->open.load()) {
      return {kStatusBadState, "The handle is open."};
    }
    const size_t board = BoardIndex(state->board.load());
    ChannelState *const channel = Channel(*state);
    if (channel == nullptr || !boards[board].present.load()) {
      return {kStatusNoBoard, "No such board or channel."};
    }
    const uint32_t mode = state->mode.load();
    if (mode == GRB_MODE_ENUMERATE) {
      if (!channel->enumerable.load()) {
        return {kStatusNoBoard, "No such board or channel."};
      }
    } else if (mode == GRB_MODE_ACQ_ONLY) {
      GRB_HANDLE nobody = 0;
      if (channel->heldElsewhere.load() || !channel->holder.compare_exchange_strong(nobody, state->handle.load())) {
        return {kStatusInUse, "The channel is in use."};
      }
    } else if (mode != GRB_MODE_CONTROL) {
      return {kStatusBadArgument, "Unknown mode."};
    }
    state->ClearStream();
    state->open = true;
    return {};
  }

  Effect Close(HandleState *state) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    CloseHandle(*state);
    return {};
  }

  Effect ParameterSet(Call &call, HandleState *state, void *value) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (value == nullptr && !IsCommand(call.code) && !IsPointer(call.code)) {
      return {kStatusBadArgument, "Null pointer for the value."};
    }
    switch (call.code) {
      case GRB_OPEN_BOARD:
        state->board = static_cast<uint32_t>(*call.value);
        return {};
      case GRB_OPEN_CHANNEL:
        state->channel = static_cast<uint32_t>(*call.value);
        return {};
      case GRB_OPEN_MODE:
        state->mode = static_cast<uint32_t>(*call.value);
        return {};
      case GRB_OPEN_VARIANT:
      case GRB_OPEN_CONFIG_FILE:
        return {};
      default:
        break;
    }
    if (!state->open.load()) {
      return {kStatusNotOpen, "The handle is not open."};
    }
    if (IsCommand(call.code)) {
      return {};
    }
    if (ChannelState *const channel = Channel(*state)) {
      channel->parameters.Set(StoredUnder(call.code), *call.value);
    }
    if (call.code == GRB_EVENT_MASK_NOW && state->callback.load() != nullptr) {
      RaiseFinalCallback(*state);
    }
    return {};
  }

  Effect ParameterGet(Call &call, HandleState *state, void *value) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (value == nullptr) {
      return {kStatusBadArgument, "Null pointer for the value."};
    }
    if (!state->open.load()) {
      return {kStatusNotOpen, "The handle is not open."};
    }
    if (call.code == GRB_BOARD_PROPERTIES) {
      const char *const text = boards[BoardIndex(state->board.load())].properties.load();
      std::memcpy(value, &text, sizeof(text));
      call.value = FromPointer(text);
      return {};
    }
    call.value = Channel(*state)->parameters.Get(StoredUnder(call.code));
    if (IsPointer(call.code)) {
      std::memcpy(value, &*call.value, sizeof(void *));
    } else {
      StoreValue(call.code, *call.value, value);
    }
    return {};
  }

  Effect Action(HandleState *state, const void *argument) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (!state->open.load()) {
      return {kStatusNotOpen, "The handle is not open."};
    }
    if (argument == nullptr) {
      return {kStatusBadArgument, "Null pointer for the path."};
    }
    return {};
  }

  Effect StreamRead(Call &call, HandleState *state, void *argument) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (!state->open.load()) {
      return {kStatusNotOpen, "The handle is not open."};
    }
    if (state->mode.load() != GRB_MODE_ACQ_ONLY) {
      return {kStatusBadState, "The handle is not open for acquisition."};
    }
    switch (call.code) {
      case GRB_STREAM_START:
        return Start(*state, argument);
      case GRB_STREAM_STOP:
        state->running = false;
        ++state->stops;
        return {};
      case GRB_STREAM_RELEASE:
        ++state->releases;
        return {};
      case GRB_STREAM_ABORT:
        state->running = false;
        ++state->aborts;
        return {};
      case GRB_EXPOSE:
        ++state->exposes;
        return {};
      default:
        return {kStatusBadArgument, "Unknown stream operation."};
    }
  }

  Effect Start(HandleState &state, void *argument) {
    if (argument == nullptr) {
      return {kStatusBadArgument, "Null pointer for the callback."};
    }
    if (state.running.load()) {
      return {kStatusBadState, "The stream is running."};
    }
    const CParameterTable &parameters = Channel(state)->parameters;
    const auto word = [&parameters](uint32_t identifier) { return static_cast<uint32_t>(parameters.Get(identifier)); };
    const auto *const list = reinterpret_cast<const uint64_t *>(static_cast<uintptr_t>(parameters.Get(GRB_DST_LIST)));
    const uint32_t count = word(GRB_ACQ_NUM_BUFFERS);
    if (list == nullptr || count == 0) {
      return {kStatusBadState, "There is no destination list."};
    }
    {
      const std::lock_guard<std::mutex> lock(mutex);
      Started &started = state.started;
      started.listPointer = list;
      started.destinations.resize(count);
      for (size_t i = 0; i < count; ++i) {
        started.destinations[i].address = reinterpret_cast<void *>(static_cast<uintptr_t>(list[2 * i]));
        started.destinations[i].second = reinterpret_cast<void *>(static_cast<uintptr_t>(list[2 * i + 1]));
      }
      started.terminated = list[2 * size_t{count}] == 0 && list[2 * size_t{count} + 1] == 0;
      started.numBuffers = count;
      started.listKind = word(GRB_DST_LIST_KIND);
      started.lineBytes = word(GRB_DST_LINE_BYTES);
      started.lines = word(GRB_DST_LINES);
      started.eventMask = word(GRB_EVENT_MASK);
    }
    state.context = reinterpret_cast<void *>(static_cast<uintptr_t>(parameters.Get(GRB_EVENT_CONTEXT)));
    state.callback = reinterpret_cast<GRB_EVENT_CALLBACK>(argument);
    ++state.starts;
    state.running = true;
    latestStream = state.handle.load();
    return {};
  }

  Effect Transfer(Call &call, HandleState *state, uint8_t *buffer, uint32_t *size) {
    if (state == nullptr) {
      return {kStatusUnknownHandle, nullptr};
    }
    if (call.config == nullptr || buffer == nullptr || size == nullptr) {
      return {kStatusBadArgument, "Null pointer in a transfer."};
    }
    if (!state->open.load()) {
      *size = 0;
      return {kStatusNotOpen, "The handle is not open."};
    }
    ChannelState &channel = *Channel(*state);
    const bool reads = call.op == Op::ControlRead;
    const std::lock_guard<std::mutex> lock(channel.memory);
    if (call.code == GRB_PORT_GRABBER) {
      if (*size != sizeof(uint32_t)) {
        *size = 0;
        return {kStatusBadArgument, "A grabber register has four bytes."};
      }
      if (reads) {
        const auto found = channel.grabberRegisters.find(call.address);
        const uint32_t value = found == channel.grabberRegisters.end() ? 0 : found->second;
        std::memcpy(buffer, &value, sizeof(value));
      } else {
        std::memcpy(&channel.grabberRegisters[call.address], buffer, sizeof(uint32_t));
      }
    } else if (call.code == GRB_PORT_CAMERA) {
      if (!channel.camera) {
        *size = 0;
        return {GRB_WARNING_TIMEOUT, "No answer from the camera."};
      }
      if (reads) {
        channel.camera->WireRead(call.address, buffer, *size);
      } else {
        channel.camera->WireWrite(call.address, buffer, *size);
      }
    } else {
      *size = 0;
      return {kStatusBadArgument, "Unknown port."};
    }
    call.moved = *size;
    if (reads && Recording()) {
      call.bytes.assign(buffer, buffer + *size);
    }
    return {};
  }

  // Callbacks ---------------------------------------------------------------------------------------------------------

  bool Fire(HandleState &state, uint32_t events) {
    const std::lock_guard<std::recursive_mutex> turn(state.callbackMutex);
    const GRB_EVENT_CALLBACK callback = state.callback.load();
    if (callback == nullptr) {
      return false;
    }
    callback(state.number.load(), events, state.context.load());
    ++state.callbacks;
    changed.notify_all();
    return true;
  }

  std::future<void> Post(HandleState &state, std::function<void()> action) {
    std::shared_ptr<CWorker> worker;
    {
      const std::lock_guard<std::mutex> lock(mutex);
      if (!state.worker) {
        state.worker = std::make_shared<CWorker>();
      }
      worker = state.worker;
    }
    return worker->Post(std::move(action));
  }

  bool IsOwnThread(HandleState &state) {
    const std::lock_guard<std::mutex> lock(mutex);
    return state.worker && state.worker->IsThisThread();
  }

  void RaiseFinalCallback(HandleState &state) {
    const uint32_t events = finalEvents.load();
    switch (finalCallback.load()) {
      case FinalCallback::OwnThread: {
        const std::future<void> done = Post(state, [this, &state, events] { Fire(state, events); });
        // How soon the machine runs that thread is not what a test is about, and a stop gives it 200 ms only.
        if (!IsOwnThread(state)) {
          done.wait_for(kFinalCallbackBound);
        }
        break;
      }
      case FinalCallback::Inside:
        Fire(state, events);
        break;
      case FinalCallback::None:
        break;
    }
  }
};

CScriptedGrb::CScriptedGrb() : m_pImpl(std::make_unique<CScriptedGrbImpl>()) { Reset(); }

CScriptedGrb::~CScriptedGrb() = default;

CScriptedGrb &Script() {
  // Never destroyed: the Producer and the library's own threads may use it until the process ends.
  static CScriptedGrb *const script = new CScriptedGrb();
  return *script;
}

void CScriptedGrb::Reset() {
  CScriptedGrbImpl &impl = *m_pImpl;
  std::vector<std::shared_ptr<CWorker>> workers;
  {
    const std::lock_guard<std::mutex> lock(impl.mutex);
    impl.rules.clear();
    impl.ruleCount = 0;
    for (HandleState &slot : impl.slots) {
      slot.callback = nullptr;
      impl.Retire(slot);
    }
    workers.swap(impl.retired);
  }
  workers.clear();  // waits for what they are doing

  const std::lock_guard<std::mutex> lock(impl.mutex);
  for (HandleState &slot : impl.slots) {
    slot.handle = 0;
    slot.number = 0;
    slot.hook = nullptr;
    slot.Clear();
    slot.started = Started{};
  }
  for (BoardState &board : impl.boards) {
    board.present = false;
    board.properties = nullptr;
    for (ChannelState &channel : board.channels) {
      channel.enumerable = true;
      channel.heldElsewhere = false;
      channel.holder = 0;
      channel.parameters.Clear();
      for (const DefaultParameter &row : kDefaultParameters) {
        channel.parameters.Set(StoredUnder(row.identifier), row.value);
      }
      const std::lock_guard<std::mutex> memory(channel.memory);
      channel.camera.reset();
      channel.grabberRegisters.clear();
    }
  }
  impl.calls.clear();
  ++impl.era;
  impl.texts.clear();
  impl.lastHandle = 0;
  impl.quiet = false;
  impl.latestStream = 0;
  impl.finalCallback = FinalCallback::OwnThread;
  impl.finalEvents = 0;

  BoardState &first = impl.boards[0];
  impl.texts.emplace_back(kDefaultProperties);
  first.properties = impl.texts.back().c_str();
  first.present = true;
  const std::array<const char *, 2> models = {"Testcam 1", "Testcam 2"};
  for (size_t i = 0; i < models.size(); ++i) {
    const std::lock_guard<std::mutex> memory(first.channels[i].memory);
    first.channels[i].camera = CCamera().Model(models[i]);
  }
}

// Record --------------------------------------------------------------------------------------------------------------

size_t CScriptedGrb::Mark() const {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  return m_pImpl->calls.size();
}

std::vector<Call> CScriptedGrb::Calls(size_t since) const { return Calls(Match(), since); }

std::vector<Call> CScriptedGrb::Calls(const Match &match, size_t since) const {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  std::vector<Call> found;
  for (size_t i = since; i < m_pImpl->calls.size(); ++i) {
    if (match.Fits(m_pImpl->calls[i])) {
      found.push_back(m_pImpl->calls[i]);
    }
  }
  return found;
}

size_t CScriptedGrb::Count(const Match &match, size_t since) const { return Calls(match, since).size(); }

std::vector<std::string> CScriptedGrb::Trace(size_t since) const { return Trace(Match(), since); }

std::vector<std::string> CScriptedGrb::Trace(const Match &match, size_t since) const {
  std::vector<std::string> lines;
  for (const Call &call : Calls(match, since)) {
    lines.push_back(ToString(call));
  }
  return lines;
}

void CScriptedGrb::ClearCalls() {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  m_pImpl->calls.clear();
  ++m_pImpl->era;
}

void CScriptedGrb::SetQuiet(bool quiet) { m_pImpl->quiet = quiet; }

bool CScriptedGrb::WaitFor(const std::function<bool()> &predicate, std::chrono::milliseconds bound) const {
  const Clock::time_point end = Clock::now() + bound;
  while (!predicate()) {
    if (Clock::now() >= end) {
      // A thread that was held up itself looks once more.
      return predicate();
    }
    std::unique_lock<std::mutex> lock(m_pImpl->mutex);
    // A change between the look and the wait, or one that nothing announces, is seen after this short while.
    m_pImpl->changed.wait_for(lock, std::chrono::milliseconds(2));
  }
  return true;
}

// Rules ---------------------------------------------------------------------------------------------------------------

RuleId CScriptedGrb::On(const Match &match, const Reply &reply, When when) {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  CScriptedGrbImpl::Rule rule;
  rule.id = ++m_pImpl->lastRule;
  rule.match = match;
  rule.reply = reply;
  rule.when = when;
  m_pImpl->rules.push_back(std::move(rule));
  m_pImpl->ruleCount = m_pImpl->rules.size();
  return m_pImpl->lastRule;
}

void CScriptedGrb::Cancel(RuleId rule) {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  std::vector<CScriptedGrbImpl::Rule> &rules = m_pImpl->rules;
  rules.erase(std::remove_if(rules.begin(), rules.end(), [rule](const auto &row) { return row.id == rule; }),
              rules.end());
  m_pImpl->ruleCount = rules.size();
}

void CScriptedGrb::CancelAll() {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  m_pImpl->rules.clear();
  m_pImpl->ruleCount = 0;
}

uint32_t CScriptedGrb::Hits(RuleId rule) const {
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  for (const CScriptedGrbImpl::Rule &row : m_pImpl->rules) {
    if (row.id == rule) {
      return row.hits;
    }
  }
  return 0;
}

// Boards --------------------------------------------------------------------------------------------------------------

void CScriptedGrb::SetBoard(uint32_t board, std::string_view properties) {
  const size_t index = BoardIndex(board);
  if (index == kNowhere) {
    return;
  }
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  m_pImpl->texts.emplace_back(properties);
  m_pImpl->boards[index].properties = m_pImpl->texts.back().c_str();
  m_pImpl->boards[index].present = true;
}

void CScriptedGrb::SetNullProperties(uint32_t board) {
  const size_t index = BoardIndex(board);
  if (index != kNowhere) {
    m_pImpl->boards[index].properties = nullptr;
    m_pImpl->boards[index].present = true;
  }
}

void CScriptedGrb::RemoveBoard(uint32_t board) {
  const size_t index = BoardIndex(board);
  if (index == kNowhere) {
    return;
  }
  m_pImpl->boards[index].present = false;
  for (const uint32_t channel : kChannels) {
    RemoveCamera(board, channel);
  }
}

void CScriptedGrb::RemoveAllBoards() {
  for (uint32_t board = GRB_BOARD_1; board <= GRB_BOARD_7; ++board) {
    RemoveBoard(board);
  }
}

void CScriptedGrb::SetEnumerable(uint32_t board, uint32_t channel, bool enumerable) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    state->enumerable = enumerable;
  }
}

void CScriptedGrb::SetHeldElsewhere(uint32_t board, uint32_t channel, bool held) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    state->heldElsewhere = held;
  }
}

// Cameras -------------------------------------------------------------------------------------------------------------

void CScriptedGrb::SetCamera(uint32_t board, uint32_t channel, const CCamera &camera) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    state->camera = camera;
  }
}

void CScriptedGrb::RemoveCamera(uint32_t board, uint32_t channel) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    state->camera.reset();
  }
}

CCamera CScriptedGrb::Camera(uint32_t board, uint32_t channel) const {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    if (state->camera) {
      return *state->camera;
    }
  }
  return CCamera::Empty();
}

void CScriptedGrb::WriteCameraU32(uint32_t board, uint32_t channel, uint32_t address, uint32_t value) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    if (state->camera) {
      state->camera->U32(address, value);
    }
  }
}

uint32_t CScriptedGrb::ReadCameraU32(uint32_t board, uint32_t channel, uint32_t address) const {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    if (state->camera) {
      return state->camera->ReadU32(address);
    }
  }
  return 0;
}

void CScriptedGrb::WriteGrabberU32(uint32_t board, uint32_t channel, uint32_t address, uint32_t value) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    state->grabberRegisters[address] = value;
  }
}

uint32_t CScriptedGrb::ReadGrabberU32(uint32_t board, uint32_t channel, uint32_t address) const {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    const std::lock_guard<std::mutex> lock(state->memory);
    const auto found = state->grabberRegisters.find(address);
    return found == state->grabberRegisters.end() ? 0 : found->second;
  }
  return 0;
}

// Parameters ----------------------------------------------------------------------------------------------------------

void CScriptedGrb::SetParameter(uint32_t board, uint32_t channel, uint32_t identifier, uint64_t value) {
  if (ChannelState *const state = m_pImpl->Channel(board, channel)) {
    state->parameters.Set(StoredUnder(identifier), value);
  }
}

uint64_t CScriptedGrb::Parameter(uint32_t board, uint32_t channel, uint32_t identifier) const {
  ChannelState *const state = m_pImpl->Channel(board, channel);
  return state == nullptr ? 0 : state->parameters.Get(StoredUnder(identifier));
}

bool CScriptedGrb::Is64Bit(uint32_t identifier) {
  return std::find(std::begin(kWideIdentifiers), std::end(kWideIdentifiers), identifier) != std::end(kWideIdentifiers);
}

// Handles -------------------------------------------------------------------------------------------------------------

GRB_HANDLE CScriptedGrb::OpenHandle(uint32_t board, uint32_t channel, uint32_t mode) const {
  GRB_HANDLE newest = 0;
  for (const HandleState &slot : m_pImpl->slots) {
    const GRB_HANDLE handle = slot.handle.load();
    if (handle > newest && slot.open.load() && slot.board.load() == board && slot.channel.load() == channel &&
        slot.mode.load() == mode) {
      newest = handle;
    }
  }
  return newest;
}

size_t CScriptedGrb::CreatedHandles() const {
  return static_cast<size_t>(std::count_if(m_pImpl->slots.begin(), m_pImpl->slots.end(),
                                           [](const HandleState &slot) { return slot.handle.load() != 0; }));
}

size_t CScriptedGrb::OpenHandles() const {
  return static_cast<size_t>(std::count_if(m_pImpl->slots.begin(), m_pImpl->slots.end(),
                                           [](const HandleState &slot) { return slot.open.load(); }));
}

// Streams -------------------------------------------------------------------------------------------------------------

GRB_HANDLE CScriptedGrb::LatestStream() const { return m_pImpl->latestStream; }

Stream CScriptedGrb::StreamOf(GRB_HANDLE handle) const {
  Stream stream;
  const HandleState *const state = m_pImpl->FindStream(handle);
  if (state == nullptr) {
    return stream;
  }
  stream.handle = state->number;
  stream.board = state->board;
  stream.channel = state->channel;
  stream.running = state->running;
  stream.callback = state->callback;
  stream.context = state->context;
  stream.starts = state->starts;
  stream.stops = state->stops;
  stream.releases = state->releases;
  stream.aborts = state->aborts;
  stream.exposes = state->exposes;
  stream.callbacks = state->callbacks;
  const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
  stream.listPointer = state->started.listPointer;
  stream.destinations = state->started.destinations;
  stream.terminated = state->started.terminated;
  stream.numBuffers = state->started.numBuffers;
  stream.listKind = state->started.listKind;
  stream.lineBytes = state->started.lineBytes;
  stream.lines = state->started.lines;
  stream.eventMask = state->started.eventMask;
  return stream;
}

bool CScriptedGrb::FireCallback(uint32_t events, GRB_HANDLE handle) {
  HandleState *const state = m_pImpl->FindStream(handle);
  return state != nullptr && m_pImpl->Fire(*state, events);
}

std::future<void> CScriptedGrb::PostCallback(uint32_t events, GRB_HANDLE handle) {
  HandleState *const state = m_pImpl->FindStream(handle);
  return Post(
      [this, state, events] {
        if (state != nullptr) {
          m_pImpl->Fire(*state, events);
        }
      },
      handle);
}

std::future<void> CScriptedGrb::Post(std::function<void()> action, GRB_HANDLE handle) {
  HandleState *const state = m_pImpl->FindStream(handle);
  if (state == nullptr) {
    std::packaged_task<void()> nothing([] {});
    nothing();
    return nothing.get_future();
  }
  return m_pImpl->Post(*state, std::move(action));
}

bool CScriptedGrb::WaitIdle(GRB_HANDLE handle, std::chrono::milliseconds bound) {
  HandleState *const state = m_pImpl->FindStream(handle);
  std::shared_ptr<CWorker> worker;
  if (state != nullptr) {
    const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
    worker = state->worker;
  }
  return !worker || worker->WaitIdle(bound);
}

bool CScriptedGrb::FillSlot(size_t slot, uint8_t value, size_t size, GRB_HANDLE handle) {
  HandleState *const state = m_pImpl->FindStream(handle);
  if (state == nullptr) {
    return false;
  }
  void *address = nullptr;
  size_t count = size;
  {
    const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
    if (slot >= state->started.destinations.size()) {
      return false;
    }
    address = state->started.destinations[slot].address;
    if (count == 0) {
      count = size_t{state->started.lineBytes} * state->started.lines;
    }
  }
  std::memset(address, value, count);
  return true;
}

bool CScriptedGrb::WriteSlot(size_t slot, const std::vector<uint8_t> &bytes, GRB_HANDLE handle) {
  HandleState *const state = m_pImpl->FindStream(handle);
  if (state == nullptr) {
    return false;
  }
  void *address = nullptr;
  {
    const std::lock_guard<std::mutex> lock(m_pImpl->mutex);
    if (slot >= state->started.destinations.size()) {
      return false;
    }
    address = state->started.destinations[slot].address;
  }
  std::copy(bytes.begin(), bytes.end(), static_cast<uint8_t *>(address));
  return true;
}

bool CScriptedGrb::DeliverFrame(size_t slot, uint8_t value, GRB_HANDLE handle) {
  return FillSlot(slot, value, 0, handle) && FireCallback(GRB_EVENT_BUFFER_READY, handle);
}

void CScriptedGrb::SetFinalCallback(FinalCallback how, uint32_t events) {
  m_pImpl->finalEvents = events;
  m_pImpl->finalCallback = how;
}

}  // namespace Scripted

// The library's operations --------------------------------------------------------------------------------------------

namespace {

using Scripted::Call;
using Scripted::CScriptedGrbImpl;
using Scripted::Op;
using Scripted::Places;

Call NewCall(Op op, GRB_HANDLE handle, uint32_t code = 0, const void *argument = nullptr) {
  Call call;
  call.op = op;
  call.handle = handle;
  call.code = code;
  call.argument = argument;
  return call;
}

}  // namespace

extern "C" {

GRB_STATUS GRB_Create(GRB_HANDLE *handle, GRB_ERROR_HOOK hook) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::Create, 0, 0, handle);
  Places places;
  places.handle = handle;
  places.hook = hook;
  return impl.Run(call, places, [&](Call &now, auto *) { return impl.Create(now, handle, hook); });
}

GRB_STATUS GRB_Destroy(GRB_HANDLE *handle) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::Destroy, handle == nullptr ? 0 : *handle, 0, handle);
  return impl.Run(call, Places(), [&](Call &, auto *state) { return impl.Destroy(state); });
}

GRB_STATUS GRB_Open(GRB_HANDLE handle) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::Open, handle);
  return impl.Run(call, Places(), [&](Call &, auto *state) { return impl.Open(state); });
}

GRB_STATUS GRB_Close(GRB_HANDLE *handle) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::Close, handle == nullptr ? 0 : *handle, 0, handle);
  return impl.Run(call, Places(), [&](Call &, auto *state) { return impl.Close(state); });
}

GRB_STATUS GRB_ParameterSet(GRB_HANDLE handle, uint32_t identifier, void *value) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::ParameterSet, handle, identifier, value);
  if (Scripted::IsPointer(identifier)) {
    call.value = Scripted::FromPointer(value);
  } else if (value != nullptr && identifier == GRB_OPEN_CONFIG_FILE) {
    const char *path = nullptr;
    std::memcpy(&path, value, sizeof(path));
    call.value = Scripted::FromPointer(path);
    if (path != nullptr && impl.Recording()) {
      call.text = path;
    }
  } else if (value != nullptr && !Scripted::IsCommand(identifier)) {
    call.value = Scripted::LoadValue(identifier, value);
  }
  return impl.Run(call, Places(), [&](Call &now, auto *state) { return impl.ParameterSet(now, state, value); });
}

GRB_STATUS GRB_ParameterGet(GRB_HANDLE handle, uint32_t identifier, void *value) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::ParameterGet, handle, identifier, value);
  Places places;
  places.value = value;
  return impl.Run(call, places, [&](Call &now, auto *state) { return impl.ParameterGet(now, state, value); });
}

GRB_STATUS GRB_Action(GRB_HANDLE handle, uint32_t action, uint32_t subAction, void *argument) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::Action, handle, action, argument);
  call.subCode = subAction;
  if (argument != nullptr && impl.Recording()) {
    call.text = static_cast<const char *>(argument);
  }
  return impl.Run(call, Places(), [&](Call &, auto *state) { return impl.Action(state, argument); });
}

GRB_STATUS GRB_StreamRead(GRB_HANDLE handle, uint32_t operation, void *argument) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::StreamRead, handle, operation, argument);
  return impl.Run(call, Places(), [&](Call &now, auto *state) { return impl.StreamRead(now, state, argument); });
}

static GRB_STATUS Transfer(Call &call, void *config, uint8_t *buffer, uint32_t *size, uint32_t timeout) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  call.config = config;
  if (config != nullptr) {
    std::memcpy(&call.address, config, sizeof(call.address));
  }
  call.size = size == nullptr ? 0 : *size;
  call.timeout = timeout;
  if (call.op == Op::ControlWrite && buffer != nullptr && impl.Recording()) {
    call.bytes.assign(buffer, buffer + call.size);
  }
  Places places;
  places.buffer = buffer;
  places.size = size;
  return impl.Run(call, places, [&](Call &now, auto *state) { return impl.Transfer(now, state, buffer, size); });
}

GRB_STATUS GRB_ControlRead(GRB_HANDLE handle, uint32_t port, void *config, uint8_t *buffer, uint32_t *size,
                           uint32_t timeout) {
  Call call = NewCall(Op::ControlRead, handle, port, buffer);
  return Transfer(call, config, buffer, size, timeout);
}

GRB_STATUS GRB_ControlWrite(GRB_HANDLE handle, uint32_t port, void *config, uint8_t *buffer, uint32_t *size,
                            uint32_t timeout) {
  Call call = NewCall(Op::ControlWrite, handle, port, buffer);
  return Transfer(call, config, buffer, size, timeout);
}

void GRB_ErrHandlerDefault(const char *function, GRB_STATUS status, const char *description) {
  CScriptedGrbImpl &impl = CScriptedGrbImpl::Instance();
  Call call = NewCall(Op::ErrHandlerDefault, 0, status, description);
  if (impl.Recording()) {
    call.text =
        std::string(function == nullptr ? "null" : function) + "\n" + (description == nullptr ? "null" : description);
  }
  impl.Run(call, Places(), [](Call &, auto *) { return Scripted::Effect(); });
}

}  // extern "C"
