// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// How lumivex ends. Scripts rely on these numbers: they are never given another meaning.

#include <string>

namespace Lumivex::Consumer {

enum class ExitCode : int {
  Success = 0,
  Usage = 1,
  NoProducer = 2,
  NoDevice = 3,
  DeviceBusy = 4,
  GenTL = 5,
  Output = 6,
  Timeout = 7,
  Internal = 8,
  NoFeature = 9,
  FeatureAccess = 10,
  FeatureValue = 11,
  Interrupted = 130,
  ReaderGone = 141,  ///< What a shell shows of a program that SIGPIPE has ended.
};

struct ExitCodeRow {
  ExitCode code;
  const char *text;
};

constexpr ExitCodeRow kExitCodes[] = {
    {ExitCode::Success, "done"},
    {ExitCode::Usage, "the command line cannot be understood"},
    {ExitCode::NoProducer, "no Producer found, or the one named cannot be loaded"},
    {ExitCode::NoDevice, "no such camera, or the name fits several"},
    {ExitCode::DeviceBusy, "the camera is busy"},
    {ExitCode::GenTL, "a function of the Producer failed, or its answer is of no use"},
    {ExitCode::Output, "a picture, or the output, cannot be written"},
    {ExitCode::Timeout, "no frame came in time"},
    {ExitCode::Internal, "lumivex itself failed, as for want of memory"},
    {ExitCode::NoFeature, "no feature of this name"},
    {ExitCode::FeatureAccess, "the feature cannot be read or written now"},
    {ExitCode::FeatureValue, "the feature does not take this value"},
    {ExitCode::Interrupted, "interrupted (SIGINT, SIGTERM or SIGHUP)"},
    {ExitCode::ReaderGone, "whoever read the output has gone, such as 'head'; nothing is said"},
};

/// The table above as `--help` prints it.
std::string ExitCodeHelp();

}  // namespace Lumivex::Consumer
