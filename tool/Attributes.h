#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include <tgx/host.h>
#include <nlohmann/json.hpp>

namespace tgx::tool {

/// How much may still be read of one document. What elements share is read for each of them, so that a small file could
/// otherwise ask for more than there is memory.
class ReadingBudget {
 public:
  /// Throw HostFailure when it is spent.
  void SpendValues(std::size_t count);
  void SpendBytes(std::size_t count);

 private:
  std::size_t values_ = 10'000'000;
  std::size_t bytes_ = 256U << 20U;
};

/// The attribute dictionaries of an element's "A" (one dictionary, or an array of them with revision numbers in between) as
/// an array of objects. What is nested deeper than attributes are, or larger, is left out.
nlohmann::ordered_json ReadAttributes(CosObj attributes, ReadingBudget& budget);

/// A string entry of a dictionary as UTF-8; nothing if it is not there or no string.
std::optional<std::string> StringEntry(CosObj dictionary, const char* key);

}  // namespace tgx::tool
