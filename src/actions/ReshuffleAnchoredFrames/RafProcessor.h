#pragma once

#include <list>
#include <set>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/KidFinder.h"

namespace tgx {

/// Restores the reading order of anchored frames, going by the holders in which the exporter collects them: the elements
/// between a start and an end marker in a holder move next to the paragraph of each anchor that names the frame. Anchors,
/// markers and holders leave the structure; the marked content of anchors and markers, and dummy images, leave the pages.
///
/// A mark is two bytes anywhere in an "Alt" (22 64 start, 22 65 end, 22 2E anchor) or a title (22 30 holder), at odd places
/// too and whatever the encoding of the text. What stands around an anchor's mark is the anchor's key; a frame is meant by
/// an anchor when its start marker's "Alt" contains the key.
class RafProcessor {
 public:
  /// Does nothing to a document without a structure tree.
  void Run(PDDoc document);

 private:
  using Bytes = std::vector<char>;
  struct AnchorEntry {
    Bytes alt;  // with two zero bytes behind it, as all texts here
    PDSElement element;
  };
  struct FrameRecord {
    Bytes startAlt;
    std::vector<PDSElement> elements;
  };
  using Elements = std::list<PDSElement>;

  void SplitHolder(PDSElement holder);
  std::set<ASInt32> McidsOfMarks(const Elements& anchors) const;
  void Relocate(const std::vector<AnchorEntry>& anchors);
  void PlaceFrame(const FrameRecord& frame, PDSElement grandparent, int position, KidFinder& places) const;
  void PlaceElement(PDSElement element, PDSElement grandparent, int position, KidFinder& places) const;

  PDDoc document_ = nullptr;
  std::vector<FrameRecord> frames_;  // in the order in which they end
  Elements markers_;
};

}  // namespace tgx
