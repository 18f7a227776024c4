#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tgx::host {

/// Where the parts of an inline image stand in its content stream.
struct InlineImage {
  std::size_t dictionaryBegin = 0;  ///< behind BI
  std::size_t dictionaryEnd = 0;    ///< in front of ID
  std::size_t dataBegin = 0;
  std::size_t dataEnd = 0;  ///< behind the last byte of data
  std::size_t end = 0;      ///< behind EI, or the end of the content where EI is missing

  std::string_view Dictionary(std::string_view content) const {
    return content.substr(dictionaryBegin, dictionaryEnd - dictionaryBegin);
  }
  std::string_view Data(std::string_view content) const { return content.substr(dataBegin, dataEnd - dataBegin); }
};

/// Finds the parts of the inline image whose BI ends at `position`; nothing when no ID follows the dictionary. The end of
/// the data is where the length entry, the size of the samples or the end of the compressed data puts it, provided that EI
/// stands there, and else the first EI that looks like an operator followed by more content.
std::optional<InlineImage> FindInlineImage(std::string_view content, std::size_t position);

}  // namespace tgx::host
