#pragma once

#include <string>
#include <string_view>

#include <tgx/host.h>

#include "tool/StepResult.h"

namespace tgx::tool {

/// Runs a step of the tool's own. A raise of the host is the result TGX_FAILED with its text, as for a step of the library.
StepResult RunToolStep(PDDoc document, const std::string& name);

/// Letters, digits and hyphens.
bool IsLanguageCode(std::string_view text);

/// The language code of a "Lang" like "[Lang=de]", in whatever encoding it is stored, and also as UTF-16 that has lost its
/// zero bytes; empty for anything else.
std::string LanguageInBrackets(const std::string& bytes);

/// The code to write for a "Lang" that readers do not know: one in brackets, and one as UTF-16 that has lost its zero bytes.
/// Empty for any other.
std::string PlainLanguage(const std::string& bytes);

}  // namespace tgx::tool
