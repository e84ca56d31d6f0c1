// SPDX-License-Identifier: MIT
/// @file
/// The built file: what it exports, what it imports, where it looks for its libraries.
#include <algorithm>
#include <cstring>
#include <elf.h>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Tree.h"

using namespace FrameTests;

namespace {

using Names = std::set<std::string>;

/// The dynamic part of a 64-bit ELF file.
class CElfFile {
 public:
  explicit CElfFile(std::string bytes) : m_strBytes(std::move(bytes)) {
    const auto header = At<Elf64_Ehdr>(0);
    EXPECT_EQ(0, std::memcmp(header.e_ident, ELFMAG, SELFMAG));
    for (unsigned i = 0; i < header.e_shnum; ++i) {
      const auto section = At<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr));
      if (section.sh_type == SHT_DYNSYM) {
        ReadSymbols(section, header);
      } else if (section.sh_type == SHT_DYNAMIC) {
        ReadDynamic(section, header);
      }
    }
  }

  Names exports;
  Names nonFunctions;  ///< exports that are no functions
  Names imports;
  std::vector<std::string> needed;
  std::vector<std::string> runPaths;
  std::vector<std::string> rPaths;

 private:
  template <class T>
  T At(size_t offset) const {
    T value{};
    if (offset + sizeof(T) <= m_strBytes.size()) {
      std::memcpy(&value, m_strBytes.data() + offset, sizeof(T));
    }
    return value;
  }
  std::string Text(size_t offset) const { return std::string(m_strBytes.c_str() + offset); }
  size_t StringsOf(const Elf64_Shdr &section, const Elf64_Ehdr &header) const {
    return At<Elf64_Shdr>(header.e_shoff + section.sh_link * sizeof(Elf64_Shdr)).sh_offset;
  }
  void ReadSymbols(const Elf64_Shdr &section, const Elf64_Ehdr &header) {
    const size_t strings = StringsOf(section, header);
    for (size_t at = sizeof(Elf64_Sym); at < section.sh_size; at += sizeof(Elf64_Sym)) {
      const auto symbol = At<Elf64_Sym>(section.sh_offset + at);
      const std::string name = Text(strings + symbol.st_name);
      if (symbol.st_shndx == SHN_UNDEF) {
        imports.insert(name);
      } else {
        exports.insert(name);
        if (ELF64_ST_TYPE(symbol.st_info) != STT_FUNC) {
          nonFunctions.insert(name);
        }
      }
    }
  }
  void ReadDynamic(const Elf64_Shdr &section, const Elf64_Ehdr &header) {
    const size_t strings = StringsOf(section, header);
    for (size_t at = 0; at < section.sh_size; at += sizeof(Elf64_Dyn)) {
      const auto entry = At<Elf64_Dyn>(section.sh_offset + at);
      const std::string text = Text(strings + (entry.d_tag == DT_NULL ? 0 : entry.d_un.d_val) * IsText(entry.d_tag));
      switch (entry.d_tag) {
        case DT_NEEDED:
          needed.push_back(text);
          break;
        case DT_RUNPATH:
          runPaths.push_back(text);
          break;
        case DT_RPATH:
          rPaths.push_back(text);
          break;
        default:
          break;
      }
    }
  }
  static size_t IsText(Elf64_Sxword tag) { return tag == DT_NEEDED || tag == DT_RUNPATH || tag == DT_RPATH ? 1 : 0; }
  std::string m_strBytes;
};

class BuiltFile : public testing::Test {
 protected:
  void SetUp() override {
    auto bytes = ReadFile(CProducer::Path());
    ASSERT_TRUE(bytes);
    m_strBytes = *bytes;
    m_File.emplace(std::move(*bytes));
  }
  std::string m_strBytes;
  std::optional<CElfFile> m_File;
};

TEST_F(BuiltFile, ExportsThe52FunctionsAndNothingElse) {
  Names expected;
  for (const ExportRow &row : Exports()) {
    expected.insert(row.name);
  }
  EXPECT_EQ(expected, m_File->exports);
  EXPECT_EQ(Names{}, m_File->nonFunctions);
}

TEST_F(BuiltFile, FunctionsOfLaterVersionsAreNotThere) {
  CProducer::Instance().Load();
  for (const char *name :
       {"IFGetParentTL", "DevGetParentIF", "DSGetParentDev", "DSGetNumBufferParts", "DSGetBufferPartInfo"}) {
    EXPECT_EQ(nullptr, CProducer::Instance().Symbol(name)) << name;
  }
  EXPECT_NE(nullptr, CProducer::Instance().Symbol("GCInitLib"));
}

TEST_F(BuiltFile, LooksForItsLibrariesBesideItself) {
  EXPECT_EQ(std::vector<std::string>{"$ORIGIN"}, m_File->runPaths);
  EXPECT_TRUE(m_File->rPaths.empty());
}

TEST_F(BuiltFile, NeedsTheGrabberLibraryAndOnlyWhatItMay) {
  EXPECT_EQ(1, std::count(m_File->needed.begin(), m_File->needed.end(), "libgrblx64.so"));
  // The sanitizers' runtimes come in with an instrumented build.
  const std::vector<std::string> allowed = {"libgrblx64.so", "libboost_", "libstdc++.so", "libgcc_s.so", "libc.so",
                                            "libm.so",       "ld-linux-", "libasan.so",   "libubsan.so", "libtsan.so"};
  for (const std::string &name : m_File->needed) {
    EXPECT_TRUE(std::any_of(allowed.begin(), allowed.end(), [&name](const std::string &begin) {
      return name.compare(0, begin.size(), begin) == 0;
    })) << name;
  }
}

TEST_F(BuiltFile, ImportsTheElevenOperationsOfTheGrabberLibrary) {
  Names operations;
  for (const std::string &name : m_File->imports) {
    if (name.compare(0, 4, "GRB_") == 0) {
      operations.insert(name);
    }
  }
  EXPECT_EQ((Names{"GRB_Create", "GRB_Destroy", "GRB_Open", "GRB_Close", "GRB_ParameterGet", "GRB_ParameterSet",
                   "GRB_Action", "GRB_StreamRead", "GRB_ControlRead", "GRB_ControlWrite", "GRB_ErrHandlerDefault"}),
            operations);
}

// All five, BUFFREGS too, which nothing in the library reads.
TEST_F(BuiltFile, HoldsEachDescriptionOnceByteForByte) {
  for (const char *name : {"LumivexTLSystem.xml", "LumivexTLInterface.xml", "LumivexTLDevice.xml",
                           "LumivexTLDataStream.xml", "LumivexTLBuffer.xml"}) {
    const auto xml = ReadFile(std::string(LUMIVEX_XML_DIR "/") + name);
    ASSERT_TRUE(xml) << name;
    const size_t first = m_strBytes.find(*xml);
    ASSERT_NE(std::string::npos, first) << name;
    EXPECT_EQ(std::string::npos, m_strBytes.find(*xml, first + 1)) << name;
  }
}

// The system starts no thread.
TEST_F(BuiltFile, ImportsNothingThatStartsAThread) {
  for (const std::string &name : m_File->imports) {
    EXPECT_EQ(std::string::npos, name.find("pthread_create")) << name;
    EXPECT_EQ(std::string::npos, name.find("_M_start_thread")) << name;
    EXPECT_EQ(std::string::npos, name.find("start_thread_noexcept")) << name;
  }
}

}  // namespace
