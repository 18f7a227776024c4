#pragma once

#include <cstdint>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/fonts/RangeTable.h"

namespace tgx::host {

/// The widths ("W", "DW") and vertical metrics ("W2", "DW2") of a CIDFont, in text space at size 1.
class CidMetrics {
 public:
  /// Reads them from a CIDFont dictionary; `isVertical` tells whether the vertical ones are wanted.
  CidMetrics(QPDFObjectHandle font, bool isVertical);

  double Width(std::uint32_t cid) const;
  /// Displacement along the vertical axis; negative is downward.
  double VerticalAdvance(std::uint32_t cid) const;
  /// From the horizontal origin to the vertical one.
  Font::Vector VerticalOrigin(std::uint32_t cid) const;

 private:
  struct Vertical {
    double advance;
    Font::Vector origin;
  };

  double defaultWidth_;
  double defaultOriginY_ = 0.88;
  double defaultAdvance_ = -1;
  RangeTable<double> widths_;
  RangeTable<Vertical> verticals_;
};

}  // namespace tgx::host
