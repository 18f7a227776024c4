#include <algorithm>

#include "host/pdfedit/model/PageModel.h"

namespace tgx::host {

void PageModel::BuildMcidIndex() {
  mcids_.clear();
  for (std::uint32_t number = 0; number < Count(); ++number) {
    const Element& element = At(number);
    if (element.type == kPDEContainer && element.mcid >= 0) mcids_.push_back({element.mcid, number});
  }
  std::sort(mcids_.begin(), mcids_.end());
  mcidsKnown_ = true;
  staleMcids_ = 0;
}

PDEContainer PageModel::ContainerOf(std::int32_t mcid) {
  if (mcid < 0) return nullptr;
  if (!mcidsKnown_) BuildMcidIndex();
  auto entry = std::lower_bound(mcids_.begin(), mcids_.end(), McidEntry{mcid, 0});
  PDEContainer found = nullptr;
  for (; entry != mcids_.end() && entry->mcid == mcid; ++entry) {
    if (At(entry->container).mcid == mcid && IsAttached(entry->container)) {
      found = elements_.Handle(entry->container);
      break;
    }
    ++staleMcids_;
  }
  // Entries of containers that are gone are passed over again at each question; now and then they are swept out.
  if (staleMcids_ > mcids_.size()) {
    mcids_.erase(std::remove_if(mcids_.begin(), mcids_.end(),
                                [this](const McidEntry& known) {
                                  return At(known.container).mcid != known.mcid || !IsAttached(known.container);
                                }),
                 mcids_.end());
    staleMcids_ = 0;
  }
  return found;
}

void PageModel::SetMcid(std::uint32_t container, std::int32_t mcid) {
  if (At(container).mcid == mcid) return;
  At(container).mcid = mcid;
  if (!mcidsKnown_ || mcid < 0) return;
  const McidEntry entry{mcid, container};
  const auto place = std::lower_bound(mcids_.begin(), mcids_.end(), entry);
  if (place == mcids_.end() || entry < *place) mcids_.insert(place, entry);
}

void PageModel::PropertiesChanged(std::uint32_t number) {
  Properties& properties = properties_[number];
  properties.isEdited = true;
  const std::int32_t mcid = McidOf(properties.dictionary);
  if (properties.container != kNone) {
    properties.isNested = HoldsContainers(properties.dictionary);
    SetMcid(properties.container, mcid);
    editedProperties_.push_back(number);
    edited_ = true;
    return;
  }
  if (usersOfShared_.empty()) {
    for (std::uint32_t container = 0; container < Count(); ++container) {
      if (At(container).Is(Element::kSharedDictionary)) usersOfShared_[At(container).dictionary].push_back(container);
    }
  }
  for (const std::uint32_t container : usersOfShared_[number]) SetMcid(container, mcid);
}

}  // namespace tgx::host
