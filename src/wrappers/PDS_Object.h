#pragma once

#include <memory>
#include <vector>

#include "src/wrappers/PDF_BaseObject.h"

namespace tgx {

/// A node of a structure snapshot.
class PDS_Object : public PDF_BaseObject {
 public:
  explicit PDS_Object(PDS_Object* parent) : PDF_BaseObject(parent) {}

  /// Loads anew from the host.
  virtual void Refresh() {}
  /// Drops what was loaded.
  virtual void ClearKids() {}
};

/// The kids of a node, which owns them; shared, so that a kid that leaves its node goes on living with whoever took it.
using PDS_Kids = std::vector<std::shared_ptr<PDS_Object>>;

}  // namespace tgx
