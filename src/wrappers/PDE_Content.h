#pragma once

#include <memory>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDE_Element.h"

namespace tgx {

class PDE_Container;

/// A list of page content with a wrapper for each element, nested lists included.
class PDE_Content : public PDE_Element {
 public:
  PDE_Content(PDEContent content, PDF_BaseObject* parent);

  void Refresh() override;
  void ClearKids() override;

  ASInt32 GetNumElems() const { return static_cast<ASInt32>(elements_.size()); }
  /// Unchecked.
  PDE_Element* GetElem(int index) const { return elements_[static_cast<std::size_t>(index)].get(); }

  /// Takes the element off the list, here and in the host. Every wrapper that was taken from this list is to be regarded as
  /// gone. The host is given the index -1 for an element of another list.
  void RemoveElem(PDE_Element* element);

 private:
  friend void RemoveContainersByMcid(PDE_Content* content, int mcid, bool recursive);

  void RemoveAt(ASInt32 index);

  std::vector<std::unique_ptr<PDE_Element>> elements_;
};

/// The first container of that MCID, depth first; null for null. A container whose MCID is no integer is none of any.
PDE_Container* FindContainerByMcid(PDE_Content* content, int mcid);
/// Takes every container of that MCID off the list, with `recursive` also off the lists of the containers that stay.
void RemoveContainersByMcid(PDE_Content* content, int mcid, bool recursive);

}  // namespace tgx
