#include "tool/MarkTexts.h"

#include <algorithm>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/TextString.h"
#include "tool/ToolSteps.h"

namespace tgx::tool {
namespace {

/// The text as UTF-8. Without a mark of an encoding it counts as UTF-8 where it can be that: marks are written in both.
std::string Decode(const std::string& bytes) {
  const bool hasMark = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xEF\xBB\xBF");
  return !hasMark && IsUtf8(bytes) ? bytes : DecodeTextString(bytes);
}

/// Visits elements and writes their texts anew.
class Rewriter {
 public:
  explicit Rewriter(PDDoc document) : document_(PDDocGetCosDoc(document)) {}

  void Visit(PDSElement element) {
    if (PDSElementHasAlt(element) != 0) Rewrite(element, "Alt", PDSElementGetAlt);
    Rewrite(element, "T", PDSElementGetTitle);
    if (PDSElementHasLanguage(element) == 0) return;
    const std::string language = RewrittenLanguage(TextOf(element, PDSElementGetLanguage));
    if (language.empty()) return;
    SetLanguage(element, language);
    ++count_;
  }

  std::size_t Count() const { return count_; }

 private:
  template <typename Getter>
  void Rewrite(PDSElement element, const char* key, Getter getter) {
    const std::string text = RewrittenText(TextOf(element, getter));
    if (text.empty()) return;
    PutString(document_, PDSElementGetCosObj(element), key, text);
    ++count_;
  }

  CosDoc document_;
  std::size_t count_ = 0;
};

}  // namespace

std::string RewrittenText(const std::string& bytes) {
  if (bytes.starts_with("\xFE\xFF")) return "";
  const std::string text = Decode(bytes);
  return HoldsMark(text) ? EncodeUtf16(text) : "";
}

std::string RewrittenLanguage(const std::string& bytes) {
  const std::string text = bytes.starts_with("\xFE\xFF") ? DecodeTextString(bytes) : Decode(bytes);
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
  const bool isLanguage = IsLanguageCode(text) || text.find("[Lang=") != std::string::npos;
  return isPlain && isLanguage && text != bytes ? text : "";
}

std::size_t RewriteMarkTexts(PDDoc document) {
  const HostFrame frame;
  Rewriter rewriter(document);
  ForEachElement(document, [&rewriter](PDSElement element) { rewriter.Visit(element); });
  return rewriter.Count();
}

}  // namespace tgx::tool
