#include "src/fixes/RoleDispatchFixer.h"

#include "src/api/HostException.h"
#include "src/api/StructureError.h"

namespace tgx {
namespace {

/// Holds the document for the time of a run.
class DocumentReference {
 public:
  explicit DocumentReference(PDDoc document) : document_(PDDocAcquire(document)) {}
  ~DocumentReference() { PDDocRelease(document_); }
  DocumentReference(const DocumentReference&) = delete;
  DocumentReference& operator=(const DocumentReference&) = delete;

 private:
  PDDoc document_;
};

}  // namespace

void RoleDispatchFixer::handleOtherElement(const PDSElement&) {}
void RoleDispatchFixer::handleContentKid(const CosObj&) {}

bool RoleDispatchFixer::run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  roles_ = RoleCache(document);
  Begin();
  return InExceptionFrame([this] { return WalkTree(); });
}

bool RoleDispatchFixer::WalkTree() {
  PDSTreeRoot root;
  if (PDDocGetStructTreeRoot(document_, &root) == 0) {
    ReportStructureError("No document structure object found", source_.file, source_.line);
    return false;
  }
  const DocumentReference reference(document_);
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 i = 0; i < count && i < PDSTreeRootGetNumKids(root); ++i) {
    PDSElement element;
    PDSTreeRootGetKid(root, i, &element);
    Walk(element);
  }
  if (HasTable()) Finish();
  return true;
}

void RoleDispatchFixer::Walk(const PDSElement& element) {
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count && i < PDSElementGetNumKids(element); ++i) {
    CosObj kid;
    if (PDSElementGetKidWithMCInfo(element, i, &kid, nullptr, nullptr, nullptr) != ASAtomFromString("StructElem")) {
      handleContentKid(kid);
      continue;
    }
    const bool hadTable = HasTable();
    BeforeElement(kid);
    Dispatch(kid);
    Walk(kid);
    AfterElement(hadTable);
  }
}

void RoleDispatchFixer::Dispatch(const PDSElement& element) {
  const auto handler = handlers_.find(roles_.RoleOf(element));
  if (handler == handlers_.end()) {
    handleOtherElement(element);
  } else {
    (this->*handler->second)(element);
  }
}

}  // namespace tgx
