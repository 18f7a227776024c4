#include <cstring>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/Handles.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"

namespace tgx::host::operations {
namespace {

template <typename Value>
void Put(Value* output, const Value& value) {
  if (output != nullptr) *output = value;
}

std::uint32_t CheckedIndex(ASInt32 index, std::size_t count, const char* what) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return static_cast<std::uint32_t>(index);
  throw HostError(kASOutOfRange,
                  std::string("no ") + what + ' ' + std::to_string(index) + ", the text has " + std::to_string(count));
}

/// What an index of the text operations names.
struct TextPart {
  const TextLayout& layout;
  const TextLayout::Run* run;
  const TextLayout::Char* character;  ///< null when the part is a run

  std::string_view Bytes() const { return character != nullptr ? layout.Bytes(*character) : layout.Bytes(*run); }
};

TextPart PartOf(PDEText text, ASUns32 flags, ASInt32 index) {
  const TextLayout& layout = TextOf(text).Layout();
  if (flags == kPDETextRun) {
    return {layout, &layout.Runs()[CheckedIndex(index, layout.Runs().size(), "run")], nullptr};
  }
  if (flags != kPDETextChar) throw HostError(kASBadParameter, "an index of a text must count runs or characters");
  const TextLayout::Char& character = layout.Chars()[CheckedIndex(index, layout.Chars().size(), "character")];
  return {layout, &layout.Runs()[character.run], &character};
}

}  // namespace

ASInt32 PDEObjectGetType(PDEObject obj) { return TypeOf(obj); }

void PDEAcquire(PDEObject obj) {
  TypeOf(obj);
  if (CreatedText* text = CreatedTextOf(obj)) ++text->references;
}

void PDERelease(PDEObject obj) {
  TypeOf(obj);
  if (CreatedText* text = CreatedTextOf(obj)) CreatedText::Release(*text);
}

ASInt32 PDEContentGetNumElems(PDEContent content) {
  const ListRef list = ListOf(content);
  return static_cast<ASInt32>(list.page->List(list.number).size);
}

PDEElement PDEContentGetElem(PDEContent content, ASInt32 index) {
  const ListRef list = ListOf(content);
  return list.page->ItemAt(list.number, index);
}

ASBool PDEContainerGetDict(PDEContainer container, CosObj* dict, ASBool* isInline) {
  const ElementRef element = ElementOf(container, kPDEContainer);
  const Properties* properties = element.page->PropertiesOf(element.number);
  if (properties == nullptr) {
    Put(dict, kNullObject);
    return 0;
  }
  Put(dict, element.page->Contents().InDocument().HandleOf(properties->dictionary));
  Put(isInline, ASBool{element.page->At(element.number).Is(Element::kSharedDictionary) ? 0 : 1});
  return 1;
}

PDEContent PDEContainerGetContent(PDEContainer container) {
  const ElementRef element = ElementOf(container, kPDEContainer);
  return element.page->ListHandle(element.page->ListOf(element.number));
}

ASAtom PDEContainerGetMCTag(PDEContainer container) {
  const ElementRef element = ElementOf(container, kPDEContainer);
  return Intern(element.page->TagOf(element.number));
}

PDEContent PDEGroupGetContent(PDEGroup group) {
  TypeOf(group);
  throw HostError(kASWrongType, "the page content object is no group");
}

void PDEElementGetBBox(PDEElement element, ASFixedRect* box) {
  if (CreatedText* text = CreatedTextOf(element)) return Put(box, text->Layout().Bounds().Fixed());
  const ElementRef found = ElementOf(element);
  Put(box, found.page->BoxOf(found.number).Fixed());
}

ASInt32 PDETextGetNumChars(PDEText text) { return static_cast<ASInt32>(TextOf(text).Layout().Chars().size()); }

ASInt32 PDETextGetNumRuns(PDEText text) { return static_cast<ASInt32>(TextOf(text).RunCount()); }

ASInt32 PDETextGetNumBytes(PDEText text, ASUns32 flags, ASInt32 index) {
  return static_cast<ASInt32>(PartOf(text, flags, index).Bytes().size());
}

ASInt32 PDETextGetText(PDEText text, ASUns32 flags, ASInt32 index, ASUns8* buffer) {
  const std::string_view bytes = PartOf(text, flags, index).Bytes();
  if (buffer != nullptr && !bytes.empty()) std::memcpy(buffer, bytes.data(), bytes.size());
  return static_cast<ASInt32>(bytes.size());
}

PDEFont PDETextGetFont(PDEText text, ASUns32 flags, ASInt32 index) {
  const DocumentFont* font = PartOf(text, flags, index).run->font;
  return font == nullptr ? nullptr : font->Handle();
}

void PDETextGetTextMatrix(PDEText text, ASUns32 flags, ASInt32 index, ASFixedMatrix* matrix) {
  const TextPart part = PartOf(text, flags, index);
  const Matrix value = part.character != nullptr ? part.layout.MatrixOf(*part.character) : part.layout.MatrixOf(*part.run);
  Put(matrix, value.Fixed());
}

}  // namespace tgx::host::operations
