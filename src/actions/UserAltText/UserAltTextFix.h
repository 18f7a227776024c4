#pragma once

#include <vector>

#include "src/actions/PDFAction.h"
#include "src/actions/TagStructureNode.h"
#include "src/actions/UserAltText/LinkUri.h"

namespace tgx {

/// Moves the alternate text that the exporter carries in the URI of a link to the "Alt" of the element beside the link
/// annotation. Every URI loses the text; where nothing is left of it the "Link" element gives way to that element and the
/// annotation leaves its page.
class UserAltTextFix : public PDFAction {
 public:
  /// Always true. The tag tree that it works by stays as it was built, whatever is changed on the way.
  bool Run() override;

 private:
  void CollectLinks(TagStructureNode* node, std::vector<TagStructureNode*>& links) const;
  void Transfer(TagStructureNode& link);
  void MoveText(TagStructureNode& link, const LinkUri& uri);
  void PurgePages();
};

}  // namespace tgx
