#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <tinyxml2.h>

namespace tgx {

/// A paragraph style as an exporter names it. Read, and used for nothing.
struct TocStyle {
  std::int32_t id = 0;
  std::string name;
  std::string location;
  std::string path;
};

/// A line of a table of contents.
struct TocEntry {
  std::int32_t level = 0;  ///< 1 for the outermost
  TocStyle sourceStyle;
  TocStyle entryStyle;
  std::vector<std::string> texts;  ///< any of which stands in the line
};

/// A table of contents.
struct TocItem {
  std::string name;
  std::string title;  ///< as it stands on the page
  bool isDefault = false;
  std::vector<TocEntry> entries;
};

/// The tables of contents that an exporter's file describes. Texts are UTF-8; a missing text is empty, a missing number 0.
/// The first item, entry and text goes by its name, what follows it counts whatever its name is.
std::vector<TocItem> ReadTocItems(const tinyxml2::XMLDocument& file);

}  // namespace tgx
