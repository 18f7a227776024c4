// bridge INPUT: fills the host's tables as a bridge to a PDF library does, hands them to the library, and runs an action. In
// the place of the PDF library stands the embedded host.
#include <cstdio>

#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

namespace bridge {

int operationsCalled = 0;

// A function for each operation, of the operation's own name. A real bridge writes them out, one by one, and calls its
// library.
#define TGX_OPERATION(family, result, name, parameters, arguments) \
  result name parameters {                                         \
    ++operationsCalled;                                            \
    return TGXHost_Tables()->family->name arguments;               \
  }
#include <tgx/operations/all.def>
#undef TGX_OPERATION

// The tables hold the functions in the order of the lists, so that the lists fill them.
#define TGX_OPERATION(family, result, name, parameters, arguments) name,
const CoreTable kCore = {
    sizeof(CoreTable),
    kHostTablesVersion,
#include <tgx/operations/core.def>
};
const AcroSupportTable kAcroSupport = {
    sizeof(AcroSupportTable),
    kHostTablesVersion,
#include <tgx/operations/acro_support.def>
};
const CosTable kCos = {
    sizeof(CosTable),
    kHostTablesVersion,
#include <tgx/operations/cos.def>
};
const PDModelTable kPDModel = {
    sizeof(PDModelTable),
    kHostTablesVersion,
#include <tgx/operations/pd_model.def>
};
const PDFEditReadTable kPDFEditRead = {
    sizeof(PDFEditReadTable),
    kHostTablesVersion,
#include <tgx/operations/pdf_edit_read.def>
};
const PDFEditWriteTable kPDFEditWrite = {
    sizeof(PDFEditWriteTable),
    kHostTablesVersion,
#include <tgx/operations/pdf_edit_write.def>
};
const PagePDEContentTable kPagePDEContent = {
    sizeof(PagePDEContentTable),
    kHostTablesVersion,
#include <tgx/operations/page_pde_content.def>
};
const PDSEditReadTable kPDSEditRead = {
    sizeof(PDSEditReadTable),
    kHostTablesVersion,
#include <tgx/operations/pds_edit_read.def>
};
const PDSEditWriteTable kPDSEditWrite = {
    sizeof(PDSEditWriteTable),
    kHostTablesVersion,
#include <tgx/operations/pds_edit_write.def>
};
const TextTable kText = {
    sizeof(TextTable),
    kHostTablesVersion,
#include <tgx/operations/text.def>
};
#undef TGX_OPERATION

const HostTables kTables = {
    sizeof(HostTables), kHostTablesVersion, &kCore,           &kAcroSupport,  &kCos,         &kPDModel,
    &kPDFEditRead,      &kPDFEditWrite,     &kPagePDEContent, &kPDSEditWrite, &kPDSEditRead, &kText};

const HostTables* Tables() { return &kTables; }

}  // namespace bridge

int main(int count, char** arguments) {
  if (count != 2) return 1;
  const TGXInitParams init = {nullptr, bridge::Tables};
  TGX_init(&init);
  PDDoc document = TGXHost_OpenFile(arguments[1], nullptr);
  if (document == nullptr) return 1;
  const TGXActionParams removeEmptyTags = {0, 6, {0}};
  const int result = TGX_Action(document, &removeEmptyTags);
  TGXHost_Close(document);
  std::printf("%d operations called\n", bridge::operationsCalled);
  return bridge::operationsCalled > 0 ? result : 1;
}
