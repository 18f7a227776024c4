#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

namespace tgx::test {

/// The embedded host's tables.
const HostTables* EmbeddedTables();

/// The client's identity that sessions initialise the library with.
inline const auto kTestExtension = reinterpret_cast<ASExtension>(0x7E57);

/// What an exported function gave: its result, and the last-error text after it.
struct Outcome {
  int result = TGX_OK;
  std::string text;
  bool operator==(const Outcome&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Outcome& outcome);

const Outcome kSuccess = {TGX_OK, ""};
/// An operation that reported failure without a text.
const Outcome kSoftFailure = {TGX_FAILED, ""};
inline Outcome HardFailure(std::string text) { return {TGX_FAILED, std::move(text)}; }

/// Initialises the library for as long as it lives, by default with the embedded host's tables. Exception frames that
/// failing calls leave behind are cut, as an embedder does it.
class HostSession {
 public:
  explicit HostSession(const HostTables* tables = EmbeddedTables());
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

 private:
  const HostTables* before_;
  std::size_t frames_;
};

/// A document opened by the embedded host. The library works on it with the tables of the innermost HostSession, or with the
/// embedded host's when there is none.
class OpenDocument {
 public:
  explicit OpenDocument(const std::string& bytes, const std::string& name = "test.pdf",
                        const TGXHostOpenOptions* options = nullptr);
  ~OpenDocument();
  OpenDocument(const OpenDocument&) = delete;
  OpenDocument& operator=(const OpenDocument&) = delete;

  PDDoc Handle() const { return handle_; }

  Outcome Action(int number, const std::string& path = "");
  Outcome Fixups(std::uint32_t mask);

  /// The bytes of the document as the host saves it now; it stays open.
  std::string Save(const TGXHostSaveOptions* options = nullptr);

 private:
  PDDoc handle_ = nullptr;
};

/// Saves, opens again with qpdf and gives the structure tree as text: TreeText(document.Save()).
std::string SavedTree(OpenDocument& document);

}  // namespace tgx::test
