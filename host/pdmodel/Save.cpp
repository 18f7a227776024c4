#include "host/pdmodel/Save.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFWriter.hh>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/AtomicFile.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {
namespace {

/// The end of qpdf's pipeline. qpdf writes a few bytes at a time; they are gathered here.
class FileSink : public Pipeline {
 public:
  explicit FileSink(AtomicFile& file) : Pipeline("file", nullptr), file_(file) { gathered_.reserve(kCapacity); }

  void write(unsigned char const* data, std::size_t length) override {
    if (gathered_.size() + length > kCapacity) Flush();
    const std::string_view bytes(reinterpret_cast<const char*>(data), length);
    if (length > kCapacity) {
      file_.Write(bytes);
    } else {
      gathered_ += bytes;
    }
  }
  void finish() override { Flush(); }

 private:
  static constexpr std::size_t kCapacity = 1 << 17;

  void Flush() {
    file_.Write(gathered_);
    gathered_.clear();
  }

  AtomicFile& file_;
  std::string gathered_;
};

class MemorySink : public Pipeline {
 public:
  explicit MemorySink(MallocBytes& bytes) : Pipeline("memory", nullptr), bytes_(bytes) {}

  void write(unsigned char const* data, std::size_t length) override {
    if (capacity_ - bytes_.size < length) Grow(length);
    if (length > 0) std::memcpy(bytes_.data.get() + bytes_.size, data, length);
    bytes_.size += length;
  }
  void finish() override {}

 private:
  void Grow(std::size_t length) {
    const std::size_t capacity = std::max(bytes_.size + length, 2 * capacity_);
    char* larger = static_cast<char*>(std::realloc(bytes_.data.get(), capacity));
    if (larger == nullptr) throw std::bad_alloc();
    static_cast<void>(bytes_.data.release());
    bytes_.data.reset(larger);
    capacity_ = capacity;
  }

  MallocBytes& bytes_;
  std::size_t capacity_ = 0;
};

/// Brings the models' edits into the objects that are about to be written.
void Settle(Document& document) {
  document.Contents().WriteCommitted();
  if (document.IsChanged()) document.Structure().PrepareForSaving();
}

void CheckOptions(Document& document, const SaveOptions& options) {
  if (options.deterministic && !options.decrypt && document.Pdf().isEncrypted()) {
    throw HostError(
        kASNotSupported,
        document.Name() + ": an encrypted file cannot be written deterministically; its encryption would have to go");
  }
}

void Write(Document& document, const SaveOptions& options, Pipeline& sink) {
  QPDFWriter writer(document.Pdf());
  writer.setOutputPipeline(&sink);
  writer.setStreamDataMode(qpdf_s_preserve);
  writer.setObjectStreamMode(qpdf_o_preserve);
  writer.setPreserveEncryption(!options.decrypt);
  writer.setLinearization(options.linearize);
  writer.setDeterministicID(options.deterministic);
  writer.write();
}

}  // namespace

void SaveFile(Document& document, const std::string& path, const SaveOptions& options) {
  CheckOptions(document, options);
  Settle(document);
  AtomicFile file(path);
  FileSink sink(file);
  Write(document, options, sink);
  file.Commit();
}

MallocBytes SaveMemory(Document& document, const SaveOptions& options) {
  CheckOptions(document, options);
  Settle(document);
  MallocBytes bytes;
  MemorySink sink(bytes);
  Write(document, options, sink);
  return bytes;
}

}  // namespace tgx::host
