#include "src/fixes/MainLangResolver/CMainLangResolver.h"

#include <algorithm>
#include <limits>

#include "src/api/HostException.h"
#include "src/common/ContentUtils.h"
#include "src/common/StructureUtils.h"
#include "src/common/contentvisitors/CContentTextCounter.h"
#include "src/fixes/StructureKidWalk.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "fixes/MainLangResolver/MainLangResolver";

/// Content that stands in the tree again and again could take a sum past its end.
void Add(std::int32_t count, std::int32_t& sum) {
  sum = count > std::numeric_limits<std::int32_t>::max() - sum ? std::numeric_limits<std::int32_t>::max() : sum + count;
}

}  // namespace

bool CMainLangResolver::SignedByteOrder::operator()(const Language& a, const Language& b) const {
  const auto isLess = [](char x, char y) { return static_cast<signed char>(x) < static_cast<signed char>(y); };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), isLess);
}

bool CMainLangResolver::Run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  const auto onElement = [this](PDSElement& element, const auto& walkKids) {
    Language language;
    GetLanguage(element, language);
    WithLanguage(language, walkKids);
  };
  const auto onOther = [this](PDSElement& element, const CosObj&, ASAtom kind, const PDSMCInfo& mcInfo) {
    VisitKid(element, ASAtomGetString(kind), mcInfo);
  };
  return InExceptionFrame([&] {
    const bool hasTree = WalkStructure(document_, kSourceFile, 35, onElement, onOther);
    if (hasTree) StoreWinner();
    return hasTree;
  });
}

template <typename Work>
void CMainLangResolver::WithLanguage(const Language& language, const Work& work) {
  if (language.empty()) return work();
  languages_.push_back(&*counts_.try_emplace(language, 0).first);
  work();
  languages_.pop_back();
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
  WithLanguage({own.begin(), own.end()}, [&] {
    const std::int32_t count = CountOf(container);
    if (count > 0 && !languages_.empty()) Add(count, languages_.back()->second);
  });
}

std::int32_t CMainLangResolver::CountOf(PDEContainer container) {
  const auto [known, isNew] = countOf_.try_emplace(container, 0);
  if (isNew) known->second = CContentTextCounter().Count(container);
  return known->second;
}

void CMainLangResolver::StoreWinner() {
  const auto winner =
      std::max_element(counts_.begin(), counts_.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  if (winner != counts_.end() && winner->second > 0) SetDocumentLanguage(document_, winner->first);
}

}  // namespace tgx
