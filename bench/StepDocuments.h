#pragma once

#include <string>

namespace tgx::bench {

// Documents that ask much of single steps. The same arguments give the same bytes.

/// One page with that many marked-content sequences: paragraphs of six lines in two languages, and with each of them a
/// double bullet and two references with their notes. Text in a font of the document `fontFrom`.
void MakeCrowdedPage(int sequences, const std::string& fontFrom, const std::string& path);

/// Pages of fifty lines, with so many formulas in the middle of each that have all their marks.
void MakeFormulaDocument(int pages, int formulasOnPage, const std::string& fontFrom, const std::string& path);

/// A form of that many text fields with appearances, fifty on a page. `filled` gives values and appearances of their own.
void MakeForm(int fields, bool filled, const std::string& path);

}  // namespace tgx::bench
