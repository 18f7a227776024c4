#include "src/common/CPdfStructureParser.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "src/api/HostException.h"
#include "src/common/StructureUtils.h"
#include "src/common/TextEncoding.h"

namespace tgx {
namespace {

std::int32_t linkDepth = 0;

// Around the ends of the range, where a long-lived process may come.
void ChangeLinkDepth(std::int32_t by) {
  linkDepth = static_cast<std::int32_t>(static_cast<std::uint32_t>(linkDepth) + static_cast<std::uint32_t>(by));
}

bool IsAnnotation(CosObj object) {
  if (CosObjGetType(object) != CosDict) return false;
  if (CosDictKnownKeyString(object, "Type") == 0 || CosDictKnownKeyString(object, "Subtype") == 0) return false;
  const CosObj type = CosDictGetKeyString(object, "Type");
  return CosObjGetType(type) == CosName && CosNameValue(type) == ASAtomFromString("Annot");
}

// Whether "Contents" may be written: it is missing or an empty string.
bool TakesContents(CosObj annotation) {
  if (CosDictKnownKeyString(annotation, "Contents") == 0) return true;
  const CosObj contents = CosDictGetKeyString(annotation, "Contents");
  if (CosObjGetType(contents) != CosString) return false;
  ASTArraySize size = 0;
  CosStringValue(contents, &size);
  return size < 1;
}

}  // namespace

CPdfStructureParser::CPdfStructureParser(PDDoc document) { SetDoc(document); }

std::int32_t& CPdfStructureParser::LinkDepth() { return linkDepth; }

void CPdfStructureParser::Run() {
  kids_.clear();
  links_.clear();
  annotations_.clear();
  handlers_ = {{"StructElem", &CPdfStructureParser::HandleElement},
               {"MC", &CPdfStructureParser::HandleMarkedContent},
               {"OBJR", &CPdfStructureParser::HandleObject},
               {"Link", &CPdfStructureParser::HandleLink}};
  content_.SetDoc(GetDoc());
  content_.Parse();
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(GetDoc(), &root) == 0) return;
  InExceptionFrame([&] {
    const ASInt32 count = PDSTreeRootGetNumKids(root);
    for (ASInt32 index = 0; index < count; ++index) {
      PDSElement element = CosNewNull();
      PDSTreeRootGetKid(root, index, &element);
      HandleElement(element);
    }
  });
}

void CPdfStructureParser::Dispatch(std::string_view name, CosObj object) {  // NOLINT(misc-no-recursion)
  const auto handler = handlers_.find(name);
  if (handler != handlers_.end()) (this->*handler->second)(object);
}

void CPdfStructureParser::HandleElement(CosObj element) {  // NOLINT(misc-no-recursion): the host bounds the depth
  if (!links_.empty()) {
    ChangeLinkDepth(1);
    AppendAlt(element);
  }
  // Types and kinds of kids share the handlers. An element of a type with the name of its own kind would handle itself
  // without end.
  const std::string_view type = ASAtomGetString(PDSElementGetType(element));
  if (type != "StructElem") Dispatch(type, element);
  HandleKids(element);
  EndElement();
}

void CPdfStructureParser::HandleKids(CosObj element) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj kid = CosNewNull();
    PDSMCInfo info = {};
    const ASAtom kind = PDSElementGetKidWithMCInfo(element, index, &kid, &info, nullptr, nullptr);
    kids_.push_back(info);
    Dispatch(ASAtomGetString(kind), kid);
    kids_.pop_back();
  }
}

void CPdfStructureParser::EndElement() {
  if (links_.empty() || linkDepth != 0) {
    // Also without an open link: see the class.
    ChangeLinkDepth(-1);
    return;
  }
  const std::u16string text = annotations_.empty() ? std::u16string() : LinkText();
  while (!annotations_.empty()) {
    const CosObj annotation = annotations_.back();
    annotations_.pop_back();
    WriteLinkText(annotation, text);
  }
  links_.clear();
}

void CPdfStructureParser::HandleLink(CosObj element) {
  if (links_.empty()) linkText_.clear();
  links_.push_back(element);
}

void CPdfStructureParser::HandleMarkedContent(CosObj /*object*/) {
  if (kids_.empty() || links_.empty()) return;
  const PDSMCInfo& info = kids_.back();
  linkText_.emplace_back(MarkedContent{info.mcid, content_.PageNumberOf(info.page)});
}

void CPdfStructureParser::HandleObject(CosObj object) {
  if (!links_.empty()) annotations_.push_back(object);
}

void CPdfStructureParser::AppendAlt(CosObj element) {
  if (PDSElementHasAlt(element) == 0 || PDSElementGetAlt(element, nullptr) <= 0) return;
  ByteVector alt;
  ReadAltBytes(element, alt);
  // The byte-order mark in front, and the two zero bytes behind; a text of one byte has not even that.
  alt.resize(alt.size() - 2);
  alt.erase(alt.begin(), alt.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(alt.size(), 2)));
  std::u16string text = u" ";
  AppendUtf16Units(alt, text);
  text += u' ';
  linkText_.emplace_back(std::move(text));
}

std::u16string CPdfStructureParser::LinkText() const {
  std::u16string text;
  ContentTextRecord record;
  for (const LinkPiece& piece : linkText_) {
    if (const auto* content = std::get_if<MarkedContent>(&piece)) {
      content_.FindRecord(content->mcid, content->page, record);
      text += record.text;
    } else {
      text += std::get<std::u16string>(piece);
    }
  }
  return text;
}

void CPdfStructureParser::WriteLinkText(CosObj annotation, const std::u16string& text) {
  if (!IsAnnotation(annotation) || !TakesContents(annotation)) return;
  std::u16string target;
  actions_.Describe(annotation, target);
  // Readers of the result get two zero bytes behind the text, as part of the string.
  ByteVector contents = {0xFE, 0xFF};
  AppendUtf16Bytes(text, contents);
  AppendUtf16Bytes(target, contents);
  contents.insert(contents.end(), 2, 0);
  if (contents.size() > bytesLeft_) throw std::runtime_error("the texts of the links are longer than 256 MiB in all");
  bytesLeft_ -= contents.size();
  CosDictPutKeyString(annotation, "Contents",
                      CosNewString(CosObjGetDoc(annotation), 0, reinterpret_cast<const char*>(contents.data()),
                                   static_cast<ASTArraySize>(contents.size())));
}

}  // namespace tgx
