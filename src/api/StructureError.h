#pragma once

#include <string>

namespace tgx {

/// The diagnostic of a missing structure root or role map: line, source file and message, a line each.
std::string StructureErrorText(const char* message, const char* sourceFile, int line);

/// Composes the diagnostic and drops it: nothing is logged, stored or thrown, and the caller goes on with its own way out.
/// `sourceFile` is the caller's without folder of the machine and ending, such as "common/StructureUtils".
void ReportStructureError(const char* message, const char* sourceFile, int line);

}  // namespace tgx
