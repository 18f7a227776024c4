// The removal and the marking of empty tags on documents of many producers. What must come out is worked out from the tree
// of the input as text, without the library and without the host.

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::DataFile;
using test::kSuccess;
using test::OpenDocument;
using test::ReadBack;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

std::size_t DepthOf(const std::string& line) { return line.find_first_not_of(' ') / 2; }

bool IsContent(const std::string& line) {
  const std::string start = line.substr(line.find_first_not_of(' '), 5);
  return start == "mcid " || start == "objr " || start.substr(0, 4) == "mcr " || start[0] == '(';
}

/// The index behind the subtree at a line.
std::size_t EndOfSubtree(const std::vector<std::string>& lines, std::size_t at) {
  std::size_t end = at + 1;
  while (end < lines.size() && DepthOf(lines[end]) > DepthOf(lines[at])) ++end;
  return end;
}

bool IsEmpty(const std::vector<std::string>& lines, std::size_t at) {
  for (std::size_t i = at; i < EndOfSubtree(lines, at); ++i) {
    if (IsContent(lines[i])) return false;
  }
  return true;
}

std::string WithoutEmpty(const std::string& tree) {
  const std::vector<std::string> lines = Lines(tree);
  std::string out;
  for (std::size_t i = 0; i < lines.size();) {
    if (IsEmpty(lines, i)) {
      i = EndOfSubtree(lines, i);
    } else {
      out += lines[i++] + "\n";
    }
  }
  return out;
}

/// Where the type of an element ends: types may hold spaces.
std::size_t EndOfType(const std::string& line) {
  std::size_t end = line.size();
  for (const char* label : {" title=", " alt=", " actual=", " lang=", " id=", " attributes="}) {
    end = std::min(end, line.find(label));
  }
  return end;
}

std::string WithEmptyMarked(const std::string& tree) {
  const std::vector<std::string> lines = Lines(tree);
  std::string out;
  for (std::size_t i = 0; i < lines.size();) {
    if (!IsEmpty(lines, i)) {
      out += lines[i++] + "\n";
      continue;
    }
    std::string marked = lines[i];
    marked.insert(EndOfType(marked), " [EMPTY]");
    out += marked + "\n";
    for (const std::size_t end = EndOfSubtree(lines, i++); i < end; ++i) out += lines[i] + "\n";
  }
  return out;
}

class EmptyTagDocuments : public testing::TestWithParam<DataFile> {
 protected:
  const std::string before_ = test::ReadBytes(GetParam().path);

  /// Runs an action, saves, and checks all but the structure tree, whose text is given.
  std::string TreeAfter(int action) {
    OpenDocument document(before_, GetParam().name);
    EXPECT_EQ(document.Action(action), kSuccess);
    const std::string after = document.Save();
    EXPECT_EQ(test::FileProblems(after), std::vector<std::string>());
    ExpectSamePages(after);
    return test::TreeText(after);
  }

  void ExpectSamePages(const std::string& after) {
    ReadBack source(before_);
    ReadBack result(after);
    const std::size_t pages = source->getAllPages().size();
    ASSERT_EQ(result->getAllPages().size(), pages);
    for (int number = 1; number <= static_cast<int>(pages); ++number) {
      EXPECT_TRUE(result.Content(number) == source.Content(number)) << "the content of page " << number << " changed";
    }
  }
};

TEST_P(EmptyTagDocuments, RemovalTakesNothingButTheEmptyElements) {
  EXPECT_EQ(TreeAfter(6), WithoutEmpty(test::TreeText(before_)));
}

TEST_P(EmptyTagDocuments, MarkingRenamesNothingButTheEmptyElements) {
  EXPECT_EQ(TreeAfter(7), WithEmptyMarked(test::TreeText(before_)));
}

INSTANTIATE_TEST_SUITE_P(Data, EmptyTagDocuments, testing::ValuesIn(test::DataFiles()),
                         [](const auto& tested) { return test::TestName(tested.param); });

}  // namespace
}  // namespace tgx
