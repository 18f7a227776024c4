#include "host/pdmodel/AtomicFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <random>

#include <fcntl.h>
#include <unistd.h>

#include "host/core/FileError.h"

namespace tgx::host {
namespace {

constexpr const char* kCannotWrite = "cannot be written";
constexpr int kMostLinks = 40;
constexpr mode_t kPermissionBits = 0777;

struct SplitPath {
  std::string folder;
  std::string name;
};

SplitPath Split(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {".", path};
  return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

/// Where a chain of symbolic links ends; the file there need not exist.
std::string FollowLinks(const std::string& path) {
  std::string target = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::array<char, PATH_MAX> buffer;
    const ssize_t length = ::readlink(target.c_str(), buffer.data(), buffer.size());
    if (length < 0) return target;
    const std::string destination(buffer.data(), static_cast<std::size_t>(length));
    target = destination.starts_with('/') ? destination : Split(target).folder.append("/").append(destination);
  }
  throw FileError(path, kCannotWrite, ELOOP);
}

std::string RandomName() {
  std::random_device random;
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), ".tgx-%08x%08x.tmp", static_cast<unsigned>(random()),
                static_cast<unsigned>(random()));
  return name.data();
}

/// Link number N of this process's open files, through which a file without a name can be given one.
std::string ProcessLink(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

AtomicFile::AtomicFile(const std::string& path, TemporaryName temporaryName) : path_(path) {
  if (path.empty()) throw FileError(path, kCannotWrite, ENOENT);
  const std::string target = FollowLinks(path);
  InspectTarget(target);
  auto [folder, name] = Split(target);
  name_ = std::move(name);
  folder_ = FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // A folder that may be written to but not listed cannot be flushed, and is good for everything else.
  if (!folder_ && errno == EACCES) folder_ = FileDescriptor(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder_) Fail(errno);
  if (temporaryName == TemporaryName::kLate) OpenUnnamedTemporary();
  if (!file_) OpenNamedTemporary();
}

AtomicFile::~AtomicFile() {
  if (!temporaryName_.empty()) ::unlinkat(folder_.Number(), temporaryName_.c_str(), 0);
}

void AtomicFile::Fail(int systemError) const { throw FileError(path_, kCannotWrite, systemError); }

void AtomicFile::InspectTarget(const std::string& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) != 0) {
    if (errno != ENOENT || target.ends_with('/')) Fail(errno);
    return;
  }
  if (S_ISDIR(status.st_mode)) throw FileError(path_, "cannot be written: it is a folder");
  if (!S_ISREG(status.st_mode)) throw FileError(path_, "cannot be written: it is not a regular file");
  // Renaming would replace a write-protected file as well, which nobody expects.
  if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Fail(errno);
  replaced_ = status;
}

// Closed to others while it is written, if the file that it replaces might be.
mode_t AtomicFile::TemporaryMode() const { return replaced_ ? 0600 : 0666; }

void AtomicFile::OpenUnnamedTemporary() {
  FileDescriptor file(::openat(folder_.Number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, TemporaryMode()));
  if (file && ::access(ProcessLink(file.Number()).c_str(), F_OK) == 0) file_ = std::move(file);
}

void AtomicFile::OpenNamedTemporary() {
  for (;;) {
    std::string name = RandomName();
    FileDescriptor file(::openat(folder_.Number(), name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, TemporaryMode()));
    if (!file && errno == EEXIST) continue;
    if (!file) Fail(errno);
    temporaryName_ = std::move(name);
    file_ = std::move(file);
    return;
  }
}

void AtomicFile::CheckInterrupted() const {
  if (held_.IsInterrupted()) throw FileError(path_, "cannot be written: interrupted by a signal");
}

void AtomicFile::Write(std::string_view bytes) {
  CheckInterrupted();
  if (!WriteAll(file_.Number(), bytes)) Fail(errno);
}

void AtomicFile::GiveAttributes() {
  if (!replaced_) return;
  const int file = file_.Number();
  // Giving a file away is the superuser's; a group that we belong to is the most that others can keep.
  if (::fchown(file, replaced_->st_uid, replaced_->st_gid) != 0) {
    static_cast<void>(::fchown(file, static_cast<uid_t>(-1), replaced_->st_gid) == 0);
  }
  if (::fchmod(file, replaced_->st_mode & kPermissionBits) != 0) Fail(errno);
}

void AtomicFile::CopyToNamedTemporary() {
  const FileDescriptor source = std::move(file_);
  OpenNamedTemporary();
  GiveAttributes();
  std::array<char, 65536> buffer;
  for (off_t offset = 0;;) {
    const ssize_t length = ::pread(source.Number(), buffer.data(), buffer.size(), offset);
    if (length < 0 && errno == EINTR) continue;
    if (length < 0) Fail(errno);
    if (length == 0) break;
    Write({buffer.data(), static_cast<std::size_t>(length)});
    offset += length;
  }
  if (::fsync(file_.Number()) != 0) Fail(errno);
}

void AtomicFile::GiveName() {
  std::string name = RandomName();
  const std::string link = ProcessLink(file_.Number());
  if (::linkat(AT_FDCWD, link.c_str(), folder_.Number(), name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
    temporaryName_ = std::move(name);
  } else {
    CopyToNamedTemporary();  // forbidden in some sandboxes
  }
}

void AtomicFile::Commit() {
  CheckInterrupted();
  GiveAttributes();
  if (::fsync(file_.Number()) != 0) Fail(errno);
  if (temporaryName_.empty()) GiveName();
  if (::renameat(folder_.Number(), temporaryName_.c_str(), folder_.Number(), name_.c_str()) != 0) Fail(errno);
  temporaryName_.clear();
  // The file is in place; a folder that cannot be flushed (several file systems) is no reason to report a failure.
  static_cast<void>(::fsync(folder_.Number()) == 0);
}

}  // namespace tgx::host
