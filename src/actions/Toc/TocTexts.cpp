#include "src/actions/Toc/TocTexts.h"

#include <utility>

#include "src/common/TextEncoding.h"
#include "src/logging/SimpleFileLogger.h"

namespace tgx {
namespace {

void StripPairs(std::string& utf16, char second) {
  std::size_t kept = 0;
  for (const char byte : utf16) {
    if (byte == second && kept > 0 && utf16[kept - 1] == '\0') {
      --kept;
    } else {
      utf16[kept++] = byte;
    }
  }
  utf16.resize(kept);
}

std::string Utf16Of(const std::string& utf8) {
  ByteVector bytes;
  Utf8ToUtf16(utf8, bytes);
  std::string utf16(bytes.begin(), bytes.end());
  stripControls(utf16);
  return utf16;
}

std::string Utf8Of(const std::string& utf16) {
  ByteVector utf8;
  Utf16ToUtf8({utf16.begin(), utf16.end()}, utf8);
  return {utf8.begin(), utf8.end()};
}

}  // namespace

void stripControls(std::string& utf16) {
  StripPairs(utf16, '\r');
  StripPairs(utf16, '\t');
}

bool HoldsBytes(std::string_view text, std::string_view part) {
  if (part.size() > text.size()) return false;
  constexpr std::size_t kSmall = 4096;  // above, a text that nearly matches again and again would take too long
  return text.size() <= kSmall ? !text.empty() && text.find(part) != std::string_view::npos : BytesFinder(part).Read(text);
}

TocTexts::TocTexts(const std::vector<TocItem>& items) {
  for (const TocItem& item : items) {
    titles_.push_back(Utf16Of(item.title));
    for (const TocEntry& entry : item.entries) {
      for (const std::string& text : entry.texts) {
        std::string utf16 = Utf16Of(text);
        std::string utf8 = Utf8Of(utf16);
        entryTexts_.push_back({entry.level, std::move(utf16), std::move(utf8)});
      }
    }
  }
}

std::int32_t TocTexts::matchLevel(std::string utf16) const {
  stripControls(utf16);
  const std::string utf8 = Utf8Of(utf16);
  for (const EntryText& text : entryTexts_) {
    SimpleFileLogger::Instance()->Info("%s ? %s", utf8.c_str(), text.utf8.c_str());
    if (HoldsBytes(utf16, text.utf16)) return text.level;
  }
  return -1;
}

std::size_t BytesFinder::Fallback(std::size_t matched) {
  while (fallbacks_.size() <= matched) {
    const char last = wanted_[fallbacks_.size() - 1];
    std::size_t border = fallbacks_.back();
    while (border > 0 && wanted_[border] != last) border = fallbacks_[border];
    fallbacks_.push_back(static_cast<std::uint32_t>(wanted_[border] == last ? border + 1 : 0));
  }
  return fallbacks_[matched];
}

bool BytesFinder::Read(std::string_view piece) {
  if (wanted_.empty()) return !piece.empty();
  for (const char byte : piece) {
    while (matched_ > 0 && wanted_[matched_] != byte) matched_ = Fallback(matched_);
    if (wanted_[matched_] == byte) ++matched_;
    if (matched_ == wanted_.size()) return true;
  }
  return false;
}

}  // namespace tgx
