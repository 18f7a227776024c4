#include "host/pdfedit/model/DocumentFonts.h"

#include "host/core/HostError.h"
#include "host/pdfedit/fonts/FontParts.h"

namespace tgx::host {

void DocumentFont::ReadMetrics() { font_ = Font::Read(dictionary_, *document_.parts_); }

DocumentFonts::DocumentFonts() : records_(RecordKind::kFont, this), parts_(std::make_unique<FontParts>()) {}
DocumentFonts::~DocumentFonts() = default;

DocumentFont& DocumentFonts::Of(const QPDFObjectHandle& dictionary) {
  QPDFObjectHandle resolved = dictionary;
  resolved.isDictionary();  // resolves a reference
  const auto [known, isNew] = known_.try_emplace(resolved.getObjectPtr(), nullptr);
  if (isNew) {
    DocumentFont& font = fonts_.emplace_back(resolved, *this);
    records_.Add({&font, {}});
    font.handle_ = records_.Handle(records_.Size() - 1);
    known->second = &font;
  }
  return *known->second;
}

DocumentFont* FindFont(PDEObject handle) {
  const FoundRecord found = FindRecord(handle);
  if (found.slab == nullptr) return nullptr;
  if (found.slab->kind != RecordKind::kFont) throw HostError(kASWrongType, "the page content object is no font");
  return static_cast<DocumentFonts::Record*>(found.record)->font;
}

DocumentFont& FontOf(PDEObject handle) {
  DocumentFont* font = FindFont(handle);
  if (font == nullptr) throw HostError(kASBadParameter, "no font of an open document has this handle");
  return *font;
}

}  // namespace tgx::host
