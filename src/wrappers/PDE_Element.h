#pragma once

#include <memory>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDF_BaseObject.h"

namespace tgx {

/// A wrapper of page content: holds one reference on the host's element.
template <typename T>
class PDE_Object : public PDF_BaseObject, public PDF_ObjectRef<T> {
 public:
  PDE_Object(T handle, PDF_BaseObject* parent) : PDF_BaseObject(parent), PDF_ObjectRef<T>(handle) { PDEAcquire(handle); }
  ~PDE_Object() override { PDERelease(this->GetHandle()); }
};

/// An element of page content; of this very class when its kind has no class of its own.
class PDE_Element : public PDE_Object<PDEElement> {
 public:
  using PDE_Object::PDE_Object;

  /// Loads anew from the host.
  virtual void Refresh() {}
  /// Drops what was loaded.
  virtual void ClearKids() {}

  /// Into the output, whose address is returned.
  ASFixedRect* GetBBox(ASFixedRect* box) const;
};

class PDE_Path : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_Form : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_XObject : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_Place : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_Shading : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_Unknown : public PDE_Element {
  using PDE_Element::PDE_Element;
};
class PDE_TextItem : public PDE_Element {
  using PDE_Element::PDE_Element;
};

/// A wrapper of the class for the element's kind.
std::unique_ptr<PDE_Element> WrapElement(PDEElement element, PDF_BaseObject* parent);

/// The printable name of a kind of element, "PDEText object"; null for a number that is none.
const char* GetKindName(ASInt32 kind);

}  // namespace tgx
