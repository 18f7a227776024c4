#include <algorithm>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/Handles.h"
#include "host/pdfedit/model/ColorSpaces.h"
#include "host/pdfedit/model/DocumentFonts.h"

namespace tgx::host::operations {
namespace {

/// Makes a text's runs open to editing and notes the change when it is done.
template <typename Edit>
void EditRuns(const TextRef& text, Edit&& edit) {
  std::vector<EditedRun>& runs = text.created != nullptr ? text.created->runs : text.page->EditText(text.number);
  edit(runs);
  if (text.created == nullptr) {
    text.page->TextChanged(text.number);
    return;
  }
  text.created->Changed();
  if (text.created->page != nullptr) text.created->page->AddedTextChanged(*text.created);
}

void CheckRange(ASInt32 index, ASInt32 count, std::size_t all) {
  const auto size = static_cast<std::int64_t>(all);
  if (index >= 0 && count >= 0 && std::int64_t{index} + count <= size) return;
  throw HostError(kASOutOfRange, "the text has " + std::to_string(all) + " runs or characters, not " +
                                     std::to_string(count) + " from " + std::to_string(index));
}

}  // namespace

void PDEContentAddElem(PDEContent content, ASInt32 addAfterIndex, PDEElement element) {
  const ListRef list = ListOf(content);
  CreatedText* text = CreatedTextOf(element);
  if (text == nullptr) {
    const ElementRef own = ElementOf(element);
    if (!own.page->At(own.number).Is(Element::kRemoved)) {
      throw HostError(kASBadParameter, own.page->Place() + ": the element stands in a content list already");
    }
    throw HostError(kASNotSupported,
                    own.page->Place() + ": an element that was removed from its page cannot be added again");
  }
  list.page->Add(list.number, addAfterIndex, *text);
}

void PDEContentRemoveElem(PDEContent content, ASInt32 index) {
  const ListRef list = ListOf(content);
  list.page->Remove(list.number, index);
}

void PDEContainerSetContent(PDEContainer container, PDEContent content) {
  const ElementRef element = ElementOf(container, kPDEContainer);
  const ListRef list = ListOf(content);
  if (list.page != element.page) throw HostError(kASBadParameter, "the container and the content list are not of one page");
  element.page->ReplaceContent(element.number, list.number);
}

void PDEContainerSetMCTag(PDEContainer container, ASAtom tag) {
  const ElementRef element = ElementOf(container, kPDEContainer);
  element.page->SetTag(element.number, std::string(AtomView(tag)));
}

void PDEGroupSetContent(PDEGroup group, PDEContent) {
  TypeOf(group);
  throw HostError(kASWrongType, "the page content object is no group");
}

PDEText PDETextCreate() { return CreatedText::Make().Handle(); }

void PDETextAdd(PDEText text, ASUns32 flags, ASInt32 index, const ASUns8* bytes, ASInt32 count, PDEFont font,
                const PDEGraphicState* state, ASInt32 stateSize, const void* textState, ASInt32,
                const ASFixedMatrix* textMatrix, const ASFixedMatrix*) {
  const TextRef found = TextOf(text);
  if (flags != kPDETextRun) throw HostError(kASNotSupported, "text is added as runs");
  if (count < 0 || (bytes == nullptr && count > 0)) throw HostError(kASBadParameter, "added text without its bytes");
  const std::string_view codes =
      count == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(bytes), count);
  auto added = std::make_shared<const AddedRun>(MakeAddedRun(codes, font, state, stateSize, textState, textMatrix));
  CheckRange(index, 0, found.Layout().Runs().size());
  EditRuns(found, [&](std::vector<EditedRun>& runs) {
    runs.insert(runs.begin() + index, EditedRun{-1, std::move(added), {}});
  });
}

void PDETextRemove(PDEText text, ASUns32 flags, ASInt32 index, ASInt32 count) {
  const TextRef found = TextOf(text);
  if (flags != kPDETextRun && flags != kPDETextChar) {
    throw HostError(kASBadParameter, "an index of a text must count runs or characters");
  }
  const TextLayout& layout = found.Layout();
  CheckRange(index, count, flags == kPDETextRun ? layout.Runs().size() : layout.Chars().size());
  if (count == 0) return;
  if (flags == kPDETextRun) {
    EditRuns(found, [&](std::vector<EditedRun>& runs) { runs.erase(runs.begin() + index, runs.begin() + index + count); });
  } else {
    const TextLayout before = layout;
    EditRuns(found, [&](std::vector<EditedRun>& runs) { RemoveChars(runs, before, index, count); });
  }
}

PDEColorSpace PDEColorSpaceCreateFromName(ASAtom name) { return ColorSpaceOfName(name); }

ASUns32 PDEFontGetCreateNeedFlags(PDEFont font) {
  return FontOf(font).Metrics().HasToUnicode() ? 0U : static_cast<ASUns32>(kPDEFontCreateToUnicode);
}

ASInt32 PDEFontTranslateGlyphIdsToUnicode(PDEFont font, const ASUns8* codes, ASInt32 count, ASUns8* unicode, ASInt32 size) {
  const Font& metrics = FontOf(font).Metrics();
  std::u16string text;
  std::string_view rest =
      codes == nullptr || count < 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(codes), count);
  while (!rest.empty()) {
    const Font::Code code = metrics.NextCode(rest);
    metrics.AppendUnicode(code, text);
    rest.remove_prefix(static_cast<std::size_t>(code.length));
  }
  if (unicode != nullptr) {
    const std::size_t units = std::min(text.size(), static_cast<std::size_t>(std::max(size, 0)) / 2);
    for (std::size_t i = 0; i < units; ++i) {
      unicode[2 * i] = static_cast<ASUns8>(text[i] >> 8U);
      unicode[2 * i + 1] = static_cast<ASUns8>(text[i] & 0xFFU);
    }
  }
  return static_cast<ASInt32>(text.size() * 2);
}

}  // namespace tgx::host::operations
