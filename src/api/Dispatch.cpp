#include "src/api/Dispatch.h"

#include <string>

#include "src/actions/AttFix/AttFixAction.h"
#include "src/actions/AttLayoutTableFix/AttLayoutTableFix.h"
#include "src/actions/BulletFixer/BulletFixer.h"
#include "src/actions/EmptyTag/EmptyTagFix.h"
#include "src/actions/ExtractMathML/ExtractMathMLAction.h"
#include "src/actions/FixEndNote/FixEndNoteAction.h"
#include "src/actions/FixGroupTags/FixGroupTagsAction.h"
#include "src/actions/FootnoteRef/FootnoteRefFix.h"
#include "src/actions/IDStyleName/IDStyleNameFix.h"
#include "src/actions/RemoveTextFrameMarkers/RemoveTextFrameMarkersAction.h"
#include "src/actions/ReshuffleAnchoredFrames/RafProcessor.h"
#include "src/actions/ReshuffleAnchoredFramesV2/ActionRAFv2.h"
#include "src/actions/Toc/TocProcessorV2.h"
#include "src/actions/UserAltText/UserAltTextFix.h"
#include "src/common/CPdfStructureParser.h"
#include "src/common/ContentCommands.h"
#include "src/fixes/FixTHeaderFooter/THeaderFooterFixer.h"
#include "src/fixes/FixTableLayout/TableLayoutFixer.h"
#include "src/fixes/FixWidgetAnnot/WidgetAnnotFixer.h"
#include "src/fixes/LangEncoderFix/CLangTagMapper.h"
#include "src/fixes/MainLangResolver/CMainLangResolver.h"
#include "src/fixes/RemoveDoubleBullet/CDoubleBulletsRemover.h"
#include "src/fixes/RemoveExtraParaTag/CExtraPTagRemover.h"
#include "src/fixes/RoleMap/RoleMapFix.h"
#include "src/forms/AcroFormSync.h"

namespace tgx {
namespace {

/// A number that is reserved and deliberately does nothing.
int RunNothing(PDDoc, const char*) { return TGX_OK; }

// The next three have no verdict: a document without a structure tree is a success, too.

int ReshuffleFramesByHolder(PDDoc document, const char*) {
  RafProcessor worker;
  worker.Run(document);
  return TGX_OK;
}

int DescribeLinks(PDDoc document, const char*) {
  CPdfStructureParser worker(document);
  worker.Run();
  return TGX_OK;
}

/// For a worker that takes a file and has no verdict.
template <typename Worker, bool (Worker::*kRun)(const std::string&)>
int RunWithFile(PDDoc document, const char* path) {
  if (path == nullptr) return TGX_NO_PATH;
  Worker worker;
  worker.SetDocument(document);
  (worker.*kRun)(path);
  return TGX_OK;
}

int CutText(PDDoc document, const char*) {
  const bool succeeded = [document] {
    BulletFixer worker;
    return worker.Run(document);
  }();
  return succeeded ? TGX_OK : TGX_FAILED;
}

int RemoveDummyImagesOfAllPages(PDDoc document, const char*) {
  RemoveDummyImages(document);
  return TGX_OK;
}

/// Opens the document at the path for the time of the run. A failure leaves it open and its path object alive, as hosts are
/// told; the embedded host has both until the process ends.
int SynchroniseForms(PDDoc document, const char* path) {
  const ASFileSys fileSystem = ASGetDefaultFileSys();
  if (path == nullptr) return TGX_NO_PATH;
  const ASPathName name = ASFileSysCreatePathName(fileSystem, ASAtomFromString("Cstring"), path, nullptr);
  const PDDoc source = PDDocOpen(name, nullptr, nullptr, 1);
  acroform::AcroFormSync synchronisation;
  synchronisation.Run(document, source);
  PDDocClose(source);
  if (name != nullptr) ASFileSysReleasePath(fileSystem, name);
  return TGX_OK;
}

/// Without a path there is nothing to do, and that is a success.
int RetagLayoutTables(PDDoc document, const char* path) {
  if (path == nullptr) return TGX_OK;
  const bool succeeded = [&] {
    AttLayoutTableFix worker;
    worker.SetDocument(document);
    worker.SetPath(path);
    return worker.Run();
  }();
  return succeeded ? TGX_OK : TGX_FAILED;
}

int LinkFootnotes(PDDoc document, const char*) {
  const bool succeeded = [document] {
    FootnoteRefFix worker;
    worker.SetDocument(document);
    worker.SetBorderWidth(0);
    worker.SetDestinationFit(4);
    return worker.Run();
  }();
  return succeeded ? TGX_OK : TGX_FAILED;
}

template <typename Fixer>
bool RunFixer(PDDoc document) {
  Fixer fixer;
  return fixer.Run(document);
}

/// A table fixer: the same with another name of its run.
template <typename Fixer>
bool RunTableFixer(PDDoc document) {
  Fixer fixer;
  return fixer.run(document);
}

template <std::int32_t kMode>
bool MapLanguages(PDDoc document) {
  CLangTagMapper mapper;
  mapper.SetMode(kMode);
  return mapper.Run(document);
}

bool RunRoleMapFix(PDDoc document) {
  RoleMapFix fix;
  fix.SetDocument(document);
  return fix.ApplyFix();
}

// clang-format off
constexpr ActionRow kActions[] = {
    {0, ReshuffleFramesByHolder},
    {1, DescribeLinks},
    {2, RunWithFile<IDStyleNameFix, &IDStyleNameFix::Run>},
    {3, CutText},
    {4, SynchroniseForms},
    {5, RunWithFile<TocProcessorV2, &TocProcessorV2::LoadMetaData>},
    {6, RunWorker<EmptyTagFix>},
    {7, RunWorker<EmptyTagFix, &EmptyTagFix::MarkEmpty>},
    {8, RunWorker<UserAltTextFix>},
    {9, RetagLayoutTables},
    {10, LinkFootnotes},
    {11, RunWorker<RemoveTextFrameMarkersAction>},
    {12, RunWorker<AttFixAction>},
    {13, RemoveDummyImagesOfAllPages},
    {14, RunWorker<ActionRAFv2>},
    {15, RunWorker<FixEndNoteAction>},
    {16, RunWorker<FixGroupTagsAction>},
    {17, RunWorker<ExtractMathMLAction>},
    {18, RunNothing},
};

constexpr FixRow kFixes[] = {
    {0x1, RunFixer<CDoubleBulletsRemover>},
    {0x2, RunFixer<CExtraPTagRemover>},
    {0x4, RunFixer<CMainLangResolver>},
    {0x10, MapLanguages<CLangTagMapper::kToTags>},
    {0x20, MapLanguages<CLangTagMapper::kToBrackets>},
    {0x40, RunTableFixer<THeaderFooterFixer>},
    {0x80, RunTableFixer<TableLayoutFixer>},
    {0x100, RunFixer<WidgetAnnotFixer>},
    {0x200, RunRoleMapFix},
};
// clang-format on

}  // namespace

std::span<const ActionRow> Actions() { return kActions; }
std::span<const FixRow> Fixes() { return kFixes; }

int RunAction(std::span<const ActionRow> rows, std::int32_t number, PDDoc document, const char* path) {
  for (const ActionRow& row : rows) {
    if (row.number == number) return row.run(document, path);
  }
  return TGX_UNKNOWN_ACTION;
}

int RunFixes(std::span<const FixRow> rows, std::uint32_t mask, PDDoc document) {
  for (const FixRow& row : rows) {
    if ((mask & row.bit) != 0 && !row.run(document)) return TGX_FAILED;
  }
  return TGX_OK;
}

}  // namespace tgx
