#include "host/pdmodel/Save.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFWriter.hh>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/AtomicFile.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"
#include "host/pdmodel/Source.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {
namespace {

/// The end of qpdf's pipeline. qpdf ends its pipelines in destructors, so nothing may be thrown into them: the first failure
/// is kept, what comes after it is dropped, and Check throws it once qpdf is done.
class Sink : public Pipeline {
 public:
  explicit Sink(const char* name) : Pipeline(name, nullptr) {}

  void write(unsigned char const* data, std::size_t length) final {
    Keep([&] { Take({reinterpret_cast<const char*>(data), length}); });
  }
  void finish() final {
    Keep([&] { Flush(); });
  }
  void Check() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 protected:
  virtual void Take(std::string_view bytes) = 0;
  virtual void Flush() = 0;

 private:
  template <typename Work>
  void Keep(Work&& work) noexcept {
    if (failure_) return;
    try {
      work();
    } catch (...) {
      failure_ = std::current_exception();
    }
  }

  std::exception_ptr failure_;
};

/// qpdf writes a few bytes at a time; they are gathered here.
class FileSink : public Sink {
 public:
  explicit FileSink(AtomicFile& file) : Sink("file"), file_(file) { gathered_.reserve(kCapacity); }

 protected:
  void Take(std::string_view bytes) override {
    if (gathered_.size() + bytes.size() > kCapacity) Flush();
    if (bytes.size() > kCapacity) {
      file_.Write(bytes);
    } else {
      gathered_ += bytes;
    }
  }
  void Flush() override {
    file_.Write(gathered_);
    gathered_.clear();
  }

 private:
  static constexpr std::size_t kCapacity = 1 << 17;

  AtomicFile& file_;
  std::string gathered_;
};

class MemorySink : public Sink {
 public:
  explicit MemorySink(MallocBytes& bytes) : Sink("memory"), bytes_(bytes) {}

 protected:
  void Take(std::string_view bytes) override {
    if (capacity_ - bytes_.size < bytes.size()) Grow(bytes.size());
    if (!bytes.empty()) std::memcpy(bytes_.data.get() + bytes_.size, bytes.data(), bytes.size());
    bytes_.size += bytes.size();
  }
  void Flush() override {}

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
  if (document.From() != nullptr) document.From()->AllowOnePass();
  document.Contents().WriteCommitted();
  if (document.IsChanged()) document.Structure().PrepareForSaving();
  document.Names().Settle();
  document.Pages().Refresh();
}

void CheckOptions(Document& document, const SaveOptions& options) {
  if (options.deterministic && !options.decrypt && document.Pdf().isEncrypted()) {
    throw HostError(
        kASNotSupported,
        document.Name() + ": an encrypted file cannot be written deterministically; its encryption would have to go");
  }
}

void Write(Document& document, const SaveOptions& options, Sink& sink) {
  QPDFWriter writer(document.Pdf());
  writer.setOutputPipeline(&sink);
  writer.setStreamDataMode(qpdf_s_preserve);
  writer.setObjectStreamMode(qpdf_o_preserve);
  writer.setPreserveEncryption(!options.decrypt);
  writer.setLinearization(options.linearize);
  writer.setDeterministicID(options.deterministic);
  writer.write();
  sink.Check();
  if (document.From() != nullptr) document.From()->ThrowFailure();
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
