#pragma once

#include <memory>

#include <qpdf/InputSource.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// Sees to it that names with a number sign are written as they were read (see Names.h): qpdf spells it out when it reads
/// "a#23b" and does not escape it when it writes. Names that the host makes are in order from the start; those of a file are
/// brought into order before the document is saved. Few files have any, so the file is searched for them first: a walk over
/// all objects takes far longer.
class NameSpelling {
 public:
  explicit NameSpelling(Document& document) : document_(document) {}

  /// The file that the document was read from. Without it every object is looked at.
  void SetSource(std::shared_ptr<InputSource> source) { source_ = std::move(source); }

  /// Called before each saving.
  void Settle();

  /// The same for one object that does not come from the file, such as a parsed property dictionary, and all direct objects
  /// in it.
  void Settle(const QPDFObjectHandle& object);

 private:
  bool FileMayHaveNumberSigns();

  Document& document_;
  std::shared_ptr<InputSource> source_;
  bool isSettled_ = false;
};

}  // namespace tgx::host
