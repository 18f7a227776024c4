#pragma once

#include <optional>
#include <string>

#include <tgx/embedded_host.h>

#include "tool/StepResult.h"
#include "tool/Steps.h"

namespace tgx::tool {

struct SaveChoices {
  bool linearize = false;
  bool deterministic = false;
  bool decrypt = false;
};

/// A file opened by the embedded host, worked on by the library. It stays open when its scope ends: the program ends soon
/// after, and the system takes back the memory of a million objects much faster than they can be freed one by one.
class Document {
 public:
  /// Throws Failure.
  Document(std::string path, const std::optional<std::string>& password);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const std::string& Path() const { return path_; }
  PDDoc Handle() const { return handle_; }

  StepResult Run(const StepCall& step);

  /// How many edits the document has seen so far.
  std::size_t Edits() const { return TGXHost_EditCount(handle_); }

  /// Keeps the content of pages from one step for the next: for many steps that look at the pages.
  void KeepContent() { keepsContent_ = true; }

  /// Tells on standard error what was found wrong with the file, as far as it has not been told yet: a few lines at most.
  void TellWarnings();

  /// Ends the document here and now, when another is to be opened in its place.
  void Close();

  /// Throws Failure; the target is then as it was.
  void Save(const std::string& path, const SaveChoices& choices);

 private:
  std::string path_;
  PDDoc handle_;
  bool keepsContent_ = false;
  std::size_t warningsTold_ = 0;
};

/// Throws Failure unless the file is a document that opens without a password.
void RequireOpensWithoutPassword(const std::string& path);

}  // namespace tgx::tool
