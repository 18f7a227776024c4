#include "src/actions/FootnoteRef/FootnoteRefFix.h"

#include <array>
#include <cstdio>
#include <map>
#include <string>

#include "src/common/AnnotHelpers.h"
#include "src/common/PageHelpers.h"
#include "src/common/TagStructureWalker.h"
#include "src/common/TextEncoding.h"

namespace tgx {
namespace {

constexpr ASInt32 kAfterLastAnnotation = kPDAnnotAfterLast;

const char* FitName(std::int32_t fit) {
  switch (fit) {
    case 0:
      return "XYZ";
    case 1:
      return "Fit";
    case 2:
      return "FitH";
    case 3:
      return "FitV";
    case 5:
      return "FitB";
    case 6:
      return "FitBH";
    case 7:
      return "FitBV";
    default:
      return "FitR";
  }
}

std::string ReadAlt(PDSElement& element) {
  const ASInt32 length = PDSElementGetAlt(element, nullptr);
  if (length < 1) return {};
  ByteVector bytes(static_cast<std::size_t>(length) + 2);
  PDSElementGetAlt(element, bytes.data());
  ByteVector text;
  Utf16ToUtf8(bytes, text);
  return {text.begin(), text.end()};
}

bool Contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

/// Whether a kid is one that no run can move: content that its page does not have, or what is no kid at all.
bool MustStay(PDSElement& element, ASInt32 index) {
  void* content = nullptr;
  const ASAtom type = PDSElementGetKid(element, index, nullptr, &content, nullptr);
  if (type == ASAtomFromString("MC")) return content == nullptr;
  return type != ASAtomFromString("OBJR") && type != ASAtomFromString("StructElem");
}

/// Whether a run before this one has wrapped the kids: the last is a "Link" that holds an object reference, and before it is
/// nothing, or a kid at which wrapping ended.
bool IsWrapped(PDSElement& element) {
  const ASInt32 last = PDSElementGetNumKids(element) - 1;
  if (last < 0 || !TagStructureWalker::IsElementKid(element, last)) return false;
  PDSElement link = TagStructureWalker::GetKidObject(element, last);
  if (PDSElementGetType(link) != ASAtomFromString("Link") || (last > 0 && !MustStay(element, 0))) return false;
  const ASInt32 count = PDSElementGetNumKids(link);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid;
    if (PDSElementGetKid(link, i, &kid, nullptr, nullptr) == ASAtomFromString("OBJR")) return true;
  }
  return false;
}

bool IsLinked(PDSElement& element) {
  PDSElement link = TagStructureWalker::FindAncestorByType(element, "Link");
  return !TagStructureWalker::IsNull(link) || IsWrapped(element);
}

}  // namespace

FootnoteRefFix::FootnoteRefFix()
    : noteTypes_{ASAtomFromString("Note")}, referenceTypes_{ASAtomFromString("Reference")}, currentPage_(CosNewNull()) {}

bool FootnoteRefFix::Run() {
  Reset();
  CollectContent();
  FindParts();
  if (notes_.size() != references_.size()) return false;
  CollectMarks(notes_, Phase::MarkNotes);
  CollectMarks(references_, Phase::MarkReferences);
  ComputeFrameRects();
  CreateLinks();
  return true;
}

void FootnoteRefFix::Reset() {
  references_.clear();
  notes_.clear();
  allMarks_.Clear();
  frames_.clear();
  openFrames_.clear();
  frameAreas_.clear();
  frameState_ = FrameState::None;
  currentPart_ = nullptr;
  currentPage_ = CosNewNull();
}

void FootnoteRefFix::CollectContent() {
  phase_ = Phase::CollectContent;
  ContentWalker walker;
  walker.AddVisitor(this);
  const ASInt32 count = PDDocGetNumPages(GetDocument());
  for (ASInt32 i = 0; i < count; ++i) {
    const PageReference page(PDDocAcquirePage(GetDocument(), i));
    currentPage_ = PDPageGetCosObj(page.Get());
    walker.Walk(page.Get());
  }
  currentPage_ = CosNewNull();
}

void FootnoteRefFix::FindParts() {
  phase_ = Phase::FindParts;
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(GetDocument(), &root) == 0) return;
  TagStructureWalker walker;
  walker.AddVisitor(this);
  walker.Walk(root);
}

void FootnoteRefFix::CollectMarks(std::vector<FootnotePart>& parts, Phase phase) {
  phase_ = phase;
  TagStructureWalker walker;
  walker.AddVisitor(this);
  for (FootnotePart& part : parts) {
    currentPart_ = &part;
    walker.WalkKids(part.element);
    allMarks_.Fill(part.marks);
  }
  currentPart_ = nullptr;
}

void FootnoteRefFix::VisitContainer(PDEContainer container) {
  if (phase_ != Phase::CollectContent) return;
  CosObj dictionary;
  ASBool isInline = 0;
  if (PDEContainerGetDict(container, &dictionary, &isInline) == 0) return;
  if (CosDictKnownKeyString(dictionary, "MCID") != 1) return;
  allMarks_.Add(currentPage_, CosIntegerValue(CosDictGetKeyString(dictionary, "MCID")), container);
}

void FootnoteRefFix::VisitElement(PDSElement& element) {
  if (phase_ != Phase::FindParts) return;
  const ASAtom type = PDSElementGetType(element);
  if (referenceTypes_.count(type) != 0) {
    if (!IsLinked(element)) references_.push_back({element, {}});
  } else if (noteTypes_.count(type) != 0) {
    if (!IsLinked(element)) notes_.push_back({element, {}});
  }
  FollowTextFrames(element);
}

void FootnoteRefFix::FollowTextFrames(PDSElement& element) {
  const std::string alt = ReadAlt(element);
  if (Contains(alt, "TEXTFRAME_START")) {
    frameState_ = FrameState::Inside;
    openFrames_.emplace_back();
    return;
  }
  if (!Contains(alt, "TEXTFRAME_END")) return;
  // Also with an outer frame still open: what is left of that one is not gathered.
  frameState_ = FrameState::Behind;
  if (openFrames_.empty()) return;
  frames_.push_back(std::move(openFrames_.back()));
  openFrames_.pop_back();
}

void FootnoteRefFix::VisitMarkedContent(CosObj&, int mcid, CosObj page) {
  if (currentPart_ != nullptr && (phase_ == Phase::MarkNotes || phase_ == Phase::MarkReferences)) {
    currentPart_->marks.push_back({page, mcid, {}});
  }
  if (frameState_ != FrameState::Inside || openFrames_.empty()) return;
  if (const auto mark = allMarks_.Around(page, mcid)) openFrames_.back().marks.push_back(*mark);
}

void FootnoteRefFix::ComputeFrameRects() {
  for (const TextFrame& frame : frames_) {
    std::map<std::int32_t, ASFixedRect> pageRects;
    for (const McMark& mark : frame.marks) {
      Widen(pageRects.emplace(PDPageNumFromCosObj(mark.page), kEmptyRect).first->second, mark.rect);
    }
    for (const auto& [pageNumber, rect] : pageRects) frameAreas_[pageNumber].push_back(rect);
  }
}

void FootnoteRefFix::CreateLinks() {
  for (std::size_t i = 0; i < references_.size(); ++i) {
    if (!references_[i].marks.empty()) CreateLinkPair(references_[i], notes_[i], static_cast<int>(i) + 1);
  }
}

void FootnoteRefFix::CreateLinkPair(FootnotePart& reference, FootnotePart& note, int number) {
  const ASInt32 referencePageNumber = PDPageNumFromCosObj(reference.marks.front().page);
  const PageReference referencePage(PDDocAcquirePage(GetDocument(), referencePageNumber));
  const ASFixedRect referenceRect = BoundingRect(reference.marks);
  // A note without content is none of the host's pages: the host refuses it.
  const ASInt32 notePageNumber = PDPageNumFromCosObj(note.marks.empty() ? CosNewNull() : note.marks.front().page);
  const PageReference notePage(PDDocAcquirePage(GetDocument(), notePageNumber));
  const ASFixedRect noteRect = BoundingRect(note.marks);
  const ASFixedRect backTargetRect = BackTarget(referencePageNumber, referenceRect);
  CreateLink(reference, referencePage.Get(), referenceRect, notePage.Get(), noteRect, notePageNumber, "Footnote %d", number);
  // Both destinations name the note's page, the one back too, whose area was measured on the reference's.
  CreateLink(note, notePage.Get(), noteRect, notePage.Get(), backTargetRect, notePageNumber, "Footnote reference %d",
             number);
}

ASFixedRect FootnoteRefFix::BackTarget(std::int32_t pageNumber, const ASFixedRect& reference) const {
  const auto areas = frameAreas_.find(pageNumber);
  if (areas == frameAreas_.end()) return reference;
  for (const ASFixedRect& area : areas->second) {
    // A frame may end above the bottom of the reference.
    if (reference.top <= area.top && area.left <= reference.left && reference.right <= area.right) return area;
  }
  return reference;
}

void FootnoteRefFix::CreateLink(FootnotePart& part, PDPage page, const ASFixedRect& rect, PDPage targetPage,
                                const ASFixedRect& target, std::int32_t targetPageNumber, const char* titleFormat,
                                int number) {
  PDPageHelper helper(page);
  PDLinkAnnotHelper link(helper.CreateLinkAnnot(rect));
  const PDViewDestination destination = CreateViewDestination(
      GetDocument(), targetPage, ASAtomFromString(FitName(destinationFit_)), target, 0, targetPageNumber);
  link.SetAction(NewActionFromDest(GetDocument(), destination, GetDocument()));
  link.SetBorderWidth(borderWidth_);
  std::array<char, 255> title{};
  const int length = std::snprintf(title.data(), title.size(), titleFormat, number);
  link.SetTitle(title.data(), length);
  helper.AddAnnot(kAfterLastAnnotation, link.GetAnnot());
  link.WrapKidsInLink(part.element, page,
                      [this](CosObj cosPage, ASInt32 mcid) { return allMarks_.ContainersOf(cosPage, mcid); });
}

}  // namespace tgx
