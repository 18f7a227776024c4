#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

void StructureTree::BeforeCosRead(const QPDFObjectHandle&, std::string_view) {}
void StructureTree::AfterCosEdit(const QPDFObjectHandle&, std::string_view) {}
void StructureTree::PrepareForSaving() { static_cast<void>(document_); }

}  // namespace tgx::host
