#include "src/common/contentvisitors/ContainerIndex.h"

#include <gtest/gtest.h>

#include "src/common/contentvisitors/CContentFinder.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx {
namespace {

using test::Marked;
using test::Text;

std::string Mcid(int mcid) { return "<</MCID " + std::to_string(mcid) + ">>"; }

/// Pages with containers side by side and in one another, with one MCID twice, and with none.
class ContainerIndexTest : public testing::Test {
 protected:
  ContainerIndexTest() {
    test::TestDocument document;
    test::Page& first = document.AddPage();
    first.Add(Marked("Sect", "", {Marked("P", Mcid(1), {Marked("Span", Mcid(2), {Text("a")})}), Marked("P", Mcid(4), {})}));
    first.Add(Marked("P", Mcid(2), {})).Add(test::Artifact({Text("b")}));
    document.AddPage().Add(Marked("P", Mcid(2), {}));
    document.AddPage().Add(Text("bare"));
    document.Tree({});
    open_ = std::make_unique<test::OpenDocument>(document.Write());
  }

  PDPage PageAt(int index) { return PDDocAcquirePage(open_->Handle(), index); }

  const test::HostSession session_;
  std::unique_ptr<test::OpenDocument> open_;
};

TEST_F(ContainerIndexTest, AnswersAsTheFinderDoes) {
  ContainerIndex index;
  for (int number = 0; number < 3; ++number) {
    const PDPage page = PageAt(number);
    for (int mcid = -1; mcid < 6; ++mcid) {
      CContentFinder finder;
      EXPECT_EQ(index.Find(page, mcid), finder.Find(open_->Handle(), page, mcid)) << "page " << number << " MCID " << mcid;
    }
  }
}

TEST_F(ContainerIndexTest, KnowsNothingOfAPageWithoutContainers) { EXPECT_EQ(ContainerIndex().Find(PageAt(2), 0), nullptr); }

TEST_F(ContainerIndexTest, KnowsNothingOfNoPage) { EXPECT_EQ(ContainerIndex().Find(nullptr, 0), nullptr); }

TEST_F(ContainerIndexTest, ReadsAPageOnce) {
  const PDPage page = PageAt(0);
  test::RecordingHost host;
  const test::HostSession recorded(host.Tables());
  ContainerIndex index;
  for (int mcid = 0; mcid < 6; ++mcid) index.Find(page, mcid);
  EXPECT_EQ(host.Count(test::Operation::PDPageAcquirePDEContent), 1U);
  EXPECT_EQ(host.Count(test::Operation::PDEContainerGetContent), 6U) << "once for each container";
}

/// Tables of a host that gives no content of pages.
const HostTables* TablesWithoutContent() {
  static PagePDEContentTable pages = *test::EmbeddedTables()->pagePDEContent;
  static HostTables tables = *test::EmbeddedTables();
  pages.PDPageAcquirePDEContent = [](PDPage, ASExtension) -> PDEContent { return nullptr; };
  tables.pagePDEContent = &pages;
  return &tables;
}

TEST_F(ContainerIndexTest, KnowsNothingOfAPageWhoseContentTheHostDoesNotGive) {
  const PDPage page = PageAt(0);
  const test::HostSession session(TablesWithoutContent());
  EXPECT_EQ(ContainerIndex().Find(page, 1), nullptr);
}

}  // namespace
}  // namespace tgx
