#pragma once

#include <memory>
#include <vector>

#include "src/forms/AcroFormField.h"

namespace tgx::acroform {

/// The top-level form fields of a document, in the order of "Fields".
class AcroFormTree {
 public:
  virtual ~AcroFormTree() = default;

  /// Reads the fields; a document without a form, or with a damaged one, gives none. Always true.
  bool Load(PDDoc document);

  const std::vector<std::unique_ptr<AcroFormField>>& Fields() const { return fields_; }

 private:
  std::vector<std::unique_ptr<AcroFormField>> fields_;
};

/// The form dictionary of a document, or the null object.
CosObj FindForm(PDDoc document);

}  // namespace tgx::acroform
