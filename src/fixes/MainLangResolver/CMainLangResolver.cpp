#include "src/fixes/MainLangResolver/CMainLangResolver.h"

#include <algorithm>

#include "src/api/HostException.h"
#include "src/common/ContentUtils.h"
#include "src/common/StructureUtils.h"
#include "src/common/contentvisitors/CContentTextCounter.h"
#include "src/fixes/StructureKidWalk.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "fixes/MainLangResolver/MainLangResolver";

}  // namespace

bool CMainLangResolver::SignedByteOrder::operator()(const Language& a, const Language& b) const {
  const auto isLess = [](char x, char y) { return static_cast<signed char>(x) < static_cast<signed char>(y); };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), isLess);
}

bool CMainLangResolver::Run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  return InExceptionFrame([this] {
    const bool hasTree =
        ForEachTopLevelElement(document_, kSourceFile, 35, [this](PDSElement& element) { EnterElement(element); });
    if (hasTree) StoreWinner();
    return hasTree;
  });
}

void CMainLangResolver::EnterElement(PDSElement element) {
  Language language;
  GetLanguage(element, language);
  const bool hasLanguage = !language.empty();
  if (hasLanguage) languages_.push_back(std::move(language));
  Walk(element);
  if (hasLanguage && !languages_.empty()) languages_.pop_back();
}

void CMainLangResolver::Walk(PDSElement element) {
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid;
    PDSMCInfo mcInfo;
    const ASAtom kind = PDSElementGetKidWithMCInfo(element, i, &kid, &mcInfo, nullptr, nullptr);
    if (kind == ASAtomFromString("StructElem")) {
      EnterElement(kid);
    } else {
      VisitKid(element, ASAtomGetString(kind), mcInfo);
    }
  }
}

void CMainLangResolver::VisitKid(PDSElement& element, const std::string& kind, const PDSMCInfo& mcInfo) {
  if (kind == "MC") VisitMarkedContent(element, mcInfo);
}

void CMainLangResolver::VisitMarkedContent(PDSElement&, const PDSMCInfo& mcInfo) {
  const PDPage page = PDDocAcquirePage(document_, PDPageNumFromCosObj(mcInfo.page));
  const PDEContainer container = containers_.Find(page, mcInfo.mcid);
  if (container == nullptr) {
    ReportStructureError("Can't translate PDSMC to PDEContainer", kSourceFile, 142);
    return;
  }
  ByteVector own;
  GetContainerLang(container, own);
  if (!own.empty()) languages_.emplace_back(own.begin(), own.end());
  const std::int32_t count = CContentTextCounter().Count(container);
  if (count > 0 && !languages_.empty()) counts_[languages_.back()] += count;
  if (!own.empty() && !languages_.empty()) languages_.pop_back();
}

void CMainLangResolver::StoreWinner() {
  const auto winner =
      std::max_element(counts_.begin(), counts_.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  if (winner != counts_.end()) SetDocumentLanguage(document_, winner->first);
}

}  // namespace tgx
