#include "host/core/Operations.h"
#include "host/core/Paths.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Open.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host::operations {

PDDoc PDDocOpen(ASPathName path, ASFileSys fileSys, PDAuthProc, ASBool doRepair) {
  CheckFileSystem(fileSys);
  OpenOptions options;
  options.repair = doRepair != 0;
  return OpenFile(PathOf(path), options).Handle();
}

void PDDocClose(PDDoc doc) { Document::Close(Document::Of(doc)); }

// References of documents are not counted: they neither close a document nor keep one open.
PDDoc PDDocAcquire(PDDoc doc) { return Document::Of(doc).Handle(); }
void PDDocRelease(PDDoc doc) { Document::Of(doc); }

CosDoc PDDocGetCosDoc(PDDoc doc) { return Document::Of(doc).CosHandle(); }
PDDoc PDDocFromCosDoc(CosDoc cosDoc) { return cosDoc == nullptr ? nullptr : Document::Of(cosDoc).Handle(); }

ASInt32 PDDocGetNumPages(PDDoc doc) { return Document::Of(doc).Pages().Count(); }

}  // namespace tgx::host::operations
