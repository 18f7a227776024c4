#include "host/pdfedit/model/PageModel.h"

#include <algorithm>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/ContentBytes.h"
#include "host/pdfedit/model/TreeReader.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {

PageModel::PageModel(PageContents& contents, ASInt32 pageIndex)
    : contents_(contents),
      pageIndex_(pageIndex),
      dictionary_(contents.InDocument().Pages().At(pageIndex).dictionary),
      streams_(dictionary_.getKey("/Contents")),
      resources_(dictionary_, contents.Fonts()),
      bytes_(ReadContentBytes(dictionary_, Place())),
      elements_(RecordKind::kElement, this),
      lists_(RecordKind::kList, this) {
  TreeReader(*this).Read();
  NewList(kNone);
}

PageModel::~PageModel() {
  for (CreatedText* text : added_) CreatedText::Free(*text);
  for (std::uint32_t list = 0; list < lists_.Size(); ++list) lists_[list].Free();
  Detach();
}

void PageModel::Detach() noexcept {
  if (detached_) return;
  for (std::uint32_t i = 0; i < properties_.size(); ++i) contents_.Unwatch(properties_[i].dictionary, pageIndex_, i);
  detached_ = true;
}

std::string PageModel::Place() const { return contents_.InDocument().Name() + ": page " + std::to_string(pageIndex_ + 1); }

// Lists.

std::uint32_t PageModel::ListOf(std::uint32_t container) {
  if (At(container).detail == kNone) {
    const std::uint32_t list = NewList(container);
    At(container).detail = list;
  }
  return At(container).detail;
}

/// A list holds what the content has at its level. It is made before anything at that level can be removed.
std::uint32_t PageModel::NewList(std::uint32_t owner) {
  const std::uint32_t first = owner == kNone ? 0 : owner + 1;
  const std::uint32_t last = owner == kNone ? Count() : At(owner).next;
  std::uint32_t size = 0;
  for (std::uint32_t item = first; item < last; item = At(item).next) ++size;
  ContentList& list = lists_.Add({});  // the model's from here on
  list = ContentList::WithRoomFor(size, owner);
  for (std::uint32_t item = first; item < last; item = At(item).next) list.Insert(list.size, item);
  return lists_.Size() - 1;
}

void PageModel::CheckIndex(std::uint32_t list, ASInt32 index) {
  const std::uint32_t size = lists_[list].size;
  if (index >= 0 && static_cast<std::uint32_t>(index) < size) return;
  throw HostError(kASOutOfRange,
                  Place() + ": no content element " + std::to_string(index) + ", the list has " + std::to_string(size));
}

PDEObject PageModel::ItemAt(std::uint32_t list, ASInt32 index) {
  CheckIndex(list, index);
  const std::uint32_t item = lists_[list].Item(static_cast<std::uint32_t>(index));
  return (item & ContentList::kAdded) != 0 ? AddedText(item).Handle() : elements_.Handle(item);
}

bool PageModel::IsAttached(std::uint32_t element) {
  for (std::uint32_t at = element; at != kNone; at = At(at).parent) {
    if (At(at).Is(Element::kRemoved)) return false;
  }
  return true;
}

// State and text.

const ContentState& PageModel::StateAt(std::uint32_t offset) {
  if (offset < cursor_.offset) {
    const auto behind =
        std::upper_bound(checkpoints_.begin(), checkpoints_.end(), offset,
                         [](std::uint32_t at, const Checkpoint& checkpoint) { return at < checkpoint.offset; });
    cursor_ = behind == checkpoints_.begin() ? Checkpoint{0, {}} : *std::prev(behind);
  }
  RunTo(offset);
  return cursor_.state;
}

void PageModel::RunTo(std::uint32_t offset) {
  constexpr std::uint32_t kBetweenCheckpoints = 16384;
  PassedShows shows(bytes_, cursor_.state);
  ContentReader reader(bytes_, cursor_.offset);
  while (reader.NextUpTo(offset)) {
    shows.Before(reader);
    cursor_.state.Apply(reader, resources_);
    shows.After(reader);
    cursor_.offset = static_cast<std::uint32_t>(reader.End());
    const std::uint32_t last = checkpoints_.empty() ? 0 : checkpoints_.back().offset;
    if (cursor_.offset < last + kBetweenCheckpoints) continue;
    shows.Advance();
    checkpoints_.push_back(cursor_);
  }
  shows.Advance();
  cursor_.offset = std::max(cursor_.offset, offset);
}

const TextLayout& PageModel::OriginalLayout(std::uint32_t text) {
  if (original_.text == text) return *original_.layout;
  original_.text = kNone;
  const Element& element = At(text);
  ContentState state = StateAt(element.begin);
  auto layout = std::make_unique<TextLayout>();
  ContentReader reader(bytes_, element.begin);
  while (reader.NextUpTo(element.end)) {
    state.Apply(reader, resources_);
    if (IsShow(reader.Code())) layout->AddShow(reader, state);
  }
  if (cursor_.offset <= element.end) cursor_ = {element.end, std::move(state)};
  original_ = {text, std::move(layout)};
  return *original_.layout;
}

const TextLayout& PageModel::Layout(std::uint32_t text) {
  const auto edit = textEdits_.find(text);
  if (edit == textEdits_.end()) return OriginalLayout(text);
  if (editedLayout_.text != text) {
    editedLayout_.text = kNone;
    const TextLayout none;
    const bool needsOriginal = std::any_of(edit->second.runs.begin(), edit->second.runs.end(),
                                           [](const EditedRun& run) { return run.added == nullptr; });
    editedLayout_.layout =
        std::make_unique<TextLayout>(LayoutOf(needsOriginal ? OriginalLayout(text) : none, edit->second.runs));
    editedLayout_.text = text;
  }
  return *editedLayout_.layout;
}

std::size_t PageModel::RunCount(std::uint32_t text) {
  if (original_.text == text || textEdits_.count(text) != 0) return Layout(text).Runs().size();
  std::size_t count = 0;
  const Element& element = At(text);
  ContentReader reader(bytes_, element.begin);
  while (reader.NextUpTo(element.end)) {
    if (!IsShow(reader.Code())) continue;
    ForEachShown(
        reader, [&](const Token&) { ++count; }, [](double, const Token&) {});
  }
  return count;
}

// Images.

ImageData PageModel::ImageOf(std::uint32_t number) {
  const Element& element = At(number);
  if (element.detail != kNone) return ImageData::OfXObject(XObjectOf(number).stream);
  ContentReader reader(bytes_, element.begin);
  QPDFObjectHandle dictionary = QPDFObjectHandle::newDictionary();
  std::string data;
  if (reader.Next() && reader.Code() == Opcode::kInlineImage) {
    const std::string entries = "<<" + std::string(reader.Image().Dictionary(bytes_)) + ">>";
    if (auto parsed = ParseProperties(contents_.InDocument(), entries)) dictionary = *parsed;
    data = reader.Image().Data(bytes_);
  }
  return ImageData::OfInline(dictionary, std::move(data), InheritedAttribute(dictionary_, "/Resources"));
}

std::string& PageModel::Samples(std::uint32_t number) {
  if (samples_.image != number) samples_ = {number, ImageOf(number).Samples()};
  return samples_.bytes;
}

// Containers.

std::string PageModel::TagOf(std::uint32_t container) {
  const auto edit = containerEdits_.find(container);
  if (edit != containerEdits_.end() && edit->second.tag) return *edit->second.tag;
  ContentReader reader(bytes_, At(container).begin);
  if (!reader.Next()) return {};
  const std::size_t operands = reader.Code() == Opcode::kBeginContainerWithProperties ? 2 : 1;
  if (!reader.Has(operands) || reader.Operand(0, operands).kind != Token::Kind::kName) return {};
  return NameValue(reader.Operand(0, operands).In(bytes_));
}

Properties* PageModel::PropertiesOf(std::uint32_t container) {
  Element& element = At(container);
  if (element.Is(Element::kWithoutDictionary)) return nullptr;
  if (element.dictionary == kNone) {
    ContentReader reader(bytes_, element.begin);
    const bool isRead = reader.Next() && reader.Has(1);
    const std::string_view text = isRead ? reader.Operand(0, 1).In(bytes_) : std::string_view();
    const auto dictionary = isRead ? ParseProperties(contents_.InDocument(), text) : std::nullopt;
    if (!dictionary) {
      element.flags |= Element::kWithoutDictionary;
      return nullptr;
    }
    properties_.push_back({*dictionary, container, false, MayHoldContainers(text)});
    element.dictionary = static_cast<std::uint32_t>(properties_.size() - 1);
    if (!detached_) contents_.Watch(*dictionary, pageIndex_, element.dictionary);
  }
  return &properties_[element.dictionary];
}

}  // namespace tgx::host
