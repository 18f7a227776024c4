#include "tests/host/HostDocument.h"

#include <utility>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

#include "host/core/Atoms.h"

namespace tgx::host {
namespace {

std::unique_ptr<QPDF> EmptyPdf() {
  auto pdf = std::make_unique<QPDF>();
  pdf->emptyPDF();
  return pdf;
}

}  // namespace

HostDocument::HostDocument() : HostDocument(EmptyPdf()) {}

HostDocument::HostDocument(std::unique_ptr<QPDF> pdf) : document_(&Document::Adopt(std::move(pdf), "test.pdf")) {}

HostDocument::HostDocument(HostDocument&& other) noexcept
    : bytes_(std::move(other.bytes_)), document_(std::exchange(other.document_, nullptr)) {}

HostDocument::~HostDocument() { Close(); }

void HostDocument::Close() {
  if (document_ != nullptr) Document::Close(*std::exchange(document_, nullptr));
}

HostDocument HostDocument::FromBytes(std::string bytes, const char* password) {
  auto kept = std::make_unique<std::string>(std::move(bytes));
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->processMemoryFile("test.pdf", kept->data(), kept->size(), password);
  HostDocument document(std::move(pdf));
  document.bytes_ = std::move(kept);
  return document;
}

HostDocument HostDocument::FromObjects(const std::string& objects) {
  // Without a cross-reference table: qpdf finds the objects by itself.
  return FromBytes("%PDF-1.7\n1 0 obj\n" + objects + "\nendobj\ntrailer << /Root 1 0 R /Size 100 >>\nstartxref\n0\n%%EOF\n");
}

CosObj HostDocument::Name(std::string_view text) { return Tables()->cos->CosNewName(Doc(), 0, Intern(text)); }

CosObj HostDocument::String(std::string_view bytes) {
  return Tables()->cos->CosNewString(Doc(), 0, bytes.data(), static_cast<ASTArraySize>(bytes.size()));
}

std::string HostDocument::Written() {
  QPDFWriter writer(document_->Pdf());
  writer.setOutputMemory();
  writer.write();
  const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

}  // namespace tgx::host
