// Reads any bytes as the content of a page, asks everything about it that clients ask, takes out, edits and adds what the
// first bytes say, and writes the page back.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDF.hh>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace {

using namespace tgx::host;
using namespace tgx::host::operations;

constexpr std::size_t kSwitches = 4;  // bytes in front of the content

Document& MakeDocument(std::string_view content) {
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->emptyPDF();
  QPDFObjectHandle page = QPDFObjectHandle::parse(
      pdf.get(),
      "<</Type/Page/MediaBox[0 0 200 200]/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Courier>>"
      "/F2<</Type/Font/Subtype/Type0/BaseFont/W/Encoding/Identity-H/DescendantFonts[<</Type/Font/Subtype/CIDFontType2"
      "/BaseFont/W/DW 500>>]>>/F3<</Type/Font/Subtype/Type0/BaseFont/V/Encoding/Identity-V/DescendantFonts[<</Type/Font"
      "/Subtype/CIDFontType2/BaseFont/V>>]>>>>/Properties<</P0<</MCID 7>>>>/ExtGState<</G0<</LW 2>>>>>>>>");
  QPDFObjectHandle form = pdf->newStream("0 0 9 9 re f");
  form.replaceDict(QPDFObjectHandle::parse("<</Type/XObject/Subtype/Form/BBox[0 0 9 9]/Matrix[1 0 0 2 3 4]>>"));
  QPDFObjectHandle image = pdf->newStream("x");
  image.replaceDict(
      QPDFObjectHandle::parse("<</Type/XObject/Subtype/Image/Width 1/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray>>"));
  QPDFObjectHandle objects = QPDFObjectHandle::newDictionary();
  objects.replaceKey("/X0", form);
  objects.replaceKey("/X1", image);
  page.getKey("/Resources").replaceKey("/XObject", objects);
  page.replaceKey("/Contents", pdf->newStream(std::string(content)));
  pdf->addPage(pdf->makeIndirectObject(page), false);
  return Document::Adopt(std::move(pdf), "fuzz");
}

class Client {
 public:
  Client(Document& document, const std::uint8_t* switches) : document_(document), page_(PageHandle(document, 0)) {
    for (std::size_t i = 0; i < kSwitches; ++i) pattern_ = (pattern_ << 8U) | switches[i];
  }

  void Run() {
    const PDEContent root = PDPageAcquirePDEContent(page_, nullptr);
    CheckSpans();
    Visit(root);
    Edit(root);
    PDPageSetPDEContent(page_, nullptr);
    Visit(root);
    document_.Contents().WriteCommitted();
    Edit(root);
    PDPageSetPDEContent(page_, nullptr);
    document_.Contents().WriteCommitted();
  }

 private:
  bool Next() {
    pattern_ = (pattern_ >> 1U) | ((pattern_ & 1U) << 31U);
    return (pattern_ & 1U) != 0;
  }

  /// Elements stand inside their containers and one behind the other.
  void CheckSpans() {
    PageModel& model = document_.Contents().Of(0);
    for (std::uint32_t i = 0; i < model.Count(); ++i) {
      const Element& element = model.At(i);
      if (element.begin >= element.end || element.end > model.Bytes().size() || element.next <= i) std::abort();
      if (element.parent != kNone && model.At(element.parent).end < element.end) std::abort();
      if (element.next < model.Count() && model.At(element.next).begin < element.end) std::abort();
    }
  }

  void Visit(PDEContent list) {
    for (ASInt32 i = 0; i < PDEContentGetNumElems(list); ++i) {
      const PDEElement element = PDEContentGetElem(list, i);
      ASFixedRect box{};
      PDEElementGetBBox(element, &box);
      if (box.left > box.right || box.bottom > box.top) std::abort();
      switch (PDEObjectGetType(element)) {
        case kPDEContainer: {
          CosObj dictionary{};
          PDEContainerGetDict(element, &dictionary, nullptr);
          document_.Contents().ContainerOf(0, document_.Contents().McidOf(element));
          Visit(PDEContainerGetContent(element));
          break;
        }
        case kPDEText:
          VisitText(element);
          break;
        case kPDEImage: {
          PDEImageAttrs attributes{};
          PDEImageGetAttrs(element, &attributes, sizeof attributes);
          std::vector<ASUns8> data(static_cast<std::size_t>(PDEImageGetDataLen(element)) + 1);
          PDEImageGetData(element, 0, data.data());
          break;
        }
        default:
          break;
      }
    }
  }

  void VisitText(PDEText text) {
    const ASInt32 chars = PDETextGetNumChars(text);
    for (ASInt32 i = 0; i < chars; ++i) {
      ASUns8 code[10];
      if (PDETextGetText(text, kPDETextChar, i, code) > 4) std::abort();
      ASFixedMatrix matrix{};
      PDETextGetTextMatrix(text, kPDETextChar, i, &matrix);
      if (const PDEFont font = PDETextGetFont(text, kPDETextChar, i)) font_ = font;
    }
  }

  void Edit(PDEContent list) {
    for (ASInt32 i = 0; i < PDEContentGetNumElems(list); ++i) {
      const PDEElement element = PDEContentGetElem(list, i);
      if (Next() && Next()) {
        PDEContentRemoveElem(list, i--);
        continue;
      }
      if (PDEObjectGetType(element) == kPDEContainer) {
        if (Next()) PDEContainerSetMCTag(element, Intern("Artifact"));
        Edit(PDEContainerGetContent(element));
      } else if (PDEObjectGetType(element) == kPDEText) {
        EditText(element);
      }
      if (added_ < 8 && font_ != nullptr && Next() && Next() && Next()) {
        ++added_;
        const PDEText text = PDETextCreate();
        AddRun(text, 0);
        PDEContentAddElem(list, Next() ? i : kPDEAfterLast, text);
      }
    }
  }

  void EditText(PDEText text) {
    const ASInt32 chars = PDETextGetNumChars(text);
    if (chars > 0 && Next()) PDETextRemove(text, kPDETextChar, chars / 3, Next() ? 1 : chars - chars / 3);
    if (font_ != nullptr && Next() && Next()) AddRun(text, PDETextGetNumRuns(text) / 2);
  }

  void AddRun(PDEText text, ASInt32 index) {
    PDEGraphicState state{};
    state.fillColorSpec.space = PDEColorSpaceCreateFromName(Intern("DeviceGray"));
    const ASFixedMatrix matrix{0x10000, 0, 0, 0x10000, 0x50000, 0x50000};
    const ASUns8 bytes[] = {0, 'a'};
    PDETextAdd(text, kPDETextRun, index, bytes, 2, font_, &state, sizeof state, nullptr, 0, &matrix, nullptr);
  }

  Document& document_;
  PDPage page_;
  std::uint32_t pattern_ = 0;
  PDEFont font_ = nullptr;
  int added_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kSwitches) return 0;
  Document& document = MakeDocument({reinterpret_cast<const char*>(data) + kSwitches, size - kSwitches});
  try {
    Client(document, data).Run();
  } catch (const HostError& e) {
    if (e.Code() == kASInternalError || e.Code() == kASNoMemory) std::abort();
  }
  Document::Close(document);
  return 0;
}
