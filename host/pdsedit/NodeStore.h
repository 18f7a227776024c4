#pragma once

#include <cstdint>
#include <deque>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/ObjectIndex.h"
#include "host/pdsedit/ContentIndex.h"
#include "host/pdsedit/KidList.h"

namespace tgx::host {

class Document;

/// How much more than `count` single things sharing may make of them: enough for every sound tree.
constexpr std::uint64_t MostWithSharing(std::uint64_t count) { return 4 * count + 100'000; }

/// The texts that clients ask elements for by operations of their own.
enum class ElementText : ASUns8 { kAlt, kTitle, kLanguage };
constexpr std::size_t kElementTexts = 3;

/// A structure element, or a structure tree root, in memory.
struct Node {
  QPDFObjectHandle object;
  KidList kids;
  NodeId parent = kNoNode;  ///< what its "P" says, or is going to say
  NodeId holder =
      kNoNode;          ///< the one node in whose kids it stands; none if there are several and nobody knows which is left
  ASUns32 holders = 0;  ///< how often it stands among the kids of any node
  PageRef page = kNoPage;    ///< its own "Pg"
  ASAtom type = ASAtomNull;  ///< its "S", ASAtomNull until it is asked for
  CosObj handle = {};        ///< the null object until it has been handed out
  bool isRoot : 1 = false;
  bool arrayForm : 1 = false;      ///< its "K" is an array, or becomes one
  bool kidsChanged : 1 = false;    ///< "K" waits to be written
  bool parentChanged : 1 = false;  ///< "P" waits to be written
  bool parentUnsure : 1 = false;   ///< "P" does not name a node that holds it; `parent` is where the walk came from
  bool parentUnread : 1 = false;   ///< met outside of the tree: "P" is looked at when it is asked for
  bool queued : 1 = false;         ///< stands in the list of nodes to be written
  ASUns8 lacking = 0;              ///< a bit for each text that the dictionary is known not to have

  bool Lacks(ElementText text) const { return (lacking & BitOf(text)) != 0; }
  void NoteLacking(ElementText text) { lacking |= BitOf(text); }
  void NoteTextEdited(ElementText text) { lacking &= static_cast<ASUns8>(~BitOf(text)); }
  static ASUns8 BitOf(ElementText text) { return static_cast<ASUns8>(1U << static_cast<unsigned>(text)); }
};

/// The nodes of a document's structure tree, those outside of it that a client came upon, and the items of their "K"
/// entries. Nodes stay for as long as the document is open.
class NodeStore {
 public:
  explicit NodeStore(Document& document) : document_(document) {}

  Node& operator[](NodeId id) noexcept { return nodes_[id]; }
  const Node& operator[](NodeId id) const noexcept { return nodes_[id]; }
  NodeId Count() const noexcept { return static_cast<NodeId>(nodes_.size()); }

  /// The node of an object, kNoNode if it has none yet.
  NodeId Find(const QPDFObjectHandle& object) const { return nodeOf_.Find(object); }
  /// The same for an object with its handle, remembered: nearly every operation begins with it.
  NodeId Find(CosObj handle, const QPDFObjectHandle& object);
  NodeId Add(const QPDFObjectHandle& object);

  /// The item behind a kid; that of an element is its dictionary.
  QPDFObjectHandle& ItemOf(const Kid& kid) { return kid.IsElement() ? nodes_[kid.place].object : items_[kid.place].object; }

  /// Handles of nodes, of the items behind kids and of pages: the document's, kept where they are asked for again and again.
  CosObj HandleOf(NodeId id);
  CosObj HandleOfItem(const Kid& kid);
  CosObj HandleOfPage(PageRef page);

  /// A kid for an item that is no element; takes a place in the store until DropItem.
  Kid MakeKid(KidKind kind, QPDFObjectHandle item);
  void DropItem(const Kid& kid);

  /// Kids in and out, with the counts of holders kept true.
  void InsertKid(NodeId parent, ASUns32 index, Kid kid);
  void EraseKid(NodeId parent, ASUns32 index);

  /// The content among the kids of the element that is being filled.
  ContentIndex& Content() noexcept { return content_; }

  ASUns32 ItemCount() const noexcept { return static_cast<ASUns32>(items_.size()); }

  /// To be called before the kids of one more node are read from an array with an object number. Arrays that are read again
  /// and again make many kids out of a small file: throws kASDamagedDocument when that gets out of all proportion.
  void ReadSharedKids(NodeId id, QPDFObjectHandle& array);

  /// The items of a root's "K" that are no elements: no client sees them, and they stay where they are.
  std::vector<QPDFObjectHandle>& StraysOf(NodeId root) { return strays_[root]; }

  /// What a "Pg" entry stands for: kNoPage for anything but a dictionary.
  PageRef PageOf(QPDFObjectHandle dictionary);
  QPDFObjectHandle PageObject(PageRef page) const;

 private:
  /// An object with its handle, the null object until it has been handed out.
  struct Item {
    QPDFObjectHandle object;
    CosObj handle = {};
  };

  CosObj Kept(const QPDFObjectHandle& object, CosObj& handle);
  void NoteSlot(CosObj handle, NodeId id);

  Document& document_;
  std::deque<Node> nodes_;
  ObjectIndex nodeOf_;
  std::vector<NodeId> nodeOfSlot_;  ///< as far as they have been asked for; kNoNode elsewhere
  std::deque<Item> items_;
  std::vector<ASUns32> freeItems_;
  ContentIndex content_;
  std::unordered_map<NodeId, std::vector<QPDFObjectHandle>> strays_;
  std::unordered_set<const QPDFObject*> readArrays_;
  std::uint64_t kidsReadAgain_ = 0;
  std::vector<Item> pages_;  ///< of the document, as far as they have been asked for
  std::vector<QPDFObjectHandle> strangePages_;
  std::unordered_map<const QPDFObject*, PageRef> strangePageOf_;
};

}  // namespace tgx::host
