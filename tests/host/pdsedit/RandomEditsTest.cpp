#include <algorithm>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <qpdf/QPDFNumberTreeObjectHelper.hh>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

constexpr int kRoot = 0;
constexpr int kNone = -1;

/// The structure as plain lists, edited by the rules of the operations. Elements are numbered from 1 and have the type "E"
/// with their number, so that a saved tree can be compared as text.
struct Model {
  struct Kid {
    int element = kNone;  ///< or marked content:
    int page = 0;         ///< counted from 1
    int mcid = 0;
    bool operator==(const Kid&) const = default;
  };
  struct Node {
    std::vector<Kid> kids;
    int parent = kNone;
  };
  std::vector<Node> nodes = std::vector<Node>(1);

  bool Holds(int top, int wanted) const {
    return std::any_of(nodes[Index(top)].kids.begin(), nodes[Index(top)].kids.end(), [&](const Kid& kid) {
      return kid.element != kNone && (kid.element == wanted || Holds(kid.element, wanted));
    });
  }
  Node& operator[](int id) { return nodes[Index(id)]; }
  const Node& operator[](int id) const { return nodes[Index(id)]; }
  static std::size_t Index(int id) { return static_cast<std::size_t>(id); }

  void Print(int id, int depth, std::string& text) const {
    for (const Kid& kid : (*this)[id].kids) {
      text += std::string(static_cast<std::size_t>(depth) * 2, ' ');
      if (kid.element == kNone) {
        text += "mcid " + std::to_string(kid.mcid) + " page " + std::to_string(kid.page) + "\n";
      } else {
        text += "E" + std::to_string(kid.element) + "\n";
        Print(kid.element, depth + 1, text);
      }
    }
  }

  /// Of each content the first element that holds it, as "1/0 E7" for MCID 0 of page 1.
  void Owners(int id, std::map<std::string, std::string>& owners) const {
    for (const Kid& kid : (*this)[id].kids) {
      if (kid.element != kNone) {
        Owners(kid.element, owners);
      } else {
        owners.emplace(std::to_string(kid.page) + "/" + std::to_string(kid.mcid), "E" + std::to_string(id));
      }
    }
  }
};

std::map<std::string, std::string> SavedOwners(QPDF& pdf) {
  std::map<std::string, std::string> owners;
  QPDFObjectHandle tree = pdf.getRoot().getKey("/StructTreeRoot").getKey("/ParentTree");
  if (!tree.isDictionary()) return owners;
  QPDFNumberTreeObjectHelper lists(tree, pdf, false);
  int number = 0;
  for (QPDFObjectHandle page : pdf.getAllPages()) {
    ++number;
    QPDFObjectHandle list;
    QPDFObjectHandle key = page.getKey("/StructParents");
    if (!key.isInteger() || !lists.findObject(key.getIntValue(), list)) continue;
    for (int mcid = 0; mcid < list.getArrayNItems(); ++mcid) {
      QPDFObjectHandle element = list.getArrayItem(mcid);
      if (element.isNull()) continue;
      owners[std::to_string(number) + "/" + std::to_string(mcid)] = element.getKey("/S").getName().substr(1);
    }
  }
  return owners;
}

/// A document whose structure is edited together with the model.
class Edited {
 public:
  explicit Edited(unsigned seed) : random_(seed), document_(MakeFile()) { Learn(document_.Root(), kRoot); }

  void Step() {
    switch (Below(7)) {
      case 0:
        return InsertNew();
      case 1:
        return InsertKnown();
      case 2:
        return RemoveElement();
      case 3:
        return RemoveContent();
      case 4:
        return Replace();
      case 5:
        return Move();
      default:
        return Peek();
    }
  }

  void ExpectSame() {
    for (int id = 0; id < static_cast<int>(handles_.size()); ++id) {
      ASSERT_EQ(KidsSeen(id), model_[id].kids.size()) << "E" << id;
      if (id == kRoot) continue;
      const int parent = model_[id].parent;
      EXPECT_EQ(ParentOf(Handle(id)), parent == kNone ? kNullObject : Handle(parent)) << "E" << id;
    }
  }

  void ExpectSameWhenSaved() {
    const std::string saved = document_.Save();
    std::string text;
    model_.Print(kRoot, 0, text);
    test::ReadBack file(saved);
    EXPECT_EQ(test::TreeText(file.Pdf()), text);
    std::map<std::string, std::string> owners;
    model_.Owners(kRoot, owners);
    EXPECT_EQ(SavedOwners(file.Pdf()), owners);
    test::ExpectSound(saved);
    ExpectParentsHold(file.TreeRoot(), {});
    SettleParents();
  }

 private:
  unsigned Below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  PDSElement Handle(int id) const { return handles_[Model::Index(id)]; }
  int AnyElement() { return 1 + static_cast<int>(Below(handles_.size() - 1)); }
  int AnyNode() { return static_cast<int>(Below(handles_.size())); }

  std::string MakeFile() {
    TestDocument source;
    for (int i = 0; i < 3; ++i) source.AddPage();
    std::vector<Element> elements;
    for (int i = 0; i < 12; ++i) {
      Element element("E" + std::to_string(i + 1));
      test::Page& page = source.PageAt(1 + static_cast<int>(Below(3)));
      for (unsigned k = Below(3); k > 0; --k) element.Text(page, "x");
      elements.push_back(element);
    }
    std::vector<Element> top;
    for (std::size_t i = 0; i < elements.size(); ++i) {
      if (i == 0 || Below(4) == 0) {
        top.push_back(elements[i]);
      } else {
        elements[Below(i)].Add(elements[i]);
      }
    }
    source.Tree(top);
    return source.Write();
  }

  /// Takes the tree of the file over into the model, as the host sees it.
  void Learn(PDSElement handle, int id) {
    if (id == kRoot) {
      handles_.resize(13);
      handles_[0] = handle;
      model_.nodes.resize(13);
    }
    for (ASInt32 i = 0; i < Read().PDSElementGetNumKids(handle); ++i) {
      const SeenKid seen = KidOf(handle, i);
      if (seen.type == "MC") {
        model_[id].kids.push_back({kNone, 1 + Tables()->pdModel->PDPageNumFromCosObj(seen.page), seen.mcid});
        continue;
      }
      const int kid = std::stoi(TypeOf(seen.kid).substr(1));
      handles_[Model::Index(kid)] = seen.kid;
      model_[id].kids.push_back({kid});
      model_[kid].parent = id;
      Learn(seen.kid, kid);
    }
  }

  std::size_t KidsSeen(int id) {
    const auto count = static_cast<std::size_t>(Read().PDSElementGetNumKids(Handle(id)));
    for (std::size_t i = 0; i < std::min(count, model_[id].kids.size()); ++i) {
      const Model::Kid& kid = model_[id].kids[i];
      const SeenKid seen = KidOf(Handle(id), static_cast<ASInt32>(i));
      if (kid.element != kNone) {
        EXPECT_EQ(seen.kid, Handle(kid.element));
      } else {
        EXPECT_EQ(seen.mcid, kid.mcid);
      }
    }
    return count;
  }

  int NewElement() {
    const int id = static_cast<int>(handles_.size());
    handles_.push_back(document_.NewElement(("E" + std::to_string(id)).c_str()));
    model_.nodes.emplace_back();
    return id;
  }

  void Insert(int parent, int kid) {
    const auto insertAfter = static_cast<ASInt32>(Below(6)) - 1;
    const bool isCycle = parent == kid || model_.Holds(kid, parent);
    const ASErrorCode code = RaisedCode([&] { Write().PDSElementInsertKid(Handle(parent), Handle(kid), insertAfter); });
    EXPECT_EQ(code, isCycle ? kASBadParameter : -1);
    if (isCycle) return;
    auto& kids = model_[parent].kids;
    const auto index = std::min<std::ptrdiff_t>(insertAfter + 1, static_cast<std::ptrdiff_t>(kids.size()));
    kids.insert(kids.begin() + index, {kid});
    model_[kid].parent = parent;
  }

  void InsertNew() {
    const int parent = AnyNode();
    Insert(parent, NewElement());
  }

  /// Of an element that stands elsewhere. Few, so that the tree as text stays short.
  void InsertKnown() {
    if (shared_ > 4) return;
    ++shared_;
    const int parent = AnyNode();
    Insert(parent, AnyElement());
  }

  static std::ptrdiff_t PlaceOf(const std::vector<Model::Kid>& kids, int element) {
    const auto found = std::find_if(kids.begin(), kids.end(), [&](const Model::Kid& kid) { return kid.element == element; });
    return found == kids.end() ? -1 : found - kids.begin();
  }

  void Remove(int parent, int kid) {
    auto& kids = model_[parent].kids;
    const std::ptrdiff_t place = PlaceOf(kids, kid);
    const ASErrorCode code = RaisedCode([&] { Write().PDSElementRemoveKid(Handle(parent), Handle(kid)); });
    EXPECT_EQ(code, place < 0 ? kASNotFound : -1);
    if (place < 0) return;
    kids.erase(kids.begin() + place);
    model_[kid].parent = kNone;
  }

  void RemoveElement() { Remove(AnyNode(), AnyElement()); }

  void Move() {
    const int kid = AnyElement();
    if (model_[kid].parent == kNone || PlaceOf(model_[model_[kid].parent].kids, kid) < 0) return;
    Remove(model_[kid].parent, kid);
    Insert(AnyNode(), kid);
  }

  void RemoveContent() {
    const int parent = AnyElement();
    auto& kids = model_[parent].kids;
    const auto content = std::find_if(kids.begin(), kids.end(), [](const Model::Kid& kid) { return kid.element == kNone; });
    if (content == kids.end() || Below(3) != 0) return;
    Write().PDSElementRemoveKid(Handle(parent), KidOf(Handle(parent), static_cast<ASInt32>(content - kids.begin())).kid);
    kids.erase(content);
  }

  void Replace() {
    const int parent = AnyNode();
    const int old = AnyElement();
    const int replacement = Below(2) == 0 ? NewElement() : AnyElement();
    const std::ptrdiff_t place = PlaceOf(model_[parent].kids, old);
    const bool isCycle = parent == replacement || model_.Holds(replacement, parent);
    const ASErrorCode code =
        RaisedCode([&] { Write().PDSElementReplaceKid(Handle(parent), Handle(old), Handle(replacement)); });
    EXPECT_EQ(code, place < 0 ? kASNotFound : isCycle ? kASBadParameter : -1);
    if (place < 0 || isCycle) return;
    model_[parent].kids[Model::Index(static_cast<int>(place))] = {replacement};
    model_[old].parent = kNone;
    model_[replacement].parent = parent;
  }

  /// A Cos read, which makes the host write what it has kept to itself.
  void Peek() { Cos().CosDictGetKeyString(Handle(AnyNode()), "K"); }

  void ExpectParentsHold(QPDFObjectHandle holder, std::set<QPDFObjGen> path) {
    if (!path.insert(holder.getObjGen()).second) return;
    QPDFObjectHandle kids = holder.getKey("/K");
    for (QPDFObjectHandle kid : kids.isArray() ? kids.getArrayAsVector() : std::vector<QPDFObjectHandle>{kids}) {
      if (!kid.isDictionary()) continue;
      QPDFObjectHandle above = kid.getKey("/P").getKey("/K");
      bool isHeld = above.getObjGen() == kid.getObjGen();
      for (int i = 0; above.isArray() && i < above.getArrayNItems(); ++i) {
        isHeld = isHeld || above.getArrayItem(i).getObjGen() == kid.getObjGen();
      }
      EXPECT_TRUE(isHeld) << kid.getKey("/S").getName();
      ExpectParentsHold(kid, path);
    }
  }

  /// What saving does with elements whose parent does not hold them.
  void SettleParents() {
    std::set<int> met;
    std::vector<std::pair<int, int>> order;
    Visit(kRoot, met, order);
    for (const auto& [holder, kid] : order) {
      const int parent = model_[kid].parent;
      if (parent == kNone || PlaceOf(model_[parent].kids, kid) < 0 || met.count(parent) == 0) model_[kid].parent = holder;
    }
  }

  void Visit(int id, std::set<int>& met, std::vector<std::pair<int, int>>& order) {
    if (!met.insert(id).second) return;
    for (const Model::Kid& kid : model_[id].kids) {
      if (kid.element == kNone) continue;
      order.emplace_back(id, kid.element);
      Visit(kid.element, met, order);
    }
  }

  std::mt19937 random_;
  StructureDocument document_;
  Model model_;
  std::vector<PDSElement> handles_;
  int shared_ = 0;
};

class RandomEdits : public testing::TestWithParam<unsigned> {};

TEST_P(RandomEdits, LeadToTheSameTreeAsPlainLists) {
  Edited edited(GetParam());
  for (int round = 0; round < 3; ++round) {
    for (int step = 0; step < 40; ++step) {
      edited.Step();
      if (HasFailure()) FAIL() << "round " << round << " step " << step;
    }
    edited.ExpectSame();
    edited.ExpectSameWhenSaved();
    edited.ExpectSame();
    if (HasFailure()) FAIL() << "round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, testing::Range(1U, 41U));

}  // namespace
}  // namespace tgx::host::structure
