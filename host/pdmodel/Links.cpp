#include "host/pdmodel/Links.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "host/core/Atoms.h"
#include "host/core/Fixed.h"
#include "host/core/HostError.h"
#include "host/cos/Numbers.h"
#include "host/pdmodel/Edits.h"

namespace tgx::host {
namespace {

constexpr ASInt32 kMostDashes = 4;
constexpr ASFixed kOnePoint = 0x10000;

/// What follows the page and the fit type.
std::vector<ASFixed> Places(std::string_view fit, const ASFixedRect& rect, ASFixed zoom) {
  if (fit == "XYZ") return {rect.left, rect.top, zoom};
  if (fit == "FitH" || fit == "FitBH") return {rect.top};
  if (fit == "FitV" || fit == "FitBV") return {rect.left};
  if (fit == "FitR") return {rect.left, rect.bottom, rect.right, rect.top};
  return {};
}

bool NeedsRect(std::string_view fit) {
  if (fit == "Fit" || fit == "FitB") return false;
  if (!Places(fit, {}, 0).empty()) return true;
  throw HostError(kASBadParameter, "no kind of destination is called \"" + std::string(fit) + "\"");
}

}  // namespace

PDLinkAnnotBorder BorderOf(const QPDFObjectHandle& annotation) {
  PDLinkAnnotBorder border = {};
  border.width = kOnePoint;
  QPDFObjectHandle array = QPDFObjectHandle(annotation).getKey("/Border");
  if (!array.isArray() || array.getArrayNItems() < 3) return border;
  border.hCornerRadius = ToFixed(NumberOf(array.getArrayItem(0)));
  border.vCornerRadius = ToFixed(NumberOf(array.getArrayItem(1)));
  border.width = ToFixed(NumberOf(array.getArrayItem(2)));
  QPDFObjectHandle dashes = array.getArrayNItems() > 3 ? array.getArrayItem(3) : QPDFObjectHandle::newNull();
  if (!dashes.isArray()) return border;
  border.dashArrayLen = std::min<ASInt32>(dashes.getArrayNItems(), kMostDashes);
  for (ASInt32 i = 0; i < border.dashArrayLen; ++i) border.dashArray[i] = ToFixed(NumberOf(dashes.getArrayItem(i)));
  return border;
}

QPDFObjectHandle BorderArray(const PDLinkAnnotBorder& border) {
  if (border.dashArrayLen < 0 || border.dashArrayLen > kMostDashes) {
    throw HostError(kASBadParameter, "a border has 0 to 4 dashes, not " + std::to_string(border.dashArrayLen));
  }
  std::vector<QPDFObjectHandle> items = {NumberFrom(border.hCornerRadius), NumberFrom(border.vCornerRadius),
                                         NumberFrom(border.width)};
  if (border.dashArrayLen > 0) {
    std::vector<QPDFObjectHandle> dashes;
    std::transform(border.dashArray, border.dashArray + border.dashArrayLen, std::back_inserter(dashes), NumberFrom);
    items.push_back(QPDFObjectHandle::newArray(dashes));
  }
  return QPDFObjectHandle::newArray(items);
}

QPDFObjectHandle DestinationArray(const QPDFObjectHandle& page, ASAtom fitType, const ASFixedRect* rect, ASFixed zoom) {
  const std::string fit(AtomView(fitType));
  if (NeedsRect(fit) && rect == nullptr) {
    throw HostError(kASBadParameter, "a destination of the kind \"" + fit + "\" needs a rectangle");
  }
  std::vector<QPDFObjectHandle> items = {page, QPDFObjectHandle::newName("/" + fit)};
  for (const ASFixed place : Places(fit, rect == nullptr ? ASFixedRect{} : *rect, zoom)) items.push_back(NumberFrom(place));
  return QPDFObjectHandle::newArray(items);
}

}  // namespace tgx::host
