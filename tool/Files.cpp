#include "tool/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "tool/Messages.h"

namespace tgx::tool {
namespace {

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

void RequireRegular(const std::string& path, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) throw Failure(path, "is a folder");
  if (!S_ISREG(status.st_mode)) throw Failure(path, "is not a regular file");
}

/// A file takes the place of the old one as a whole, so its folder is written to in any case.
void RequireFolderOf(const std::string& path) {
  const std::string folder = FolderOf(path);
  struct stat status = {};
  if (stat(folder.c_str(), &status) != 0) {
    throw Failure(path, errno == ENOENT ? "there is no folder " + folder : folder + ": " + Reason(errno));
  }
  if (!S_ISDIR(status.st_mode)) throw Failure(path, folder + " is not a folder");
  if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    throw Failure(path, "nothing can be written to the folder " + folder + ": " + Reason(errno));
  }
}

/// A single dash is the name of a file, and hardly ever meant as one.
void RequireNoDash(const std::string& path, const char* stream) {
  if (path == "-") throw Failure(path, std::string(stream) + " cannot be used; write ./- for a file of that name");
}

}  // namespace

void RequireReadable(const std::string& path) {
  RequireNoDash(path, "standard input");
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) throw Failure(path, errno == ENOENT ? "no such file" : Reason(errno));
  RequireRegular(path, status);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) throw Failure(path, Reason(errno));
  close(file);
  if (status.st_size == 0) throw Failure(path, "the file is empty");
}

void RequireWritable(const std::string& input, const std::string& output, bool force) {
  if (output.empty()) throw Failure("-o: the name of the output is empty");
  RequireNoDash(output, "standard output");
  if (output.back() == '/') throw Failure(output, "is not the name of a file");
  struct stat target = {};
  if (lstat(output.c_str(), &target) != 0) {
    if (errno != ENOENT && errno != ENOTDIR) throw Failure(output, Reason(errno));
    return RequireFolderOf(output);
  }
  const bool leadsToFile = stat(output.c_str(), &target) == 0;
  if (leadsToFile) RequireRegular(output, target);
  if (force) {
    if (leadsToFile) RequireFolderOf(std::filesystem::canonical(output));
    return;
  }
  throw Failure(output,
                IsSameFile(input, output) ? "is the input; --force replaces it" : "exists already; --force replaces it");
}

bool IsSameFile(const std::string& one, const std::string& other) {
  struct stat first = {};
  struct stat second = {};
  return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

FileVersion VersionOf(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) return {};
  return {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino), status.st_size,
          status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::string ReadFirstLine(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(path, errno == ENOENT ? "no such file" : Reason(errno));
  std::string line;
  errno = 0;
  std::getline(file, line);
  if (file.bad() || errno != 0) throw Failure(path, Reason(errno));
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace tgx::tool
