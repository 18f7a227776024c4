#pragma once

#include <string>
#include <unordered_set>

#include "tool/HostCalls.h"

namespace tgx::tool {

/// The stored bytes that one of the host's text getters gives: it is asked for the length, then for the bytes.
template <typename Getter>
std::string TextOf(PDSElement element, Getter getter) {
  std::string bytes(static_cast<std::size_t>(getter(element, nullptr)), '\0');
  if (!bytes.empty()) getter(element, reinterpret_cast<ASUns8*>(bytes.data()));
  return bytes;
}

/// The bytes of a string object.
std::string BytesOf(CosObj string);

/// The object of a kid. Numbers of marked content get handles only by being asked for, so that should be done where needed.
CosObj KidOf(PDSElement parent, ASInt32 index);

void SetLanguage(PDSElement element, const std::string& bytes);
void PutString(CosDoc document, CosObj dictionary, const char* key, const std::string& bytes);

/// Atoms of the kinds of kids.
struct KidTypes {
  ASAtom element = ASAtomFromString("StructElem");
  ASAtom markedContent = ASAtomFromString("MC");
  ASAtom object = ASAtomFromString("OBJR");
};

/// A walk over all elements of the structure tree, parents first. An element that stands in the tree twice is visited once.
///
/// `enter(element, context of its parent)` gives the element's own context; `other(element, index, kid type, mcid, its
/// context)` is called for kids that are no elements.
template <typename Context, typename Enter, typename Other>
class ElementWalk {
 public:
  ElementWalk(Enter enter, Other other) : enter_(enter), other_(other) {}

  void Walk(PDDoc document, const Context& top) {
    PDSTreeRoot root = {};
    if (PDDocGetStructTreeRoot(document, &root) == 0) return;
    const ASInt32 count = PDSTreeRootGetNumKids(root);
    for (ASInt32 i = 0; i < count; ++i) {
      PDSElement element = {};
      PDSTreeRootGetKid(root, i, &element);
      Visit(element, top);
    }
  }

 private:
  // As deep as the host lets the tree be.
  void Visit(PDSElement element, const Context& parent) {  // NOLINT(misc-no-recursion)
    if (!seen_.insert(KeyOf(element)).second) return;
    const Context own = enter_(element, parent);
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count; ++i) {
      ASInt32 mcid = -1;
      const ASAtom type = PDSElementGetKidEx(element, i, nullptr, &mcid, nullptr, nullptr);
      if (type == types_.element) {
        Visit(KidOf(element, i), own);
      } else {
        other_(element, i, type, mcid, own);
      }
    }
  }

  Enter enter_;
  Other other_;
  KidTypes types_;
  std::unordered_set<std::uint64_t> seen_;
};

/// Calls `visit(element)` for all elements, parents first.
template <typename Visit>
void ForEachElement(PDDoc document, Visit visit) {
  struct Nothing {};
  const auto enter = [&visit](PDSElement element, const Nothing&) {
    visit(element);
    return Nothing();
  };
  const auto other = [](PDSElement, ASInt32, ASAtom, ASInt32, const Nothing&) {};
  ElementWalk<Nothing, decltype(enter), decltype(other)>(enter, other).Walk(document, Nothing());
}

}  // namespace tgx::tool
