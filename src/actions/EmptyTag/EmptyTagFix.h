#pragma once

#include "src/actions/PDFAction.h"

namespace tgx {

/// Empty structure elements: those whose subtree holds nothing but elements. Both operations give true whatever they find.
class EmptyTagFix : public PDFAction {
 public:
  /// Takes the topmost element of every empty subtree out of the structure.
  bool Run() override;

  /// Leaves them in place and appends " [EMPTY]" to their structure type, again at each call. The type stops being a
  /// standard one on purpose: the mark is meant to show in a listing of the structure.
  virtual bool MarkEmpty();
};

}  // namespace tgx
