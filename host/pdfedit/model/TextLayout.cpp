#include "host/pdfedit/model/TextLayout.h"

namespace tgx::host {

Matrix TextLayout::MatrixOf(const Char& c) const {
  const Run& run = runs_[c.run];
  return run.glyph * Matrix{1, 0, 0, 1, c.move.x, c.move.y} * run.textToUser;
}

Font::Code TextLayout::CodeOf(const Char& c) const {
  Font::Code code{0, c.bytes};
  for (const char byte : Bytes(c)) code.value = (code.value << 8U) | static_cast<unsigned char>(byte);
  return code;
}

void TextLayout::AddString(std::string_view bytes, const GraphicsState& graphics, const Matrix& textToUser, TextMove& end) {
  const auto run = static_cast<std::uint32_t>(runs_.size());
  const auto firstByte = static_cast<std::uint32_t>(bytes_.size());
  const auto firstChar = static_cast<std::uint32_t>(chars_.size());
  bytes_ += bytes;
  for (std::string_view rest = bytes; !rest.empty();) {
    const Font::Code code = graphics.font != nullptr ? graphics.font->Metrics().NextCode(rest)
                                                     : Font::Code{static_cast<unsigned char>(rest.front()), 1};
    const auto at = static_cast<std::uint32_t>(bytes_.size() - rest.size());
    chars_.push_back({at, run, static_cast<std::uint8_t>(code.length), end});
    end.Add(MoveOfCode(graphics, code));
    rest.remove_prefix(static_cast<std::size_t>(code.length));
  }
  runs_.push_back({firstChar, static_cast<std::uint32_t>(chars_.size()) - firstChar, firstByte,
                   static_cast<std::uint32_t>(bytes.size()), graphics.font, graphics.GlyphMatrix(), textToUser});
}

void TextLayout::AddShow(const ContentReader& op, ContentState& state) {
  std::string bytes;
  ForEachShown(
      op,
      [&](const Token& string) {
        bytes.clear();
        AppendStringValue(string.In(op.Content()), bytes);
        TextMove end;
        AddString(bytes, state.Graphics(), state.TextPosition() * state.Graphics().ctm, end);
        state.Advance(end);
      },
      [&](double number, const Token&) { state.Advance(MoveOfAdjustment(state.Graphics(), number)); });
}

void TextLayout::AddRun(const AddedRun& run) {
  GraphicsState graphics = run.text;
  graphics.font = run.font;
  TextMove end;
  AddString(run.bytes, graphics, run.matrix, end);
}

void TextLayout::AddEdited(const TextLayout& from, std::uint32_t run, const EditedRun& edit) {
  Run copy = from.runs_[run];
  const std::uint32_t first = copy.firstChar;
  const std::uint32_t last = copy.firstChar + copy.chars;
  copy.firstChar = static_cast<std::uint32_t>(chars_.size());
  copy.firstByte = static_cast<std::uint32_t>(bytes_.size());
  for (std::uint32_t i = first; i < last; ++i) {
    if (edit.Removes(static_cast<int>(i - first))) continue;
    Char c = from.chars_[i];
    bytes_ += from.Bytes(c);
    c.firstByte = static_cast<std::uint32_t>(bytes_.size()) - c.bytes;
    c.run = static_cast<std::uint32_t>(runs_.size());
    chars_.push_back(c);
  }
  copy.chars = static_cast<std::uint32_t>(chars_.size()) - copy.firstChar;
  copy.bytes = static_cast<std::uint32_t>(bytes_.size()) - copy.firstByte;
  runs_.push_back(copy);
}

Box TextLayout::Bounds() const {
  constexpr double kHalfEm = 0.5;
  Box box;
  for (const Run& run : runs_) {
    if (run.chars == 0 || run.font == nullptr) continue;
    const Font& font = run.font->Metrics();
    const Char& last = chars_[run.firstChar + run.chars - 1];
    const Matrix first = MatrixOf(chars_[run.firstChar]);
    const double advance = font.Advance(CodeOf(last));
    if (font.IsVertical()) {
      box.Add(first, -kHalfEm, 0, kHalfEm, 0);
      box.Add(MatrixOf(last), -kHalfEm, 0, kHalfEm, advance);
    } else {
      box.Add(first, 0, font.Descent(), 0, font.Ascent());
      box.Add(MatrixOf(last), 0, font.Descent(), advance, font.Ascent());
    }
  }
  return box;
}

TextLayout LayoutOf(const TextLayout& original, const std::vector<EditedRun>& runs) {
  TextLayout layout;
  for (const EditedRun& run : runs) {
    if (run.added == nullptr) {
      layout.AddEdited(original, static_cast<std::uint32_t>(run.original), run);
    } else {
      TextLayout whole;
      whole.AddRun(*run.added);
      layout.AddEdited(whole, 0, run);
    }
  }
  return layout;
}

}  // namespace tgx::host
