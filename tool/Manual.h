#pragma once

#include <string>

namespace CLI {
class App;
}

namespace tgx::tool {

/// The manual page of the command, in the macros of man(7).
std::string ManualPage(const CLI::App& app);

}  // namespace tgx::tool
