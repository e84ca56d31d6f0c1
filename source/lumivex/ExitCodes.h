// SPDX-License-Identifier: MIT

/// \file
/// How lumivex ends. Scripts rely on these numbers: they are never given another meaning.
///
/// | Code | Meaning                                                              |
/// |------|----------------------------------------------------------------------|
/// | 0    | done                                                                 |
/// | 1    | the command line cannot be understood                                |
/// | 2    | no Producer found, or the one named cannot be loaded                 |
/// | 3    | no such camera, or the name fits several                             |
/// | 4    | the camera is busy                                                   |
/// | 5    | a function of the Producer failed                                    |
/// | 6    | a picture cannot be written                                          |
/// | 7    | no frame came in time                                                |
/// | 8    | lumivex itself failed, as for want of memory                         |
/// | 9    | no feature of this name                                              |
/// | 10   | the feature cannot be read or written now                            |
/// | 11   | the feature does not take this value                                 |
/// | 130  | interrupted (SIGINT or SIGTERM)                                      |

#ifndef LUMIVEX_CONSUMER_EXITCODES_H_
#define LUMIVEX_CONSUMER_EXITCODES_H_

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
};

struct ExitCodeRow {
  ExitCode code;
  const char *text;
};

/// The table above as `lumivex --help` prints it.
constexpr ExitCodeRow kExitCodes[] = {
    {ExitCode::Success, "done"},
    {ExitCode::Usage, "the command line cannot be understood"},
    {ExitCode::NoProducer, "no Producer found, or the one named cannot be loaded"},
    {ExitCode::NoDevice, "no such camera, or the name fits several"},
    {ExitCode::DeviceBusy, "the camera is busy"},
    {ExitCode::GenTL, "a function of the Producer failed"},
    {ExitCode::Output, "a picture cannot be written"},
    {ExitCode::Timeout, "no frame came in time"},
    {ExitCode::Internal, "lumivex itself failed, as for want of memory"},
    {ExitCode::NoFeature, "no feature of this name"},
    {ExitCode::FeatureAccess, "the feature cannot be read or written now"},
    {ExitCode::FeatureValue, "the feature does not take this value"},
    {ExitCode::Interrupted, "interrupted (SIGINT or SIGTERM)"},
};

}  // namespace Lumivex::Consumer

#endif  // LUMIVEX_CONSUMER_EXITCODES_H_
