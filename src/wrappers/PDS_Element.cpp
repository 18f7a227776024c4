#include "src/wrappers/PDS_Element.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "src/common/ContentUtils.h"
#include "src/common/PageReference.h"
#include "src/wrappers/PDE_Container.h"
#include "src/wrappers/PDE_Content.h"
#include "src/wrappers/PDS_MC.h"
#include "src/wrappers/PDS_OBJR.h"
#include "src/wrappers/PD_Page.h"

namespace tgx {
namespace {

/// Takes the marked content out of the kids of the element that the host has it in.
void TakeContentFromHost(PDS_MC& content) {
  if (!content.GetHolder()) return;
  const PDSElement holder = *content.GetHolder();
  content.SetHolder(std::nullopt);
  const ASInt32 count = PDSElementGetNumKids(holder);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj kid = CosNewNull();
    PDSMCInfo info = {};
    if (PDSElementGetKidWithMCInfo(holder, index, &kid, &info, nullptr, nullptr) != ASAtomFromString("MC")) continue;
    if (info.mcid != content.GetMCID() || CosObjEqual(info.page, content.GetPage()) == 0 ||
        CosObjEqual(info.stream, content.GetHandle().stream) == 0)
      continue;
    PDSElementRemoveKid(holder, kid);
    return;
  }
}

}  // namespace

PDS_Element::PDS_Element(PDSElement element, PDS_Object* parent) : PDS_Object(parent), PDF_ObjectRef(element) {
  PDS_Element::Refresh();
}

void PDS_Element::ClearKids() { kids_.clear(); }

// As deep as the structure, which the host bounds.
void PDS_Element::Refresh() {  // NOLINT(misc-no-recursion)
  PDS_Element::ClearKids();
  const ASInt32 count = PDSElementGetNumKids(GetHandle());
  for (ASInt32 index = 0; index != count; ++index) {
    CosObj kid = CosNewNull();
    PDSMCInfo info = {};
    const ASAtom type = PDSElementGetKidWithMCInfo(GetHandle(), index, &kid, &info, nullptr, nullptr);
    if (type == ASAtomFromString("StructElem")) {
      kids_.push_back(std::make_shared<PDS_Element>(kid, this));
    } else if (type == ASAtomFromString("MC")) {
      auto content = std::make_shared<PDS_MC>(info, this);
      content->SetHolder(GetHandle());
      kids_.push_back(std::move(content));
    } else if (type == ASAtomFromString("OBJR")) {
      kids_.push_back(std::make_shared<PDS_OBJR>(kid, info.page, this));
    }
  }
}

void PDS_Element::AppendKid(std::shared_ptr<PDS_Object> kid) {
  if (const auto* element = dynamic_cast<PDS_Element*>(kid.get())) {
    PDSElementInsertKid(GetHandle(), element->GetHandle(), kPDSAfterLast);
  } else if (const auto* object = dynamic_cast<PDS_OBJR*>(kid.get())) {
    const ASInt32 type = CosObjGetType(object->GetHandle());
    if (type == CosDict || type == CosStream) {
      PDSElementInsertOBJAsKid(GetHandle(), object->GetPage(), object->GetHandle(), kPDSAfterLast);
    }
  } else if (auto* content = dynamic_cast<PDS_MC*>(kid.get())) {
    InsertContent(*content);
  }
  kid->SetParent(this);
  kids_.push_back(std::move(kid));
}

void PDS_Element::InsertContent(PDS_MC& content) const {
  if (content.GetHolder()) return;
  const PageReference page(AcquirePageOfCosPage(content.GetPage()));
  const PD_Page view(page.Get());
  const PDE_Container* container = FindContainerByMcid(view.GetContent(), content.GetMCID());
  PDSElementInsertMCAsKid(GetHandle(), content.GetPage(), container == nullptr ? nullptr : container->GetHandle(),
                          kPDSAfterLast);
  content.SetHolder(GetHandle());
}

void PDS_Element::TakeFromHost(PDS_Object* kid) const {
  if (const auto* element = dynamic_cast<PDS_Element*>(kid)) {
    PDSElementRemoveKid(GetHandle(), element->GetHandle());
  } else if (const auto* object = dynamic_cast<PDS_OBJR*>(kid)) {
    PDSElementRemoveKidOBJR(GetHandle(), object->GetHandle());
  } else if (auto* content = dynamic_cast<PDS_MC*>(kid)) {
    TakeContentFromHost(*content);
  }
}

std::shared_ptr<PDS_Object> PDS_Element::RemoveKid(PDS_Object* kid) {
  TakeFromHost(kid);
  kid->SetParent(nullptr);
  std::shared_ptr<PDS_Object> removed;
  const auto isIt = [&](const std::shared_ptr<PDS_Object>& other) {
    if (other.get() != kid) return false;
    removed = other;
    return true;
  };
  kids_.erase(std::remove_if(kids_.begin(), kids_.end(), isIt), kids_.end());
  return removed;
}

void PDS_Element::RemoveAllKids() {
  std::unordered_set<const PDS_Object*> taken;
  for (const auto& kid : kids_) {
    const bool isContent = dynamic_cast<PDS_MC*>(kid.get()) != nullptr;
    const bool isKnown =
        isContent || dynamic_cast<PDS_Element*>(kid.get()) != nullptr || dynamic_cast<PDS_OBJR*>(kid.get()) != nullptr;
    if (!isKnown || !taken.insert(kid.get()).second) continue;
    if (!isContent) TakeFromHost(kid.get());
    kid->SetParent(nullptr);
  }
  const auto wasTaken = [&](const std::shared_ptr<PDS_Object>& kid) { return taken.contains(kid.get()); };
  kids_.erase(std::remove_if(kids_.begin(), kids_.end(), wasTaken), kids_.end());
}

std::shared_ptr<PDS_Element> PDS_Element::CreateChild(const char* type) const {
  auto element = Create(GetDocument());
  element->SetType(type);
  return element;
}

std::shared_ptr<PDS_Element> PDS_Element::Create(PDDoc document) {
  PDSElement element = CosNewNull();
  PDSElementCreate(document, &element);
  return std::make_shared<PDS_Element>(element, nullptr);
}

PDDoc PDS_Element::GetDocument() const { return PDDocFromCosDoc(CosObjGetDoc(PDSElementGetCosObj(GetHandle()))); }

}  // namespace tgx
