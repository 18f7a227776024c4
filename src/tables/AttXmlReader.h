#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "src/tables/AttXmlTable.h"

namespace tgx {

/// Reads the XML description of tables. Text that is not well-formed, or without a top-level "Tables", or with tables of
/// unknown types, just gives fewer objects, and none at all where it is more than IsTooMuchXml allows: what a wrong number
/// of them means is the caller's to decide.
class ATT_XmlReader {
 public:
  /// Appends an object for each known "Table" of the first top-level "Tables", in document order. `bytes` need no
  /// terminator.
  void parseTables(const char* bytes, std::int32_t length, std::vector<std::unique_ptr<ATT_XmlTable>>& tables) const;
};

}  // namespace tgx
