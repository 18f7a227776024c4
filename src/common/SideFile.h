#pragma once

#include <fstream>
#include <optional>
#include <string>

namespace tgx {

/// Opens a file that an exporter left beside the document. Nothing for one that is missing, cannot be read or is larger than
/// 64 MiB, and for what is no regular file: a pipe would make the reader wait.
std::optional<std::ifstream> OpenSideFile(const std::string& path);

}  // namespace tgx
