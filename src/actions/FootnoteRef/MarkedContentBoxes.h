#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
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

/// Where the marked content of a document lies, by page and MCID. An MCID can have several pieces. A box is measured when it
/// is first asked for, which few are; until then the content of the pages must stay acquired and unchanged.
class MarkedContentBoxes {
 public:
  void Clear() { pages_.clear(); }
  /// Adds a piece, in the order in which the page paints them.
  void Add(CosObj page, std::int32_t mcid, PDEContainer container);

  /// A mark over all pieces of an MCID on a page; none without content.
  std::optional<McMark> Around(CosObj page, std::int32_t mcid);

  /// The containers of an MCID on a page, in the order in which they were added.
  std::vector<PDEContainer> ContainersOf(CosObj page, std::int32_t mcid);

  /// Gives each mark the box of its content; of several pieces the last counts. Marks without content keep theirs.
  void Fill(std::vector<McMark>& marks);

 private:
  struct Pieces {
    std::vector<PDEContainer> containers;
    bool isMeasured = false;
    ASFixedRect last = {};
    ASFixedRect around = {};
  };

  Pieces* Find(CosObj page, std::int32_t mcid);
  const Pieces* Measured(CosObj page, std::int32_t mcid);

  std::unordered_map<std::uint64_t, std::unordered_map<std::int32_t, Pieces>> pages_;
};

}  // namespace tgx
