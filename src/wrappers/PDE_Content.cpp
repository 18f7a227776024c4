#include "src/wrappers/PDE_Content.h"

#include <algorithm>

#include "src/wrappers/PDE_Container.h"

namespace tgx {

PDE_Content::PDE_Content(PDEContent content, PDF_BaseObject* parent) : PDE_Element(content, parent) {
  PDE_Content::Refresh();
}

void PDE_Content::ClearKids() { elements_.clear(); }

// As deep as containers are nested, which the host bounds.
void PDE_Content::Refresh() {  // NOLINT(misc-no-recursion)
  PDE_Content::ClearKids();
  for (ASInt32 index = 0; index < PDEContentGetNumElems(GetHandle()); ++index) {
    elements_.push_back(WrapElement(PDEContentGetElem(GetHandle(), index), this));
  }
}

void PDE_Content::RemoveElem(PDE_Element* element) {
  const auto isIt = [element](const std::unique_ptr<PDE_Element>& other) { return other.get() == element; };
  const auto found = std::find_if(elements_.begin(), elements_.end(), isIt);
  RemoveAt(found == elements_.end() ? -1 : static_cast<ASInt32>(found - elements_.begin()));
}

void PDE_Content::RemoveAt(ASInt32 index) {
  PDEContentRemoveElem(GetHandle(), index);
  // Loading all anew gives the same wrappers again, unless somebody else has changed the list.
  if (index >= 0 && PDEContentGetNumElems(GetHandle()) == GetNumElems() - 1) {
    elements_.erase(elements_.begin() + index);
  } else {
    Refresh();
  }
}

PDE_Container* FindContainerByMcid(PDE_Content* content, int mcid) {  // NOLINT(misc-no-recursion)
  if (content == nullptr) return nullptr;
  for (ASInt32 index = 0; index < content->GetNumElems(); ++index) {
    auto* container = dynamic_cast<PDE_Container*>(content->GetElem(index));
    if (container == nullptr) continue;
    if (container->FindMCID() == mcid) return container;
    if (auto* found = FindContainerByMcid(container->GetContent(), mcid)) return found;
  }
  return nullptr;
}

void RemoveContainersByMcid(PDE_Content* content, int mcid, bool recursive) {  // NOLINT(misc-no-recursion)
  if (content == nullptr) return;
  for (ASInt32 index = 0; index < content->GetNumElems();) {
    auto* container = dynamic_cast<PDE_Container*>(content->GetElem(index));
    if (container != nullptr && container->FindMCID() == mcid) {
      // What stands before has been searched and does not change, so the search goes on here.
      content->RemoveAt(index);
      continue;
    }
    if (container != nullptr && recursive) RemoveContainersByMcid(container->GetContent(), mcid, true);
    ++index;
  }
}

}  // namespace tgx
