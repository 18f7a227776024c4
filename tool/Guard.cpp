#include "tool/Guard.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "tool/HostCalls.h"
#include "tool/Marks.h"

namespace tgx::tool {
namespace {

/// What a step is there to take off the pages.
struct Purpose {
  std::string_view step;
  unsigned marks;    ///< the marked content of these
  bool dummyImages;  ///< images of one sample, wherever they are
  bool text;         ///< characters of any text
};

constexpr Purpose kPurposes[] = {
    {"mathml", kFormula | kFormulaHolder, false, false},
    {"reshuffle-frames-by-holder", kAnchor | kFrameStart | kFrameEnd, true, false},
    {"reshuffle-frames", 0, true, false},
    {"remove-frame-markers", kTextFrame, false, false},
    {"toc", kContentsFrame, false, false},
    {"double-bullets", kBulletSpan, false, false},
    {"remove-dummy-images", 0, true, false},
    {"cut-text", 0, false, true},
};

/// A step that is not listed takes nothing off the pages.
Purpose PurposeOf(std::string_view step) {
  const auto found = std::find_if(std::begin(kPurposes), std::end(kPurposes),
                                  [step](const Purpose& purpose) { return purpose.step == step; });
  return found == std::end(kPurposes) ? Purpose{step, 0, false, false} : *found;
}

bool IsDummyImage(const TGXHostRemovedContent& content) {
  return content.kind == kPDEImage && content.width == 1 && content.height == 1;
}

unsigned MarksAt(const Census& census, std::int32_t page, std::int32_t mcid) {
  unsigned marks = 0;
  auto place = std::lower_bound(census.places.begin(), census.places.end(), MarkedPlace{page, mcid, 0});
  for (; place != census.places.end() && place->page == page && place->mcid == mcid; ++place) marks |= place->marks;
  return marks;
}

std::string KindOf(std::int32_t kind) {
  switch (kind) {
    case kPDEText:
      return "text";
    case kPDEPath:
      return "a drawing";
    case kPDEImage:
      return "an image";
    case kPDEShading:
      return "a shading";
    default:
      return "a form";
  }
}

void Require(int code) {
  if (code != 0) throw HostFailure(code, TGXHost_LastError());
}

std::string Describe(std::int32_t kind, const ASFixedRect& box) {
  const auto points = [](ASFixed value) { return value / 65536.0; };
  char text[120];
  std::snprintf(text, sizeof text, ", %.0f by %.0f points at %.0f, %.0f", points(box.right - box.left),
                points(box.top - box.bottom), points(box.left), points(box.bottom));
  return "it would remove " + KindOf(kind) + text;
}

bool TakesNoRoom(const ASFixedRect& box) { return box.left == 0 && box.top == 0 && box.right == 0 && box.bottom == 0; }

}  // namespace

Guard::Guard(PDDoc document, const Census& before)
    : document_(document), before_(before), seen_(TGXHost_RemovedContentCount(document)) {}

std::optional<Loss> Guard::Check(const std::string& step) {
  const Purpose purpose = PurposeOf(step);
  const std::size_t count = TGXHost_RemovedContentCount(document_);
  std::optional<Loss> loss;
  for (; seen_ < count; ++seen_) {
    TGXHostRemovedContent content = {};
    content.size = sizeof content;
    Require(TGXHost_RemovedContent(document_, seen_, &content));
    const bool isDummyImage = IsDummyImage(content);
    if (isDummyImage) ++dummyImages_;
    if (loss || (isDummyImage && purpose.dummyImages) || (content.kind == kPDEText && purpose.text)) continue;
    if ((MarksAt(before_, content.page + 1, content.mcid) & purpose.marks) != 0) continue;
    ASFixedRect box = {};
    Require(TGXHost_RemovedContentBox(document_, seen_, &box));
    if (!TakesNoRoom(box)) loss = Loss{content.page + 1, Describe(content.kind, box)};
  }
  return loss;
}

}  // namespace tgx::tool
