#include "host/pdmodel/Open.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/FileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>

#include "host/core/FileDescriptor.h"
#include "host/core/FileError.h"
#include "host/core/Paths.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

constexpr const char* kCannotOpen = "cannot be opened";

/// The file, once it is known to be one that has bytes to read: opening a device or a pipe could wait for ever.
std::FILE* OpenRegularFile(const std::string& path) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) throw FileError(path, kCannotOpen, errno);
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0) throw FileError(path, kCannotOpen, errno);
  if (S_ISDIR(status.st_mode)) throw FileError(path, "cannot be opened: it is a folder");
  if (!S_ISREG(status.st_mode)) throw FileError(path, "cannot be opened: it is not a regular file");
  if (status.st_size == 0) throw HostError(kASDamagedDocument, DisplayName(path) + ": not a PDF file: it is empty");
  std::FILE* stream = ::fdopen(file.Number(), "rb");
  if (stream == nullptr) throw FileError(path, kCannotOpen, errno);
  file.Release();
  return stream;
}

std::unique_ptr<QPDF> NewPdf(const OpenOptions& options) {
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->setAttemptRecovery(options.repair);
  return pdf;
}

const char* Password(const OpenOptions& options) { return options.password ? options.password->c_str() : nullptr; }

HostError OpeningError(const std::string& name, const OpenOptions& options, const QPDFExc& e) {
  switch (e.getErrorCode()) {
    case qpdf_e_password:
      return {kASBadPassword,
              name + (options.password && !options.password->empty() ? ": wrong password" : ": a password is needed")};
    case qpdf_e_unsupported:
      return {kASNotSupported, name + ": " + e.getMessageDetail()};
    case qpdf_e_system:
      return {kASFileError, name + ": " + e.getMessageDetail()};
    default:
      return {kASDamagedDocument, name + ": not a PDF file, or damaged beyond repair: " + e.getMessageDetail()};
  }
}

Document& Open(const std::string& name, const OpenOptions& options, const std::shared_ptr<InputSource>& source) {
  auto pdf = NewPdf(options);
  try {
    pdf->processInputSource(source, Password(options));
    Document& document = Document::Adopt(std::move(pdf), name);
    document.Names().SetSource(source);
    return document;
  } catch (const QPDFExc& e) {
    throw OpeningError(name, options, e);
  }
}

}  // namespace

Document& OpenFile(const std::string& path, const OpenOptions& options) {
  const std::string name = DisplayName(path);
  return Open(name, options, std::make_shared<FileInputSource>(name.c_str(), OpenRegularFile(path), true));
}

Document& OpenMemory(std::string_view bytes, const std::string& name, const OpenOptions& options) {
  const std::string shownName = DisplayName(name);
  if (bytes.empty()) throw HostError(kASDamagedDocument, shownName + ": not a PDF file: it is empty");
  return Open(shownName, options, std::make_shared<BufferInputSource>(shownName, std::string(bytes)));
}

}  // namespace tgx::host
