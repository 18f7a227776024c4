#include "host/pdmodel/PageBoxes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "host/core/Fixed.h"
#include "host/cos/Numbers.h"

namespace tgx::host {
namespace {

constexpr int kDeepestTree = 512;

struct Box {
  double left, bottom, right, top;
  bool IsEmpty() const { return left >= right || bottom >= top; }
};

constexpr Box kLetter = {0, 0, 612, 792};

std::optional<Box> BoxFrom(QPDFObjectHandle value) {
  std::array<double, 4> numbers{};
  if (!value.isArray() || value.getArrayNItems() < static_cast<int>(numbers.size())) return std::nullopt;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const QPDFObjectHandle item = value.getArrayItem(static_cast<int>(i));
    if (!QPDFObjectHandle(item).isNumber()) return std::nullopt;
    numbers[i] = NumberOf(item);
  }
  const auto [left, right] = std::minmax(numbers[0], numbers[2]);
  const auto [bottom, top] = std::minmax(numbers[1], numbers[3]);
  const Box box = {left, bottom, right, top};
  return box.IsEmpty() ? std::nullopt : std::optional<Box>(box);
}

/// The box of the page or of the nearest node above it that has a usable one.
std::optional<Box> InheritedBox(const QPDFObjectHandle& page, const char* key) {
  QPDFObjectHandle node = page;
  for (int level = 0; level < kDeepestTree && node.isDictionary(); ++level) {
    if (const auto box = BoxFrom(node.getKey(key))) return box;
    node = node.getKey("/Parent");
  }
  return std::nullopt;
}

}  // namespace

ASFixedRect CropBoxOf(const QPDFObjectHandle& page) {
  const Box media = InheritedBox(page, "/MediaBox").value_or(kLetter);
  Box box = InheritedBox(page, "/CropBox").value_or(media);
  box = {std::max(box.left, media.left), std::max(box.bottom, media.bottom), std::min(box.right, media.right),
         std::min(box.top, media.top)};
  if (box.IsEmpty()) box = media;
  return {ToFixed(box.left), ToFixed(box.top), ToFixed(box.right), ToFixed(box.bottom)};
}

}  // namespace tgx::host
