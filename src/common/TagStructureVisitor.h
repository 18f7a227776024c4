#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// What a TagStructureWalker tells. Everything behind the first argument is as the host's kid enumeration gave it.
class ITagStructureVisitor {
 public:
  /// A structure element, before its kids.
  virtual void VisitElement(PDSElement& element) = 0;
  /// A marked-content kid; told after VisitMarkedContent. `pointer` is the container of that MCID on the page, or null.
  virtual void VisitMarkedContentPointer(void*& pointer, int mcid, CosObj page) = 0;
  virtual void VisitMarkedContent(CosObj& kid, int mcid, CosObj page) = 0;
  virtual void VisitObjectReference(CosObj& kid, int mcid, CosObj page) = 0;
  /// A kid of any other type.
  virtual void VisitOther(CosObj& kid, int mcid, CosObj page) = 0;

  /// Finding the pointer of a marked-content kid makes the host read the content of its page. Where no visitor of a walk
  /// needs pointers the walker leaves the content alone, and VisitMarkedContentPointer gets null.
  virtual bool NeedsContentPointers() const { return true; }

 protected:
  ~ITagStructureVisitor() = default;
};

/// Does nothing on every event, for visitors that care about few of them.
class TagStructureVisitorBase : public ITagStructureVisitor {
 public:
  void VisitElement(PDSElement& /*element*/) override {}
  void VisitMarkedContentPointer(void*& /*pointer*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitMarkedContent(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitObjectReference(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  void VisitOther(CosObj& /*kid*/, int /*mcid*/, CosObj /*page*/) override {}
  virtual ~TagStructureVisitorBase() = default;
};

}  // namespace tgx
