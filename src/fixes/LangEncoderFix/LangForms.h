#pragma once

#include <string>

namespace tgx {

/// The two spellings of a language in "Lang" that an exporter and its readers know. All are byte strings.
///
/// bracket form: "[Lang=de]"
/// tag form: FE FF, an open mark, the language code with each byte behind 00 0E 00, a close mark

/// Whether the bytes hold exactly one "[Lang=" and exactly one "]", in whatever order, and are no tag form.
bool IsBracketForm(const std::string& bytes);
/// Whether the bytes hold exactly one of each mark, the close mark not before the open one.
bool IsTagForm(const std::string& bytes);

/// The tag form of what is left of a bracket form without its brackets.
std::string BracketToTagForm(const std::string& bytes);
/// The bracket form of what is left of a tag form without its marks.
std::string TagToBracketForm(std::string bytes);

}  // namespace tgx
