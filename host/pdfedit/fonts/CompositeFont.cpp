#include "host/pdfedit/fonts/CompositeFont.h"

#include "host/pdfedit/fonts/FontDescriptor.h"
#include "host/pdfedit/fonts/FontParts.h"
#include "host/pdfedit/fonts/GlyphNames.h"
#include "host/pdfedit/fonts/PredefinedCMaps.h"

namespace tgx::host {
namespace {

/// The CIDFont; an empty dictionary if there is none.
QPDFObjectHandle DescendantOf(QPDFObjectHandle font) {
  QPDFObjectHandle fonts = font.getKey("/DescendantFonts");
  QPDFObjectHandle descendant = fonts.isArray() && fonts.getArrayNItems() > 0 ? fonts.getArrayItem(0) : fonts;
  return descendant.isDictionary() ? descendant : QPDFObjectHandle::newDictionary();
}

/// "Adobe-Japan1" and so on, as the CIDFont says; "-" if it does not.
std::string CollectionOf(QPDFObjectHandle descendant) {
  QPDFObjectHandle info = descendant.getKey("/CIDSystemInfo");
  std::string collection;
  for (const char* key : {"/Registry", "/Ordering"}) {
    QPDFObjectHandle part = info.isDictionary() ? info.getKey(key) : QPDFObjectHandle::newNull();
    if (!collection.empty()) collection += '-';
    if (part.isString()) collection += part.getStringValue();
  }
  return collection;
}

}  // namespace

CompositeFont::CompositeFont(const QPDFObjectHandle& dictionary, FontParts& parts)
    : CompositeFont(dictionary, DescendantOf(dictionary), parts) {}

CompositeFont::CompositeFont(QPDFObjectHandle dictionary, QPDFObjectHandle descendant, FontParts& parts)
    : cmap_(parts.CMapOf(dictionary.getKey("/Encoding"))), metrics_(parts.MetricsOf(descendant, cmap_->IsVertical())) {
  const FontExtent extent = ReadFontExtent(descendant.getKey("/FontDescriptor"), std::nullopt);
  ascent_ = extent.ascent;
  descent_ = extent.descent;

  QPDFObjectHandle toUnicode = dictionary.getKey("/ToUnicode");
  hasToUnicode_ = toUnicode.isStream();
  if (hasToUnicode_) toUnicode_ = parts.CharactersOf(toUnicode);

  collection_ = cmap_->Collection().empty() ? CollectionOf(descendant) : std::string(cmap_->Collection());
  const bool isIdentityMap = toUnicode.isName() && toUnicode.getName().starts_with("/Identity");
  codesAreCharacters_ = isIdentityMap || collection_ == "Adobe-UCS";
}

double CompositeFont::Advance(Code code) const {
  const std::uint32_t cid = cmap_->CidOf(code);
  return cmap_->IsVertical() ? metrics_->VerticalAdvance(cid) : metrics_->Width(cid);
}

Font::Vector CompositeFont::VerticalOrigin(Code code) const {
  return cmap_->IsVertical() ? metrics_->VerticalOrigin(cmap_->CidOf(code)) : Vector{};
}

void CompositeFont::AppendUnicode(Code code, std::u16string& text) const {
  if (toUnicode_ != nullptr && toUnicode_->Append(code.value, text)) return;
  if (cmap_->HasUnicodeCodes()) return AppendCodePoint(cmap_->CharacterOf(code), text);
  if (codesAreCharacters_) {
    if (code.value != 0) AppendCodePoint(code.value, text);
    return;
  }
  std::call_once(cidsRead_, [this] { cidCharacters_ = ToUnicode::OfCollection(collection_); });
  const std::uint32_t cid = cmap_->CidOf(code);
  if (cid != 0) cidCharacters_->Append(cid, text);
}

}  // namespace tgx::host
