#include "src/actions/RemoveTextFrameMarkers/RemoveTextFrameMarkersAction.h"

#include <string_view>

#include "src/common/ContentCommands.h"
#include "src/common/TagStructureWalker.h"
#include "src/common/TextEncoding.h"

namespace tgx {
namespace {

bool IsMarkerText(const ByteVector& alt) {
  ByteVector utf8;
  Utf16ToUtf8(alt, utf8);
  const std::string_view text(reinterpret_cast<const char*>(utf8.data()), utf8.size());
  return text.find("TEXTFRAME_START") != std::string_view::npos || text.find("TEXTFRAME_END") != std::string_view::npos;
}

// Removes the content of the marker's kids, and what kids can be removed one by one.
void EmptyMarker(PDSElement marker, MarkedContentIndex& index) {
  RemoveMarkedContentCmd command;
  command.index = &index;
  const ASInt32 count = PDSElementGetNumKids(marker);
  // A removed kid lets the next one move up, and it is passed over; the last ones may be gone by the time.
  for (ASInt32 at = 0; at < count && at < PDSElementGetNumKids(marker); ++at) {
    CosObj kid = CosNewNull();
    const ASAtom type = PDSElementGetKidEx(marker, at, &kid, &command.mcid, nullptr, &command.cosPage);
    // Not the type of structure elements: these stay with the marker, and go with it.
    if (type == ASAtomFromString("StuctElem")) {
      PDSElementRemoveKid(marker, kid);
    } else if (type == ASAtomFromString("MC")) {
      command.Execute();
    } else if (type == ASAtomFromString("OBJR")) {
      PDSElementRemoveKidOBJR(marker, kid);
    }
  }
}

}  // namespace

void RemoveTextFrameMarkersAction::VisitElement(PDSElement& element) {
  const ASInt32 length = PDSElementGetAlt(element, nullptr);
  if (length <= 0) return;
  ByteVector alt(static_cast<std::size_t>(length) + 2);
  PDSElementGetAlt(element, alt.data());
  if (IsMarkerText(alt)) markers_.push_back(element);
}

bool RemoveTextFrameMarkersAction::Run() {
  markers_.clear();
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(GetDocument(), &root) == 0) return false;
  TagStructureWalker walker;
  walker.AddVisitor(this);
  walker.Walk(root);
  MarkedContentIndex index;
  for (const PDSElement marker : markers_) {
    EmptyMarker(marker, index);
    PDSElement parent = CosNewNull();
    PDSElementGetParent(marker, &parent, nullptr);
    PDSElementRemoveKid(parent, marker);
  }
  return true;
}

}  // namespace tgx
