#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/TestDocument.h"

namespace tgx::test {

/// Gives the page a font "F2" whose codes are two bytes long. `characters` are codes and what a ToUnicode table makes of
/// them, in hexadecimal digits: {{"0001", "2022"}}.
inline void AddTwoByteFont(TestDocument& document, Page& page,
                           const std::vector<std::pair<std::string, std::string>>& characters) {
  std::string map =
      "/CIDInit /ProcSet findresource begin 12 dict begin begincmap 1 begincodespacerange <0000> <FFFF> "
      "endcodespacerange\n" +
      std::to_string(characters.size()) + " beginbfchar";
  for (const auto& [code, unicode] : characters) map += " <" + code + "> <" + unicode + ">";
  document.Stream("twoByteMap", "<<>>", map + " endbfchar endcmap end end");
  page.Resource(
      "Font", "F2",
      "<</Type/Font/Subtype/Type0/BaseFont/A/Encoding/Identity-H/ToUnicode $twoByteMap/DescendantFonts[<</Type/Font"
      "/Subtype/CIDFontType2/BaseFont/A/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>>>]>>");
}

}  // namespace tgx::test
