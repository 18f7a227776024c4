#include "host/pdfedit/fonts/CidMetrics.h"

#include <array>
#include <optional>

#include "host/pdfedit/fonts/FontDescriptor.h"

namespace tgx::host {
namespace {

constexpr double kUnit = 0.001;
constexpr long long kLargestCid = 0xFFFF;
// Arrays can be shared, so their size in the file is no bound.
constexpr int kMostEntries = 1 << 18;

/// Goes through an array of the forms `cid [n ...]` and `first last n` with `Size` numbers to an entry. Calls
/// `add(first, last, numbers)`; an entry with something else among its numbers is left out, and what fits neither form is
/// passed over.
template <std::size_t Size, typename Add>
void ReadMetrics(QPDFObjectHandle array, Add add) {
  if (!array.isArray()) return;
  const int count = array.getArrayNItems();
  int entries = 0;
  auto read = [&](QPDFObjectHandle from, int at, long long first, long long last) {
    if (++entries > kMostEntries) return;
    std::array<double, Size> numbers = {};
    for (std::size_t i = 0; i < Size; ++i) {
      const std::optional<double> number = NumberIn(from.getArrayItem(at + static_cast<int>(i)));
      if (!number) return;
      numbers[i] = *number * kUnit;
    }
    if (first < 0 || first > last || first > kLargestCid) return;
    add(static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(std::min(last, kLargestCid)), numbers);
  };
  constexpr int kSize = static_cast<int>(Size);
  for (int i = 0; i + 1 < count && entries <= kMostEntries;) {
    const std::optional<double> first = NumberIn(array.getArrayItem(i));
    QPDFObjectHandle next = array.getArrayItem(i + 1);
    if (first && next.isArray()) {
      const int length = next.getArrayNItems();
      const auto cid = static_cast<long long>(*first);
      for (int j = 0; j + kSize <= length && entries <= kMostEntries; j += kSize)
        read(next, j, cid + j / kSize, cid + j / kSize);
      i += 2;
    } else if (first && next.isNumber() && i + 1 + kSize < count) {
      read(array, i + 2, static_cast<long long>(*first), static_cast<long long>(NumberIn(next).value_or(-1)));
      i += 2 + kSize;
    } else {
      ++i;
    }
  }
}

}  // namespace

CidMetrics::CidMetrics(QPDFObjectHandle font, bool isVertical)
    : defaultWidth_(NumberIn(font.getKey("/DW")).value_or(1000) * kUnit) {
  ReadMetrics<1>(font.getKey("/W"), [this](std::uint32_t first, std::uint32_t last, const std::array<double, 1>& numbers) {
    widths_.Add(first, last, numbers[0]);
  });
  widths_.Seal();
  if (!isVertical) return;

  QPDFObjectHandle defaults = font.getKey("/DW2");
  if (defaults.isArray() && defaults.getArrayNItems() >= 2) {
    defaultOriginY_ = NumberIn(defaults.getArrayItem(0)).value_or(defaultOriginY_ / kUnit) * kUnit;
    defaultAdvance_ = NumberIn(defaults.getArrayItem(1)).value_or(defaultAdvance_ / kUnit) * kUnit;
  }
  ReadMetrics<3>(font.getKey("/W2"), [this](std::uint32_t first, std::uint32_t last, const std::array<double, 3>& numbers) {
    verticals_.Add(first, last, {numbers[0], {numbers[1], numbers[2]}});
  });
  verticals_.Seal();
}

double CidMetrics::Width(std::uint32_t cid) const {
  const double* width = widths_.Find(cid);
  return width != nullptr ? *width : defaultWidth_;
}

double CidMetrics::VerticalAdvance(std::uint32_t cid) const {
  const Vertical* vertical = verticals_.Find(cid);
  return vertical != nullptr ? vertical->advance : defaultAdvance_;
}

Font::Vector CidMetrics::VerticalOrigin(std::uint32_t cid) const {
  const Vertical* vertical = verticals_.Find(cid);
  return vertical != nullptr ? vertical->origin : Font::Vector{Width(cid) / 2, defaultOriginY_};
}

}  // namespace tgx::host
