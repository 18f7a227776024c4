#pragma once

#include <vector>

#include "src/actions/PDFAction.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Removes the elements with which an exporter brackets text frames, those whose "Alt" holds "TEXTFRAME_START" or
/// "TEXTFRAME_END", and their marked content.
class RemoveTextFrameMarkersAction : public PDFAction, public ITagStructureVisitor {
 public:
  /// False for a document without a structure tree.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  void VisitMarkedContentPointer(void*& /*pointer*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitMarkedContent(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitObjectReference(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitOther(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  bool NeedsContentPointers() const override { return false; }

 private:
  std::vector<PDSElement> markers_;  // in walk order
};

}  // namespace tgx
