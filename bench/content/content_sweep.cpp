// Rewrites the content of a document in the ways that the sweep over real documents compares:
//   content_sweep operators IN OUT        every page anew from its operators
//   content_sweep remove IN OUT N         the N-th container of each page taken out
//   content_sweep removeall IN OUT        all of each page taken out but what others depend on
//   content_sweep read IN                 everything read that clients read, with a line of what there was
//   content_sweep change IN OUT           one element taken out of each page
//   content_sweep text IN PAGE            the page's text in UTF-8, a line a text element
//   content_sweep boxes IN PAGE           box and text of each text element
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include <tgx/embedded_host.h>

#include "host/core/Fixed.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {
namespace {

const HostTables& T() { return *TGXHost_Tables(); }

struct Totals {
  long elements = 0, containers = 0, characters = 0, units = 0;
};

std::string Unicode(PDEText text) {
  std::string bytes;
  const ASInt32 count = T().pdfEditRead->PDETextGetNumChars(text);
  for (ASInt32 i = 0; i < count; ++i) {
    ASUns8 code[10] = {};
    const ASInt32 length = T().pdfEditRead->PDETextGetText(text, kPDETextChar, i, code);
    const PDEFont font = T().pdfEditRead->PDETextGetFont(text, kPDETextChar, i);
    if (font == nullptr) continue;
    ASUns8 unicode[64];
    const ASInt32 size = T().pdfEditWrite->PDEFontTranslateGlyphIdsToUnicode(font, code, length, unicode, sizeof unicode);
    bytes.append(reinterpret_cast<const char*>(unicode), static_cast<std::size_t>(size));
  }
  return bytes;
}

std::string Utf8(const std::string& utf16) {
  std::string text;
  for (std::size_t i = 0; i + 1 < utf16.size(); i += 2) {
    unsigned u = static_cast<unsigned char>(utf16[i]) * 256U + static_cast<unsigned char>(utf16[i + 1]);
    if (u >= 0xD800 && u < 0xDC00 && i + 3 < utf16.size()) {
      const unsigned low = static_cast<unsigned char>(utf16[i + 2]) * 256U + static_cast<unsigned char>(utf16[i + 3]);
      u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
      i += 2;
    }
    if (u < 0x80) {
      text += static_cast<char>(u);
    } else if (u < 0x800) {
      text += static_cast<char>(0xC0 | (u >> 6));
      text += static_cast<char>(0x80 | (u & 63));
    } else if (u < 0x10000) {
      text += static_cast<char>(0xE0 | (u >> 12));
      text += static_cast<char>(0x80 | ((u >> 6) & 63));
      text += static_cast<char>(0x80 | (u & 63));
    } else {
      text += static_cast<char>(0xF0 | (u >> 18));
      text += static_cast<char>(0x80 | ((u >> 12) & 63));
      text += static_cast<char>(0x80 | ((u >> 6) & 63));
      text += static_cast<char>(0x80 | (u & 63));
    }
  }
  return text;
}

template <typename Visit>
void Walk(PDEContent list, Visit&& visit) {
  for (ASInt32 i = 0; i < T().pdfEditRead->PDEContentGetNumElems(list); ++i) {
    const PDEElement element = T().pdfEditRead->PDEContentGetElem(list, i);
    visit(element, list, i);
    if (i >= T().pdfEditRead->PDEContentGetNumElems(list) || T().pdfEditRead->PDEContentGetElem(list, i) != element) {
      --i;
      continue;
    }
    if (T().pdfEditRead->PDEObjectGetType(element) == kPDEContainer)
      Walk(T().pdfEditRead->PDEContainerGetContent(element), visit);
  }
}

void Count(PDEElement element, Totals& totals) {
  ++totals.elements;
  ASFixedRect box{};
  T().pdfEditRead->PDEElementGetBBox(element, &box);
  switch (T().pdfEditRead->PDEObjectGetType(element)) {
    case kPDEContainer: {
      ++totals.containers;
      CosObj dict{};
      T().pdfEditRead->PDEContainerGetDict(element, &dict, nullptr);
      break;
    }
    case kPDEText:
      totals.characters += T().pdfEditRead->PDETextGetNumChars(element);
      totals.units += static_cast<long>(Unicode(element).size() / 2);
      break;
    default:
      break;
  }
}

int Run(const std::vector<std::string>& arguments) {
  const std::string& mode = arguments[0];
  const PDDoc doc = TGXHost_OpenFile(arguments[1].c_str(), nullptr);
  if (doc == nullptr) {
    std::cerr << TGXHost_LastError() << '\n';
    return 1;
  }
  Document& document = Document::Of(doc);
  Totals totals;
  const ASInt32 pages = document.Pages().Count();
  for (ASInt32 p = 0; p < pages; ++p) {
    if ((mode == "text" || mode == "boxes") && p != std::stoi(arguments[2]) - 1) continue;
    const PDPage page = PageHandle(document, static_cast<ASUns32>(p));
    const PDEContent root = T().pagePDEContent->PDPageAcquirePDEContent(page, nullptr);
    int number = 0;
    if (mode == "operators") document.Contents().Of(p).WriteOperators();
    if (mode == "read") Walk(root, [&](PDEElement e, PDEContent, ASInt32) { Count(e, totals); });
    if (mode == "text" || mode == "boxes") {
      Walk(root, [&](PDEElement e, PDEContent, ASInt32) {
        if (T().pdfEditRead->PDEObjectGetType(e) != kPDEText) return;
        if (mode == "boxes") {
          ASFixedRect box{};
          T().pdfEditRead->PDEElementGetBBox(e, &box);
          std::printf("%.3f %.3f %.3f %.3f ", FromFixed(box.left), FromFixed(box.bottom), FromFixed(box.right),
                      FromFixed(box.top));
        }
        std::printf("%s\n", Utf8(Unicode(e)).c_str());
      });
    }
    if (mode == "remove") {
      const int wanted = std::stoi(arguments[3]);
      bool isDone = false;
      Walk(root, [&](PDEElement e, PDEContent list, ASInt32 i) {
        if (isDone || T().pdfEditRead->PDEObjectGetType(e) != kPDEContainer || number++ != wanted) return;
        ASFixedRect box{};
        T().pdfEditRead->PDEElementGetBBox(e, &box);
        std::printf("%d %.3f %.3f %.3f %.3f\n", p + 1, FromFixed(box.left), FromFixed(box.bottom), FromFixed(box.right),
                    FromFixed(box.top));
        T().pdfEditWrite->PDEContentRemoveElem(list, i);
        isDone = true;
      });
      T().pagePDEContent->PDPageSetPDEContent(page, nullptr);
    }
    if (mode == "removeall" || mode == "change") {
      const ASInt32 count = mode == "change" ? 1 : T().pdfEditRead->PDEContentGetNumElems(root);
      for (ASInt32 i = 0; i < count && T().pdfEditRead->PDEContentGetNumElems(root) > 0; ++i) {
        T().pdfEditWrite->PDEContentRemoveElem(root, 0);
      }
      T().pagePDEContent->PDPageSetPDEContent(page, nullptr);
    }
  }
  if (mode == "read") {
    std::printf("%ld elements, %ld containers, %ld characters, %ld units\n", totals.elements, totals.containers,
                totals.characters, totals.units);
  } else if (mode != "text" && mode != "boxes" && TGXHost_SaveFile(doc, arguments[2].c_str(), nullptr) != 0) {
    std::cerr << TGXHost_LastError() << '\n';
    return 1;
  }
  TGXHost_Close(doc);
  return 0;
}

}  // namespace
}  // namespace tgx::host

int main(int argc, char** argv) {
  try {
    return tgx::host::Run({argv + 1, argv + argc});
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
