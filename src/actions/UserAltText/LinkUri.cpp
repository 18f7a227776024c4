#include "src/actions/UserAltText/LinkUri.h"

#include <string_view>

namespace tgx {
namespace {

constexpr std::string_view kMarker = "?id_useralttext=";

}  // namespace

LinkUri SplitLinkUri(const ByteVector& uri) {
  const std::string bytes = StripZeroBytes(uri);
  const auto marker = bytes.find(kMarker);
  if (marker == std::string::npos) return {bytes, std::nullopt};
  ByteVector text;
  Base64Decode(bytes.substr(marker + kMarker.size()), text);
  return {bytes.substr(0, marker), std::move(text)};
}

}  // namespace tgx
