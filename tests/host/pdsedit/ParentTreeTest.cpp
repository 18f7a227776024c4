#include <map>
#include <string>

#include <gtest/gtest.h>
#include <qpdf/QPDFNumberTreeObjectHelper.hh>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::ExpectSound;
using test::Page;
using test::ReadBack;

/// The parent tree of a saved document as lines "0 [Span null P]", "1 Link": types of the elements.
std::string ParentTreeText(const std::string& bytes) {
  ReadBack file(bytes);
  QPDFObjectHandle tree = file.TreeRoot().getKey("/ParentTree");
  if (!tree.isDictionary()) return "(none)";
  const auto typeOf = [](QPDFObjectHandle element) {
    return element.isDictionary() ? element.getKey("/S").getName().substr(1) : std::string(element.getTypeName());
  };
  std::string text;
  for (auto& [key, value] : QPDFNumberTreeObjectHelper(tree, file.Pdf(), false).getAsMap()) {
    text += std::to_string(key) + " ";
    if (value.isArray()) {
      std::string items;
      for (const QPDFObjectHandle& item : value.getArrayAsVector()) items += (items.empty() ? "" : " ") + typeOf(item);
      text += "[" + items + "]\n";
    } else {
      text += typeOf(value) + "\n";
    }
  }
  return text;
}

long long NextKey(const std::string& bytes) {
  ReadBack file(bytes);
  QPDFObjectHandle key = file.TreeRoot().getKey("/ParentTreeNextKey");
  return key.isInteger() ? key.getIntValue() : -1;
}

TEST(ParentTree, IsNotWrittenForAChangeThatLeavesTheStructureAlone) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("P").Text(page, "a")}).SetTree("ParentTree", "<</Nums [7 [null]]>>");
  StructureDocument document(source);
  Write().PDSElementSetType(document.At({0}), Intern("H1"));
  EXPECT_EQ(ParentTreeText(document.Save()), "7 [null]\n");
}

TEST(ParentTree, FollowsContentToTheElementThatHoldsItNow) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("H1").Text(page, "b")})});
  StructureDocument document(source);
  const PDSElement sect = document.At({0});
  const PDSElement span = document.NewElement("Span");
  Write().PDSElementReplaceKid(sect, document.At({0, 0}), span);
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [null H1]\n");
  ExpectSound(saved);
}

TEST(ParentTree, IsMadeForADocumentThatHasNone) {
  TestDocument source;
  Page& first = source.AddPage();
  Page& second = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(second, "a"), Element("H1").Text(first, "b")})}).WithoutParentTree();
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [H1]\n1 [P]\n");
  EXPECT_EQ(NextKey(saved), 2);
  ExpectSound(saved);
}

TEST(ParentTree, KeepsTheNumbersThatAreRight) {
  TestDocument source;
  Page& first = source.AddPage();
  Page& second = source.AddPage();
  first.Set("StructParents", "41");
  source.Tree({Element("Sect")({Element("P").Text(first, "a"), Element("H1").Text(second, "b")})});
  source.SetTree("ParentTree", "<</Nums [41 [null]]>>").SetTree("ParentTreeNextKey", "60");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  ReadBack file(saved);
  EXPECT_EQ(file.Page(1).getKey("/StructParents").getIntValue(), 41);
  EXPECT_EQ(NextKey(saved), 60);
  ExpectSound(saved);
}

TEST(ParentTree, GivesTheSecondOfTwoPagesWithOneNumberANewOne) {
  TestDocument source;
  Page& first = source.AddPage();
  Page& second = source.AddPage();
  first.Set("StructParents", "3");
  second.Set("StructParents", "3");
  source.Tree({Element("Sect")({Element("P").Text(first, "a"), Element("H1").Text(second, "b")})});
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  ReadBack file(saved);
  EXPECT_EQ(file.Page(1).getKey("/StructParents").getIntValue(), 3);
  EXPECT_NE(file.Page(2).getKey("/StructParents").getIntValue(), 3);
  ExpectSound(saved);
}

TEST(ParentTree, ReplacesANumberThatIsNone) {
  for (const char* number : {"-4", "(x)", "1.5", "99999999999", "2147483647"}) {
    TestDocument source;
    Page& page = source.AddPage();
    page.Set("StructParents", number);
    source.Tree({Element("Sect")({Element("P").Text(page, "a")})});
    StructureDocument document(source);
    Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
    ExpectSound(document.Save());
  }
}

TEST(ParentTree, ForgetsContentThatNoElementHolds) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("H1").Text(page, "b")})});
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 1}));
  EXPECT_EQ(ParentTreeText(document.Save()), "0 [P]\n");
}

TEST(ParentTree, ForgetsAPageWithoutContentInTheTree) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(page, "a")})});
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 0}));
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "");
  ReadBack file(saved);
  EXPECT_FALSE(file.Page(1).hasKey("/StructParents"));
}

TEST(ParentTree, LeavesTheEmptyListOfAPageWithoutTaggedContent) {
  TestDocument source;
  Page& first = source.AddPage();
  source.AddPage().Set("StructParents", "5");
  source.Tree({Element("Sect")({Element("P").Text(first, "a")})});
  source.SetTree("ParentTree", "<</Nums [5 []]>>");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  EXPECT_NE(ParentTreeText(saved).find("5 []"), std::string::npos);
  ExpectSound(saved);
}

TEST(ParentTree, GivesContentOfTwoHoldersToTheFirstOfTheWalk) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree(
      {Element("Sect")({Element("A")({Element("Inner").Text(page, "a")}).Mcid(page, 0), Element("B").Mcid(page, 0)})});
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  EXPECT_EQ(ParentTreeText(document.Save()), "0 [Inner]\n");
}

TEST(ParentTree, FollowsObjectReferences) {
  TestDocument source;
  Page& page = source.AddPage();
  const test::Annotation link = page.Link("https://example.org/");
  source.Tree({Element("Sect")({Element("Link").Object(link), Element("P").Text(page, "a")})});
  StructureDocument document(source);
  const PDSElement holder = document.At({0, 0});
  const CosObj object = KidOf(holder, 0).kid;
  Write().PDSElementRemoveKidOBJR(holder, object);
  Write().PDSElementInsertOBJAsKid(document.At({0, 1}), document.PageObject(0), object, 0);
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [P]\n1 P\n");
  ExpectSound(saved);
}

TEST(ParentTree, TakesTheNumberFromAnAnnotationThatNoElementHolds) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("Link").Object(page.Link("https://example.org/")).Text(page, "a")})});
  StructureDocument document(source);
  const PDSElement holder = document.At({0, 0});
  Write().PDSElementRemoveKidOBJR(holder, KidOf(holder, 0).kid);
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [Link]\n");
  ReadBack file(saved);
  EXPECT_FALSE(file.Page(1).getKey("/Annots").getArrayItem(0).hasKey("/StructParent"));
}

/// A form XObject with content of its own, held by MCR dictionaries with "Stm".
void AddForm(TestDocument& source, Page& page, const std::string& number) {
  source.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]" + number + ">>", "/Span <</MCID 1>> BDC EMC");
  page.Resource("XObject", "Fm", "$form").Add(test::Ops("/Fm Do"));
}

TEST(ParentTree, FollowsContentOfForms) {
  for (const char* number : {"", "/StructParents 8"}) {
    TestDocument source;
    Page& page = source.AddPage();
    AddForm(source, page, number);
    source.Tree({Element("Sect")(
        {Element("P").Text(page, "a"), Element("Figure").RawKid("<</Type/MCR/Pg $page1/Stm $form/MCID 1>>")})});
    StructureDocument document(source);
    Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
    const std::string saved = document.Save();
    EXPECT_NE(ParentTreeText(saved).find("[null Figure]"), std::string::npos) << ParentTreeText(saved);
    ReadBack file(saved);
    QPDFObjectHandle form = file.Page(1).getKey("/Resources").getKey("/XObject").getKey("/Fm").getDict();
    EXPECT_TRUE(form.getKey("/StructParents").isInteger());
  }
}

TEST(ParentTree, KeepsTheListOfAFormWhoseContentIsNamedByPageAndMcid) {
  TestDocument source;
  Page& page = source.AddPage();
  AddForm(source, page, "/StructParents 8");
  source.Tree({Element("Sect")(
      {Element("P").Text(page, "a"), Element("Figure").Named("figure").Mcid(page, 1), Element("Gone").Named("gone")})});
  source.SetTree("ParentTree", "<</Nums [0 [null] 8 [$gone $figure]]>>");
  page.Set("StructParents", "0");
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 2}));
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [P Figure]\n8 [null Figure]\n");
  ExpectSound(saved);
}

TEST(ParentTree, DropsASingleElementWhoseObjectNothingRefersTo) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect").Named("sect")({Element("P").Text(page, "a")})});
  source.SetTree("ParentTree", "<</Nums [0 [null] 8 $sect]>>");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  EXPECT_EQ(ParentTreeText(document.Save()), "0 [P]\n");
}

TEST(ParentTree, OfManyPagesHasLeavesWithLimits) {
  TestDocument source;
  Element top("Document");
  for (int i = 0; i < 400; ++i) top.Add(Element("P").Text(source.AddPage(), "a"));
  source.Tree({top}).WithoutParentTree();
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  ReadBack file(saved);
  QPDFObjectHandle tree = file.TreeRoot().getKey("/ParentTree");
  EXPECT_FALSE(tree.hasKey("/Nums"));
  ASSERT_EQ(tree.getKey("/Kids").getArrayNItems(), 4);
  EXPECT_EQ(tree.getKey("/Kids").getArrayItem(3).getKey("/Limits").unparse(), "[ 384 399 ]");
  ExpectSound(saved);
}

TEST(ParentTree, IsNotWrittenAgainWhenItIsTrue) {
  TestDocument source;
  Element top("Document");
  for (int i = 0; i < 5; ++i) top.Add(Element("P").Text(source.AddPage(), "a"));
  source.Tree({top});
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  document.Save();
  Document& host = Document::Of(document.Handle());
  QPDFObjectHandle nums = host.Pdf().getRoot().getKey("/StructTreeRoot").getKey("/ParentTree").getKey("/Nums");
  ASSERT_TRUE(nums.isArray());
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  document.Save();
  EXPECT_EQ(host.Pdf().getRoot().getKey("/StructTreeRoot").getKey("/ParentTree").getKey("/Nums").getObjectPtr(),
            nums.getObjectPtr());
}

TEST(ParentTree, SurvivesNumberTreesThatAreBroken) {
  for (const char* broken : {"<</Nums 5>>", "<</Kids [null 3 (x)]>>", "<</Nums [0]>>", "<</Nums [(a) (b) 1 2 0 null]>>",
                             "[1 2]", "<</Nums [5 [null] 2 [null] 5 [null]]>>", "<</Kids [<</Nums [0 [null]]>>]>>",
                             "<</Nums [-1 [null] 3000000000 []]>>"}) {
    TestDocument source;
    Page& page = source.AddPage();
    source.Tree({Element("Sect")({Element("P").Text(page, "a")})}).SetTree("ParentTree", broken);
    StructureDocument document(source);
    Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
    const std::string saved = document.Save();
    EXPECT_NE(ParentTreeText(saved).find("[P]"), std::string::npos) << broken;
    ExpectSound(saved);
  }
}

TEST(ParentTree, SurvivesANumberTreeThatHoldsItself) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Object("loop", "<</Kids [$loop $loop]>>");
  source.Tree({Element("Sect")({Element("P").Text(page, "a")})}).SetTree("ParentTree", "$loop");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  ExpectSound(document.Save());
}

TEST(ParentTree, LooksOnceAtAListUnderManyNumbers) {
  constexpr int kCount = 100'000;
  TestDocument source;
  Page& page = source.AddPage();
  source.Object("list", "[null $span " + Repeated("0 ", kCount) + "]");
  std::string numbers;
  for (int i = 1; i <= kCount; ++i) numbers += std::to_string(i) + " $list ";
  source.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("Span").Named("span").Mcid(page, 1)})});
  source.SetTree("ParentTree", "<</Nums [" + numbers + "]>>");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Div"), 0);
  ReadBack file(document.Save());
  std::map<long long, QPDFObjectHandle> entries =
      QPDFNumberTreeObjectHelper(file.TreeRoot().getKey("/ParentTree"), file.Pdf(), false).getAsMap();
  ASSERT_GE(entries.size(), static_cast<std::size_t>(kCount));
  EXPECT_EQ(entries[kCount].unparse(), entries[1].unparse());
  EXPECT_EQ(entries[kCount].getArrayNItems(), 2);
}

TEST(ParentTree, LooksOnceAtAnEmptyListOfManyPages) {
  TestDocument source;
  Page& page = source.AddPage();
  constexpr int kPages = 2000;
  std::string numbers;
  for (int i = 1; i <= kPages; ++i) {
    source.AddPage().Set("StructParents", std::to_string(i));
    numbers += std::to_string(i) + " $list ";
  }
  source.Object("list", "[" + Repeated("null ", 1'000'000) + "]");
  source.Tree({Element("Sect")({Element("P").Text(page, "a")})}).SetTree("ParentTree", "<</Nums [" + numbers + "]>>");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  ReadBack file(document.Save());
  EXPECT_TRUE(file.Page(kPages).hasKey("/StructParents"));
}

TEST(ParentTree, ComparesAListUnderManyNumbersOnce) {
  TestDocument source;
  constexpr int kPages = 2000;
  std::string numbers, kids;
  for (int i = 1; i <= kPages; ++i) {
    source.AddPage().Set("StructParents", std::to_string(i));
    kids += "<</Type/MCR/MCID 0/Pg $page" + std::to_string(i) + ">> ";
    numbers += std::to_string(i) + " $list ";
  }
  source.Object("list", "[$p " + Repeated("null ", 1'000'000) + "]");
  source.Tree({Element("P").Named("p").Set("K", "[" + kids + "]")}).SetTree("ParentTree", "<</Nums [" + numbers + "]>>");
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.Root(), document.NewElement("Span"), kPDSAfterLast);
  ReadBack file(document.Save());
  std::map<long long, QPDFObjectHandle> entries =
      QPDFNumberTreeObjectHelper(file.TreeRoot().getKey("/ParentTree"), file.Pdf(), false).getAsMap();
  ASSERT_EQ(entries.size(), static_cast<std::size_t>(kPages));
  for (auto& [number, list] : entries) EXPECT_EQ(list.getArrayItem(0).getKey("/S").getName(), "/P");
}

TEST(ParentTree, LooksOnceAtAnnotationsOfManyPages) {
  TestDocument source;
  Page& page = source.AddPage();
  constexpr int kPages = 2000;
  for (int i = 1; i <= kPages; ++i) source.AddPage().Set("Annots", "$list");
  source.Object("list", "[" + Repeated("null ", 1'000'000) + "<</Subtype/Link/StructParent 3>>]");
  source.Tree({Element("Sect")({Element("P").Text(page, "a")})});
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  ReadBack file(document.Save());
  QPDFObjectHandle annotations = file.Page(kPages).getKey("/Annots");
  EXPECT_FALSE(annotations.getArrayItem(1'000'000).hasKey("/StructParent"));
}

TEST(ParentTree, DoesNotGrowWithAHugeMcid) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("Bomb").Mcid(page, 2147483647)})});
  source.WithoutParentTree();
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  const std::string saved = document.Save();
  EXPECT_EQ(ParentTreeText(saved), "0 [P]\n");
  EXPECT_LT(saved.size(), 10'000U);
}

TEST(ParentTree, LeavesOutMcidsThatAreNone) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree(
      {Element("Sect")({Element("P").Text(page, "a"), Element("Bad").Mcid(page, -3).RawKid("<</Type/MCR/Pg $page1>>")})});
  source.WithoutParentTree();
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  EXPECT_EQ(ParentTreeText(document.Save()), "0 [P]\n");
}

TEST(ParentTree, TakesContentWithoutAPageForNothing) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").RawKid("0")}).WithoutParentTree();
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  EXPECT_EQ(ParentTreeText(document.Save()), "(none)");
}

TEST(ParentTree, IsMadeTrueAfterACosEditOfTheStructure) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("H1").Text(page, "b")})});
  StructureDocument document(source);
  Cos().CosDictRemoveKeyString(document.At({0, 1}), "K");
  EXPECT_EQ(ParentTreeText(document.Save()), "0 [P]\n");
}

TEST(Saving, WritesTheParentOfAnElementThatHasNone) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P").Set("P", "null"), Element("Q").Set("P", "(x)")})});
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), 0);
  ReadBack file(document.Save());
  QPDFObjectHandle sect = file.TreeRoot().getKey("/K");
  if (sect.isArray()) sect = sect.getArrayItem(0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(sect.getKey("/K").getArrayItem(i).getKey("/P").getObjGen(), sect.getObjGen()) << i;
  }
}

TEST(Saving, MakesElementsThatStandDirectlyInKidsObjectsOfTheirOwn) {
  TestDocument source;
  Page& page = source.AddPage();
  source.Tree({Element("Sect").RawKid("<</S/P/Pg $page1/K [0 <</S/Q/Pg $page1/K 1>>]>>")}).WithoutParentTree();
  page.Mark("P", test::Text("a"));
  page.Mark("Q", test::Text("b"));
  StructureDocument document(source);
  Write().PDSElementInsertKid(document.At({0}), document.NewElement("Span"), kPDSAfterLast);
  const std::string saved = document.Save();
  EXPECT_EQ(test::TreeText(saved), "Sect\n  P\n    mcid 0 page 1\n    Q\n      mcid 1 page 1\n  Span\n");
  EXPECT_EQ(ParentTreeText(saved), "0 [P Q]\n");
  ExpectSound(saved);
}

TEST(Saving, SucceedsForATreeThatCannotBeWalked) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Named("loop").RawKid("$loop")});
  StructureDocument document(source);
  PDSTreeRoot root = kNullObject;
  EXPECT_EQ(RaisedCode([&] { Read().PDDocGetStructTreeRoot(document.Handle(), &root); }), kASDamagedDocument);
  Cos().CosDictPutKeyString(document.PageObject(0), "StructParents", Cos().CosNewInteger(document.Doc(), 0, 5));
  ReadBack file(document.Save());
  EXPECT_EQ(file.Page(1).getKey("/StructParents").getIntValue(), 5);
}

}  // namespace
}  // namespace tgx::host::structure
