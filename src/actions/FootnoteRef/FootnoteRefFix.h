#pragma once

#include <cstdint>
#include <set>
#include <unordered_map>
#include <vector>

#include "src/actions/FootnoteRef/MarkedContentBoxes.h"
#include "src/actions/PDFAction.h"
#include "src/common/ContentWalker.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Links each footnote reference to its note and back. The exporter leaves "Reference" and "Note" elements that belong
/// together by their order alone; each gets a link annotation over its content, and a "Link" element around its kids. The
/// link back leads to the area of the text frame that the reference stands in, if it stands in one.
class FootnoteRefFix : public PDFAction, public ITagStructureVisitor, public IContentVisitor {
 public:
  FootnoteRefFix();

  /// Of every link annotation, 16.16; at first 1, which is next to nothing.
  void SetBorderWidth(std::int32_t width) { borderWidth_ = width; }
  /// Kind of the destinations: 0 XYZ, 1 Fit, 2 FitH, 3 FitV, 5 FitB, 6 FitBH, 7 FitBV; FitR for any other value.
  void SetDestinationFit(std::int32_t fit) { destinationFit_ = fit; }

  /// False, with nothing changed, when there are not as many notes as references.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  void VisitMarkedContentPointer(void*&, int, CosObj) override {}
  void VisitMarkedContent(CosObj& kid, int mcid, CosObj page) override;
  void VisitObjectReference(CosObj&, int, CosObj) override {}
  void VisitOther(CosObj&, int, CosObj) override {}
  bool NeedsContentPointers() const override { return false; }

  void VisitElement(PDEElement&) override {}
  void VisitContent(PDEContent) override {}
  void VisitContainer(PDEContainer container) override;
  void VisitGroup(PDEGroup) override {}

 private:
  enum class Phase { FindParts, MarkNotes, MarkReferences, CollectContent };
  enum class FrameState { None, Inside, Behind };

  /// A reference or a note.
  struct FootnotePart {
    PDSElement element;
    std::vector<McMark> marks;
  };

  struct TextFrame {
    std::vector<McMark> marks;
  };

  void Reset();
  void CollectContent();
  void FindParts();
  void CollectMarks(std::vector<FootnotePart>& parts, Phase phase);
  void FollowTextFrames(PDSElement& element);
  void ComputeFrameRects();
  void CreateLinks();
  void CreateLinkPair(FootnotePart& reference, FootnotePart& note, int number);
  /// Where the link back leads: the first frame that spans the reference on its page, else the reference itself.
  ASFixedRect BackTarget(std::int32_t pageNumber, const ASFixedRect& reference) const;
  void CreateLink(FootnotePart& part, PDPage page, const ASFixedRect& rect, PDPage targetPage, const ASFixedRect& target,
                  std::int32_t targetPageNumber, const char* titleFormat, int number);

  std::int32_t borderWidth_ = 1;
  std::int32_t destinationFit_ = 4;
  Phase phase_ = Phase::FindParts;
  std::set<ASAtom> noteTypes_;
  std::set<ASAtom> referenceTypes_;
  std::vector<FootnotePart> notes_;       ///< in tree order
  std::vector<FootnotePart> references_;  ///< in tree order; each belongs to the note at the same place
  MarkedContentBoxes allMarks_;
  FrameState frameState_ = FrameState::None;
  std::vector<TextFrame> openFrames_;  ///< the innermost last
  std::vector<TextFrame> frames_;
  /// The areas of the frames on each page, in the order of the frames; by page number, from 0.
  std::unordered_map<std::int32_t, std::vector<ASFixedRect>> frameAreas_;
  FootnotePart* currentPart_ = nullptr;
  CosObj currentPage_;
};

}  // namespace tgx
