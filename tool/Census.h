#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <tgx/host.h>

namespace tgx::tool {

/// What is counted in a document. The order is that of the report.
enum class Counted {
  kElements,
  kAnchors,
  kTextFrameMarks,
  kTableDescriptions,
  kFormulaMarks,
  kBracketLanguages,
  kTables,
  kTablesWithHeaders,
  kHeaderCells,
  kContentsEntries,
  kFormulas,
  kCaptions,
  kFigures,
  kDescribedFigures,
  kLinks,
  kDescribedLinks,
  kRoles,
  kFilledFields,
  kCount
};

/// The key of a count in the report for programs, and what the report for people calls it.
struct CountName {
  Counted what;
  std::string_view key, text;
};
extern const std::array<CountName, static_cast<std::size_t>(Counted::kCount)> kCountNames;

/// Marked content that belongs to marks.
struct MarkedPlace {
  std::int32_t page;  ///< counted from 1
  std::int32_t mcid;
  unsigned marks;  ///< Mark bits

  bool operator<(const MarkedPlace& other) const {
    return std::tie(page, mcid, marks) < std::tie(other.page, other.mcid, other.marks);
  }
};

/// What stands in a document at one moment.
struct Census {
  std::array<std::size_t, static_cast<std::size_t>(Counted::kCount)> counts{};
  std::vector<std::pair<std::uint64_t, ASAtom>> elements;  ///< every element and its type, in order of the elements
  std::vector<MarkedPlace> places;                         ///< in order
  unsigned marks = 0;                                      ///< Mark bits of all marks

  std::size_t& operator[](Counted what) { return counts[static_cast<std::size_t>(what)]; }
  std::size_t operator[](Counted what) const { return counts[static_cast<std::size_t>(what)]; }
};

/// Throws HostFailure.
Census TakeCensus(PDDoc document);

/// How the elements of two censuses of one open document differ.
struct ElementChanges {
  std::size_t removed = 0, added = 0, renamed = 0;
};
ElementChanges Compare(const Census& before, const Census& after);

}  // namespace tgx::tool
