#pragma once

#include <string>
#include <unordered_set>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// The nodes of the document's page tree and their arrays of kids, by the addresses of qpdf's objects; nothing for a
/// document without one. qpdf walks the tree by recursion, and trusts it to be one; so this comes first. Takes
/// items that are no dictionaries out of the arrays. Throws kASDamagedDocument for a tree that contains a node or an array
/// twice or is too deep.
std::unordered_set<const QPDFObject*> CheckedPageTree(QPDF& pdf, const std::string& documentName);

}  // namespace tgx::host
