#include "host/pdfedit/fonts/FontParts.h"

namespace tgx::host {

template <typename Part, typename Make>
std::shared_ptr<const Part> FontParts::Share(Known<Part>& known, const QPDFObjectHandle& object, const Make& make) {
  QPDFObjectHandle resolved = object;
  resolved.isNull();  // resolves a reference
  const QPDFObject* key = resolved.getObjectPtr();
  const auto found = known.find(key);
  if (found != known.end()) return found->second.second;
  std::shared_ptr<const Part> part = make();
  known.emplace(key, std::pair(resolved, part));
  return part;
}

std::shared_ptr<const ToUnicode> FontParts::CharactersOf(const QPDFObjectHandle& stream) {
  return Share(characters_, stream, [&] { return std::make_shared<const ToUnicode>(ToUnicode::Read(stream)); });
}

std::shared_ptr<const CMap> FontParts::CMapOf(const QPDFObjectHandle& encoding, int depth) {
  if (!QPDFObjectHandle(encoding).isStream()) return CMap::ReadName(encoding);
  Known<CMap>& known = cmaps_.at(static_cast<std::size_t>(depth));
  return Share(known, encoding, [&] { return CMap::ReadStream(encoding, *this, depth); });
}

std::shared_ptr<const CidMetrics> FontParts::MetricsOf(const QPDFObjectHandle& cidFont, bool isVertical) {
  return Share(isVertical ? vertical_ : horizontal_, cidFont,
               [&] { return std::make_shared<const CidMetrics>(cidFont, isVertical); });
}

std::shared_ptr<const BuiltInEncoding> FontParts::EncodingOf(const QPDFObjectHandle& descriptor) {
  const QPDFObjectHandle program = FontProgramOf(descriptor);
  if (!QPDFObjectHandle(program).isStream()) return std::make_shared<const BuiltInEncoding>();
  return Share(encodings_, program,
               [&] { return std::make_shared<const BuiltInEncoding>(ReadBuiltInEncoding(descriptor)); });
}

}  // namespace tgx::host
