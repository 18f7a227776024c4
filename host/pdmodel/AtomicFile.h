#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>

#include "host/core/FileDescriptor.h"
#include "host/pdmodel/HeldSignals.h"

namespace tgx::host {

/// When the temporary file gets its name.
enum class TemporaryName {
  kLate,       ///< at the commit, where the file system can do that
  kFromStart,  ///< what happens elsewhere
};

/// A file that appears under its name whole or not at all. The bytes go to a temporary file in the target's folder, which
/// Commit flushes to disk and renames over the target; without a Commit the target stays as it was and the temporary file is
/// gone.
///
/// Where the file system can, the temporary file has no name until the moment of the renaming, so that not even a killed
/// process leaves one behind. A target that is a symbolic link stays one: the file that it leads to is replaced. The new
/// file has the permission bits of the one that it replaces, and its owner where the system lets us.
///
/// Signals that end a program wait while such a file is open; see HeldSignals.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path, TemporaryName temporaryName = TemporaryName::kLate);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void Write(std::string_view bytes);
  void Commit();

 private:
  void InspectTarget(const std::string& target);
  mode_t TemporaryMode() const;
  void OpenUnnamedTemporary();
  void OpenNamedTemporary();
  void GiveAttributes();
  void GiveName();
  void CopyToNamedTemporary();
  void CheckInterrupted() const;
  [[noreturn]] void Fail(int systemError) const;

  HeldSignals held_;  // first, so that they arrive after the temporary file is gone
  std::string path_;  // as the caller named it, for messages
  std::string name_;  // of the target in its folder
  std::optional<struct stat> replaced_;
  FileDescriptor folder_;
  FileDescriptor file_;
  std::string temporaryName_;  // empty while the temporary file has none
};

}  // namespace tgx::host
