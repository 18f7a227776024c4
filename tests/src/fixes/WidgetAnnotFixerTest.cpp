#include <gtest/gtest.h>

#include "src/fixes/FixWidgetAnnot/WidgetAnnotFixer.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Annotation;
using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kButtonWidgets = 0x100;

/// The annotations of the first page after the fix.
class WidgetAnnot : public testing::Test {
 protected:
  WidgetAnnot() { document_.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 10 10]>>", "0 0 10 10 re f"); }

  Annotation Button(const std::string& name) {
    return document_.Field(page_, name.c_str(), "Btn")
        .Set("AP", "<</N $face>>")
        .Set("MK", "<</CA(Go)>>")
        .Set("Ff", "65536")
        .Set("C", "[1 0 0]")
        .Set("F", "6");
  }

  QPDFObjectHandle FixedAnnotation(int index = 0) {
    document_.Tree({Element("Document")});
    OpenDocument open(document_.Write());
    EXPECT_EQ(open.Fixups(kButtonWidgets), test::kSuccess);
    const std::string saved = open.Save();
    test::ExpectSound(saved);
    file_ = std::make_unique<test::ReadBack>(saved);
    return file_->Page(1).getKey("/Annots").getArrayItem(index);
  }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::unique_ptr<test::ReadBack> file_;
};

TEST_F(WidgetAnnot, MakesAStampOfAButton) {
  Button("go");
  const std::vector<const char*> lost = {"/P", "/MK", "/Ff", "/C", "/F", "/FT", "/T"};
  document_.Tree({Element("Document")});
  test::ReadBack before(document_.Write());
  for (const char* key : lost) {
    EXPECT_TRUE(before.Page(1).getKey("/Annots").getArrayItem(0).hasKey(key)) << "nothing to lose: " << key;
  }
  QPDFObjectHandle stamp = FixedAnnotation();
  EXPECT_EQ(stamp.getKey("/Subtype").unparse(), "/Stamp");
  EXPECT_EQ(stamp.getKey("/H").unparse(), "/I");
  EXPECT_EQ(stamp.getKey("/Border").unparse(), "[ 0 0 1 ]");
  for (const char* key : {"/Subtype", "/H", "/Border"}) EXPECT_FALSE(stamp.getKey(key).isIndirect()) << key;
  for (const char* key : lost) EXPECT_FALSE(stamp.hasKey(key)) << key;
}

TEST_F(WidgetAnnot, KeepsTheAppearanceButNotItsSubtype) {
  Button("go");
  QPDFObjectHandle face = FixedAnnotation().getKey("/AP").getKey("/N");
  ASSERT_TRUE(face.isStream());
  EXPECT_FALSE(face.getDict().hasKey("/Subtype"));
  EXPECT_EQ(face.getDict().getKey("/BBox").unparse(), "[ 0 0 10 10 ]");
}

TEST_F(WidgetAnnot, MakesAStampOfABoxWithAnAppearanceForEachState) {
  Button("box").Set("AP", "<</N<</On $face/Subtype/X>>>>");
  QPDFObjectHandle stamp = FixedAnnotation();
  EXPECT_EQ(stamp.getKey("/Subtype").unparse(), "/Stamp");
  QPDFObjectHandle faces = stamp.getKey("/AP").getKey("/N");
  EXPECT_FALSE(faces.hasKey("/Subtype"));
  EXPECT_EQ(faces.getKey("/On").getDict().getKey("/Subtype").unparse(), "/Form");
}

TEST_F(WidgetAnnot, FixesButtonsOfAllPagesAndReleasesThePages) {
  test::Page& second = document_.AddPage();
  document_.Field(second, "go", "Btn").Set("AP", "<</N $face>>");
  document_.Tree({Element("Document")});
  OpenDocument open(document_.Write());
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Fixups(kButtonWidgets), test::kSuccess);
  EXPECT_TRUE(host.Uneven().empty()) << testing::PrintToString(host.Uneven());
  test::ReadBack file(open.Save());
  EXPECT_EQ(file.Page(2).getKey("/Annots").getArrayItem(0).getKey("/Subtype").unparse(), "/Stamp");
}

TEST_F(WidgetAnnot, EndsWithTheHostsRaiseForATypeThatIsNoName) {
  Button("go").Set("FT", "(Btn)");
  document_.Tree({Element("Document")});
  OpenDocument open(document_.Write());
  const test::Outcome outcome = open.Fixups(kButtonWidgets);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST(WidgetAnnotFixer, FailsWithoutADocument) { EXPECT_FALSE(WidgetAnnotFixer().Run(nullptr)); }

TEST_F(WidgetAnnot, LeavesATextFieldAlone) {
  document_.Field(page_, "name", "Tx");
  EXPECT_EQ(FixedAnnotation().getKey("/Subtype").unparse(), "/Widget");
}

TEST_F(WidgetAnnot, LeavesAWidgetWhoseTypeStandsOnItsParentAlone) {
  Button("go").Set("FT", "null").Set("Parent", "<</FT/Btn/T(parent)>>");
  EXPECT_EQ(FixedAnnotation().getKey("/Subtype").unparse(), "/Widget");
}

TEST_F(WidgetAnnot, LeavesOtherAnnotationsAlone) {
  page_.Link("https://example.org/");
  EXPECT_EQ(FixedAnnotation().getKey("/Subtype").unparse(), "/Link");
}

TEST_F(WidgetAnnot, MakesTheActionOfAClickTheAction) {
  Button("go").Set("AA", "<</D<</S/Named/N/NextPage>>/E<</S/Named/N/PrevPage>>>>").Set("A", "<</S/Named/N/FirstPage>>");
  QPDFObjectHandle stamp = FixedAnnotation();
  EXPECT_FALSE(stamp.hasKey("/AA"));
  EXPECT_EQ(stamp.getKey("/A").getKey("/N").unparse(), "/NextPage");
}

TEST_F(WidgetAnnot, KeepsAdditionalActionsWithoutOneForAClick) {
  Button("go").Set("AA", "<</E<</S/Named/N/NextPage>>>>");
  QPDFObjectHandle stamp = FixedAnnotation();
  EXPECT_TRUE(stamp.getKey("/AA").hasKey("/E"));
  EXPECT_FALSE(stamp.hasKey("/A"));
}

TEST_F(WidgetAnnot, FindsNothingToDoTheSecondTime) {
  Button("go");
  document_.Tree({Element("Document")});
  OpenDocument open(document_.Write());
  ASSERT_EQ(open.Fixups(kButtonWidgets), test::kSuccess);
  const std::string once = open.Save();
  ASSERT_EQ(open.Fixups(kButtonWidgets), test::kSuccess);
  EXPECT_EQ(open.Save(), once);
}

TEST_F(WidgetAnnot, EndsWithTheHostsRaiseForAButtonWithoutAnAppearance) {
  Button("first");
  Button("second").Set("AP", "null");
  document_.Tree({Element("Document")});
  OpenDocument open(document_.Write());
  const test::Outcome outcome = open.Fixups(kButtonWidgets);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  test::ReadBack file(open.Save());
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Subtype").unparse(), "/Stamp") << "what was done stays";
}

TEST_F(WidgetAnnot, FailsWithoutATextForADocumentWithoutAStructureTree) {
  Button("go");
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Fixups(kButtonWidgets), test::kSoftFailure);
  test::ReadBack file(open.Save());
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Subtype").unparse(), "/Widget");
}

}  // namespace
}  // namespace tgx
