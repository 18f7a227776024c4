#pragma once

#include <memory>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDS_TreeRoot.h"
#include "src/wrappers/PD_Object.h"
#include "src/wrappers/PD_Page.h"

namespace tgx {

/// A whole document that somebody else has open: its structure tree and all its pages, read once.
class PD_Doc : public PD_Object, public PDF_ObjectRef<PDDoc> {
 public:
  explicit PD_Doc(PDDoc document);

  void Refresh() override;
  void ClearKids() override;

  /// The page with that dictionary; null when it is none of them.
  PD_Page* GetPageByCos(CosObj page) const;
  /// Null for a document without a structure tree.
  PDS_TreeRoot* GetStructTreeRoot() const { return root_.get(); }
  const std::vector<std::unique_ptr<PD_Page>>& GetPages() const { return pages_; }

 private:
  std::unique_ptr<PDS_TreeRoot> root_;
  std::vector<std::unique_ptr<PD_Page>> pages_;
};

}  // namespace tgx
