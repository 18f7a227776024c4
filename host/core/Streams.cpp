#include "host/core/Streams.h"

#include "host/core/HandleTable.h"

namespace tgx::host {
namespace {

HandleTable<ASStm, ByteStream>& OpenStreams() {
  static HandleTable<ASStm, ByteStream> streams(3, "stream");
  return streams;
}

}  // namespace

std::string_view ByteStream::Rest() const {
  if (data_ == nullptr || data_->getSize() == position_) return {};
  return std::string_view(reinterpret_cast<const char*>(data_->getBuffer()), data_->getSize()).substr(position_);
}

ASStm OpenStream(std::shared_ptr<Buffer> data) { return OpenStreams().Add(std::make_unique<ByteStream>(std::move(data))); }

ByteStream& StreamOf(ASStm stream) { return OpenStreams().Of(stream); }

void CloseStream(ASStm stream) {
  StreamOf(stream);
  OpenStreams().Remove(stream);
}

}  // namespace tgx::host
