// What action 3 makes of the pages of real documents.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/api/HostBinding.h"
#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::DataFile;
using test::HostSession;
using test::OpenDocument;

constexpr int kCutText = 3;

/// The character codes of the text elements of a list, element by element, those in containers included.
void CollectTexts(PDEContent content, std::vector<std::vector<std::string>>& texts) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) {
    const PDEElement element = PDEContentGetElem(content, index);
    if (PDEObjectGetType(element) == kPDEContainer) CollectTexts(PDEContainerGetContent(element), texts);
    if (PDEObjectGetType(element) != kPDEText) continue;
    std::vector<std::string>& codes = texts.emplace_back();
    const ASInt32 chars = PDETextGetNumChars(element);
    for (ASInt32 at = 0; at < chars; ++at) {
      std::string code(4, '\0');
      code.resize(
          static_cast<std::size_t>(PDETextGetText(element, kPDETextChar, at, reinterpret_cast<ASUns8*>(code.data()))));
      codes.push_back(code);
    }
  }
}

std::vector<std::vector<std::string>> TextsOf(OpenDocument& document, ASInt32 page) {
  std::vector<std::vector<std::string>> texts;
  CollectTexts(PDPageAcquirePDEContent(PDDocAcquirePage(document.Handle(), page), test::kTestExtension), texts);
  return texts;
}

class CutPages : public testing::TestWithParam<DataFile> {
 protected:
  HostSession session_;
};

TEST_P(CutPages, KeepTheFirstCharacterOfLongerTextsAndNothingElse) {
  const std::string bytes = test::ReadBytes(GetParam().path);
  OpenDocument before(bytes);
  OpenDocument cut(bytes);
  ASSERT_EQ(cut.Action(kCutText), test::kSuccess);
  OpenDocument after(cut.Save());
  const ASInt32 pages = PDDocGetNumPages(before.Handle());
  ASSERT_EQ(PDDocGetNumPages(after.Handle()), pages);
  for (ASInt32 page = 0; page < pages; ++page) {
    std::vector<std::vector<std::string>> expected;
    for (const auto& text : TextsOf(before, page)) {
      if (text.size() > 1) expected.push_back({text.front()});
    }
    std::vector<std::vector<std::string>> left;
    for (const auto& text : TextsOf(after, page)) {
      if (!text.empty()) left.push_back(text);
    }
    EXPECT_THAT(left, testing::UnorderedElementsAreArray(expected)) << "page " << page + 1;
  }
}

/// Paints all pages; false when the program says that it cannot.
bool MuPdfPaints(const std::string& pdf) {
  const std::filesystem::path path =
      std::filesystem::path(testing::TempDir()) / ("tgx-cut-" + std::to_string(getpid()) + ".pdf");
  std::ofstream(path, std::ios::binary) << pdf;
  // The path is the test's own.
  const bool painted = std::system(("mutool draw -q -r 36 -F ppm -o /dev/null '" + path.string() + "'").c_str()) ==
                       0;  // NOLINT(cert-env33-c)
  std::filesystem::remove(path);
  return painted;
}

TEST_P(CutPages, AreStillReadAndPainted) {
  const std::string bytes = test::ReadBytes(GetParam().path);
  OpenDocument document(bytes);
  ASSERT_EQ(document.Action(kCutText), test::kSuccess);
  const std::string saved = document.Save();
  // Some files have problems of their own.
  if (test::FileProblems(bytes).empty()) {
    EXPECT_THAT(test::FileProblems(saved), testing::IsEmpty());
  }
  EXPECT_EQ(test::RenderPages(saved).size(), static_cast<std::size_t>(PDDocGetNumPages(document.Handle())));
  EXPECT_TRUE(MuPdfPaints(saved));
}

INSTANTIATE_TEST_SUITE_P(RealDocuments, CutPages, testing::ValuesIn(test::DataFiles()),
                         [](const auto& file) { return test::TestName(file.param); });

}  // namespace
}  // namespace tgx
