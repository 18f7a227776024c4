#pragma once

#include "src/actions/PDFAction.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Maps the type "Endnote" to "Note" in the role map, where any element is of that type.
class FixEndNoteAction : public PDFAction, public TagStructureVisitorBase {
 public:
  /// Gives a document without a structure tree an empty one.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  bool NeedsContentPointers() const override { return false; }

 private:
  bool endnoteFound_ = false;
};

}  // namespace tgx
