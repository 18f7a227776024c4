#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/core/Raise.h"

namespace tgx::host::operations {

void ASPushExceptionFrame(void* /*environ*/, ASRestoreProc restoreProc) {
  if (restoreProc == nullptr) throw HostError(kASBadParameter, "exception frame without a restore procedure");
  PushFrame(restoreProc);
}

void ASPopExceptionFrame(void) { PopFrame(); }

ASErrorCode ASGetExceptionErrorCode(void) { return LastRaiseCode(); }

ASAtom ASAtomFromString(const char* text) {
  if (text == nullptr) throw HostError(kASBadParameter, "null where the text of an atom is needed");
  return Intern(text);
}

const char* ASAtomGetString(ASAtom atom) { return AtomText(atom); }

// A callback is the procedure's own address: the host calls it directly, so there is nothing to make or to free.
ASCallback ASCallbackCreate(ASExtension /*extension*/, void* proc) {
  if (proc == nullptr) throw HostError(kASBadParameter, "callback without a procedure");
  return proc;
}

void ASCallbackDestroy(ASCallback /*callback*/) {}

}  // namespace tgx::host::operations
