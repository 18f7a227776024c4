#include "src/api/HostBinding.h"

namespace {

TGXInitParams binding = {};

}  // namespace

const HostTables* GetHostTables() { return binding.getHostTables(); }

namespace tgx {

ASExtension ExtensionId() { return binding.extensionId; }

}  // namespace tgx

extern "C" int TGX_init(const TGXInitParams* params) {
  binding = *params;
  return TGX_OK;
}
