// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Interface.h"

namespace Lumivex::Consumer {

/// A camera that was found. Holds its board open.
struct CameraEntry {
  std::size_t number;  ///< 1, 2, ... over all Producers.
  std::shared_ptr<const CInterface> pInterface;
  std::string boardId;
  std::string boardName;
  std::string id;
  std::string name;
  std::string vendor;
  std::string model;
  GenTL::DEVICE_ACCESS_STATUS status;
};

struct BoardEntry {
  std::string id;
  std::string name;
  std::vector<CameraEntry> cameras;
  std::shared_ptr<const CInterface> pInterface = nullptr;  ///< The board itself, held open.
};

struct ProducerEntry {
  std::filesystem::path file;
  std::string name;
  std::string version;
  std::vector<BoardEntry> boards;
  std::shared_ptr<const CSystem> pSystem = nullptr;  ///< The Producer itself, held open.
};

/// Which cameras will do.
enum class CameraNeed { Free, Any };

/// What the Producers find: their boards, with the cameras on them.
///
/// A Producer or board that fails does not hide the others: it becomes a failure in words. When nothing but failures
/// is left, the first of them is thrown. CCommandError(Interrupted) when the user asks for the end meanwhile.
/// Ownership: made by a command; the modules stay open as long as an entry lives that holds them. Threads: one.
class CCatalog {
 public:
  explicit CCatalog(const std::vector<std::filesystem::path> &producerFiles);

  const std::vector<ProducerEntry> &Producers() const noexcept { return m_Producers; }

  /// What could not be asked, in words.
  const std::vector<CCommandError> &Failures() const noexcept { return m_Failures; }

  /// All cameras, in the order of their numbers.
  std::vector<CameraEntry> Cameras() const;

  /// The camera that the user means: by id, by name, by "board/camera" of these, or by number; with an empty text the
  /// first one that is free. Throws CCommandError: NoDevice when none or several fit, DeviceBusy when it is not free
  /// though that is needed. Where any camera will do, a free one still comes first.
  static const CameraEntry &Select(const std::vector<CameraEntry> &cameras, const std::string &wish,
                                   CameraNeed need = CameraNeed::Free);

  /// "'board/camera'", which fits no other camera of the Producer.
  static std::string FullName(const CameraEntry &camera);

  /// Whether a camera can be opened for control, as far as its Producer tells.
  static bool IsFree(const CameraEntry &camera);

 private:
  void AddProducer(const std::filesystem::path &file);
  void AddBoard(ProducerEntry &producer, const std::shared_ptr<const CSystem> &pSystem, const std::string &id);

  std::vector<ProducerEntry> m_Producers;
  std::vector<CCommandError> m_Failures;
  std::size_t m_CameraCount = 0;
};

}  // namespace Lumivex::Consumer
