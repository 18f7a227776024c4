#include "host/pdfedit/fonts/CodeSpaces.h"

#include <algorithm>

namespace tgx::host {
namespace {

// No CMap in use has more than a dozen; this bounds the work for each code.
constexpr std::size_t kMostRanges = 100;

std::array<std::uint8_t, 4> BytesOf(CMapCode code) {
  std::array<std::uint8_t, 4> bytes = {};
  for (int i = 0; i < code.length; ++i) {
    bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(code.value >> 8 * (code.length - 1 - i));
  }
  return bytes;
}

}  // namespace

void CodeSpaces::Add(CMapCode first, CMapCode last) {
  if (first.length < 1 || first.length > 4 || first.length != last.length) return;
  Add(Range{first.length, BytesOf(first), BytesOf(last)});
}

void CodeSpaces::Add(const Range& range) {
  if (ranges_.size() >= kMostRanges) return;
  if (std::find(ranges_.begin(), ranges_.end(), range) == ranges_.end()) ranges_.push_back(range);
}

void CodeSpaces::AddAll(const CodeSpaces& other) {
  for (const Range& range : other.ranges_) Add(range);
}

void CodeSpaces::Seal() {
  for (std::size_t byte = 0; byte < lengthByFirst_.size(); ++byte) {
    int longest = 1;
    for (const Range& range : ranges_) {
      if (range.low[0] <= byte && byte <= range.high[0]) longest = std::max(longest, range.length);
    }
    lengthByFirst_[byte] = static_cast<std::uint8_t>(longest <= 2 ? longest : 0);
  }
}

int CodeSpaces::LengthAt(std::string_view bytes) const {
  int length = 1;
  for (const Range& range : ranges_) {
    // How many bytes of this range's codes are there, up to the one that tells that it is none.
    int reach = 1;
    for (std::size_t i = 0; reach < range.length && i < bytes.size(); ++i) {
      const auto byte = static_cast<std::uint8_t>(bytes[i]);
      if (byte < range.low[i] || byte > range.high[i]) break;
      reach = static_cast<int>(i) + 2;
    }
    length = std::max(length, std::min(reach, range.length));
  }
  return length;
}

Font::Code CodeSpaces::Next(std::string_view bytes) const {
  std::size_t length = lengthByFirst_[static_cast<std::uint8_t>(bytes[0])];
  if (length == 0) length = static_cast<std::size_t>(LengthAt(bytes));
  length = std::min(length, bytes.size());
  Font::Code code{0, static_cast<int>(length)};
  for (std::size_t i = 0; i < length; ++i) code.value = code.value << 8 | static_cast<std::uint8_t>(bytes[i]);
  return code;
}

}  // namespace tgx::host
