#pragma once

#include <vector>

#include "src/actions/PDFAction.h"
#include "src/common/KidFinder.h"
#include "src/common/TagStructureVisitor.h"
#include "src/common/TextEncoding.h"

namespace tgx {

/// Restores the reading order of anchored frames: what stands between the start and end marker of a frame, which must be
/// kids of one parent, moves to the place of the frame's anchor. Markers, anchors and the holders that the exporter collects
/// frames in leave the structure, and images of one by one sample leave the pages; marked content stays where it is.
///
/// Marks are the first character, behind a byte-order mark if there is one, of an "Alt" (U+2264 start, U+2265 end, U+222E
/// anchor) or of a title (U+2230 holder). What follows an "Alt" mark is the identifier that ties the three together; of
/// several markers with one identifier the last counts.
class ActionRAFv2 : public PDFAction, public TagStructureVisitorBase {
 public:
  /// Always true. Gives a document without a structure tree an empty one.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  bool NeedsContentPointers() const override { return false; }

 private:
  enum class Kind { kFrameStart = 1, kFrameEnd = 2, kAnchor = 3, kHolder = 4 };
  struct MarkRecord {
    Kind kind;
    PDSElement element;
    ByteVector identifier;  // with the zero bytes that were read behind the text
  };

  bool RecordHolder(PDSElement element);
  void RecordAltMark(PDSElement element);
  bool Process();
  void PlaceFrames();
  void RemoveHolders();

  std::vector<MarkRecord> records_;  // in walk order
  KidFinder places_;
};

}  // namespace tgx
