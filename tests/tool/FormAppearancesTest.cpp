#include <gtest/gtest.h>

#include "tests/support/DataFiles.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

/// Whether a document still asks viewers for new appearances after it has taken over another form.
class FormAppearances : public testing::Test {
 protected:
  /// A tagged document with a field and its appearance.
  struct Form {
    Form() { document.Tree({Element("P").Text(page, "x")}); }
    void Field(const std::string& name, bool withAppearance = true) {
      document.Stream("faceOf" + name, "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
      Annotation field = document.Field(page, name, "Tx", "(value)");
      if (withAppearance) field.Set("AP", "<</N $faceOf" + name + ">>");
    }
    TestDocument document;
    Page& page = document.AddPage();
  };

  static void AskForAppearances(Form& form) {
    form.document.Patch([](QPDF& pdf) {
      pdf.getRoot().getKey("/AcroForm").replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
    });
  }

  bool AsksAfter(const std::vector<std::string>& command) {
    AskForAppearances(form_);
    folder_.Write("in.pdf", form_.document.Write());
    folder_.Write("other.pdf", other_.document.Write());
    const ProcessResult result = Tool(command).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    ReadBack file(ReadFile(folder_ / "out.pdf"));
    return file->getRoot().getKey("/AcroForm").hasKey("/NeedAppearances");
  }

  bool AsksAfterFix() { return AsksAfter({"fix", "in.pdf", "-o", "out.pdf", "--forms", "other.pdf"}); }

  Form form_;
  Form other_;
  TempFolder folder_;
};

TEST_F(FormAppearances, AreKeptWhereAllCameFromTheOtherForm) {
  form_.Field("name", false);
  other_.Field("name");
  EXPECT_FALSE(AsksAfterFix());
}

TEST_F(FormAppearances, AreLeftToTheViewerWhereAFieldHasNoPartner) {
  form_.Field("name");
  form_.Field("mine");
  other_.Field("name");
  EXPECT_TRUE(AsksAfterFix());
}

TEST_F(FormAppearances, AreLeftToTheViewerWhereTheOtherFormHasNone) {
  form_.Field("name");
  other_.Field("name", false);
  EXPECT_TRUE(AsksAfterFix());
}

TEST_F(FormAppearances, AreLeftToTheViewerWhereTheOtherFormDoesThatToo) {
  form_.Field("name");
  other_.Field("name");
  AskForAppearances(other_);
  EXPECT_TRUE(AsksAfterFix());
}

TEST_F(FormAppearances, AreLeftToTheViewerBySingleSteps) {
  form_.Field("name");
  other_.Field("name");
  EXPECT_TRUE(AsksAfter({"run", "in.pdf", "-o", "out.pdf", "sync-forms:other.pdf"}));
}

/// Dark pixels in a rectangle of a page at 100 dots an inch.
int Ink(const Bitmap& page, QPDFObjectHandle rect) {
  const auto pixel = [&](int edge) { return static_cast<int>(rect.getArrayItem(edge).getNumericValue() * 100 / 72); };
  int ink = 0;
  for (int y = page.height - pixel(3); y < page.height - pixel(1); ++y) {
    for (int x = pixel(0); x < pixel(2); ++x) {
      if (static_cast<unsigned char>(page.pixels[static_cast<std::size_t>(y * page.width + x) * 3]) < 96) ++ink;
    }
  }
  return ink;
}

TEST(FormOfTheAnnualReport, ShowsItsTickedBoxOnceItIsFixed) {
  constexpr std::size_t kPage = 6;
  const std::string filled = DataPath("samples/annual-report-filled-form.pdf");
  const TempFolder folder;
  ASSERT_EQ(RunTool({"fix", DataPath("samples/annual-report.pdf"), "-o", folder / "out.pdf", "--forms", filled}).status, 0);
  const std::string fixed = ReadFile(folder / "out.pdf");
  ReadBack file(fixed);
  QPDFObjectHandle box = file->getRoot().getKey("/AcroForm").getKey("/Fields").getArrayItem(2);
  ASSERT_EQ(box.getKey("/AS").unparse(), "/Yes");
  const int ticked = Ink(RenderPages(ReadBytes(filled))[kPage], box.getKey("/Rect"));
  EXPECT_GT(ticked, 0);
  EXPECT_EQ(Ink(RenderPages(fixed)[kPage], box.getKey("/Rect")), ticked);
}

}  // namespace
}  // namespace tgx::test
