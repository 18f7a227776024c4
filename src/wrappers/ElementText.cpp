#include "src/wrappers/ElementText.h"

#include "src/wrappers/PDE_Container.h"
#include "src/wrappers/PDE_Text.h"
#include "src/wrappers/PDS_MC.h"

namespace tgx {
namespace {

void AppendText(const PDE_Container& container, std::vector<char>& out) {
  const PDE_Content& content = *container.GetContent();
  std::vector<char> bytes;
  for (ASInt32 index = 0; index < content.GetNumElems(); ++index) {
    const auto* text = dynamic_cast<const PDE_Text*>(content.GetElem(index));
    if (text != nullptr && text->GetText(bytes) > 0) out.insert(out.end(), bytes.begin(), bytes.end());
  }
}

}  // namespace

std::size_t CollectElementText(const PDS_Element* element, std::vector<char>& out, bool recursive) {
  if (element == nullptr) return out.size();
  PageViews views(element->GetDocument());
  return CollectElementText(element, out, recursive, views);
}

std::size_t CollectElementText(const PDS_Element* element, std::vector<char>& out,  // NOLINT(misc-no-recursion)
                               bool recursive, PageViews& views) {
  if (element == nullptr) return out.size();
  for (const auto& kid : element->GetKids()) {
    if (const auto* below = dynamic_cast<const PDS_Element*>(kid.get())) {
      if (recursive) CollectElementText(below, out, true, views);
    } else if (const auto* content = dynamic_cast<const PDS_MC*>(kid.get())) {
      const PDE_Container* container = views.FindContainer(content->GetPage(), content->GetMCID());
      if (container != nullptr) AppendText(*container, out);
    }
  }
  return out.size();
}

}  // namespace tgx
