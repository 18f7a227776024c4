#pragma once

#include <string>

namespace tgx::test {

/// The lines that differ between two texts, "-" before those of the first and "+" before those of the second, with two lines
/// around each group and "..." between the groups. Empty for equal texts.
std::string TextDifference(const std::string& first, const std::string& second);

}  // namespace tgx::test
