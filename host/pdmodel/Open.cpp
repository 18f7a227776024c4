#include "host/pdmodel/Open.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QUtil.hh>

#include "host/core/FileDescriptor.h"
#include "host/core/FileError.h"
#include "host/core/Paths.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Source.h"

namespace tgx::host {
namespace {

constexpr const char* kCannotOpen = "cannot be opened";
constexpr std::size_t kHeaderSearch = 1024;  // how far from the start readers look for the mark of a PDF file
constexpr std::size_t kEndSearch = 1100;     // how far from the end, and some more than qpdf does

/// The file, once it is known to be one that has bytes to read: a device or a pipe could keep us waiting for ever.
std::shared_ptr<Source> OpenRegularFile(const std::string& path, const std::string& name) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) throw FileError(path, kCannotOpen, errno);
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0) throw FileError(path, kCannotOpen, errno);
  if (S_ISDIR(status.st_mode)) throw FileError(path, "cannot be opened: it is a folder");
  if (!S_ISREG(status.st_mode)) throw FileError(path, "cannot be opened: it is not a regular file");
  return std::make_shared<FileSource>(std::move(file), name, status.st_size);
}

std::string Bytes(Source& source, qpdf_offset_t from, std::size_t count) {
  std::string bytes(count, '\0');
  source.seek(from, SEEK_SET);
  bytes.resize(source.read(bytes.data(), count));
  source.rewind();
  return bytes;
}

/// What can be told of a file without understanding it, for the reason that a failure gives.
class Signs {
 public:
  explicit Signs(Source& source)
      : size_(source.Size()),
        head_(Bytes(source, 0, 2 * kHeaderSearch)),
        tail_(Bytes(source, std::max<qpdf_offset_t>(0, size_ - static_cast<qpdf_offset_t>(kEndSearch)), kEndSearch)) {}

  bool HasHeader() const { return HeaderPlace() < kHeaderSearch; }
  bool HasEnd() const { return tail_.find("%%EOF") != std::string::npos; }

  /// Whether objects follow on the last end mark, as they do where a file was added to and the addition is cut short.
  /// Readers that find that mark take the file for complete.
  bool HasObjectsBehindEnd() const {
    const std::size_t end = tail_.rfind("%%EOF");
    return end != std::string::npos && tail_.find(" obj", end) != std::string::npos;
  }

  /// Whether a file laid out for reading over a network says that it is longer. Its front tells of all that follows, so
  /// that a repair would find less than the whole without noticing.
  bool IsCutLinearized() const {
    const std::size_t place = head_.find("/Linearized");
    if (!HasHeader() || place == std::string::npos) return false;
    const std::size_t length = head_.find("/L ", place);
    const std::size_t end = head_.find("endobj", place);
    if (length == std::string::npos || length > end) return false;
    const std::size_t digits = head_.find_first_not_of(' ', length + 2);
    qpdf_offset_t said = 0;
    if (digits == std::string::npos) return false;
    std::from_chars(head_.data() + digits, head_.data() + head_.size(), said);
    return said > size_ - static_cast<qpdf_offset_t>(HeaderPlace());
  }

 private:
  std::size_t HeaderPlace() const { return head_.find("%PDF-"); }

  qpdf_offset_t size_;
  std::string head_;
  std::string tail_;
};

HostError Damaged(const std::string& name, const Signs& signs, const OpenOptions& options, const std::string& detail) {
  if (!signs.HasHeader()) return {kASDamagedDocument, name + ": not a PDF file"};
  if (!options.repair) return {kASDamagedDocument, name + ": damaged (" + OneLine(detail) + "), and not to be repaired"};
  if (!signs.HasEnd()) return {kASDamagedDocument, name + ": cut short or damaged beyond repair: " + OneLine(detail)};
  return {kASDamagedDocument, name + ": damaged beyond repair: " + OneLine(detail)};
}

HostError OpeningError(const std::string& name, const Signs& signs, const OpenOptions& options, const QPDFExc& e) {
  switch (e.getErrorCode()) {
    case qpdf_e_password:
      return {kASBadPassword,
              name + (options.password.value_or("").empty() ? ": a password is needed" : ": the password is wrong")};
    case qpdf_e_unsupported:
      return {kASNotSupported, name + ": " + OneLine(e.getMessageDetail())};
    case qpdf_e_system:
      return {kASFileError, name + ": " + OneLine(e.getMessageDetail())};
    default:
      return Damaged(name, signs, options, e.getMessageDetail());
  }
}

std::unique_ptr<QPDF> Parse(const std::shared_ptr<Source>& source, const OpenOptions& options, const std::string& password) {
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);  // nothing is printed; see Document::Warnings
  pdf->setAttemptRecovery(options.repair);
  source->rewind();
  pdf->processInputSource(source, password.c_str());
  return pdf;
}

/// Older files have the password in one of several encodings; what people type is UTF-8.
std::unique_ptr<QPDF> ParseWithPassword(const std::shared_ptr<Source>& source, const OpenOptions& options) {
  const std::string given = options.password.value_or("");
  try {
    return Parse(source, options, given);
  } catch (const QPDFExc& e) {
    if (e.getErrorCode() != qpdf_e_password || given.empty()) throw;
    for (const std::string& encoded : QUtil::possible_repaired_encodings(given)) {
      try {
        return Parse(source, options, encoded);
      } catch (const QPDFExc& again) {
        if (again.getErrorCode() != qpdf_e_password) throw;
      }
    }
    throw;
  }
}

Document& Open(const std::shared_ptr<Source>& source, const std::string& name, const OpenOptions& options) {
  if (source->Size() == 0) throw HostError(kASDamagedDocument, name + ": not a PDF file: it is empty");
  const Signs signs(*source);
  try {
    auto pdf = ParseWithPassword(source, options);
    if (pdf->anyWarnings() && signs.IsCutLinearized()) {
      throw HostError(kASDamagedDocument, name + ": cut short: it says itself that it is longer");
    }
    if (!pdf->anyWarnings() && signs.HasObjectsBehindEnd()) {
      pdf->warn(QPDFExc(qpdf_e_damaged_pdf, name, "", 0, "cut short: the changes of its last revision are left out"));
    }
    if (!pdf->getRoot().getKey("/Pages").isDictionary()) throw HostError(kASDamagedDocument, name + ": damaged: no pages");
    Document& document = Document::Adopt(std::move(pdf), name, source);
    try {
      source->ThrowFailure();
    } catch (...) {
      Document::Close(document);
      throw;
    }
    return document;
  } catch (const QPDFExc& e) {
    source->ThrowFailure();
    throw OpeningError(name, signs, options, e);
  } catch (const HostError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    source->ThrowFailure();
    throw Damaged(name, signs, options, e.what());
  }
}

}  // namespace

Document& OpenFile(const std::string& path, const OpenOptions& options) {
  const std::string name = DisplayName(path);
  return Open(OpenRegularFile(path, name), name, options);
}

Document& OpenMemory(std::string_view bytes, const std::string& name, const OpenOptions& options) {
  const std::string shown = DisplayName(name);
  return Open(std::make_shared<MemorySource>(bytes, shown), shown, options);
}

}  // namespace tgx::host
