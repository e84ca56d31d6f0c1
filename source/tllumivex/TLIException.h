// SPDX-License-Identifier: MIT
/// @file
/// The 18 error classes. What each becomes at the exported boundary is told by the catch sequence of TLIClient.
#pragma once

#include <string>

#include "LVXException.h"

namespace GenICam::Client {

/// printf-style formatting into at most 255 characters; what is longer is cut. `%I64u` and `%I64X` mean unsigned
/// 64-bit decimal and upper-case hexadecimal.
std::string FormatMessageText(const char *pFormat, ...);

// The two forms of a constructor: a constant text, or a string that was put together.
#define LVX_TEXT_FORM(name)                                                            \
  name(const char *pMessage, const char *pFunction, const char *pFile, uint32_t nLine) \
      : CLVXException(pMessage, pFunction, pFile, nLine) {}
#define LVX_STRING_FORM(name)                                                                   \
  name(const std::string &strMessage, const char *pFunction, const char *pFile, uint32_t nLine) \
      : CLVXException(strMessage, pFunction, pFile, nLine) {}

/// A handle or pointer is not of the class it has to be.
class dynamic_cast_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(dynamic_cast_error)
};

/// A failure of the library or of the platform, and any other that has no class of its own.
class unknown_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(unknown_error)
  LVX_STRING_FORM(unknown_error)
};

/// An address or count beyond what exists.
class outofrange_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(outofrange_error)
  LVX_STRING_FORM(outofrange_error)
};

/// A register that cannot be reached in the way asked for.
class access_error : public Lumivex::CLVXException {
 public:
  LVX_STRING_FORM(access_error)
};

/// GCInitLib has not been called.
class notinitialized_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(notinitialized_error)
};

/// The module does not offer this.
class notimplemented_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(notimplemented_error)
  LVX_STRING_FORM(notimplemented_error)
};

/// Already open, enabled, announced or queued.
class resourceinuse_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(resourceinuse_error)
  LVX_STRING_FORM(resourceinuse_error)
};

/// Not allowed with these access flags or in this state.
class accessdenied_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(accessdenied_error)
};

/// A handle that stands for nothing of the kind asked for.
class invalidhandle_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(invalidhandle_error)
  LVX_STRING_FORM(invalidhandle_error)
};

/// Nothing throws it; the catch sequence names it.
class invalidid_error : public Lumivex::CLVXException {};

/// Nothing throws it; the catch sequence names it.
class nodata_error : public Lumivex::CLVXException {};

/// An argument of the caller is wrong.
class invalidparameter_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(invalidparameter_error)
  LVX_STRING_FORM(invalidparameter_error)
};

/// A transfer to the camera or the grabber failed.
class io_error : public Lumivex::CLVXException {
 public:
  LVX_STRING_FORM(io_error)
};

/// Time ran out, in a transfer or in a wait.
class timeout_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(timeout_error)
  LVX_STRING_FORM(timeout_error)
};

/// A wait was ended from outside.
class abort_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(abort_error)
};

/// A buffer is too small, or there is none.
class invalidbuffer_error : public Lumivex::CLVXException {
 public:
  LVX_TEXT_FORM(invalidbuffer_error)
  LVX_STRING_FORM(invalidbuffer_error)
};

/// Nothing throws it; the catch sequence names it.
class notavailable_error : public Lumivex::CLVXException {};

/// Nothing throws it; the catch sequence names it.
class invalidaddress_error : public Lumivex::CLVXException {};

#undef LVX_TEXT_FORM
#undef LVX_STRING_FORM

}  // namespace GenICam::Client
