#pragma once

#include <string>

namespace tgx::bench {

/// The characters of well-formed UTF-8.
std::u32string CharactersOf(const std::string& utf8);

/// UTF-8 as UTF-16BE, with a byte-order mark or without.
std::string Utf16Of(const std::string& utf8, bool mark = true);

std::string HexOf(const std::string& bytes);
std::string Base64Of(const std::string& bytes);

}  // namespace tgx::bench
