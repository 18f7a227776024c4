#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "src/wrappers/PDS_Element.h"

namespace tgx {

/// A recognised line of the table of contents.
struct TocRecord {
  std::int32_t level = 0;
  std::shared_ptr<PDS_Element> item;    ///< first the line's own element, then its "TOCI"
  std::shared_ptr<PDS_Element> source;  ///< the line's own element
  PDS_Element* subToc = nullptr;        ///< the "TOC" for the lines below this one; null until it is needed
  int depth = 0;  ///< of the list in which `item` stands, 1 for the outermost; 0 before it stands in one
};

/// Lists in lists up to this depth; a line that would come deeper joins the list of the one above. Each list adds two
/// levels to the tree, and a tree of more than 512 levels cannot be opened.
constexpr int kDeepestToc = 200;

/// Appends each record's item to `rootToc` or to a list below an earlier record, going by the levels:
/// - level 1 and the first record go to `rootToc`;
/// - a record one level below the one before it goes to the list of that;
/// - any other looks back for the nearest record j of its level and goes to the list of record j - 1, whatever the level of
///   that one is, and to `rootToc` when j is the first record or there is none.
void NestRecords(std::vector<TocRecord>& records, PDS_Element& rootToc);

}  // namespace tgx
