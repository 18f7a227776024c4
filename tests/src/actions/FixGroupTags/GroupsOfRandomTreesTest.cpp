#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;

constexpr int kGroupTags = 16;

// A structure element of the plain model: no remembered places, no remembered searches.
struct Node {
  std::string type;
  int number = -1;  // its title; a new group has none
  Node* parent = nullptr;
  std::vector<Node*> kids = {};
};

int PlaceOf(const Node* kid) {
  const auto& kids = kid->parent->kids;
  return static_cast<int>(std::find(kids.begin(), kids.end(), kid) - kids.begin());
}

void Remove(Node* kid) {
  kid->parent->kids.erase(kid->parent->kids.begin() + PlaceOf(kid));
  kid->parent = nullptr;
}

void Insert(Node* parent, int place, Node* kid) {
  parent->kids.insert(parent->kids.begin() + place, kid);
  kid->parent = parent;
}

Node* Below(const Node* element, const std::string& type) {
  for (Node* kid : element->kids) {
    if (kid->type == type) return kid;
    if (Node* const found = Below(kid, type)) return found;
  }
  return nullptr;
}

bool IsInside(const Node* inner, const Node* outer) {
  while (inner != nullptr && inner != outer) inner = inner->parent;
  return inner != nullptr;
}

class Model {
 public:
  explicit Model(unsigned seed) : random_(seed) {
    root_ = New("");
    Node* const document = New("Document");
    Insert(root_, 0, document);
    Grow(document, 0);
  }

  Element Build() const { return Build(root_->kids.front()); }

  // False where an element would have to become its own ancestor.
  bool MakeGroups() {
    std::vector<Node*> work;
    Collect(root_, work);
    for (Node* element : work) {
      if (!done_.contains(element) && !Handle(element)) return false;
    }
    return true;
  }

  std::string Text() const {
    std::string text;
    for (const Node* kid : root_->kids) Print(kid, 0, text);
    return text;
  }

 private:
  static bool IsPrivate(const Node* element) { return element->type.starts_with("GT_"); }

  Node* New(const std::string& type) { return &nodes_.emplace_back(Node{type}); }

  int UpTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  // Many neighbours with few targets among them, and single kids below: captions that come to stand among the neighbours
  // of others then search on from there.
  void Grow(Node* parent, int depth) {
    static const std::vector<std::string> kTop = {"GT_CaptionListAtTop",
                                                  "GT_CaptionTableAtTop",
                                                  "GT_CaptionTableAtBottom",
                                                  "GT_CaptionTableAtBottom",
                                                  "GT_Index",
                                                  "GT_Index",
                                                  "GT_Index",
                                                  "Table",
                                                  "Div"};
    static const std::vector<std::string> kBelow = {"GT_CaptionListAtTop", "GT_CaptionTableAtBottom", "L", "Table", "Div"};
    const auto& types = depth == 0 ? kTop : kBelow;
    const int kids = depth == 0 ? 6 + UpTo(10) : std::max(0, UpTo(4) - 1 - depth / 2);
    for (int i = 0; i < kids && nodes_.size() < 60; ++i) {
      Node* const kid = New(types[static_cast<std::size_t>(UpTo(static_cast<int>(types.size()) - 1))]);
      kid->number = static_cast<int>(nodes_.size());
      Insert(parent, i, kid);
      if (depth < 4 && kid->type != "GT_Index") Grow(kid, depth + 1);
    }
  }

  static Element Build(const Node* node) {
    Element element(node->type);
    if (node->number >= 0) element.Title(std::to_string(node->number));
    for (const Node* kid : node->kids) element.Add(Build(kid));
    return element;
  }

  static void Print(const Node* node, std::size_t depth, std::string& text) {
    text += std::string(2 * depth, ' ') + node->type;
    if (node->number >= 0) text += " title=\"" + std::to_string(node->number) + "\"";
    text += "\n";
    for (const Node* kid : node->kids) Print(kid, depth + 1, text);
  }

  static void Collect(Node* element, std::vector<Node*>& work) {
    if (IsPrivate(element)) work.push_back(element);
    for (Node* kid : element->kids) Collect(kid, work);
  }

  // The top-level elements count as elements without a parent.
  Node* ParentOf(const Node* element) const { return element->parent == root_ ? nullptr : element->parent; }

  Node* Neighbour(Node* element, const std::string& type, int step) const {
    if (element->type == type) return element;
    Node* parent = ParentOf(element);
    if (parent == nullptr) return nullptr;
    int place = PlaceOf(element);
    while (parent->kids.size() < 2) {
      Node* const lower = parent;
      parent = ParentOf(lower);
      if (parent == nullptr) return nullptr;
      place = PlaceOf(lower);
    }
    place += step;
    if (place < 0 || place >= static_cast<int>(parent->kids.size())) return nullptr;
    Node* const kid = parent->kids[static_cast<std::size_t>(place)];
    if (kid->type == type) return kid;
    Node* const found = Below(kid, type);
    return found != nullptr ? found : Neighbour(kid, type, step);
  }

  bool Handle(Node* element) {
    if (element->type == "GT_Index") {
      Node* const parent = element->parent;
      const int place = PlaceOf(element);
      Insert(parent, place, GroupOf(TakeRun(element), "Index"));
      return true;
    }
    const std::string type = element->type == "GT_CaptionListAtTop" ? "L" : "Table";
    const bool atBottom = element->type == "GT_CaptionTableAtBottom";
    Node* target = Below(element, type);
    if (target != nullptr) {
      Remove(target);
      Insert(element->parent, PlaceOf(element), target);
    } else {
      target = Neighbour(element, type, atBottom ? -1 : 1);
      if (target == nullptr) return true;
    }
    const std::vector<Node*> run = TakeRun(element);
    if (std::any_of(run.begin(), run.end(), [&](Node* paragraph) { return IsInside(target, paragraph); })) return false;
    Insert(target, atBottom ? static_cast<int>(target->kids.size()) : 0, GroupOf(run, "Caption"));
    return true;
  }

  static std::vector<Node*> TakeRun(Node* element) {
    const std::vector<Node*> kids = element->parent->kids;
    const auto begin = kids.begin() + PlaceOf(element);
    const auto end = std::find_if(begin, kids.end(), [&](const Node* kid) { return kid->type != element->type; });
    std::vector<Node*> run(begin, end);
    for (Node* paragraph : run) Remove(paragraph);
    return run;
  }

  Node* GroupOf(const std::vector<Node*>& run, const std::string& type) {
    Node* const group = New(type);
    for (Node* paragraph : run) {
      Insert(group, static_cast<int>(group->kids.size()), paragraph);
      paragraph->type = "P";
      done_.insert(paragraph);
    }
    return group;
  }

  std::mt19937 random_;
  std::deque<Node> nodes_;
  Node* root_ = nullptr;
  std::set<const Node*> done_;
};

class GroupsOfRandomTrees : public testing::TestWithParam<unsigned> {};

TEST_P(GroupsOfRandomTrees, AreThoseOfAPlainSearch) {
  constexpr unsigned kTrees = 500;
  int failures = 0;
  for (unsigned i = 0; i < kTrees; ++i) {
    const unsigned seed = GetParam() * kTrees + i;
    Model model(seed);
    test::TestDocument doc;
    doc.AddPage();
    doc.Tree({model.Build()});
    const std::string before = model.Text();
    test::OpenDocument open(doc.Write());
    if (!model.MakeGroups()) {
      EXPECT_EQ(open.Action(kGroupTags).result, TGX_FAILED) << "seed " << seed << "\n" << before;
      ++failures;
      continue;
    }
    ASSERT_EQ(open.Action(kGroupTags), test::kSuccess) << "seed " << seed << "\n" << before;
    ASSERT_EQ(test::TreeText(open.Save()), model.Text()) << "seed " << seed << "\n" << before;
  }
  EXPECT_LT(failures, static_cast<int>(kTrees) / 2);
}

INSTANTIATE_TEST_SUITE_P(Seeds, GroupsOfRandomTrees, testing::Range(0U, 6U));

}  // namespace
}  // namespace tgx
