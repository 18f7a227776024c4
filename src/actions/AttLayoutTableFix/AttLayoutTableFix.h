#pragma once

#include <set>
#include <string>
#include <vector>

#include "src/actions/PDFAction.h"
#include "src/common/TagStructureVisitor.h"

namespace tgx {

/// Retags the tables that a tab-separated file names as layout tables, with all their table elements, to "Div". A number in
/// the file is the position of the "Table" element in a walk over the tree, counted from 1.
class AttLayoutTableFix : public PDFAction, public ITagStructureVisitor {
 public:
  AttLayoutTableFix();

  void SetPath(std::string path) { path_ = std::move(path); }

  /// False, with nothing changed, when the document has no structure tree or the file cannot be read.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  void VisitMarkedContentPointer(void*&, int, CosObj) override {}
  void VisitMarkedContent(CosObj&, int, CosObj) override {}
  void VisitObjectReference(CosObj&, int, CosObj) override {}
  void VisitOther(CosObj&, int, CosObj) override {}
  bool NeedsContentPointers() const override { return false; }

 private:
  enum class Mode { Collect, Retag };

  void RetagElement(const PDSElement& element);

  Mode mode_ = Mode::Collect;
  std::set<ASAtom> tableTypes_;
  std::string path_;  ///< of the file, in the operating system's bytes
  std::vector<PDSElement> tableElements_;
};

}  // namespace tgx
