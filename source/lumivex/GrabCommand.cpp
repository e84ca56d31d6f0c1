// SPDX-License-Identifier: MIT
#include "GrabCommand.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <system_error>
#include <utility>

#include "Catalog.h"
#include "FeatureCommands.h"
#include "Grabber.h"
#include "OutputPattern.h"
#include "PixelUnpacker.h"
#include "Platform.h"
#include "PngWriter.h"
#include "ProducerSearch.h"
#include "Progress.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

using std::chrono::steady_clock;

constexpr uint64_t kMostFrames = 1'000'000'000;
constexpr double kShortestTimeout = 0.001;
constexpr double kLongestTimeout = 86400.0;

std::string FramesPerSecond(uint64_t frames, steady_clock::time_point since) {
  const double seconds = std::chrono::duration<double>(steady_clock::now() - since).count();
  std::ostringstream text;
  text << std::fixed << std::setprecision(1) << (seconds > 0 ? static_cast<double>(frames) / seconds : 0.0)
       << " frames/s";
  return text.str();
}

// Takes leading zeros away, with which CLI11 would read an octal number.
std::string ReadCount(std::string &text) {
  uint64_t count = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, count);
  if (error != std::errc() || stop != end || count < 1 || count > kMostFrames) {
    return "'" + text + "' is no number from 1 to " + std::to_string(kMostFrames);
  }
  text = std::to_string(count);
  return "";
}

// CLI::Range lets "nan" pass.
std::string CheckTimeout(const std::string &text) {
  double seconds = 0;
  if (CLI::detail::lexical_cast(text, seconds) && seconds >= kShortestTimeout && seconds <= kLongestTimeout) {
    return "";
  }
  return "'" + text + "' is no time from 0.001 to 86400 seconds";
}

std::string CheckSetting(const std::string &text) {
  return text.empty() || text[0] == '=' ? "'" + text + "' names no feature" : "";
}

std::shared_ptr<const CDevice> OpenCamera(const std::string &producerFile, const std::string &wish) {
  const CCatalog catalog(ChooseProducerFiles(producerFile, EnvironmentValue(kProducerPathVariable)));
  for (const CCommandError &failure : catalog.Failures()) {
    std::cerr << "lumivex: " << failure.what() << '\n';
  }
  const std::vector<CameraEntry> cameras = catalog.Cameras();
  const CameraEntry &camera = CCatalog::Select(cameras, wish);
  if (Interrupted()) {
    throw CCommandError(ExitCode::Interrupted, "interrupted before the camera was opened");
  }
  return std::make_shared<const CDevice>(camera.pInterface, camera.id, GenTL::DEVICE_ACCESS_CONTROL);
}

/// The files of one grab, and what is told about them: on a terminal the progress and a summary, elsewhere their names.
class CFrameFiles {
 public:
  CFrameFiles(COutputPattern pattern, uint64_t count) : m_Pattern(std::move(pattern)), m_Count(count) {}

  void Write(const Frame &frame, uint64_t number) {
    const Picture picture = CPixelUnpacker::Unpack(frame);
    const std::string file = m_Pattern.Name(number);
    CPngWriter(file).Write(picture);
    if (!m_Progress.Visible()) {
      std::cout << file << std::endl;
      RequireOutput();
      return;
    }
    m_Progress.Show("frame " + std::to_string(number) + " of " + std::to_string(m_Count) + ", " +
                    FramesPerSecond(number, m_Begin));
    m_Summary = Counted(number, "frame") + " of " + std::to_string(picture.width) + " x " +
                std::to_string(picture.height) + " " + picture.pFormatName + " written: " + m_Pattern.Name(1) +
                (number > 1 ? " to " + file : "");
  }

  void Report(const std::vector<std::string> &warnings) {
    m_Progress.Clear();
    if (!m_Summary.empty()) {
      std::cout << m_Summary << std::endl;
    }
    for (const std::string &warning : warnings) {
      std::cerr << "lumivex: " << warning << '\n';
    }
  }

 private:
  const COutputPattern m_Pattern;
  const uint64_t m_Count;
  CProgress m_Progress{stdout};
  const steady_clock::time_point m_Begin = steady_clock::now();
  std::string m_Summary;
};

}  // namespace

const CLI::App *CGrabCommand::Declare(CLI::App &app) {
  CLI::App *pCommand = app.add_subcommand("grab", "Write frames of a camera to PNG files");
  AddProducerOption(*pCommand, m_ProducerFile);
  pCommand->add_option("-n,--count", m_Count, "Number of frames")
      ->type_name("N")
      ->capture_default_str()
      ->transform(CLI::Validator(ReadCount, "", "count"));
  pCommand
      ->add_option("-o,--output", m_Output,
                   "Name of the files; %d, or %03d, is where the number goes, from 1. Files of that name are replaced")
      ->type_name("PATTERN")
      ->capture_default_str();
  pCommand->add_option("-t,--timeout", m_Timeout, "Longest wait for a frame, in seconds")
      ->type_name("SECONDS")
      ->capture_default_str()
      ->check(CLI::Validator(CheckTimeout, "", "timeout"));
  if (CanSetFeatures()) {
    pCommand
        ->add_option("--set", m_Settings,
                     "Set a feature of the grabber first, as 'lumivex set' does; may be given several times")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(CLI::Validator(CheckSetting, "", "setting"));
  }
  pCommand
      ->add_option("device", m_Device,
                   "Camera by id, name, board/id or number, as 'lumivex list' shows them (default: the first free one)")
      ->type_name("");
  return pCommand;
}

ExitCode CGrabCommand::Run() {
  const COutputPattern pattern(m_Output, m_Count);
  // Before any hardware is touched: a name that cannot be written is the user's slip.
  { const CPngWriter probe(pattern.Name(1)); }

  const auto limit = std::chrono::milliseconds(std::llround(m_Timeout * 1000.0));
  const std::shared_ptr<const CDevice> pDevice = OpenCamera(m_ProducerFile, m_Device);
  // Before the stream is open: it asks for the size of the frames then.
  SetFeatures(pDevice, m_Settings);
  CGrabber grabber(pDevice, m_Count, limit);

  CFrameFiles files(pattern, m_Count);
  try {
    grabber.Run([&](const Frame &frame, uint64_t number) { files.Write(frame, number); });
  } catch (const CCommandError &error) {
    if (error.Code() != ExitCode::ReaderGone) {
      files.Report(grabber.Warnings());
    }
    throw;
  }
  files.Report(grabber.Warnings());
  return ExitCode::Success;
}

}  // namespace Lumivex::Consumer
