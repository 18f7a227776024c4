#include "tool/AnnotationOrder.h"

#include "tool/HostCalls.h"

namespace tgx::tool {
namespace {

template <typename Visit>
void ForEachPage(PDDoc document, Visit visit) {
  const ASInt32 count = PDDocGetNumPages(document);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDPage page = PDDocAcquirePage(document, i);
    visit(page, static_cast<std::size_t>(i));
    PDPageRelease(page);
  }
}

}  // namespace

AnnotationOrder::AnnotationOrder(PDDoc document) : document_(document) {
  const HostFrame frame;
  ForEachPage(document, [this](PDPage page, std::size_t) { counts_.push_back(PDPageGetNumAnnots(page)); });
}

void AnnotationOrder::SetWhereNew() const {
  const HostFrame frame;
  ForEachPage(document_, [this](PDPage page, std::size_t i) {
    const CosObj dictionary = PDPageGetCosObj(page);
    const bool hasOrder =
        CosObjGetType(CosDictGetKeyString(dictionary, "Tabs")) == CosName;  // some exporters write a string
    if (hasOrder || PDPageGetNumAnnots(page) <= counts_[i]) return;
    CosDictPutKeyString(dictionary, "Tabs", CosNewName(PDDocGetCosDoc(document_), 0, ASAtomFromString("S")));
  });
}

}  // namespace tgx::tool
