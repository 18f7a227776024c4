#pragma once

#include <vector>

#include <tgx/host.h>

namespace tgx::tool {

/// Readers go from annotation to annotation in the order of the structure on pages that say so ("Tabs"). A page without
/// annotations needs not say it; once a step puts one there, it should.
class AnnotationOrder {
 public:
  /// Counts before the step. Throws HostFailure.
  explicit AnnotationOrder(PDDoc document);

  /// Has the pages say so that have more annotations now and name no order. Throws HostFailure.
  void SetWhereNew() const;

 private:
  PDDoc document_;
  std::vector<ASInt32> counts_;  ///< of annotations, by page
};

}  // namespace tgx::tool
