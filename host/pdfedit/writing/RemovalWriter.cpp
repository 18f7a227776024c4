// The part of ContentWriter that deals with removed and edited stretches of content.

#include <algorithm>

#include "host/pdfedit/writing/ContentWriter.h"
#include "host/pdfedit/writing/Syntax.h"

namespace tgx::host {

namespace {

constexpr int kClipOnly = 7;  // the rendering mode that paints nothing and only clips

}  // namespace

void ContentWriter::VisitGone(const ContentReader& op) {
  const Opcode code = op.Code();
  if (IsPathConstruction(code) || IsClip(code) || IsPathPainting(code) || code == Opcode::kEndPath) return VisitGonePath(op);
  pathHasOthers_ = true;
  if (IsShow(code)) {
    if (ShowsText(op)) return RemoveShow(op);
    return Keep(op);
  }
  if (op.Begin() < emptyTextEnd_) return VisitGoneText(op);
  switch (code) {
    case Opcode::kBeginContainer:
    case Opcode::kBeginContainerWithProperties:
    case Opcode::kEndContainer:
    case Opcode::kPlace:
    case Opcode::kPlaceWithProperties:
    case Opcode::kXObject:
    case Opcode::kInlineImage:
    case Opcode::kShading:
      return Drop(op);
    case Opcode::kBeginText:
      return BeginGoneText(op);
    case Opcode::kSave:
      return SaveInGone(op);
    case Opcode::kRestore:
      return RestoreInGone(op);
    default:
      return Keep(op);
  }
}

/// A removed path stays, unpainted, when it clips what follows.
void ContentWriter::VisitGonePath(const ContentReader& op) {
  if (IsPathConstruction(op.Code()) || IsClip(op.Code())) {
    if (pathOut_ == kNoPath) {
      CopyTo(op.Begin());
      pathOut_ = out_.size();
      pathHasOthers_ = pathIsOpen_;  // it may have begun before this stretch
      pathClips_ = false;
    }
    pathClips_ = pathClips_ || IsClip(op.Code());
    return;
  }
  const bool isWhole = pathOut_ != kNoPath && !pathClips_ && !pathHasOthers_;
  if (isWhole) {
    CopyTo(op.Begin());
    out_.resize(pathOut_);
    copied_ = op.End();
    seam_ = true;
  } else if (op.Code() != Opcode::kEndPath) {
    Replace(op, "n");
  }
  pathOut_ = kNoPath;
}

/// Inside a text object that goes as a whole, positions mean nothing. TD leaves its leading behind.
void ContentWriter::VisitGoneText(const ContentReader& op) {
  switch (op.Code()) {
    case Opcode::kMoveTextSetLeading:
      if (op.HasNumbers(2)) return Replace(op, FormatNumber(-op.Number(1, 2)) + " TL");
      return Drop(op);
    case Opcode::kMoveText:
    case Opcode::kTextMatrix:
    case Opcode::kNextLine:
    case Opcode::kEndText:
    case Opcode::kBeginContainer:
    case Opcode::kBeginContainerWithProperties:
    case Opcode::kEndContainer:
    case Opcode::kPlace:
    case Opcode::kPlaceWithProperties:
    case Opcode::kXObject:
    case Opcode::kInlineImage:
    case Opcode::kShading:
      return Drop(op);
    default:
      return Keep(op);
  }
}

/// Looks whether the text object ends inside the removed stretch and has nothing that outlives it but text state.
void ContentWriter::BeginGoneText(const ContentReader& op) {
  bool clips = state_.Graphics().ClipsText();
  ContentReader ahead(content_, op.End());
  while (ahead.NextUpTo(goneEnd_)) {
    switch (ahead.Code()) {
      case Opcode::kEndText:
        if (clips || IsPositionUsed(ahead.End())) return Keep(op);
        emptyTextEnd_ = ahead.End();
        return Drop(op);
      case Opcode::kTextRender:
        clips = clips || (ahead.HasNumbers(1) && ahead.Number(0, 1) >= 4);
        break;
      case Opcode::kBeginText:
      case Opcode::kSave:
      case Opcode::kRestore:
        return Keep(op);
      default:
        break;
    }
  }
  Keep(op);
}

/// Whether anything behind a text object goes by the position in which it ended. Viewers keep that over ET.
bool ContentWriter::IsPositionUsed(std::size_t offset) const {
  ContentReader ahead(content_, offset);
  while (ahead.Next()) {
    if (IsShow(ahead.Code())) return true;
    switch (ahead.Code()) {
      case Opcode::kMoveText:
      case Opcode::kMoveTextSetLeading:
      case Opcode::kNextLine:
        return true;
      case Opcode::kBeginText:
      case Opcode::kTextMatrix:
        return false;
      default:
        break;
    }
  }
  return false;
}

void ContentWriter::SaveInGone(const ContentReader& op) {
  Keep(op);
  // The Q of one that stays must not take off an outer one.
  if (state_.IsInText()) return saves_.clear();
  CopyTo(op.Begin());
  saves_.push_back(out_.size());
}

/// Between q and Q of one removed stretch nothing paints any more, so all of it can go; but a path that was begun there
/// outlives Q, and may be painted outside.
void ContentWriter::RestoreInGone(const ContentReader& op) {
  if (saves_.empty() || state_.IsInText() || pathIsOpen_) {
    saves_.clear();
    return Keep(op);
  }
  CopyTo(op.Begin());
  out_.resize(saves_.back());
  saves_.pop_back();
  copied_ = op.End();
  seam_ = true;
  pathOut_ = kNoPath;
}

/// What ' and " do beside showing, as operators of its own.
std::string ContentWriter::LineMoveOf(const ContentReader& op) {
  if (op.Code() == Opcode::kNextLineShow) return "T*";
  if (op.Code() != Opcode::kNextLineShowSpaced || !op.Has(3)) return {};
  std::string text;
  for (const std::size_t i : {0, 1}) {
    text += op.Operand(i, 3).In(op.Content());
    text += i == 0 ? " Tw " : " Tc ";
  }
  return text + "T*";
}

void ContentWriter::RemoveShow(const ContentReader& op) {
  const std::string lineMove = LineMoveOf(op);
  if (op.Begin() < emptyTextEnd_) {
    state_.Apply(op, page_.Resources());
    const bool setsSpacing = op.Code() == Opcode::kNextLineShowSpaced && lineMove.size() > 2;
    return setsSpacing ? Replace(op, lineMove.substr(0, lineMove.size() - 2)) : Drop(op);
  }
  if (state_.Graphics().ClipsText()) {
    Keep(op);
    if (state_.Graphics().mode == kClipOnly) return;
    CopyTo(op.Begin());
    Put("7 Tr ");
    CopyTo(op.End());
    Put(std::to_string(state_.Graphics().mode) + " Tr");
    return;
  }
  if (!lineMove.empty()) move_ = {};
  state_.Apply(op, page_.Resources());
  move_.Add(MoveOfShow(op, state_.Graphics()));
  Replace(op, lineMove);
}

/// The strings that stay become the items of one or more TJ arrays; what went between them becomes numbers, and what went
/// behind the last of them is owed to the next show.
void ContentWriter::RewriteShow(const ContentReader& op) {
  const std::string lineMove = LineMoveOf(op);
  if (!lineMove.empty()) move_ = {};
  state_.Apply(op, page_.Resources());
  const ContentState before = state_;
  Replace(op, lineMove);
  std::string array;
  ForEachShown(
      op, [&](const Token& string) { RewriteString(string, array); },
      [&](double number, const Token&) { Owe(MoveOfAdjustment(state_.Graphics(), number)); });
  PutArray(array);
  if (op.End() == editEnd_) PutAddedRuns(array);
  state_ = before;
}

void ContentWriter::Owe(const TextMove& move) {
  move_.Add(move);
  state_.Advance(move);
}

void ContentWriter::PutArray(std::string& array) {
  if (!array.empty()) Put("[" + array + "] TJ");
  array.clear();
}

/// The added runs in front of the next one that the page had.
void ContentWriter::PutAddedRuns(std::string& array) {
  const std::vector<EditedRun>& runs = edit_->committed;
  for (; nextEdited_ < runs.size() && runs[nextEdited_].added != nullptr; ++nextEdited_) {
    PutArray(array);
    PutRun(runs[nextEdited_]);
  }
}

void ContentWriter::RewriteString(const Token& string, std::string& array) {
  const int original = nextOriginal_++;
  PutAddedRuns(array);
  const std::vector<EditedRun>& runs = edit_->committed;
  const bool isLeft = nextEdited_ < runs.size() && runs[nextEdited_].original == original;
  const EditedRun* run = isLeft ? &runs[nextEdited_++] : nullptr;
  std::string bytes;
  AppendStringValue(string.In(content_), bytes);
  std::string kept;
  std::string hidden;
  TextMove moved;
  const auto putKept = [&] {
    if (kept.empty()) return;
    PutString(run->IsWhole() ? std::string(string.In(content_)) : FormatHex(kept), moved, array);
    kept.clear();
    moved = {};
  };
  const auto putHidden = [&] {
    if (hidden.empty()) return;
    PutArray(array);
    Put("7 Tr");
    PutString(FormatHex(hidden), moved, array);
    PutArray(array);
    Put(std::to_string(state_.Graphics().mode) + " Tr");
    hidden.clear();
    moved = {};
  };
  int character = 0;
  for (std::string_view rest = bytes; !rest.empty(); ++character) {
    const GraphicsState& graphics = state_.Graphics();
    const Font::Code code = graphics.font != nullptr ? graphics.font->Metrics().NextCode(rest)
                                                     : Font::Code{static_cast<unsigned char>(rest.front()), 1};
    const auto length = static_cast<std::size_t>(code.length);
    const TextMove move = MoveOfCode(graphics, code);
    if (run != nullptr && !run->Removes(character)) {
      putHidden();
      kept += rest.substr(0, length);
      moved.Add(move);
    } else {
      putKept();
      if (graphics.ClipsText()) {
        hidden += rest.substr(0, length);
        moved.Add(move);
      } else {
        Owe(move);
      }
    }
    rest.remove_prefix(length);
  }
  putHidden();
  putKept();
}

/// Adds a string that stays to the array, behind the number that makes good what went before it.
void ContentWriter::PutString(const std::string& string, const TextMove& move, std::string& array) {
  if (state_.Graphics().size == 0 && !move_.IsZero()) {
    PutArray(array);
    PutMove();
  }
  const std::string number = FormatNumber(AdjustmentFor(state_.Graphics(), move_));
  if (number != "0") array += number;
  array += string;
  move_ = {};
  state_.Advance(move);
}

}  // namespace tgx::host
