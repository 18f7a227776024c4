#pragma once

#include <string>
#include <string_view>

namespace tgx::host {

/// A number as content has it: no exponent, ten significant digits, no zeros at the end of a fraction.
std::string FormatNumber(double value);

/// A name with its slash, escaped where PDF wants it.
std::string FormatName(std::string_view name);

/// A hexadecimal string.
std::string FormatHex(std::string_view bytes);

}  // namespace tgx::host
