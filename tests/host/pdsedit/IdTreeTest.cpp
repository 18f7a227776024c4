#include <gtest/gtest.h>
#include <qpdf/QPDFNameTreeObjectHelper.hh>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::ReadBack;

/// The ID tree of a saved document as "a P, b Sect".
std::string IdTreeText(const std::string& bytes) {
  ReadBack file(bytes);
  QPDFObjectHandle tree = file.TreeRoot().getKey("/IDTree");
  if (!tree.isDictionary()) return "(none)";
  std::string text;
  for (auto& [id, element] : QPDFNameTreeObjectHelper(tree, file.Pdf(), false)) {
    text += (text.empty() ? "" : ", ") + id + " " + element.getKey("/S").getName().substr(1);
  }
  return text;
}

void Touch(StructureDocument& document) {
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), kPDSAfterLast);
}

TEST(IdTree, ListsEveryIdInOrder) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Id("b")({Element("P").Id("a"), Element("Q").Id("c")})}).SetTree("IDTree", "null");
  StructureDocument document(source);
  Touch(document);
  EXPECT_EQ(IdTreeText(document.Save()), "a P, b Sect, c Q");
}

TEST(IdTree, IsSortedByBytes) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P").Id("\xC3"), Element("Q").Id("Z"), Element("R").Id("a")})});
  source.SetTree("IDTree", "null");
  StructureDocument document(source);
  Touch(document);
  ReadBack file(document.Save());
  QPDFObjectHandle names = file.TreeRoot().getKey("/IDTree").getKey("/Names");
  ASSERT_EQ(names.getArrayNItems(), 6);
  EXPECT_EQ(names.getArrayItem(0).getStringValue(), "Z");
  EXPECT_EQ(names.getArrayItem(2).getStringValue(), "a");
  EXPECT_EQ(names.getArrayItem(4).getStringValue(), "\xC3");
}

TEST(IdTree, GivesAnIdOfTwoElementsToTheFirst) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P").Id("a"), Element("Q").Id("a")})});
  StructureDocument document(source);
  Touch(document);
  EXPECT_EQ(IdTreeText(document.Save()), "a P");
}

TEST(IdTree, FollowsAnIdThatWasSetThroughCos) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Table")});
  StructureDocument document(source);
  Cos().CosDictPutKeyString(document.At({0}), "ID", Cos().CosNewString(document.Doc(), 0, "1_0_0", 5));
  EXPECT_EQ(IdTreeText(document.Save()), "1_0_0 Table");
}

TEST(IdTree, ForgetsElementsThatLeftTheTree) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Id("s")({Element("P").Id("a")})});
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 0}));
  EXPECT_EQ(IdTreeText(document.Save()), "s Sect");
}

TEST(IdTree, GoesWithTheLastId) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P").Id("a")})});
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 0}));
  EXPECT_EQ(IdTreeText(document.Save()), "(none)");
}

TEST(IdTree, IgnoresAnIdThatIsNoString) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P").Set("ID", "/a"), Element("Q").Id("b")})});
  StructureDocument document(source);
  Touch(document);
  EXPECT_EQ(IdTreeText(document.Save()), "b Q");
}

TEST(IdTree, ReadsOnceWhatManyOfItsNodesShare) {
  constexpr int kNodes = 10'000;
  for (const std::string entry : {"/Names $shared", "/Kids $shared"}) {
    TestDocument source;
    source.AddPage();
    std::string nodes, items;
    for (int i = 0; i < kNodes; ++i) nodes += "<<" + entry + "/Limits [(a) (a)]>> ";
    for (int i = 0; i < 100'000; ++i) items += entry[1] == 'N' ? "(a) $p " : "null ";
    source.Object("shared", "[" + items + "]");
    source.Tree({Element("P").Id("a").Named("p")}).SetTree("IDTree", "<</Kids [" + nodes + "]>>");
    StructureDocument document(source);
    Touch(document);
    EXPECT_EQ(IdTreeText(document.Save()), "a P") << entry;
  }
}

TEST(IdTree, OfManyIdsHasLeavesThatReadersFind) {
  TestDocument source;
  source.AddPage();
  Element top("Document");
  for (int i = 0; i < 500; ++i) top.Add(Element("P").Id("id" + std::to_string(i)));
  source.Tree({top}).SetTree("IDTree", "null");
  StructureDocument document(source);
  Touch(document);
  ReadBack file(document.Save());
  QPDFObjectHandle tree = file.TreeRoot().getKey("/IDTree");
  EXPECT_EQ(tree.getKey("/Kids").getArrayNItems(), 4);
  QPDFNameTreeObjectHelper names(tree, file.Pdf(), false);
  for (int i = 0; i < 500; ++i) EXPECT_TRUE(names.hasName("id" + std::to_string(i))) << i;
}

}  // namespace
}  // namespace tgx::host::structure
