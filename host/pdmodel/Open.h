#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tgx::host {

class Document;

struct OpenOptions {
  bool repair = true;                   ///< let qpdf rebuild what a damaged file has lost
  std::optional<std::string> password;  ///< the user's or the owner's; without one only the empty password is tried
};

/// Open a document. The file may be replaced or removed while it is open, but not changed in place; bytes in memory are
/// copied. Throw kASFileError, kASDamagedDocument, kASBadPassword, kASNotSupported, with the name in the text.
Document& OpenFile(const std::string& path, const OpenOptions& options);
Document& OpenMemory(std::string_view bytes, const std::string& name, const OpenOptions& options);

}  // namespace tgx::host
