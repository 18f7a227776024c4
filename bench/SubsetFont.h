#pragma once

#include <map>
#include <string>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::bench {

/// A two-byte font of an existing document, the one that can show the most characters, for text in another document.
class SubsetFont {
 public:
  explicit SubsetFont(const std::string& documentPath);

  /// The font in `target`.
  QPDFObjectHandle CopyTo(QPDF& target) { return target.copyForeignObject(font_); }

  /// The text, in UTF-8, as the hexadecimal string that shows it. Throws if the font lacks a character.
  std::string Show(const std::string& utf8) const;

 private:
  QPDF source_;
  QPDFObjectHandle font_;
  std::map<char32_t, std::string> codes_;  // character to four hexadecimal digits
};

}  // namespace tgx::bench
