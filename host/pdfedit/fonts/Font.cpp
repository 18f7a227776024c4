#include "host/pdfedit/fonts/Font.h"

#include <array>

namespace tgx::host {
namespace {

/// Codes, widths and nothing else yet: one byte a code, two in a composite font.
class PlainFont : public Font {
 public:
  PlainFont(QPDFObjectHandle dictionary, bool isComposite) : isComposite_(isComposite) {
    hasToUnicode_ = dictionary.isDictionary() && dictionary.getKey("/ToUnicode").isStream();
    if (!isComposite && dictionary.isDictionary()) ReadWidths(dictionary);
  }

  Code NextCode(std::string_view bytes) const override {
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (!isComposite_ || bytes.size() == 1) return {first, 1};
    return {static_cast<std::uint32_t>(first << 8 | static_cast<unsigned char>(bytes[1])), 2};
  }
  double Advance(Code code) const override { return isComposite_ ? 1.0 : widths_[code.value & 0xFF]; }
  void AppendUnicode(Code code, std::u16string& text) const override { text.push_back(static_cast<char16_t>(code.value)); }

 private:
  void ReadWidths(QPDFObjectHandle dictionary) {
    QPDFObjectHandle widths = dictionary.getKey("/Widths");
    QPDFObjectHandle first = dictionary.getKey("/FirstChar");
    if (!widths.isArray() || !first.isInteger()) return;
    const long long start = first.getIntValue();
    for (int i = 0; i < widths.getArrayNItems() && start + i < 256; ++i) {
      QPDFObjectHandle width = widths.getArrayItem(i);
      if (start + i >= 0 && width.isNumber()) widths_[static_cast<std::size_t>(start + i)] = width.getNumericValue() / 1000;
    }
  }

  bool isComposite_;
  std::array<double, 256> widths_ = {};
};

}  // namespace

std::unique_ptr<Font> Font::Read(QPDFObjectHandle dictionary) {
  const bool isComposite = dictionary.isDictionary() && dictionary.getKey("/Subtype").isNameAndEquals("/Type0");
  return std::make_unique<PlainFont>(dictionary, isComposite);
}

}  // namespace tgx::host
