#include "src/actions/Toc/TocNesting.h"

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace tgx {
namespace {

constexpr std::ptrdiff_t kRoot = -1;

PDS_Element& SubTocOf(TocRecord& record) {
  if (record.subToc == nullptr) {
    const auto toc = record.item->CreateChild("TOC");
    record.subToc = toc.get();
    record.item->AppendKid(toc);
  }
  return *record.subToc;
}

/// Where items go: below a record, or to the outermost list.
class Nesting {
 public:
  Nesting(std::vector<TocRecord>& records, PDS_Element& rootToc) : records_(records), rootToc_(rootToc) {}

  void Place(std::size_t index) {
    TocRecord& record = records_[index];
    const std::ptrdiff_t above = RecordAbove(index);
    lastOfLevel_[record.level] = index;
    if (above == kRoot) return Append(rootToc_, 1, record);
    TocRecord& parent = records_[static_cast<std::size_t>(above)];
    if (parent.depth < kDeepestToc) return Append(SubTocOf(parent), parent.depth + 1, record);
    Append(*dynamic_cast<PDS_Element*>(parent.item->GetParent()), parent.depth, record);
  }

 private:
  /// The record in whose list a record goes; kRoot for the outermost list.
  std::ptrdiff_t RecordAbove(std::size_t index) const {
    const std::int64_t level = records_[index].level;
    if (level == 1 || index == 0) return kRoot;
    if (level - records_[index - 1].level == 1) return static_cast<std::ptrdiff_t>(index) - 1;
    const auto sameLevel = lastOfLevel_.find(records_[index].level);
    return sameLevel == lastOfLevel_.end() ? kRoot : static_cast<std::ptrdiff_t>(sameLevel->second) - 1;
  }

  static void Append(PDS_Element& toc, int depth, TocRecord& record) {
    toc.AppendKid(record.item);
    record.depth = depth;
  }

  std::vector<TocRecord>& records_;
  PDS_Element& rootToc_;
  std::unordered_map<std::int32_t, std::size_t> lastOfLevel_;
};

}  // namespace

void NestRecords(std::vector<TocRecord>& records, PDS_Element& rootToc) {
  Nesting nesting(records, rootToc);
  for (std::size_t index = 0; index < records.size(); ++index) nesting.Place(index);
}

}  // namespace tgx
