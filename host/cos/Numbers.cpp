#include "host/cos/Numbers.h"

#include <array>
#include <charconv>
#include <limits>
#include <string_view>

#include "host/core/Fixed.h"

namespace tgx::host {
namespace {

/// The locale of the process has no say in PDF syntax, so neither strtod nor printf will do.
double ParseReal(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  static_cast<void>(end);
  if (error == std::errc::result_out_of_range) {
    // Too large for a double, or too close to zero: the first digit tells which.
    const auto digit = text.find_first_not_of("-0");
    const bool isLarge = digit != std::string_view::npos && text[digit] != '.';
    const double limit = isLarge ? std::numeric_limits<double>::max() : 0.0;
    return text.starts_with('-') ? -limit : limit;
  }
  return value;
}

template <typename... Format>
std::string ToText(Format... format) {
  std::array<char, 400> digits{};  // more than the 309 digits before the point of a double
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), format...);
  static_cast<void>(error);
  return {digits.data(), end};
}

}  // namespace

double NumberOf(const QPDFObjectHandle& object) {
  QPDFObjectHandle number = object;
  if (number.isInteger()) return static_cast<double>(number.getIntValue());
  return number.isReal() ? ParseReal(number.getRealValue()) : 0.0;
}

std::string RealText(ASFixed value) {
  // Half a unit is 0.0000076, so the nearest decimal of five places always converts back.
  constexpr int kMostPlaces = 5;
  for (int places = 1; places < kMostPlaces; ++places) {
    std::string text = ToText(FromFixed(value), std::chars_format::fixed, places);
    if (ToFixed(ParseReal(text)) == value) return text;
  }
  return ToText(FromFixed(value), std::chars_format::fixed, kMostPlaces);
}

std::string RealText(float value) {
  std::string text = ToText(value, std::chars_format::fixed);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace tgx::host
