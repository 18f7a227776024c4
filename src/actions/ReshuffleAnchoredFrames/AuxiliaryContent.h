#pragma once

#include <set>

#include "src/api/HostBinding.h"

namespace tgx {

/// Takes out of every page the containers whose MCID is one of these, at any depth, and the dummy images: one black RGB
/// sample with its left edge on that of the page. MCIDs count anew on each page, and still a number goes on all pages.
/// Writes every page back; its content stays acquired, and so does the page. One pass does both: a page is as it would be
/// after one pass for each, but where the host fails, the pages behind keep all of theirs.
void EraseAuxiliaryContent(PDDoc document, const std::set<ASInt32>& mcids);

}  // namespace tgx
