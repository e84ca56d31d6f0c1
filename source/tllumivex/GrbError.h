// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace GenICam::Client {

/// The text of the last failure of the frame-grabber library on one thread.
///
/// Owned by a process-wide CPerThread: made empty at the first use on a thread, deleted when the thread ends. The error
/// hooks replace the text, nothing clears it: a failure that called no hook shows the one before. Takes no lock.
class CGrbError {
 public:
  /// The calling thread's object.
  static CGrbError &Get();
  /// The calling thread's text; none behind the end of this library's own objects, while the process ends.
  static std::string GetText();

  void SetText(const std::string &strText) { m_strText = strText; }

 private:
  std::string m_strText;
};

}  // namespace GenICam::Client
