#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tgx::host {

/// What is known of a predefined CMap without its data.
struct PredefinedCMap {
  std::string_view name;
  std::string_view collection;  ///< "Adobe-Japan1" and so on
  bool isVertical;
  std::string_view codeSpaces;  ///< pairs of hexadecimal strings
};

/// The CMap of that name (without slash), null if there is none. "Identity-H" and "Identity-V" are not among them.
const PredefinedCMap* FindPredefinedCMap(std::string_view name);

/// The text of a CMap resource of the system: a predefined CMap, or a map from the CIDs of a collection to Unicode such as
/// "Adobe-Japan1-UCS2". Nothing when the system has no such data. Reads only plain names below the folder of CMaps.
std::optional<std::string> ReadCMapResource(std::string_view collection, std::string_view name);

/// The collection in whose folder a resource named like `name` would stand; empty if that cannot be told.
std::string_view CollectionOfResource(std::string_view name);

}  // namespace tgx::host
