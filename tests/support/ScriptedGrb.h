// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "grblx64.h"

#if defined(_WIN32)
#if defined(SCRIPTED_GRB_BUILD)
#define SCRIPTED_GRB_API __declspec(dllexport)
#else
#define SCRIPTED_GRB_API __declspec(dllimport)
#endif
#else
#define SCRIPTED_GRB_API __attribute__((visibility("default")))
#endif

/// The scripted frame-grabber library: grblx64 as a test wants it to be.
///
/// It defines the operations of grblx64.h, records each call, answers from tables and fails on demand. A test program
/// links it, so that the Producer, loaded into the same process, finds this library and no other.
///
///     Script().SetCamera(GRB_BOARD_1, GRB_CHANNEL_1, CCamera().Revision(0x10001).Model("Eye"));
///     Script().On(Match(Op::Open).Mode(GRB_MODE_ACQ_ONLY), Reply::Failure(0x8123, "Channel is taken."));
///     const size_t mark = Script().Mark();
///     ... calls of the Producer ...
///     EXPECT_EQ(Script().Trace(mark), (std::vector<std::string>{"Create() -> h1", ...}));
namespace Scripted {

/// The operations of the library.
enum class Op {
  Create,
  Destroy,
  Open,
  Close,
  ParameterSet,
  ParameterGet,
  Action,
  StreamRead,
  ControlRead,
  ControlWrite,
  ErrHandlerDefault
};

/// The operation's name without "GRB_".
SCRIPTED_GRB_API const char *NameOf(Op op);

/// The name of a parameter identifier, port, stream operation or action ("GRB_OPEN_BOARD"); of anything else the
/// number, in the form 0xc0070300.
SCRIPTED_GRB_API std::string NameOfCode(uint32_t code);

/// Statuses of the scripted library's own failures. Each calls the hook with a text, unless told otherwise.
constexpr GRB_STATUS kStatusUnknownHandle = 0x00009001U;  ///< no such handle; no hook is called, for none is known
constexpr GRB_STATUS kStatusNotOpen = 0x00009002U;        ///< the operation needs an open handle
constexpr GRB_STATUS kStatusNoBoard = 0x00009003U;        ///< GRB_Open: "No such board or channel."
constexpr GRB_STATUS kStatusInUse = 0x00009004U;          ///< GRB_Open: "The channel is in use."
constexpr GRB_STATUS kStatusBadArgument = 0x00009005U;    ///< null pointer, unknown port, unknown stream operation
constexpr GRB_STATUS kStatusBadState = 0x00009006U;       ///< start without a destination list or on a running stream

/// One recorded call.
struct Call {
  Op op = Op::Create;
  GRB_HANDLE handle = 0;           ///< the handle's value on entry; for Create the handle given out (0: it failed)
  uint32_t code = 0;               ///< identifier, port, stream operation or action; for ErrHandlerDefault the status
  uint32_t subCode = 0;            ///< sub-action of Action
  uint32_t board = 0;              ///< board value of the handle, 0 before it is set
  uint32_t channel = 0;            ///< channel value of the handle, 0 before it is set
  uint32_t mode = 0;               ///< mode value of the handle, 0 before it is set
  const void *argument = nullptr;  ///< the pointer itself: value, buffer of a transfer, stream or action argument
  const void *config = nullptr;    ///< transfers: the pointer to the address word
  std::optional<uint64_t> value;   ///< ParameterSet, ParameterGet: the 32- or 64-bit value; the address for a pointer
  uint32_t address = 0;            ///< transfers: the address
  uint32_t size = 0;               ///< transfers: bytes wanted
  uint32_t moved = 0;              ///< transfers: bytes moved, as left in the caller's size word
  uint32_t timeout = 0;            ///< transfers: the timeout as passed
  std::vector<uint8_t> bytes;      ///< transfers: bytes written, or bytes given as the answer
  std::string text;            ///< Action, GRB_OPEN_CONFIG_FILE: the path; ErrHandlerDefault: function, \n, description
  std::thread::id thread;      ///< the thread that called
  GRB_STATUS status = GRB_OK;  ///< the status returned
};

/// One line for a call, without its status when that is GRB_OK. A value in an enumeration prints its number:
///   Create() -> h1                                        Destroy(h1)
///   Open(h1)                                              Open(h1) = 0x9004
///   Close(h1)                                             Action(h2, 0xc0040100, 0xc0040007, "a.gcf")
///   ParameterSet(h1, GRB_OPEN_BOARD, 0xc0010001)          ParameterSet(h1, GRB_CACHE_FLUSH, null)
///   ParameterSet(h1, GRB_EVENT_CONTEXT, ptr)              ParameterSet(h1, GRB_DST_LIST, ptr)
///   ParameterGet(h1, GRB_REV_SW)                          StreamRead(h2, GRB_STREAM_STOP)
///   ControlRead(h1, GRB_PORT_CAMERA, 0x4, 4, 800)         (address in hex, bytes wanted and timeout in decimal)
///   ControlWrite(h1, GRB_PORT_CAMERA, 0xc, 4, 800, 00000001)
///   ErrHandlerDefault("GRB_Open", 0x9003, "No such board or channel.")
SCRIPTED_GRB_API std::string ToString(const Call &call);
SCRIPTED_GRB_API std::ostream &operator<<(std::ostream &out, const Call &call);

/// Which calls are meant: those that agree in everything set here.
class SCRIPTED_GRB_API Match {
 public:
  Match() = default;
  explicit Match(Op op) : m_Op(op) {}
  /// An operation with its identifier, port, stream operation or action.
  Match(Op op, uint32_t code) : m_Op(op), m_Code(code) {}

  Match &Code(uint32_t code);
  Match &Address(uint32_t address);  ///< transfers only
  Match &Mode(uint32_t mode);        ///< mode value of the handle
  Match &Board(uint32_t board);
  Match &Channel(uint32_t channel);
  Match &Handle(GRB_HANDLE handle);
  Match &Thread(std::thread::id thread);

  bool Fits(const Call &call) const;

 private:
  std::optional<Op> m_Op;
  std::optional<uint32_t> m_Code;
  std::optional<uint32_t> m_Address;
  std::optional<uint32_t> m_Mode;
  std::optional<uint32_t> m_Board;
  std::optional<uint32_t> m_Channel;
  std::optional<GRB_HANDLE> m_Handle;
  std::optional<std::thread::id> m_Thread;
};

/// What a matching call does instead of its own work.
///
/// In this order: the operation's own effect, only after Pass() or KeepEffect(); the answer (Bytes, Moved, Value); the
/// error hook; Do(), with no lock of the script held, so that it may call anything; the return of the status.
class SCRIPTED_GRB_API Reply {
 public:
  /// Fails with the status; the hook is called with the function's name ("GRB_Open" for Op::Open) and the description.
  /// A failing transfer leaves 0 in the caller's size word, unless Moved() says otherwise.
  static Reply Failure(GRB_STATUS status, std::string description = "Scripted failure.");
  /// Returns the status without a call of the hook and without an effect: GRB_OK, GRB_WARNING_PASSED and so on. The
  /// size word of a transfer stays as the caller gave it, unless Moved() says otherwise.
  static Reply Status(GRB_STATUS status);
  /// ControlRead: GRB_OK and these bytes, as many as asked for at most; the size word becomes their number.
  static Reply Answer(std::vector<uint8_t> bytes);
  /// ParameterGet: GRB_OK and this value in the identifier's width.
  static Reply Value(uint64_t value);
  /// The operation's own work and status; for a Do() beside it.
  static Reply Pass();

  Reply &NoHook();                           ///< the hook is not called
  Reply &Function(std::string name);         ///< the hook's function name
  Reply &NullFunction();                     ///< the hook gets a null function name
  Reply &NullDescription();                  ///< the hook gets a null description
  Reply &WithStatus(GRB_STATUS status);      ///< another status beside an answer, such as GRB_WARNING_PASSED
  Reply &Moved(uint32_t count);              ///< transfers: what is left in the caller's size word
  Reply &Bytes(std::vector<uint8_t> bytes);  ///< ControlRead: bytes stored in the caller's buffer, failing or not
  Reply &KeepEffect();                       ///< does the operation's own work as well, though it reports a failure
  Reply &HandleOut(GRB_HANDLE handle);       ///< Create: what a failing Create leaves in the caller's handle
  Reply &Do(std::function<void(const Call &)> action);  ///< runs on the calling thread ahead of the return

 private:
  friend class CScriptedGrb;
  friend struct CScriptedGrbImpl;
  GRB_STATUS m_nStatus = GRB_OK;
  bool m_bHook = false;
  bool m_bEffect = false;
  bool m_bOwnStatus = false;
  std::optional<std::string> m_strFunction;
  bool m_bNullFunction = false;
  std::optional<std::string> m_strDescription;
  std::optional<uint32_t> m_nMoved;
  std::optional<std::vector<uint8_t>> m_Bytes;
  std::optional<uint64_t> m_nValue;
  std::optional<GRB_HANDLE> m_nHandleOut;
  std::function<void(const Call &)> m_Action;
};

/// Which of the matching calls, counted from the rule's making, it takes.
struct When {
  uint32_t skip = 0;   ///< so many matching calls go by first
  uint32_t count = 1;  ///< so many are taken; kForEver: all that follow

  static constexpr uint32_t kForEver = 0xFFFFFFFFU;
  static When Next() { return {0, 1}; }
  static When Nth(uint32_t n) { return {n - 1, 1}; }  ///< counted from 1
  static When First(uint32_t n) { return {0, n}; }
  static When From(uint32_t n) { return {n - 1, kForEver}; }  ///< the n-th and all that follow
  static When Every() { return {0, kForEver}; }
};

using RuleId = uint64_t;

/// A camera: the bytes of its registers, as on the wire. Bytes never written read as zero.
///
/// A new CCamera is complete: revision 1.0, vendor "Lumivex Optics", model "Testcam 1", one manifest entry with the
/// local URL of a small XML at kXmlAddress, width 64, height 48 and Mono8 at the addresses below, which the registers
/// 0x3000, 0x3004 and 0x3014 name. Setters return the camera, so that they chain. A plain value: copy it freely.
class SCRIPTED_GRB_API CCamera {
 public:
  static constexpr uint32_t kUrlAddress = 0x00006000U;  ///< of manifest entry 0; entry n stands 0x1000 * n behind
  static constexpr uint32_t kXmlAddress = 0x00010000U;
  static constexpr uint32_t kWidthAddress = 0x00008000U;
  static constexpr uint32_t kHeightAddress = 0x00008004U;
  static constexpr uint32_t kPixelFormatAddress = 0x00008008U;

  CCamera();
  /// A camera without a single register set.
  static CCamera Empty();

  CCamera &Revision(uint32_t revision);     ///< register 0x4; 0x10001 is revision 1.1
  CCamera &Vendor(std::string_view text);   ///< register 0x2000, cut at 32 bytes, zero filled
  CCamera &Model(std::string_view text);    ///< register 0x2020, cut at 32 bytes, zero filled
  CCamera &Width(uint32_t width);           ///< at kWidthAddress
  CCamera &Height(uint32_t height);         ///< at kHeightAddress
  CCamera &PixelFormat(uint32_t value);     ///< at kPixelFormatAddress
  CCamera &ManifestSize(uint32_t entries);  ///< register 0x8 only
  /// The manifest entry that register 0xC selects: the URL text, the file version and the schema version, as they stand
  /// in registers 0x10 and 0x14. Raises register 0x8 to index + 1. The URL ends in a zero; the register 0x18 names it.
  CCamera &Url(uint32_t index, std::string_view url, uint32_t version = 0x00010000U, uint32_t schema = 0x00010100U);
  /// An XML text at an address, and manifest entry 0 as "Local:<name>;<address>;<size>" with hexadecimal numbers.
  CCamera &Xml(std::string_view text, uint32_t address = kXmlAddress, std::string_view name = "testcam.xml");

  CCamera &U32(uint32_t address, uint32_t value);                       ///< four bytes, big-endian
  CCamera &Text(uint32_t address, std::string_view text, size_t size);  ///< zero filled to size
  CCamera &Bytes(uint32_t address, const std::vector<uint8_t> &bytes);

  uint32_t ReadU32(uint32_t address) const;
  std::vector<uint8_t> ReadBytes(uint32_t address, size_t size) const;
  const std::string &XmlText() const { return m_strXml; }  ///< the text of Xml()

  /// A transfer of the wire. A write to register 0xC selects the manifest entry.
  void WireRead(uint32_t address, uint8_t *buffer, size_t size) const;
  void WireWrite(uint32_t address, const uint8_t *buffer, size_t size);

 private:
  static constexpr size_t kPage = 1024;
  struct Entry {
    uint32_t version = 0;
    uint32_t schema = 0;
    uint32_t address = 0;
  };
  explicit CCamera(bool complete);
  void Select(uint32_t index);

  std::map<uint32_t, std::array<uint8_t, kPage>> m_Pages;
  std::map<uint32_t, Entry> m_Manifest;
  std::string m_strXml;
};

/// One pair of a destination list.
struct Destination {
  void *address = nullptr;
  void *second = nullptr;
};

/// A stream as it stands. All counts begin at the handle's GRB_Open.
struct Stream {
  GRB_HANDLE handle = 0;
  uint32_t board = 0;
  uint32_t channel = 0;
  bool running = false;                   ///< started, neither stopped nor aborted
  GRB_EVENT_CALLBACK callback = nullptr;  ///< argument of the latest start
  void *context = nullptr;                ///< GRB_EVENT_CONTEXT at the latest start
  const void *listPointer = nullptr;      ///< GRB_DST_LIST at the latest start
  std::vector<Destination> destinations;  ///< GRB_ACQ_NUM_BUFFERS pairs, copied at the latest start
  bool terminated = false;                ///< a pair of zeros stood behind them
  uint32_t numBuffers = 0;                ///< GRB_ACQ_NUM_BUFFERS, and so on, at the latest start
  uint32_t listKind = 0;
  uint32_t lineBytes = 0;
  uint32_t lines = 0;
  uint32_t eventMask = 0;
  uint64_t starts = 0;  ///< calls that succeeded
  uint64_t stops = 0;
  uint64_t releases = 0;
  uint64_t aborts = 0;
  uint64_t exposes = 0;
  uint64_t callbacks = 0;  ///< callbacks that have returned
};

/// How the library answers a write of GRB_EVENT_MASK_NOW on a started stream.
enum class FinalCallback {
  OwnThread,  ///< one callback with the word below on the library's own thread, waited for unless called on that
              ///< thread; the default, with the word 0
  Inside,     ///< one callback on the calling thread, inside GRB_ParameterSet
  None        ///< no callback: a stop ends with its timeout report
};

struct CScriptedGrbImpl;

/// The control interface of the scripted library; Script() is the only object.
///
/// Threads: every operation may be called from any thread, out of a Do() and out of a callback too. No lock is held
/// while foreign code runs. Reset() waits for the library's own threads and must not be called on one of them.
class SCRIPTED_GRB_API CScriptedGrb {
 public:
  CScriptedGrb(const CScriptedGrb &) = delete;
  CScriptedGrb &operator=(const CScriptedGrb &) = delete;

  /// Back to the default, record, rules, handles and threads included: the board GRB_BOARD_1 with kDefaultProperties,
  /// a CCamera on its channels 1 ("Testcam 1") and 2 ("Testcam 2"), default parameters, FinalCallback::OwnThread, not
  /// quiet. The next handle is h1.
  void Reset();

  // Record ---------------------------------------------------------------------------------------------------------
  size_t Mark() const;                              ///< the number of calls recorded so far
  std::vector<Call> Calls(size_t since = 0) const;  ///< all, in their order of begin
  std::vector<Call> Calls(const Match &match, size_t since = 0) const;
  size_t Count(const Match &match, size_t since = 0) const;
  std::vector<std::string> Trace(size_t since = 0) const;  ///< ToString of each
  std::vector<std::string> Trace(const Match &match, size_t since = 0) const;
  void ClearCalls();
  /// Records nothing; parameters, releases and transfers request nothing from the heap, and of locks take at most that
  /// of the camera. Rules still hold, but cost both: use it without rules, for benchmarks.
  void SetQuiet(bool quiet);
  /// Waits until the predicate holds; looked at again after each recorded call and each callback. False: the bound ran
  /// out. The predicate runs without a lock.
  bool WaitFor(const std::function<bool()> &predicate,
               std::chrono::milliseconds bound = std::chrono::milliseconds(30000)) const;

  // Rules ----------------------------------------------------------------------------------------------------------
  /// Adds a rule. The rule made last is asked first; a rule that is not due lets the call through to the older ones.
  RuleId On(const Match &match, const Reply &reply, When when = When::Next());
  void Cancel(RuleId rule);
  void CancelAll();
  uint32_t Hits(RuleId rule) const;  ///< how often the rule has been applied

  // Boards ---------------------------------------------------------------------------------------------------------
  static constexpr const char *kDefaultProperties = "Name=Grabline\nModel=GL-CXP4\nSerial=1001\n";
  static constexpr const char *kDefaultInterfaceId = "GL-CXP4-#1";  ///< what the default board is listed as
  /// Adds a board, or changes its property text; every channel can be opened for enumeration.
  void SetBoard(uint32_t board, std::string_view properties = kDefaultProperties);
  void SetNullProperties(uint32_t board);  ///< GRB_BOARD_PROPERTIES answers with a null pointer and GRB_OK
  void RemoveBoard(uint32_t board);        ///< with its cameras; open handles stay open
  void RemoveAllBoards();
  /// Whether a channel can be opened in GRB_MODE_ENUMERATE; true at first.
  void SetEnumerable(uint32_t board, uint32_t channel, bool enumerable);
  /// The channel is held for acquisition by another process: GRB_MODE_ACQ_ONLY fails with kStatusInUse.
  void SetHeldElsewhere(uint32_t board, uint32_t channel, bool held);

  // Cameras --------------------------------------------------------------------------------------------------------
  /// Puts a camera behind a channel, also of a board that is not there yet.
  void SetCamera(uint32_t board, uint32_t channel, const CCamera &camera);
  /// Without a camera a transfer of GRB_PORT_CAMERA fails: GRB_WARNING_TIMEOUT, "No answer from the camera.", 0 bytes.
  void RemoveCamera(uint32_t board, uint32_t channel);
  CCamera Camera(uint32_t board, uint32_t channel) const;  ///< a copy; Empty() without one
  void WriteCameraU32(uint32_t board, uint32_t channel, uint32_t address, uint32_t value);
  uint32_t ReadCameraU32(uint32_t board, uint32_t channel, uint32_t address) const;
  /// Registers of GRB_PORT_GRABBER, in the processor's byte order.
  void WriteGrabberU32(uint32_t board, uint32_t channel, uint32_t address, uint32_t value);
  uint32_t ReadGrabberU32(uint32_t board, uint32_t channel, uint32_t address) const;

  // Parameters -----------------------------------------------------------------------------------------------------
  /// The value that a channel holds. An identifier and its immediate form (lowest bit set) share one value. 0: unset.
  void SetParameter(uint32_t board, uint32_t channel, uint32_t identifier, uint64_t value);
  uint64_t Parameter(uint32_t board, uint32_t channel, uint32_t identifier) const;
  /// Whether the identifier's value has 64 bits.
  static bool Is64Bit(uint32_t identifier);

  // Handles --------------------------------------------------------------------------------------------------------
  /// The newest open handle of a channel and mode; 0: none.
  GRB_HANDLE OpenHandle(uint32_t board, uint32_t channel, uint32_t mode) const;
  size_t CreatedHandles() const;  ///< handles created and not yet destroyed
  size_t OpenHandles() const;     ///< handles open now

  // Streams --------------------------------------------------------------------------------------------------------
  /// In all of these, handle 0 means the stream that was started last.
  GRB_HANDLE LatestStream() const;
  Stream StreamOf(GRB_HANDLE handle = 0) const;
  /// Runs the stream's callback on the calling thread, also on a stopped stream. Callbacks of one stream never overlap.
  /// False: no stream, or never started.
  bool FireCallback(uint32_t events, GRB_HANDLE handle = 0);
  /// Runs the stream's callback on the library's own thread of that stream; the future is ready when it has returned.
  std::future<void> PostCallback(uint32_t events, GRB_HANDLE handle = 0);
  /// Runs anything on the library's own thread of the stream, in its turn among the callbacks.
  std::future<void> Post(std::function<void()> action, GRB_HANDLE handle = 0);
  /// Waits until the own thread of the stream has nothing left to do. False: the bound ran out.
  bool WaitIdle(GRB_HANDLE handle = 0, std::chrono::milliseconds bound = std::chrono::milliseconds(30000));
  /// Fills the destination with one byte value, GRB_DST_LINE_BYTES * GRB_DST_LINES of them, or size when it is not 0.
  bool FillSlot(size_t slot, uint8_t value, size_t size = 0, GRB_HANDLE handle = 0);
  /// Copies bytes into the destination, from its begin.
  bool WriteSlot(size_t slot, const std::vector<uint8_t> &bytes, GRB_HANDLE handle = 0);
  /// The whole life of a frame: fills the slot, then the buffer-ready callback on the calling thread.
  bool DeliverFrame(size_t slot, uint8_t value = 0x5A, GRB_HANDLE handle = 0);
  void SetFinalCallback(FinalCallback how, uint32_t events = 0);

 private:
  CScriptedGrb();
  ~CScriptedGrb();
  friend SCRIPTED_GRB_API CScriptedGrb &Script();
  friend struct CScriptedGrbImpl;
  std::unique_ptr<CScriptedGrbImpl> m_pImpl;
};

/// The one scripted library of the process; it lives until the process ends.
SCRIPTED_GRB_API CScriptedGrb &Script();

/// Four bytes, big-endian, as they stand on the wire, and back.
SCRIPTED_GRB_API std::vector<uint8_t> BigEndian(uint32_t value);
SCRIPTED_GRB_API uint32_t FromBigEndian(const uint8_t *bytes);

}  // namespace Scripted
