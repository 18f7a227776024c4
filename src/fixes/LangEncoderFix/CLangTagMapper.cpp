#include "src/fixes/LangEncoderFix/CLangTagMapper.h"

#include "src/api/HostException.h"
#include "src/common/StructureUtils.h"
#include "src/fixes/LangEncoderFix/LangForms.h"
#include "src/fixes/StructureKidWalk.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "fixes/LangEncoderFix/LangTagMapper";

}  // namespace

bool CLangTagMapper::Run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  const auto onElement = [this](PDSElement& element, const auto& walkKids) {
    VisitElement(element);
    walkKids();
  };
  const auto onOther = [this](PDSElement& element, const CosObj&, ASAtom kind, const PDSMCInfo& mcInfo) {
    if (kind == ASAtomFromString("MC")) VisitMarkedContent(element, mcInfo);
  };
  return InExceptionFrame([&] { return WalkStructure(document_, kSourceFile, 230, onElement, onOther); });
}

void CLangTagMapper::VisitElement(PDSElement& element) {
  std::vector<char> bytes;
  GetLanguage(element, bytes);
  if (bytes.empty()) return;
  const std::string language(bytes.begin(), bytes.end());
  std::string rewritten;
  if (mode_ == kToTags && IsBracketForm(language)) {
    rewritten = BracketToTagForm(language);
  } else if (mode_ == kToBrackets && IsTagForm(language)) {
    rewritten = TagToBracketForm(language);
  } else {
    return;
  }
  SetLanguage(element, {rewritten.begin(), rewritten.end()});
}

void CLangTagMapper::VisitMarkedContent(PDSElement&, const PDSMCInfo& mcInfo) {
  const PDPage page = PDDocAcquirePage(document_, PDPageNumFromCosObj(mcInfo.page));
  if (containers_.Find(page, mcInfo.mcid) == nullptr) {
    ReportStructureError("Can't translate PDSMC to PDEContainer", kSourceFile, 393);
  }
}

}  // namespace tgx
