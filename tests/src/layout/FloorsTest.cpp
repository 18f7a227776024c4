// Which file may include what.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Paths.h"

namespace tgx {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

struct Include {
  std::string file;    // from the project root, "src/api/Dispatch.cpp"
  std::string target;  // as it stands between the marks
  bool quoted;
  std::string Text() const { return file + " includes " + target; }
};

/// The target of an include directive with its marks, empty for any other line.
std::string TargetOf(const std::string& line) {
  const std::size_t hash = line.find_first_not_of(" \t");
  if (hash == std::string::npos || line[hash] != '#') return "";
  const std::size_t word = line.find_first_not_of(" \t", hash + 1);
  if (word == std::string::npos || line.compare(word, 7, "include") != 0) return "";
  const std::size_t open = line.find_first_of("<\"", word);
  const std::size_t close = open == std::string::npos ? open : line.find_first_of(">\"", open + 1);
  return close == std::string::npos ? "" : line.substr(open, close - open + 1);
}

std::vector<Include> IncludesBelow(const std::string& folder) {
  std::vector<Include> includes;
  const fs::path root = test::SourcePath("");
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    const std::string ending = entry.path().extension().string();
    if (ending != ".h" && ending != ".cpp" && ending != ".c" && ending != ".def") continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      const std::string target = TargetOf(line);
      if (target.empty()) continue;
      const std::string inside = target.substr(1, target.size() - 2);
      includes.push_back({fs::relative(entry.path(), root).generic_string(), inside, target[0] == '"'});
    }
  }
  return includes;
}

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

bool IsOneOf(const std::string& text, const std::vector<std::string>& names) {
  return std::find(names.begin(), names.end(), text) != names.end();
}

/// C++ headers have neither a folder nor an ending.
bool IsStandard(const Include& include) {
  return !include.quoted && include.target.find_first_of("./") == std::string::npos;
}

template <typename Rule>
std::vector<std::string> Breaking(const std::string& folder, const Rule& isAllowed) {
  std::vector<std::string> breaking;
  for (const Include& include : IncludesBelow(folder)) {
    if (!isAllowed(include)) breaking.push_back(include.Text());
  }
  return breaking;
}

/// What every floor of the library stands on: the host binding, the exception of a raise, and the silent diagnostic.
const std::vector<std::string> kGround = {"src/api/HostBinding.h", "src/api/HostException.h", "src/api/StructureError.h"};

int FloorOf(const std::string& path) {
  if (IsOneOf(path, kGround)) return 0;
  if (StartsWith(path, "src/api/HostBinding") || StartsWith(path, "src/api/HostException")) return 0;
  if (StartsWith(path, "src/api/StructureError")) return 0;
  if (StartsWith(path, "src/api/")) return 3;
  if (StartsWith(path, "src/actions/") || StartsWith(path, "src/fixes/")) return 2;
  for (const char* folder : {"wrappers", "common", "tables", "forms", "logging"}) {
    if (StartsWith(path, std::string("src/") + folder + "/")) return 1;
  }
  return -1;
}

TEST(Floors, IncludesAreFound) {
  const std::vector<Include> includes = IncludesBelow("src");
  const bool found = std::any_of(includes.begin(), includes.end(), [](const Include& include) {
    return include.file == "src/api/Exports.cpp" && include.target == "src/api/Dispatch.h" && include.quoted;
  });
  EXPECT_TRUE(found);
}

TEST(Floors, LibraryIncludesItsInterfaceTheStandardLibraryAndTinyxml2) {
  EXPECT_THAT(Breaking("src",
                       [](const Include& include) {
                         if (include.quoted) return StartsWith(include.target, "src/");
                         return IsStandard(include) || IsOneOf(include.target, {"tgx/tgx.h", "tgx/host.h", "tinyxml2.h"});
                       }),
              IsEmpty());
}

TEST(Floors, LibraryIncludesOnlyItsOwnFloorAndThoseBelow) {
  EXPECT_THAT(Breaking("src",
                       [](const Include& include) {
                         return !include.quoted ||
                                (FloorOf(include.target) >= 0 && FloorOf(include.file) >= FloorOf(include.target));
                       }),
              IsEmpty());
}

TEST(Floors, HostIncludesNothingOfTheLibrary) {
  EXPECT_THAT(Breaking("host",
                       [](const Include& include) {
                         if (include.quoted) return StartsWith(include.target, "host/");
                         return !StartsWith(include.target, "src/") && include.target != "tgx/tgx.h";
                       }),
              IsEmpty());
}

TEST(Floors, ToolIncludesOnlyThePublicHeadersAndItself) {
  EXPECT_THAT(
      Breaking("tool", [](const Include& include) { return !include.quoted || StartsWith(include.target, "tool/"); }),
      IsEmpty());
}

TEST(Floors, PublicHeadersStandAlone) {
  EXPECT_THAT(Breaking("include",
                       [](const Include& include) {
                         return include.quoted ? include.target.find("..") == std::string::npos
                                               : IsOneOf(include.target, {"stddef.h", "stdint.h"});
                       }),
              IsEmpty());
}

}  // namespace
}  // namespace tgx
