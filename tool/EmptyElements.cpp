#include "tool/EmptyElements.h"

#include <string>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/Roles.h"
#include "tool/TextString.h"

namespace tgx::tool {

/// Goes through the tree, kids before their parents are judged.
class EmptyElements::Search {
 public:
  Search(PDDoc document, EmptyElements& found) : roles_(document), found_(found) {
    PDSTreeRoot root = {};
    if (PDDocGetStructTreeRoot(document, &root) == 0) return;
    const ASInt32 count = PDSTreeRootGetNumKids(root);
    for (ASInt32 i = 0; i < count; ++i) {
      PDSElement element = {};
      PDSTreeRootGetKid(root, i, &element);
      Visit(element);
    }
  }

 private:
  struct Seen {
    bool hasContent = false;
    bool isKept = false;  ///< or holds what is
  };

  // As deep as the host lets the tree be.
  Seen Visit(PDSElement element) {  // NOLINT(misc-no-recursion)
    Seen seen;
    if (!visited_.insert(KeyOf(element)).second) return {true, false};
    std::vector<PDSElement> emptyKids;
    bool keepsKids = false;
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count; ++i) {
      if (PDSElementGetKid(element, i, nullptr, nullptr, nullptr) != types_.element) {
        seen.hasContent = true;
        continue;
      }
      const PDSElement kid = KidOf(element, i);
      const Seen below = Visit(kid);
      seen.hasContent = seen.hasContent || below.hasContent;
      keepsKids = keepsKids || (below.isKept && !below.hasContent);
      if (!below.hasContent) emptyKids.push_back(kid);
    }
    if (seen.hasContent && KeepCells(element, emptyKids)) keepsKids = true;
    seen.isKept = keepsKids || (!seen.hasContent && SaysSomething(element));
    if (seen.isKept && !seen.hasContent) found_.kept_.insert(KeyOf(element));
    if (keepsKids && seen.hasContent) found_.parents_.push_back({element, KidsOf(element)});
    return seen;
  }

  std::vector<CosObj> KidsOf(PDSElement element) const {
    const ASInt32 count = PDSElementGetNumKids(element);
    std::vector<CosObj> kids(static_cast<std::size_t>(count));
    for (ASInt32 i = 0; i < count; ++i) {
      const bool isElement = PDSElementGetKid(element, i, nullptr, nullptr, nullptr) == types_.element;
      if (isElement) kids[static_cast<std::size_t>(i)] = KidOf(element, i);
    }
    return kids;
  }

  /// True if there are any among the kids of what is a row.
  bool KeepCells(PDSElement element, const std::vector<PDSElement>& kids) {
    if (kids.empty() || roles_.Resolve(PDSElementGetType(element)) != row_) return false;
    bool any = false;
    for (const PDSElement& kid : kids) {
      const ASAtom role = roles_.Resolve(PDSElementGetType(kid));
      if (role != header_ && role != data_) continue;
      found_.kept_.insert(KeyOf(kid));
      any = true;
    }
    return any;
  }

  /// Marks of exporters say nothing.
  static bool SaysSomething(PDSElement element) {
    if (PDSElementHasAlt(element) != 0) {
      const std::string alt = DecodeTextString(TextOf(element, PDSElementGetAlt));
      if (!alt.empty() && MarkOfAlt(alt) == 0) return true;
    }
    const CosObj dictionary = PDSElementGetCosObj(element);
    const auto hasText = [dictionary](const char* key) {
      const CosObj text = CosDictGetKeyString(dictionary, key);
      return CosObjGetType(text) == CosString && !DecodeTextString(BytesOf(text)).empty();
    };
    return hasText("ActualText") || hasText("E") || CosObjGetType(CosDictGetKeyString(dictionary, "AF")) != CosNull;
  }

  Roles roles_;
  EmptyElements& found_;
  KidTypes types_;
  std::unordered_set<std::uint64_t> visited_;
  ASAtom row_ = ASAtomFromString("TR"), header_ = ASAtomFromString("TH"), data_ = ASAtomFromString("TD");
};

EmptyElements::EmptyElements(PDDoc document) {
  const HostFrame frame;
  const Search search(document, *this);
}

void EmptyElements::PutBack() const {
  const HostFrame frame;
  for (const Parent& parent : parents_) PutBackKids(parent);
}

void EmptyElements::PutBackKids(const Parent& parent) const {
  const KidTypes types;
  std::unordered_set<std::uint64_t> present;
  const ASInt32 count = PDSElementGetNumKids(parent.element);
  for (ASInt32 i = 0; i < count; ++i) {
    if (PDSElementGetKid(parent.element, i, nullptr, nullptr, nullptr) != types.element) continue;
    present.insert(KeyOf(KidOf(parent.element, i)));
  }
  ASInt32 place = kPDSBeforeFirst;
  for (const CosObj& kid : parent.kids) {
    if (!IsNull(kid) && !present.contains(KeyOf(kid))) {
      if (!kept_.contains(KeyOf(kid))) continue;
      Prune(kid);
      PDSElementInsertKid(parent.element, kid, place);
    }
    ++place;
  }
}

// As deep as the host lets the tree be.
void EmptyElements::Prune(PDSElement element) const {  // NOLINT(misc-no-recursion)
  for (ASInt32 i = PDSElementGetNumKids(element) - 1; i >= 0; --i) {
    const PDSElement kid = KidOf(element, i);
    if (kept_.contains(KeyOf(kid))) {
      Prune(kid);
    } else {
      PDSElementRemoveKid(element, kid);
    }
  }
}

}  // namespace tgx::tool
