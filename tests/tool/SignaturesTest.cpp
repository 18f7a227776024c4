#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

constexpr const char* kSignature = "<</Type/Sig/Filter/Test.Signer/ByteRange[0 1 2 3]/Contents<00>>>";

/// What the command tells about the repair of a document with one field.
class Signatures : public testing::Test {
 protected:
  std::string Told(const std::string& type, const std::string& value, const std::vector<std::string>& options = {}) {
    TestDocument document;
    Page& page = document.AddPage();
    document.Field(page, "name", type, value);
    document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
    folder_.Write("in.pdf", document.Write());
    std::vector<std::string> command = {"fix", "in.pdf", "-o", "out.pdf", "--force"};
    command.insert(command.end(), options.begin(), options.end());
    const ProcessResult result = Tool(command).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0);
    return result.err;
  }

  TempFolder folder_;
};

TEST_F(Signatures, AreSaidNotToHold) {
  EXPECT_EQ(Told("Sig", kSignature), Message("warning: in.pdf: is signed; the signatures do not hold for out.pdf"));
}

TEST_F(Signatures, AreNotSpokenOfWhenQuiet) { EXPECT_EQ(Told("Sig", kSignature, {"--quiet"}), ""); }

TEST_F(Signatures, ThatAreStillToBeMadeAreNone) { EXPECT_EQ(Told("Sig", "null"), ""); }

TEST_F(Signatures, AreNotTakenForOtherValues) { EXPECT_EQ(Told("Tx", "(signed)"), ""); }

TEST_F(Signatures, AreFoundInFieldsOfFields) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Field(page, "outer", "Tx").Set("Kids", std::string("[<</T(inner)/FT/Sig/V ") + kSignature + ">>]");
  document.Tree({Element("Document")});
  folder_.Write("in.pdf", document.Write());
  const ProcessResult result = Tool({"run", "in.pdf", "-o", "out.pdf", "reserved"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.err, Message("warning: in.pdf: is signed; the signatures do not hold for out.pdf"));
}

}  // namespace
}  // namespace tgx::test
