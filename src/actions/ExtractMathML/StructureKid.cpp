#include "src/actions/ExtractMathML/StructureKid.h"

#include <memory>
#include <stdexcept>

#include "src/common/PageContentGuards.h"

namespace tgx {
namespace {

/// Commits the page's content when it ends. A kid without a page needs none.
std::unique_ptr<McChangeSaver> SaverFor(const StructureKid& kid, PDDoc document) {
  return CosObjGetType(kid.page) == CosNull ? nullptr : std::make_unique<McChangeSaver>(document, kid.page);
}

[[noreturn]] void ThrowUnknownKind() { throw std::runtime_error("unknown node type"); }

}  // namespace

std::vector<StructureKid> KidsBetween(PDSElement& parent, PDSElement& start, PDSElement& end, ASInt32 place, bool isOnce) {
  std::vector<StructureKid> kids;
  bool isBetween = false;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 i = place; i < count; ++i) {
    StructureKid kid = {parent, CosNewNull(), ASAtomFromString("Dummy"), nullptr, {}, CosNewNull()};
    void* pointer = nullptr;
    kid.kind = PDSElementGetKidWithMCInfo(parent, i, &kid.kid, &kid.mcInfo, &pointer, &kid.page);
    kid.content = static_cast<PDEContainer>(pointer);
    if (CosObjEqual(kid.kid, start) == 1) {
      isBetween = true;
    } else if (CosObjEqual(kid.kid, end) == 1) {
      if (isBetween && isOnce) break;
      isBetween = false;
    } else if (isBetween) {
      kids.push_back(kid);
    }
  }
  return kids;
}

void Detach(const StructureKid& kid, PDDoc document) {
  const auto saver = SaverFor(kid, document);
  if (kid.kind == ASAtomFromString("StructElem")) {
    PDSElementRemoveKid(kid.parent, kid.kid);
  } else if (kid.kind == ASAtomFromString("MC")) {
    PDSElementRemoveKidMC(kid.parent, kid.page, kid.content);
  } else if (kid.kind == ASAtomFromString("OBJR")) {
    PDSElementRemoveKidOBJR(kid.parent, kid.kid);
  } else {
    ThrowUnknownKind();
  }
}

void Attach(const StructureKid& kid, PDSElement& element, PDDoc document) {
  const auto saver = SaverFor(kid, document);
  if (kid.kind == ASAtomFromString("StructElem")) {
    PDSElementInsertKid(element, kid.kid, kPDSAfterLast);
  } else if (kid.kind == ASAtomFromString("MC")) {
    PDSElementInsertMCAsKid(element, kid.page, kid.content, kPDSAfterLast);
  } else if (kid.kind == ASAtomFromString("OBJR")) {
    PDSElementInsertOBJAsKid(element, kid.page, kid.kid, kPDSAfterLast);
  } else {
    ThrowUnknownKind();
  }
}

}  // namespace tgx
