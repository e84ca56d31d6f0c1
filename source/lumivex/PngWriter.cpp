// SPDX-License-Identifier: MIT
#include "PngWriter.h"

#include <cerrno>
#include <csetjmp>
#include <string>
#include <system_error>
#include <utility>

#include <png.h>

#include "CommandError.h"
#include "Platform.h"

namespace Lumivex::Consumer {
namespace {

namespace fs = std::filesystem;

// Leftovers of a killed process may have our passing name; so many of them are too many.
constexpr int kPassingNames = 100;

// Frames arrive faster than the best compression works.
constexpr int kCompressionLevel = 3;

std::string SystemReason(int error) { return std::generic_category().message(error); }

struct EncodeError {
  char text[256];
};

[[noreturn]] void OnPngError(png_structp pPng, png_const_charp text) {
  auto *pError = static_cast<EncodeError *>(png_get_error_ptr(pPng));
  std::snprintf(pError->text, sizeof(pError->text), "%s", text);
  png_longjmp(pPng, 1);
}

void OnPngWarning(png_structp, png_const_charp) {}

// libpng leaves this function by a jump, so nothing with a destructor may stand in it.
void EncodePicture(png_structp pPng, png_infop pInfo, std::FILE *pFile, const Picture &picture) {
  png_init_io(pPng, pFile);
  png_set_compression_level(pPng, kCompressionLevel);
  png_set_IHDR(pPng, pInfo, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
               static_cast<int>(picture.bitDepth), picture.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);

  const auto bits = static_cast<png_byte>(picture.sourceBits);
  png_color_8 significant = {bits, bits, bits, bits, 0};
  png_set_sBIT(pPng, pInfo, &significant);

  char key[] = "PixelFormat";
  png_text text = {};
  text.compression = PNG_TEXT_COMPRESSION_NONE;
  text.key = key;
  text.text = const_cast<png_charp>(picture.pFormatName);
  png_set_text(pPng, pInfo, &text, 1);

  png_write_info(pPng, pInfo);
  for (std::size_t y = 0; y < picture.height; ++y) {
    png_write_row(pPng, picture.samples.data() + y * picture.BytesPerLine());
  }
  png_write_end(pPng, pInfo);
}

// False, with the reason, when libpng gives up.
bool Encode(std::FILE *pFile, const Picture &picture, EncodeError &error) {
  png_structp pPng = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error, OnPngError, OnPngWarning);
  if (pPng == nullptr) {
    return false;
  }
  png_infop pInfo = png_create_info_struct(pPng);
  // NOLINTNEXTLINE(cert-err52-cpp): it is the only way in which libpng reports failures.
  if (pInfo == nullptr || setjmp(png_jmpbuf(pPng)) != 0) {
    png_destroy_write_struct(&pPng, &pInfo);
    return false;
  }
  EncodePicture(pPng, pInfo, pFile, picture);
  png_destroy_write_struct(&pPng, &pInfo);
  return true;
}

}  // namespace

CPngWriter::CPngWriter(const fs::path &target) : m_Target(target), m_Final(target) {
  if (!m_Target.has_filename()) {
    Fail("that is the name of a folder");
  }
  std::error_code error;
  const fs::file_status status = fs::status(m_Target, error);
  if (fs::is_directory(status)) {
    Fail("that is a folder");
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    Fail("that is not an ordinary file");
  }
  if (fs::is_symlink(fs::symlink_status(m_Target, error))) {
    // Renaming onto a link would replace the link and leave alone the file that the user means.
    m_Final = fs::weakly_canonical(m_Target, error);
    if (error) {
      Fail(error.message());
    }
  }
  int reason = 0;
  for (int i = 0; i < kPassingNames && m_pFile == nullptr; ++i) {
    m_Passing = m_Final;
    m_Passing.replace_filename(".lumivex-" + std::to_string(ProcessNumber()) + "-" + std::to_string(i) + ".part");
    m_pFile = CreateNewFile(m_Passing);
    reason = errno;
    if (m_pFile == nullptr && reason != EEXIST) {
      break;
    }
  }
  if (m_pFile == nullptr) {
    m_Passing.clear();
    Fail(SystemReason(reason));
  }
}

CPngWriter::~CPngWriter() {
  if (m_pFile != nullptr) {
    std::fclose(m_pFile);
  }
  if (!m_Passing.empty()) {
    std::error_code ignored;
    fs::remove(m_Passing, ignored);
  }
}

void CPngWriter::Write(const Picture &picture) {
  EncodeError encodeError = {"out of memory"};
  errno = 0;
  if (!Encode(m_pFile, picture, encodeError)) {
    const int reason = errno;
    Fail(std::ferror(m_pFile) != 0 && reason != 0 ? SystemReason(reason) : encodeError.text);
  }
  // The last bytes reach the file here: a full disk may show only now.
  std::FILE *pFile = std::exchange(m_pFile, nullptr);
  if (std::fclose(pFile) != 0) {
    Fail(SystemReason(errno));
  }
  std::error_code error;
  fs::rename(m_Passing, m_Final, error);
  if (error) {
    Fail(error.message());
  }
  m_Passing.clear();
}

void CPngWriter::Fail(const std::string &reason) const {
  throw CCommandError(ExitCode::Output, "cannot write '" + m_Target.string() + "': " + reason);
}

}  // namespace Lumivex::Consumer
