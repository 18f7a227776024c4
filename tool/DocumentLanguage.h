#pragma once

#include <optional>
#include <string>

#include <tgx/host.h>

namespace tgx::tool {

/// Keeps all text in its language while main-language gives the topmost "Document" the language of most of the text that
/// has one: without it, text in the language of the document, for which no element says so, would be of another language
/// afterwards.
class DocumentLanguage {
 public:
  /// Writes the document's own language on a "Document" that has none, so that its texts count for it. Throws HostFailure.
  explicit DocumentLanguage(PDDoc document);

  /// Where "Document" has another language now, writes the former one on the elements in it that have none.
  void KeepForKids() const;

  /// As readers see it: of "Document", else of the document itself, as UTF-8. Empty without any.
  static std::string Of(PDDoc document);

 private:
  std::optional<PDSElement> top_;
  std::string language_;  ///< as stored
};

}  // namespace tgx::tool
