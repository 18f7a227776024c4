#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/pdfedit/model/Geometry.h"
#include "host/pdfedit/model/PageResources.h"
#include "host/pdfedit/reading/ContentReader.h"

namespace tgx::host {

/// The part of the graphics state that says where things are painted, with the text state.
struct GraphicsState {
  Matrix ctm;
  DocumentFont* font = nullptr;
  double size = 0;
  double charSpacing = 0;
  double wordSpacing = 0;
  double scale = 1;  ///< horizontal scaling; Tz 100 is 1
  double leading = 0;
  double rise = 0;
  int mode = 0;

  bool ClipsText() const { return mode >= 4; }
  bool IsVertical() const { return font != nullptr && font->Metrics().IsVertical(); }
  /// From text space at size 1 to the space of the text matrix.
  Matrix GlyphMatrix() const { return {size * scale, 0, 0, size, 0, rise}; }
};

/// A movement of the text position, in the space of the text matrix.
struct TextMove {
  double x = 0;
  double y = 0;
  bool IsZero() const { return x == 0 && y == 0; }
  void Add(const TextMove& other) {
    x += other.x;
    y += other.y;
  }
};

/// What showing one code, or a number in a TJ array, moves.
TextMove MoveOfCode(const GraphicsState& state, Font::Code code);
TextMove MoveOfAdjustment(const GraphicsState& state, double thousandths);

/// Follows the state through the operators of a page. Cheap to copy, whatever the depth of saved states.
class ContentState {
 public:
  const GraphicsState& Graphics() const { return graphics_; }
  const Matrix& TextPosition() const { return textMatrix_; }
  const Matrix& TextLine() const { return lineMatrix_; }
  bool IsInText() const { return inText_; }

  /// The matrix of a glyph at the text position, from text space at size 1 to user space.
  Matrix GlyphToUser() const { return graphics_.GlyphMatrix() * textMatrix_ * graphics_.ctm; }

  /// Applies the operator that was just read, but for the shows: those are AdvanceOver's, called by who needs the position.
  /// Of ' and " it applies what they do before they show.
  void Apply(const ContentReader& op, PageResources& resources);

  /// Moves the text position over what a show operator shows.
  void AdvanceOver(const ContentReader& op);
  void Advance(const TextMove& move) { textMatrix_ = Matrix{1, 0, 0, 1, move.x, move.y} * textMatrix_; }

 private:
  struct Saved {
    GraphicsState graphics;
    std::shared_ptr<const Saved> below;
    int depth;
  };

  void ApplyText(const ContentReader& op, PageResources& resources);
  void NextLine(double x, double y);
  void Save();
  void Restore();

  GraphicsState graphics_;
  std::shared_ptr<const Saved> saved_;
  int notSaved_ = 0;  ///< saves beyond the depth that is kept
  Matrix textMatrix_;
  Matrix lineMatrix_;
  bool inText_ = false;
};

/// The shows that a pass over a page has met since the text position was last set. Where they lead is found out only when
/// somebody needs it, since mostly the position is set anew, and adding up what a show moves is what a pass spends most on.
class PassedShows {
 public:
  PassedShows(std::string_view content, ContentState& state) : content_(content), state_(state) {}

  /// Called around ContentState::Apply for each operator of the pass.
  void Before(const ContentReader& op);
  void After(const ContentReader& op);

  /// Moves the text position over them.
  void Advance();

 private:
  std::string_view content_;
  ContentState& state_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;  ///< of the last show; 0 without any
};

/// Calls `string(token)` and `adjustment(number, token)` for what a show operator shows, in order. False for a show whose
/// operand is of the wrong type, which shows nothing.
template <typename String, typename Adjustment>
bool ForEachShown(const ContentReader& op, String&& string, Adjustment&& adjustment) {
  if (!op.Has(1)) return false;
  const Token& shown = op.Operand(0, 1);
  if (op.Code() != Opcode::kShowTextAdjusted) {
    if (!shown.IsString()) return false;
    string(shown);
    return true;
  }
  if (shown.kind != Token::Kind::kArray) return false;
  ForEachItem(op.Content(), shown, [&](const Token& item) {
    if (item.IsString()) string(item);
    if (item.kind == Token::Kind::kNumber) adjustment(NumberValue(item.In(op.Content())), item);
  });
  return true;
}

bool ShowsText(const ContentReader& op);

/// What a show operator moves in all; the state is the one in force while it shows.
TextMove MoveOfShow(const ContentReader& op, const GraphicsState& graphics);

}  // namespace tgx::host
