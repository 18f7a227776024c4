#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace tgx {

/// The fields between the delimiters, empty ones included, but for an empty one at the end.
inline void SplitString(const std::string& text, char delimiter, std::vector<std::string>& fields) {
  fields.clear();
  std::istringstream stream(text);
  for (std::string field; std::getline(stream, field, delimiter);) fields.push_back(field);
}

}  // namespace tgx
