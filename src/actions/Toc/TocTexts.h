#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "src/actions/Toc/TocMetaData.h"

namespace tgx {

/// Takes every pair of bytes 00 0D and then every pair 00 09 out of UTF-16BE text, wherever in a unit it starts, until none
/// is left.
void stripControls(std::string& utf16);

/// Whether the bytes of `part` stand in `text`. Nothing stands in an empty text, not even the empty part.
bool HoldsBytes(std::string_view text, std::string_view part);

/// The texts of the metadata in the form in which they are looked for in the document's: UTF-16BE bytes without tabs and
/// carriage returns.
class TocTexts {
 public:
  explicit TocTexts(const std::vector<TocItem>& items);

  /// The level of the first entry that has a text which stands in these bytes of the document's; -1 when none has. The first
  /// one counts, not the longest. Every comparison goes to the log.
  std::int32_t matchLevel(std::string utf16) const;

  const std::vector<std::string>& Titles() const { return titles_; }

 private:
  struct EntryText {
    std::int32_t level;
    std::string utf16;
    std::string utf8;
  };

  std::vector<EntryText> entryTexts_;
  std::vector<std::string> titles_;
};

/// Finds the place in a text, which comes in pieces, at which a row of bytes is first complete, in time and memory of no
/// more than what was read.
class BytesFinder {
 public:
  explicit BytesFinder(std::string_view wanted) : wanted_(wanted) {}

  /// Reads on, up to where the bytes are complete. Not complete before the first byte was read, even if none are wanted.
  bool Read(std::string_view piece);

 private:
  std::size_t Fallback(std::size_t matched);

  std::string_view wanted_;
  std::size_t matched_ = 0;
  std::vector<std::uint32_t> fallbacks_ = {0, 0};  // by matched bytes: how many are still matched if the next one is not
};

/// The piece of a text at which the first of some titles is complete; -1 when none is. `readPiece(n)` gives the text of
/// piece n and is called at most once for each. The text that was read is never forgotten: a title is looked for in all that
/// was read for the titles before it, and then in the pieces, which are read once more for it.
template <typename ReadPiece>
std::ptrdiff_t FindTitlePiece(const std::vector<std::string>& titles, std::size_t pieceCount, ReadPiece readPiece) {
  std::vector<std::string> pieces;
  std::size_t size = 0;
  for (std::size_t title = 0; title < titles.size(); ++title) {
    BytesFinder finder(titles[title]);
    // Of the times that the text was read, more than the title can reach over show nothing new.
    const std::size_t before = size == 0 ? 0 : std::min(title, titles[title].size() / size + 2);
    bool found = false;
    for (std::size_t read = 0; read < before * pieces.size() && !found; ++read) {
      found = finder.Read(pieces[read % pieces.size()]);
    }
    if (found) return 0;
    for (std::size_t piece = 0; piece < pieceCount; ++piece) {
      if (title == 0) size += pieces.emplace_back(readPiece(piece)).size();
      if (finder.Read(pieces[piece])) return static_cast<std::ptrdiff_t>(piece);
    }
  }
  return -1;
}

}  // namespace tgx
