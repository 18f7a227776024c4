#include "host/pdfedit/model/ColorSpaces.h"

#include <array>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/pdfedit/model/Records.h"

namespace tgx::host {
namespace {

constexpr std::array<std::pair<const char*, int>, 3> kSpaces = {{{"DeviceGray", 1}, {"DeviceRGB", 3}, {"DeviceCMYK", 4}}};

const Slabs<ColorSpaceRecord>& Records() {
  static const auto& records = *[] {
    auto* made =
        new Slabs<ColorSpaceRecord>(RecordKind::kColorSpace, nullptr);  // handles stay good for the life of the process
    for (const auto& [name, components] : kSpaces) made->Add({components, {}});
    return made;
  }();
  return records;
}

}  // namespace

PDEColorSpace ColorSpaceOfName(ASAtom name) {
  const std::string_view text = AtomView(name);
  for (std::uint32_t i = 0; i < kSpaces.size(); ++i) {
    if (text == kSpaces[i].first) return Records().Handle(i);
  }
  throw HostError(kASBadParameter, "no device colour space is called \"" + std::string(text) + '"');
}

int ComponentsOf(PDEColorSpace space) {
  const FoundRecord found = FindRecord(space);
  if (found.slab == nullptr) throw HostError(kASBadParameter, "no colour space has this handle");
  if (found.slab->kind != RecordKind::kColorSpace)
    throw HostError(kASWrongType, "the page content object is no colour space");
  return static_cast<ColorSpaceRecord*>(found.record)->components;
}

}  // namespace tgx::host
