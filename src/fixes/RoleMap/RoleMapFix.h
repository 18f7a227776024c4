#pragma once

#include "src/fixes/PDFFix.h"

namespace tgx {

/// Clears the role map of entries that map a type to itself, and writes a line to the log "tgxlib_tag93.log".
class RoleMapFix : public PDFFix {
 public:
  /// False without a document or a structure tree, and when the host raises; the failure leaves no text then.
  bool ApplyFix() override;
};

}  // namespace tgx
