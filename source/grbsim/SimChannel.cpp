// SPDX-License-Identifier: MIT
#include "SimChannel.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "GcfFile.h"
#include "ParameterTable.h"
#include "PixelLayout.h"
#include "SimBoard.h"
#include "SimError.h"

namespace grbsim {
namespace {

struct SpeedRow {
  uint32_t mode;          // value of GRB_CXP_BITRATE_MODE and of GRB_CXP_BITRATE
  uint32_t code;          // low byte of ConnectionConfig
  double bytesPerSecond;  // of one link, after line coding
};
constexpr SpeedRow kSpeeds[] = {{GRB_CXP_BITRATE_MODE_CXP1, 0x28, 125e6},
                                {GRB_CXP_BITRATE_MODE_CXP2, 0x30, 250e6},
                                {GRB_CXP_BITRATE_MODE_CXP3, 0x38, 312.5e6},
                                {GRB_CXP_BITRATE_MODE_CXP5, 0x40, 500e6},
                                {GRB_CXP_BITRATE_MODE_CXP6, 0x48, 625e6}};

struct LinksRow {
  uint32_t mode;  // value of GRB_CXP_DISCOVERY_MODE and of GRB_CXP_DISCOVERY
  uint32_t links;
};
constexpr LinksRow kLinks[] = {{GRB_CXP_DISCOVERY_1X, 1}, {GRB_CXP_DISCOVERY_2X, 2}, {GRB_CXP_DISCOVERY_4X, 4}};

// What packet heads and line markers leave of the link for pixels.
constexpr double kImageShare = 0.98;
constexpr uint32_t kTimerChannels = 4;
constexpr uint32_t kWidestImage = 65536;

uint32_t Factor(uint32_t decimation) { return 1U << (decimation - GRB_ACQ_X1); }

}  // namespace

CSimChannel::CSimChannel(CSimBoard &board, uint32_t boardNumber, uint32_t number)
    : m_Board(board),
      m_iBoard(boardNumber),
      m_iNumber(number),
      m_pCamera(CameraModelOfChannel(number) == nullptr ? nullptr
                                                        : std::make_unique<CSimCamera>(*CameraModelOfChannel(number))),
      m_Engine(*this) {
  SetCameraDefaults();
}

void CSimChannel::SetCameraDefaults() {
  m_Parameters.Reset();
  if (m_pCamera == nullptr) {
    return;
  }
  const CameraModel &model = m_pCamera->Model();
  const PixelLayout &layout = *FindLayoutByPfnc(model.pfnc);
  const std::pair<uint32_t, uint32_t> values[] = {
      {GRB_CAM_ACTIVE_XLENGTH, model.width},  {GRB_CAM_ACTIVE_YLENGTH, model.height},
      {GRB_ROI_XLENGTH, model.width},         {GRB_ROI_YLENGTH, model.height},
      {GRB_USR_FORMAT, layout.usrFormat},     {GRB_BUS_FORMAT, layout.busFormat},
      {GRB_CAM_SRC_COL, layout.sourceColour}, {GRB_CAM_SRC_DEPTH, layout.bits}};
  for (const auto &[identifier, value] : values) {
    m_Parameters.Set(*FindParameter(identifier), value, true);
  }
}

void CSimChannel::Claim(GRB_HANDLE holder, const std::optional<std::string> &gcfPath) {
  std::lock_guard<std::mutex> lock(m_ClaimLock);
  if (m_hHolder != 0) {
    Fail(kStatusBusy, "Board %u channel %u is already open for acquisition.", m_iBoard, m_iNumber);
  }
  auto claim =
      std::make_unique<CChannelClaim>("board" + std::to_string(m_iBoard) + "-channel" + std::to_string(m_iNumber));
  if (!claim->IsHeld()) {
    Fail(kStatusBusy, "Board %u channel %u is open for acquisition in another process.", m_iBoard, m_iNumber);
  }
  SetCameraDefaults();
  if (gcfPath) {
    LoadGcfFile(*gcfPath, m_Parameters);
  }
  ApplyLink();
  m_Engine.Open(holder);
  m_pClaim = std::move(claim);
  m_hHolder = holder;
}

void CSimChannel::Unclaim(GRB_HANDLE holder) {
  {
    std::lock_guard<std::mutex> lock(m_ClaimLock);
    if (m_hHolder != holder) {
      return;
    }
  }
  // The holder is entered until its thread is gone, so that nobody opens the channel in between.
  m_Engine.Close();
  std::lock_guard<std::mutex> lock(m_ClaimLock);
  m_hHolder = 0;
  m_pClaim.reset();
}

void CSimChannel::ApplyLink() {
  std::lock_guard<std::mutex> lock(m_LinkLock);
  const uint32_t bitrate = ValueInEffect(GRB_CXP_BITRATE_MODE);
  const uint32_t discovery = ValueInEffect(GRB_CXP_DISCOVERY_MODE);
  if (m_pCamera != nullptr && (bitrate != m_iBitrateMode || discovery != m_iDiscoveryMode)) {
    uint32_t links = m_pCamera->LinkConfig() & 0xFFFF0000U;
    uint32_t speed = m_pCamera->LinkConfig() & 0x0000FFFFU;
    // The automatic modes find what the camera names as its default, which 0 stands for.
    if (bitrate != m_iBitrateMode) {
      const auto *row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                     [&](const SpeedRow &candidate) { return candidate.mode == bitrate; });
      speed = row == std::end(kSpeeds) ? 0 : row->code;
    }
    if (discovery != m_iDiscoveryMode) {
      const auto *row = std::find_if(std::begin(kLinks), std::end(kLinks),
                                     [&](const LinksRow &candidate) { return candidate.mode == discovery; });
      links = row == std::end(kLinks) ? 0 : row->links << 16;
    }
    m_pCamera->SetLink(links, speed);
  }
  m_iBitrateMode = bitrate;
  m_iDiscoveryMode = discovery;
}

void CSimChannel::SetParameter(uint32_t identifier, const void *value) {
  const bool immediate = (identifier & 1U) != 0;
  if (CIoPorts::IsInput(identifier & ~1U)) {
    Fail(kStatusAccess, "The input port 0x%08X cannot be written.", identifier & ~1U);
  }
  if (CIoPorts::IsOutput(identifier & ~1U)) {
    RequirePointer(value, "value");
    uint32_t method = 0;
    std::memcpy(&method, value, sizeof(method));
    m_Board.Ports().Set(identifier & ~1U, m_iNumber, method);
    return;
  }
  const ParameterRow *row = FindParameter(identifier);
  if (row == nullptr || (row->form == EForm::Immediate && !immediate) || (row->form == EForm::Cached && immediate)) {
    Fail(kStatusUnknownParameter, "There is no parameter 0x%08X to be set.", identifier);
  }
  if (row->access == EAccess::ReadOnly) {
    Fail(kStatusAccess, "The parameter %s is read-only.", row->name);
  }
  if (row->type == EValueType::Command) {
    if (row->identifier == (GRB_CACHE_FLUSH & ~1U)) {
      m_Parameters.Flush();
      ApplyLink();
      m_Engine.Wake();
    }
    return;
  }

  uint64_t number = 0;
  if (row->type == EValueType::Pointer) {
    number = reinterpret_cast<uintptr_t>(value);
  } else {
    RequirePointer(value, "value");
    uint32_t narrow = 0;
    std::memcpy(row->type == EValueType::U64 ? static_cast<void *>(&number) : &narrow, value,
                row->type == EValueType::U64 ? sizeof(number) : sizeof(narrow));
    number += narrow;
  }
  m_Parameters.Set(*row, number, immediate);
  if (!immediate) {
    return;
  }
  if (identifier == GRB_EVENT_MASK_NOW) {
    m_Engine.RaiseEvent();
  } else if (identifier == GRB_TIMERA1_SWTRIG_NOW) {
    if (number != 0 && ValueInEffect(GRB_TIMERA1_MODE) == GRB_TIMERA1_MODE_N_PULSES) {
      m_Board.TimerPulses(m_iNumber, ValueInEffect(GRB_TIMERA1_PULSE_COUNT));
    }
  } else {
    ApplyLink();
    m_Engine.Wake();
  }
}

void CSimChannel::GetParameter(uint32_t identifier, void *value) const {
  RequirePointer(value, "value");
  if (CIoPorts::IsInput(identifier) || CIoPorts::IsOutput(identifier)) {
    uint32_t mask = 0;
    std::memcpy(&mask, value, sizeof(mask));
    const uint32_t answer = m_Board.Ports().Get(identifier, m_iNumber, mask);
    std::memcpy(value, &answer, sizeof(answer));
    return;
  }
  const ParameterRow *row = FindParameter(identifier);
  if (row == nullptr ||
      (row->form != EForm::Both && row->form != ((identifier & 1U) != 0 ? EForm::Immediate : EForm::Cached))) {
    Fail(kStatusUnknownParameter, "There is no parameter 0x%08X to be read.", identifier);
  }
  if (row->access == EAccess::WriteOnly) {
    Fail(kStatusAccess, "The parameter %s is write-only.", row->name);
  }
  if (row->type == EValueType::Text) {
    const char *text = m_Board.Properties();
    std::memcpy(value, &text, sizeof(text));
    return;
  }
  const uint64_t number = row->source == ESource::Live ? LiveValue(row->identifier) : m_Parameters.Get(*row);
  const uint32_t narrow = static_cast<uint32_t>(number);
  std::memcpy(value, row->type == EValueType::U64 ? static_cast<const void *>(&number) : &narrow,
              row->type == EValueType::U64 ? sizeof(number) : sizeof(narrow));
}

uint32_t CSimChannel::LiveValue(uint32_t identifier) const {
  if (identifier == GRB_COUNT_BUFFER_READY_NOW) {
    return m_Engine.FramesFilled();
  }
  const uint32_t config = m_pCamera == nullptr ? 0 : m_pCamera->LinkConfig();
  if (identifier == GRB_CXP_BITRATE) {
    const auto *row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                   [&](const SpeedRow &candidate) { return candidate.code == (config & 0xFFFFU); });
    return row == std::end(kSpeeds) ? GRB_CXP_BITRATE_UNKNOWN : row->mode;
  }
  if (identifier == GRB_CXP_DISCOVERY) {
    const auto *row = std::find_if(std::begin(kLinks), std::end(kLinks),
                                   [&](const LinksRow &candidate) { return candidate.links == config >> 16; });
    return row == std::end(kLinks) ? GRB_CXP_DISCOVERY_UNKNOWN : row->mode;
  }
  return config;  // GRB_CXP_INFO: links and speed as the camera names them; 0 without a camera
}

void CSimChannel::SaveGcf(const std::string &path) const { SaveGcfFile(path, m_Parameters); }

void CSimChannel::Expose() {
  if (ValueInEffect(GRB_CAMTRIG_SRC) == GRB_CAMTRIG_SRC_SWTRIG_CHX && m_pCamera != nullptr && m_pCamera->IsSending()) {
    m_Engine.Expose();
  }
}

uint32_t CSimChannel::TimerChannel() const {
  const uint32_t source = ValueInEffect(GRB_CAMTRIG_SRC);
  if (source == GRB_CAMTRIG_SRC_TIMERA1_CHX) {
    return m_iNumber;
  }
  const uint32_t place = source - GRB_CAMTRIG_SRC_TIMERA1_CH1;
  return place < kTimerChannels ? place + 1 : 0;
}

double CSimChannel::LinkBytesPerSecond() const {
  const uint32_t config = m_pCamera->LinkConfig();
  const auto *row = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                 [&](const SpeedRow &candidate) { return candidate.code == (config & 0xFFFFU); });
  return row == std::end(kSpeeds) ? kSpeeds[0].bytesPerSecond : row->bytesPerSecond * (config >> 16) * kImageShare;
}

FrameTiming CSimChannel::Timing(const StreamSetup &setup) const {
  FrameTiming timing{};
  timing.blocking = ValueInEffect(GRB_ACQ_BLOCKING) == GRB_ACQ_BLOCKING_ON;
  timing.eventMask = ValueInEffect(GRB_EVENT_MASK);
  if (m_pCamera == nullptr || !m_pCamera->IsSending()) {
    timing.trigger = ETrigger::None;
    return timing;
  }
  timing.pattern = m_pCamera->Pattern();
  const double bytes = static_cast<double>(setup.shape.width) * setup.shape.height * setup.shape.layout->bytesPerPixel;
  const double seconds = std::max(1.0 / m_pCamera->FrameRate(), bytes / LinkBytesPerSecond());
  timing.period = std::chrono::nanoseconds(static_cast<int64_t>(seconds * 1e9));
  const uint32_t source = ValueInEffect(GRB_CAMTRIG_SRC);
  const uint32_t timer = TimerChannel();
  if (timer != 0) {
    const CParameterStore &owner = m_Board.Channel(timer).m_Parameters;
    timing.period =
        std::max(timing.period, std::chrono::nanoseconds(static_cast<int64_t>(owner.InEffect(GRB_TIMERA1_PERIOD_NS))));
    timing.trigger = owner.InEffect(GRB_TIMERA1_MODE) == GRB_TIMERA1_MODE_RUN ? ETrigger::FreeRun : ETrigger::Pulses;
  } else {
    timing.trigger = source == GRB_CAMTRIG_SRC_NONE         ? ETrigger::FreeRun
                     : source == GRB_CAMTRIG_SRC_SWTRIG_CHX ? ETrigger::Software
                                                            : ETrigger::None;
  }
  return timing;
}

StreamSetup CSimChannel::MakeSetup(GRB_HANDLE handle, GRB_EVENT_CALLBACK callback) const {
  StreamSetup setup{};
  setup.handle = handle;
  setup.callback = callback;
  setup.context = reinterpret_cast<void *>(static_cast<uintptr_t>(m_Parameters.InEffect(GRB_EVENT_CONTEXT)));
  setup.lineBytes = ValueInEffect(GRB_DST_LINE_BYTES);
  setup.lines = ValueInEffect(GRB_DST_LINES);
  setup.offsetX = ValueInEffect(GRB_ROI_DST_XOFFSET);
  setup.offsetY = ValueInEffect(GRB_ROI_DST_YOFFSET);
  setup.shape.layout = FindLayoutByUsrFormat(ValueInEffect(GRB_USR_FORMAT));
  setup.shape.width = ValueInEffect(GRB_ROI_XLENGTH) / Factor(ValueInEffect(GRB_ACQ_XSUB));
  setup.shape.height = ValueInEffect(GRB_ROI_YLENGTH) / Factor(ValueInEffect(GRB_ACQ_YSUB));
  setup.shape.camera = m_iNumber - 1;

  if (setup.shape.layout == nullptr) {
    Fail(kStatusInvalidState, "The value 0x%08X of GRB_USR_FORMAT is no pixel format.", ValueInEffect(GRB_USR_FORMAT));
  }
  if (setup.shape.width == 0 || setup.shape.height == 0) {
    Fail(kStatusInvalidState, "The region of interest is empty (%u x %u pixels).", setup.shape.width,
         setup.shape.height);
  }
  if (static_cast<uint64_t>(setup.shape.width) * setup.shape.layout->bytesPerPixel > setup.lineBytes ||
      setup.shape.height > setup.lines) {
    Fail(kStatusInvalidState, "An image of %u x %u pixels does not fit a destination of %zu lines of %zu bytes.",
         setup.shape.width, setup.shape.height, setup.lines, setup.lineBytes);
  }
  if (setup.shape.width > kWidestImage) {
    Fail(kStatusInvalidState, "An image of %u pixels is wider than the engine's %u.", setup.shape.width, kWidestImage);
  }
  const auto *list = reinterpret_cast<const uint64_t *>(static_cast<uintptr_t>(m_Parameters.InEffect(GRB_DST_LIST)));
  if (list == nullptr) {
    Fail(kStatusInvalidState, "No destination list is in effect.");
  }
  const uint32_t count = ValueInEffect(GRB_ACQ_NUM_BUFFERS);
  for (uint32_t i = 0; i < count; ++i) {
    auto *address = reinterpret_cast<uint8_t *>(static_cast<uintptr_t>(list[2 * static_cast<size_t>(i)]));
    if (address == nullptr) {
      Fail(kStatusInvalidState, "The destination list ends after %u of %u destinations.", i, count);
    }
    setup.destinations.push_back(address);
  }
  return setup;
}

void CSimChannel::StartStream(GRB_HANDLE handle, GRB_EVENT_CALLBACK callback) {
  m_Engine.Start(MakeSetup(handle, callback));
}

}  // namespace grbsim
