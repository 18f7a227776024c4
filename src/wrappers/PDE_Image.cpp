#include "src/wrappers/PDE_Image.h"

namespace tgx {

void PDE_Image::GetAttrs(PDEImageAttrs* attributes) const { PDEImageGetAttrs(GetHandle(), attributes, sizeof(*attributes)); }

ASUns32 PDE_Image::GetData(std::vector<char>& out) const {
  out.resize(static_cast<std::size_t>(PDEImageGetDataLen(GetHandle())));
  PDEImageGetData(GetHandle(), 0, reinterpret_cast<ASUns8*>(out.data()));
  return static_cast<ASUns32>(out.size());
}

}  // namespace tgx
