#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/CosObserver.h"
#include "host/pdsedit/NodeStore.h"

namespace tgx::host {

class Document;

/// The structure tree of a document, held in memory from its first use on.
///
/// Edits work on the nodes. A changed "K" or "P" is written to its dictionary once: before a client reads it through the Cos
/// operations, or at saving. Cos edits of the same entries bring the nodes up to date.
class StructureTree : public CosObserver {
 public:
  explicit StructureTree(Document& document) : document_(document) {}

  void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) override;
  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) override;

  /// Writes out every changed "K" and "P", and makes the parent tree, its keys and the ID tree true. Called once before each
  /// saving of a changed document.
  void PrepareForSaving();

  /// The root, kNoNode in a document without structure. This and the lookups below read the tree on first use, and throw
  /// kASDamagedDocument when it cannot be walked.
  NodeId Root();
  NodeId MakeRoot();

  /// The node of a handle. Throw kASBadParameter for dead handles, kASWrongType for objects of another kind.
  NodeId RootOf(PDSTreeRoot handle);
  NodeId ElementOf(PDSElement handle);
  NodeId ElementOrRootOf(PDSElement handle);
  /// The same with the object behind the handle, for who has it.
  NodeId ElementOf(PDSElement handle, const QPDFObjectHandle& object);
  NodeId ElementOrRootOf(PDSElement handle, const QPDFObjectHandle& object);
  NodeId NewElement();

  Document& Owner() noexcept { return document_; }
  NodeStore& Nodes() noexcept { return *nodes_; }
  CosObj HandleOf(NodeId id);
  /// The parent, kNoNode for the root and for elements that have none.
  NodeId ParentOf(NodeId id);

  void SetParent(NodeId id, NodeId parent);
  /// Puts a kid in, takes one out.
  void InsertKid(NodeId parent, ASUns32 index, Kid kid);
  void EraseKid(NodeId parent, ASUns32 index);
  /// To be called after any other edit of the structure.
  void MarkChanged();

 private:
  void MakeReady() {
    if (!isChecked_) ReadAndCheck();
  }
  void ReadAndCheck();
  NodeId Read(const QPDFObjectHandle& object, bool isRoot);
  NodeId ReadElement(const QPDFObjectHandle& object);
  void MarkKidsChanged(NodeId id);
  void Queue(NodeId id);
  void WriteQueued();
  void Write(NodeId id);
  void WriteKids(NodeId id);
  void WriteParent(NodeId id);

  void RootReplaced();
  void EntryEdited(NodeId id, std::string_view key);
  void ArrayEdited(const QPDFObjectHandle& array);
  void KidsEdited(NodeId id);
  void ReferenceEdited(const QPDFObjectHandle& dictionary);
  void WatchArray(NodeId id);
  void WatchReferences(NodeId id);

  Document& document_;
  std::optional<NodeStore> nodes_;  ///< empty until the tree is first used
  NodeId root_ = kNoNode;
  bool isChecked_ = false;      ///< the tree has been read, and nothing that was added since is unsound
  bool clientSawKids_ = false;  ///< a "K" was read before the tree was
  bool isTouched_ = false;      ///< the parent tree or the ID tree may have become untrue
  std::vector<NodeId> queue_;   ///< nodes with changes to be written
  /// The "K" arrays that a client may hold, with the nodes whose kids they are.
  std::unordered_multimap<const QPDFObject*, NodeId> arrays_;
  /// The dictionaries among kids that are no elements, with the nodes that hold them; made when an edit first asks for it.
  std::optional<std::unordered_multimap<const QPDFObject*, NodeId>> references_;
};

}  // namespace tgx::host
