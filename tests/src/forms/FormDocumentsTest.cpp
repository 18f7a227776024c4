// Forms of a word processor, synchronised with the same forms filled in otherwise.

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::OpenDocument;
using test::ReadBack;

constexpr int kSyncForms = 4;
constexpr char kEmptyForm[] = "libreoffice/form.pdf";
constexpr char kFilledForm[] = "libreoffice/form-filled.pdf";
constexpr char kReport[] = "samples/annual-report.pdf";
constexpr char kFilledReport[] = "samples/annual-report-filled-form.pdf";

struct FormPair {
  const char* name;
  const char* target;
  const char* source;
  int fields;  ///< on the top level of the form
};

class FormDocuments : public testing::TestWithParam<FormPair> {
 protected:
  void SetUp() override {
    OpenDocument open(test::ReadBytes(test::DataPath(GetParam().target)));
    ASSERT_EQ(open.Action(kSyncForms, test::DataPath(GetParam().source)), test::kSuccess);
    after_ = open.Save();
  }

  static std::string Bytes(const char* file) { return test::ReadBytes(test::DataPath(file)); }
  static QPDFObjectHandle Form(ReadBack& file) { return file->getRoot().getKey("/AcroForm"); }

  /// A value with all that it refers to, streams with their data; without "P", and without empty strings, which are not
  /// copied.
  static std::string Whole(QPDFObjectHandle value) {
    if (value.isStream()) {
      QPDFObjectHandle attributes = value.getDict().shallowCopy();
      for (const char* key : {"/Length", "/Filter", "/DecodeParms"}) attributes.removeKey(key);
      const auto data = value.getStreamData(qpdf_dl_generalized);
      return Whole(attributes) + " stream " + std::string(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    }
    std::string text;
    if (value.isArray()) {
      for (QPDFObjectHandle item : value.getArrayAsVector()) text += Whole(item) + " ";
      return "[ " + text + "]";
    }
    if (value.isDictionary()) {
      for (auto& [key, item] : value.getDictAsMap()) {
        const bool isCopied = key != "/P" && !(item.isString() && item.getStringValue().empty());
        if (isCopied) text += key + " " + Whole(item) + " ";
      }
      return "<< " + text + ">>";
    }
    return value.unparseResolved();
  }

  /// What the target must have after the run for each entry of the source that crosses.
  static void ExpectEntries(QPDFObjectHandle target, QPDFObjectHandle source, const std::string& name) {
    for (const char* key : {"/AS", "/A", "/AA", "/H",   "/BS",     "/TU", "/TM", "/Ff", "/DV", "/V",
                            "/DA", "/Q", "/DS", "/Opt", "/MaxLen", "/TI", "/I",  "/F",  "/MK", "/AP"}) {
      if (!source.hasKey(key)) continue;
      const bool isEmpty = source.getKey(key).isString() && source.getKey(key).getStringValue().empty();
      EXPECT_EQ(Whole(target.getKey(key)), isEmpty ? "null" : Whole(source.getKey(key))) << name << " " << key;
    }
  }

  std::string after_;
};

INSTANTIATE_TEST_SUITE_P(Documents, FormDocuments,
                         testing::Values(FormPair{"FilledIn", kEmptyForm, kFilledForm, 6},
                                         FormPair{"Emptied", kFilledForm, kEmptyForm, 6},
                                         FormPair{"WithItself", kFilledForm, kFilledForm, 6},
                                         FormPair{"AnnualReport", kReport, kFilledReport, 6}),
                         [](const auto& pair) { return pair.param.name; });

TEST_P(FormDocuments, HaveAllEntriesOfTheOtherFormWhole) {
  ReadBack target(after_);
  ReadBack source(Bytes(GetParam().source));
  std::map<std::string, QPDFObjectHandle> partners;
  for (QPDFObjectHandle field : Form(source).getKey("/Fields").getArrayAsVector()) {
    partners.emplace(field.getKey("/T").getStringValue(), field);
  }
  const std::vector<QPDFObjectHandle> fields = Form(target).getKey("/Fields").getArrayAsVector();
  ASSERT_EQ(fields.size(), static_cast<std::size_t>(GetParam().fields));
  for (QPDFObjectHandle field : fields) {
    const std::string name = field.getKey("/T").getStringValue();
    QPDFObjectHandle partner = partners.at(name);
    ExpectEntries(field, partner, name);
    if (!partner.getKey("/Kids").isArray()) continue;
    ASSERT_EQ(field.getKey("/Kids").getArrayNItems(), partner.getKey("/Kids").getArrayNItems());
    for (int i = 0; i < partner.getKey("/Kids").getArrayNItems(); ++i) {
      ExpectEntries(field.getKey("/Kids").getArrayItem(i), partner.getKey("/Kids").getArrayItem(i), name);
    }
  }
}

TEST_P(FormDocuments, StaySoundWithTheirStructure) {
  test::ExpectSound(after_);
  EXPECT_EQ(test::TreeText(after_), test::TreeText(Bytes(GetParam().target)));
}

using FormsThatFollowAppearances = FormDocuments;

INSTANTIATE_TEST_SUITE_P(Documents, FormsThatFollowAppearances,
                         testing::Values(FormPair{"FilledIn", kEmptyForm, kFilledForm, 6},
                                         FormPair{"Emptied", kFilledForm, kEmptyForm, 6}),
                         [](const auto& pair) { return pair.param.name; });

TEST_P(FormsThatFollowAppearances, LookLikeTheOtherForm) {
  const auto other = test::RenderPages(Bytes(GetParam().source));
  const auto before = test::RenderPages(Bytes(GetParam().target));
  const auto after = test::RenderPages(after_);
  ASSERT_EQ(after.size(), 1U);
  EXPECT_TRUE(test::Compare(other[0], after[0]).IsEmpty());
  EXPECT_FALSE(test::Compare(before[0], after[0]).IsEmpty());
}

/// Dark pixels in a rectangle of the page, its edges left out.
int Ink(const test::Bitmap& page, QPDFObjectHandle rect) {
  constexpr double kScale = 100.0 / 72;
  constexpr int kEdge = 3;
  const auto pixel = [&](int edge) { return static_cast<int>(rect.getArrayItem(edge).getNumericValue() * kScale); };
  int ink = 0;
  for (int y = page.height - pixel(3) + kEdge; y < page.height - pixel(1) - kEdge; ++y) {
    for (int x = pixel(0) + kEdge; x < pixel(2) - kEdge; ++x) {
      if (static_cast<unsigned char>(page.pixels[static_cast<std::size_t>(y * page.width + x) * 3]) < 96) ++ink;
    }
  }
  return ink;
}

TEST(FormOfTheAnnualReport, ShowsTheValuesOfTheFilledForm) {
  constexpr std::size_t kPage = 6;
  const std::string before = test::ReadBytes(test::DataPath(kReport));
  OpenDocument open(before);
  ASSERT_EQ(open.Action(kSyncForms, test::DataPath(kFilledReport)), test::kSuccess);
  const std::string after = open.Save();
  const auto empty = test::RenderPages(before);
  const auto filled = test::RenderPages(after);
  ReadBack file(after);
  int shown = 0;
  for (QPDFObjectHandle field : file->getRoot().getKey("/AcroForm").getKey("/Fields").getArrayAsVector()) {
    if (!field.getKey("/V").isString()) continue;
    EXPECT_EQ(Ink(empty[kPage], field.getKey("/Rect")), 0) << field.getKey("/T").getStringValue();
    EXPECT_GT(Ink(filled[kPage], field.getKey("/Rect")), 20) << field.getKey("/T").getStringValue();
    ++shown;
  }
  EXPECT_EQ(shown, 4);
}

/// The font programs that the appearances of all fields lead to.
std::set<QPDFObjGen> FontPrograms(ReadBack& file) {
  std::set<QPDFObjGen> programs;
  for (QPDFObjectHandle field : file->getRoot().getKey("/AcroForm").getKey("/Fields").getArrayAsVector()) {
    QPDFObjectHandle face = field.getKey("/AP").getKey("/N");
    if (!face.isStream()) continue;
    for (auto& [name, font] : face.getDict().getKey("/Resources").getKey("/Font").getDictAsMap()) {
      QPDFObjectHandle program = font.getKey("/FontDescriptor").getKey("/FontFile2");
      if (program.isStream()) programs.insert(program.getObjGen());
    }
  }
  return programs;
}

TEST(FormOfTheAnnualReport, StillHasEachFontOnce) {
  OpenDocument open(test::ReadBytes(test::DataPath(kReport)));
  ASSERT_EQ(open.Action(kSyncForms, test::DataPath(kFilledReport)), test::kSuccess);
  ReadBack before(test::ReadBytes(test::DataPath(kFilledReport)));
  ReadBack after(open.Save());
  EXPECT_GT(FontPrograms(before).size(), 1U);
  EXPECT_EQ(FontPrograms(after).size(), FontPrograms(before).size());
}

TEST(FormOfTheAnnualReport, GetsCalculationOrderAndSignatureFlags) {
  OpenDocument open(test::ReadBytes(test::DataPath(kReport)));
  ASSERT_EQ(open.Action(kSyncForms, test::DataPath(kFilledReport)), test::kSuccess);
  ReadBack file(open.Save());
  QPDFObjectHandle form = file->getRoot().getKey("/AcroForm");
  EXPECT_EQ(form.getKey("/SigFlags").unparse(), "0");
  ASSERT_EQ(form.getKey("/CO").getArrayNItems(), 1);
  EXPECT_EQ(form.getKey("/CO").getArrayItem(0).getKey("/T").getUTF8Value(), "Name");
}

}  // namespace
}  // namespace tgx
