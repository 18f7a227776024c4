#include "host/pdfedit/fonts/FontDescriptor.h"

#include <algorithm>
#include <cmath>

namespace tgx::host {
namespace {

constexpr double kUsualAscent = 0.95;
constexpr double kUsualDescent = -0.35;
constexpr double kLargestReach = 1.9;  // in ems; fonts that claim more do not know

bool IsPlausible(double reach) { return reach != 0 && std::abs(reach) < kLargestReach; }

std::optional<double> Reach(QPDFObjectHandle descriptor, const char* key) {
  const std::optional<double> value = NumberIn(descriptor.getKey(key));
  if (!value || !IsPlausible(*value / 1000)) return std::nullopt;
  return *value / 1000;
}

}  // namespace

std::optional<double> NumberIn(QPDFObjectHandle object) {
  if (!object.isNumber()) return std::nullopt;
  const double value = object.getNumericValue();
  constexpr double kBeyondReason = 1e9;
  return std::isfinite(value) && std::abs(value) < kBeyondReason ? std::optional(value) : std::nullopt;
}

long long IntegerIn(QPDFObjectHandle dictionary, const char* key, long long fallback) {
  const std::optional<double> number = NumberIn(dictionary.getKey(key));
  return number ? static_cast<long long>(*number) : fallback;
}

std::optional<FontBox> ReadFontBox(QPDFObjectHandle array) {
  if (!array.isArray() || array.getArrayNItems() < 4) return std::nullopt;
  double values[4] = {};
  for (int i = 0; i < 4; ++i) {
    const std::optional<double> value = NumberIn(array.getArrayItem(i));
    if (!value) return std::nullopt;
    values[i] = *value;
  }
  return FontBox{std::min(values[0], values[2]), std::min(values[1], values[3]), std::max(values[0], values[2]),
                 std::max(values[1], values[3])};
}

FontExtent ReadFontExtent(QPDFObjectHandle descriptor, const std::optional<StandardFont>& standardFont) {
  FontExtent extent = {kUsualAscent, kUsualDescent};
  if (standardFont) extent = {standardFont->Ascent(), standardFont->Descent()};
  if (!descriptor.isDictionary()) return extent;
  if (const std::optional<FontBox> box = ReadFontBox(descriptor.getKey("/FontBBox"))) {
    // The box is around every glyph of the font, accents upon accents, and so higher than its lines of text.
    if (box->top > 0 && IsPlausible(box->top / 1000)) extent.ascent = std::min(box->top / 1000, kUsualAscent);
    if (box->bottom < 0 && IsPlausible(box->bottom / 1000)) extent.descent = std::max(box->bottom / 1000, kUsualDescent);
  }
  // Both are written with the wrong sign now and then.
  if (const std::optional<double> ascent = Reach(descriptor, "/Ascent")) extent.ascent = std::abs(*ascent);
  if (const std::optional<double> descent = Reach(descriptor, "/Descent")) extent.descent = -std::abs(*descent);
  return extent;
}

}  // namespace tgx::host
