// Reads any bytes as the XML description of tables, writes what it understood and reads it again: the second reading must
// give what the first gave.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <tinyxml2.h>

#include "src/tables/AttXmlReader.h"
#include "src/tables/AttXmlTable.h"

namespace {

using Tables = std::vector<std::unique_ptr<tgx::ATT_XmlTable>>;

Tables Read(const std::string& xml) {
  Tables tables;
  tgx::ATT_XmlReader().parseTables(xml.data(), static_cast<std::int32_t>(xml.size()), tables);
  return tables;
}

std::string Written(const Tables& tables) {
  tinyxml2::XMLDocument document;
  auto* root = document.NewElement("Tables");
  document.InsertEndChild(root);
  for (const auto& table : tables) table->write(*root->InsertNewChildElement("Table"));
  tinyxml2::XMLPrinter printer(nullptr, true);
  document.Print(&printer);
  return printer.CStr();
}

void RequireAllListed(const tgx::ATT_XmlTable& table) {
  const auto* described = dynamic_cast<const tgx::ATT_SthXmlTable*>(&table);
  if (described == nullptr) return;
  const auto rows = described->getRows();
  const bool whole =
      std::all_of(rows.begin(), rows.end(), [](const auto* row) { return row->getCells().size() == row->cells.size(); });
  if (!whole || rows.size() != described->rows.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Tables tables = Read({reinterpret_cast<const char*>(data), size});
  for (const auto& table : tables) {
    if (tgx::createTable(table->getType()) == nullptr) std::abort();
    RequireAllListed(*table);
  }
  const std::string written = Written(tables);
  const Tables again = Read(written);
  if (again.size() != tables.size() || Written(again) != written) std::abort();
  return 0;
}
