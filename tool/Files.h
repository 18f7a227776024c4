#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tgx::tool {

/// Throws Failure unless `path` is a regular file, not empty, that can be opened for reading.
void RequireReadable(const std::string& path);

/// Throws Failure unless OUTPUT can be put in its place: a regular file only with `force`, INPUT itself (under any name)
/// too, and in a folder that can be written.
void RequireWritable(const std::string& input, const std::string& output, bool force);

/// Whether both names, under any spelling, lead to one file that exists.
bool IsSameFile(const std::string& one, const std::string& other);

/// What tells whether a file is still the same: device, number, size and time of the last change.
using FileVersion = std::array<std::int64_t, 5>;
FileVersion VersionOf(const std::string& path);

/// The first line of a file, without its end. Throws Failure.
std::string ReadFirstLine(const std::string& path);

}  // namespace tgx::tool
