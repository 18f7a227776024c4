#pragma once

#include <string>

#include <tgx/host.h>

namespace tgx::tool {

/// After the fields have taken over their appearances from the form at `formPath`: has viewers show these. A document that
/// asks viewers to make all appearances anew ("NeedAppearances") would lose them again, and boxes their ticks.
///
/// Nothing is done unless every widget took its appearance from a form that does not ask for new ones itself.
void KeepCopiedAppearances(PDDoc document, const std::string& formPath);

}  // namespace tgx::tool
