#include "host/pdfedit/fonts/CMap.h"

#include <optional>

#include "host/pdfedit/StreamData.h"
#include "host/pdfedit/fonts/CMapReader.h"
#include "host/pdfedit/fonts/FontParts.h"
#include "host/pdfedit/fonts/PredefinedCMaps.h"
#include "host/pdfedit/fonts/SharedResources.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLargestCMap = std::size_t{16} << 20;

}  // namespace

/// Fills a CMap from what a file says.
class CMap::Builder : public CMapEvents {
 public:
  explicit Builder(std::shared_ptr<const CMap> base) {
    if (base != nullptr) RestOn(std::move(base));
  }

  std::shared_ptr<CMap> Finish() {
    // Without code spaces the codes that are mapped tell their lengths.
    if (cmap_->codeSpaces_.IsEmpty()) cmap_->codeSpaces_ = lengthsSeen_;
    cmap_->codeSpaces_.Seal();
    cmap_->cids_.Seal();
    cmap_->notDefs_.Seal();
    cmap_->isVertical_ = mode_.value_or(cmap_->isVertical_ ? 1 : 0) == 1;
    return cmap_;
  }

  void OnCodeSpace(CMapCode first, CMapCode last) override { cmap_->codeSpaces_.Add(first, last); }
  void OnCids(CMapCode first, CMapCode last, std::uint32_t cid) override {
    NoteLength(last);
    if (cmap_->cids_.Count() < kMostEntries) cmap_->cids_.Add(first.value, last.value, cid - first.value);
  }
  void OnNotDefs(CMapCode first, CMapCode last, std::uint32_t cid) override {
    if (cmap_->notDefs_.Count() < kMostEntries) cmap_->notDefs_.Add(first.value, last.value, cid);
  }
  void OnUseCMap(std::string_view name) override {
    if (cmap_->base_ != nullptr) return;
    if (std::shared_ptr<const CMap> base = Predefined(name)) RestOn(std::move(base));
  }
  void OnWMode(int mode) override { mode_ = mode; }

 private:
  static constexpr std::size_t kMostEntries = std::size_t{1} << 20;

  void RestOn(std::shared_ptr<const CMap> base) {
    cmap_->codeSpaces_.AddAll(base->codeSpaces_);
    cmap_->isVertical_ = base->isVertical_;
    cmap_->collection_ = base->collection_;
    cmap_->base_ = std::move(base);
  }

  void NoteLength(CMapCode code) {
    const int length = code.length;
    const std::uint32_t highest = length == 4 ? 0xFFFFFFFF : (1U << 8 * length) - 1;
    lengthsSeen_.Add({0, length}, {highest, length});
  }

  std::shared_ptr<CMap> cmap_ = std::make_shared<CMap>();
  CodeSpaces lengthsSeen_;
  std::optional<int> mode_;
};

std::shared_ptr<const CMap> CMap::Identity(bool isVertical) {
  auto cmap = std::make_shared<CMap>();
  cmap->isIdentity_ = true;
  cmap->isVertical_ = isVertical;
  cmap->codeSpaces_.Add({0, 2}, {0xFFFF, 2});
  cmap->codeSpaces_.Seal();
  return cmap;
}

std::shared_ptr<const CMap> CMap::Predefined(std::string_view name) {
  if (name == "Identity-H" || name == "Identity") return Identity(false);
  if (name == "Identity-V") return Identity(true);
  if (FindPredefinedCMap(name) == nullptr) return nullptr;
  static SharedResources<CMap> shared;
  return shared.Get(name, &CMap::LoadPredefined);
}

std::shared_ptr<const CMap> CMap::LoadPredefined(std::string_view name) {
  const PredefinedCMap& known = *FindPredefinedCMap(name);
  Builder builder(nullptr);
  ReadCMap("begincodespacerange " + std::string(known.codeSpaces) + " endcodespacerange", builder);
  if (const std::optional<std::string> text = ReadCMapResource(known.collection, name)) ReadCMap(*text, builder);
  std::shared_ptr<CMap> cmap = builder.Finish();
  cmap->isVertical_ = known.isVertical;
  cmap->collection_ = known.collection;
  if (name.find("-UTF8-") != std::string_view::npos) cmap->unicodeForm_ = UnicodeForm::kUtf8;
  if (name.find("-UTF16-") != std::string_view::npos) cmap->unicodeForm_ = UnicodeForm::kUtf16;
  if (name.find("-UCS2-") != std::string_view::npos) cmap->unicodeForm_ = UnicodeForm::kUtf16;
  if (name.find("-UTF32-") != std::string_view::npos) cmap->unicodeForm_ = UnicodeForm::kUtf32;
  return cmap;
}

std::shared_ptr<const CMap> CMap::ReadName(QPDFObjectHandle encoding) {
  const std::string name = encoding.isName() ? encoding.getName().substr(1) : std::string();
  std::shared_ptr<const CMap> cmap = Predefined(name);
  return cmap != nullptr ? cmap : Identity(name.ends_with("-V"));
}

std::shared_ptr<const CMap> CMap::ReadStream(QPDFObjectHandle stream, FontParts& parts, int depth) {
  QPDFObjectHandle dictionary = stream.getDict();
  QPDFObjectHandle used = dictionary.getKey("/UseCMap");
  std::shared_ptr<const CMap> base;
  if (used.isName()) base = Predefined(used.getName().substr(1));
  if (used.isStream() && depth < kDeepestChain) base = parts.CMapOf(used, depth + 1);

  const StreamData data = DecodeStream(stream, kLargestCMap);
  std::shared_ptr<const CMap> cmap = data.isDecoded ? Parse(data.bytes, base) : Identity(false);
  QPDFObjectHandle mode = dictionary.getKey("/WMode");
  if (!mode.isInteger() || (mode.getIntValue() == 1) == cmap->isVertical_) return cmap;
  auto turned = std::make_shared<CMap>(*cmap);
  turned->isVertical_ = mode.getIntValue() == 1;
  return turned;
}

std::shared_ptr<const CMap> CMap::Parse(std::string_view text, std::shared_ptr<const CMap> base) {
  Builder builder(std::move(base));
  ReadCMap(text, builder);
  std::shared_ptr<const CMap> cmap = builder.Finish();
  const bool saysNothing = cmap->codeSpaces_.IsEmpty() && cmap->cids_.IsEmpty();
  return saysNothing ? Identity(cmap->isVertical_) : cmap;
}

Font::Code CMap::Next(std::string_view bytes) const { return codeSpaces_.Next(bytes); }

std::uint32_t CMap::CidOf(Font::Code code) const {
  for (const CMap* map = this; map != nullptr; map = map->base_.get()) {
    if (const std::uint32_t* offset = map->cids_.Find(code.value)) return code.value + *offset;
    if (map->isIdentity_) return code.value;
  }
  for (const CMap* map = this; map != nullptr; map = map->base_.get()) {
    if (const std::uint32_t* cid = map->notDefs_.Find(code.value)) return *cid;
  }
  return 0;
}

char32_t CMap::CharacterOf(Font::Code code) const {
  const char32_t value = code.value;
  switch (unicodeForm_) {
    case UnicodeForm::kUtf32:
      return code.length == 4 ? value : 0xFFFD;
    case UnicodeForm::kUtf16:
      if (code.length == 2) return value;
      return code.length == 4 ? 0x10000 + ((value >> 16 & 0x3FF) << 10) + (value & 0x3FF) : 0xFFFD;
    case UnicodeForm::kUtf8:
      if (code.length == 1) return value < 0x80 ? value : 0xFFFD;
      if (code.length == 2) return (value >> 8 & 0x1F) << 6 | (value & 0x3F);
      if (code.length == 3) return (value >> 16 & 0x0F) << 12 | (value >> 8 & 0x3F) << 6 | (value & 0x3F);
      return (value >> 24 & 0x07) << 18 | (value >> 16 & 0x3F) << 12 | (value >> 8 & 0x3F) << 6 | (value & 0x3F);
    case UnicodeForm::kNone:
      break;
  }
  return 0xFFFD;
}

}  // namespace tgx::host
