#include "host/pdmodel/Document.h"

#include <cstdint>

#include <qpdf/QPDFExc.hh>

#include "host/core/HostError.h"
#include "host/core/Paths.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/AnnotationLists.h"
#include "host/pdmodel/PageList.h"
#include "host/pdmodel/Source.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {
namespace {

constexpr std::size_t kMostWarnings = 1000;

/// Documents by serial number; a closed one leaves an empty place, and serial numbers are never used again.
std::vector<std::unique_ptr<Document>>& Registry() {
  static std::vector<std::unique_ptr<Document>> documents(1);  // serial 0 is nobody's, so no handle is all zero
  return documents;
}

// The lowest bits tell the kinds of handle apart; pages have their index between them and the serial number.
enum : std::uintptr_t { kKindMask = 7, kDocKind = 2, kCosDocKind = 4, kPageKind = 6 };
constexpr int kIndexShift = 3;
constexpr int kSerialShift = 32;

std::uintptr_t Bits(ASUns32 serial, ASUns32 index, std::uintptr_t kind) {
  return (static_cast<std::uintptr_t>(serial) << kSerialShift) | (static_cast<std::uintptr_t>(index) << kIndexShift) | kind;
}

Document* FindByBits(std::uintptr_t bits, std::uintptr_t kind) noexcept {
  return (bits & kKindMask) == kind ? Document::Find(static_cast<ASUns32>(bits >> kSerialShift)) : nullptr;
}

template <typename Handle>
Document& Lookup(Handle handle, std::uintptr_t kind, const char* what) {
  Document* document = FindByBits(reinterpret_cast<std::uintptr_t>(handle), kind);
  if (document == nullptr) throw HostError(kASBadParameter, std::string("no open document has this ") + what);
  return *document;
}

}  // namespace

Document::Document(ASUns32 serial, std::unique_ptr<QPDF> pdf, std::string name, std::shared_ptr<Source> source)
    : serial_(serial),
      name_(std::move(name)),
      source_(std::move(source)),
      pdf_(std::move(pdf)),
      objects_(serial),
      names_(*this) {
  names_.SetSource(source_);
  pages_ = std::make_unique<PageList>(*this);
  annotations_ = std::make_unique<AnnotationLists>(*this);
  structure_ = std::make_unique<StructureTree>(*this);
  contents_ = std::make_unique<PageContents>(*this);
}

Document::~Document() = default;

Document& Document::Adopt(std::unique_ptr<QPDF> pdf, std::string name, std::shared_ptr<Source> source) {
  auto& documents = Registry();
  const auto serial = static_cast<ASUns32>(documents.size());
  documents.push_back(nullptr);
  documents[serial].reset(new Document(serial, std::move(pdf), std::move(name), std::move(source)));
  return *documents[serial];
}

Document* Document::Find(ASUns32 serial) noexcept {
  auto& documents = Registry();
  return serial < documents.size() ? documents[serial].get() : nullptr;
}

Document* Document::Find(PDDoc handle) noexcept { return FindByBits(reinterpret_cast<std::uintptr_t>(handle), kDocKind); }

Document& Document::Of(PDDoc handle) { return Lookup(handle, kDocKind, "PDDoc"); }
Document& Document::Of(CosDoc handle) { return Lookup(handle, kCosDocKind, "CosDoc"); }
Document& Document::Of(PDPage handle) { return Lookup(handle, kPageKind, "PDPage"); }

Document& Document::Of(CosObj handle) { return ObjectOf(handle).document; }

LivingObject Document::ObjectOf(CosObj handle) {
  if (IsNull(handle)) throw HostError(kASBadParameter, "the null object where an object is needed");
  Document* document = Find(handle.b);
  ObjectTable::Slot* slot = document == nullptr ? nullptr : document->objects_.Find(handle);
  if (slot == nullptr) {
    throw HostError(kASBadParameter, "no object of an open document has the handle " + std::to_string(handle.a) + ":" +
                                         std::to_string(handle.b));
  }
  return {*document, *slot};
}

void Document::Close(Document& document) noexcept { Registry()[document.serial_].reset(); }

// Handles are numbers that nobody follows.
// NOLINTBEGIN(performance-no-int-to-ptr)
PDDoc Document::Handle() const noexcept { return reinterpret_cast<PDDoc>(Bits(serial_, 0, kDocKind)); }
CosDoc Document::CosHandle() const noexcept { return reinterpret_cast<CosDoc>(Bits(serial_, 0, kCosDocKind)); }

PDPage PageHandle(const Document& document, ASUns32 index) noexcept {
  return reinterpret_cast<PDPage>(Bits(document.Serial(), index, kPageKind));
}
// NOLINTEND(performance-no-int-to-ptr)

ASUns32 PageIndex(PDPage handle) noexcept {
  return static_cast<ASUns32>((reinterpret_cast<std::uintptr_t>(handle) & 0xFFFFFFFFU) >> kIndexShift);
}

const std::deque<std::string>& Document::Warnings() {
  for (const QPDFExc& warning : pdf_->getWarnings()) {
    if (warnings_.size() > kMostWarnings) break;
    const bool isListed = warnings_.size() < kMostWarnings;
    warnings_.push_back(isListed ? OneLine(warning.what()) : name_ + ": there are more warnings than are listed");
  }
  return warnings_;
}

void Document::BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) {
  structure_->BeforeCosRead(container, key);
  contents_->BeforeCosRead(container, key);
}

void Document::AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) {
  MarkChanged();
  pages_->AfterCosEdit(container, key);
  annotations_->AfterCosEdit(container, key);
  structure_->AfterCosEdit(container, key);
  contents_->AfterCosEdit(container, key);
}

}  // namespace tgx::host
