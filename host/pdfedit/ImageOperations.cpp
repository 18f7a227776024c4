#include "host/core/HostError.h"
#include "host/core/Operations.h"

namespace tgx::host::operations {

void PDEImageGetAttrs(PDEImage, PDEImageAttrs*, ASUns32) {
  throw HostError(kASNotSupported, "PDEImageGetAttrs is not available");
}
ASInt32 PDEImageGetDataLen(PDEImage) { throw HostError(kASNotSupported, "PDEImageGetDataLen is not available"); }
void PDEImageGetData(PDEImage, ASUns32, ASUns8*) { throw HostError(kASNotSupported, "PDEImageGetData is not available"); }

}  // namespace tgx::host::operations
