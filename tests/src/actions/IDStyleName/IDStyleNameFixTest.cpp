#include "src/actions/IDStyleName/IDStyleNameFix.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/support/LogFolder.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSuccess;
using test::OpenDocument;
using test::Outcome;
using test::Page;
using test::ReadBack;
using test::TestDocument;

constexpr int kStyleNames = 2;

// A document whose elements have style identifiers for types, and the file with their names.
class IDStyleNameFixTest : public testing::Test {
 protected:
  std::string WriteStyles(const std::string& text) {
    const std::string path = folder_.Path() + "/styles.xml";
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  static std::string Paragraphs(const std::string& styles) {
    return "<ID_Document><ID_ParaStyleList>" + styles + "</ID_ParaStyleList></ID_Document>";
  }
  static std::string Style(const std::string& id, const std::string& hexName) {
    return "<ID_ParaStyle id=\"" + id + "\" hex_name=\"" + hexName + "\"/>";
  }

  std::string SavedAfter(const std::string& styles) {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kStyleNames, WriteStyles(styles)), kSuccess);
    std::string saved = open.Save();
    test::ExpectSound(saved);
    return saved;
  }
  std::string TreeAfter(const std::string& styles) { return test::TreeText(SavedAfter(styles)); }
  std::string RoleMapAfter(const std::string& styles) {
    ReadBack saved(SavedAfter(styles));
    return test::RoleMapText(saved.Pdf());
  }

  TestDocument doc;
  Page& page = doc.AddPage();

 private:
  test::LogFolder folder_;
};

TEST_F(IDStyleNameFixTest, RenamesElementsAtAnyDepth) {
  doc.Tree({Element("ps1")({Element("Sect")({Element("ps2").Text(page, "text")})}), Element("ps1")});
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "0041") + Style("ps2", "00420063"))),
            "A\n  Sect\n    Bc\n      mcid 0 page 1\nA\n");
}

TEST_F(IDStyleNameFixTest, GivesTheRoleOfAStyleWithAnEmptyNameToTheEmptyType) {
  doc.Tree({Element("ps1")}).RoleMap({{"ps1", "H1"}});
  EXPECT_EQ(RoleMapAfter(Paragraphs(Style("ps1", ""))), " -> H1\n");
}

TEST_F(IDStyleNameFixTest, LeavesTypesThatAreNoIdentifier) {
  doc.Tree({Element("P"), Element("ps"), Element("ps11"), Element("PS1")});
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "0041"))), "P\nps\nps11\nPS1\n");
}

TEST_F(IDStyleNameFixTest, PrefersTheRedefinedStyle) {
  doc.Tree({Element("ps1"), Element("ps2")});
  EXPECT_EQ(TreeAfter("<ID_Document><ID_RedefinedParaStyleList>" + Style("ps1", "0042") +
                      "</ID_RedefinedParaStyleList><ID_ParaStyleList>" + Style("ps1", "0041") + Style("ps2", "0041") +
                      "</ID_ParaStyleList></ID_Document>"),
            "B\nA\n");
}

TEST_F(IDStyleNameFixTest, LetsTheLaterOfTwoEntriesWin) {
  doc.Tree({Element("ps1")});
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "0041") + Style("ps1", "0042"))), "B\n");
}

TEST_F(IDStyleNameFixTest, WritesNamesInUtf8) {
  doc.Tree({Element("ps1")}).RoleMap({{"ps1", "P"}});
  EXPECT_EQ(RoleMapAfter(Paragraphs(Style("ps1", "00DFD83DDE00"))), "\\u{00DF}\\u{1F600} -> P\n");
}

TEST_F(IDStyleNameFixTest, TakesDigitsOfEitherCase) {
  doc.Tree({Element("ps1"), Element("ps2")});
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "004a") + Style("ps2", "004A"))), "J\nJ\n");
}

TEST_F(IDStyleNameFixTest, GivesAnElementTheEmptyTypeForAnEmptyName) {
  doc.Tree({Element("ps1")});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kStyleNames, WriteStyles(Paragraphs(Style("ps1", "41")))), kSuccess);
  const test::HostSession session;
  PDSTreeRoot root = {};
  PDDocGetStructTreeRoot(open.Handle(), &root);
  PDSElement element = {};
  PDSTreeRootGetKid(root, 0, &element);
  EXPECT_STREQ(ASAtomGetString(PDSElementGetType(element)), "");
}

TEST_F(IDStyleNameFixTest, NeverRenamesCharacterStyles) {
  doc.Tree({Element("cs1")});
  EXPECT_EQ(TreeAfter("<ID_Document><ID_CharStyleList><ID_CharStyle id=\"cs1\" hex_name=\"0041\"/></ID_CharStyleList>"
                      "</ID_Document>"),
            "cs1\n");
}

TEST_F(IDStyleNameFixTest, TakesParagraphStylesFromTheirListsOnly) {
  doc.Tree({Element("ps1"), Element("ps2")});
  EXPECT_EQ(TreeAfter("<ID_Document>" + Style("ps1", "0041") + "<ID_CharStyleList>" + Style("ps1", "0041") +
                      "</ID_CharStyleList><ID_ParaStyleList><ID_CharStyle id=\"ps2\" hex_name=\"0041\"/></ID_ParaStyleList>"
                      "</ID_Document>"),
            "ps1\nps2\n");
}

TEST_F(IDStyleNameFixTest, MovesTheRoleMapEntryToTheName) {
  doc.Tree({Element("ps1")}).RoleMap({{"ps1", "P"}, {"Lead", "H1"}});
  EXPECT_EQ(RoleMapAfter(Paragraphs(Style("ps1", "0041"))), "A -> P\nLead -> H1\n");
}

TEST_F(IDStyleNameFixTest, LeavesTheRoleMapAloneWithoutAnEntryOfTheIdentifier) {
  doc.Tree({Element("ps1")}).RoleMap({{"Lead", "H1"}});
  EXPECT_EQ(RoleMapAfter(Paragraphs(Style("ps1", "0041"))), "Lead -> H1\n");
}

TEST_F(IDStyleNameFixTest, MovesRoleMapEntriesInTheOrderOfTheFile) {
  doc.Tree({Element("P")}).RoleMap({{"B", "H1"}, {"ps1", "P"}});
  EXPECT_EQ(RoleMapAfter(Paragraphs(Style("ps1", "0042") + Style("B", "0043"))), "C -> P\n");
}

TEST_F(IDStyleNameFixTest, MakesNoRoleMap) {
  doc.Tree({Element("ps1")});
  ReadBack saved(SavedAfter(Paragraphs(Style("ps1", "0041"))));
  EXPECT_EQ(test::TreeText(saved.Pdf()), "A\n");
  EXPECT_FALSE(saved.TreeRoot().hasKey("/RoleMap"));
}

TEST_F(IDStyleNameFixTest, PassesOverEntriesWithoutIdentifierOrName) {
  doc.Tree({Element("ps1"), Element("ps2"), Element("ps3")});
  EXPECT_EQ(TreeAfter(Paragraphs("<ID_ParaStyle id=\"ps1\"/><ID_ParaStyle hex_name=\"0041\"/><ID_ParaStyle/>" +
                                 Style("ps3", "0043"))),
            "ps1\nps2\nC\n");
}

TEST_F(IDStyleNameFixTest, LeavesADocumentWithoutATreeAlone) {
  ReadBack saved(SavedAfter(Paragraphs(Style("ps1", "0041"))));
  EXPECT_FALSE(saved.TreeRoot().isDictionary());
}

TEST_F(IDStyleNameFixTest, ReportsAMissingTreeToWhomRunsTheWorker) {
  OpenDocument open(doc.Write());
  const test::HostSession session;
  IDStyleNameFix fix;
  EXPECT_FALSE(fix.Run("no such file"));
  fix.SetDocument(open.Handle());
  EXPECT_FALSE(fix.Run("no such file"));
}

TEST_F(IDStyleNameFixTest, HasNoRunWithoutAPath) {
  IDStyleNameFix fix;
  EXPECT_THROW(fix.Run(), std::runtime_error);
}

TEST_F(IDStyleNameFixTest, RenamesNothingWithoutAFileAtThePath) {
  doc.Tree({Element("ps1")});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kStyleNames, ""), kSuccess);
  EXPECT_EQ(open.Action(kStyleNames, "/no/such/file.xml"), kSuccess);
  EXPECT_EQ(open.Action(kStyleNames, testing::TempDir()), kSuccess);
  EXPECT_EQ(test::SavedTree(open), "ps1\n");
}

TEST_F(IDStyleNameFixTest, RenamesNothingForAFileThatIsNoListOfStyles) {
  doc.Tree({Element("ps1")});
  const std::string list = "<ID_ParaStyleList>" + Style("ps1", "0041") + "</ID_ParaStyleList>";
  for (const std::string& text :
       {std::string(), std::string("not XML"), std::string("<ID_Document>"), "<Other>" + list + "</Other>", list,
        "<ID_Document>" + list, std::string(1000, '\0'), std::string(10000, '<')}) {
    EXPECT_EQ(TreeAfter(text), "ps1\n") << text.substr(0, 40);
  }
}

TEST_F(IDStyleNameFixTest, RenamesNothingForAFileInAnotherEncoding) {
  doc.Tree({Element("ps1")});
  std::string utf16 = "\xFE\xFF";
  for (const char character : Paragraphs(Style("ps1", "0041"))) utf16 += {'\0', character};
  EXPECT_EQ(TreeAfter(utf16), "ps1\n");
}

TEST_F(IDStyleNameFixTest, ExpandsNoEntitiesOfAFile) {
  doc.Tree({Element("ps1")});
  std::string bomb = "<!DOCTYPE x [<!ENTITY a \"ps1\">";
  for (char name = 'b'; name <= 'z'; ++name) {
    bomb += std::string("<!ENTITY ") + name + " \"";
    for (int copy = 0; copy < 10; ++copy) bomb += std::string("&") + static_cast<char>(name - 1) + ";";
    bomb += "\">";
  }
  EXPECT_EQ(TreeAfter(bomb + "]>" + Paragraphs(Style("&z;", "0041") + Style("ps1", "0042"))), "B\n");
}

TEST_F(IDStyleNameFixTest, RefusesAFileBeyondAnyListOfStyles) {
  doc.Tree({Element("ps1")});
  const std::string path = WriteStyles(Paragraphs(Style("ps1", "0041")) + "<!--");
  std::filesystem::resize_file(path, (std::uintmax_t{64} << 20U) + 1);
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kStyleNames, path), kSuccess);
  EXPECT_EQ(test::SavedTree(open), "ps1\n");
}

TEST_F(IDStyleNameFixTest, DoesNotWaitForAPipe) {
  doc.Tree({Element("ps1")});
  const std::string pipe = WriteStyles("") + ".pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kStyleNames, pipe), kSuccess);
  EXPECT_EQ(open.Action(kStyleNames, "/dev/zero"), kSuccess);
  EXPECT_EQ(test::SavedTree(open), "ps1\n");
}

TEST_F(IDStyleNameFixTest, RefusesAFileOfMoreTagsThanTheMemoryIsWorth) {
  doc.Tree({Element("ps1")});
  std::string tags;
  for (int i = 0; i < 1'000'000; ++i) tags += "<a/>";
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "0041") + tags)), "ps1\n");
}

TEST_F(IDStyleNameFixTest, RefusesAFileWithATagThatWouldKeepTheParserForHours) {
  doc.Tree({Element("ps1")});
  std::string attributes;
  for (int i = 0; i < 1'000'000; ++i) attributes += " a" + std::to_string(i) + "=''";
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps1", "0041")) + "<Other" + attributes + "/>"), "ps1\n");
}

TEST_F(IDStyleNameFixTest, ReadsAnAttributeOfMegabytes) {
  doc.Tree({Element("ps1")});
  const std::string endless(std::size_t{8} << 20U, '0');
  EXPECT_EQ(TreeAfter(Paragraphs(Style("ps2", endless) + Style("ps1", "0041"))), "A\n");
}

TEST_F(IDStyleNameFixTest, ReadsDeeplyNestedFilesWithoutHarm) {
  doc.Tree({Element("ps1")});
  std::string deep;
  for (int level = 0; level < 100000; ++level) deep += "<a>";
  EXPECT_EQ(TreeAfter("<ID_Document>" + deep), "ps1\n");
}

}  // namespace
}  // namespace tgx
