#pragma once

#include <string_view>

namespace tgx {

/// Whether a text is more than any exporter writes and more than the parser can be given: over 64 MiB, over a million tags
/// and attributes, or a tag with over 100 attributes. The parser makes some 100 bytes of each, even where the text spends
/// four on it, and compares each attribute of a tag with those before it, so that a tag of a megabyte would keep it for
/// minutes.
bool IsTooMuchXml(std::string_view xml);

}  // namespace tgx
