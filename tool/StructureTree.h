#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <tgx/host.h>
#include <nlohmann/json.hpp>

namespace tgx::tool {

using Json = nlohmann::ordered_json;

struct Element;

/// Marked content of a page; `page` counts from 1, 0 where the kid leads to no page.
struct MarkedContent {
  std::int32_t mcid;
  std::int32_t page;
  std::optional<std::string> text = std::nullopt;  ///< that it shows, where it was asked for and the page has the content
  bool ofStream = false;                           ///< of a form that the page shows: the number counts within that
};

/// An object of a page, as an annotation. `type` is its subtype, else its type, else empty.
struct ObjectReference {
  std::string type;
  std::int32_t page;
};

/// A kid of no known kind, by the type that it claims.
struct UnknownKid {
  std::string type;
};

using Kid = std::variant<std::unique_ptr<Element>, MarkedContent, ObjectReference, UnknownKid>;

/// A structure element, all texts in UTF-8.
struct Element {
  std::string type;
  std::string role;  ///< where the role map leads from `type`; `type` itself where it has no entry
  std::optional<std::string> title, alt, actualText, lang, id;
  Json attributes = Json::array();  ///< one object for each attribute dictionary
  bool repeated = false;            ///< stands in the tree a second time; its kids are listed at the first
  std::vector<Kid> kids;
};

struct StructureTree {
  bool present = false;
  std::optional<std::string> lang;  ///< of the document
  std::vector<std::pair<std::string, std::string>> roleMap;
  std::vector<Kid> kids;
  std::size_t depth = 0;  ///< levels of elements
};

/// Reads the whole structure tree through the host, with the texts of the pages on request. Throws HostFailure where the
/// host refuses the tree.
StructureTree ReadStructureTree(PDDoc document, bool withTexts);

}  // namespace tgx::tool
