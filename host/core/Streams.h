#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <tgx/host.h>
#include <qpdf/Buffer.hh>

namespace tgx::host {

/// What an ASStm names: bytes of a stream, decoded or as stored, read from front to back. It holds the bytes itself, so it
/// outlives the document that it was opened on.
class ByteStream {
 public:
  explicit ByteStream(std::shared_ptr<Buffer> data) : data_(std::move(data)) {}

  /// The bytes that have not been read yet.
  std::string_view Rest() const;

  /// Passes over bytes; `count` is at most the size of the rest.
  void Skip(std::size_t count) { position_ += count; }

 private:
  std::shared_ptr<Buffer> data_;
  std::size_t position_ = 0;
};

ASStm OpenStream(std::shared_ptr<Buffer> data);

/// Throws kASBadParameter for anything but an open stream.
ByteStream& StreamOf(ASStm stream);
void CloseStream(ASStm stream);

}  // namespace tgx::host
