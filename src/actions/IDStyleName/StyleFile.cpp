#include "src/actions/IDStyleName/StyleFile.h"

#include <tinyxml2.h>

#include "src/common/TextEncoding.h"
#include "src/common/XmlFile.h"

namespace tgx {
namespace {

void ReadStyles(const tinyxml2::XMLElement& document, const char* listName, const char* styleName, IDStyleMap& styles) {
  const tinyxml2::XMLElement* list = document.FirstChildElement(listName);
  if (list == nullptr) return;
  for (const auto* style = list->FirstChildElement(styleName); style != nullptr;
       style = style->NextSiblingElement(styleName)) {
    const char* id = style->Attribute("id");
    const char* hexName = style->Attribute("hex_name");
    if (id != nullptr && hexName != nullptr) styles.Set(id, DecodeStyleName(hexName));
  }
}

}  // namespace

void ReadStyleFile(const std::string& path, IDStyleMap& paragraphStyles, IDStyleMap& characterStyles) {
  tinyxml2::XMLDocument file;
  if (!LoadXmlFile(path, file)) return;
  const tinyxml2::XMLElement* document = file.FirstChildElement("ID_Document");
  if (document == nullptr) return;
  ReadStyles(*document, "ID_ParaStyleList", "ID_ParaStyle", paragraphStyles);
  ReadStyles(*document, "ID_RedefinedParaStyleList", "ID_ParaStyle", paragraphStyles);
  ReadStyles(*document, "ID_CharStyleList", "ID_CharStyle", characterStyles);
}

std::string DecodeStyleName(const char* hexName) {
  ByteVector utf16;
  HexDecode(hexName, utf16);
  ByteVector utf8;
  Utf16ToUtf8(utf16, utf8);
  return {utf8.begin(), utf8.end()};
}

}  // namespace tgx
