#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>

namespace tgx::host {

class Document;

struct SaveOptions {
  bool linearize = false;
  bool deterministic = false;  ///< the same input gives the same bytes; refused for encrypted output
  bool decrypt = false;        ///< write without the input's encryption, which is otherwise kept
};

/// Bytes from malloc, so that they can be handed to a C caller.
struct MallocBytes {
  struct Free {
    void operator()(char* memory) const noexcept { std::free(memory); }
  };
  std::unique_ptr<char, Free> data;
  std::size_t size = 0;
};

/// Write a document, which stays open and can be edited and saved again. Streams that nobody replaced keep their bytes,
/// object streams their objects, and encryption its keys and permissions. The file being written may be the one that the
/// document was opened from. Throws kASFileError, and then the target is as it was; kASNotSupported for a deterministic
/// encrypted file.
void SaveFile(Document& document, const std::string& path, const SaveOptions& options);
MallocBytes SaveMemory(Document& document, const SaveOptions& options);

}  // namespace tgx::host
