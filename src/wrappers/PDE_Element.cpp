#include "src/wrappers/PDE_Element.h"

#include <utility>

#include "src/wrappers/PDE_Container.h"
#include "src/wrappers/PDE_Image.h"
#include "src/wrappers/PDE_Text.h"

namespace tgx {
namespace {

// A kind that the table of classes has and hosts do not give.
constexpr ASInt32 kTextItemKind = 30;

constexpr std::pair<ASInt32, const char*> kKindNames[] = {
    {0, "PDEContent object"},       {1, "PDEText object"},
    {2, "PDEPath object"},          {3, "PDEImage object"},
    {4, "PDEForm object"},          {5, "PDEPS object"},
    {6, "PDEXObject object"},       {7, "PDEClip object"},
    {8, "PDEFont object"},          {9, "PDEColorSpace object"},
    {10, "PDEExtGState object"},    {11, "PDEPlace object"},
    {12, "PDEContainer object"},    {13, "PDESysFont object"},
    {14, "PDEPattern object"},      {15, "PDEDevineNColors object"},  // spelt so
    {16, "PDEShading object"},      {17, "PDEGroup object"},
    {18, "PDEUnknown object"},      {19, "PDEBeginContainer object"},
    {20, "PDEEndContainer object"}, {21, "PDEBeginGroup object"},
    {22, "PDEEndGroup object"},     {23, "PDEXGroup object"},
    {24, "PDESoftMask object"},     {26, "PDEDoc object"},
    {27, "PDEPage object"},         {28, "PDEReader object"},
    {29, "PDEWriter object"},       {kTextItemKind, "PDETextItem object"},
    {31, "PDEImageFlate object"},   {32, "PDEImageJPX object"},
    {33, "PDELastType object"},
};

}  // namespace

ASFixedRect* PDE_Element::GetBBox(ASFixedRect* box) const {
  PDEElementGetBBox(GetHandle(), box);
  return box;
}

// As deep as containers are nested, which the host bounds.
std::unique_ptr<PDE_Element> WrapElement(PDEElement element, PDF_BaseObject* parent) {  // NOLINT(misc-no-recursion)
  switch (PDEObjectGetType(element)) {
    case kPDEText:
      return std::make_unique<PDE_Text>(element, parent);
    case kPDEPath:
      return std::make_unique<PDE_Path>(element, parent);
    case kPDEImage:
      return std::make_unique<PDE_Image>(element, parent);
    case kPDEForm:
      return std::make_unique<PDE_Form>(element, parent);
    case kPDEXObject:
      return std::make_unique<PDE_XObject>(element, parent);
    case kPDEPlace:
      return std::make_unique<PDE_Place>(element, parent);
    case kPDEContainer:
      return std::make_unique<PDE_Container>(element, parent);
    case kPDEShading:
      return std::make_unique<PDE_Shading>(element, parent);
    case kPDEUnknown:
      return std::make_unique<PDE_Unknown>(element, parent);
    case kTextItemKind:
      return std::make_unique<PDE_TextItem>(element, parent);
    default:
      return std::make_unique<PDE_Element>(element, parent);
  }
}

const char* GetKindName(ASInt32 kind) {
  for (const auto& [number, name] : kKindNames) {
    if (number == kind) return name;
  }
  return nullptr;
}

}  // namespace tgx
