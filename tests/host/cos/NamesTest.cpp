#include "host/cos/Names.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

/// Names that something on the way might take for something else.
std::vector<std::string> DifficultNames() {
  std::vector<std::string> names = {"",         "#",         "##",   "###",  "#41",   "##41",     "##4141", "a#",  "#4",
                                    "#zz",      "#00",       "#23",  "##23", "#2323", "a#0",      "/",      "//a", "P [E]",
                                    "\xC3\xA9", "a\xFF\xFE", "<<>>", "R",    "1 0 R", "%comment", "(text)"};
  for (int byte = 1; byte < 256; ++byte) names.push_back("a" + std::string(1, static_cast<char>(byte)) + "b");
  names.push_back(std::string(300, 'x') + "#" + std::string(300, ' '));
  names.push_back(std::string(300, 'x') + "#" + std::string(300, 'A'));
  return names;
}

/// A document whose catalog has all names as keys of "Keys", with their numbers as values, and as items of "Items".
HostDocument DocumentOfNames(const std::vector<std::string>& names) {
  HostDocument document;
  const CosObj keys = document.Dict(true);
  const CosObj items = document.Array(true);
  Cos().CosDictPutKeyString(document.Root(), "Keys", keys);
  Cos().CosDictPutKeyString(document.Root(), "Items", items);
  for (std::size_t i = 0; i < names.size(); ++i) {
    Cos().CosDictPut(keys, Intern(names[i]), document.Integer(static_cast<int>(i)));
    Cos().CosArrayInsert(items, static_cast<ASInt32>(i), document.Name(names[i]));
  }
  return document;
}

void ExpectNames(HostDocument& document, const std::vector<std::string>& names) {
  const CosObj keys = Cos().CosDictGetKeyString(document.Root(), "Keys");
  const CosObj items = Cos().CosDictGetKeyString(document.Root(), "Items");
  ASSERT_EQ(Cos().CosArrayLength(items), static_cast<ASInt32>(names.size()));
  for (std::size_t i = 0; i < names.size(); ++i) {
    SCOPED_TRACE(testing::PrintToString(names[i]));
    EXPECT_EQ(AtomText(Cos().CosNameValue(Cos().CosArrayGet(items, static_cast<ASInt32>(i)))), names[i]);
    const CosObj value = Cos().CosDictGetKeyString(keys, names[i].c_str());
    EXPECT_EQ(Cos().CosDictKnownKeyString(keys, names[i].c_str()), 1);
    EXPECT_TRUE(value == Cos().CosDictGet(keys, Intern(names[i])));
    ASSERT_EQ(Cos().CosObjGetType(value), CosInteger);
    EXPECT_EQ(Cos().CosIntegerValue(value), static_cast<ASInt32>(i));
  }
}

std::vector<std::string> EnumeratedKeys(CosObj dict) {
  std::vector<std::string> keys;
  const CosObjEnumProc add = [](CosObj key, CosObj, void* data) -> ASBool {
    static_cast<std::vector<std::string>*>(data)->emplace_back(AtomText(Cos().CosNameValue(key)));
    return 1;
  };
  EXPECT_EQ(Cos().CosObjEnum(dict, add, &keys), 1);
  return keys;
}

TEST(Names, ComeBackFromAnOpenDocumentAsTheyWentIn) {
  const std::vector<std::string> names = DifficultNames();
  HostDocument document = DocumentOfNames(names);
  ExpectNames(document, names);
}

TEST(Names, ComeBackFromASavedDocumentAsTheyWentIn) {
  const std::vector<std::string> names = DifficultNames();
  HostDocument document = DocumentOfNames(names).Reopened();
  ExpectNames(document, names);
}

TEST(Names, ComeBackAfterASecondSaving) {
  const std::vector<std::string> names = DifficultNames();
  HostDocument document = DocumentOfNames(names).Reopened().Reopened();
  ExpectNames(document, names);
}

TEST(Names, AreEnumeratedInByteOrder) {
  std::vector<std::string> names = DifficultNames();
  HostDocument document = DocumentOfNames(names);
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  EXPECT_EQ(EnumeratedKeys(Cos().CosDictGetKeyString(document.Root(), "Keys")), names);
}

TEST(Names, OfAFileMayHaveAStrayNumberSign) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K#zz 1 /N /a# /M /b##41 >>");
  EXPECT_EQ(Cos().CosDictKnownKeyString(document.Root(), "K#zz"), 1);
  EXPECT_STREQ(AtomText(Cos().CosNameValue(Cos().CosDictGetKeyString(document.Root(), "N"))), "a#");
  EXPECT_STREQ(AtomText(Cos().CosNameValue(Cos().CosDictGetKeyString(document.Root(), "M"))), "b#A");
}

TEST(Names, WithANumberSignReplaceAndRemoveTheEntryOfAFile) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << /a#23b 1 /c#zz 2 >> >>");
  const CosObj dict = Cos().CosDictGetKeyString(document.Root(), "D");
  Cos().CosDictPutKeyString(dict, "a#b", document.Integer(3));
  EXPECT_EQ(EnumeratedKeys(dict), (std::vector<std::string>{"a#b", "c#zz"}));
  EXPECT_EQ(Cos().CosIntegerValue(Cos().CosDictGetKeyString(dict, "a#b")), 3);
  Cos().CosDictRemoveKeyString(dict, "c#zz");
  EXPECT_EQ(EnumeratedKeys(dict), (std::vector<std::string>{"a#b"}));
}

TEST(Names, OfTwoSpellingsInOneDictionaryAreOneEntry) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << /c#23zz 1 /c#zz 2 >> >>");
  const CosObj dict = Cos().CosDictGetKeyString(document.Root(), "D");
  ASSERT_EQ(EnumeratedKeys(dict), (std::vector<std::string>{"c#zz"}));
  Cos().CosDictRemoveKeyString(dict, "c#zz");
  EXPECT_EQ(EnumeratedKeys(dict), std::vector<std::string>());
}

TEST(Names, HaveOneObjectForEachKeyThatIsEnumerated) {
  HostDocument document;
  const CosObj first = document.Dict();
  const CosObj second = document.Dict();
  for (const CosObj dict : {first, second}) Cos().CosDictPutKeyString(dict, "Key", document.Integer(1));
  const CosObjEnumProc keep = [](CosObj key, CosObj, void* data) -> ASBool {
    *static_cast<CosObj*>(data) = key;
    return 1;
  };
  CosObj keyOfFirst = {};
  CosObj keyOfSecond = {};
  Cos().CosObjEnum(first, keep, &keyOfFirst);
  Cos().CosObjEnum(second, keep, &keyOfSecond);
  EXPECT_TRUE(keyOfFirst == keyOfSecond);
  EXPECT_EQ(Cos().CosObjGetType(keyOfFirst), CosName);
}

TEST(Names, RaiseForAnAtomThatIsNoneAndForNull) {
  HostDocument document;
  const CosObj dict = document.Dict();
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewName(document.Doc(), 0, ASAtomNull); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictGet(dict, ASAtomNull); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictGetKeyString(dict, nullptr); }), kASBadParameter);
}

TEST(Names, AreFoundInEveryMixtureOfForms) {
  // A sign is spelled out where the file has "#23" and bare where it is followed by no digits.
  HostDocument document =
      HostDocument::FromObjects("<< /Type /Catalog /D << /a#23b#x#23y 1 /#23#23#zz 2 /#-#23-#-# 3 >> >>");
  const CosObj keys = Cos().CosDictGetKeyString(document.Root(), "D");
  const auto number = [&](const char* key) { return Cos().CosIntegerValue(Cos().CosDictGetKeyString(keys, key)); };
  EXPECT_EQ(number("a#b#x#y"), 1);
  EXPECT_EQ(number("###zz"), 2);
  EXPECT_EQ(number("#-#-#-#"), 3);
}

TEST(Names, OfManySignsAreFoundAsProgramsWriteThem) {
  HostDocument document =
      HostDocument::FromObjects("<< /Type /Catalog /D << /#23a#23b#23c#23d#23e 1 /#x#x#x#x#x 2 /#x#x#23aa#x#x#x 3 >> >>");
  const CosObj keys = Cos().CosDictGetKeyString(document.Root(), "D");
  const auto number = [&](const char* key) { return Cos().CosIntegerValue(Cos().CosDictGetKeyString(keys, key)); };
  EXPECT_EQ(number("#a#b#c#d#e"), 1);
  EXPECT_EQ(number("#x#x#x#x#x"), 2);
  EXPECT_EQ(number("#x#x#aa#x#x#x"), 3);
}

TEST(Names, AreFoundInALargeDictionaryWithoutASearch) {
  constexpr int kCount = 50'000;
  std::string entries;
  for (int i = 0; i < kCount; ++i) entries += "/T#23" + std::to_string(i) + "x " + std::to_string(i) + " ";
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << " + entries + ">> >>");
  const CosObj keys = Cos().CosDictGetKeyString(document.Root(), "D");
  for (int i = 0; i < kCount; ++i) {
    const std::string key = "T#" + std::to_string(i) + "x";
    ASSERT_EQ(Cos().CosIntegerValue(Cos().CosDictGetKeyString(keys, key.c_str())), i);
  }
}

}  // namespace
}  // namespace tgx::host
