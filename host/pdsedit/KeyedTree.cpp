#include "host/pdsedit/KeyedTree.h"

#include <unordered_set>

namespace tgx::host {
namespace {

/// What number trees and name trees differ in.
template <typename Key>
struct Traits;

template <>
struct Traits<long long> {
  static constexpr const char* kLeafKey = "/Nums";
  static bool Read(QPDFObjectHandle object, long long& key) { return object.getValueAsInt(key); }
  static QPDFObjectHandle Make(long long key) { return QPDFObjectHandle::newInteger(key); }
};

template <>
struct Traits<std::string> {
  static constexpr const char* kLeafKey = "/Names";
  static bool Read(QPDFObjectHandle object, std::string& key) { return object.getValueAsString(key); }
  static QPDFObjectHandle Make(const std::string& key) { return QPDFObjectHandle::newString(key); }
};

template <typename Key>
class Reader {
 public:
  TreeEntries<Key> Read(QPDFObjectHandle root) {
    ReadNode(root, 0);
    return std::move(result_);
  }

 private:
  static constexpr int kDeepest = 32;

  /// Whether it has not been met before: nodes and arrays in several places are read once.
  bool IsNew(const QPDFObjectHandle& object) {
    const bool isNew = met_.insert(object.getObjectPtr()).second;
    if (!isNew) result_.isOrderly = false;
    return isNew;
  }

  void ReadNode(QPDFObjectHandle node, int depth) {
    if (!node.isDictionary() || depth > kDeepest) {
      result_.isOrderly = false;
      return;
    }
    if (!IsNew(node)) return;
    const std::size_t first = result_.entries.size();
    QPDFObjectHandle kids = node.getKey("/Kids");
    QPDFObjectHandle leaf = node.getKey(Traits<Key>::kLeafKey);
    if (kids.isArray() && IsNew(kids)) {
      for (int i = 0; i < kids.getArrayNItems(); ++i) ReadNode(kids.getArrayItem(i), depth + 1);
    }
    if (leaf.isArray() && IsNew(leaf)) ReadLeaf(leaf);
    const bool hasBoth = !kids.isNull() && !leaf.isNull();
    if (hasBoth || (depth > 0 && !HasRightLimits(node, first))) result_.isOrderly = false;
  }

  void ReadLeaf(QPDFObjectHandle leaf) {
    const int count = leaf.getArrayNItems();
    if (count % 2 != 0) result_.isOrderly = false;
    for (int i = 0; i + 1 < count; i += 2) {
      Key key{};
      QPDFObjectHandle value = leaf.getArrayItem(i + 1);
      if (!Traits<Key>::Read(leaf.getArrayItem(i), key) || value.isNull()) {
        result_.isOrderly = false;
        continue;
      }
      if (!result_.entries.empty() && !(result_.entries.back().key < key)) result_.isOrderly = false;
      result_.entries.push_back({std::move(key), value});
    }
  }

  bool HasRightLimits(QPDFObjectHandle& node, std::size_t first) {
    const auto& entries = result_.entries;
    QPDFObjectHandle limits = node.getKey("/Limits");
    Key low{}, high{};
    return first < entries.size() && limits.isArray() && limits.getArrayNItems() == 2 &&
           Traits<Key>::Read(limits.getArrayItem(0), low) && Traits<Key>::Read(limits.getArrayItem(1), high) &&
           low == entries[first].key && high == entries.back().key;
  }

  TreeEntries<Key> result_;
  std::unordered_set<const QPDFObject*> met_;
};

/// Few enough for a quick search in a leaf, many enough for a shallow tree.
constexpr std::size_t kNodeSize = 128;

template <typename Key>
struct Subtree {
  QPDFObjectHandle node;
  Key low, high;
};

template <typename Key>
void FillLeaf(QPDFObjectHandle& node, const TreeEntry<Key>* entries, std::size_t count) {
  std::vector<QPDFObjectHandle> items;
  items.reserve(2 * count);
  for (std::size_t i = 0; i < count; ++i) {
    items.push_back(Traits<Key>::Make(entries[i].key));
    items.push_back(entries[i].value);
  }
  node.replaceKey(Traits<Key>::kLeafKey, QPDFObjectHandle::newArray(items));
}

template <typename Key>
void FillInner(QPDFObjectHandle& node, const Subtree<Key>* kids, std::size_t count) {
  std::vector<QPDFObjectHandle> items;
  items.reserve(count);
  for (std::size_t i = 0; i < count; ++i) items.push_back(kids[i].node);
  node.replaceKey("/Kids", QPDFObjectHandle::newArray(items));
}

template <typename Key>
Subtree<Key> NewSubtree(QPDF& pdf, const Key& low, const Key& high) {
  Subtree<Key> result{pdf.makeIndirectObject(QPDFObjectHandle::newDictionary()), low, high};
  const std::vector<QPDFObjectHandle> limits = {Traits<Key>::Make(low), Traits<Key>::Make(high)};
  result.node.replaceKey("/Limits", QPDFObjectHandle::newArray(limits));
  return result;
}

template <typename Key>
void WriteTree(QPDF& pdf, QPDFObjectHandle& root, const std::vector<TreeEntry<Key>>& entries) {
  for (const char* key : {"/Kids", "/Limits", Traits<Key>::kLeafKey}) root.removeKey(key);
  if (entries.size() <= kNodeSize) return FillLeaf(root, entries.data(), entries.size());

  std::vector<Subtree<Key>> level;
  for (std::size_t i = 0; i < entries.size(); i += kNodeSize) {
    const std::size_t count = std::min(kNodeSize, entries.size() - i);
    level.push_back(NewSubtree(pdf, entries[i].key, entries[i + count - 1].key));
    FillLeaf(level.back().node, &entries[i], count);
  }
  while (level.size() > kNodeSize) {
    std::vector<Subtree<Key>> above;
    for (std::size_t i = 0; i < level.size(); i += kNodeSize) {
      const std::size_t count = std::min(kNodeSize, level.size() - i);
      above.push_back(NewSubtree(pdf, level[i].low, level[i + count - 1].high));
      FillInner(above.back().node, &level[i], count);
    }
    level = std::move(above);
  }
  FillInner(root, level.data(), level.size());
}

}  // namespace

TreeEntries<long long> ReadNumberTree(const QPDFObjectHandle& root) { return Reader<long long>().Read(root); }
TreeEntries<std::string> ReadNameTree(const QPDFObjectHandle& root) { return Reader<std::string>().Read(root); }

void WriteNumberTree(QPDF& pdf, QPDFObjectHandle root, const std::vector<TreeEntry<long long>>& entries) {
  WriteTree(pdf, root, entries);
}

void WriteNameTree(QPDF& pdf, QPDFObjectHandle root, const std::vector<TreeEntry<std::string>>& entries) {
  WriteTree(pdf, root, entries);
}

}  // namespace tgx::host
