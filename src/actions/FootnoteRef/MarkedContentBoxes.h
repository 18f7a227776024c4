#pragma once

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// A piece of marked content and where it lies on its page.
struct McMark {
  CosObj page;
  std::int32_t mcid;
  ASFixedRect rect;
};

/// The rectangle that any other widens: its edges are the wrong way round and as far out as they go.
constexpr ASFixedRect kEmptyRect = {INT32_MAX, INT32_MIN, INT32_MIN, INT32_MAX};

void Widen(ASFixedRect& rect, const ASFixedRect& by);

/// The box around the marks on the page of the first one; kEmptyRect without marks.
ASFixedRect BoundingRect(const std::vector<McMark>& marks);

/// Every piece of marked content of a document, found by page and MCID.
class MarkedContentBoxes {
 public:
  void Clear() { marks_.clear(); }
  void Add(const McMark& mark) { marks_[Key(mark.page, mark.mcid)].push_back(mark); }

  /// The marks of an MCID on a page, in the order in which the page paints them.
  const std::vector<McMark>& Of(CosObj page, std::int32_t mcid) const;

  /// Gives each mark the box of its content; of several pieces with one MCID the last counts. Marks without content keep
  /// theirs.
  void Fill(std::vector<McMark>& marks) const;

 private:
  using PageAndMcid = std::tuple<ASUns32, ASUns32, std::int32_t>;
  static PageAndMcid Key(CosObj page, std::int32_t mcid) { return {page.a, page.b, mcid}; }

  std::map<PageAndMcid, std::vector<McMark>> marks_;
};

}  // namespace tgx
