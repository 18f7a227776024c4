#pragma once

#include "tool/Steps.h"

namespace tgx::tool {

/// Throws Failure where the step takes a file and the one that it got cannot be read, or cannot be what the step needs. To
/// be called before the document is touched.
void RequireUsableFile(const StepCall& step);

}  // namespace tgx::tool
