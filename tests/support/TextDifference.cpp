#include "tests/support/TextDifference.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

namespace tgx::test {
namespace {

using Lines = std::vector<std::string>;
// A line of the result: ' ', '-' or '+', and the text.
using Entries = std::vector<std::pair<char, std::string>>;

Lines Split(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// length[i][j]: of the longest common sequence of the lines from i and from j on.
std::vector<std::vector<int>> CommonLengths(const Lines& first, const Lines& second) {
  std::vector<std::vector<int>> length(first.size() + 1, std::vector<int>(second.size() + 1));
  for (std::size_t i = first.size(); i-- > 0;) {
    for (std::size_t j = second.size(); j-- > 0;) {
      length[i][j] = first[i] == second[j] ? length[i + 1][j + 1] + 1 : std::max(length[i + 1][j], length[i][j + 1]);
    }
  }
  return length;
}

Entries Align(const Lines& first, const Lines& second) {
  const auto length = CommonLengths(first, second);
  Entries entries;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < first.size() || j < second.size()) {
    if (i < first.size() && j < second.size() && first[i] == second[j]) {
      entries.emplace_back(' ', first[i++]);
      ++j;
    } else if (j == second.size() || (i < first.size() && length[i + 1][j] >= length[i][j + 1])) {
      entries.emplace_back('-', first[i++]);
    } else {
      entries.emplace_back('+', second[j++]);
    }
  }
  return entries;
}

bool IsNearChange(const Entries& entries, std::size_t index) {
  const std::size_t end = std::min(entries.size(), index + 3);
  for (std::size_t near = index < 2 ? 0 : index - 2; near < end; ++near) {
    if (entries[near].first != ' ') return true;
  }
  return false;
}

}  // namespace

std::string TextDifference(const std::string& first, const std::string& second) {
  if (first == second) return "";
  const Entries entries = Align(Split(first), Split(second));
  std::string text;
  bool gap = false;
  for (std::size_t index = 0; index < entries.size(); ++index) {
    if (!IsNearChange(entries, index)) {
      gap = true;
      continue;
    }
    if (std::exchange(gap, false)) text += "...\n";
    text += entries[index].first + entries[index].second + "\n";
  }
  return text;
}

}  // namespace tgx::test
