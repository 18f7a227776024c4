#include "host/pdfedit/model/ContentState.h"

namespace tgx::host {
namespace {

/// Saved states that are kept: nothing that is meant to be seen nests deeper.
constexpr int kDeepestSave = 4096;

/// Whether the operator sets the text position to something that does not depend on where it was.
bool SetsPosition(const ContentReader& op) {
  switch (op.Code()) {
    case Opcode::kBeginText:
    case Opcode::kNextLine:
      return true;
    case Opcode::kMoveText:
    case Opcode::kMoveTextSetLeading:
      return op.HasNumbers(2);
    case Opcode::kTextMatrix:
      return op.HasNumbers(6);
    case Opcode::kNextLineShow:
      return ShowsText(op);
    default:
      return false;
  }
}

/// Whether shows before the operator can be added up as well behind it: it changes nothing that they depend on.
bool LeavesShowsAsTheyAre(Opcode code) {
  switch (code) {
    case Opcode::kShowText:
    case Opcode::kShowTextAdjusted:
    case Opcode::kEndText:
    case Opcode::kBeginContainer:
    case Opcode::kBeginContainerWithProperties:
    case Opcode::kEndContainer:
      return true;
    default:
      return false;
  }
}

}  // namespace

TextMove MoveOfCode(const GraphicsState& state, Font::Code code) {
  if (state.font == nullptr) return {};
  const Font& font = state.font->Metrics();
  const double spacing = state.charSpacing + (Font::IsSpace(code) ? state.wordSpacing : 0);
  const double advance = font.Advance(code) * state.size;
  if (font.IsVertical()) return {0, advance + spacing};
  return {(advance + spacing) * state.scale, 0};
}

TextMove MoveOfAdjustment(const GraphicsState& state, double thousandths) {
  const double move = -thousandths / 1000 * state.size;
  if (state.IsVertical()) return {0, move};
  return {move * state.scale, 0};
}

bool ShowsText(const ContentReader& op) {
  if (!op.Has(1)) return false;
  if (op.Code() == Opcode::kNextLineShowSpaced) {
    const bool hasSpacing =
        op.Has(3) && op.Operand(0, 3).kind == Token::Kind::kNumber && op.Operand(1, 3).kind == Token::Kind::kNumber;
    if (!hasSpacing) return false;
  }
  const Token& shown = op.Operand(0, 1);
  return op.Code() == Opcode::kShowTextAdjusted ? shown.kind == Token::Kind::kArray : shown.IsString();
}

void ContentState::Save() {
  const int depth = saved_ ? saved_->depth + 1 : 1;
  if (depth > kDeepestSave) {
    ++notSaved_;
    return;
  }
  saved_ = std::make_shared<const Saved>(Saved{graphics_, saved_, depth});
}

void ContentState::Restore() {
  if (notSaved_ > 0) {
    --notSaved_;
  } else if (saved_) {
    graphics_ = saved_->graphics;
    saved_ = saved_->below;
  }
}

void ContentState::NextLine(double x, double y) {
  lineMatrix_ = Matrix{1, 0, 0, 1, x, y} * lineMatrix_;
  textMatrix_ = lineMatrix_;
}

void ContentState::Apply(const ContentReader& op, PageResources& resources) {
  switch (op.Code()) {
    case Opcode::kSave:
      return Save();
    case Opcode::kRestore:
      return Restore();
    case Opcode::kConcatMatrix:
      if (op.HasNumbers(6)) {
        const Matrix m = {op.Number(0, 6), op.Number(1, 6), op.Number(2, 6),
                          op.Number(3, 6), op.Number(4, 6), op.Number(5, 6)};
        graphics_.ctm = m * graphics_.ctm;
      }
      return;
    case Opcode::kExtGState:
      if (op.Has(1) && op.Operand(0, 1).kind == Token::Kind::kName) {
        double size = 0;
        if (DocumentFont* font = resources.FontOfExtGState(op.Operand(0, 1).In(op.Content()), size)) {
          graphics_.font = font;
          graphics_.size = size;
        }
      }
      return;
    case Opcode::kBeginText:
      inText_ = true;
      textMatrix_ = lineMatrix_ = {};
      return;
    case Opcode::kEndText:
      inText_ = false;
      return;
    default:
      return ApplyText(op, resources);
  }
}

void ContentState::ApplyText(const ContentReader& op, PageResources& resources) {
  const auto set = [&op](double& value) {
    if (op.HasNumbers(1)) value = op.Number(0, 1);
  };
  switch (op.Code()) {
    case Opcode::kCharSpacing:
      return set(graphics_.charSpacing);
    case Opcode::kWordSpacing:
      return set(graphics_.wordSpacing);
    case Opcode::kTextScale:
      if (op.HasNumbers(1)) graphics_.scale = op.Number(0, 1) / 100;
      return;
    case Opcode::kLeading:
      return set(graphics_.leading);
    case Opcode::kTextRise:
      return set(graphics_.rise);
    case Opcode::kTextRender:
      if (op.HasNumbers(1)) graphics_.mode = static_cast<int>(std::clamp(op.Number(0, 1), 0.0, 7.0));
      return;
    case Opcode::kTextFont:
      if (op.HasNumbers(1) && op.Has(2) && op.Operand(0, 2).kind == Token::Kind::kName) {
        graphics_.font = resources.Font(op.Operand(0, 2).In(op.Content()));
        graphics_.size = op.Number(1, 2);
      }
      return;
    case Opcode::kMoveTextSetLeading:
      if (op.HasNumbers(2)) graphics_.leading = -op.Number(1, 2);
      [[fallthrough]];
    case Opcode::kMoveText:
      if (op.HasNumbers(2)) NextLine(op.Number(0, 2), op.Number(1, 2));
      return;
    case Opcode::kTextMatrix:
      if (op.HasNumbers(6)) {
        lineMatrix_ = {op.Number(0, 6), op.Number(1, 6), op.Number(2, 6), op.Number(3, 6), op.Number(4, 6), op.Number(5, 6)};
        textMatrix_ = lineMatrix_;
      }
      return;
    case Opcode::kNextLineShowSpaced:
      if (!ShowsText(op)) return;
      graphics_.wordSpacing = op.Number(0, 3);
      graphics_.charSpacing = op.Number(1, 3);
      return NextLine(0, -graphics_.leading);
    case Opcode::kNextLineShow:
      if (!ShowsText(op)) return;
      [[fallthrough]];
    case Opcode::kNextLine:
      return NextLine(0, -graphics_.leading);
    default:
      return;
  }
}

TextMove MoveOfShow(const ContentReader& op, const GraphicsState& graphics) {
  TextMove sum;
  if (graphics.font == nullptr) return sum;
  std::string bytes;
  ForEachShown(
      op,
      [&](const Token& string) {
        bytes.clear();
        AppendStringValue(string.In(op.Content()), bytes);
        for (std::string_view rest = bytes; !rest.empty();) {
          const Font::Code code = graphics.font->Metrics().NextCode(rest);
          sum.Add(MoveOfCode(graphics, code));
          rest.remove_prefix(static_cast<std::size_t>(code.length));
        }
      },
      [&](double number, const Token&) { sum.Add(MoveOfAdjustment(graphics, number)); });
  return sum;
}

void PassedShows::Before(const ContentReader& op) {
  if (end_ == 0 || LeavesShowsAsTheyAre(op.Code())) return;
  if (!SetsPosition(op)) return Advance();
  end_ = 0;
}

void PassedShows::After(const ContentReader& op) {
  if (!IsShow(op.Code())) return;
  if (end_ == 0) begin_ = op.Begin();
  end_ = op.End();
}

void PassedShows::Advance() {
  if (end_ == 0) return;
  ContentReader reader(content_, begin_);
  while (reader.NextUpTo(end_)) {
    if (IsShow(reader.Code())) state_.AdvanceOver(reader);
  }
  end_ = 0;
}

void ContentState::AdvanceOver(const ContentReader& op) { Advance(MoveOfShow(op, graphics_)); }

}  // namespace tgx::host
