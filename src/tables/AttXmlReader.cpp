#include "src/tables/AttXmlReader.h"

#include <tinyxml2.h>

#include "src/common/XmlGuard.h"

namespace tgx {

void ATT_XmlReader::parseTables(const char* bytes, std::int32_t length,
                                std::vector<std::unique_ptr<ATT_XmlTable>>& tables) const {
  if (length <= 0 || IsTooMuchXml({bytes, static_cast<std::size_t>(length)})) return;
  tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
  document.Parse(bytes, static_cast<std::size_t>(length));
  const auto* root = document.FirstChildElement("Tables");
  if (root == nullptr) return;
  for (const auto* element = root->FirstChildElement("Table"); element != nullptr;
       element = element->NextSiblingElement("Table")) {
    auto table = createTable(element->IntAttribute("type", 0));
    if (table == nullptr) continue;
    table->read(*element);
    tables.push_back(std::move(table));
  }
}

}  // namespace tgx
