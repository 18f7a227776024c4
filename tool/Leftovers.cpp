#include "tool/Leftovers.h"

#include <string>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/PageNumbers.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

struct LeftMark {
  PDSElement element;
  unsigned mark;
  std::string alt;
};

bool Paints(ASInt32 type) {
  return type == kPDEText || type == kPDEPath || type == kPDEImage || type == kPDEForm || type == kPDEShading;
}

// As deep as the host lets marked content nest.
bool Paints(PDEContent content) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    const ASInt32 type = PDEObjectGetType(element);
    if (Paints(type) || (type == kPDEContainer && Paints(PDEContainerGetContent(element)))) return true;
  }
  return false;
}

/// Whether an element shows anything, or holds what is no content of a page.
// As deep as the host lets the tree be.
bool ShowsSomething(PDSElement element) {  // NOLINT(misc-no-recursion)
  const KidTypes types;
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count; ++i) {
    void* container = nullptr;
    const ASAtom type = PDSElementGetKid(element, i, nullptr, &container, nullptr);
    bool shows = true;
    if (type == types.element) {
      shows = ShowsSomething(KidOf(element, i));
    } else if (type == types.markedContent) {
      shows = container != nullptr && Paints(PDEContainerGetContent(static_cast<PDEContainer>(container)));
    }
    if (shows) return true;
  }
  return false;
}

std::int32_t PageOf(PDSElement element) {
  if (PDSElementGetNumKids(element) == 0) return 0;
  CosObj page = {};
  PDSElementGetKid(element, 0, nullptr, nullptr, &page);
  return PageNumbers().NumberOf(page);
}

std::string WhatIsMissing(unsigned mark) {
  switch (mark) {
    case kAnchor:
      return "no whole frame belongs to it";
    case kFrameStart:
    case kFrameEnd:
      return "no anchor asks for its frame";
    case kFormula:
      return "its formula is not complete";
    default:
      return "nothing belongs to it";
  }
}

std::string Quoted(const std::string& alt) {
  constexpr std::size_t kLongest = 40;
  return "\"" + ForTerminal(alt, kLongest) + "\"";
}

}  // namespace

std::vector<Note> RemoveLeftMarks(PDDoc document, unsigned marks) {
  std::vector<Note> notes;
  if (marks == 0) return notes;
  const HostFrame frame;
  std::vector<LeftMark> left;
  ForEachElement(document, [&](PDSElement element) {
    if (PDSElementHasAlt(element) == 0) return;
    std::string alt = DecodeTextString(TextOf(element, PDSElementGetAlt));
    const unsigned mark = MarkOfAlt(alt);
    if ((mark & marks) != 0) left.push_back({element, mark, std::move(alt)});
  });
  for (const LeftMark& mark : left) {
    PDSElement parent = {};
    PDSElementGetParent(mark.element, &parent, nullptr);
    if (IsNull(parent)) continue;  // went with another one around it
    const bool stays = ShowsSomething(mark.element);
    const std::string what = stays ? " stays a mark: " : " was taken out of the structure tree: ";
    notes.push_back({PageOf(mark.element), "the mark " + Quoted(mark.alt) + what + WhatIsMissing(mark.mark)});
    if (!stays) PDSElementRemoveKid(parent, mark.element);
  }
  return notes;
}

}  // namespace tgx::tool
