#include "tests/host/pdfedit/ContentFixture.h"

#include <sstream>

#include "host/core/Atoms.h"
#include "host/core/Fixed.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {
namespace {

std::string Stream(int number, const std::string& dictionary, const std::string& data) {
  return std::to_string(number) + " 0 obj\n<<" + dictionary + "/Length " + std::to_string(data.size()) + ">>\nstream\n" +
         data + "\nendstream\nendobj\n";
}

std::string ObjectsOf(const PageSource& source) {
  std::string contents;
  std::string streams;
  int number = 100;
  for (const std::string& stream : source.streams) {
    contents += ' ' + std::to_string(number) + " 0 R";
    streams += Stream(number++, "", stream);
  }
  if (source.streams.size() != 1) contents = "[" + contents + "]";
  return "<</Type/Catalog/Pages 2 0 R>>\nendobj\n"
         "2 0 obj\n<</Type/Pages/Count 1/Kids[3 0 R]>>\nendobj\n"
         "3 0 obj\n<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 200]/Contents " +
         contents + "/Resources 4 0 R" + source.page +
         ">>\nendobj\n"
         "4 0 obj\n<</Font<</F1 5 0 R/F2 6 0 R>>/XObject<</Im 10 0 R/Fm 11 0 R/Ps 12 0 R>>/Properties<</Pr0 13 0 R>>" +
         source.resources +
         ">>\nendobj\n"
         "5 0 obj\n<</Type/Font/Subtype/Type1/BaseFont/Courier>>\nendobj\n"
         "6 0 obj\n<</Type/Font/Subtype/Type0/BaseFont/Wide/Encoding/Identity-H/DescendantFonts[7 0 R]>>\nendobj\n"
         "7 0 obj\n<</Type/Font/Subtype/CIDFontType2/BaseFont/Wide/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)"
         "/Supplement 0>>/DW 500>>\nendobj\n" +
         Stream(10, "/Type/XObject/Subtype/Image/Width 1/Height 1/ColorSpace/DeviceGray/BitsPerComponent 8", "\x80") +
         Stream(11, "/Type/XObject/Subtype/Form/BBox[0 0 10 20]", "0 0 10 20 re f") +
         Stream(12, "/Type/XObject/Subtype/PS", "showpage") + "13 0 obj\n<</MCID 7>>\nendobj\n" + source.objects + streams +
         "99 0 obj\nnull";
}

void AppendElement(PDEElement element, std::ostream& out) {
  const PDFEditReadTable& read = ReadContent();
  switch (read.PDEObjectGetType(element)) {
    case kPDEText: {
      out << "text(";
      for (int run = 0; run < read.PDETextGetNumRuns(element); ++run) out << (run == 0 ? "" : " ") << RunOf(element, run);
      out << ')';
      break;
    }
    case kPDEPath:
      out << "path";
      break;
    case kPDEImage:
      out << "image";
      break;
    case kPDEForm:
      out << "form";
      break;
    case kPDEPS:
      out << "ps";
      break;
    case kPDEXObject:
      out << "xobject";
      break;
    case kPDEPlace:
      out << "place";
      break;
    case kPDEShading:
      out << "shading";
      break;
    case kPDEContainer: {
      out << AtomText(read.PDEContainerGetMCTag(element));
      CosObj properties{};
      if (read.PDEContainerGetDict(element, &properties, nullptr) == 1 &&
          Cos().CosDictKnownKeyString(properties, "MCID") == 1) {
        out << '#' << Cos().CosIntegerValue(Cos().CosDictGetKeyString(properties, "MCID"));
      }
      out << '[' << ListText(read.PDEContainerGetContent(element)) << ']';
      break;
    }
    default:
      out << "?";
  }
}

}  // namespace

ContentDocument::ContentDocument(const PageSource& source) : document_(HostDocument::FromObjects(ObjectsOf(source))) {}

PDPage ContentDocument::Page(int index) { return PageHandle(*document_, static_cast<ASUns32>(index)); }

PDEContent ContentDocument::Root(int index) { return PageContent().PDPageAcquirePDEContent(Page(index), nullptr); }

std::string ContentDocument::Tree(int index) { return ListText(Root(index)); }

PDEContent ContentDocument::ListAt(std::vector<int> path, int pageIndex) {
  PDEContent list = Root(pageIndex);
  for (const int index : path) list = ReadContent().PDEContainerGetContent(ReadContent().PDEContentGetElem(list, index));
  return list;
}

PDEElement ContentDocument::At(std::vector<int> path, int pageIndex) {
  const int last = path.back();
  path.pop_back();
  return ReadContent().PDEContentGetElem(ListAt(std::move(path), pageIndex), last);
}

void ContentDocument::Remove(std::vector<int> path, int pageIndex) {
  const int last = path.back();
  path.pop_back();
  WriteContent().PDEContentRemoveElem(ListAt(std::move(path), pageIndex), last);
}

CosObj ContentDocument::Properties(PDEContainer container) {
  CosObj properties{};
  ReadContent().PDEContainerGetDict(container, &properties, nullptr);
  return properties;
}

std::string ContentDocument::SavedRaw(int index) {
  HostDocument saved = document_.Reopened();
  return saved->Contents().Of(index).Bytes();
}

std::string ContentDocument::Saved(int index) {
  std::istringstream content(SavedRaw(index));
  std::string text;
  for (std::string word; content >> word;) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string ListText(PDEContent list) {
  std::ostringstream out;
  for (int i = 0; i < ReadContent().PDEContentGetNumElems(list); ++i) {
    if (i > 0) out << ' ';
    AppendElement(ReadContent().PDEContentGetElem(list, i), out);
  }
  return out.str();
}

std::string TextOf(PDEElement text) {
  std::string bytes;
  for (int i = 0; i < ReadContent().PDETextGetNumChars(text); ++i) {
    ASUns8 buffer[10] = {};
    const ASInt32 count = ReadContent().PDETextGetText(text, kPDETextChar, i, buffer);
    bytes.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(count));
  }
  return bytes;
}

std::string RunOf(PDEElement text, int run) {
  std::string bytes(static_cast<std::size_t>(ReadContent().PDETextGetText(text, kPDETextRun, run, nullptr)), '\0');
  ReadContent().PDETextGetText(text, kPDETextRun, run, reinterpret_cast<ASUns8*>(bytes.data()));
  return bytes;
}

namespace {

void AppendPoints(ASFixed value, std::ostream& out) { out << std::round(FromFixed(value) * 1000) / 1000; }

}  // namespace

std::string BoxText(PDEElement element) {
  ASFixedRect box{};
  ReadContent().PDEElementGetBBox(element, &box);
  std::ostringstream out;
  AppendPoints(box.left, out);
  for (const ASFixed value : {box.bottom, box.right, box.top}) AppendPoints(value, out << ' ');
  return out.str();
}

std::string MatrixText(PDEText text, ASUns32 flags, int index) {
  ASFixedMatrix matrix{};
  ReadContent().PDETextGetTextMatrix(text, flags, index, &matrix);
  std::ostringstream out;
  AppendPoints(matrix.a, out);
  for (const ASFixed value : {matrix.b, matrix.c, matrix.d, matrix.h, matrix.v}) AppendPoints(value, out << ' ');
  return out.str();
}

}  // namespace tgx::host
