#include "src/actions/ExtractMathML/FormulaMarker.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

#include "src/common/SplitString.h"

namespace tgx {
namespace {

/// U+0CF1 U+2318 U+2328 in UTF-16BE.
constexpr std::array<std::uint8_t, 6> kHolderSentinel = {0x0C, 0xF1, 0x23, 0x18, 0x23, 0x28};

/// The number that the leading digits give, 0 without one; a number too large counts as the largest.
int LeadingNumber(const std::string& text) {
  constexpr auto kLargest = static_cast<std::uint32_t>(std::numeric_limits<int>::max());
  std::uint32_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return static_cast<int>(read.ec == std::errc::result_out_of_range ? kLargest : std::min(number, kLargest));
}

}  // namespace

std::optional<FormulaMarker> ParseFormulaMarker(ByteVector alt) {
  StripBom(alt);
  const std::string all = StripZeroBytes(alt);
  const auto colon = all.find(':');
  std::vector<std::string> tokens;
  SplitString(all.substr(0, colon), '_', tokens);
  if (tokens.size() < 3 || tokens[0] != "MATHML") return std::nullopt;
  FormulaMarker marker{LeadingNumber(tokens[1]), FormulaMarker::Kind::Start, {}, {}};
  if (marker.id <= 0) return std::nullopt;
  if (colon != std::string::npos) marker.text = all.substr(colon + 1);
  if (tokens[2] == "START") return marker;
  if (tokens[2] == "END") {
    marker.kind = FormulaMarker::Kind::End;
    return marker;
  }
  if (tokens[2] != "CONTENT" || tokens.size() < 4) return std::nullopt;
  marker.kind = FormulaMarker::Kind::Content;
  marker.name = tokens[3];
  return marker;
}

bool IsFormulaHolderTitle(ByteVector title) {
  StripBom(title);
  return title.size() >= kHolderSentinel.size() && std::equal(kHolderSentinel.begin(), kHolderSentinel.end(), title.begin());
}

}  // namespace tgx
