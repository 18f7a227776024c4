#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/CodeSpaces.h"
#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/fonts/RangeTable.h"

namespace tgx::host {

class FontParts;

/// The encoding of a composite font: how strings fall into codes, and the CID of each code.
class CMap {
 public:
  /// Codes of two bytes that are the CIDs themselves.
  static std::shared_ptr<const CMap> Identity(bool isVertical);

  /// A predefined CMap by its name (without slash), Identity included; null for an unknown name. Codes always have the right
  /// length; CIDs are 0 when the system lacks the CMap's data. CMaps in use are shared.
  static std::shared_ptr<const CMap> Predefined(std::string_view name);

  /// The value of a font's "Encoding" that is no stream: a name. Never null; what makes no sense is taken as Identity.
  static std::shared_ptr<const CMap> ReadName(QPDFObjectHandle encoding);

  /// An embedded CMap, `depth` others above it, whose own "UseCMap" is one of the `parts`.
  static std::shared_ptr<const CMap> ReadStream(QPDFObjectHandle stream, FontParts& parts, int depth);

  /// How many CMaps may rest on one another.
  static constexpr int kDeepestChain = 8;

  /// An embedded CMap. `base` is the map that it rests on, null if none; one that it names itself is found among the
  /// predefined ones.
  static std::shared_ptr<const CMap> Parse(std::string_view text, std::shared_ptr<const CMap> base);

  Font::Code Next(std::string_view bytes) const;
  std::uint32_t CidOf(Font::Code code) const;
  bool IsVertical() const { return isVertical_; }

  /// "Adobe-Japan1" and so on for a predefined CMap, else empty.
  std::string_view Collection() const { return collection_; }

  /// Whether the codes are characters themselves, and then the character of a code, U+FFFD for what is none.
  bool HasUnicodeCodes() const { return unicodeForm_ != UnicodeForm::kNone; }
  char32_t CharacterOf(Font::Code code) const;

 private:
  enum class UnicodeForm { kNone, kUtf8, kUtf16, kUtf32 };
  class Builder;

  static std::shared_ptr<const CMap> LoadPredefined(std::string_view name);

  std::shared_ptr<const CMap> base_;  ///< has the CIDs of codes that this one does not map
  bool isIdentity_ = false;
  bool isVertical_ = false;
  UnicodeForm unicodeForm_ = UnicodeForm::kNone;
  std::string_view collection_;
  CodeSpaces codeSpaces_;
  RangeTable<std::uint32_t> cids_;     ///< what to add to a code, modulo 2^32, for its CID
  RangeTable<std::uint32_t> notDefs_;  ///< the CID of a whole range
};

}  // namespace tgx::host
