#include "host/pdfedit/model/TreeReader.h"

#include <algorithm>

#include "host/pdfedit/PageContents.h"

namespace tgx::host {
namespace {

/// Marked content that nests deeper makes no elements of its own: its parts belong to the container at this depth. Who walks
/// the elements may recurse.
constexpr std::size_t kDeepestContainer = 256;

}  // namespace

void TreeReader::Read() {
  ContentReader reader(content_);
  std::size_t end = 0;
  while (reader.Next()) {
    ReadOperator(reader);
    const bool isCutOff = reader.Code() == Opcode::kInlineImage && reader.Image().end == reader.Image().dataEnd;
    end = isCutOff ? reader.Begin() : reader.End();
  }
  const bool hasRest = end < content_.size() && NextToken(content_, end).kind != Token::Kind::kEnd;
  const bool isWhole = !hasRest && end == reader.End();
  page_.operatorsEnd_ = static_cast<std::uint32_t>(isWhole ? content_.size() : end);
  for (const std::uint32_t container : open_) {
    page_.At(container).end = static_cast<std::uint32_t>(content_.size());
    page_.At(container).next = page_.Count();
  }
}

void TreeReader::ReadOperator(const ContentReader& op) {
  const Opcode code = op.Code();
  if (IsPathConstruction(code)) {
    if (path_ == kNoPath) path_ = op.Begin();
    return;
  }
  if (IsPathPainting(code)) return AddPath(op);
  if (IsShow(code)) return AddText(op);
  switch (code) {
    case Opcode::kEndPath:
      path_ = kNoPath;
      break;
    case Opcode::kBeginText:
    case Opcode::kEndText:
      text_ = kNone;
      break;
    case Opcode::kBeginContainer:
    case Opcode::kBeginContainerWithProperties:
      return BeginContainer(op);
    case Opcode::kEndContainer:
      return EndContainer(op);
    case Opcode::kXObject:
      return AddXObject(op);
    case Opcode::kInlineImage:
      Add(kPDEImage, op.Begin(), op.End());
      break;
    case Opcode::kShading:
      Add(kPDEShading, op.Begin(), op.End());
      break;
    case Opcode::kPlace:
    case Opcode::kPlaceWithProperties:
      Add(kPDEPlace, op.Begin(), op.End());
      break;
    default:
      break;
  }
}

std::uint32_t TreeReader::Add(std::uint8_t type, std::size_t begin, std::size_t end, std::uint32_t detail) {
  const std::uint32_t number = page_.Count();
  Element element{};
  element.type = type;
  if (path_ != kNoPath) element.flags = Element::kInPath;
  element.begin = static_cast<std::uint32_t>(begin);
  element.end = static_cast<std::uint32_t>(end);
  element.parent = open_.empty() ? kNone : open_.back();
  element.next = number + 1;
  element.detail = detail;
  element.mcid = -1;
  element.dictionary = kNone;
  page_.elements_.Add(element);
  text_ = kNone;
  lastEnd_ = end;
  return number;
}

void TreeReader::AddText(const ContentReader& op) {
  if (!ShowsText(op)) return;
  if (text_ == kNone) text_ = Add(kPDEText, op.Begin(), op.End());
  page_.At(text_).end = static_cast<std::uint32_t>(op.End());
  lastEnd_ = op.End();
}

void TreeReader::AddPath(const ContentReader& op) {
  if (path_ == kNoPath) return;  // nothing to paint
  // Elements do not overlap: of a path with something else in its midst the later part is the element.
  const std::size_t begin = std::max(path_, lastEnd_);
  if (begin == path_) path_ = kNoPath;
  Add(kPDEPath, begin, op.End());
  path_ = kNoPath;
}

void TreeReader::AddXObject(const ContentReader& op) {
  if (!op.Has(1) || op.Operand(0, 1).kind != Token::Kind::kName) return;
  const std::uint32_t xobject = XObjectOfName(op.Operand(0, 1).In(content_));
  Add(page_.xobjects_[xobject].type, op.Begin(), op.End(), xobject);
}

std::uint32_t TreeReader::XObjectOfName(std::string_view nameToken) {
  const auto known = xobjects_.find(nameToken);
  if (known != xobjects_.end()) return known->second;
  QPDFObjectHandle stream = page_.resources_.Find("/XObject", nameToken);
  PaintedXObject xobject{QPDFObjectHandle::newNull(), kPDEXObject};
  if (stream.isStream()) {
    xobject.stream = stream;
    QPDFObjectHandle subtype = stream.getDict().getKey("/Subtype");
    if (subtype.isName()) {
      const std::string name = subtype.getName();
      if (name == "/Image") xobject.type = kPDEImage;
      if (name == "/Form") xobject.type = kPDEForm;
      if (name == "/PS") xobject.type = kPDEPS;
    }
  }
  const auto number = static_cast<std::uint32_t>(page_.xobjects_.size());
  page_.xobjects_.push_back(std::move(xobject));
  xobjects_.emplace(nameToken, number);
  return number;
}

std::uint32_t TreeReader::SharedProperties(std::string_view nameToken) {
  const auto known = properties_.find(nameToken);
  if (known != properties_.end()) return known->second;
  QPDFObjectHandle dictionary = page_.resources_.Find("/Properties", nameToken);
  std::uint32_t number = kNone;
  if (dictionary.isDictionary()) {
    number = static_cast<std::uint32_t>(page_.properties_.size());
    page_.properties_.push_back({dictionary, kNone});
    page_.contents_.Watch(dictionary, page_.pageIndex_, number);
  }
  properties_.emplace(nameToken, number);
  return number;
}

void TreeReader::BeginContainer(const ContentReader& op) {
  text_ = kNone;
  lastEnd_ = op.End();
  if (open_.size() == kDeepestContainer) {
    ++tooDeep_;
    return;
  }
  const std::uint32_t number = Add(kPDEContainer, op.Begin(), op.End());
  Element& container = page_.At(number);
  open_.push_back(number);
  container.flags |= Element::kWithoutDictionary;
  if (op.Code() == Opcode::kBeginContainer || !op.Has(1)) return;
  const Token& operand = op.Operand(0, 1);
  if (operand.kind == Token::Kind::kDictionary) {
    container.flags &= ~Element::kWithoutDictionary;
    container.mcid = McidOf(operand.In(content_));
  } else if (operand.kind == Token::Kind::kName && op.Has(2)) {
    container.dictionary = SharedProperties(operand.In(content_));
    if (container.dictionary == kNone) return;
    container.flags ^= Element::kWithoutDictionary | Element::kSharedDictionary;
    container.mcid = McidOf(page_.properties_[container.dictionary].dictionary);
  }
}

void TreeReader::EndContainer(const ContentReader& op) {
  text_ = kNone;
  lastEnd_ = op.End();
  if (tooDeep_ > 0) {
    --tooDeep_;
    return;
  }
  if (open_.empty()) return;  // stays on the page, and is nothing
  Element& container = page_.At(open_.back());
  container.flags |= Element::kClosed;
  container.end = static_cast<std::uint32_t>(op.End());
  container.next = page_.Count();
  open_.pop_back();
}

}  // namespace tgx::host
