#pragma once

#include <cstddef>
#include <vector>

#include "src/wrappers/PDS_Element.h"
#include "src/wrappers/PageViews.h"

namespace tgx {

/// Appends the text of the element's marked content, and with `recursive` that of the elements below, in tree order, and
/// gives the size of `out` in bytes. Only text that stands directly in the marked content counts, not in sequences nested in
/// it. Text as PDE_Text gives it; null appends nothing.
std::size_t CollectElementText(const PDS_Element* element, std::vector<char>& out, bool recursive);
/// The same with the views of a pass over many elements.
std::size_t CollectElementText(const PDS_Element* element, std::vector<char>& out, bool recursive, PageViews& views);

}  // namespace tgx
