#include <algorithm>

#include "host/pdfedit/PageContents.h"
#include "host/pdfedit/model/PageModel.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {
namespace {

struct Rectangle {
  double left = 0, bottom = 0, right = 0, top = 0;
};

bool ReadNumbers(QPDFObjectHandle array, std::size_t count, double* numbers) {
  if (!array.isArray() || array.getArrayNItems() != static_cast<int>(count)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    QPDFObjectHandle item = array.getArrayItem(static_cast<int>(i));
    if (!item.isNumber()) return false;
    numbers[i] = item.getNumericValue();
  }
  return true;
}

bool ReadRectangle(const QPDFObjectHandle& array, Rectangle& rectangle) {
  double numbers[4];
  if (!ReadNumbers(array, 4, numbers)) return false;
  rectangle = {std::min(numbers[0], numbers[2]), std::min(numbers[1], numbers[3]), std::max(numbers[0], numbers[2]),
               std::max(numbers[1], numbers[3])};
  return true;
}

/// The crop box cut to the media box, as it is for a page that is shown.
Box PageBox(const QPDFObjectHandle& page) {
  Rectangle media{0, 0, 612, 792};
  ReadRectangle(InheritedAttribute(page, "/MediaBox"), media);
  Rectangle crop = media;
  ReadRectangle(InheritedAttribute(page, "/CropBox"), crop);
  Box box;
  const Rectangle cut{std::max(media.left, crop.left), std::max(media.bottom, crop.bottom),
                      std::min(media.right, crop.right), std::min(media.top, crop.top)};
  const Rectangle& shown = cut.left < cut.right && cut.bottom < cut.top ? cut : media;
  box.Add({}, shown.left, shown.bottom, shown.right, shown.top);
  return box;
}

/// The points of a path construction operator, control points included.
void AddPoints(const ContentReader& op, const Matrix& ctm, Box& box) {
  if (op.Code() == Opcode::kRectangle) {
    if (!op.HasNumbers(4)) return;
    const double x = op.Number(0, 4);
    const double y = op.Number(1, 4);
    box.Add(ctm, x, y, x + op.Number(2, 4), y + op.Number(3, 4));
    return;
  }
  std::size_t numbers = 0;
  switch (op.Code()) {
    case Opcode::kMoveTo:
    case Opcode::kLineTo:
      numbers = 2;
      break;
    case Opcode::kCurveToFromCurrent:
    case Opcode::kCurveToFinal:
      numbers = 4;
      break;
    case Opcode::kCurveTo:
      numbers = 6;
      break;
    default:
      return;
  }
  if (!op.HasNumbers(numbers)) return;
  for (std::size_t i = 0; i < numbers; i += 2) box.Add(ctm.Map(op.Number(i, numbers), op.Number(i + 1, numbers)));
}

}  // namespace

Box PageModel::PathBox(std::uint32_t number) {
  const Element& element = At(number);
  ContentState state = StateAt(element.begin);
  Box box;
  ContentReader reader(bytes_, element.begin);
  while (reader.NextUpTo(element.end)) {
    state.Apply(reader, resources_);
    AddPoints(reader, state.Graphics().ctm, box);
  }
  return box;
}

Box PageModel::XObjectBox(std::uint32_t number) {
  const Matrix ctm = StateAt(At(number).begin).Graphics().ctm;
  Box box;
  if (At(number).type == kPDEImage) {
    box.Add(ctm, 0, 0, 1, 1);
  } else if (At(number).type == kPDEForm) {
    QPDFObjectHandle form = QPDFObjectHandle(XObjectOf(number).stream).getDict();
    double m[6] = {1, 0, 0, 1, 0, 0};
    ReadNumbers(form.getKey("/Matrix"), 6, m);
    Rectangle bounds;
    if (ReadRectangle(form.getKey("/BBox"), bounds)) {
      box.Add(Matrix{m[0], m[1], m[2], m[3], m[4], m[5]} * ctm, bounds.left, bounds.bottom, bounds.right, bounds.top);
    }
  }
  return box;
}

Box PageModel::BoxOf(std::uint32_t number) {
  switch (At(number).type) {
    case kPDEText:
      return Layout(number).Bounds();
    case kPDEPath:
      return PathBox(number);
    case kPDEShading:
      return PageBox(dictionary_);
    case kPDEContainer: {
      Box box;
      const std::uint32_t list = ListOf(number);
      for (std::uint32_t i = 0; i < lists_[list].size; ++i) {
        const std::uint32_t item = lists_[list].Item(i);
        box.Add((item & ContentList::kAdded) != 0 ? AddedText(item).Layout().Bounds() : BoxOf(item));
      }
      return box;
    }
    default:
      return XObjectBox(number);
  }
}

}  // namespace tgx::host
