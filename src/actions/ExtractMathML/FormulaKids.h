#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "src/actions/ExtractMathML/KidBoxes.h"
#include "src/actions/ExtractMathML/StructureKid.h"
#include "src/common/KidSequence.h"

namespace tgx {

/// The kids of the elements that formulas stand in. Those of an element are gone through once, however many formulas it has;
/// what is done to them goes through here.
class FormulaKids {
 public:
  /// The box over the marked content among the kids of an element.
  ASFixedRect BoxOf(PDSElement parent) { return Of(parent).boxes.Box(); }
  /// As GetKidIndex.
  int IndexOf(PDSElement parent, PDSElement kid);
  /// As KidsBetween.
  std::vector<StructureKid> Between(PDSElement& parent, PDSElement& start, PDSElement& end);

  /// Takes a kid that Between gave out of its parent.
  void Detach(const StructureKid& kid, PDDoc document);
  void InsertBehind(PDSElement parent, PDSElement kid, int place);
  /// Notes that the element was removed from that place by other means.
  void NoteRemoval(PDSElement parent, int place);
  /// The content of kids has changed.
  void Forget() { parents_.clear(); }

 private:
  struct Parent {
    KidSequence kids;
    KidBoxes boxes;
  };

  Parent& Of(PDSElement parent);

  std::unordered_map<std::uint64_t, Parent> parents_;
};

}  // namespace tgx
