#include "tests/support/Viewers.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/Paths.h"

namespace tgx::test {
namespace {

/// A file of the test's own, for as long as a viewer needs it.
class TemporaryPdf {
 public:
  explicit TemporaryPdf(const std::string& bytes) {
    static std::atomic<int> count = 0;
    path_ = std::filesystem::path(testing::TempDir()) /
            ("tgx-viewer-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".pdf");
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  ~TemporaryPdf() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryPdf(const TemporaryPdf&) = delete;
  TemporaryPdf& operator=(const TemporaryPdf&) = delete;

  std::string Path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

/// What stands between `before` and `after` in a line; empty without them.
std::string Between(const std::string& line, const std::string& before, const std::string& after) {
  const auto start = line.find(before);
  if (start == std::string::npos) return {};
  const auto from = start + before.size();
  const auto end = line.find(after, from);
  return end == std::string::npos ? std::string() : line.substr(from, end - from);
}

double Number(const std::string& line, const std::string& attribute) {
  return std::stod(Between(line, attribute + "=\"", "\""));
}

}  // namespace

std::string OutputOf(const std::string& command, const std::string& pdf) {
  const TemporaryPdf file(pdf);
  std::string line = command;
  line.replace(line.find("{}"), 2, "'" + file.Path() + "'");
  FILE* pipe = popen(line.c_str(), "r");  // NOLINT(cert-env33-c): the path is the test's own
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  std::string output;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), count);
  if (pclose(pipe) != 0) throw std::runtime_error(command + " failed");
  return output;
}

std::vector<SeenWord> WordsSeen(const std::string& pdf) {
  std::istringstream lines(OutputOf("pdftotext -bbox {} - 2>/dev/null", pdf));
  std::vector<SeenWord> words;
  int page = 0;
  double height = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.find("<page ") != std::string::npos) {
      ++page;
      height = Number(line, "height");
    } else if (line.find("<word ") != std::string::npos) {
      const Box box = {Number(line, "xMin"), height - Number(line, "yMax"), Number(line, "xMax"),
                       height - Number(line, "yMin")};
      words.push_back({page, Between(line, "\">", "</word>"), box});
    }
  }
  return words;
}

std::vector<SeenLink> LinksSeen(const std::string& pdf) {
  std::istringstream lines(OutputOf("pdftohtml -xml -i -stdout {} 2>/dev/null", pdf));
  std::vector<SeenLink> links;
  int page = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.find("<page ") != std::string::npos) ++page;
    for (auto at = line.find("<a "); at != std::string::npos; at = line.find("<a ", at + 1)) {
      const std::string link = line.substr(at);
      const std::string target = Between(link, "href=\"", "\"");
      const auto hash = target.rfind('#');
      if (hash == std::string::npos) continue;
      links.push_back({page, Between(link, "\">", "</a>"), std::stoi(target.substr(hash + 1))});
    }
  }
  return links;
}

std::vector<FollowedLink> LinksFollowed(const std::string& pdf) {
  std::istringstream numbers(
      OutputOf("mutool run '" + SourcePath("tests/support/follow-links.js") + "' {} 2>/dev/null", pdf));
  std::vector<FollowedLink> links;
  const auto readBox = [&numbers](Box& box) { numbers >> box.left >> box.bottom >> box.right >> box.top; };
  for (FollowedLink link = {}; numbers >> link.page;) {
    readBox(link.box);
    numbers >> link.targetPage;
    readBox(link.target);
    links.push_back(link);
  }
  return links;
}

}  // namespace tgx::test
