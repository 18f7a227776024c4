#pragma once

#include <string>
#include <string_view>

#include <tgx/host.h>

namespace tgx::host {

/// The one file system.
ASFileSys DefaultFileSystem() noexcept;

/// Throws kASBadParameter for anything but the one file system; null stands for it.
void CheckFileSystem(ASFileSys fileSystem);

/// Path objects: the bytes of a path as the operating system takes them. A value that is no living path object is
/// recognised.
ASPathName CreatePath(std::string bytes);
const std::string& PathOf(ASPathName path);  ///< throws kASBadParameter for null and released paths
void ReleasePath(ASPathName path) noexcept;  ///< nothing for null and released paths

/// Text of foreign origin for use in a message: bytes that are not UTF-8 and control characters are escaped, so that it
/// stays one line.
std::string OneLine(std::string_view text);

/// A path for use in a message: one line, and the front of a long path is left out.
std::string DisplayName(std::string_view path);

}  // namespace tgx::host
