#include "src/actions/ReshuffleAnchoredFramesV2/ActionRAFv2.h"

#include <algorithm>
#include <map>

#include "src/common/ContentCommands.h"
#include "src/common/KidFinder.h"
#include "src/common/StructureUtils.h"
#include "src/common/TagStructureWalker.h"

namespace tgx {
namespace {

constexpr std::size_t kSlack = 4;

struct Frame {
  PDSElement start = {};
  PDSElement end = {};
};

bool IsNull(CosObj object) { return CosObjGetType(object) == CosNull; }

bool AreEqual(CosObj a, CosObj b) { return CosObjEqual(a, b) != 0; }

// Takes the element out of the structure. One that was taken out before has no parent and is left alone.
void RemoveFromParent(PDSElement element, KidFinder& places) {
  const PDSElement parent = GetParent(element);
  if (!IsNull(parent)) places.Remove(parent, element);
}

// The structure elements between the markers, if both are kids of one parent, the start before the end. Kids of other types
// cannot be moved and are passed over.
std::vector<PDSElement> ElementsBetween(const Frame& frame, KidFinder& places) {
  std::vector<PDSElement> elements;
  const PDSElement parent = GetParent(frame.start);
  if (!AreEqual(parent, GetParent(frame.end))) return elements;
  const int start = places.IndexOf(parent, frame.start);
  const int end = places.IndexOf(parent, frame.end);
  if (start < 0) return elements;
  for (int index = start + 1; index < end; ++index) {
    CosObj kid = CosNewNull();
    const ASAtom type = PDSElementGetKid(parent, index, &kid, nullptr, nullptr);
    // The start may stand in two places.
    if (type == ASAtomFromString("StructElem") && !AreEqual(kid, frame.start)) elements.push_back(kid);
  }
  return elements;
}

// Appends the element kids of a "Story", each taken at the index that is the place of the "Story" itself among the elements
// of the frame, or from the end where that lies behind what is left. So a "Story" in the first place gives its kids in order
// and a later one those from that index on first and then the ones before it backwards, which is meant to stay so. What is
// no element cannot be moved: it stays in the "Story", and the "Story" in the frame.
void AppendStory(PDSElement story, std::size_t place, KidFinder& places, std::vector<PDSElement>& elements) {
  struct Kid {
    CosObj object;
    bool isElement;
  };
  std::vector<Kid> kids;
  const ASInt32 count = PDSElementGetNumKids(story);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj kid = CosNewNull();
    const ASAtom type = PDSElementGetKid(story, index, &kid, nullptr, nullptr);
    kids.push_back({kid, type == ASAtomFromString("StructElem")});
  }
  const auto first = kids.begin() + static_cast<std::ptrdiff_t>(std::min(place, kids.size()));
  std::reverse(kids.begin(), first);
  std::rotate(kids.begin(), first, kids.end());
  bool dissolves = true;
  for (const Kid& kid : kids) {
    dissolves = dissolves && kid.isElement;
    if (!kid.isElement) continue;
    places.Remove(story, kid.object);
    elements.push_back(kid.object);
  }
  if (!dissolves) elements.push_back(story);
}

std::vector<PDSElement> ExpandStories(const std::vector<PDSElement>& elements, KidFinder& places) {
  std::vector<PDSElement> expanded;
  for (std::size_t place = 0; place < elements.size(); ++place) {
    if (PDSElementGetType(elements[place]) == ASAtomFromString("Story")) {
      AppendStory(elements[place], place, places, expanded);
    } else {
      expanded.push_back(elements[place]);
    }
  }
  return expanded;
}

// Moves what stands between the markers to the anchor; markers and anchor go.
void PlaceFrame(PDSElement anchor, const Frame& frame, KidFinder& places) {
  std::vector<PDSElement> elements = ElementsBetween(frame, places);
  for (const PDSElement element : elements) RemoveFromParent(element, places);
  RemoveFromParent(frame.start, places);
  RemoveFromParent(frame.end, places);
  elements = ExpandStories(elements, places);
  const PDSElement parent = GetParent(anchor);
  const int index = places.IndexOf(parent, anchor);
  if (index < 0) return;
  // Each goes directly behind the anchor, so the last comes first.
  std::reverse(elements.begin(), elements.end());
  for (const PDSElement element : elements) places.Insert(parent, element, index);
  places.Remove(parent, anchor);
}

}  // namespace

bool ActionRAFv2::Run() {
  records_.clear();
  TagStructureWalker walker;
  walker.AddVisitor(this);
  PDSTreeRoot root = CosNewNull();
  AcquireStructTreeRoot(&root);
  walker.Walk(root);
  return Process();
}

void ActionRAFv2::VisitElement(PDSElement& element) {
  if (!RecordHolder(element)) RecordAltMark(element);
}

bool ActionRAFv2::RecordHolder(PDSElement element) {
  const ASInt32 length = PDSElementGetTitle(element, nullptr);
  if (length == 0) return false;
  ByteVector title(static_cast<std::size_t>(length) + kSlack);
  PDSElementGetTitle(element, title.data());
  StripBom(title);
  if (title[0] != 0x22 || title[1] != 0x30) return false;
  records_.push_back({Kind::kHolder, element, std::move(title)});
  return true;
}

void ActionRAFv2::RecordAltMark(PDSElement element) {
  if (PDSElementHasAlt(element) == 0) return;
  const ASInt32 length = PDSElementGetAlt(element, nullptr);
  if (length < 2) return;
  ByteVector alt(static_cast<std::size_t>(length) + kSlack);
  PDSElementGetAlt(element, alt.data());
  StripBom(alt);
  if (alt[0] != 0x22) return;
  Kind kind = Kind::kAnchor;
  switch (alt[1]) {
    case 0x64:
      kind = Kind::kFrameStart;
      break;
    case 0x65:
      kind = Kind::kFrameEnd;
      break;
    case 0x2E:
      break;
    default:
      return;
  }
  DropFirstTwo(alt);
  records_.push_back({kind, element, std::move(alt)});
}

bool ActionRAFv2::Process() {
  PlaceFrames();
  RemoveHolders();
  RemoveDummyImages(GetDocument());
  return true;
}

void ActionRAFv2::PlaceFrames() {
  std::map<ByteVector, Frame> frames;
  for (const MarkRecord& record : records_) {
    if (record.kind == Kind::kFrameStart) frames[record.identifier].start = record.element;
    if (record.kind == Kind::kFrameEnd) frames[record.identifier].end = record.element;
  }
  const auto stands = [](PDSElement element) { return !IsNull(GetParent(element)); };
  for (const MarkRecord& record : records_) {
    if (record.kind != Kind::kAnchor || !stands(record.element)) continue;
    const auto frame = frames.find(record.identifier);
    // An earlier anchor of the same identifier may have taken the markers.
    if (frame == frames.end() || !stands(frame->second.start) || !stands(frame->second.end)) continue;
    PlaceFrame(record.element, frame->second, places_);
  }
}

void ActionRAFv2::RemoveHolders() {
  for (const MarkRecord& record : records_) {
    if (record.kind == Kind::kHolder) RemoveFromParent(record.element, places_);
  }
}

}  // namespace tgx
