#include <string>

#include "src/api/HostBinding.h"

namespace {

std::string lastError;

}  // namespace

// No operation has a worker yet: every valid number is a success that does nothing.
extern "C" int TGX_Action(PDDoc, const TGXActionParams* params) {
  lastError.clear();
  return params->action < 0 || params->action > 18 ? TGX_UNKNOWN_ACTION : TGX_OK;
}

extern "C" int TGX_Fixups(PDDoc, const TGXFixupParams*) {
  lastError.clear();
  return TGX_OK;
}

extern "C" const char* TGX_GetLastError(void) { return lastError.c_str(); }
