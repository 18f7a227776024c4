#include "host/pdfedit/reading/Opcode.h"

namespace tgx::host {
namespace {

constexpr std::uint32_t Pack(std::string_view keyword) {
  std::uint32_t packed = 0;
  for (const char c : keyword) packed = (packed << 8U) | static_cast<unsigned char>(c);
  return packed;
}

}  // namespace

Opcode OpcodeOf(std::string_view keyword) noexcept {
  constexpr std::size_t kLongest = 3;
  if (keyword.size() > kLongest) return Opcode::kUnknown;
  switch (Pack(keyword)) {
#define TGX_OPCODE(name, text) \
  case Pack(text):             \
    return Opcode::k##name;
    TGX_CONTENT_OPERATORS(TGX_OPCODE)
#undef TGX_OPCODE
    default:
      return Opcode::kUnknown;
  }
}

}  // namespace tgx::host
