#include "tool/EmptyCells.h"

#include <unordered_set>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Roles.h"

namespace tgx::tool {
namespace {

/// The elements among the kids.
std::vector<PDSElement> ElementsIn(PDSElement parent, const KidTypes& types) {
  std::vector<PDSElement> elements;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 i = 0; i < count; ++i) {
    if (PDSElementGetKid(parent, i, nullptr, nullptr, nullptr) != types.element) continue;
    PDSElement kid = {};
    PDSElementGetKid(parent, i, &kid, nullptr, nullptr);
    elements.push_back(kid);
  }
  return elements;
}

bool HoldsOnlyElements(PDSElement element, const KidTypes& types) {
  return ElementsIn(element, types).size() == static_cast<std::size_t>(PDSElementGetNumKids(element));
}

class CellTypes {
 public:
  explicit CellTypes(PDDoc document) : roles_(document) {}
  bool IsRow(PDSElement element) { return roles_.Resolve(PDSElementGetType(element)) == row_; }
  bool IsCell(PDSElement element) {
    const ASAtom role = roles_.Resolve(PDSElementGetType(element));
    return role == header_ || role == data_;
  }

 private:
  Roles roles_;
  ASAtom row_ = ASAtomFromString("TR");
  ASAtom header_ = ASAtomFromString("TH");
  ASAtom data_ = ASAtomFromString("TD");
};

}  // namespace

EmptyCells::EmptyCells(PDDoc document) {
  const HostFrame frame;
  const KidTypes types;
  CellTypes cells(document);
  ForEachElement(document, [&](PDSElement element) {
    if (!cells.IsRow(element)) return;
    Row row = {element, ElementsIn(element, types), {}};
    for (const PDSElement& kid : row.kids) {
      if (cells.IsCell(kid) && HoldsOnlyElements(kid, types)) row.cells.insert(KeyOf(kid));
    }
    if (!row.cells.empty()) rows_.push_back(std::move(row));
  });
}

void EmptyCells::PutBack() const {
  const HostFrame frame;
  const KidTypes types;
  for (const Row& row : rows_) {
    std::unordered_set<std::uint64_t> present;
    for (const PDSElement& kid : ElementsIn(row.element, types)) present.insert(KeyOf(kid));
    ASInt32 place = kPDSBeforeFirst;
    for (const PDSElement& kid : row.kids) {
      const bool isLost = !present.contains(KeyOf(kid));
      if (isLost && !row.cells.contains(KeyOf(kid))) continue;
      if (isLost) {
        for (const PDSElement& inner : ElementsIn(kid, types)) PDSElementRemoveKid(kid, inner);
        PDSElementInsertKid(row.element, kid, place);
      }
      ++place;
    }
  }
}

}  // namespace tgx::tool
