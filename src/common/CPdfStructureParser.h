#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "src/common/AnnotActionReader.h"
#include "src/common/CPdfContentParser.h"
#include "src/common/CPdfDocument.h"

namespace tgx {

/// Describes link annotations: gathers the text below each "Link" element and writes it, with the target of the link's
/// action in parentheses, to the "Contents" of the annotations among what stands below the element. "Contents" that are not
/// empty stay.
///
/// A link is written when it ends while the link depth is 0. The depth goes up with every element that begins inside a link
/// and down with every element that ends, inside a link or not. So once an element has ended outside of all links, the next
/// link does not end with its element: it stays open and gathers what follows, until an element happens to end at depth 0.
/// Users of the library know this outcome; it is to stay.
class CPdfStructureParser : public CPdfDocument {
 public:
  explicit CPdfStructureParser(PDDoc document);

  /// Does nothing to a document without a structure tree.
  void Run();

  /// One for the process: it lives on from run to run, and from document to document. 0 at the start.
  static std::int32_t& LinkDepth();

 private:
  using Handler = void (CPdfStructureParser::*)(CosObj);

  /// Marked content, whose text goes to the link.
  struct MarkedContent {
    ASInt32 mcid;
    ASInt32 page;  ///< counted from 0
  };
  /// That, or an alternate text.
  using LinkPiece = std::variant<MarkedContent, std::u16string>;

  /// Calls the handler of a kind of kid or of an element's type; nothing for a name without one.
  void Dispatch(std::string_view name, CosObj object);
  void HandleElement(CosObj element);
  void HandleKids(CosObj element);
  void HandleLink(CosObj element);
  void HandleMarkedContent(CosObj object);
  void HandleObject(CosObj object);

  void AppendAlt(CosObj element);
  void EndElement();
  std::u16string LinkText() const;
  void WriteLinkText(CosObj annotation, const std::u16string& text);

  std::map<std::string_view, Handler> handlers_;
  std::vector<PDSMCInfo> kids_;  // on the way from the top to the kid at hand
  CPdfContentParser content_;
  AnnotActionReader actions_;
  std::vector<CosObj> links_;        // that are open
  std::vector<LinkPiece> linkText_;  // read when it is written, which it mostly is not: see the class
  std::vector<CosObj> annotations_;  // that wait for the text
  // What may still be written: links that stay open give each of their annotations all of the text that was gathered.
  std::size_t bytesLeft_ = 256U << 20U;
};

}  // namespace tgx
