#include "host/pdfedit/PageContents.h"

#include "host/core/HostError.h"

namespace tgx::host {

void PageContents::BeforeCosRead(const QPDFObjectHandle&, std::string_view) {}
void PageContents::AfterCosEdit(const QPDFObjectHandle&, std::string_view) {}
PDEContainer PageContents::ContainerOf(ASInt32, ASInt32) { return nullptr; }
ASInt32 PageContents::McidOf(PDEContainer) { throw HostError(kASBadParameter, "no living container has this handle"); }
void PageContents::WriteCommitted() {}
void PageContents::DropUnchanged() { static_cast<void>(document_); }

}  // namespace tgx::host
