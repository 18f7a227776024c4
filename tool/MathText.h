#pragma once

#include <string>

namespace tgx::tool {

/// A formula in MathML as a line of text, UTF-8, as people write formulas in plain text: "M = (q l^2)/8". Its own alternate
/// text if it has one. Empty for what is no MathML.
std::string LineOfMathML(const std::string& mathml);

}  // namespace tgx::tool
