#include "src/actions/ReshuffleAnchoredFrames/RafProcessor.h"

#include <algorithm>
#include <string_view>

#include "src/actions/ReshuffleAnchoredFrames/AuxiliaryContent.h"
#include "src/actions/ReshuffleAnchoredFrames/KeySearch.h"
#include "src/api/HostException.h"
#include "src/api/StructureError.h"
#include "src/common/StructureUtils.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "actions/ReshuffleAnchoredFrames/RafProcessor";
constexpr int kLineOfMissingRoot = 32;

constexpr std::string_view kAnchorMark = "\x22\x2E";
constexpr std::string_view kStartMark = "\x22\x64";
constexpr std::string_view kEndMark = "\x22\x65";
constexpr std::string_view kHolderMark = "\x22\x30";

bool IsNull(CosObj object) { return CosObjGetType(object) == CosNull; }

std::string_view View(const std::vector<char>& bytes) { return {bytes.data(), bytes.size()}; }

bool Holds(const std::vector<char>& text, std::string_view mark) { return View(text).find(mark) != std::string_view::npos; }

// The elements on all levels whose text, found by `find`, holds the mark.
template <typename Find>
std::list<PDSElement> FindMarked(PDSTreeRoot root, const Find& find, std::string_view mark) {
  std::list<PDSElement> found;
  const std::vector<char> needle(mark.begin(), mark.end());
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 index = 0; index < count; ++index) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(root, index, &element);
    find(element, needle, found);
  }
  return found;
}

std::vector<PDSElement> ElementKids(PDSElement element) {
  std::vector<PDSElement> kids;
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj kid = CosNewNull();
    if (PDSElementGetKid(element, index, &kid, nullptr, nullptr) == ASAtomFromString("StructElem")) kids.push_back(kid);
  }
  return kids;
}

void RemoveStories(PDSElement element) {  // NOLINT(misc-no-recursion): the host bounds the depth
  for (const PDSElement kid : ElementKids(element)) {
    if (PDSElementGetType(kid) == ASAtomFromString("Story")) {
      PDSElementRemoveKid(element, kid);
    } else {
      RemoveStories(kid);
    }
  }
}

// What a frame's start marker must contain to be meant by this anchor: the text without its first two characters, a
// byte-order mark and the anchor's own, wherever in the text that was found. Of a shorter text nothing is left, and the
// empty key means every frame.
std::string_view KeyOf(const std::vector<char>& alt) {
  constexpr std::size_t kHead = 4;
  constexpr std::size_t kTail = 2;
  if (alt.size() < kHead + kTail) return {};
  return View(alt).substr(kHead, alt.size() - kHead - kTail);
}

}  // namespace

void RafProcessor::Run(PDDoc document) {
  document_ = document;
  InExceptionFrame([this] {
    PDSTreeRoot root = CosNewNull();
    if (PDDocGetStructTreeRoot(document_, &root) == 0) {
      ReportStructureError("No document structure object found", kSourceFile, kLineOfMissingRoot);
      return;
    }
    const Elements anchors = FindMarked(root, FindByAlt, kAnchorMark);
    std::vector<AnchorEntry> entries;
    for (const PDSElement anchor : anchors) {
      entries.push_back({{}, anchor});
      GetAlt(anchor, entries.back().alt);
    }
    const Elements holders = FindMarked(root, FindByTitle, kHolderMark);
    for (const PDSElement holder : holders) SplitHolder(holder);
    const std::set<ASInt32> mcids = McidsOfMarks(anchors);
    for (const PDSElement holder : holders) {
      // One that stands in the tree twice is gone after the first time.
      const PDSElement parent = GetParent(holder);
      if (!IsNull(parent)) PDSElementRemoveKid(parent, holder);
    }
    Relocate(entries);
    EraseAuxiliaryContent(document_, mcids);
  });
}

void RafProcessor::SplitHolder(PDSElement holder) {
  std::vector<FrameRecord> open;
  std::vector<char> alt;
  for (const PDSElement kid : ElementKids(holder)) {
    alt.clear();
    if (PDSElementHasAlt(kid) != 0) GetAlt(kid, alt);
    if (Holds(alt, kStartMark)) {
      markers_.push_back(kid);
      open.push_back({alt, {}});
    } else if (Holds(alt, kEndMark)) {
      // An end of nothing is passed over; its content stays on the page.
      if (open.empty()) continue;
      markers_.push_back(kid);
      frames_.push_back(std::move(open.back()));
      open.pop_back();
    } else if (!open.empty()) {
      open.back().elements.push_back(kid);
    }
  }
}

std::set<ASInt32> RafProcessor::McidsOfMarks(const Elements& anchors) const {
  std::set<ASInt32> mcids;
  for (const Elements* marks : {&markers_, &anchors}) {
    for (const PDSElement mark : *marks) {
      const ASInt32 count = PDSElementGetNumKids(mark);
      for (ASInt32 index = 0; index < count; ++index) {
        ASInt32 mcid = -1;
        if (PDSElementGetKidEx(mark, index, nullptr, &mcid, nullptr, nullptr) == ASAtomFromString("MC")) mcids.insert(mcid);
      }
    }
  }
  return mcids;
}

void RafProcessor::Relocate(const std::vector<AnchorEntry>& anchors) {
  std::vector<std::string_view> keys;
  keys.reserve(anchors.size());
  for (const AnchorEntry& anchor : anchors) keys.push_back(KeyOf(anchor.alt));
  std::size_t longestStart = 0;
  for (const FrameRecord& frame : frames_) longestStart = std::max(longestStart, frame.startAlt.size());
  KeySearch search(keys, longestStart);
  std::vector<std::vector<const FrameRecord*>> framesOf(anchors.size());
  for (const FrameRecord& frame : frames_) {
    for (const std::size_t anchor : search.KeysIn(View(frame.startAlt))) framesOf[anchor].push_back(&frame);
  }

  // The last anchor first: what is placed for it does not move the places of those before it.
  KidFinder places;
  for (std::size_t rest = anchors.size(); rest > 0; --rest) {
    const PDSElement anchor = anchors[rest - 1].element;
    const PDSElement parent = GetParent(anchor);
    // It has left the tree as, or with, something else.
    if (IsNull(parent)) continue;
    // Null where the parent is at the top or has left the tree with a holder: that stands for the tree root, and as it is
    // not searched, the place is then the very front.
    const PDSElement grandparent = GetParent(parent);
    const bool isFirst = places.IndexOf(parent, anchor) == 0;
    const int parentIndex = places.IndexOf(grandparent, parent);
    const int position = std::max<int>(isFirst ? parentIndex - 1 : parentIndex, kPDSBeforeFirst);
    const auto& frames = framesOf[rest - 1];
    // All go to the same place, each in front of the one before, so the last comes first.
    for (auto frame = frames.rbegin(); frame != frames.rend(); ++frame) PlaceFrame(**frame, grandparent, position, places);
    places.Remove(parent, anchor);
  }
}

void RafProcessor::PlaceFrame(const FrameRecord& frame, PDSElement grandparent, int position, KidFinder& places) const {
  for (const PDSElement element : frame.elements) RemoveStories(element);
  for (auto element = frame.elements.rbegin(); element != frame.elements.rend(); ++element) {
    const std::vector<PDSElement> kids = ElementKids(*element);
    if (kids.empty()) PlaceElement(*element, grandparent, position, places);
    // The element itself stays below the holder then, and with it the content that it holds directly.
    for (auto kid = kids.rbegin(); kid != kids.rend(); ++kid) PlaceElement(*kid, grandparent, position, places);
  }
}

void RafProcessor::PlaceElement(PDSElement element, PDSElement grandparent, int position, KidFinder& places) const {
  PDSElement place = CosNewNull();
  PDSElementCreate(document_, &place);
  places.Insert(grandparent, place, position);
  places.Replace(grandparent, place, element);
}

}  // namespace tgx
