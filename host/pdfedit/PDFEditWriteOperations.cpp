#include "host/core/HostError.h"
#include "host/core/Operations.h"

namespace tgx::host::operations {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
#define TGX_OPERATION(family, result, name, parameters, arguments) \
  result name parameters { throw HostError(kASNotSupported, #name " is not available"); }
#include <tgx/operations/pdf_edit_write.def>
#undef TGX_OPERATION
#pragma GCC diagnostic pop

}  // namespace tgx::host::operations
