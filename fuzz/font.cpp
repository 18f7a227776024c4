// Reads any bytes as a font. What stands in front of the first zero byte is the source of a font dictionary; what follows it
// is the data of each stream that the dictionary has room for: ToUnicode, the CMap, the font program.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include <qpdf/QPDF.hh>

#include "host/pdfedit/fonts/CMap.h"
#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/fonts/ToUnicode.h"

namespace {

using namespace tgx::host;

/// Puts the stream where the dictionary has the name of a stream's place: "/ToUnicode /Stream" and so on.
void PutStreams(QPDFObjectHandle dictionary, QPDFObjectHandle stream, int depth) {
  if (depth > 8) return;
  if (dictionary.isArray()) {
    for (int i = 0; i < dictionary.getArrayNItems(); ++i) PutStreams(dictionary.getArrayItem(i), stream, depth + 1);
  }
  if (!dictionary.isDictionary()) return;
  for (const std::string& key : dictionary.getKeys()) {
    QPDFObjectHandle value = dictionary.getKey(key);
    if (value.isNameAndEquals("/Stream")) {
      dictionary.replaceKey(key, stream);
    } else {
      PutStreams(value, stream, depth + 1);
    }
  }
}

void Use(const Font& font, std::string_view bytes) {
  std::u16string text;
  while (!bytes.empty()) {
    const Font::Code code = font.NextCode(bytes);
    if (code.length < 1 || static_cast<std::size_t>(code.length) > bytes.size()) std::abort();
    bytes.remove_prefix(static_cast<std::size_t>(code.length));
    text.clear();
    font.AppendUnicode(code, text);
    const Font::Vector origin = font.VerticalOrigin(code);
    if (!std::isfinite(font.Advance(code) + font.Width(code) + origin.x + origin.y)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // What inputs rest on, kept so that it is read once.
  static const std::shared_ptr<const CMap> cmaps[] = {CMap::Predefined("90ms-RKSJ-V"), CMap::Predefined("90ms-RKSJ-H")};
  static const auto characters = ToUnicode::OfCollection("Adobe-Japan1");
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\0'), input.size());
  try {
    QPDF file;
    file.setSuppressWarnings(true);
    file.emptyPDF();
    QPDFObjectHandle dictionary = QPDFObjectHandle::parse(&file, std::string(input.substr(0, end)));
    PutStreams(dictionary, file.newStream(std::string(input.substr(std::min(end + 1, size)))), 0);
    const auto font = Font::Read(dictionary);
    if (!(font->Ascent() > font->Descent())) std::abort();
    Use(*font, input);
  } catch (const std::exception&) {  // the source is no object
  }
  return 0;
}
