#pragma once

#include <optional>
#include <string>

#include "src/api/HostBinding.h"
#include "src/common/TextEncoding.h"

namespace tgx {

/// A URI as an exporter writes it: the real target, which may be empty, and behind a marker the alternate text that the user
/// gave the linked object.
struct LinkUri {
  std::string target;              ///< all of the URI when there is no marker
  std::optional<ByteVector> text;  ///< UTF-16BE without a mark; none without a marker
};

/// Takes a URI apart at its first marker. Zero bytes are dropped first, so that a URI stored with two bytes a character
/// counts too.
LinkUri SplitLinkUri(const ByteVector& uri);

}  // namespace tgx
