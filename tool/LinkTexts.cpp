#include "tool/LinkTexts.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "tool/ContentText.h"
#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// Bytes of a description, as UTF-8; a link around a whole chapter needs no longer one.
constexpr std::size_t kLongest = 500;

struct Link {
  PDSElement holder;
  CosObj annotation;
};

std::string TextEntry(CosObj dictionary, const char* key) {
  const CosObj text = CosDictGetKeyString(dictionary, key);
  return CosObjGetType(text) == CosString ? DecodeTextString(BytesOf(text)) : std::string();
}

/// link-contents leaves a description of nothing but a zero where it finds no text.
bool IsBlank(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == '\0' || c == ' '; });
}

bool IsUndescribedLink(CosObj object) {
  if (CosObjGetType(object) != CosDict) return false;
  const CosObj subtype = CosDictGetKeyString(object, "Subtype");
  return CosObjGetType(subtype) == CosName && CosNameValue(subtype) == ASAtomFromString("Link") &&
         IsBlank(TextEntry(object, "Contents"));
}

std::vector<Link> FindLinks(PDDoc document) {
  struct Holder {
    PDSElement element = {};
  };
  std::vector<Link> links;
  const KidTypes types;
  const auto enter = [](PDSElement element, const Holder&) { return Holder{element}; };
  const auto other = [&](PDSElement element, ASInt32 index, ASAtom type, ASInt32, const Holder&) {
    if (type != types.object) return;
    const CosObj object = KidOf(element, index);
    if (IsUndescribedLink(object)) links.push_back({element, object});
  };
  ElementWalk<Holder, decltype(enter), decltype(other)>(enter, other).Walk(document, Holder());
  return links;
}

/// Gathers what an element and those in it show, and their alternate texts.
class Texts {
 public:
  // As deep as the host lets the tree be.
  void Gather(PDSElement element) {  // NOLINT(misc-no-recursion)
    if (PDSElementHasAlt(element) != 0) Add(DecodeTextString(TextOf(element, PDSElementGetAlt)), alternate_);
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count && shown_.size() < kLongest; ++i) {
      void* container = nullptr;
      const ASAtom type = PDSElementGetKid(element, i, nullptr, &container, nullptr);
      if (type == types_.element) Gather(KidOf(element, i));
      if (type == types_.markedContent && container != nullptr) Add(ShownText(static_cast<PDEContainer>(container)), shown_);
    }
  }

  std::string Best() const { return shown_.empty() ? alternate_ : shown_; }

 private:
  /// White space becomes one blank, also between two pieces.
  static void Add(const std::string& piece, std::string& text) {
    bool isBlank = !text.empty();
    for (const char c : piece) {
      if (text.size() >= kLongest && (static_cast<unsigned char>(c) & 0xC0U) != 0x80) return;
      const bool isSpace = static_cast<unsigned char>(c) < 0x80 && std::isspace(static_cast<unsigned char>(c)) != 0;
      if (!isSpace && isBlank) text += ' ';
      if (!isSpace) text += c;
      isBlank = isSpace && !text.empty();
    }
  }

  KidTypes types_;
  std::string shown_, alternate_;
};

std::string AddressOf(CosObj annotation) {
  const CosObj action = CosDictGetKeyString(annotation, "A");
  return CosObjGetType(action) == CosDict ? TextEntry(action, "URI") : std::string();
}

std::string DescriptionOf(const Link& link) {
  std::string title = TextEntry(link.annotation, "T");
  if (!title.empty()) return title;
  Texts texts;
  texts.Gather(link.holder);
  return texts.Best().empty() ? AddressOf(link.annotation) : texts.Best();
}

}  // namespace

void DescribeLinks(PDDoc document) {
  const HostFrame frame;
  for (const Link& link : FindLinks(document)) {
    const std::string text = DescriptionOf(link);
    if (!text.empty()) PutString(PDDocGetCosDoc(document), link.annotation, "Contents", EncodeUtf16(text));
  }
}

}  // namespace tgx::tool
