#include "host/pdmodel/Save.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFWriter.hh>

#include "host/core/HostError.h"
#include "host/core/Paths.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/AtomicFile.h"
#include "host/pdmodel/DeepStack.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Encryption.h"
#include "host/pdmodel/PageList.h"
#include "host/pdmodel/SharedStreams.h"
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

void CheckOptions(Document& document, const SaveOptions& options) {
  if (options.deterministic && !options.decrypt && document.Pdf().isEncrypted()) {
    throw HostError(
        kASNotSupported,
        document.Name() + ": an encrypted file cannot be written deterministically; its encryption would have to go");
  }
}

/// qpdf would decode metadata in passing. Metadata with a crypt filter it must decode: it cannot take the filter away
/// otherwise.
void KeepMetadata(QPDF& pdf) {
  for (QPDFObjectHandle& object : pdf.getAllObjects()) {
    if (!object.isStream() || !object.getDict().isDictionaryOfType("/Metadata")) continue;
    if (!object.getDict().getKey("/Filter").isOrHasName("/Crypt")) object.setFilterOnWrite(false);
  }
}

/// qpdf takes over the first identifier of a file, and cannot where that is no string. Encryption goes by it, so only a file
/// without any loses it here.
void DropUnusableIdentifier(QPDF& pdf) {
  QPDFObjectHandle identifier = pdf.getTrailer().getKey("/ID");
  if (pdf.isEncrypted() || !identifier.isArray() || identifier.getArrayNItems() == 0) return;
  if (identifier.getArrayItem(0).isString()) return;
  pdf.getTrailer().removeKey("/ID");
  pdf.warn(
      QPDFExc(qpdf_e_damaged_pdf, pdf.getFilename(), "trailer", 0, "the file's identifier is no string: it gets a new one"));
}

/// Brings the models' edits into the objects that are about to be written.
void Settle(Document& document, const SaveOptions& options) {
  if (document.From() != nullptr) document.From()->AllowOnePass();
  document.Contents().WriteCommitted();
  if (document.IsChanged()) document.Structure().PrepareForSaving();
  document.Names().Settle();
  document.Pages().Refresh();
  KeepMetadata(document.Pdf());
  DropUnusableIdentifier(document.Pdf());
  if (!options.decrypt) KeepEncryption(document.Pdf(), document.Name());
}

void Configure(QPDFWriter& writer, Document& document, const SaveOptions& options) {
  writer.setStreamDataMode(qpdf_s_preserve);
  writer.setObjectStreamMode(qpdf_o_preserve);
  writer.setPreserveEncryption(!options.decrypt);
  writer.setLinearization(options.linearize);
  writer.setDeterministicID(options.deterministic);
  // The version of the file is the least that qpdf writes; "Alt" and "Lang" of structure elements came with 1.4.
  if (document.IsChanged() && document.Pdf().getRoot().hasKey("/StructTreeRoot")) writer.setMinimumPDFVersion("1.4");
}

/// Called a hundred times in the course of the writing, which would go on whatever became of the bytes.
void Run(QPDFWriter& writer, Sink& sink) {
  writer.setOutputPipeline(&sink);
  writer.registerProgressReporter(std::make_shared<QPDFWriter::FunctionProgressReporter>([&sink](int) { sink.Check(); }));
  writer.write();
  sink.Check();
}

/// qpdf finds out once for all which objects belong to which page. What was edited since then would be missing, so a
/// document is linearized a second time by way of a copy.
void WriteLinearizedCopy(Document& document, const SaveOptions& options, Sink& sink) {
  MallocBytes plain;
  MemorySink plainSink(plain);
  QPDFWriter plainWriter(document.Pdf());
  Configure(plainWriter, document, {false, options.deterministic, true});
  Run(plainWriter, plainSink);

  QPDF copy;
  copy.setSuppressWarnings(true);
  copy.processMemoryFile(document.Name().c_str(), plain.data.get(), plain.size);
  KeepMetadata(copy);
  QPDFWriter writer(copy);
  Configure(writer, document, options);
  if (!options.decrypt && document.Pdf().isEncrypted()) writer.copyEncryptionParameters(document.Pdf());
  Run(writer, sink);
  for (const QPDFExc& warning : copy.getWarnings()) document.Pdf().warn(warning);
}

void WriteLinearized(Document& document, const SaveOptions& options, Sink& sink) {
  if (document.HasBeenLinearized()) return WriteLinearizedCopy(document, options, sink);
  document.MarkLinearized();
  QPDFWriter writer(document.Pdf());
  Configure(writer, document, options);
  Run(writer, sink);
}

void WriteStandard(Document& document, const SaveOptions& options, Sink& sink) {
  QPDFWriter writer(document.Pdf());
  Configure(writer, document, options);
  Run(writer, sink);
}

/// Runs `work` and gives failures of qpdf the document's name; a failed reading is the cause of whatever else fails.
template <typename Work>
void Named(Document& document, Work&& work) {
  const auto fail = [&](ASErrorCode code, const std::string& reason) {
    if (document.From() != nullptr) document.From()->ThrowFailure();
    throw HostError(code, document.Name() + ": " + OneLine(reason));
  };
  try {
    work();
  } catch (const QPDFExc& e) {
    fail(kASDamagedDocument, e.getMessageDetail());
  } catch (const std::runtime_error& e) {
    fail(kASDamagedDocument, e.what());
  }
  if (document.From() != nullptr) document.From()->ThrowFailure();
}

void Write(Document& document, const SaveOptions& options, Sink& sink) {
  Named(document, [&] {
    const SharedStreams shared(document);
    if (options.linearize) {
      OnDeepStack([&] { WriteLinearized(document, options, sink); });
    } else {
      WriteStandard(document, options, sink);
    }
  });
}

void Prepare(Document& document, const SaveOptions& options) {
  CheckOptions(document, options);
  Named(document, [&] { Settle(document, options); });
}

}  // namespace

void SaveFile(Document& document, const std::string& path, const SaveOptions& options) {
  Prepare(document, options);
  AtomicFile file(path);
  FileSink sink(file);
  Write(document, options, sink);
  file.Commit();
}

MallocBytes SaveMemory(Document& document, const SaveOptions& options) {
  Prepare(document, options);
  MallocBytes bytes;
  MemorySink sink(bytes);
  Write(document, options, sink);
  return bytes;
}

}  // namespace tgx::host
