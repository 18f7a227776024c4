#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Page;

ASErrorCode CodeOfReading(TestDocument& source) {
  StructureDocument document(source);
  return RaisedCode([&] { Read().PDDocGetStructTreeRoot(document.Handle(), nullptr); });
}

/// A chain of that many elements.
Element Chain(int levels) {
  Element top("L1");
  Element at = top;
  for (int i = 2; i <= levels; ++i) at = at.AddNew("L");
  return top;
}

TEST(StructTreeRoot, IsTheCatalogsDictionary) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("P")});
  StructureDocument document(source);
  PDSTreeRoot root = kNullObject;
  EXPECT_EQ(Read().PDDocGetStructTreeRoot(document.Handle(), &root), 1);
  EXPECT_EQ(root, Cos().CosDictGetKeyString(Cos().CosDocGetRoot(document.Doc()), "StructTreeRoot"));
}

TEST(StructTreeRoot, OfADocumentWithoutOneIsTheNullObject) {
  TestDocument source;
  source.AddPage();
  StructureDocument document(source);
  PDSTreeRoot root = {5, 5};
  EXPECT_EQ(Read().PDDocGetStructTreeRoot(document.Handle(), &root), 0);
  EXPECT_EQ(root, kNullObject);
}

TEST(StructTreeRoot, ThatIsNoDictionaryIsNone) {
  TestDocument source;
  source.AddPage();
  source.SetCatalog("StructTreeRoot", "[1 2]");
  StructureDocument document(source);
  EXPECT_EQ(Read().PDDocGetStructTreeRoot(document.Handle(), nullptr), 0);
}

TEST(StructTreeRoot, IsMadeOnce) {
  TestDocument source;
  source.AddPage();
  StructureDocument document(source);
  PDSTreeRoot made = kNullObject, again = kNullObject;
  Write().PDDocCreateStructTreeRoot(document.Handle(), &made);
  Write().PDDocCreateStructTreeRoot(document.Handle(), &again);
  EXPECT_EQ(made, again);
  EXPECT_EQ(document.Root(), made);
  EXPECT_EQ(Cos().CosObjIsIndirect(made), 1);
  EXPECT_EQ(Read().PDSTreeRootGetNumKids(made), 0);
  EXPECT_EQ(Cos().CosDictKnownKeyString(Cos().CosDocGetRoot(document.Doc()), "MarkInfo"), 0);
}

TEST(StructTreeRoot, ThatIsMadeTakesElements) {
  TestDocument source;
  source.AddPage();
  StructureDocument document(source);
  PDSTreeRoot root = kNullObject;
  Write().PDDocCreateStructTreeRoot(document.Handle(), &root);
  Write().PDSElementInsertKid(root, document.NewElement("Document"), kPDSAfterLast);
  EXPECT_EQ(document.SavedTree(), "Document\n");
}

TEST(StructTreeRoot, AsAnElementHasKidsButNoTextsAndNoType) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("P")});
  StructureDocument document(source);
  const PDSElement root = document.Root();
  EXPECT_EQ(Read().PDSElementGetNumKids(root), 1);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetType(root); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetAlt(root, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementHasAlt(root); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetTitle(root, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetLanguage(root, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementHasLanguage(root); }), kASWrongType);
}

TEST(Elements, ParentOfTheTopIsTheRoot) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("P")})});
  StructureDocument document(source);
  PDSElement parent = kNullObject;
  ASBool isRoot = 7;
  Read().PDSElementGetParent(document.At({0}), &parent, &isRoot);
  EXPECT_EQ(parent, document.Root());
  EXPECT_EQ(isRoot, 1);
  Read().PDSElementGetParent(document.At({0, 0}), &parent, &isRoot);
  EXPECT_EQ(parent, document.At({0}));
  EXPECT_EQ(isRoot, 0);
}

TEST(Elements, RootHasNoParent) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")});
  StructureDocument document(source);
  PDSElement parent = {9, 9};
  ASBool isRoot = 7;
  Read().PDSElementGetParent(document.Root(), &parent, &isRoot);
  EXPECT_EQ(parent, kNullObject);
  EXPECT_EQ(isRoot, 0);
}

TEST(Elements, RaiseForHandlesOfOtherObjects) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")});
  StructureDocument document(source);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetType(document.PageObject(0)); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetNumKids(kNullObject); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetNumKids({12345, document.At({0}).b}); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Read().PDSTreeRootGetNumKids(document.At({0})); }), kASWrongType);
}

TEST(Elements, OfAClosedDocumentRaise) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")});
  PDSElement element = kNullObject;
  {
    StructureDocument document(source);
    element = document.At({0});
  }
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetType(element); }), kASBadParameter);
}

TEST(Elements, ParentIsWhereTheWalkCameFromWhenItIsMissingOrWrong) {
  for (const char* parent : {"null", "5", "9999 0 R", "$other", "$page1"}) {
    TestDocument source;
    source.AddPage();
    source.Tree({Element("Sect")({Element("Other").Named("other"), Element("P").Set("P", parent)})});
    StructureDocument document(source);
    EXPECT_EQ(ParentOf(document.At({0, 1})), document.At({0})) << parent;
  }
}

TEST(Elements, ParentOfAnElementInTwoPlacesIsTheOneThatItNames) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")({Element("A").RawKid("$shared"), Element("B").Named("b").RawKid("$shared")})});
  source.Object("shared", "<</Type/StructElem/S/Shared/P $b>>");
  StructureDocument document(source);
  EXPECT_EQ(document.At({0, 0, 0}), document.At({0, 1, 0}));
  EXPECT_EQ(ParentOf(document.At({0, 0, 0})), document.At({0, 1}));
}

TEST(Elements, OutsideOfTheTreeAreReadWhenTheyAreUsed) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Named("sect")});
  source.Object("lost", "<</Type/StructElem/S/Lost/P $sect/K [<</S/Kid>> 3]>>").SetCatalog("Lost", "$lost");
  StructureDocument document(source);
  const PDSElement lost = Cos().CosDictGetKeyString(Cos().CosDocGetRoot(document.Doc()), "Lost");
  EXPECT_EQ(TypeOf(lost), "Lost");
  EXPECT_EQ(KidsOf(lost), "Kid MC");
  EXPECT_EQ(ParentOf(lost), document.At({0}));
  EXPECT_EQ(KidsOf(document.At({0})), "");
}

TEST(Elements, OutsideOfTheTreeThatHoldThemselvesRaise) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect")});
  source.Object("lost", "<</Type/StructElem/S/Lost/K $lost>>").SetCatalog("Lost", "$lost");
  StructureDocument document(source);
  const PDSElement lost = Cos().CosDictGetKeyString(Cos().CosDocGetRoot(document.Doc()), "Lost");
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetType(lost); }), kASDamagedDocument);
}

TEST(DamagedTree, ElementThatIsItsOwnParentRaises) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Named("loop").RawKid("$loop")});
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, ElementThatIsItsOwnAncestorRaises) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Named("loop")({Element("A")({Element("B").RawKid("$loop")})})});
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, RaisesOnEveryUse) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Named("loop").RawKid("$loop")});
  StructureDocument document(source);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(RaisedCode([&] { Read().PDDocGetStructTreeRoot(document.Handle(), nullptr); }), kASDamagedDocument);
  }
  EXPECT_NE(RaisedText([&] { document.Root(); }).find("is its own ancestor"), std::string::npos);
}

TEST(DamagedTree, FiveHundredAndTwelveLevelsAreRead) {
  TestDocument source;
  source.AddPage();
  source.Tree({Chain(512)});
  EXPECT_EQ(CodeOfReading(source), -1);
}

TEST(DamagedTree, FiveHundredAndThirteenLevelsRaise) {
  TestDocument source;
  source.AddPage();
  source.Tree({Chain(513)});
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, DepthCountsTheLongestWayToASharedElement) {
  TestDocument source;
  source.AddPage();
  Element shared = Chain(300);
  shared.Named("shared");
  Element deep = Element("D1");
  Element at = deep;
  for (int i = 2; i <= 212; ++i) at = at.AddNew("D");
  Element deeper = at.AddNew("D");
  source.Tree({shared, deep});
  at.RawKid("$shared");
  EXPECT_EQ(CodeOfReading(source), -1);  // 212 + 300
  deeper.RawKid("$shared");
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, VeryDeepTreeRaisesWithoutRecursion) {
  TestDocument source;
  source.AddPage();
  std::string previous;
  for (int i = 0; i < 20'000; ++i) {
    const std::string name = "e" + std::to_string(i);
    source.Object(name, "<</S/P" + previous + ">>");
    previous = "/K $" + name;
  }
  source.Tree({}).SetTree("K", "$e19999");
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, ElementsThatShareTheirKidsLevelByLevelRaise) {
  TestDocument source;
  source.AddPage();
  source.Object("e0", "<</S/P>>");
  for (int i = 1; i <= 40; ++i) {
    const std::string kid = "$e" + std::to_string(i - 1);
    source.Object("e" + std::to_string(i), "<</S/P/K [" + kid + " " + kid + "]>>");
  }
  source.Tree({}).SetTree("K", "$e40");
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, ElementsThatShareOneLongListOfKidsRaise) {
  constexpr int kCount = 20'000;
  TestDocument source;
  source.AddPage();
  source.Object("kids", "[" + Repeated("0 ", kCount) + "]");
  std::string top;
  for (int i = 0; i < kCount; ++i) {
    const std::string name = "e" + std::to_string(i);
    source.Object(name, "<</S/P/K $kids>>");
    top += "$" + name + " ";
  }
  source.Tree({}).SetTree("K", "[" + top + "]");
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, ElementsOutsideOfTheTreeThatShareOneLongListOfKidsRaise) {
  constexpr int kCount = 20'000;
  TestDocument source;
  source.AddPage();
  source.Object("kids", "[" + Repeated("0 ", kCount) + "]").Tree({});
  source.SetCatalog("Elements", "[" + Repeated("<</S/P/K $kids>> ", kCount) + "]");
  StructureDocument document(source);
  const CosObj elements = Cos().CosDictGetKeyString(Cos().CosDocGetRoot(document.Doc()), "Elements");
  EXPECT_EQ(RaisedCode([&] {
              for (int i = 0; i < kCount; ++i) Read().PDSElementGetNumKids(Cos().CosArrayGet(elements, i));
            }),
            kASDamagedDocument);
}

TEST(DamagedTree, FewElementsMayShareAListOfKids) {
  TestDocument source;
  source.AddPage();
  source.Object("kids", "[" + Repeated("0 ", 20'000) + "]");
  source.Tree({Element("P").Set("K", "$kids"), Element("P").Set("K", "$kids"), Element("P").Set("K", "$kids")});
  StructureDocument document(source);
  EXPECT_EQ(Read().PDSElementGetNumKids(document.At({2})), 20'000);
}

TEST(DamagedTree, ElementWithManyKidsInManyPlacesRaises) {
  TestDocument source;
  source.AddPage();
  source.Object("e", "<</S/P/K [" + Repeated("0 ", 1000) + "]>>");
  source.Tree({}).SetTree("K", "[" + Repeated("$e ", 1000) + "]");
  EXPECT_EQ(CodeOfReading(source), kASDamagedDocument);
}

TEST(DamagedTree, ElementMetTwiceIsAllowed) {
  TestDocument source;
  source.AddPage();
  source.Object("shared", "<</S/Shared>>");
  source.Tree({Element("Sect").RawKid("$shared").RawKid("$shared")});
  StructureDocument document(source);
  EXPECT_EQ(KidsOf(document.At({0})), "Shared Shared");
}

TEST(DamagedTree, KidsThatAreNoneAreSkipped) {
  for (const char* kids : {"null", "9999 0 R", "[]", "[null 9999 0 R]", "[[]]", "(text)", "/Name", "true"}) {
    TestDocument source;
    source.AddPage();
    source.Tree({Element("Sect").Set("K", kids)});
    EXPECT_EQ(CodeOfReading(source), -1) << kids;
  }
}

TEST(Kids, SingleItemWithoutAnArrayIsOneKid) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Sect").Set("K", "<</S/P>>"), Element("Q").Set("K", "4")});
  StructureDocument document(source);
  EXPECT_EQ(KidsOf(document.At({0})), "P");
  EXPECT_EQ(KidsOf(document.At({1})), "MC");
}

TEST(Kids, IndirectIntegerIsMarkedContent) {
  TestDocument source;
  source.AddPage();
  source.Object("number", "4");
  source.Tree({Element("Sect").RawKid("$number")});
  StructureDocument document(source);
  EXPECT_EQ(KidOf(document.At({0}), 0).mcid, 4);
}

}  // namespace
}  // namespace tgx::host::structure
