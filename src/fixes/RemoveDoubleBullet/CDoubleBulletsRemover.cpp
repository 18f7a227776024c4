#include "src/fixes/RemoveDoubleBullet/CDoubleBulletsRemover.h"

#include <algorithm>
#include <set>
#include <utility>

#include "src/api/HostException.h"
#include "src/common/ContentUtils.h"
#include "src/common/StructureUtils.h"
#include "src/common/contentvisitors/CActualTextExtractor.h"
#include "src/common/contentvisitors/CContentEraser.h"
#include "src/common/contentvisitors/CContentTextExtractor.h"
#include "src/fixes/StructureKidWalk.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "fixes/RemoveDoubleBullet/DoubleBulletsRemover";
/// How many records, from the first of the document on, each record is compared with.
constexpr std::size_t kReach = 10;

}  // namespace

bool CDoubleBulletsRemover::Run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  const auto onElement = [this](PDSElement& element, const auto& walkKids) {
    VisitElement(element);
    walkKids();
  };
  const auto onOther = [this](PDSElement& element, const CosObj& kid, ASAtom kind, const PDSMCInfo& mcInfo) {
    VisitKid(element, kid, kind, mcInfo);
  };
  return InExceptionFrame([&] {
    if (!WalkStructure(document_, kSourceFile, 40, onElement, onOther)) return false;
    ReadTexts();
    CompareRecords();
    return true;
  });
}

void CDoubleBulletsRemover::VisitKid(PDSElement& element, const CosObj& kid, ASAtom kind, const PDSMCInfo& mcInfo) {
  if (kind != ASAtomFromString("MC")) return;
  const PDPage page = AcquirePageOfCosPage(mcInfo.page);
  if (page == nullptr) return;
  const PDEContainer container = containers_.Find(page, mcInfo.mcid);
  if (container == nullptr) return;
  const Texts none = {&noText_, &noText_};
  records_.push_back(std::make_unique<MarkedContentRecord>(MarkedContentRecord{mcInfo, element, kid, container, none, {}}));
}

/// Texts matter only where two records can be a pair, which takes one parent of two kids, and where one of them is within
/// reach. Nothing has been changed since the walk, so they are what they were then.
void CDoubleBulletsRemover::ReadTexts() {
  std::set<std::pair<ASUns32, ASUns32>> parentsWithinReach;
  for (std::size_t i = 0; i < std::min(kReach, records_.size()); ++i) {
    const Parent& parent = ParentOf(*records_[i]);
    if (parent.isNone || PDSElementGetNumKids(parent.element) != 2) continue;
    parentsWithinReach.emplace(parent.element.a, parent.element.b);
  }
  for (const auto& record : records_) {
    const PDSElement& parent = ParentOf(*record).element;
    if (parentsWithinReach.count({parent.a, parent.b}) == 0) continue;
    record->texts = TextsOf(record->container);
  }
}

CDoubleBulletsRemover::Texts CDoubleBulletsRemover::TextsOf(PDEContainer container) {
  const auto [texts, isNew] = texts_.try_emplace(container, Texts());
  if (isNew) {
    CActualTextExtractor actual;
    actual.Extract(container);
    CContentTextExtractor shown;
    shown.Extract(container);
    texts->second = {&*distinctTexts_.insert(actual.Text()).first, &*distinctTexts_.insert(shown.Utf16()).first};
  }
  return texts->second;
}

void CDoubleBulletsRemover::CompareRecords() {
  const std::size_t count = records_.size();
  for (std::size_t i = 0; i < count; ++i) {
    MarkedContentRecord& a = *records_[i];
    // The second record is counted from the first of the document, not from `i`: pairs further down are out of reach.
    const std::size_t reach = std::min(count - i, kReach);
    for (std::size_t j = 0; j < reach; ++j) {
      MarkedContentRecord& b = *records_[j];
      if (!ArePair(a, b)) continue;
      if (IsCopyOf(a.texts, b.texts)) Delete(a);
      if (IsCopyOf(b.texts, a.texts)) Delete(b);
    }
  }
}

bool CDoubleBulletsRemover::IsCopyOf(const Texts& hidden, const Texts& shown) {
  return !hidden.actual->empty() && shown.actual->empty() && hidden.actual == shown.utf16;
}

const CDoubleBulletsRemover::Parent& CDoubleBulletsRemover::ParentOf(MarkedContentRecord& record) const {
  if (!record.parent || record.parent->deletions != deletions_) {
    PDSElement parent;
    ASBool isRoot = 0;
    PDSElementGetParent(record.element, &parent, &isRoot);
    record.parent = {parent, isRoot == 1 || CosObjGetType(parent) == CosNull, deletions_};
  }
  return *record.parent;
}

bool CDoubleBulletsRemover::ArePair(MarkedContentRecord& a, MarkedContentRecord& b) const {
  const Parent& parent = ParentOf(a);
  if (parent.isNone || CosObjEqual(parent.element, ParentOf(b).element) == 0) return false;
  return HasRole(a.element, "Span") && HasRole(b.element, "Span") && HasRole(parent.element, "Lbl") &&
         PDSElementGetNumKids(parent.element) == 2;
}

bool CDoubleBulletsRemover::HasRole(const PDSElement& element, const char* role) const {
  return ResolveRole(document_, ASAtomGetString(PDSElementGetType(element))) == role;
}

void CDoubleBulletsRemover::Delete(const MarkedContentRecord& record) {
  PDSElement element = record.element;
  const PDSElement parent = GetParent(element);
  ++deletions_;
  if (const PDPage page = AcquirePageOfCosPage(record.mcInfo.page))
    CContentEraser().Erase(document_, page, record.mcInfo.mcid);
  PDSElementRemoveKid(parent, record.element);
}

}  // namespace tgx
