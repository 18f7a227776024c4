#include "host/pdfedit/fonts/Font.h"

#include "host/pdfedit/fonts/CompositeFont.h"
#include "host/pdfedit/fonts/FontParts.h"
#include "host/pdfedit/fonts/SimpleFont.h"

namespace tgx::host {

std::unique_ptr<Font> Font::Read(QPDFObjectHandle dictionary, FontParts& parts) {
  if (!dictionary.isDictionary()) dictionary = QPDFObjectHandle::newDictionary();
  const bool isComposite =
      dictionary.getKey("/Subtype").isNameAndEquals("/Type0") || dictionary.getKey("/DescendantFonts").isArray();
  try {
    if (isComposite) return std::make_unique<CompositeFont>(dictionary, parts);
    return std::make_unique<SimpleFont>(dictionary, parts);
  } catch (const std::exception&) {  // an object that qpdf cannot read
  }
  if (isComposite) return std::make_unique<CompositeFont>(QPDFObjectHandle::newDictionary(), parts);
  return std::make_unique<SimpleFont>(QPDFObjectHandle::newDictionary(), parts);
}

std::unique_ptr<Font> Font::Read(const QPDFObjectHandle& dictionary) {
  FontParts parts;
  return Read(dictionary, parts);
}

}  // namespace tgx::host
