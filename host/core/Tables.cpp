#include "host/core/Tables.h"

#include "host/core/Operations.h"
#include "host/core/Raise.h"

namespace tgx::host {
namespace {

/// The functions that stand in the tables: each runs its operation behind a guard, so that a failure leaves the host as a
/// raise.
namespace entries {
#define TGX_OPERATION(family, result, name, parameters, arguments) \
  result name parameters {                                         \
    return Guarded([&] { return operations::name arguments; });    \
  }
#include <tgx/operations/all.def>
#undef TGX_OPERATION
}  // namespace entries

#define TGX_OPERATION(family, result, name, parameters, arguments) entries::name,
constexpr CoreTable kCore = {
    sizeof(CoreTable),
    kHostTablesVersion,
#include <tgx/operations/core.def>
};
constexpr AcroSupportTable kAcroSupport = {
    sizeof(AcroSupportTable),
    kHostTablesVersion,
#include <tgx/operations/acro_support.def>
};
constexpr CosTable kCos = {
    sizeof(CosTable),
    kHostTablesVersion,
#include <tgx/operations/cos.def>
};
constexpr PDModelTable kPDModel = {
    sizeof(PDModelTable),
    kHostTablesVersion,
#include <tgx/operations/pd_model.def>
};
constexpr PDFEditReadTable kPDFEditRead = {
    sizeof(PDFEditReadTable),
    kHostTablesVersion,
#include <tgx/operations/pdf_edit_read.def>
};
constexpr PDFEditWriteTable kPDFEditWrite = {
    sizeof(PDFEditWriteTable),
    kHostTablesVersion,
#include <tgx/operations/pdf_edit_write.def>
};
constexpr PagePDEContentTable kPagePDEContent = {
    sizeof(PagePDEContentTable),
    kHostTablesVersion,
#include <tgx/operations/page_pde_content.def>
};
constexpr PDSEditReadTable kPDSEditRead = {
    sizeof(PDSEditReadTable),
    kHostTablesVersion,
#include <tgx/operations/pds_edit_read.def>
};
constexpr PDSEditWriteTable kPDSEditWrite = {
    sizeof(PDSEditWriteTable),
    kHostTablesVersion,
#include <tgx/operations/pds_edit_write.def>
};
constexpr TextTable kText = {
    sizeof(TextTable),
    kHostTablesVersion,
#include <tgx/operations/text.def>
};
#undef TGX_OPERATION

constexpr HostTables kTables = {
    sizeof(HostTables), kHostTablesVersion, &kCore,           &kAcroSupport,  &kCos,         &kPDModel,
    &kPDFEditRead,      &kPDFEditWrite,     &kPagePDEContent, &kPDSEditWrite, &kPDSEditRead, &kText,
};

}  // namespace

const HostTables* Tables() { return &kTables; }

}  // namespace tgx::host
