#pragma once

#include <map>
#include <string>
#include <vector>

#include "src/actions/ExtractMathML/FormulaKids.h"
#include "src/actions/ExtractMathML/FormulaMarker.h"
#include "src/actions/PDFAction.h"
#include "src/common/StructureUtils.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Gives formulas their source. The exporter brackets a formula with marker elements and leaves its MathML in a third one;
/// each formula becomes an "Annot" element that holds a highlight annotation with the MathML as "Contents", and a "Formula"
/// element with the bracketed kids. Markers and their holder leave the document.
class ExtractMathMLAction : public PDFAction, public TagStructureVisitorBase {
 public:
  ExtractMathMLAction();

  /// True. A kid that cannot be moved ends the run with "unknown node type"; formulas built until then stay.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  bool NeedsContentPointers() const override { return false; }

 private:
  struct ContentItem {
    PDSElement element;
    std::string name;
    std::string text;
  };

  struct FormulaEntry {
    PDSElement start;
    PDSElement end;
    std::map<std::string, ContentItem> contents;
  };

  void TakeMarker(PDSElement& element, const FormulaMarker& marker);
  void BuildFormula(FormulaEntry& entry);
  void RemoveMarker(PDSElement& marker);
  /// The highlight annotation over the kids of `parent` that carries the formula's source.
  CosObj CreateAnnotation(FormulaEntry& entry, PDSElement& parent, CosObj cosPage);

  PDSElement holder_;  ///< the null object until one is met
  std::map<int, FormulaEntry> formulas_;
  FormulaKids kids_;
  Removals removals_;
};

}  // namespace tgx
