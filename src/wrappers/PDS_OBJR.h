#pragma once

#include "src/api/HostBinding.h"
#include "src/wrappers/PDS_Object.h"

namespace tgx {

/// An object reference as a kid: the object that it leads to (the null object when there is none) and the page that goes
/// with it.
class PDS_OBJR : public PDS_Object, public PDF_ObjectRef<CosObj> {
 public:
  PDS_OBJR(CosObj object, CosObj page, PDS_Object* parent) : PDS_Object(parent), PDF_ObjectRef(object), page_(page) {}

  CosObj GetPage() const { return page_; }  ///< the page's dictionary, or the null object

 private:
  CosObj page_;
};

}  // namespace tgx
