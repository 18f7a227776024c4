#pragma once

#include <string>
#include <string_view>

namespace tgx::tool {

/// A PDF text string as UTF-8: UTF-16 with a mark of either byte order, UTF-8 with a mark, else PDFDocEncoding. What maps to
/// nothing becomes U+FFFD.
std::string DecodeTextString(std::string_view bytes);

/// A PDF name as UTF-8: kept where it is UTF-8 already, else read as PDFDocEncoding.
std::string DecodeName(std::string_view bytes);

/// Well-formed UTF-8 as a PDF text string: UTF-16BE with its mark.
std::string EncodeUtf16(std::string_view utf8);

bool IsUtf8(std::string_view bytes);

/// A text of any bytes on one line and without anything that a terminal would act on: control characters and bytes that are
/// no UTF-8 become \xNN, as in the host's messages.
std::string OneLine(std::string_view text);

/// `text` with what a terminal would act on escaped, cut to `limit` characters with an ellipsis.
std::string ForTerminal(std::string_view utf8, std::size_t limit);

}  // namespace tgx::tool
