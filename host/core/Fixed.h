#pragma once

#include <cmath>
#include <limits>

#include <tgx/host.h>

namespace tgx::host {

/// The one conversion to 16.16 of the whole host, so that equal coordinates give equal values whichever operation computed
/// them: halves away from zero, saturating; not-a-number gives 0.
inline ASFixed ToFixed(double value) {
  if (std::isnan(value)) return 0;
  const double scaled = std::round(value * 65536.0);
  constexpr auto kLow = std::numeric_limits<ASFixed>::min();
  constexpr auto kHigh = std::numeric_limits<ASFixed>::max();
  if (scaled <= static_cast<double>(kLow)) return kLow;
  if (scaled >= static_cast<double>(kHigh)) return kHigh;
  return static_cast<ASFixed>(scaled);
}

inline double FromFixed(ASFixed value) { return value / 65536.0; }

}  // namespace tgx::host
