#include "bench/SubsetFont.h"

#include <cstdio>
#include <regex>
#include <stdexcept>
#include <string_view>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include "bench/Utf.h"

namespace tgx::bench {
namespace {

using Codes = std::map<char32_t, std::string>;

std::string Hex4(unsigned long code) {
  char text[8];
  std::snprintf(text, sizeof text, "%04lX", code);
  return text;
}

unsigned long FromHex(const std::string& digits) { return std::stoul(digits, nullptr, 16); }

/// Calls `use` with the groups of each match of `pattern` within the sections of a CMap that `begin` and `end` enclose.
template <typename Use>
void ForEachLine(const std::string& cmap, const std::string& begin, const std::string& end, const std::regex& pattern,
                 Use&& use) {
  for (std::size_t at = cmap.find(begin); at != std::string::npos; at = cmap.find(begin, at)) {
    at += begin.size();
    const std::string section = cmap.substr(at, cmap.find(end, at) - at);
    for (std::sregex_iterator match(section.begin(), section.end(), pattern), none; match != none; ++match) use(*match);
  }
}

/// The characters of a ToUnicode map with their codes. Characters beyond the first plane are left out.
Codes ReadToUnicode(const std::string& cmap) {
  static const std::regex kPair("<([0-9A-Fa-f]+)>\\s*<([0-9A-Fa-f]{4})>");
  static const std::regex kRange("<([0-9A-Fa-f]+)>\\s*<([0-9A-Fa-f]+)>\\s*<([0-9A-Fa-f]{4})>");
  Codes codes;
  ForEachLine(cmap, "beginbfchar", "endbfchar", kPair, [&](const std::smatch& match) {
    codes.emplace(static_cast<char32_t>(FromHex(match[2])), Hex4(FromHex(match[1])));
  });
  ForEachLine(cmap, "beginbfrange", "endbfrange", kRange, [&](const std::smatch& match) {
    const unsigned long low = FromHex(match[1]);
    for (unsigned long code = low; code <= FromHex(match[2]); ++code) {
      codes.emplace(static_cast<char32_t>(FromHex(match[3]) + code - low), Hex4(code));
    }
  });
  return codes;
}

}  // namespace

SubsetFont::SubsetFont(const std::string& documentPath) {
  source_.processFile(documentPath.c_str());
  for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(source_).getAllPages()) {
    for (auto& [name, font] : page.getAttribute("/Resources", false).getKey("/Font").getDictAsMap()) {
      QPDFObjectHandle map = font.getKey("/ToUnicode");
      if (!font.getKey("/Subtype").isNameAndEquals("/Type0") || !map.isStream()) continue;
      const auto data = map.getStreamData();
      Codes codes = ReadToUnicode({reinterpret_cast<const char*>(data->getBuffer()), data->getSize()});
      if (codes.size() <= codes_.size()) continue;
      codes_ = std::move(codes);
      font_ = font;
    }
  }
  if (codes_.empty()) throw std::runtime_error(documentPath + ": has no two-byte font with a ToUnicode map");
}

std::string SubsetFont::Show(const std::string& utf8) const {
  std::string hex = "<";
  for (const char32_t character : CharactersOf(utf8)) {
    const auto code = codes_.find(character);
    if (code == codes_.end()) throw std::runtime_error("the font has no glyph for a character of \"" + utf8 + "\"");
    hex += code->second;
  }
  return hex + ">";
}

}  // namespace tgx::bench
