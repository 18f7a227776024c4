#include "src/actions/TagStructureNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::HostSession;
using test::OpenDocument;
using test::Page;
using test::TestDocument;

/// A document with two elements on top, of which the second holds every kind of kid.
std::string SampleBytes() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({
      Element("P"),
      Element("Sect").Add(Element("Span")).Text(page, "a").Object(page.Link("https://example.org/")),
  });
  return doc.Write();
}

class TagStructureNodeTest : public testing::Test {
 protected:
  OpenDocument document_{SampleBytes()};
  HostSession session_;
  std::unique_ptr<TagStructureNode> tree_ = TagStructureNode::BuildTree(document_.Handle());
};

TEST_F(TagStructureNodeTest, RootStandsForTheDocument) {
  EXPECT_EQ(tree_->GetKind(), 2);
  EXPECT_TRUE(tree_->IsNull());
  EXPECT_EQ(tree_->GetParent(), nullptr);
  EXPECT_EQ(tree_->GetKidCount(), 2);
}

TEST_F(TagStructureNodeTest, ElementsAndOtherKidsAreToldApart) {
  const TagStructureNode& section = *tree_->GetKid(1);
  EXPECT_EQ(section.GetKind(), 0);
  ASSERT_EQ(section.GetKidCount(), 3);
  EXPECT_EQ(section.GetKid(0)->GetKind(), 0);
  EXPECT_EQ(section.GetKid(1)->GetKind(), 1);
  EXPECT_EQ(section.GetKid(2)->GetKind(), 1);
  EXPECT_EQ(section.GetKid(2)->GetKidCount(), 0);
}

TEST_F(TagStructureNodeTest, KidsKnowTheirParent) {
  EXPECT_EQ(tree_->GetKid(1)->GetParent(), tree_.get());
  EXPECT_EQ(tree_->GetKid(1)->GetKid(2)->GetParent(), tree_->GetKid(1));
}

TEST_F(TagStructureNodeTest, IndexOfKidIsMinusOneForOthers) {
  EXPECT_EQ(tree_->IndexOfKid(tree_->GetKid(1)), 1);
  EXPECT_EQ(tree_->IndexOfKid(tree_.get()), -1);
  EXPECT_EQ(tree_->IndexOfKid(nullptr), -1);
}

TEST_F(TagStructureNodeTest, ObjectsAreThoseOfTheHost) {
  CosObj object = {};
  CosObj element = {};
  const TagStructureNode& section = *tree_->GetKid(1);
  EXPECT_EQ(CosObjEqual(*section.GetObject(&object), *section.GetElementObject(&element)), 1);
  EXPECT_FALSE(section.IsNull());
}

TEST_F(TagStructureNodeTest, ReadsAndSetsTheType) {
  TagStructureNode& section = *tree_->GetKid(1);
  std::string type;
  section.GetTypeName(&type);
  EXPECT_EQ(type, "Sect");
  section.SetTypeName("Div");
  section.GetTypeName(&type);
  EXPECT_EQ(type, "Div");
}

TEST_F(TagStructureNodeTest, HasContentWhereASubtreeHoldsMoreThanElements) {
  EXPECT_TRUE(TagStructureNode::HasContent(tree_.get()));
  EXPECT_FALSE(TagStructureNode::HasContent(tree_->GetKid(0)));
  EXPECT_TRUE(TagStructureNode::HasContent(tree_->GetKid(1)));
  EXPECT_FALSE(TagStructureNode::HasContent(tree_->GetKid(1)->GetKid(0)));
  EXPECT_TRUE(TagStructureNode::HasContent(tree_->GetKid(1)->GetKid(1)));
  EXPECT_FALSE(TagStructureNode::HasContent(nullptr));
}

TEST_F(TagStructureNodeTest, DoesNotFollowLaterChanges) {
  CosObj parent = {};
  CosObj kid = {};
  PDSElementRemoveKid(*tree_->GetKid(1)->GetObject(&parent), *tree_->GetKid(1)->GetKid(0)->GetObject(&kid));
  EXPECT_EQ(tree_->GetKid(1)->GetKidCount(), 3);
}

TEST(TagStructureNode, WithoutAStructureThereIsARootWithoutKids) {
  TestDocument doc;
  doc.AddPage();
  OpenDocument document(doc.Write());
  const HostSession session;
  const auto tree = TagStructureNode::BuildTree(document.Handle());
  EXPECT_EQ(tree->GetKind(), 2);
  EXPECT_EQ(tree->GetKidCount(), 0);
  EXPECT_EQ(test::SavedTree(document), "(no structure tree)\n");
}

TEST(TagStructureNode, TakesTheDeepestTreeThatTheHostGives) {
  TestDocument doc;
  Page& page = doc.AddPage();
  Element top("Sect");
  Element deepest = top;
  for (int level = 1; level < 512; ++level) deepest = deepest.AddNew("Sect");
  deepest.Text(page, "at the bottom");
  doc.Tree({top});
  OpenDocument document(doc.Write());
  const HostSession session;
  EXPECT_TRUE(TagStructureNode::HasContent(TagStructureNode::BuildTree(document.Handle()).get()));
}

}  // namespace
}  // namespace tgx
