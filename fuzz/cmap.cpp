// Reads any bytes as a ToUnicode map and as the CMap of a composite font, and cuts them into codes with it.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "host/pdfedit/fonts/CMap.h"
#include "host/pdfedit/fonts/ToUnicode.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tgx::host;
  // Maps that inputs rest on, kept so that they are read once.
  static const std::shared_ptr<const CMap> kept[] = {CMap::Predefined("GBK-EUC-H"), CMap::Predefined("90ms-RKSJ-V"),
                                                     CMap::Predefined("90ms-RKSJ-H"), CMap::Predefined("UniJIS-UTF16-H")};
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const ToUnicode toUnicode = ToUnicode::Parse(input);
  const auto cmap = CMap::Parse(input, nullptr);

  std::u16string text;
  for (std::string_view left = input; !left.empty();) {
    const Font::Code code = cmap->Next(left);
    if (code.length < 1 || code.length > 4 || static_cast<std::size_t>(code.length) > left.size()) std::abort();
    left.remove_prefix(static_cast<std::size_t>(code.length));
    cmap->CharacterOf(code);
    text.clear();
    const std::size_t before = text.size();
    if (!toUnicode.Append(code.value, text) && text.size() != before) std::abort();
    toUnicode.Append(cmap->CidOf(code), text);
  }
  return 0;
}
