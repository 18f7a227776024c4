#include "tool/StepFiles.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "tool/Files.h"
#include "tool/Messages.h"

namespace tgx::tool {
namespace {

constexpr std::uint32_t kForms = 4;
constexpr std::uint32_t kLayoutTables = 9;
/// The library reads a description of tables up to the first line that is longer,
constexpr std::uint64_t kLongestLine = 1023;
/// none with more lines that are not blank,
constexpr std::uint64_t kMostLines = 1'000'000;
/// and no file but a PDF that is larger.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20U;

/// Takes the pieces of a file and finds lines that are too long or too many.
class LineLengths {
 public:
  explicit LineLengths(const std::string& path) : path_(path) {}

  void Add(const char* bytes, std::size_t count) {
    while (const auto* end = static_cast<const char*>(std::memchr(bytes, '\n', count))) {
      const auto piece = static_cast<std::size_t>(end - bytes);
      AddPiece(piece);
      length_ = 0;
      ++line_;
      bytes = end + 1;
      count -= piece + 1;
    }
    AddPiece(count);
  }

 private:
  void AddPiece(std::size_t count) {
    if (length_ == 0 && count > 0 && ++filledLines_ > kMostLines) {
      throw Failure(path_, "has more than " + std::to_string(kMostLines) + " lines");
    }
    length_ += count;
    if (length_ <= kLongestLine) return;
    throw Failure(path_, "line " + std::to_string(line_) + " is longer than " + std::to_string(kLongestLine) + " bytes");
  }

  const std::string& path_;
  std::uint64_t line_ = 1;
  std::uint64_t filledLines_ = 0;
  std::uint64_t length_ = 0;
};

void RequireFewShortLines(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  LineLengths lengths(path);
  std::vector<char> buffer(std::size_t{64} << 10U);
  while (file) {
    file.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    lengths.Add(buffer.data(), static_cast<std::size_t>(file.gcount()));
  }
  if (!file.eof()) throw Failure(path, "cannot be read");
}

}  // namespace

void RequireUsableFile(const StepCall& step) {
  if (step.path.empty()) return;
  RequireReadable(step.path);
  if (step.kind == StepKind::kAction && step.number == kForms) return;
  if (std::filesystem::file_size(step.path) > kLargestFile) throw Failure(step.path, "is larger than 64 MiB");
  if (step.kind == StepKind::kAction && step.number == kLayoutTables) RequireFewShortLines(step.path);
}

}  // namespace tgx::tool
