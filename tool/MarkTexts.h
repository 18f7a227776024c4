#pragma once

#include <cstddef>
#include <string>

#include <tgx/host.h>

namespace tgx::tool {

/// The library reads alternate texts and titles as UTF-16BE with a byte-order mark, and languages as plain bytes. Texts of
/// the structure tree that hold marks and are stored in PDFDocEncoding, UTF-8 or UTF-16LE are written anew that way, and so
/// are languages that are not plain. Gives how many. Throws HostFailure.
std::size_t RewriteMarkTexts(PDDoc document);

/// What takes the place of a text with marks; empty when it stays as it is.
std::string RewrittenText(const std::string& bytes);
/// The same for a language code and for a language with "[Lang=".
std::string RewrittenLanguage(const std::string& bytes);

}  // namespace tgx::tool
