#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

/// Runs action 9 with a description of tables.
class TablesFile : public testing::Test {
 protected:
  ProcessResult RunWith(const std::string& text, const std::string& step = "layout-tables") {
    TestDocument document;
    document.AddPage();
    document.Tree({Element("Document")({Element("Table")})});
    folder_.Write("in.pdf", document.Write());
    folder_.Write("tables.tsv", text);
    return Tool({"run", "--quiet", "in.pdf", "-o", "out.pdf", step + ":tables.tsv"}).In(folder_.Path()).Run();
  }
  void ExpectRefused(const std::string& text, const std::string& line, const std::string& step = "layout-tables") {
    ExpectRefusedBecause("line " + line + " is longer than 1023 bytes", text, step);
  }
  void ExpectRefusedBecause(const std::string& reason, const std::string& text, const std::string& step = "layout-tables") {
    const ProcessResult result = RunWith(text, step);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, Message("tables.tsv: " + reason));
    EXPECT_FALSE(Exists(folder_ / "out.pdf"));
  }
  void ExpectTaken(const std::string& text) {
    const ProcessResult result = RunWith(text);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
  }

  TempFolder folder_;
};

TEST_F(TablesFile, WithALineOf1023BytesIsTaken) { ExpectTaken(std::string(1023, 'x') + "\n" + std::string(1023, 'y')); }

TEST_F(TablesFile, WithALineOf1024BytesIsRefused) { ExpectRefused("Table\t1\n\n" + std::string(1024, 'x') + "\n", "3"); }

TEST_F(TablesFile, WithALastLineOf1024BytesIsRefusedAlsoWithoutItsEnd) { ExpectRefused(std::string(1024, 'x'), "1"); }

TEST_F(TablesFile, CountsTheCarriageReturnOfALine) { ExpectRefused(std::string(1023, 'x') + "\r\n", "1"); }

TEST_F(TablesFile, IsRefusedWhereverItIsTooLong) {
  std::string text;
  while (text.size() < 200'000) text += "Table\t1\nLayout\n";
  const auto line = std::to_string(1 + std::count(text.begin(), text.end(), '\n'));
  ExpectRefused(text + std::string(100'000, '\0'), line);
}

TEST_F(TablesFile, IsCheckedAlsoForTheNumberOfTheAction) { ExpectRefused(std::string(2000, 'x'), "1", "action=9"); }

TEST_F(TablesFile, MayHaveLongLinesForAnotherStep) { EXPECT_EQ(RunWith(std::string(5000, 'x'), "style-names").status, 0); }

std::string MillionLines() {
  std::string lines;
  for (int i = 0; i < 1'000'000; ++i) lines += "x\n\n";
  return lines;
}

TEST_F(TablesFile, MayHaveAMillionLinesThatAreNotBlank) { ExpectTaken(MillionLines()); }

TEST_F(TablesFile, WithMoreLinesIsRefused) { ExpectRefusedBecause("has more than 1000000 lines", MillionLines() + "x"); }

TEST_F(TablesFile, IsRefusedBeyondTheSizeThatTheLibraryReads) {
  const std::string text((std::size_t{64} << 20U) + 1, '\n');
  for (const char* step : {"layout-tables", "style-names", "toc"}) {
    ExpectRefusedBecause("is larger than 64 MiB", text, step);
  }
}

}  // namespace
}  // namespace tgx::test
