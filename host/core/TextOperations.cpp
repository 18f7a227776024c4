#include <cstring>

#include "host/core/HostError.h"
#include "host/core/Memory.h"
#include "host/core/Operations.h"
#include "host/core/TextObject.h"
#include "host/core/Utf.h"

namespace tgx::host {
namespace {

static_assert(sizeof(ASUTF16Val) == sizeof(char16_t) && alignof(ASUTF16Val) == alignof(char16_t));

std::string_view BytesOf(std::u16string_view units) {
  return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)};
}

/// Units out of bytes of any alignment.
std::u16string UnitsFromHostOrder(std::string_view bytes) {
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), bytes.size());
  return units;
}

std::u16string Decode(std::string_view bytes, ASInt32 format) {
  if (format == kUTF8) return Utf8ToUtf16(bytes);
  if (format != kUTF16BigEndian && format != kUTF16HostEndian) {
    throw HostError(kASBadParameter, "no text format has the number " + std::to_string(format));
  }
  if (bytes.size() % 2 != 0) throw HostError(kASBadParameter, "UTF-16 text of an odd number of bytes");
  return format == kUTF16BigEndian ? Utf16FromBigEndian(bytes) : UnitsFromHostOrder(bytes);
}

/// A PDF text string says in its first bytes how it is encoded. A UTF-16 string ends at a zero unit, the others at a zero
/// byte.
std::u16string DecodePdfText(const char* text) {
  if (std::strncmp(text, "\xFE\xFF", 2) == 0) {
    const char* const start = text + 2;
    const char* end = start;
    while (end[0] != 0 || end[1] != 0) end += 2;
    return Utf16FromBigEndian({start, static_cast<std::size_t>(end - start)});
  }
  if (std::strncmp(text, "\xEF\xBB\xBF", 3) == 0) return Utf8ToUtf16(text + 3);
  return PdfDocToUtf16(text);
}

}  // namespace

namespace operations {

ASText ASTextNew(void) { return NewText({}); }

ASText ASTextFromSizedUnicode(const ASUTF16Val* data, ASInt32 format, ASTArraySize bytes) {
  if (bytes < 0 || (data == nullptr && bytes > 0)) throw HostError(kASBadParameter, "text without data");
  const std::string_view view(reinterpret_cast<const char*>(data), static_cast<std::size_t>(bytes));
  return NewText(Decode(data == nullptr ? std::string_view() : view, format));
}

void ASTextSetPDText(ASText text, const char* pdText) {
  TextObject& object = TextOf(text);
  if (pdText == nullptr) throw HostError(kASBadParameter, "null where a PDF text string is needed");
  object.units = DecodePdfText(pdText);
}

const ASUTF16Val* ASTextGetUnicode(ASText text) { return reinterpret_cast<const ASUTF16Val*>(TextOf(text).units.c_str()); }

ASUTF16Val* ASTextGetUnicodeCopy(ASText text, ASInt32 format) {
  const std::u16string& units = TextOf(text).units;
  switch (format) {
    case kUTF16BigEndian:
      return static_cast<ASUTF16Val*>(GiveOut(Utf16ToBigEndian(units), 2));
    case kUTF16HostEndian:
      return static_cast<ASUTF16Val*>(GiveOut(BytesOf(units), 2));
    case kUTF8:
      return static_cast<ASUTF16Val*>(GiveOut(Utf16ToUtf8(units), 1));
    default:
      throw HostError(kASBadParameter, "no text format has the number " + std::to_string(format));
  }
}

void ASTextDestroy(ASText text) { DestroyText(text); }

}  // namespace operations
}  // namespace tgx::host
