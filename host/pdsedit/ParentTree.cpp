#include "host/pdsedit/ParentTree.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"
#include "host/pdsedit/KeyedTree.h"
#include "host/pdsedit/KidKinds.h"

namespace tgx::host {
namespace {

constexpr long long kNoKey = -1;
constexpr long long kHighestKey = std::numeric_limits<ASInt32>::max() - 1;  // "ParentTreeNextKey" is one more

/// An array has an item for each number below its highest MCID. So many items of all arrays together may stand for nothing:
/// a file that names MCID two thousand million does not get an array of that length.
constexpr std::size_t kMostEmptyItems = 1'000'000;

/// Something whose number leads through the parent tree: a page or another content stream to an array with an element for
/// each MCID, an annotation or another object to one element.
struct Entry {
  QPDFObjectHandle dictionary;  ///< that has the number
  const char* numberKey;        ///< "/StructParents" or "/StructParent"
  const HeldContent* first = nullptr;
  const HeldContent* last = nullptr;  ///< behind the last
  NodeId holder = kNoNode;            ///< of an object
  long long key = kNoKey;

  bool IsList() const { return holder == kNoNode; }
};

long long NumberIn(QPDFObjectHandle dictionary, const char* numberKey) {
  long long number = kNoKey;
  if (!dictionary.getKey(numberKey).getValueAsInt(number)) return kNoKey;
  return number >= 0 && number <= kHighestKey ? number : kNoKey;
}

class ParentTreeMaker {
 public:
  ParentTreeMaker(StructureTree& tree, const TreeContents& contents)
      : tree_(tree), nodes_(tree.Nodes()), contents_(contents), root_(nodes_[tree.Root()].object) {}

  void Make() {
    ReadPresentTree();
    ListEntries();
    KeepNumbers();
    FreePages();
    FreeAnnotations();
    GiveNumbers();
    Compose();
    Write();
  }

 private:
  void ReadPresentTree() {
    QPDFObjectHandle dictionary = root_.getKey("/ParentTree");
    if (!dictionary.isDictionary()) return;
    present_ = ReadNumberTree(dictionary);
    for (const TreeEntry<long long>& entry : present_.entries) presentValue_.emplace(entry.key, entry.value);
  }

  void ListEntries() {
    std::size_t emptyItems = 0;
    const HeldContent* const end = contents_.contents.data() + contents_.contents.size();
    for (const HeldContent* first = contents_.contents.data(); first != end;) {
      const ASUns32 place = first->place;
      const HeldContent* next = std::find_if(first, end, [place](const HeldContent& held) { return held.place != place; });
      const HeldContent* last = next;
      for (; last != first; --last) {
        const auto count = static_cast<std::size_t>(last - first);
        const std::size_t empty = static_cast<std::size_t>((last - 1)->mcid) + 1 - count;
        if (emptyItems + empty > kMostEmptyItems) continue;
        emptyItems += empty;
        break;
      }
      if (last != first) entries_.push_back({DictionaryAt(place), "/StructParents", first, last});
      first = next;
    }
    for (const HeldObject& held : contents_.objects) {
      QPDFObjectHandle object = held.object;
      if (object.isStream()) object = object.getDict();
      if (object.isDictionary()) entries_.push_back({object, "/StructParent", nullptr, nullptr, held.holder});
    }
  }

  QPDFObjectHandle DictionaryAt(ASUns32 place) {
    PageList& pages = tree_.Owner().Pages();
    const auto pageCount = static_cast<ASUns32>(pages.Count());
    if (place < pageCount) return pages.At(static_cast<ASInt32>(place)).dictionary;
    QPDFObjectHandle stream = contents_.streams[place - pageCount];
    return stream.getDict();
  }

  /// Each entry keeps the number that it has, unless an earlier one has the same.
  void KeepNumbers() {
    for (Entry& entry : entries_) {
      const long long number = NumberIn(entry.dictionary, entry.numberKey);
      if (number != kNoKey && taken_.insert(number).second) entry.key = number;
      owners_.insert(entry.dictionary.getObjectPtr());
    }
  }

  /// A page without content in the tree leads nowhere. An array without elements may stay, since it does no harm.
  void FreePages() {
    PageList& pages = tree_.Owner().Pages();
    for (ASInt32 i = 0; i < pages.Count(); ++i) {
      QPDFObjectHandle page = pages.At(i).dictionary;
      if (owners_.count(page.getObjectPtr()) > 0) continue;
      const long long number = NumberIn(page, "/StructParents");
      if (number == kNoKey) continue;
      const auto present = presentValue_.find(number);
      const bool isHarmless = present == presentValue_.end() || IsEmptyList(present->second);
      if (taken_.count(number) == 0 && isHarmless) {
        taken_.insert(number);
        if (present != presentValue_.end()) wanted_.push_back({number, present->second});
      } else {
        page.removeKey("/StructParents");
        freed_.insert(number);
      }
    }
  }

  void FreeAnnotations() {
    PageList& pages = tree_.Owner().Pages();
    std::unordered_set<const QPDFObject*> lists;
    for (ASInt32 i = 0; i < pages.Count(); ++i) {
      QPDFObjectHandle annotations = pages.At(i).dictionary.getKey("/Annots");
      if (!annotations.isArray() || !lists.insert(annotations.getObjectPtr()).second) continue;
      const int count = annotations.getArrayNItems();
      for (int k = 0; k < count; ++k) {
        QPDFObjectHandle annotation = annotations.getArrayItem(k);
        if (!annotation.isDictionary() || owners_.count(annotation.getObjectPtr()) > 0) continue;
        const long long number = NumberIn(annotation, "/StructParent");
        if (number != kNoKey) freed_.insert(number);
        annotation.removeKey("/StructParent");
      }
    }
  }

  void GiveNumbers() {
    long long next = 0;
    for (const long long number : taken_) next = std::max(next, number + 1);
    for (const TreeEntry<long long>& entry : present_.entries) {
      if (entry.key <= kHighestKey) next = std::max(next, entry.key + 1);
    }
    const long long announced = NumberIn(root_, "/ParentTreeNextKey");
    next = std::max(next, announced);
    if (next > kHighestKey - static_cast<long long>(entries_.size())) next = 0;
    for (Entry& entry : entries_) {
      if (entry.key != kNoKey) continue;
      while (taken_.count(next) > 0 || presentValue_.count(next) > 0) ++next;
      entry.key = next;
      taken_.insert(next);
      entry.dictionary.replaceKey(entry.numberKey, QPDFObjectHandle::newInteger(next));
    }
  }

  /// Everything that the parent tree is to hold; what stands there and is true is taken over.
  void Compose() {
    for (const Entry& entry : entries_) {
      const auto present = presentValue_.find(entry.key);
      if (present != presentValue_.end() && IsTrue(entry, present->second)) {
        wanted_.push_back({entry.key, present->second});
      } else {
        wanted_.push_back({entry.key, entry.IsList() ? MakeList(entry) : nodes_[entry.holder].object});
      }
    }
    for (const TreeEntry<long long>& entry : present_.entries) {
      if (entry.key < 0 || entry.key > kHighestKey || taken_.count(entry.key) > 0 || freed_.count(entry.key) > 0) continue;
      QPDFObjectHandle value = entry.value;
      if (KeepOfUnknownOwner(value) && taken_.insert(entry.key).second) wanted_.push_back({entry.key, value});
    }
    std::sort(wanted_.begin(), wanted_.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
  }

  bool IsElement(const QPDFObjectHandle& object, NodeId id) const {
    return object.getObjectPtr() == nodes_[id].object.getObjectPtr();
  }

  bool IsTrue(const Entry& entry, QPDFObjectHandle value) {
    if (!entry.IsList()) return IsElement(value, entry.holder);
    // An array under several numbers is looked at for one of them; the others get their own.
    if (!value.isArray() || !compared_.insert(value.getObjectPtr()).second) return false;
    const int count = value.getArrayNItems();
    const HeldContent* held = entry.first;
    for (int i = 0; i < count; ++i) {
      const QPDFObjectHandle item = value.getArrayItem(i);
      if (held != entry.last && held->mcid == i) {
        if (!IsElement(item, held->holder)) return false;
        ++held;
      } else if (!QPDFObjectHandle(item).isNull()) {
        return false;
      }
    }
    return held == entry.last;
  }

  QPDFObjectHandle MakeList(const Entry& entry) {
    std::vector<QPDFObjectHandle> items(static_cast<std::size_t>((entry.last - 1)->mcid) + 1, null_);
    for (const HeldContent* held = entry.first; held != entry.last; ++held) {
      items[static_cast<std::size_t>(held->mcid)] = nodes_[held->holder].object;
    }
    return tree_.Owner().Pdf().makeIndirectObject(QPDFObjectHandle::newArray(items));
  }

  bool IsEmptyList(QPDFObjectHandle value) {
    if (!value.isArray()) return false;
    const auto [known, isNew] = isEmptyList_.try_emplace(value.getObjectPtr(), true);
    const int count = isNew ? value.getArrayNItems() : 0;
    for (int i = 0; i < count && known->second; ++i) known->second = value.getArrayItem(i).isNull();
    return known->second;
  }

  /// An array whose number belongs to nothing that is known is taken for that of a form whose content the tree names by page
  /// and MCID alone. What leads from it to an element that has such an MCID stays; `value` becomes an array of that. A
  /// single element belongs to an object that nothing in the tree refers to, and goes.
  bool KeepOfUnknownOwner(QPDFObjectHandle& value) {
    if (!value.isArray()) return false;
    const auto [known, isNew] = trueParts_.try_emplace(value.getObjectPtr());
    if (isNew) known->second = TruePartOf(value);
    value = known->second;
    return value.isInitialized();
  }

  /// The array itself if all of it is true, another one for a part, an uninitialised handle for nothing.
  QPDFObjectHandle TruePartOf(QPDFObjectHandle& array) {
    bool isTrue = true;
    std::vector<QPDFObjectHandle> items;
    const int count = array.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      QPDFObjectHandle item = array.getArrayItem(i);
      if (item.isNull()) continue;
      const NodeId id = nodes_.Find(item);
      if (id == kNoNode || !HoldsMcid(id, i)) {
        isTrue = false;
        continue;
      }
      items.resize(static_cast<std::size_t>(i), null_);
      items.push_back(item);
    }
    if (items.empty()) return {};
    return isTrue ? array : tree_.Owner().Pdf().makeIndirectObject(QPDFObjectHandle::newArray(items));
  }

  bool HoldsMcid(NodeId id, ASInt32 mcid) {
    if (id >= contents_.isInTree.size() || !contents_.isInTree[id] || nodes_[id].isRoot) return false;
    const auto [known, isNew] = mcidsOf_.try_emplace(id);
    if (isNew) {
      const KidList& kids = nodes_[id].kids;
      for (ASUns32 i = 0; i < kids.Size(); ++i) {
        if (kids[i].Kind() == KidKind::kNumber || kids[i].Kind() == KidKind::kReference) known->second.insert(kids[i].mcid);
      }
    }
    return known->second.count(mcid) > 0;
  }

  bool IsPresentTreeTrue() const {
    const auto& entries = present_.entries;
    return present_.isOrderly &&
           std::equal(entries.begin(), entries.end(), wanted_.begin(), wanted_.end(), [](const auto& a, const auto& b) {
             return a.key == b.key && a.value.getObjectPtr() == b.value.getObjectPtr();
           });
  }

  void Write() {
    QPDFObjectHandle dictionary = root_.getKey("/ParentTree");
    const bool exists = dictionary.isDictionary();
    if (!exists && wanted_.empty()) return;
    const bool isTrue = exists && IsPresentTreeTrue();
    if (!isTrue) {
      if (!exists) {
        dictionary = tree_.Owner().Pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
        root_.replaceKey("/ParentTree", dictionary);
      }
      WriteNumberTree(tree_.Owner().Pdf(), dictionary, wanted_);
    }
    long long next = 0;
    for (const long long number : taken_) next = std::max(next, number + 1);
    const bool hasNext = !root_.getKey("/ParentTreeNextKey").isNull();
    const bool isMissing = !hasNext && !isTrue;
    const bool isWrong = hasNext && NumberIn(root_, "/ParentTreeNextKey") < next;
    if (isMissing || isWrong) root_.replaceKey("/ParentTreeNextKey", QPDFObjectHandle::newInteger(next));
  }

  StructureTree& tree_;
  NodeStore& nodes_;
  const TreeContents& contents_;
  QPDFObjectHandle root_;
  QPDFObjectHandle null_ = QPDFObjectHandle::newNull();

  TreeEntries<long long> present_;
  std::unordered_map<long long, QPDFObjectHandle> presentValue_;
  std::vector<Entry> entries_;
  std::unordered_set<const QPDFObject*> owners_;  ///< the dictionaries of the entries
  std::unordered_set<long long> taken_;           ///< numbers in use
  std::unordered_set<long long> freed_;           ///< numbers of things that lead nowhere from now on
  std::unordered_map<NodeId, std::unordered_set<ASInt32>> mcidsOf_;
  // What is known of arrays by their addresses: any number of entries of a file may share one.
  std::unordered_set<const QPDFObject*> compared_;
  std::unordered_map<const QPDFObject*, bool> isEmptyList_;
  std::unordered_map<const QPDFObject*, QPDFObjectHandle> trueParts_;
  std::vector<TreeEntry<long long>> wanted_;
};

}  // namespace

void MakeParentTreeTrue(StructureTree& tree, const TreeContents& contents) { ParentTreeMaker(tree, contents).Make(); }

}  // namespace tgx::host
