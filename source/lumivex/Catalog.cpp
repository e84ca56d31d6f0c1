// SPDX-License-Identifier: MIT
#include "Catalog.h"

#include <algorithm>
#include <utility>

#include "Text.h"

namespace Lumivex::Consumer {
namespace {

bool IsNamed(const CameraEntry &camera, const std::string &wish) {
  if (wish == camera.id || wish == camera.name) {
    return true;
  }
  const auto onBoard = [&](const std::string &board) {
    return wish == board + "/" + camera.id || wish == board + "/" + camera.name;
  };
  return onBoard(camera.boardId) || onBoard(camera.boardName);
}

// Looking for cameras takes its time: each place that has none is waited for.
void RequireNoInterrupt() {
  if (Interrupted()) {
    throw CCommandError(ExitCode::Interrupted, "interrupted while looking for cameras");
  }
}

const CameraEntry &SelectFree(const std::vector<CameraEntry> &cameras, CameraNeed need) {
  const auto found = std::find_if(cameras.begin(), cameras.end(), CCatalog::IsFree);
  if (found == cameras.end()) {
    if (need == CameraNeed::Any) {
      return cameras.front();
    }
    throw CCommandError(ExitCode::DeviceBusy,
                        cameras.size() == 1 ? "the only camera, " + CCatalog::FullName(cameras.front()) + ", is busy"
                                            : "no camera is free: all " + std::to_string(cameras.size()) + " are busy");
  }
  return *found;
}

}  // namespace

CCatalog::CCatalog(const std::vector<std::filesystem::path> &producerFiles) {
  for (const auto &file : producerFiles) {
    RequireNoInterrupt();
    try {
      AddProducer(file);
    } catch (const CCommandError &error) {
      m_Failures.push_back(error);
    }
  }
  RequireNoInterrupt();
  const bool anyBoard = std::any_of(m_Producers.begin(), m_Producers.end(),
                                    [](const ProducerEntry &producer) { return !producer.boards.empty(); });
  if (!anyBoard && !m_Failures.empty()) {
    throw CCommandError(m_Failures.front());
  }
}

void CCatalog::AddProducer(const std::filesystem::path &file) {
  const auto pProducer = std::make_shared<const CProducer>(file);
  const auto pSystem = std::make_shared<const CSystem>(pProducer);
  ProducerEntry producer{
      file, pProducer->Info(GenTL::TL_INFO_DISPLAYNAME), pProducer->Info(GenTL::TL_INFO_VERSION), {}, pSystem};
  for (const std::string &id : pSystem->FindInterfaces()) {
    if (Interrupted()) {
      return;
    }
    try {
      AddBoard(producer, pSystem, id);
    } catch (const CGenTLError &error) {
      m_Failures.push_back(error);
    }
  }
  m_Producers.push_back(std::move(producer));
}

void CCatalog::AddBoard(ProducerEntry &producer, const std::shared_ptr<const CSystem> &pSystem, const std::string &id) {
  const auto pInterface = std::make_shared<const CInterface>(pSystem, id);
  BoardEntry board{id, pInterface->DisplayName(), {}, pInterface};
  for (const std::string &deviceId : pInterface->FindDevices()) {
    board.cameras.push_back({m_CameraCount + 1, pInterface, board.id, board.name, deviceId,
                             pInterface->DeviceText(deviceId, GenTL::DEVICE_INFO_DISPLAYNAME),
                             pInterface->DeviceText(deviceId, GenTL::DEVICE_INFO_VENDOR),
                             pInterface->DeviceText(deviceId, GenTL::DEVICE_INFO_MODEL),
                             pInterface->DeviceAccessStatus(deviceId)});
    ++m_CameraCount;
  }
  producer.boards.push_back(std::move(board));
}

std::vector<CameraEntry> CCatalog::Cameras() const {
  std::vector<CameraEntry> cameras;
  for (const ProducerEntry &producer : m_Producers) {
    for (const BoardEntry &board : producer.boards) {
      cameras.insert(cameras.end(), board.cameras.begin(), board.cameras.end());
    }
  }
  return cameras;
}

std::string CCatalog::FullName(const CameraEntry &camera) { return "'" + camera.boardId + "/" + camera.id + "'"; }

bool CCatalog::IsFree(const CameraEntry &camera) {
  return camera.status == GenTL::DEVICE_ACCESS_STATUS_READWRITE || camera.status == GenTL::DEVICE_ACCESS_STATUS_UNKNOWN;
}

const CameraEntry &CCatalog::Select(const std::vector<CameraEntry> &cameras, const std::string &wish, CameraNeed need) {
  if (cameras.empty()) {
    throw CCommandError(ExitCode::NoDevice, "no camera found");
  }
  if (wish.empty()) {
    return SelectFree(cameras, need);
  }
  std::vector<const CameraEntry *> found;
  for (const CameraEntry &camera : cameras) {
    if (IsNamed(camera, wish)) {
      found.push_back(&camera);
    }
  }
  if (found.empty()) {
    // Names come first: a camera may have a number for a name.
    for (const CameraEntry &camera : cameras) {
      if (wish == std::to_string(camera.number)) {
        found.push_back(&camera);
      }
    }
  }
  if (found.empty()) {
    throw CCommandError(ExitCode::NoDevice,
                        "no camera '" + wish + "' found; 'lumivex list' shows those that are there");
  }
  if (found.size() > 1) {
    std::string names;
    for (const CameraEntry *pCamera : found) {
      names += (names.empty() ? "" : ", ") + FullName(*pCamera);
    }
    throw CCommandError(ExitCode::NoDevice, "'" + wish + "' fits several cameras: " + names);
  }
  if (need == CameraNeed::Free && !IsFree(*found.front())) {
    throw CCommandError(ExitCode::DeviceBusy,
                        "camera " + FullName(*found.front()) + " is busy: another program has opened it");
  }
  return *found.front();
}

}  // namespace Lumivex::Consumer
