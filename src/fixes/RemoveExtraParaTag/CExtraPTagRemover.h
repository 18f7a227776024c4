#pragma once

#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/RoleCache.h"

namespace tgx {

/// Puts a table in the place of the paragraph around it, where the paragraph holds nothing else.
class CExtraPTagRemover {
 public:
  CExtraPTagRemover() = default;
  CExtraPTagRemover(const CExtraPTagRemover&) = delete;
  CExtraPTagRemover& operator=(const CExtraPTagRemover&) = delete;
  virtual ~CExtraPTagRemover() = default;

  /// False for a null document and for one without a structure tree.
  bool Run(PDDoc document);

 protected:
  virtual void HandleElement(PDSElement element);

 private:
  struct Replacement {
    PDSElement grandparent;
    PDSElement parent;  // the paragraph
    PDSElement table;
  };

  bool ReplaceParagraphs();

  PDDoc document_ = nullptr;
  RoleCache roles_;
  std::vector<Replacement> replacements_;
};

}  // namespace tgx
