// SPDX-License-Identifier: MIT
#include "SimHandle.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "ParameterTable.h"
#include "SimBoard.h"
#include "SimChannel.h"
#include "SimError.h"
#include "SimLibrary.h"

namespace grbsim {
namespace {

constexpr uint32_t kChannelValues[] = {GRB_CHANNEL_1, GRB_CHANNEL_2, GRB_CHANNEL_3, GRB_CHANNEL_4,
                                       GRB_CHANNEL_5, GRB_CHANNEL_6, GRB_CHANNEL_7, GRB_CHANNEL_8};

uint32_t ReadWord(const void *value) {
  uint32_t word = 0;
  std::memcpy(&word, value, sizeof(word));
  return word;
}

bool IsOpenParameter(uint32_t identifier) {
  return identifier == GRB_OPEN_CONFIG_FILE || identifier == GRB_OPEN_VARIANT || identifier == GRB_OPEN_BOARD ||
         identifier == GRB_OPEN_CHANNEL || identifier == GRB_OPEN_MODE;
}

// 1 to 8; 0 if the value is no channel value.
uint32_t ChannelNumber(uint32_t value) {
  const uint32_t *found = std::find(std::begin(kChannelValues), std::end(kChannelValues), value);
  return found == std::end(kChannelValues) ? 0 : static_cast<uint32_t>(found - kChannelValues) + 1;
}

void RequireGrabberWord(uint32_t size) {
  if (size != 4) {
    Fail(kStatusInvalidArgument, "A grabber register has 4 bytes, not %u.", size);
  }
}

}  // namespace

CSimHandle::CSimHandle(GRB_HANDLE value, GRB_ERROR_HOOK hook) : m_hValue(value), m_pHook(hook) {}

void CSimHandle::SetOpenParameter(uint32_t identifier, const void *value) {
  RequirePointer(value, "value");
  std::lock_guard<std::mutex> lock(m_Lock);
  if (m_Session) {
    Fail(kStatusInvalidState, "The open parameter 0x%08X cannot be set: the handle is open.", identifier);
  }
  if (identifier == GRB_OPEN_CONFIG_FILE) {
    const char *path = nullptr;
    std::memcpy(&path, value, sizeof(path));
    RequirePointer(path, "path of the GCF file");
    m_GcfPath = path;
    return;
  }
  const uint32_t word = ReadWord(value);
  const auto require = [&](bool allowed) {
    if (!allowed) {
      Fail(kStatusValue, "The value 0x%08X is not allowed for the open parameter 0x%08X.", word, identifier);
    }
  };
  switch (identifier) {
    case GRB_OPEN_BOARD:
      require(word >= GRB_BOARD_1 && word <= GRB_BOARD_7);
      m_Board = word - GRB_BOARD_1 + 1;
      break;
    case GRB_OPEN_CHANNEL:
      require(ChannelNumber(word) != 0);
      m_Channel = ChannelNumber(word);
      break;
    case GRB_OPEN_MODE:
      require(word == GRB_MODE_ENUMERATE || word == GRB_MODE_CONTROL || word == GRB_MODE_ACQ_ONLY);
      m_Mode = word;
      break;
    default:
      require(word == GRB_VARIANT_ANY);
      break;
  }
}

void CSimHandle::Open() {
  std::lock_guard<std::mutex> lock(m_Lock);
  // Whatever becomes of this open, the next one is without the file unless it is named again.
  const std::optional<std::string> gcfPath = std::exchange(m_GcfPath, std::nullopt);
  if (m_Session) {
    Fail(kStatusInvalidState, "The handle is already open.");
  }
  if (!m_Board || !m_Channel || !m_Mode) {
    Fail(kStatusInvalidState, "The parameter %s is not set.",
         !m_Board ? "GRB_OPEN_BOARD" : (!m_Channel ? "GRB_OPEN_CHANNEL" : "GRB_OPEN_MODE"));
  }
  CSimBoard *board = CSimLibrary::Instance().Board(*m_Board);
  if (board == nullptr) {
    Fail(kStatusNoHardware, "There is no board %u.", *m_Board);
  }
  CSimChannel &channel = board->Channel(*m_Channel);
  if (*m_Mode == GRB_MODE_ACQ_ONLY) {
    channel.Claim(m_hValue, gcfPath);
  }
  m_Session = Session{*m_Mode, board, &channel};
}

void CSimHandle::Close() {
  std::optional<Session> session;
  {
    std::lock_guard<std::mutex> lock(m_Lock);
    session = std::exchange(m_Session, std::nullopt);
  }
  if (session && session->mode == GRB_MODE_ACQ_ONLY) {
    session->channel->Unclaim(m_hValue);
  }
}

CSimHandle::Session CSimHandle::OpenSession() const {
  std::lock_guard<std::mutex> lock(m_Lock);
  if (!m_Session) {
    Fail(kStatusInvalidState, "The handle is not open.");
  }
  return *m_Session;
}

CSimHandle::Session CSimHandle::AcquisitionSession(const char *purpose) const {
  const Session session = OpenSession();
  if (session.mode != GRB_MODE_ACQ_ONLY) {
    Fail(kStatusAccess, "%s takes a handle opened in GRB_MODE_ACQ_ONLY.", purpose);
  }
  return session;
}

void CSimHandle::SetParameter(uint32_t identifier, const void *value) {
  if (IsOpenParameter(identifier)) {
    SetOpenParameter(identifier, value);
    return;
  }
  AcquisitionSession("Setting a parameter").channel->SetParameter(identifier, value);
}

void CSimHandle::GetParameter(uint32_t identifier, void *value) const {
  const Session session = OpenSession();
  if (session.mode == GRB_MODE_ENUMERATE) {
    const ParameterRow *row = FindParameter(identifier);
    if (row != nullptr && row->source != ESource::Board) {
      Fail(kStatusAccess, "A handle in GRB_MODE_ENUMERATE does not answer %s.", row->name);
    }
  }
  session.channel->GetParameter(identifier, value);
}

void CSimHandle::Action(uint32_t action, uint32_t subAction, const void *argument) const {
  if (action != GRB_ACTION_CONFIG || subAction != GRB_ACTION_CONFIG_SAVE) {
    Fail(kStatusInvalidArgument, "There is no action 0x%08X with sub-action 0x%08X.", action, subAction);
  }
  RequirePointer(argument, "argument");
  AcquisitionSession("Saving the configuration").channel->SaveGcf(static_cast<const char *>(argument));
}

void CSimHandle::Stream(uint32_t operation, void *argument) const {
  CSimChannel &channel = *AcquisitionSession("A stream operation").channel;
  switch (operation) {
    case GRB_STREAM_START:
      RequirePointer(argument, "argument");
      channel.StartStream(m_hValue, reinterpret_cast<GRB_EVENT_CALLBACK>(argument));
      break;
    case GRB_STREAM_STOP:
      channel.Engine().Stop();
      break;
    case GRB_STREAM_RELEASE:
      channel.Engine().Release();
      break;
    case GRB_STREAM_ABORT:
      channel.Engine().Abort();
      break;
    case GRB_EXPOSE:
      channel.Expose();
      break;
    default:
      Fail(kStatusInvalidArgument, "There is no stream operation 0x%08X.", operation);
  }
}

CSimCamera &CSimHandle::CameraOf(const Session &session) const {
  if (session.mode != GRB_MODE_CONTROL) {
    Fail(kStatusAccess, "The camera is reached through a handle opened in GRB_MODE_CONTROL.");
  }
  CSimCamera *camera = session.channel->Camera();
  if (camera == nullptr) {
    Fail(kStatusLink, "No camera is connected to the channel.");
  }
  return *camera;
}

void CSimHandle::ControlRead(uint32_t port, const void *config, uint8_t *buffer, uint32_t *size) const {
  RequirePointer(config, "config");
  RequirePointer(buffer, "buffer");
  RequirePointer(size, "size");
  const uint32_t address = ReadWord(config);
  const uint32_t wanted = std::exchange(*size, 0);
  const Session session = OpenSession();
  if (port == GRB_PORT_CAMERA) {
    CameraOf(session).Read(address, buffer, wanted, *size);
  } else if (port == GRB_PORT_GRABBER) {
    RequireGrabberWord(wanted);
    const uint32_t value = session.board->ReadRegister(address);
    std::memcpy(buffer, &value, sizeof(value));
    *size = wanted;
  } else {
    Fail(kStatusInvalidArgument, "There is no port 0x%08X.", port);
  }
}

void CSimHandle::ControlWrite(uint32_t port, const void *config, const uint8_t *buffer, uint32_t *size) const {
  RequirePointer(config, "config");
  RequirePointer(buffer, "buffer");
  RequirePointer(size, "size");
  const uint32_t address = ReadWord(config);
  const uint32_t wanted = std::exchange(*size, 0);
  const Session session = OpenSession();
  if (port == GRB_PORT_CAMERA) {
    CameraOf(session).Write(address, buffer, wanted, *size);
    session.channel->Engine().Wake();
  } else if (port == GRB_PORT_GRABBER) {
    RequireGrabberWord(wanted);
    session.board->WriteRegister(address, ReadWord(buffer));
    *size = wanted;
  } else {
    Fail(kStatusInvalidArgument, "There is no port 0x%08X.", port);
  }
}

}  // namespace grbsim
