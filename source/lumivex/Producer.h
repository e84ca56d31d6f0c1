// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "FunctionTable.h"
#include "GenTLError.h"
#include "Platform.h"

namespace Lumivex::Consumer {

/// One loaded Producer: its library, its functions, and the calls that turn failures into exceptions.
///
/// Ownership: shared by the modules opened through it; they all close before it does. The constructor loads the file,
/// binds the functions and starts the Producer (GCInitLib); the destructor ends it and unloads the file.
/// Threads: one. The text of a failure is asked for in the thread of the call.
/// Throws: CCommandError(NoProducer) from the constructor, CGenTLError from Call and from the queries.
class CProducer {
 public:
  explicit CProducer(const std::filesystem::path &file);
  CProducer(const CProducer &) = delete;
  CProducer &operator=(const CProducer &) = delete;
  ~CProducer();

  const FunctionTable &Api() const noexcept { return m_Api; }

  /// Calls a function and throws unless it succeeds.
  template <class Pointer, class... Arguments>
  void Call(const Function<Pointer> &function, Arguments... arguments) const {
    const GenTL::GC_ERROR result = function.address(arguments...);
    if (result != GenTL::GC_ERR_SUCCESS) {
      throw Failure(function.name, result);
    }
  }

  /// The error of a call that has just failed, with the Producer's text.
  CGenTLError Failure(const char *function, GenTL::GC_ERROR result) const;

  /// The answer of an info function as text. The arguments are those before the type.
  template <class Pointer, class... Arguments>
  std::string QueryText(const Function<Pointer> &function, Arguments... arguments) const {
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    std::size_t size = 0;
    Call(function, arguments..., &type, nullptr, &size);
    std::vector<char> text(size + 1, '\0');
    size = text.size();
    Call(function, arguments..., &type, text.data(), &size);
    text.back() = '\0';
    return text.data();
  }

  /// The answer of an id function, which reports no type, as text.
  template <class Pointer, class... Arguments>
  std::string QueryId(const Function<Pointer> &function, Arguments... arguments) const {
    std::size_t size = 0;
    Call(function, arguments..., nullptr, &size);
    std::vector<char> text(size + 1, '\0');
    size = text.size();
    Call(function, arguments..., text.data(), &size);
    text.back() = '\0';
    return text.data();
  }

  /// The answer of an info function as number; signed answers are sign-extended.
  template <class Pointer, class... Arguments>
  uint64_t QueryNumber(const Function<Pointer> &function, Arguments... arguments) const {
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    NumberBytes bytes{};
    std::size_t size = bytes.size();
    Call(function, arguments..., &type, static_cast<void *>(bytes.data()), &size);
    return DecodeNumber(type, bytes, size);
  }

  /// The answer of an info function as address.
  template <class Pointer, class... Arguments>
  void *QueryAddress(const Function<Pointer> &function, Arguments... arguments) const {
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    void *pAnswer = nullptr;
    std::size_t size = sizeof(pAnswer);
    Call(function, arguments..., &type, static_cast<void *>(&pAnswer), &size);
    return pAnswer;
  }

  /// As QueryNumber; nothing when the Producer does not answer this question.
  template <class Pointer, class... Arguments>
  std::optional<uint64_t> TryQueryNumber(const Function<Pointer> &function, Arguments... arguments) const {
    GenTL::INFO_DATATYPE type = GenTL::INFO_DATATYPE_UNKNOWN;
    NumberBytes bytes{};
    std::size_t size = bytes.size();
    if (function.address(arguments..., &type, static_cast<void *>(bytes.data()), &size) != GenTL::GC_ERR_SUCCESS) {
      return std::nullopt;
    }
    return DecodeNumber(type, bytes, size);
  }

  /// One of the Producer's own texts; empty when it does not answer.
  std::string Info(GenTL::TL_INFO_CMD command) const;

 private:
  using NumberBytes = std::array<unsigned char, 8>;

  static uint64_t DecodeNumber(GenTL::INFO_DATATYPE type, const NumberBytes &bytes, std::size_t size);

  std::filesystem::path m_File;
  CDynamicLibrary m_Library;
  FunctionTable m_Api;
};

}  // namespace Lumivex::Consumer
