#include "tool/FrameHolders.h"

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/PageNumbers.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// In UTF-8; all signs of frames are of one length.
constexpr std::size_t kSignLength = std::string_view("\u222E").size();

/// The marks of one identifier.
struct Marks {
  std::vector<PDSElement> anchors, starts, ends;
};

PDSElement ParentOf(PDSElement element) {
  PDSElement parent = {};
  PDSElementGetParent(element, &parent, nullptr);
  return parent;
}

unsigned FrameMarkOf(PDSElement element, std::string& alt) {
  if (PDSElementHasAlt(element) == 0) return 0;
  alt = DecodeTextString(TextOf(element, PDSElementGetAlt));
  return MarkOfAlt(alt) & (kAnchor | kFrameStart | kFrameEnd);
}

void MakeDifferent(PDDoc document, const std::vector<PDSElement>& marks) {
  for (std::size_t i = 1; i < marks.size(); ++i) {
    const std::string alt = DecodeTextString(TextOf(marks[i], PDSElementGetAlt));
    PutString(PDDocGetCosDoc(document), PDSElementGetCosObj(marks[i]), "Alt",
              EncodeUtf16(alt + "\n" + std::to_string(i + 1)));  // no exporter writes a line break there
  }
}

/// Takes the marks out of an element, dissolves stories in it as the step does in frames, and looks for content.
class HolderContent {
 public:
  explicit HolderContent(PDSElement holder) {
    RemoveMarks(holder);
    Look(holder);
  }

  bool Any() const { return any_; }
  std::int32_t Page() const { return page_; }

 private:
  void RemoveMarks(PDSElement holder) {
    const ASAtom story = ASAtomFromString("Story");
    for (ASInt32 i = PDSElementGetNumKids(holder) - 1; i >= 0; --i) {
      if (PDSElementGetKid(holder, i, nullptr, nullptr, nullptr) != types_.element) continue;
      const PDSElement kid = KidOf(holder, i);
      std::string alt;
      if (FrameMarkOf(kid, alt) != 0) {
        PDSElementRemoveKid(holder, kid);
      } else if (PDSElementGetType(kid) == story && HoldsOnlyElements(kid)) {
        Dissolve(holder, kid, i);
      }
    }
  }

  bool HoldsOnlyElements(PDSElement element) const {
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count; ++i) {
      if (PDSElementGetKid(element, i, nullptr, nullptr, nullptr) != types_.element) return false;
    }
    return true;
  }

  static void Dissolve(PDSElement holder, PDSElement story, ASInt32 place) {
    std::vector<PDSElement> kids;
    const ASInt32 count = PDSElementGetNumKids(story);
    kids.reserve(static_cast<std::size_t>(count));
    for (ASInt32 i = 0; i < count; ++i) kids.push_back(KidOf(story, i));
    PDSElementRemoveKid(holder, story);
    for (const PDSElement& kid : kids) {
      PDSElementRemoveKid(story, kid);
      PDSElementInsertKid(holder, kid, place++ - 1);
    }
  }

  // As deep as the host lets the tree be.
  void Look(PDSElement element) {  // NOLINT(misc-no-recursion)
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count && !any_; ++i) {
      if (PDSElementGetKid(element, i, nullptr, nullptr, nullptr) == types_.element) {
        Look(KidOf(element, i));
        continue;
      }
      CosObj page = {};
      PDSElementGetKid(element, i, nullptr, nullptr, &page);
      page_ = PageNumbers().NumberOf(page);
      any_ = true;
    }
  }

  KidTypes types_;
  bool any_ = false;
  std::int32_t page_ = 0;
};

/// Where the kids of an element stand.
std::unordered_map<std::uint64_t, ASInt32> PlacesIn(PDSElement parent) {
  std::unordered_map<std::uint64_t, ASInt32> places;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 i = 0; i < count; ++i) places.emplace(KeyOf(KidOf(parent, i)), i);
  return places;
}

}  // namespace

FrameHolders::FrameHolders(PDDoc document) {
  const HostFrame frame;
  std::vector<PDSElement> holders;
  std::map<std::string, Marks> marks;
  ForEachElement(document, [&](PDSElement element) {
    if (MarkOfTitle(DecodeTextString(TextOf(element, PDSElementGetTitle))) == kFrameHolder) {
      holders.push_back(element);
      return;
    }
    std::string alt;
    const unsigned mark = FrameMarkOf(element, alt);
    if (mark == 0) return;
    Marks& all = marks[alt.substr(kSignLength)];
    (mark == kAnchor ? all.anchors : mark == kFrameStart ? all.starts : all.ends).push_back(element);
  });
  NotePlaces(holders);
  for (const auto& [identifier, all] : marks) {
    if (all.anchors.size() != all.starts.size() || all.anchors.size() != all.ends.size()) continue;
    for (const auto* several : {&all.anchors, &all.starts, &all.ends}) MakeDifferent(document, *several);
  }
}

void FrameHolders::NotePlaces(const std::vector<PDSElement>& holders) {
  std::unordered_set<std::uint64_t> isHolder;
  for (const PDSElement& holder : holders) isHolder.insert(KeyOf(holder));
  std::unordered_set<std::uint64_t> done;
  for (const PDSElement& holder : holders) {
    const PDSElement element = ParentOf(holder);
    if (IsNull(element) || !done.insert(KeyOf(element)).second) continue;
    Parent& parent = parents_.emplace_back(Parent{element, {}});
    CosObj before = {};
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count; ++i) {
      const CosObj kid = KidOf(element, i);
      if (isHolder.contains(KeyOf(kid))) parent.holders.push_back({kid, before});
      before = kid;
    }
  }
}

std::vector<Note> FrameHolders::PutBack() const {
  const HostFrame frame;
  std::vector<Note> notes;
  for (const Parent& parent : parents_) PutBack(parent, notes);
  return notes;
}

void FrameHolders::PutBack(const Parent& parent, std::vector<Note>& notes) {
  const auto places = PlacesIn(parent.element);
  CosObj last = {};                 // the holder before, in its place or not,
  ASInt32 place = kPDSBeforeFirst;  // and the place behind which the next one would go
  ASInt32 inserted = 0;
  for (const Holder& holder : parent.holders) {
    if (IsNull(last) || KeyOf(holder.before) != KeyOf(last)) {
      const auto before = places.find(KeyOf(holder.before));
      if (before != places.end()) place = before->second + inserted;
    }
    last = holder.element;
    const auto own = places.find(KeyOf(holder.element));
    if (own != places.end()) {
      place = own->second + inserted;
      continue;
    }
    if (!IsNull(ParentOf(holder.element))) continue;
    const HolderContent content(holder.element);
    if (!content.Any()) continue;
    CosDictRemoveKeyString(PDSElementGetCosObj(holder.element), "T");
    PDSElementInsertKid(parent.element, holder.element, place);
    ++place;
    ++inserted;
    notes.push_back({content.Page(), "no anchor asks for a frame; what it holds stays where the exporter has put it"});
  }
}

}  // namespace tgx::tool
