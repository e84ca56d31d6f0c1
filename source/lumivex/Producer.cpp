// SPDX-License-Identifier: MIT
#include "Producer.h"

#include <cstring>

#include "Text.h"

namespace Lumivex::Consumer {
namespace {

template <class Value>
Value Copy(const unsigned char *bytes) {
  Value value;
  std::memcpy(&value, bytes, sizeof(value));
  return value;
}

}  // namespace

CProducer::CProducer(const std::filesystem::path &file) : m_File(file), m_Library(file) {
  ForEachFunction(m_Api, [this](auto &function) {
    void *symbol = m_Library.Symbol(function.name);
    if (symbol == nullptr) {
      throw CCommandError(ExitCode::NoProducer,
                          "'" + m_File.string() + "' is no GenTL Producer: it has no function " + function.name);
    }
    function.address = reinterpret_cast<decltype(function.address)>(symbol);
  });
  Call(m_Api.GCInitLib);
}

CProducer::~CProducer() { m_Api.GCCloseLib.address(); }

CGenTLError CProducer::Failure(const char *function, GenTL::GC_ERROR result) const {
  // The size first: a room that is too small would make the Producer replace the text by that complaint.
  GenTL::GC_ERROR code = GenTL::GC_ERR_SUCCESS;
  std::size_t size = 0;
  std::string text;
  if (m_Api.GCGetLastError.address(&code, nullptr, &size) == GenTL::GC_ERR_SUCCESS) {
    std::vector<char> room(size + 1, '\0');
    size = room.size();
    if (m_Api.GCGetLastError.address(&code, room.data(), &size) == GenTL::GC_ERR_SUCCESS) {
      room.back() = '\0';
      text = room.data();
    }
  }
  return CGenTLError(function, result, text);
}

std::string CProducer::Info(GenTL::TL_INFO_CMD command) const {
  try {
    return OneLine(QueryText(m_Api.GCGetInfo, command));
  } catch (const CGenTLError &) {
    return "";
  }
}

uint64_t CProducer::DecodeNumber(GenTL::INFO_DATATYPE type, const NumberBytes &bytes, std::size_t size) {
  switch (type) {
    case GenTL::INFO_DATATYPE_BOOL8:
      return bytes[0];
    case GenTL::INFO_DATATYPE_INT16:
      return static_cast<uint64_t>(int64_t{Copy<int16_t>(bytes.data())});
    case GenTL::INFO_DATATYPE_UINT16:
      return Copy<uint16_t>(bytes.data());
    case GenTL::INFO_DATATYPE_INT32:
      return static_cast<uint64_t>(int64_t{Copy<int32_t>(bytes.data())});
    case GenTL::INFO_DATATYPE_UINT32:
      return Copy<uint32_t>(bytes.data());
    default:
      // The 64-bit types, and answers that do not state theirs.
      return size == sizeof(uint32_t) ? Copy<uint32_t>(bytes.data()) : Copy<uint64_t>(bytes.data());
  }
}

}  // namespace Lumivex::Consumer
