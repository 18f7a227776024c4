#include "src/actions/Toc/TocMetaData.h"

namespace tgx {
namespace {

using tinyxml2::XMLElement;

std::string TextOrEmpty(const char* text) { return text == nullptr ? std::string() : std::string(text); }

TocStyle ReadStyle(const XMLElement* element) {
  if (element == nullptr) return {};
  return {element->IntAttribute("id", 0), TextOrEmpty(element->Attribute("name")),
          TextOrEmpty(element->Attribute("location")), TextOrEmpty(element->Attribute("path"))};
}

TocEntry ReadEntry(const XMLElement& element) {
  TocEntry entry;
  entry.level = element.IntAttribute("level", 0);
  entry.sourceStyle = ReadStyle(element.FirstChildElement("TOC_EntrySourceStyle"));
  entry.entryStyle = ReadStyle(element.FirstChildElement("TOC_EntryStyle"));
  for (const auto* text = element.FirstChildElement("TOC_EntryText"); text != nullptr; text = text->NextSiblingElement()) {
    entry.texts.push_back(TextOrEmpty(text->GetText()));
  }
  return entry;
}

TocItem ReadItem(const XMLElement& element) {
  TocItem item;
  item.name = TextOrEmpty(element.Attribute("name"));
  item.title = TextOrEmpty(element.Attribute("title"));
  item.isDefault = element.IntAttribute("default", 0) != 0;
  for (const auto* entry = element.FirstChildElement("TOC_Entry"); entry != nullptr; entry = entry->NextSiblingElement()) {
    item.entries.push_back(ReadEntry(*entry));
  }
  return item;
}

}  // namespace

std::vector<TocItem> ReadTocItems(const tinyxml2::XMLDocument& file) {
  std::vector<TocItem> items;
  for (const auto* item = file.FirstChildElement("TOC_Item"); item != nullptr; item = item->NextSiblingElement()) {
    items.push_back(ReadItem(*item));
  }
  return items;
}

}  // namespace tgx
