#include <cstring>

#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using namespace std::string_literals;

std::string AltOf(PDSElement element) {
  std::string text(static_cast<std::size_t>(Read().PDSElementGetAlt(element, nullptr)), '\0');
  Read().PDSElementGetAlt(element, reinterpret_cast<ASUns8*>(text.data()));
  return text;
}

std::string LanguageOf(PDSElement element) {
  std::string text(static_cast<std::size_t>(Read().PDSElementGetLanguage(element, nullptr)), '\0');
  Read().PDSElementGetLanguage(element, reinterpret_cast<ASUns8*>(text.data()));
  return text;
}

class ElementTexts : public testing::Test {
 protected:
  static std::string File() {
    TestDocument source;
    source.AddPage();
    source.Tree({Element("A").Alt(u"\u00e4").Title("t\xe4\0b"s).Lang("de"), Element("B").Alt(""), Element("C"),
                 Element("D").Set("Alt", "/Name").Set("T", "5").Set("Lang", "[]").Set("S", "(x)")});
    return source.Write();
  }
  StructureDocument document_{File()};
};

TEST_F(ElementTexts, AreHandedOutByteForByte) {
  EXPECT_EQ(AltOf(document_.At({0})), "\xFE\xFF\x00\xE4"s);
  EXPECT_EQ(TitleOf(document_.At({0})), "t\xe4\0b"s);
  EXPECT_EQ(LanguageOf(document_.At({0})), "de");
}

TEST_F(ElementTexts, LeaveTheSlackOfTheBufferAlone) {
  ASUns8 buffer[6] = {9, 9, 9, 9, 9, 9};
  EXPECT_EQ(Read().PDSElementGetLanguage(document_.At({0}), buffer), 2);
  EXPECT_EQ(std::memcmp(buffer, "de\x09\x09\x09\x09", 6), 0);
}

TEST_F(ElementTexts, EmptyOneIsThere) {
  EXPECT_EQ(Read().PDSElementHasAlt(document_.At({1})), 1);
  EXPECT_EQ(AltOf(document_.At({1})), "");
}

TEST_F(ElementTexts, MissingOneIsNot) {
  EXPECT_EQ(Read().PDSElementHasAlt(document_.At({2})), 0);
  EXPECT_EQ(Read().PDSElementHasLanguage(document_.At({2})), 0);
  EXPECT_EQ(AltOf(document_.At({2})), "");
  EXPECT_EQ(TitleOf(document_.At({2})), "");
  EXPECT_EQ(LanguageOf(document_.At({2})), "");
}

TEST_F(ElementTexts, MissingOneIsFoundOnceItIsPutThere) {
  const PDSElement element = document_.At({2});
  const CosDoc file = document_.Doc();
  const auto put = [&](const char* key) { Cos().CosDictPutKeyString(element, key, Cos().CosNewString(file, 0, "x", 1)); };
  EXPECT_EQ(AltOf(element) + TitleOf(element) + LanguageOf(element), "");
  put("Alt");
  put("T");
  EXPECT_EQ(AltOf(element), "x");
  EXPECT_EQ(TitleOf(element), "x");
  EXPECT_EQ(LanguageOf(element), "");
  put("Lang");
  EXPECT_EQ(LanguageOf(element), "x");
  Cos().CosDictRemoveKeyString(element, "T");
  EXPECT_EQ(TitleOf(element), "");
  put("T");
  EXPECT_EQ(TitleOf(element), "x");
}

TEST_F(ElementTexts, EntryOfAnotherTypeIsNone) {
  EXPECT_EQ(Read().PDSElementHasAlt(document_.At({3})), 0);
  EXPECT_EQ(Read().PDSElementHasLanguage(document_.At({3})), 0);
  EXPECT_EQ(AltOf(document_.At({3})), "");
  EXPECT_EQ(TitleOf(document_.At({3})), "");
  EXPECT_EQ(LanguageOf(document_.At({3})), "");
}

TEST_F(ElementTexts, TypeThatIsNoNameIsTheEmptyAtom) { EXPECT_EQ(Read().PDSElementGetType(document_.At({3})), 0); }

TEST_F(ElementTexts, LanguageIsSetToTheBytesAsTheyStand) {
  const std::string bytes = "fr\0x"s;
  Write().PDSElementSetLanguage(document_.At({0}), reinterpret_cast<const ASUns8*>(bytes.data()), 4);
  EXPECT_EQ(LanguageOf(document_.At({0})), bytes);
  Write().PDSElementSetLanguage(document_.At({0}), nullptr, 0);
  EXPECT_EQ(Read().PDSElementHasLanguage(document_.At({0})), 1);
  EXPECT_EQ(LanguageOf(document_.At({0})), "");
}

TEST_F(ElementTexts, AltFromATextIsUtf16WithItsMark) {
  const std::u16string units = u"a\u00e4";
  const ASText text =
      Tables()->text->ASTextFromSizedUnicode(reinterpret_cast<const ASUTF16Val*>(units.data()), kUTF16HostEndian, 4);
  Write().PDSElementSetAltASText(document_.At({2}), text);
  EXPECT_EQ(AltOf(document_.At({2})), "\xFE\xFF\x00\x61\x00\xE4"s);
  Tables()->text->ASTextDestroy(text);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementSetAltASText(document_.At({2}), text); }), kASBadParameter);
}

TEST_F(ElementTexts, AltFromAnEmptyTextIsTheMarkAlone) {
  const ASText text = Tables()->text->ASTextNew();
  Write().PDSElementSetAltASText(document_.At({2}), text);
  EXPECT_EQ(AltOf(document_.At({2})), "\xFE\xFF");
  Tables()->text->ASTextDestroy(text);
}

TEST_F(ElementTexts, AltFromANullTextIsRemoved) {
  Write().PDSElementSetAltASText(document_.At({0}), nullptr);
  EXPECT_EQ(Read().PDSElementHasAlt(document_.At({0})), 0);
}

TEST_F(ElementTexts, AltOfAnObjectThatIsNoElementRaises) {
  const ASText text = Tables()->text->ASTextNew();
  const CosObj number = Cos().CosNewInteger(document_.Doc(), 0, 4);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementSetAltASText(number, text); }), kASWrongType);
  Tables()->text->ASTextDestroy(text);
}

TEST_F(ElementTexts, TypeTakesAnyText) {
  for (const char* type : {"H1", "P [EMPTY]", "a#41b", "#", "gr\xC3\xBC n", "a/b(c)"}) {
    Write().PDSElementSetType(document_.At({0}), Intern(type));
    EXPECT_EQ(TypeOf(document_.At({0})), type);
    StructureDocument saved(document_.Save());
    EXPECT_EQ(TypeOf(saved.At({0})), type);
  }
}

TEST_F(ElementTexts, NewElementHasNothingButItsType) {
  PDSElement element = kNullObject;
  Write().PDSElementCreate(document_.Handle(), &element);
  EXPECT_EQ(Read().PDSElementGetType(element), 0);
  EXPECT_EQ(Read().PDSElementGetNumKids(element), 0);
  EXPECT_EQ(ParentOf(element), kNullObject);
  EXPECT_EQ(Cos().CosObjIsIndirect(element), 1);
  EXPECT_EQ(Cos().CosNameValue(Cos().CosDictGetKeyString(element, "Type")), Intern("StructElem"));
}

TEST_F(ElementTexts, NewElementThatIsNeverInsertedIsNotWritten) {
  const PDSElement element = document_.NewElement("Lost");
  Write().PDSElementInsertKid(element, document_.NewElement("LostToo"), 0);
  EXPECT_EQ(document_.Save().find("Lost"), std::string::npos);
}

class RoleMap : public testing::Test {
 protected:
  static std::string File() {
    TestDocument source;
    source.AddPage();
    source.Tree({Element("A")}).RoleMap({{"Story", "Sect"}, {"Other", "Story"}});
    return source.Write();
  }
  StructureDocument document_{File()};

  PDSRoleMap Map() {
    PDSRoleMap map = kNullObject;
    Read().PDSTreeRootGetRoleMap(document_.Root(), &map);
    return map;
  }
  ASAtom Mapped(const char* source) { return Read().PDSRoleMapGetDirectMap(Map(), Intern(source)); }
};

TEST_F(RoleMap, IsItsDictionary) { EXPECT_EQ(Map(), Cos().CosDictGetKeyString(document_.Root(), "RoleMap")); }

TEST_F(RoleMap, GivesOneStep) {
  EXPECT_EQ(Mapped("Other"), Intern("Story"));
  EXPECT_EQ(Mapped("Story"), Intern("Sect"));
  EXPECT_EQ(Mapped("Sect"), ASAtomNull);
}

TEST_F(RoleMap, TakesNewEntriesAndReplacesOldOnes) {
  Write().PDSRoleMapMap(Map(), Intern("Endnote"), Intern("Note"));
  Write().PDSRoleMapMap(Map(), Intern("Story"), Intern("Div"));
  EXPECT_EQ(Mapped("Endnote"), Intern("Note"));
  EXPECT_EQ(Mapped("Story"), Intern("Div"));
  test::ReadBack file(document_.Save());
  EXPECT_EQ(test::RoleMapText(file.Pdf()), "Endnote -> Note\nOther -> Story\nStory -> Div\n");
}

TEST_F(RoleMap, LosesEntriesButStays) {
  for (const char* source : {"Story", "Other", "NeverThere"}) Write().PDSRoleMapUnMapSrc(Map(), Intern(source), 1);
  EXPECT_EQ(Mapped("Story"), ASAtomNull);
  EXPECT_EQ(Read().PDSTreeRootGetRoleMap(document_.Root(), nullptr), 1);
}

TEST_F(RoleMap, KeepsNamesWithANumberSign) {
  Write().PDSRoleMapMap(Map(), Intern("a#41"), Intern("b#42"));
  EXPECT_EQ(Mapped("a#41"), Intern("b#42"));
  StructureDocument saved(document_.Save());
  PDSRoleMap map = kNullObject;
  Read().PDSTreeRootGetRoleMap(saved.Root(), &map);
  EXPECT_EQ(Read().PDSRoleMapGetDirectMap(map, Intern("a#41")), Intern("b#42"));
}

TEST_F(RoleMap, EntryThatIsNoNameMapsToNothing) {
  Cos().CosDictPutKeyString(Map(), "Story", Cos().CosNewInteger(document_.Doc(), 0, 3));
  EXPECT_EQ(Mapped("Story"), ASAtomNull);
}

TEST_F(RoleMap, OfAnObjectThatIsNoneRaises) {
  const CosObj number = Cos().CosNewInteger(document_.Doc(), 0, 4);
  EXPECT_EQ(RaisedCode([&] { Read().PDSRoleMapGetDirectMap(number, 0); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Write().PDSRoleMapMap(number, Intern("a"), Intern("b")); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Read().PDSRoleMapGetDirectMap(kNullObject, 0); }), kASBadParameter);
}

TEST(NewRoleMap, IsMadeOnce) {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("A")});
  StructureDocument document(source);
  PDSRoleMap map = {5, 5}, made = kNullObject, again = kNullObject;
  EXPECT_EQ(Read().PDSTreeRootGetRoleMap(document.Root(), &map), 0);
  EXPECT_EQ(map, kNullObject);
  Write().PDSTreeRootCreateRoleMap(document.Root(), &made);
  Write().PDSTreeRootCreateRoleMap(document.Root(), &again);
  EXPECT_EQ(made, again);
  Read().PDSTreeRootGetRoleMap(document.Root(), &map);
  EXPECT_EQ(map, made);
}

}  // namespace
}  // namespace tgx::host::structure
