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

TEST_F(TablesFile, WithALineOf1023BytesIsTaken) {
  ExpectTaken("Table\t1\n" + std::string(1023, 'x') + "\n" + std::string(1023, 'y'));
}

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

TEST_F(TablesFile, MayHaveLongLinesForAnotherStep) {
  EXPECT_EQ(RunWith("<ID_Document>" + std::string(5000, 'x') + "</ID_Document>", "style-names").status, 0);
}

TEST_F(TablesFile, ThatNamesNoTableIsRefused) {
  for (const char* text : {"<TOC_Item/>", "Layout\n", "Table 1\n", "Table\t\n", " Table\t1\n"}) {
    ExpectRefusedBecause("is no list of tables: no line has \"Table\", a tabulator and a number", text);
  }
}

TEST_F(TablesFile, MayNameItsTablesLate) { ExpectTaken("Type\tTables\t1.0\t\r\n\r\nTable\t1\r\nLayout"); }

std::string MillionLines() {
  std::string lines = "Table\t1\n";
  for (int i = 1; i < 1'000'000; ++i) lines += "x\n\n";
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

/// Runs steps and the repair with files that are not what they want.
class FilesOfAnotherKind : public testing::Test {
 protected:
  FilesOfAnotherKind() {
    TestDocument document;
    document.AddPage();
    document.Tree({Element("Document")});
    folder_.Write("in.pdf", document.Write());
    folder_.Write("styles.xml", "<ID_Document></ID_Document>");
    folder_.Write("toc.xml", "<TOC_Item></TOC_Item>");
    folder_.Write("tables.tsv", "Table\t1\n");
  }
  void ExpectRefused(const std::string& step, const std::string& option, const std::string& file,
                     const std::string& reason) {
    const std::vector<std::string> run = {"run", "in.pdf", "-o", "out.pdf", step + ":" + file};
    const std::vector<std::string> fix = {"fix", "in.pdf", "-o", "out.pdf", option, file};
    for (const auto& command : {run, fix}) {
      const ProcessResult result = Tool(command).In(folder_.Path()).Run();
      EXPECT_EQ(result.status, 1) << command.front();
      EXPECT_EQ(result.out, "") << command.front();
      EXPECT_EQ(result.err, Message(file + ": " + reason)) << command.front();
    }
    EXPECT_FALSE(Exists(folder_ / "out.pdf"));
  }

  TempFolder folder_;
};

TEST_F(FilesOfAnotherKind, AreNoListOfStyleNames) {
  const std::string reason = "is no list of style names: it has no element ID_Document";
  for (const char* file : {"toc.xml", "tables.tsv", "in.pdf"}) ExpectRefused("style-names", "--styles", file, reason);
}

TEST_F(FilesOfAnotherKind, AreNoTableOfContents) {
  const std::string reason = "is no table of contents: it has no element TOC_Item";
  for (const char* file : {"styles.xml", "tables.tsv", "in.pdf"}) ExpectRefused("toc", "--toc", file, reason);
}

TEST_F(FilesOfAnotherKind, CutShortAreNotWhole) {
  folder_.Write("cut.xml", "<TOC_Item><TOC_Entry><TOC_EntryText>one</TOC_EntryText>");
  ExpectRefused("toc", "--toc", "cut.xml", "is no whole table of contents: its element TOC_Item does not end");
}

TEST_F(FilesOfAnotherKind, AreNoForm) { ExpectRefused("sync-forms", "--forms", "styles.xml", "not a PDF file"); }

TEST_F(FilesOfAnotherKind, FormWithAPasswordIsRefusedBeforeTheWork) {
  TestDocument document;
  document.AddPage();
  folder_.Write("form.pdf", document.Write([](QPDFWriter& writer) {
    writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full, true);
  }));
  ExpectRefused("sync-forms", "--forms", "form.pdf", "needs a password; only a form without one can be read");
}

TEST_F(FilesOfAnotherKind, FileOfAStepIsNoTarget) {
  for (const char* output : {"toc.xml", "./toc.xml"}) {
    const ProcessResult result =
        Tool({"fix", "in.pdf", "-o", output, "--force", "--toc", "toc.xml"}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, Message(std::string(output) + ": is the file of step toc"));
  }
  EXPECT_EQ(ReadFile(folder_ / "toc.xml"), "<TOC_Item></TOC_Item>");
}

TEST_F(FilesOfAnotherKind, FileOfThePasswordIsNoTarget) {
  folder_.Write("word", "secret");
  const ProcessResult result =
      Tool({"run", "in.pdf", "-o", "word", "--force", "--password-file", "word", "reserved"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("word: is the file of the password"));
  EXPECT_EQ(ReadFile(folder_ / "word"), "secret");
}

}  // namespace
}  // namespace tgx::test
