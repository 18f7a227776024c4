#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::ordered_json;

/// The languages of a document with a catalog's and texts with and without one of their own, after the repair.
class DocumentLanguage : public testing::Test {
 protected:
  /// Marked content weighs by the pieces of text in it but one.
  Element Weighing(int weight) {
    const int mcid = mcids_++;
    const std::vector<Content> texts(static_cast<std::size_t>(weight) + 1, Text("x"));
    page_.Add(Marked("P", "<</MCID " + std::to_string(mcid) + ">>", texts));
    return Element("P").Mcid(page_, mcid);
  }

  std::string TreeAfterFix(const Element& top) {
    document_.Tree({top});
    folder_.Write("in.pdf", document_.Write());
    const ProcessResult result = Tool({"fix", "in.pdf", "-o", "out.pdf", "--json"}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    language_ = Json::parse(result.out)["language"].dump();
    return TreeText(ReadFile(folder_ / "out.pdf"));
  }

  TestDocument document_;
  Page& page_ = document_.AddPage();
  std::string language_;

 private:
  int mcids_ = 0;
  TempFolder folder_;
};

TEST_F(DocumentLanguage, StaysThatOfTheCatalogWhereMostTextHasNoneOfItsOwn) {
  document_.SetCatalog("Lang", "(de-DE)");
  const std::string tree = TreeAfterFix(Element("Document")({Weighing(5), Weighing(1).Lang("en")}));
  EXPECT_THAT(tree, HasSubstr("Document lang=\"de-DE\"\n"));
  EXPECT_EQ(language_, R"({"before":"de-DE","after":"de-DE"})");
}

TEST_F(DocumentLanguage, BecomesThatOfMostTextAndTheOthersKeepTheirs) {
  document_.SetCatalog("Lang", "(de-DE)");
  const std::string tree = TreeAfterFix(Element("Document")({Weighing(1), Weighing(5).Lang("en")}));
  EXPECT_EQ(tree,
            "Document lang=\"en\"\n"
            "  P lang=\"de-DE\"\n"
            "    mcid 0 page 1\n"
            "  P lang=\"en\"\n"
            "    mcid 1 page 1\n");
  EXPECT_EQ(language_, R"({"before":"de-DE","after":"en"})");
}

TEST_F(DocumentLanguage, IsFoundWhereThereIsNone) {
  const std::string tree = TreeAfterFix(Element("Document")({Weighing(1), Weighing(1).Lang("[Lang=fr]")}));
  EXPECT_THAT(tree, HasSubstr("Document lang=\"fr\"\n  P\n"));
  EXPECT_EQ(language_, R"({"before":null,"after":"fr"})");
}

TEST_F(DocumentLanguage, OfTheCatalogIsNotWrittenWhereItIsNone) {
  document_.SetCatalog("Lang", "(in German)");
  EXPECT_THAT(TreeAfterFix(Element("Document")({Weighing(1)})), Not(HasSubstr("lang")));
}

}  // namespace
}  // namespace tgx::test
