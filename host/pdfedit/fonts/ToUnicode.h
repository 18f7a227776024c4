#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/CMapReader.h"
#include "host/pdfedit/fonts/RangeTable.h"

namespace tgx::host {

/// A map from codes (or CIDs) to text. The length of a code does not count: files often state it wrong.
class ToUnicode {
 public:
  /// Reads a "ToUnicode" stream; an empty map for what is none.
  static ToUnicode Read(const QPDFObjectHandle& stream);
  static ToUnicode Parse(std::string_view text);

  /// The characters of the CIDs of a collection such as "Adobe-Japan1", from the system's CMap data; an empty map when there
  /// is none for it. Shared by all that use it.
  static std::shared_ptr<const ToUnicode> OfCollection(std::string_view collection);

  bool IsEmpty() const { return targets_.IsEmpty(); }

  /// Appends what the code stands for; false, and nothing appended, if the map does not say.
  bool Append(std::uint32_t code, std::u16string& text) const;

 private:
  class Builder;

  /// A character for each code of the range, or one of `texts_` for all of it.
  struct Target {
    std::uint32_t value;  ///< what to add to a code, modulo 2^32, for its character; or the place in `texts_`
    bool isText;
  };
  /// A text of several characters; the last of them goes up with the code.
  struct Text {
    std::uint32_t firstCode;
    std::uint32_t start;  ///< in `units_`
    std::uint32_t length;
    char32_t last;
  };

  RangeTable<Target> targets_;
  std::vector<Text> texts_;
  std::u16string units_;
};

}  // namespace tgx::host
