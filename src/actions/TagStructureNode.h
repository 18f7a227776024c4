#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// A node of a tree that records a document's structure at one moment, for actions that edit the structure while they go
/// through it. It does not follow later changes.
class TagStructureNode {
 public:
  enum Kind : ASInt32 {
    kElement = 0,
    kNonElement = 1,  ///< marked content, an object reference, or any other kid; has no kids
    kRoot = 2         ///< the document; its object is the null object
  };

  explicit TagStructureNode(Kind kind, CosObj object = {}) : kind_(kind), object_(object) {}
  virtual ~TagStructureNode();
  TagStructureNode(const TagStructureNode&) = delete;
  TagStructureNode& operator=(const TagStructureNode&) = delete;

  /// The tree of a document: a root, without kids when the document has no structure.
  static std::unique_ptr<TagStructureNode> BuildTree(PDDoc document);

  Kind GetKind() const { return kind_; }
  TagStructureNode* GetParent() const { return parent_; }  ///< null at the root
  ASInt32 GetKidCount() const { return static_cast<ASInt32>(kids_.size()); }
  TagStructureNode* GetKid(int index) const { return kids_[static_cast<std::size_t>(index)].get(); }
  /// The place among the kids, -1 if it is none of them.
  int IndexOfKid(const TagStructureNode* kid) const;

  CosObj* GetObject(CosObj* object) const;
  /// The same, asked from the host as of a structure element.
  CosObj* GetElementObject(CosObj* object) const;
  bool IsNull() const;

  /// The structure type of an element, in the host.
  void GetTypeName(std::string* name) const;
  void SetTypeName(const std::string& name);

  /// Whether the subtree holds anything but elements. Found out as the tree is built, so asking costs nothing.
  static bool HasContent(const TagStructureNode* node) { return node != nullptr && node->hasContent_; }

 private:
  TagStructureNode& Append(Kind kind, CosObj object);
  void Fill();

  Kind kind_;
  CosObj object_;
  TagStructureNode* parent_ = nullptr;
  std::vector<std::unique_ptr<TagStructureNode>> kids_;
  bool hasContent_ = false;
};

}  // namespace tgx
