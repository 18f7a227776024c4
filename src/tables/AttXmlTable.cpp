#include "src/tables/AttXmlTable.h"

#include <tinyxml2.h>

namespace tgx {
namespace {

template <typename Object>
void ReadChildren(const tinyxml2::XMLElement& element, const char* name, std::vector<std::unique_ptr<Object>>& objects) {
  for (const auto* child = element.FirstChildElement(name); child != nullptr; child = child->NextSiblingElement(name)) {
    objects.push_back(std::make_unique<Object>());
    objects.back()->read(*child);
  }
}

template <typename Object>
void WriteChildren(tinyxml2::XMLElement& element, const char* name, const std::vector<std::unique_ptr<Object>>& objects) {
  for (const auto& object : objects) object->write(*element.InsertNewChildElement(name));
}

template <typename Object>
std::vector<Object*> Pointers(const std::vector<std::unique_ptr<Object>>& objects) {
  std::vector<Object*> pointers;
  pointers.reserve(objects.size());
  for (const auto& object : objects) pointers.push_back(object.get());
  return pointers;
}

}  // namespace

void ATT_XmlObject::read(const tinyxml2::XMLElement&) {}
void ATT_XmlObject::write(tinyxml2::XMLElement&) const {}

void ATT_XmlTable::read(const tinyxml2::XMLElement& element) { index = element.IntAttribute("index", 0); }

void ATT_XmlTable::write(tinyxml2::XMLElement& element) const {
  element.SetAttribute("type", getType());
  element.SetAttribute("index", index);
}

void ATT_QthXmlTable::read(const tinyxml2::XMLElement& element) {
  ATT_XmlTable::read(element);
  rows = element.IntAttribute("rows", 0);
  cols = element.IntAttribute("cols", 0);
}

void ATT_QthXmlTable::write(tinyxml2::XMLElement& element) const {
  ATT_XmlTable::write(element);
  element.SetAttribute("cols", cols);
  element.SetAttribute("rows", rows);
}

void ATT_SthXmlTable::read(const tinyxml2::XMLElement& element) {
  ATT_XmlTable::read(element);
  ReadChildren(element, "Row", rows);
}

void ATT_SthXmlTable::write(tinyxml2::XMLElement& element) const {
  ATT_XmlTable::write(element);
  WriteChildren(element, "Row", rows);
}

std::vector<ATT_SthXmlTableRow*> ATT_SthXmlTable::getRows() const { return Pointers(rows); }

void ATT_SthXmlTableRow::read(const tinyxml2::XMLElement& element) {
  index = element.IntAttribute("index", 0);
  ReadChildren(element, "Cell", cells);
}

void ATT_SthXmlTableRow::write(tinyxml2::XMLElement& element) const {
  element.SetAttribute("index", index);
  WriteChildren(element, "Cell", cells);
}

std::vector<ATT_SthXmlTableCell*> ATT_SthXmlTableRow::getCells() const { return Pointers(cells); }

void ATT_SthXmlTableCell::read(const tinyxml2::XMLElement& element) {
  type = element.IntAttribute("type", 0);
  row = element.IntAttribute("row", 0);
  index = element.IntAttribute("index", 0);
  ReadChildren(element, "Cell", cells);
}

void ATT_SthXmlTableCell::write(tinyxml2::XMLElement& element) const {
  element.SetAttribute("type", type);
  element.SetAttribute("row", row);
  element.SetAttribute("index", index);
  WriteChildren(element, "Cell", cells);
}

std::vector<ATT_SthXmlTableCell*> ATT_SthXmlTableCell::getCells() const { return Pointers(cells); }

std::unique_ptr<ATT_XmlTable> createTable(std::int32_t type) {
  switch (static_cast<AttTableType>(type)) {
    case AttTableType::IdentifiedHeaders:
      return std::make_unique<ATT_IdhXmlTable>();
    case AttTableType::CountedHeaders:
      return std::make_unique<ATT_QthXmlTable>();
    case AttTableType::DescribedCells:
      return std::make_unique<ATT_SthXmlTable>();
    case AttTableType::Layout:
      return std::make_unique<ATT_LayoutXmlTable>();
  }
  return nullptr;
}

}  // namespace tgx
