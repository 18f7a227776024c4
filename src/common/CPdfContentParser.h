#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "src/common/CPdfDocument.h"
#include "src/common/PageContentGuards.h"
#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// The text of a piece of marked content.
struct ContentTextRecord {
  ASInt32 mcid = -1;
  ASInt32 page = -1;  ///< counted from 0
  std::u16string text;
};

/// Goes through the content of all pages once and gives the text of marked content by MCID and page. Texts are read when
/// they are asked for: few of a document's ever are.
class CPdfContentParser : public CPdfDocument {
 public:
  CPdfContentParser();

  /// As that of the base; what was read of the document before is forgotten.
  void SetDoc(PDDoc document);

  /// Reads the document anew. The references that this takes on the pages stay open; their contents are held for as long as
  /// the parser lives.
  void Parse();

  /// The text of the first text element that stands directly in marked content of that MCID on the page. Other text elements
  /// of the same MCID, and those of marked content nested in it, are not part of it. -1 means marked content without an
  /// MCID. Without a text the record has -1 for both numbers.
  void FindRecord(ASInt32 mcid, ASInt32 page, ContentTextRecord& record) const;

  /// The number of the page with that dictionary, -1 for what is no page of the document.
  ASInt32 PageNumberOf(CosObj cosPage) const;

 private:
  void Reset();
  void VisitContent(PDEElement& content);
  void VisitContainer(PDEElement& container);
  void VisitText(PDEElement& text);

  static std::uint64_t KeyOf(ASInt32 mcid, ASInt32 page) {
    return std::uint64_t{static_cast<std::uint32_t>(page)} << 32U | static_cast<std::uint32_t>(mcid);
  }

  ASInt32 pageNumber_ = -1;
  CosObj cosPage_ = {};
  std::vector<PDEContainer> containers_;  // that are open, innermost last
  ContentDispatch<CPdfContentParser> dispatch_;
  std::deque<AcquiredContent> contents_;
  std::unordered_map<std::uint64_t, PDEText> texts_;
  std::unordered_map<std::uint64_t, ASInt32> pageNumbers_;  // by the bits of the page's dictionary
};

}  // namespace tgx
