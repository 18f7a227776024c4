#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// Turns the push-button, check-box and radio-button widgets of a tagged document into plain "Stamp" annotations that keep
/// their appearance and, as "A", what they did on a click. A button whose "FT" stands on a parent field is left alone.
class WidgetAnnotFixer {
 public:
  virtual ~WidgetAnnotFixer() = default;

  /// False for a null document and for one without a structure tree. A widget without an appearance ends with the host's
  /// raise.
  bool Run(PDDoc document);

 private:
  bool FixPages();
  void FixAnnotations(PDPage page);
  void FixAnnotation(CosObj annotation);

  PDDoc document_ = nullptr;
};

}  // namespace tgx
