#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSuccess;
using test::OpenDocument;
using test::ReadBack;
using test::TestDocument;

constexpr int kEndNotes = 15;

std::string RoleMapAfter(TestDocument& doc) {
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kEndNotes), kSuccess);
  ReadBack saved(open.Save());
  return test::RoleMapText(saved.Pdf());
}

TEST(FixEndNoteAction, MapsEndnoteToNote) {
  TestDocument doc;
  doc.Tree({Element("Document")({Element("Endnote").Text(doc.AddPage(), "note")})});
  EXPECT_EQ(RoleMapAfter(doc), "Endnote -> Note\n");
}

TEST(FixEndNoteAction, MapsOnceForManyEndNotes) {
  TestDocument doc;
  Element document("Document");
  for (int index = 0; index < 100; ++index) document.Add(Element("Endnote").Text(doc.AddPage(), "note"));
  doc.Tree({document});
  EXPECT_EQ(RoleMapAfter(doc), "Endnote -> Note\n");
}

TEST(FixEndNoteAction, LeavesTheElementsAlone) {
  TestDocument doc;
  doc.Tree({Element("Document")({Element("Endnote").Title("1").Text(doc.AddPage(), "note")})});
  OpenDocument open(doc.Write());
  const std::string before = test::SavedTree(open);
  EXPECT_EQ(open.Action(kEndNotes), kSuccess);
  EXPECT_EQ(test::SavedTree(open), before);
}

TEST(FixEndNoteAction, FindsEndNotesAtAnyDepth) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Document"), Element("Part")({Element("Sect")({Element("Endnote")})})});
  EXPECT_EQ(RoleMapAfter(doc), "Endnote -> Note\n");
}

TEST(FixEndNoteAction, LeavesADocumentWithoutEndNotesWithoutARoleMap) {
  TestDocument doc;
  doc.Tree({Element("Document")({Element("Note").Text(doc.AddPage(), "note")})});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kEndNotes), kSuccess);
  ReadBack saved(open.Save());
  EXPECT_FALSE(saved.TreeRoot().hasKey("/RoleMap"));
}

TEST(FixEndNoteAction, LooksAtTheTypeItselfAndNotAtItsMapping) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Remark")}).RoleMap({{"Remark", "Endnote"}});
  EXPECT_EQ(RoleMapAfter(doc), "Remark -> Endnote\n");
}

TEST(FixEndNoteAction, KeepsOtherEntriesOfTheRoleMap) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Endnote")}).RoleMap({{"Lead", "P"}, {"Endnotes", "Sect"}});
  EXPECT_EQ(RoleMapAfter(doc), "Endnote -> Note\nEndnotes -> Sect\nLead -> P\n");
}

TEST(FixEndNoteAction, ReplacesAnOlderMappingOfEndnote) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Endnote")}).RoleMap({{"Endnote", "P"}});
  EXPECT_EQ(RoleMapAfter(doc), "Endnote -> Note\n");
}

TEST(FixEndNoteAction, GivesADocumentWithoutATreeAnEmptyOne) {
  TestDocument doc;
  doc.AddPage();
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kEndNotes), kSuccess);
  ReadBack saved(open.Save());
  ASSERT_TRUE(saved.TreeRoot().isDictionary());
  EXPECT_FALSE(saved.TreeRoot().hasKey("/RoleMap"));
  EXPECT_EQ(test::TreeText(saved.Pdf()), "");
}

}  // namespace
}  // namespace tgx
