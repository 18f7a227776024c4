#pragma once

#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// Number trees (keys are integers, the leaves' entry is "Nums") and name trees (keys are byte strings, "Names").
template <typename Key>
struct TreeEntry {
  Key key;
  QPDFObjectHandle value;
};

template <typename Key>
struct TreeEntries {
  std::vector<TreeEntry<Key>> entries;  ///< as they stand, entries that are null left out
  bool isOrderly = true;                ///< keys ascend, and limits are right: any reader finds every entry
};

TreeEntries<long long> ReadNumberTree(const QPDFObjectHandle& root);
TreeEntries<std::string> ReadNameTree(const QPDFObjectHandle& root);

/// Makes the tree anew in the dictionary of its root. Entries come in order of their keys. Small trees are one array; larger
/// ones are balanced over leaves that are objects of their own, so that a reader finds an entry in a few steps.
void WriteNumberTree(QPDF& pdf, QPDFObjectHandle root, const std::vector<TreeEntry<long long>>& entries);
void WriteNameTree(QPDF& pdf, QPDFObjectHandle root, const std::vector<TreeEntry<std::string>>& entries);

}  // namespace tgx::host
