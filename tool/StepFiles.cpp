#include "tool/StepFiles.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "tool/Document.h"
#include "tool/Files.h"
#include "tool/Messages.h"

namespace tgx::tool {
namespace {

constexpr std::uint32_t kStyleNames = 2;
constexpr std::uint32_t kForms = 4;
constexpr std::uint32_t kContents = 5;
constexpr std::uint32_t kLayoutTables = 9;
/// The library reads a list of tables up to the first line that is longer,
constexpr std::uint64_t kLongestLine = 1023;
/// none with more lines that are not blank,
constexpr std::uint64_t kMostLines = 1'000'000;
/// and no file but a PDF that is larger.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20U;

std::string ReadWhole(const std::string& path) {
  if (std::filesystem::file_size(path) > kLargestFile) throw Failure(path, "is larger than 64 MiB");
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) throw Failure(path, "cannot be read");
  return text;
}

/// "Table", a tabulator and a number.
bool NamesTable(std::string_view line) {
  constexpr std::string_view kWord = "Table\t";
  return line.starts_with(kWord) && line.size() > kWord.size() &&
         std::isdigit(static_cast<unsigned char>(line[kWord.size()])) != 0;
}

void RequireTables(const std::string& path) {
  const std::string text = ReadWhole(path);
  std::uint64_t lines = 0;
  std::uint64_t filledLines = 0;
  bool namesTable = false;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view line = std::string_view(text).substr(at, text.find('\n', at) - at);
    ++lines;
    if (line.size() > kLongestLine) {
      throw Failure(path, "line " + std::to_string(lines) + " is longer than " + std::to_string(kLongestLine) + " bytes");
    }
    if (!line.empty() && ++filledLines > kMostLines) {
      throw Failure(path, "has more than " + std::to_string(kMostLines) + " lines");
    }
    namesTable = namesTable || NamesTable(line);
    at += line.size() + 1;
  }
  if (!namesTable) throw Failure(path, "is no list of tables: no line has \"Table\", a tabulator and a number");
}

/// A file of another kind says nothing to the step, which takes the marks away all the same.
void RequireElement(const std::string& path, const std::string& element, const std::string& what) {
  const std::string text = ReadWhole(path);
  const std::size_t begin = text.find("<" + element);
  if (begin == std::string::npos) throw Failure(path, "is no " + what + ": it has no element " + element);
  if (text.find("</" + element, begin) != std::string::npos) return;
  throw Failure(path, "is no whole " + what + ": its element " + element + " does not end");
}

}  // namespace

void RequireUsableFile(const StepCall& step) {
  if (step.path.empty()) return;
  RequireReadable(step.path);
  if (step.kind != StepKind::kAction) return;
  if (step.number == kStyleNames) RequireElement(step.path, "ID_Document", "list of style names");
  if (step.number == kForms) RequireOpensWithoutPassword(step.path);
  if (step.number == kContents) RequireElement(step.path, "TOC_Item", "table of contents");
  if (step.number == kLayoutTables) RequireTables(step.path);
}

}  // namespace tgx::tool
