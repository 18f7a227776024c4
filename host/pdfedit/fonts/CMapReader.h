#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tgx::host {

/// The bytes of a hexadecimal string in a CMap, as far as they are used.
struct CMapCode {
  std::uint32_t value = 0;
  int length = 0;  ///< in bytes, 0 for what is no code
};

/// What a CMap says, in the order it says it. Ranges have both ends included and are never empty.
class CMapEvents {
 public:
  virtual ~CMapEvents() = default;
  virtual void OnCodeSpace(CMapCode, CMapCode) {}
  virtual void OnCids(CMapCode, CMapCode, std::uint32_t /*cid*/) {}
  virtual void OnNotDefs(CMapCode, CMapCode, std::uint32_t /*cid*/) {}
  /// The last unit of the text, and nothing else, goes up along the range.
  virtual void OnUnicode(CMapCode, CMapCode, std::u16string_view) {}
  /// Codes that stand for a glyph of this name (without its slash).
  virtual void OnGlyphName(CMapCode, std::string_view) {}
  virtual void OnUseCMap(std::string_view /*name*/) {}
  virtual void OnWMode(int) {}
};

/// Reads a CMap or a ToUnicode map. Entries that make no sense are left out, everything else is read: the reader knows no
/// failure.
void ReadCMap(std::string_view text, CMapEvents& events);

}  // namespace tgx::host
