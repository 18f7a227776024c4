#pragma once

#include <optional>
#include <string>

#include <tgx/host.h>
#include <nlohmann/json.hpp>

namespace tgx::tool {

/// The attribute dictionaries of an element's "A" (one dictionary, or an array of them with revision numbers in between) as
/// an array of objects. What is nested deeper than attributes are, or larger, is left out.
nlohmann::ordered_json ReadAttributes(CosObj attributes);

/// A string entry of a dictionary as UTF-8; nothing if it is not there or no string.
std::optional<std::string> StringEntry(CosObj dictionary, const char* key);

}  // namespace tgx::tool
