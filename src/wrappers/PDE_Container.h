#pragma once

#include <memory>
#include <optional>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDE_Content.h"
#include "src/wrappers/PDE_Element.h"

namespace tgx {

/// A marked-content sequence and what stands in it.
class PDE_Container : public PDE_Element {
 public:
  PDE_Container(PDEContainer container, PDF_BaseObject* parent);

  void Refresh() override;
  void ClearKids() override;

  /// Null after ClearKids.
  PDE_Content* GetContent() const { return content_.get(); }

  /// Whether the property dictionary has the key.
  bool HasMCID() const;
  /// Raises where there is no MCID or one that is no integer.
  ASInt32 GetMCID() const;
  /// The MCID; nothing where there is none or one that is no integer.
  std::optional<ASInt32> FindMCID() const;

 private:
  std::unique_ptr<PDE_Content> content_;
};

}  // namespace tgx
