#pragma once

#include <string_view>

namespace tgx {

/// Whether a tag in the text has more attributes (over 100) than any exporter writes. The parser compares each attribute of
/// an element with those before it, so that a single tag of a megabyte would keep it for minutes.
bool HasCrowdedTag(std::string_view xml);

}  // namespace tgx
