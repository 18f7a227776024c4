#include "host/pdfedit/fonts/ToUnicode.h"

#include <algorithm>
#include <optional>

#include "host/pdfedit/StreamData.h"
#include "host/pdfedit/fonts/GlyphNames.h"
#include "host/pdfedit/fonts/PredefinedCMaps.h"
#include "host/pdfedit/fonts/SharedResources.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLargestMap = std::size_t{16} << 20;
constexpr std::size_t kMostEntries = std::size_t{1} << 20;

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The last character of a text, which is cut off it. A surrogate without its other half stays what it is.
char32_t TakeLast(std::u16string_view& text) {
  const char16_t last = text.back();
  text.remove_suffix(1);
  if (!IsLowSurrogate(last) || text.empty() || !IsHighSurrogate(text.back())) return last;
  const char32_t high = text.back();
  text.remove_suffix(1);
  return 0x10000 + ((high & 0x3FF) << 10) + (last & 0x3FF);
}

}  // namespace

class ToUnicode::Builder : public CMapEvents {
 public:
  ToUnicode Finish() {
    map_.targets_.Seal();
    return std::move(map_);
  }

  void OnUnicode(CMapCode first, CMapCode last, std::u16string_view text) override {
    if (map_.targets_.Count() >= kMostEntries) return;
    std::u16string_view front = text;
    const char32_t end = TakeLast(front);
    if (front.empty()) {
      map_.targets_.Add(first.value, last.value, {end - first.value, false});
      return;
    }
    map_.targets_.Add(first.value, last.value, {static_cast<std::uint32_t>(map_.texts_.size()), true});
    const auto start = static_cast<std::uint32_t>(map_.units_.size());
    map_.texts_.push_back({first.value, start, static_cast<std::uint32_t>(front.size()), end});
    AppendWithoutLoneSurrogates(front);
    map_.texts_.back().length = static_cast<std::uint32_t>(map_.units_.size()) - start;
  }

  void OnGlyphName(CMapCode code, std::string_view name) override {
    std::u16string text;
    if (AppendGlyphUnicode(name, false, text)) OnUnicode(code, code, text);
  }

  // Some producers write the operators of an encoding where they mean characters, and readers take them so.
  void OnCids(CMapCode first, CMapCode last, std::uint32_t character) override {
    if (map_.targets_.Count() < kMostEntries) map_.targets_.Add(first.value, last.value, {character - first.value, false});
  }

  void OnUseCMap(std::string_view name) override {
    if (hasBase_ || !name.ends_with("-UCS2")) return;
    hasBase_ = true;  // also keeps a resource from calling on itself
    if (const std::optional<std::string> base = ReadCMapResource(CollectionOfResource(name), name)) ReadCMap(*base, *this);
  }

 private:
  void AppendWithoutLoneSurrogates(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool isPair = IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]);
      if (isPair) {
        map_.units_.append(text.substr(i++, 2));
      } else if (text[i] != 0) {
        AppendCodePoint(text[i], map_.units_);
      }
    }
  }

  ToUnicode map_;
  bool hasBase_ = false;
};

ToUnicode ToUnicode::Read(const QPDFObjectHandle& stream) {
  const StreamData data = DecodeStream(stream, kLargestMap);
  return data.isDecoded ? Parse(data.bytes) : ToUnicode();
}

ToUnicode ToUnicode::Parse(std::string_view text) {
  Builder builder;
  ReadCMap(text, builder);
  return builder.Finish();
}

std::shared_ptr<const ToUnicode> ToUnicode::OfCollection(std::string_view collection) {
  static SharedResources<ToUnicode> shared;
  return shared.Get(collection, [](std::string_view name) {
    const std::optional<std::string> text = ReadCMapResource(name, std::string(name) + "-UCS2");
    return std::make_shared<const ToUnicode>(text ? Parse(*text) : ToUnicode());
  });
}

bool ToUnicode::Append(std::uint32_t code, std::u16string& text) const {
  const Target* target = targets_.Find(code);
  if (target == nullptr) return false;
  if (!target->isText) {
    const char32_t character = code + target->value;
    if (character == 0) return false;  // how producers say that they do not know
    AppendCodePoint(character, text);
    return true;
  }
  const Text& entry = texts_[target->value];
  text.append(units_, entry.start, entry.length);
  AppendCodePoint(entry.last + (code - entry.firstCode), text);
  return true;
}

}  // namespace tgx::host
