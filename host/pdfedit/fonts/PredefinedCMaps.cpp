#include "host/pdfedit/fonts/PredefinedCMaps.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>

namespace tgx::host {
namespace {

constexpr PredefinedCMap kPredefinedCMaps[] = {
#include "host/pdfedit/fonts/data/predefined_cmaps.inc"
};

constexpr std::string_view kCollections[] = {"Adobe-CNS1",   "Adobe-GB1",    "Adobe-Japan1",
                                             "Adobe-Japan2", "Adobe-Korea1", "Adobe-KR"};

bool IsPlainName(std::string_view name) {
  auto isPlain = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-'; };
  return !name.empty() && name.size() < 64 && std::all_of(name.begin(), name.end(), isPlain);
}

}  // namespace

const PredefinedCMap* FindPredefinedCMap(std::string_view name) {
  const auto* found = std::lower_bound(std::begin(kPredefinedCMaps), std::end(kPredefinedCMaps), name,
                                       [](const PredefinedCMap& entry, std::string_view key) { return entry.name < key; });
  return found != std::end(kPredefinedCMaps) && found->name == name ? found : nullptr;
}

std::string_view CollectionOfResource(std::string_view name) {
  if (const PredefinedCMap* known = FindPredefinedCMap(name)) return known->collection;
  for (const std::string_view collection : kCollections) {
    if (name.size() > collection.size() && name.starts_with(collection) && name[collection.size()] == '-') return collection;
  }
  return {};
}

std::optional<std::string> ReadCMapResource(std::string_view collection, std::string_view name) {
  constexpr std::size_t kLargestResource = std::size_t{16} << 20;
  const bool isKnown = std::find(std::begin(kCollections), std::end(kCollections), collection) != std::end(kCollections);
  if (!isKnown || !IsPlainName(name)) return std::nullopt;
  std::ifstream file(std::string(TGX_CMAP_FOLDER) + '/' + std::string(collection) + '/' + std::string(name),
                     std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file || text.empty() || text.size() > kLargestResource) return std::nullopt;
  return text;
}

}  // namespace tgx::host
