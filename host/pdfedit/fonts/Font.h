#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class FontParts;

/// What page content needs to know of a font: how a string falls into character codes, how far each one moves the text
/// position, and which characters it stands for. Lengths are in text space at font size 1, without character spacing, word
/// spacing and horizontal scaling. A font is read once and does not change; all its questions are cheap.
class Font {
 public:
  /// A character code: the big-endian number of its 1 to 4 bytes. Codes of different lengths are different codes.
  struct Code {
    std::uint32_t value = 0;
    int length = 1;
  };
  struct Vector {
    double x = 0;
    double y = 0;
  };

  /// Reads a font dictionary. Never throws for a damaged one: what is missing or wrong is replaced by what viewers assume.
  /// What it refers to is read once for all fonts that are given the same `parts`.
  static std::unique_ptr<Font> Read(QPDFObjectHandle dictionary, FontParts& parts);
  static std::unique_ptr<Font> Read(const QPDFObjectHandle& dictionary);

  Font() = default;
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;
  virtual ~Font() = default;

  /// The code at the start of `bytes`, which must not be empty. Never longer than `bytes`.
  virtual Code NextCode(std::string_view bytes) const = 0;

  /// How far showing the code moves the text position: to the right, in a vertical font along the vertical axis (downward
  /// is negative).
  virtual double Advance(Code code) const = 0;

  /// In a vertical font, from the horizontal origin of the glyph to its vertical one, which is what stands at the text
  /// position. Zero in a horizontal font.
  virtual Vector VerticalOrigin(Code) const { return {}; }

  /// The glyph's horizontal width; in a horizontal font the same as the advance.
  virtual double Width(Code code) const { return Advance(code); }

  /// Appends the code's characters; nothing when none are known.
  virtual void AppendUnicode(Code code, std::u16string& text) const = 0;

  virtual bool IsVertical() const { return false; }

  /// How far glyphs reach above the baseline, and below it (negative). Always a usable extent: Ascent() > Descent().
  double Ascent() const { return ascent_; }
  double Descent() const { return descent_; }

  /// Whether word spacing applies.
  static bool IsSpace(Code code) { return code.length == 1 && code.value == ' '; }

  /// Whether the font has a ToUnicode stream, whatever that is worth.
  bool HasToUnicode() const { return hasToUnicode_; }

 protected:
  double ascent_ = 0.95;
  double descent_ = -0.35;
  bool hasToUnicode_ = false;
};

}  // namespace tgx::host
