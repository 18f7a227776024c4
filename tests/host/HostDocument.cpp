#include "tests/host/HostDocument.h"

#include <utility>

#include "host/core/Atoms.h"
#include "host/pdmodel/Save.h"
#include "host/pdmodel/Source.h"

namespace tgx::host {
namespace {

std::unique_ptr<QPDF> EmptyPdf() {
  auto pdf = std::make_unique<QPDF>();
  pdf->emptyPDF();
  return pdf;
}

}  // namespace

HostDocument::HostDocument() : HostDocument(Document::Adopt(EmptyPdf(), "test.pdf")) {}

HostDocument::HostDocument(HostDocument&& other) noexcept : document_(std::exchange(other.document_, nullptr)) {}

HostDocument::~HostDocument() { Close(); }

void HostDocument::Close() {
  if (document_ != nullptr) Document::Close(*std::exchange(document_, nullptr));
}

HostDocument HostDocument::FromBytes(std::string_view bytes, const char* password) {
  // Not through OpenMemory, which refuses a document without pages.
  auto source = std::make_shared<MemorySource>(bytes, "test.pdf");
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->processInputSource(source, password);
  return HostDocument(Document::Adopt(std::move(pdf), "test.pdf", source));
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
  const MallocBytes bytes = SaveMemory(*document_, {});
  return {bytes.data.get(), bytes.size};
}

}  // namespace tgx::host
