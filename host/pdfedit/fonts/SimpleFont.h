#pragma once

#include <array>
#include <cstdint>

#include "host/pdfedit/fonts/Font.h"

namespace tgx::host {

/// Type 1, MMType1, TrueType and Type 3: codes of one byte.
class SimpleFont : public Font {
 public:
  SimpleFont(QPDFObjectHandle dictionary, FontParts& parts);

  Code NextCode(std::string_view bytes) const override { return {static_cast<std::uint8_t>(bytes[0]), 1}; }
  double Advance(Code code) const override { return advances_[code.value & 0xFF]; }
  void AppendUnicode(Code code, std::u16string& text) const override {
    const Span& span = spans_[code.value & 0xFF];
    text.append(characters_, span.start, span.length);
  }

 private:
  struct Span {
    std::uint32_t start = 0;
    std::uint32_t length = 0;
  };

  std::array<double, 256> advances_ = {};
  std::array<Span, 256> spans_ = {};
  std::u16string characters_;
};

}  // namespace tgx::host
