#include "host/pdfedit/model/RemovedContent.h"

#include <string>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/PageModel.h"

namespace tgx::host {
namespace {

const RemovedElement& EntryAt(PageContents& contents, std::size_t index) {
  if (index >= contents.Removed().size()) throw HostError(kASOutOfRange, "no removed content " + std::to_string(index));
  return contents.Removed()[index];
}

std::int32_t McidAround(PageModel& page, std::uint32_t number) {
  for (std::uint32_t at = number; at != kNone; at = page.At(at).parent) {
    if (page.At(at).type == kPDEContainer && page.At(at).mcid >= 0) return page.At(at).mcid;
  }
  return -1;
}

/// How many characters of the page are left in the runs.
std::size_t OwnCharacters(const TextLayout& original, const std::vector<EditedRun>& runs) {
  std::size_t count = 0;
  for (const EditedRun& run : runs) {
    if (run.added != nullptr) continue;
    count += original.Runs()[static_cast<std::size_t>(run.original)].chars;
    for (const auto& [first, last] : run.removed) count -= static_cast<std::size_t>(last - first);
  }
  return count;
}

}  // namespace

TGXHostRemovedContent DescribeRemoved(PageContents& contents, std::size_t index) {
  const RemovedElement entry = EntryAt(contents, index);
  PageModel& page = *entry.page;
  TGXHostRemovedContent content = {};
  content.size = sizeof content;
  content.page = page.PageIndex();
  content.kind = page.At(entry.number).type;
  content.mcid = McidAround(page, entry.number);
  if (content.kind == kPDEImage) {
    const PDEImageAttrs attributes = page.ImageOf(entry.number).Attributes();
    content.width = attributes.width;
    content.height = attributes.height;
  }
  return content;
}

ASFixedRect BoxOfRemoved(PageContents& contents, std::size_t index) {
  const RemovedElement entry = EntryAt(contents, index);
  PageModel& page = *entry.page;
  const bool isText = page.At(entry.number).type == kPDEText;
  return (isText ? page.OriginalLayout(entry.number).Bounds() : page.BoxOf(entry.number)).Fixed();
}

// What a commit takes away.

void PageModel::NoteRemoval(std::uint32_t root) {
  for (std::uint32_t at = root; at != kNone; at = At(at).parent) {
    if (At(at).Is(Element::kGone)) return;
  }
  for (std::uint32_t at = root; at < At(root).next;) {
    const Element& element = At(at);
    if (element.Is(Element::kGone)) {
      at = element.next;
      continue;
    }
    if (element.type != kPDEContainer && element.type != kPDEPlace) contents_.NoteRemoved({this, at});
    ++at;
  }
}

/// `text` has runs that are about to be committed.
void PageModel::NoteShortening(std::uint32_t text) {
  const TextEdit& edit = textEdits_.at(text);
  const TextLayout& original = OriginalLayout(text);
  const std::size_t before = edit.isCommitted ? OwnCharacters(original, edit.committed) : original.Chars().size();
  if (OwnCharacters(original, edit.runs) < before) contents_.NoteRemoved({this, text});
}

}  // namespace tgx::host
