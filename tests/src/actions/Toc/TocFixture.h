#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "src/api/HostBinding.h"
#include "tests/support/LogFolder.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx::test {

constexpr int kToc = 5;

/// The structure below an element in one line: "Div(H1(Contents) Link(* One))". Marked content stands as its text, object
/// references as "*".
std::string Outline(OpenDocument& document);

/// The lines of a saved document's tree that are marked content or an object, sorted.
std::vector<std::string> Leaves(const std::string& pdf);

/// A "TOC" and a line of it as they come out of the action.
inline std::string Toc(const std::string& items) { return "TOC(" + items + ")"; }
inline std::string Item(const std::string& text, const std::string& below = "") {
  return "TOCI(P(Reference(Link(* " + text + ")))" + (below.empty() ? "" : " TOC(" + below + ")") + ")";
}

/// A document with a table of contents and the file that describes it.
class TocTest : public testing::Test {
 protected:
  Element Placeholder() { return Element("P").Add(Element("Figure").Alt(u"TOC_FRAME").Image(page, 1, 1)); }
  Element Line(const std::string& text) {
    return Element("P").Add(Element("Link").Object(page.Link("https://example.org/")).Text(page, text));
  }
  static std::string Entry(int level, const std::string& text) {
    return "<TOC_Entry level=\"" + std::to_string(level) + "\"><TOC_EntryText>" + text + "</TOC_EntryText></TOC_Entry>";
  }
  static std::string Metadata(const std::string& entries, const std::string& title = "No such title") {
    return "<TOC_Item name=\"Default\" title=\"" + title + "\" default=\"1\">" + entries + "</TOC_Item>";
  }

  std::string WriteFile(const std::string& text) {
    const std::string path = folder_.Path() + "/toc.xml";
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  std::string SavedAfter(const std::string& metadata) {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kToc, WriteFile(metadata)), kSuccess);
    std::string saved = open.Save();
    ExpectSound(saved);
    return saved;
  }
  std::string OutlineAfter(const std::string& metadata) {
    OpenDocument saved(SavedAfter(metadata));
    return Outline(saved);
  }
  /// The outline after the action on a table of contents of these levels, whose lines are named "a", "b", "c" and so on.
  std::string NestingOf(std::initializer_list<int> levels);

  TestDocument doc;
  Page& page = doc.AddPage();

 private:
  LogFolder folder_;
};

}  // namespace tgx::test
