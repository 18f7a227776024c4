#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

/// PDF text of an object.
std::string TextOf(CosObj object) { return ObjectOf(object).unparseResolved(); }

TEST(CosNew, MakesObjectsOfEveryType) {
  HostDocument document;
  const CosDoc doc = document.Doc();
  EXPECT_EQ(TextOf(Cos().CosNewBoolean(doc, 0, 1)), "true");
  EXPECT_EQ(TextOf(Cos().CosNewBoolean(doc, 0, 0)), "false");
  EXPECT_EQ(TextOf(Cos().CosNewInteger(doc, 0, -5)), "-5");
  EXPECT_EQ(TextOf(Cos().CosNewFixed(doc, 0, 0x8000)), "0.5");
  EXPECT_EQ(TextOf(Cos().CosNewFloat(doc, 0, 0.3F)), "0.3");
  EXPECT_EQ(TextOf(Cos().CosNewName(doc, 0, Intern("P [E]"))), "/P#20#5bE#5d");
  EXPECT_EQ(TextOf(Cos().CosNewString(doc, 0, "text", 4)), "(text)");
  EXPECT_EQ(TextOf(Cos().CosNewArray(doc, 0, 7)), "[ ]") << "the hint does not count";
  EXPECT_EQ(TextOf(Cos().CosNewDict(doc, 0, 7)), "<< >>");
}

TEST(CosNew, MakesDirectAndIndirectObjects) {
  HostDocument document;
  for (const ASBool indirect : {0, 1}) {
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewBoolean(document.Doc(), indirect, 1)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewInteger(document.Doc(), indirect, 1)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewFixed(document.Doc(), indirect, 1)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewFloat(document.Doc(), indirect, 1)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewName(document.Doc(), indirect, 0)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewString(document.Doc(), indirect, "", 0)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewArray(document.Doc(), indirect, 0)), indirect);
    EXPECT_EQ(Cos().CosObjIsIndirect(Cos().CosNewDict(document.Doc(), indirect, 0)), indirect);
  }
}

TEST(CosNew, MakesAnotherObjectEachTime) {
  HostDocument document;
  EXPECT_EQ(Cos().CosObjEqual(document.Integer(1), document.Integer(1)), 0);
}

TEST(CosNewString, TakesTheBytesAsTheyStand) {
  HostDocument document;
  const std::string bytes("\0a\0\xFF", 4);
  const CosObj string = document.String(bytes);
  ASTArraySize count = 0;
  const char* const kept = Cos().CosStringValue(string, &count);
  EXPECT_EQ(std::string(kept, static_cast<std::size_t>(count)), bytes);
}

TEST(CosNewString, CopiesTheBytes) {
  HostDocument document;
  std::string bytes = "before";
  const CosObj string = document.String(bytes);
  bytes = "after!";
  EXPECT_STREQ(Cos().CosStringValue(string, nullptr), "before");
}

TEST(CosNewString, OfNullAndNoBytesIsTheEmptyString) {
  HostDocument document;
  EXPECT_EQ(TextOf(Cos().CosNewString(document.Doc(), 0, nullptr, 0)), "()");
}

TEST(CosNewString, RaisesForNullWithACountAndForANegativeCount) {
  HostDocument document;
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewString(document.Doc(), 0, nullptr, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewString(document.Doc(), 0, "a", -1); }), kASBadParameter);
}

TEST(CosNewFloat, RaisesForWhatIsNoNumber) {
  HostDocument document;
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewFloat(document.Doc(), 0, std::numeric_limits<float>::infinity()); }),
            kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewFloat(document.Doc(), 0, std::numeric_limits<float>::quiet_NaN()); }),
            kASBadParameter);
}

TEST(CosNew, RaisesForADocumentThatIsClosed) {
  HostDocument document;
  const CosDoc doc = document.Doc();
  document.Close();
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewBoolean(doc, 0, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewInteger(doc, 0, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewFixed(doc, 0, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewFloat(doc, 0, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewName(doc, 0, 0); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewString(doc, 0, "", 0); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewArray(doc, 0, 0); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosNewDict(nullptr, 0, 0); }), kASBadParameter);
}

TEST(CosNew, IsNotWrittenUnlessSomethingRefersToIt) {
  HostDocument document;
  Cos().CosDictPutKeyString(document.Root(), "Kept", Cos().CosNewString(document.Doc(), 1, "this one stays", 14));
  Cos().CosNewString(document.Doc(), 1, "this one goes", 13);
  const std::string written = document.Written();
  EXPECT_NE(written.find("this one stays"), std::string::npos);
  EXPECT_EQ(written.find("this one goes"), std::string::npos);
}

}  // namespace
}  // namespace tgx::host
