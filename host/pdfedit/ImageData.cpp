#include "host/pdfedit/ImageData.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include "host/core/Atoms.h"
#include "host/core/Fixed.h"
#include "host/pdfedit/StreamData.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLargestImage = std::size_t{1} << 30;

struct Abbreviation {
  std::string_view brief;
  std::string_view full;
};
constexpr Abbreviation kKeys[] = {{"/BPC", "/BitsPerComponent"},
                                  {"/CS", "/ColorSpace"},
                                  {"/D", "/Decode"},
                                  {"/DP", "/DecodeParms"},
                                  {"/F", "/Filter"},
                                  {"/H", "/Height"},
                                  {"/IM", "/ImageMask"},
                                  {"/I", "/Interpolate"},
                                  {"/L", "/Length"},
                                  {"/W", "/Width"}};
constexpr Abbreviation kColorSpaces[] = {
    {"/G", "/DeviceGray"}, {"/RGB", "/DeviceRGB"}, {"/CMYK", "/DeviceCMYK"}, {"/I", "/Indexed"}};
constexpr Abbreviation kFilters[] = {{"/DCT", "/DCTDecode"}, {"/CCF", "/CCITTFaxDecode"}};

template <std::size_t N>
std::string FullName(const Abbreviation (&table)[N], const std::string& name) {
  const auto* found =
      std::find_if(std::begin(table), std::end(table), [&](const Abbreviation& entry) { return entry.brief == name; });
  return found == std::end(table) ? name : std::string(found->full);
}

/// The colour space that a value means: a name may stand for a resource.
QPDFObjectHandle FullColorSpace(QPDFObjectHandle space, QPDFObjectHandle resources) {
  if (space.isName()) {
    const std::string name = FullName(kColorSpaces, space.getName());
    QPDFObjectHandle spaces = resources.isDictionary() ? resources.getKey("/ColorSpace") : QPDFObjectHandle::newNull();
    QPDFObjectHandle named = spaces.isDictionary() ? spaces.getKey(space.getName()) : QPDFObjectHandle::newNull();
    return named.isNull() ? QPDFObjectHandle::newName(name) : named;
  }
  if (!space.isArray() || space.getArrayNItems() == 0 || !space.getArrayItem(0).isName()) return space;
  QPDFObjectHandle full = space.shallowCopy();
  full.setArrayItem(0, QPDFObjectHandle::newName(FullName(kColorSpaces, space.getArrayItem(0).getName())));
  return full;
}

std::optional<double> NumberAt(QPDFObjectHandle dictionary, const char* key) {
  QPDFObjectHandle value = dictionary.getKey(key);
  return value.isNumber() && std::isfinite(value.getNumericValue()) ? std::optional(value.getNumericValue()) : std::nullopt;
}

/// A count of samples or bits; 0 for what is none.
int CountAt(const QPDFObjectHandle& dictionary, const char* key) {
  constexpr double kMost = 0x7FFFFFFF;
  return static_cast<int>(std::clamp(NumberAt(dictionary, key).value_or(0), 0.0, kMost));
}

bool IsTrue(QPDFObjectHandle value) { return value.isBool() && value.getBoolValue(); }

std::optional<int> ComponentsOfName(const std::string& name) {
  for (const char* gray : {"/DeviceGray", "/CalGray", "/Indexed", "/Separation"}) {
    if (name == gray) return 1;
  }
  for (const char* three : {"/DeviceRGB", "/CalRGB", "/Lab"}) {
    if (name == three) return 3;
  }
  return name == "/DeviceCMYK" ? std::optional(4) : std::nullopt;
}

std::optional<int> ComponentsOfSpace(QPDFObjectHandle space) {
  constexpr int kMostComponents = 32;
  if (space.isName()) return ComponentsOfName(space.getName());
  if (!space.isArray() || space.getArrayNItems() == 0 || !space.getArrayItem(0).isName()) return std::nullopt;
  const std::string family = space.getArrayItem(0).getName();
  int count = 0;
  if (family == "/ICCBased" && space.getArrayNItems() > 1 && space.getArrayItem(1).isStream()) {
    count = CountAt(space.getArrayItem(1).getDict(), "/N");
  } else if (family == "/DeviceN" && space.getArrayNItems() > 1 && space.getArrayItem(1).isArray()) {
    count = space.getArrayItem(1).getArrayNItems();
  } else {
    return ComponentsOfName(family);
  }
  return count >= 1 && count <= kMostComponents ? std::optional(count) : std::nullopt;
}

}  // namespace

ImageData ImageData::OfXObject(QPDFObjectHandle stream) {
  ImageData image(stream.isStream() ? stream.getDict() : QPDFObjectHandle::newDictionary(), false);
  image.stream_ = stream;
  return image;
}

ImageData ImageData::OfInline(QPDFObjectHandle dictionary, std::string bytes, const QPDFObjectHandle& resources) {
  QPDFObjectHandle full = QPDFObjectHandle::newDictionary();
  if (dictionary.isDictionary()) {
    for (const auto& [key, value] : dictionary.ditems()) {
      const std::string fullKey = FullName(kKeys, key);
      // Where an entry stands under both names the full one counts.
      if (fullKey == key || !dictionary.hasKey(fullKey)) full.replaceKey(fullKey, value);
    }
  }
  full.replaceKey("/ColorSpace", FullColorSpace(full.getKey("/ColorSpace"), resources));
  ImageData image(full, true);
  image.bytes_ = std::move(bytes);
  return image;
}

bool ImageData::IsMask() const { return IsTrue(dictionary_.getKey("/ImageMask")); }

std::string ImageData::LastFilter() const {
  QPDFObjectHandle filter = dictionary_.getKey("/Filter");
  if (filter.isArray() && filter.getArrayNItems() > 0) filter = filter.getArrayItem(filter.getArrayNItems() - 1);
  return filter.isName() ? FullName(kFilters, filter.getName()) : std::string();
}

int ImageData::BitsPerComponent() const {
  if (IsMask()) return 1;
  // These filters know better than the dictionary.
  const std::string filter = LastFilter();
  if (filter == "/DCTDecode") return 8;
  if (filter == "/CCITTFaxDecode" || filter == "/JBIG2Decode") return 1;
  const int bits = CountAt(dictionary_, "/BitsPerComponent");
  return bits <= 16 ? bits : 0;
}

std::optional<int> ImageData::Components() const {
  return IsMask() ? std::optional(1) : ComponentsOfSpace(dictionary_.getKey("/ColorSpace"));
}

std::optional<std::size_t> ImageData::SampleBytes() const {
  const auto width = static_cast<std::size_t>(CountAt(dictionary_, "/Width"));
  const auto height = static_cast<std::size_t>(CountAt(dictionary_, "/Height"));
  const auto bits = static_cast<std::size_t>(BitsPerComponent());
  const std::optional<int> components = Components();
  if (width == 0 || height == 0 || bits == 0 || !components) return std::nullopt;
  const std::size_t row = (width * static_cast<std::size_t>(*components) * bits + 7) / 8;  // below 2^41
  return row <= kLargestImage / height ? std::optional(row * height) : std::nullopt;
}

PDEImageAttrs ImageData::Attributes() const {
  PDEImageAttrs attributes = {};
  attributes.width = CountAt(dictionary_, "/Width");
  attributes.height = CountAt(dictionary_, "/Height");
  attributes.bitsPerComponent = BitsPerComponent();
  if (!isInline_) attributes.flags |= kPDEImageExternal;
  if (IsMask()) attributes.flags |= kPDEImageIsMask;
  if (IsTrue(dictionary_.getKey("/Interpolate"))) attributes.flags |= kPDEImageInterpolate;

  QPDFObjectHandle decode = dictionary_.getKey("/Decode");
  if (decode.isArray() && decode.getArrayNItems() >= 2) {
    attributes.flags |= kPDEImageHaveDecode;
    const int count = std::min(decode.getArrayNItems(), static_cast<int>(std::size(attributes.decode)));
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle number = decode.getArrayItem(i);
      if (number.isNumber()) attributes.decode[i] = ToFixed(number.getNumericValue());
    }
  }
  QPDFObjectHandle intent = dictionary_.getKey("/Intent");
  attributes.intent = intent.isName() ? Intern(intent.getName().substr(1)) : ASAtomNull;
  return attributes;
}

std::string ImageData::Samples() const {
  // What comes out of DCT has the size that the compressed image says; behind other filters the dictionary knows it.
  const std::size_t limit = LastFilter() == "/DCTDecode" ? kLargestImage : SampleBytes().value_or(kLargestImage);
  StreamData data = isInline_ ? DecodeBytes(bytes_, dictionary_, limit) : DecodeStream(stream_, limit);
  if (data.isDecoded || !data.isTruncated || limit == kLargestImage) return std::move(data.bytes);
  // The limit counts samples, and these are still compressed.
  data = isInline_ ? DecodeBytes(bytes_, dictionary_, kLargestImage) : DecodeStream(stream_, kLargestImage);
  return std::move(data.bytes);
}

}  // namespace tgx::host
