#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <tgx/host.h>

#include "host/core/HostError.h"
#include "host/core/Tables.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

/// A document of the embedded host for the length of a test, with the shorthands that tests of the Cos operations need.
/// Names are as in the tables; a null key or handle goes through as it is.
class HostDocument {
 public:
  /// A document without pages.
  HostDocument();

  /// A document that consists of these objects: the text between "1 0 obj" and the last "endobj", with the catalog as
  /// object 1.
  static HostDocument FromObjects(const std::string& objects);

  /// A document read from the bytes of a file.
  static HostDocument FromBytes(std::string_view bytes, const char* password = nullptr);

  HostDocument(HostDocument&& other) noexcept;
  HostDocument& operator=(HostDocument&&) = delete;
  ~HostDocument();

  Document& operator*() { return *document_; }
  Document* operator->() { return document_; }
  CosDoc Doc() { return document_->CosHandle(); }
  CosObj Root() { return document_->HandleOf(document_->Pdf().getRoot()); }
  CosObj Object(int number) { return document_->HandleOf(document_->Pdf().getObjectByID(number, 0)); }
  void Close();

  CosObj Integer(int value) { return Tables()->cos->CosNewInteger(Doc(), 0, value); }
  CosObj Dict(bool indirect = false) { return Tables()->cos->CosNewDict(Doc(), indirect ? 1 : 0, 0); }
  CosObj Array(bool indirect = false) { return Tables()->cos->CosNewArray(Doc(), indirect ? 1 : 0, 0); }
  CosObj Name(std::string_view text);
  CosObj String(std::string_view bytes);

  /// The bytes of the document as the host saves it.
  std::string Written();

  /// Written and read again.
  HostDocument Reopened() { return FromBytes(Written()); }

 private:
  explicit HostDocument(Document& document) : document_(&document) {}

  Document* document_;
};

/// Handles of several host types, with values to compare.
inline bool IsNullObject(CosObj object) { return object.a == 0 && object.b == 0; }

/// Runs `work`, which is to raise, and gives the code of the raise; -1 when it does not raise. There is no frame, so the
/// host's own exception comes out.
template <typename Work>
ASErrorCode RaisedCode(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const HostError& error) {
    return error.Code();
  }
  return -1;
}

template <typename Work>
std::string RaisedText(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const HostError& error) {
    return error.Text();
  }
  return "(no raise)";
}

}  // namespace tgx::host

inline bool operator==(CosObj a, CosObj b) { return a.a == b.a && a.b == b.b; }
inline void PrintTo(CosObj object, std::ostream* out) { *out << object.a << ':' << object.b; }
