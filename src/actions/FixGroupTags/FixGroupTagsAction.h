#pragma once

#include <cstdint>
#include <map>
#include <unordered_set>
#include <vector>

#include "src/actions/FixGroupTags/NeighbourSearch.h"
#include "src/actions/PDFAction.h"
#include "src/common/KidFinder.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Turns each run of neighbours with one of an exporter's private "GT_" types into a group of the standard type, with the
/// neighbours as its paragraphs, and moves captions into the list or table that they belong to. The private types leave the
/// role map.
class FixGroupTagsAction : public PDFAction, public TagStructureVisitorBase {
 public:
  FixGroupTagsAction();

  /// Gives a document without a structure tree an empty one.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  bool NeedsContentPointers() const override { return false; }

 private:
  enum class GroupKind {
    kCaption = 0,
    kCaptionListAtTop = 1,
    kCaptionTableAtTop = 2,
    kCaptionTableAtBottom = 3,
    kIndex = 4,
    kBlockQuote = 5,
    kFigure = 6,
    kFormula = 7
  };
  enum class Direction { kForward, kBackward };
  struct Work {
    PDSElement element;
    GroupKind kind;
  };
  // Paragraphs of one type that stood side by side, and the place of the first of them.
  struct Paragraphs {
    PDSElement parent;
    int index;
    std::vector<PDSElement> elements;
  };

  void Handle(const Work& work);
  void MakeGroup(PDSElement element, const char* type);
  void MakeCaption(PDSElement element, const char* targetType, Direction direction);
  /// Puts an element from inside another directly before that one.
  void PutBefore(PDSElement element, PDSElement target);
  /// To be called with what moves to another parent, both before it leaves and when it has come.
  void ForgetSearchesFor(PDSElement element);
  Paragraphs FindParagraphs(PDSElement element);
  void TakeOut(const Paragraphs& paragraphs);
  PDSElement NewElementOver(const Paragraphs& paragraphs, const char* type);
  void FinishParagraphs(const Paragraphs& paragraphs);
  void UnmapPrivateTypes();

  std::map<ASAtom, GroupKind> roles_;
  std::vector<Work> work_;  // in walk order
  std::unordered_set<std::uint64_t> grouped_;
  KidFinder places_;
  NeighbourSearch neighbours_{places_};
};

}  // namespace tgx
