#pragma once

#include <string>
#include <vector>

#include <qpdf/QPDF.hh>

namespace tgx::test {

/// The structure tree as indented text, read with qpdf alone:
///
///     Document
///       P title="First" alt=u"..." lang="de"
///         mcid 0 page 1
///       Link
///         objr Link page 1
///
/// A "u" before a text says that it is stored as UTF-16. Characters outside printable ASCII stand as \u{XXXX}, bytes of no
/// character as \xNN.
std::string TreeText(QPDF& pdf);
std::string TreeText(const std::string& bytes);
/// Without the lines of marked content.
std::string TreeWithoutContent(const std::string& bytes);

/// The role map as lines "Custom -> P", in order of the names.
std::string RoleMapText(QPDF& pdf);

/// What is wrong with the parent tree, a line each: every MCID and object reference in the tree must lead back to the
/// element that holds it (the first one, if several do), and nothing else may lead to an element that is not in the tree.
std::vector<std::string> ParentTreeProblems(QPDF& pdf);

/// What a reader of the file could stumble over: qpdf's warnings for the file, all streams and the content of all pages.
std::vector<std::string> FileProblems(const std::string& bytes);

/// Fails the test, naming the problems, unless the file is valid and its parent tree is true.
void ExpectSound(const std::string& bytes);

/// Compares with the reference file tests/golden/NAME.txt; with UPDATE=1 in the environment it is written anew.
void ExpectGolden(const std::string& name, const std::string& text);

/// A document of qpdf's over bytes that it keeps.
class ReadBack {
 public:
  explicit ReadBack(std::string bytes);
  QPDF& Pdf() { return pdf_; }
  QPDF* operator->() { return &pdf_; }
  QPDFObjectHandle Page(int number);    ///< counted from 1
  std::string Content(int pageNumber);  ///< the decoded content of a page, its streams joined
  QPDFObjectHandle TreeRoot() { return pdf_.getRoot().getKey("/StructTreeRoot"); }

 private:
  std::string bytes_;
  QPDF pdf_;
};

}  // namespace tgx::test
