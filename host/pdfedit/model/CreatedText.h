#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <tgx/host.h>

#include "host/pdfedit/model/Records.h"
#include "host/pdfedit/model/TextEdits.h"
#include "host/pdfedit/model/TextLayout.h"

namespace tgx::host {

class PageModel;

/// A text element that a client made. Until it is added to a page it lives as long as its references; after that as long as
/// the page's document, in a list or not.
class CreatedText {
 public:
  /// A new one, in no list, with one reference.
  static CreatedText& Make();
  static void Free(CreatedText& text) noexcept;
  /// One reference less; frees a text that no page knows when it was the last.
  static void Release(CreatedText& text) noexcept;

  /// Empties the texts that show fonts of a document that ends and stand on none of its pages.
  static void ForgetFonts(const void* document) noexcept;

  PDEText Handle() const noexcept;

  const TextLayout& Layout();
  void Changed() { layout_.reset(); }

  int references = 1;
  std::vector<EditedRun> runs;
  PageModel* page = nullptr;
  std::uint32_t list = kNone;     ///< that it stands in
  std::uint32_t addedAs = kNone;  ///< number among the texts of the page

 private:
  std::uint32_t record_ = kNone;
  std::unique_ptr<TextLayout> layout_;
};

}  // namespace tgx::host
