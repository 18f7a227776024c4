#include "src/api/Dispatch.h"
#include "src/api/EntryPoint.h"

extern "C" int TGX_Action(PDDoc document, const TGXActionParams* params) {
  return tgx::RunEntryPoint([=] { return tgx::RunAction(tgx::Actions(), params->action, document, params->path); });
}

extern "C" int TGX_Fixups(PDDoc document, const TGXFixupParams* params) {
  return tgx::RunEntryPoint([=] { return tgx::RunFixes(tgx::Fixes(), params->mask, document); });
}

extern "C" const char* TGX_GetLastError(void) { return tgx::LastErrorText(); }
