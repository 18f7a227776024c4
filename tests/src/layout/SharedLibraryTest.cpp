// The built shared library from the outside: what it exports and what it needs.

#include <elf.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Paths.h"

namespace tgx {
namespace {

using testing::UnorderedElementsAre;

/// A 64-bit little-endian ELF file, as far as its dynamic section is concerned.
class ElfFile {
 public:
  explicit ElfFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    bytes_.assign(std::istreambuf_iterator<char>(in), {});
    const auto header = Read<Elf64_Ehdr>(0);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) throw std::runtime_error(path + " is no ELF file");
    for (int i = 0; i < header.e_shnum; ++i) {
      sections_.push_back(Read<Elf64_Shdr>(header.e_shoff + static_cast<std::size_t>(i) * sizeof(Elf64_Shdr)));
    }
  }

  std::set<std::string> Exported() const {
    std::set<std::string> names;
    ForEach<Elf64_Sym>(SHT_DYNSYM, [&names](const Elf64_Sym& symbol, const std::string& name) {
      const int binding = ELF64_ST_BIND(symbol.st_info);
      if (symbol.st_shndx != SHN_UNDEF && (binding == STB_GLOBAL || binding == STB_WEAK)) names.insert(name);
    });
    return names;
  }

  std::set<std::string> Needed() const {
    std::set<std::string> names;
    for (const Elf64_Shdr& section : sections_) {
      if (section.sh_type != SHT_DYNAMIC) continue;
      for (std::size_t at = 0; at < section.sh_size; at += sizeof(Elf64_Dyn)) {
        const auto entry = Read<Elf64_Dyn>(section.sh_offset + at);
        if (entry.d_tag == DT_NEEDED) names.insert(Text(section, entry.d_un.d_val));
      }
    }
    return names;
  }

 private:
  template <typename T>
  T Read(std::size_t offset) const {
    if (offset + sizeof(T) > bytes_.size()) throw std::runtime_error("the ELF file is cut short");
    T value;
    std::memcpy(&value, bytes_.data() + offset, sizeof value);
    return value;
  }

  std::string Text(const Elf64_Shdr& user, std::size_t offset) const {
    return bytes_.data() + sections_.at(user.sh_link).sh_offset + offset;
  }

  template <typename Entry, typename Visit>
  void ForEach(Elf64_Word type, const Visit& visit) const {
    for (const Elf64_Shdr& section : sections_) {
      if (section.sh_type != type) continue;
      for (std::size_t at = 0; at < section.sh_size; at += sizeof(Entry)) {
        const auto entry = Read<Entry>(section.sh_offset + at);
        visit(entry, Text(section, entry.st_name));
      }
    }
  }

  std::string bytes_;
  std::vector<Elf64_Shdr> sections_;
};

const ElfFile& Library() {
  static const ElfFile file(test::BinaryPath("lib/libtgx.so"));
  return file;
}

TEST(SharedLibrary, ExportsFourFunctions) {
  EXPECT_THAT(Library().Exported(), UnorderedElementsAre("TGX_init", "TGX_Action", "TGX_Fixups", "TGX_GetLastError"));
}

TEST(SharedLibrary, NeedsTinyxml2AndTheLanguagesOwnLibrariesAlone) {
  const std::set<std::string> allowed = {"libtinyxml2.so",     "libstdc++.so",        "libm.so",    "libgcc_s.so", "libc.so",
                                         "ld-linux-x86-64.so", "ld-linux-aarch64.so", "libasan.so", "libubsan.so"};
  const std::set<std::string> needed = Library().Needed();
  EXPECT_FALSE(needed.empty());
  for (const std::string& name : needed) {
    EXPECT_EQ(allowed.count(name.substr(0, name.find(".so") + 3)), 1U) << name;
  }
}

}  // namespace
}  // namespace tgx
