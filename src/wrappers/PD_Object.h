#pragma once

#include "src/wrappers/PDF_BaseObject.h"

namespace tgx {

/// A wrapper of the document level; at the top of its tree.
class PD_Object : public PDF_BaseObject {
 public:
  /// Loads anew from the host.
  virtual void Refresh() {}
  /// Drops what was loaded.
  virtual void ClearKids() {}
};

}  // namespace tgx
