#pragma once

#include "src/common/TagStructureVisitor.h"
#include "src/common/WalkerBase.h"

namespace tgx {

/// Streams the logical structure to its visitors, depth first and parents before kids, and keeps nothing of it.
///
/// The number of an element's kids is read once, before the first of them, and indices are not corrected: a visitor that
/// takes kids out of an element whose kids are being visited makes the walk miss some and the host raise at the end.
/// Visitors collect, and act after the walk.
class TagStructureWalker : public WalkerBase<ITagStructureVisitor> {
 public:
  /// All that stands below the tree root.
  void Walk(PDSTreeRoot root);
  /// All that stands below `element`, without `element` itself.
  void WalkKids(PDSElement& element);

  /// The first element below `element`, depth first, whose own type is `type`; the null object if there is none.
  static PDSElement FindDescendantByType(PDSElement element, ASAtom type);
  /// The nearest element above `element` of that type; the null object if there is none below the tree root.
  static PDSElement FindAncestorByType(PDSElement element, const char* type);
  static CosObj GetKidObject(PDSElement element, int index);
  static int GetKidCount(PDSElement element);
  /// The place of `kid` among the kids of `element`, -1 if it is none of them.
  static int IndexOfKid(PDSElement element, PDSElement kid);
  /// The place of `element` in its parent element; -1 for an element that has none, as one directly below the tree root.
  static int IndexInParent(PDSElement element);
  /// The null object for an element directly below the tree root.
  static PDSElement GetParentElement(PDSElement element);
  static bool IsNull(PDSElement element);
  /// Whether the kid at `index` is a structure element.
  static bool IsElementKid(PDSElement element, int index);

 private:
  void TellElement(PDSElement& element);
  void VisitKids(PDSElement element, bool withPointers);
  void VisitKid(PDSElement element, int index, bool withPointers);
  bool AnyVisitorNeedsPointers() const;
};

}  // namespace tgx
