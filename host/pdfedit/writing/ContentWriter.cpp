#include "host/pdfedit/writing/ContentWriter.h"

#include <algorithm>
#include <cmath>

#include "host/pdfedit/writing/Syntax.h"

namespace tgx::host {
namespace {

std::string FormatMatrix(const Matrix& m) {
  std::string operands;
  for (const double value : {m.a, m.b, m.c, m.d, m.h, m.v}) operands += FormatNumber(value) + ' ';
  operands.pop_back();
  return operands;
}

}  // namespace

// What is to be done.

bool ContentWriter::IsGone(std::uint32_t element) const {
  for (std::uint32_t at = element; at != kNone; at = page_.At(at).parent) {
    if (page_.At(at).Is(Element::kGone)) return true;
  }
  return false;
}

void ContentWriter::CollectChanges() {
  const auto add = [this](Change::Kind kind, std::uint32_t number) {
    const Element& element = page_.At(number);
    changes_.push_back({kind, element.begin, element.end, number});
  };
  for (const std::uint32_t number : page_.Gone()) {
    const std::uint32_t parent = page_.At(number).parent;
    if (parent == kNone || !IsGone(parent)) add(Change::Kind::kGone, number);
  }
  for (const auto& [number, edit] : page_.TextEdits()) {
    if (edit.isCommitted && !IsGone(number)) add(Change::Kind::kText, number);
  }
  for (const auto& [number, edit] : page_.ContainerEdits()) {
    if ((edit.committedTag || edit.committedProperties) && !IsGone(number)) add(Change::Kind::kContainer, number);
  }
  std::sort(changes_.begin(), changes_.end(), [](const Change& a, const Change& b) { return a.element < b.element; });
  needsPosition_ = std::any_of(changes_.begin(), changes_.end(), [this](const Change& change) {
    if (change.kind != Change::Kind::kText) return false;
    const auto& runs = page_.TextEdits().at(change.element).committed;
    return std::any_of(runs.begin(), runs.end(), [](const EditedRun& run) { return run.added != nullptr; });
  });
}

void ContentWriter::CollectAdditions() {
  for (const auto& [list, additions] : page_.Additions()) {
    const std::uint32_t owner = page_.List(list).owner;
    if (owner != kNone && IsGone(owner)) continue;
    for (const Addition& addition : additions) additions_.push_back(&addition);
  }
  std::stable_sort(additions_.begin(), additions_.end(),
                   [](const Addition* a, const Addition* b) { return a->offset < b->offset; });
  needsPosition_ = needsPosition_ || !additions_.empty();
}

// The walk.

std::string ContentWriter::Write() {
  CollectChanges();
  CollectAdditions();
  if (changes_.empty() && additions_.empty()) return std::string(content_);
  if (OnlyImagesGo()) return WithoutImages();
  std::uint32_t start = static_cast<std::uint32_t>(content_.size());
  if (!changes_.empty()) start = std::min(start, changes_.front().begin);
  if (!additions_.empty()) start = std::min(start, additions_.front()->offset);
  state_ = page_.StateAt(start);
  pathIsOpen_ = !changes_.empty() && page_.At(changes_.front().element).Is(Element::kInPath);
  out_.reserve(content_.size() + 256);
  CopyTo(start);
  ContentReader reader(content_, start);
  while (!IsSettled() && reader.Next()) {
    PutAdditionsUpTo(reader.Begin());
    EnterChanges(reader.Begin());
    Visit(reader);
    Track(reader);
  }
  PutAdditionsUpTo(content_.size());
  CopyTo(content_.size());
  return std::move(out_);
}

bool ContentWriter::OnlyImagesGo() const {
  return additions_.empty() && std::all_of(changes_.begin(), changes_.end(), [this](const Change& change) {
           return change.kind == Change::Kind::kGone && page_.At(change.element).type == kPDEImage;
         });
}

/// An image is a single operator that leaves no state behind: nothing around it has to be read.
std::string ContentWriter::WithoutImages() {
  out_.reserve(content_.size());
  for (const Change& image : changes_) {
    CopyTo(image.begin);
    copied_ = image.end;
    seam_ = true;
  }
  CopyTo(content_.size());
  return std::move(out_);
}

std::string ContentWriter::WriteOperators() const {
  std::string out;
  ContentReader reader(content_);
  while (reader.Next()) {
    out += reader.Text();
    out += '\n';
  }
  return out;
}

bool ContentWriter::IsSettled() const {
  return nextChange_ == changes_.size() && nextAddition_ == additions_.size() && goneEnd_ == 0 && editEnd_ == 0 &&
         move_.IsZero();
}

void ContentWriter::EnterChanges(std::size_t offset) {
  if (goneEnd_ != 0 && offset >= goneEnd_) {
    goneEnd_ = emptyTextEnd_ = 0;
    saves_.clear();
    pathOut_ = kNoPath;
  }
  if (editEnd_ != 0 && offset >= editEnd_) {
    edit_ = nullptr;
    editEnd_ = 0;
  }
  for (; nextChange_ < changes_.size() && changes_[nextChange_].begin <= offset; ++nextChange_) {
    const Change& change = changes_[nextChange_];
    if (change.kind == Change::Kind::kGone) {
      goneEnd_ = change.end;
      pathHasOthers_ = pathClips_ = false;
    } else if (change.kind == Change::Kind::kText) {
      edit_ = &page_.TextEdits().at(change.element);
      editEnd_ = change.end;
      nextEdited_ = 0;
      nextOriginal_ = 0;
    } else {
      break;  // the operator is the container's own
    }
  }
}

void ContentWriter::Visit(const ContentReader& op) {
  if (goneEnd_ != 0) return VisitGone(op);
  if (nextChange_ < changes_.size() && changes_[nextChange_].begin == op.Begin()) return RewriteContainer(op);
  if (edit_ != nullptr && IsShow(op.Code()) && ShowsText(op)) return RewriteShow(op);
  Keep(op);
}

void ContentWriter::Track(const ContentReader& op) {
  if (op.Code() == Opcode::kBeginText) clipsText_ = false;
  if (IsPathConstruction(op.Code())) pathIsOpen_ = true;
  if (IsPathPainting(op.Code()) || op.Code() == Opcode::kEndPath) pathIsOpen_ = false;
  const bool isShow = IsShow(op.Code());
  if (isShow && state_.Graphics().ClipsText()) clipsText_ = true;
  if (!isShow) state_.Apply(op, page_.Resources());  // a show's own effect was applied before it was written
  if (isShow && needsPosition_) state_.AdvanceOver(op);
}

// Output.

void ContentWriter::CopyTo(std::size_t offset) {
  if (offset <= copied_) return;
  if (seam_ && !out_.empty() && !IsWhite(out_.back()) && !IsWhite(content_[copied_])) out_ += '\n';
  seam_ = false;
  out_.append(content_, copied_, offset - copied_);
  copied_ = offset;
}

void ContentWriter::Put(std::string_view text) {
  if (text.empty()) return;
  if (!out_.empty() && !IsWhite(out_.back())) out_ += '\n';
  out_ += text;
  seam_ = true;
}

void ContentWriter::Drop(const ContentReader& op) {
  CopyTo(op.Begin());
  copied_ = op.End();
  seam_ = true;
}

void ContentWriter::Replace(const ContentReader& op, std::string_view text) {
  Drop(op);
  Put(text);
}

/// Copies an operator. What removed text would have moved is made good in front of the next show, and in front of operators
/// that change what a movement means; a new position makes it void.
void ContentWriter::Keep(const ContentReader& op) {
  const bool isShow = IsShow(op.Code());
  if (isShow) state_.Apply(op, page_.Resources());
  if (move_.IsZero()) return;
  switch (op.Code()) {
    case Opcode::kNextLineShow:
    case Opcode::kNextLineShowSpaced:
      if (ShowsText(op)) move_ = {};
      break;
    case Opcode::kBeginText:
    case Opcode::kMoveText:
    case Opcode::kMoveTextSetLeading:
    case Opcode::kTextMatrix:
    case Opcode::kNextLine:
      move_ = {};
      break;
    case Opcode::kEndText:  // viewers keep the position for a show without a text object
      if (IsMoveSeen(op.End())) {
        CopyTo(op.Begin());
        PutMove();
      }
      move_ = {};
      break;
    case Opcode::kShowText:
    case Opcode::kShowTextAdjusted:
      CopyTo(op.Begin());
      PutMove();
      break;
    case Opcode::kTextFont:
    case Opcode::kTextScale:
    case Opcode::kExtGState:
    case Opcode::kSave:
    case Opcode::kRestore:
      if (!IsMoveSeen(op.End())) break;
      CopyTo(op.Begin());
      PutMove();
      break;
    default:
      break;
  }
}

/// Whether anything is shown before the text gets a new position.
bool ContentWriter::IsMoveSeen(std::size_t offset) {
  if (offset < unseenUpTo_) return false;
  ContentReader ahead(content_, offset);
  while (ahead.Next()) {
    switch (ahead.Code()) {
      case Opcode::kShowText:
      case Opcode::kShowTextAdjusted:
        return true;
      case Opcode::kNextLineShow:
      case Opcode::kNextLineShowSpaced:
      case Opcode::kBeginText:
      case Opcode::kMoveText:
      case Opcode::kMoveTextSetLeading:
      case Opcode::kTextMatrix:
      case Opcode::kNextLine:
        unseenUpTo_ = ahead.Begin();
        return false;
      default:
        break;
    }
  }
  unseenUpTo_ = content_.size();
  return false;
}

/// The number for a TJ array that moves as far; 0 where no number can, as with text of no width.
double ContentWriter::AdjustmentFor(const GraphicsState& graphics, const TextMove& move) {
  const double unit = -graphics.size / 1000;
  if (graphics.IsVertical()) return unit == 0 ? 0 : move.y / unit;
  return unit * graphics.scale == 0 ? 0 : move.x / (unit * graphics.scale);
}

void ContentWriter::PutMove() {
  GraphicsState graphics = state_.Graphics();
  // Characters of no size still move by their spacing; a number does nothing at that size.
  const bool needsSize = graphics.size == 0 && graphics.font != nullptr;
  if (needsSize) graphics.size = 1;
  const std::string number = FormatNumber(AdjustmentFor(graphics, move_));
  move_ = {};
  if (number == "0") return;
  const std::string font = needsSize ? FontName(*graphics.font) + ' ' : std::string();
  Put((needsSize ? font + "1 Tf " : font) + "[" + number + "] TJ " + (needsSize ? font + "0 Tf " : font));
}

std::string ContentWriter::FontName(DocumentFont& font) {
  return FormatName(page_.Resources().NameFor("/Font", font.Dictionary(), "F", content_));
}

// Containers.

void ContentWriter::RewriteContainer(const ContentReader& op) {
  const ContainerEdit& edit = page_.ContainerEdits().at(changes_[nextChange_++].element);
  const bool hasProperties = op.Code() == Opcode::kBeginContainerWithProperties && op.Has(1);
  const std::size_t operands = hasProperties ? 2 : 1;
  std::string text;
  if (edit.committedTag) {
    text = FormatName(*edit.committedTag);
  } else if (op.Has(operands)) {
    text = op.Operand(0, operands).In(content_);
  }
  text += ' ';
  if (edit.committedProperties) {
    text += *edit.committedProperties + ' ';
  } else if (hasProperties) {
    text += op.Operand(operands - 1, operands).In(content_);
    text += ' ';
  }
  text += hasProperties ? "BDC" : "BMC";
  Replace(op, text);
}

// Additions.

void ContentWriter::PutAdditionsUpTo(std::size_t offset) {
  while (nextAddition_ < additions_.size() && additions_[nextAddition_]->offset <= offset) {
    // Ending a text object here would bring its clip into force too early; the text waits for the end that is there.
    const bool mustWait = state_.IsInText() && clipsText_ && offset < content_.size();
    if (mustWait) return;
    CopyTo(std::max<std::size_t>(copied_, additions_[nextAddition_]->offset));
    PutAddition(*additions_[nextAddition_++]);
  }
}

void ContentWriter::PutAddition(const Addition& addition) {
  for (const EditedRun& run : addition.runs) PutRun(run);
}

void ContentWriter::PutRun(const EditedRun& run) {
  TextLayout whole;
  whole.AddRun(*run.added);
  std::string shown;
  double owed = 0;
  const GraphicsState graphics = [&run] {
    GraphicsState text = run.added->text;
    text.font = run.added->font;
    return text;
  }();
  for (std::size_t i = 0; i < whole.Chars().size(); ++i) {
    const TextLayout::Char& c = whole.Chars()[i];
    if (run.Removes(static_cast<int>(i))) {
      Font::Code code{0, c.bytes};
      for (const char byte : whole.Bytes(c)) code.value = (code.value << 8U) | static_cast<unsigned char>(byte);
      owed += AdjustmentFor(graphics, MoveOfCode(graphics, code));
      continue;
    }
    if (owed != 0) shown += FormatNumber(owed);
    owed = 0;
    shown += FormatHex(whole.Bytes(c));
  }
  if (shown.empty()) return;
  const Matrix& ctm = state_.Graphics().ctm;
  std::string text;
  if (state_.IsInText()) text += "ET\n";
  text += "q\n";
  if (!ctm.IsIdentity() && ctm.IsInvertible()) text += FormatMatrix(ctm.Inverse()) + " cm\n";
  text += run.added->operators;
  text += "BT\n" + FontName(*run.added->font) + ' ' + FormatNumber(graphics.size) + " Tf 0 Tc 0 Tw 100 Tz 0 Ts 0 Tr\n" +
          FormatMatrix(run.added->matrix) + " Tm [" + shown + "] TJ\nET\nQ\n";
  if (state_.IsInText()) {
    text += TextPositionOperators();
    move_ = {};
  }
  Put(text);
}

/// Begins a text object at the text position of the state.
std::string ContentWriter::TextPositionOperators() const {
  const Matrix& line = state_.TextLine();
  const Matrix& at = state_.TextPosition();
  std::string text = "BT\n";
  const Matrix fromLine = line.IsInvertible() ? at * line.Inverse() : Matrix{};
  const TextMove move{fromLine.h, fromLine.v};
  const double number = AdjustmentFor(state_.Graphics(), move);
  const bool isReached = line.IsInvertible() && std::abs(state_.Graphics().IsVertical() ? move.x : move.y) < 1e-6 &&
                         (number != 0 || std::abs(move.x + move.y) < 1e-9);
  if (!isReached)
    return text + FormatMatrix(at) + " Tm\n";  // the line's start is lost, which only a later T* or Td could show
  text += FormatMatrix(line) + " Tm\n";
  if (FormatNumber(number) != "0") text += "[" + FormatNumber(number) + "] TJ\n";
  return text;
}

}  // namespace tgx::host
