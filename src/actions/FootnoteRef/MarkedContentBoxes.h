#pragma once

#include <cstdint>
#include <map>
#include <optional>
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

/// Where the marked content of a document lies, by page and MCID. An MCID can have several pieces.
class MarkedContentBoxes {
 public:
  void Clear() { boxes_.clear(); }
  /// Adds a piece, in the order in which the page paints them.
  void Add(const McMark& piece);

  /// A mark over all pieces of an MCID on a page; none without content.
  std::optional<McMark> Around(CosObj page, std::int32_t mcid) const;

  /// Gives each mark the box of its content; of several pieces the last counts. Marks without content keep theirs.
  void Fill(std::vector<McMark>& marks) const;

 private:
  struct Boxes {
    ASFixedRect last;
    ASFixedRect around;
  };
  using PageAndMcid = std::tuple<ASUns32, ASUns32, std::int32_t>;
  static PageAndMcid Key(CosObj page, std::int32_t mcid) { return {page.a, page.b, mcid}; }

  std::map<PageAndMcid, Boxes> boxes_;
};

}  // namespace tgx
