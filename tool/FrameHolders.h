#pragma once

#include <vector>

#include <tgx/host.h>

#include "tool/Note.h"

namespace tgx::tool {

/// Keeps anchored frames that reshuffle-frames would lose: it takes the last of several frames with one identifier for all
/// of them, and throws the holders away with everything that no anchor has asked for.
class FrameHolders {
 public:
  /// Before the step: gives frames with one identifier different ones where each of them has an anchor, in their order.
  /// Throws HostFailure.
  explicit FrameHolders(PDDoc document);

  /// After the step: puts holders that still hold content back in their places, without title and marks, and tells of them.
  /// Throws HostFailure.
  std::vector<Note> PutBack() const;

 private:
  struct Holder {
    PDSElement element;
    CosObj before;  ///< the kid in front of it, the null object for none
  };
  /// An element, or the root, with holders among its kids.
  struct Parent {
    PDSElement element;
    std::vector<Holder> holders;  ///< in order
  };
  static void PutBack(const Parent& parent, std::vector<Note>& notes);
  void NotePlaces(const std::vector<PDSElement>& holders);

  std::vector<Parent> parents_;
};

}  // namespace tgx::tool
