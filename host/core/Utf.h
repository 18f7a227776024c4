#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tgx::host {

/// The code units of UTF-8 text. Each ill-formed sequence becomes one U+FFFD; a mark at the start is an ordinary character.
std::u16string Utf8ToUtf16(std::string_view text);

/// UTF-8 of code units. Lone surrogates become U+FFFD.
std::string Utf16ToUtf8(std::u16string_view units);

/// Code units of big-endian bytes; an odd last byte is left out.
std::u16string Utf16FromBigEndian(std::string_view bytes);

/// Big-endian bytes of code units, without a mark.
std::string Utf16ToBigEndian(std::u16string_view units);

/// Code units of text in PDFDocEncoding; undefined codes become U+FFFD.
std::u16string PdfDocToUtf16(std::string_view bytes);

/// The length of the well-formed UTF-8 sequence at the front of `text`; 0 if there is none.
std::size_t Utf8SequenceLength(std::string_view text);

/// The longest beginning of `text` that has at most `size` bytes and does not end inside a UTF-8 sequence.
std::string_view CutUtf8(std::string_view text, std::size_t size);

/// `text` itself when it is well-formed UTF-8, else with U+FFFD in the place of what is not.
std::string WellFormedUtf8(std::string text);

}  // namespace tgx::host
