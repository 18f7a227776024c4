#pragma once

#include <string>

#include <tgx/host.h>

#include "tool/StepResult.h"

namespace tgx::tool {

/// Runs a step of the tool's own. A raise of the host is the result TGX_FAILED with its text, as for a step of the library.
StepResult RunToolStep(PDDoc document, const std::string& name);

/// The language code of a "Lang" like "[Lang=de]", in whatever encoding it is stored; empty for anything else.
std::string LanguageInBrackets(const std::string& bytes);

}  // namespace tgx::tool
