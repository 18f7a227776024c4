#include "tool/MarkTexts.h"

#include <algorithm>
#include <vector>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/TextString.h"
#include "tool/ToolSteps.h"

namespace tgx::tool {
namespace {

/// The text as UTF-8. Without a mark of an encoding it counts as UTF-8 where it can be that: marks are written in both.
std::string Decode(const std::string& bytes) {
  const bool hasMark = bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xEF\xBB\xBF");
  return !hasMark && IsUtf8(bytes) ? bytes : DecodeTextString(bytes);
}

/// Visits elements and writes their texts anew.
class Rewriter {
 public:
  explicit Rewriter(PDDoc document) : document_(PDDocGetCosDoc(document)) {}

  void Visit(PDSElement element) {
    if (PDSElementHasAlt(element) != 0) VisitAlt(element);
    Rewrite(element, "T", TextOf(element, PDSElementGetTitle));
    if (PDSElementHasLanguage(element) == 0) return;
    const std::string language = RewrittenLanguage(TextOf(element, PDSElementGetLanguage));
    if (language.empty()) return;
    SetLanguage(element, language);
    ++count_;
  }

  /// Texts of less than three bytes would end the search for descriptions of tables with a failure. Empty ones go: they say
  /// as much as none.
  void RewriteShortAlts() {
    if (!hasTableData_) return;
    for (const PDSElement& element : shortAlts_) {
      const std::string text = DecodeTextString(TextOf(element, PDSElementGetAlt));
      if (!text.empty()) {
        Put(element, "Alt", EncodeUtf16(text));
      } else {
        CosDictRemoveKeyString(PDSElementGetCosObj(element), "Alt");
        ++count_;
      }
    }
  }

  std::size_t Count() const { return count_; }

 private:
  void VisitAlt(PDSElement element) {
    const std::string alt = TextOf(element, PDSElementGetAlt);
    Rewrite(element, "Alt", alt);
    if (alt.size() < 3) shortAlts_.push_back(element);
    hasTableData_ = hasTableData_ || MarkOfAlt(Decode(alt)) == kTableData;
  }

  void Rewrite(PDSElement element, const char* key, const std::string& bytes) {
    const std::string text = RewrittenText(bytes);
    if (!text.empty()) Put(element, key, text);
  }

  void Put(PDSElement element, const char* key, const std::string& text) {
    PutString(document_, PDSElementGetCosObj(element), key, text);
    ++count_;
  }

  CosDoc document_;
  bool hasTableData_ = false;
  std::vector<PDSElement> shortAlts_;
  std::size_t count_ = 0;
};

}  // namespace

std::string RewrittenText(const std::string& bytes) {
  if (bytes.starts_with("\xFE\xFF")) return "";
  const std::string text = Decode(bytes);
  return HoldsMark(text) ? EncodeUtf16(text) : "";
}

std::string RewrittenLanguage(const std::string& bytes) {
  const std::string text = Decode(bytes);
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
  const bool isLanguage = IsLanguageCode(text) || text.find("[Lang=") != std::string::npos;
  return isPlain && isLanguage && text != bytes ? text : "";
}

std::size_t RewriteMarkTexts(PDDoc document) {
  const HostFrame frame;
  Rewriter rewriter(document);
  ForEachElement(document, [&rewriter](PDSElement element) { rewriter.Visit(element); });
  rewriter.RewriteShortAlts();
  return rewriter.Count();
}

}  // namespace tgx::tool
