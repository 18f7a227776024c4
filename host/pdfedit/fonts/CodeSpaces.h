#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/pdfedit/fonts/CMapReader.h"
#include "host/pdfedit/fonts/Font.h"

namespace tgx::host {

/// How a string falls into codes. A range is a box: each byte of a code lies between those of its two ends. As long as the
/// bytes read may begin a longer code of some range the next one belongs to the code; a byte that begins nothing is a code
/// of its own.
class CodeSpaces {
 public:
  void Add(CMapCode first, CMapCode last);
  void AddAll(const CodeSpaces& other);
  bool IsEmpty() const { return ranges_.empty(); }

  /// Makes ready for `Next`; nothing may be added afterwards.
  void Seal();

  /// The code at the start of `bytes`, which must not be empty.
  Font::Code Next(std::string_view bytes) const;

 private:
  struct Range {
    int length;
    std::array<std::uint8_t, 4> low;
    std::array<std::uint8_t, 4> high;
    bool operator==(const Range&) const = default;
  };
  void Add(const Range& range);
  int LengthAt(std::string_view bytes) const;

  std::vector<Range> ranges_;
  std::array<std::uint8_t, 256> lengthByFirst_ = {};  // 0 where more than the first byte decides
};

}  // namespace tgx::host
