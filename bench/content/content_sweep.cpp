// Rewrites or reads the content of a document in the ways that the sweep over real documents compares.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <tgx/embedded_host.h>

#include "host/core/Fixed.h"
#include "host/core/Utf.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {
namespace {

const PDFEditReadTable& Reading() { return *TGXHost_Tables()->pdfEditRead; }
const PDFEditWriteTable& Writing() { return *TGXHost_Tables()->pdfEditWrite; }

/// The Unicode text of a text element, UTF-16BE, character by character as clients ask for it.
std::string Unicode(PDEText text) {
  std::string bytes;
  const ASInt32 count = Reading().PDETextGetNumChars(text);
  for (ASInt32 i = 0; i < count; ++i) {
    ASUns8 code[10] = {};
    const ASInt32 length = Reading().PDETextGetText(text, kPDETextChar, i, code);
    const PDEFont font = Reading().PDETextGetFont(text, kPDETextChar, i);
    if (font == nullptr) continue;
    ASUns8 unicode[64];
    const ASInt32 size = Writing().PDEFontTranslateGlyphIdsToUnicode(font, code, length, unicode, sizeof unicode);
    bytes.append(reinterpret_cast<const char*>(unicode), static_cast<std::size_t>(size));
  }
  return bytes;
}

ASFixedRect BoxOf(PDEElement element) {
  ASFixedRect box{};
  Reading().PDEElementGetBBox(element, &box);
  return box;
}

void PrintBox(const ASFixedRect& box) {
  std::printf("%.3f %.3f %.3f %.3f", FromFixed(box.left), FromFixed(box.bottom), FromFixed(box.right), FromFixed(box.top));
}

/// Visits the elements of a list and of the containers in it; ends when `visit` answers false.
using Visit = std::function<bool(PDEElement element, PDEContent list, ASInt32 index)>;
bool Walk(PDEContent list, const Visit& visit) {
  const ASInt32 count = Reading().PDEContentGetNumElems(list);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = Reading().PDEContentGetElem(list, i);
    if (!visit(element, list, i)) return false;
    const bool isContainer = Reading().PDEObjectGetType(element) == kPDEContainer;
    if (isContainer && !Walk(Reading().PDEContainerGetContent(element), visit)) return false;
  }
  return true;
}

struct Totals {
  long elements = 0, containers = 0, characters = 0, units = 0;
};

/// Asks for everything that clients ask for. Property dictionaries become objects of the document, which take more memory
/// than all the rest.
void Read(PDEContent root, bool withDictionaries, Totals& totals) {
  Walk(root, [&](PDEElement element, PDEContent, ASInt32) {
    ++totals.elements;
    BoxOf(element);
    const ASInt32 type = Reading().PDEObjectGetType(element);
    if (type == kPDEContainer) {
      ++totals.containers;
      CosObj dictionary{};
      Reading().PDEContainerGetMCTag(element);
      if (withDictionaries) Reading().PDEContainerGetDict(element, &dictionary, nullptr);
    } else if (type == kPDEText) {
      totals.characters += Reading().PDETextGetNumChars(element);
      totals.units += static_cast<long>(Unicode(element).size() / 2);
    }
    return true;
  });
}

/// Takes out the container with that number on the page and prints page and box; nothing if there are fewer.
void RemoveContainer(PDEContent root, ASInt32 page, int wanted) {
  int number = 0;
  Walk(root, [&](PDEElement element, PDEContent list, ASInt32 index) {
    if (Reading().PDEObjectGetType(element) != kPDEContainer || number++ != wanted) return true;
    std::printf("%d ", page + 1);
    PrintBox(BoxOf(element));
    std::printf("\n");
    Writing().PDEContentRemoveElem(list, index);
    return false;
  });
}

void RemoveFirst(PDEContent root, ASInt32 count) {
  for (ASInt32 i = 0; i < count && Reading().PDEContentGetNumElems(root) > 0; ++i) Writing().PDEContentRemoveElem(root, 0);
}

/// Marks every text and every container as edited, without a change to either: the writer takes all of them apart.
void MarkAllEdited(PageModel& model) {
  for (std::uint32_t element = 0; element < model.Count(); ++element) {
    if (model.At(element).type == kPDEText) {
      for (EditedRun& run : model.EditText(element)) run.removed.emplace_back(0, 0);
      model.TextChanged(element);
    } else if (model.At(element).type == kPDEContainer) {
      const std::string tag = model.TagOf(element);
      model.SetTag(element, tag + "Other");
      model.SetTag(element, tag);
    }
  }
}

void PrintTexts(PDEContent root, bool withBoxes) {
  Walk(root, [&](PDEElement element, PDEContent, ASInt32) {
    if (Reading().PDEObjectGetType(element) != kPDEText) return true;
    if (withBoxes) {
      PrintBox(BoxOf(element));
      std::printf(" ");
    }
    std::printf("%s\n", Utf16ToUtf8(Utf16FromBigEndian(Unicode(element))).c_str());
    return true;
  });
}

class Sweep {
 public:
  Sweep(std::string mode, std::vector<std::string> arguments)
      : mode_(std::move(mode)), arguments_(std::move(arguments)), doc_(TGXHost_OpenFile(arguments_.at(0).c_str(), nullptr)) {
    Check(doc_ != nullptr);
  }

  void Run() {
    Document& document = Document::Of(doc_);
    const bool isPrinting = mode_ == "text" || mode_ == "boxes";
    const ASInt32 only = isPrinting ? std::stoi(arguments_.at(1)) - 1 : -1;
    for (ASInt32 page = 0; page < document.Pages().Count(); ++page) {
      if (only < 0 || page == only) RunPage(document, page);
    }
    if (mode_ == "read" || mode_ == "edit") {
      std::printf("%ld elements, %ld containers, %ld characters, %ld units\n", totals_.elements, totals_.containers,
                  totals_.characters, totals_.units);
    }
    if (!isPrinting && mode_ != "read") Check(TGXHost_SaveFile(doc_, arguments_.at(1).c_str(), nullptr) == 0);
  }

 private:
  static void Check(bool isGood) {
    if (!isGood) throw std::runtime_error(TGXHost_LastError());
  }

  void RunPage(Document& document, ASInt32 index) {
    const PDPage page = PageHandle(document, static_cast<ASUns32>(index));
    const PagePDEContentTable& pages = *TGXHost_Tables()->pagePDEContent;
    const PDEContent root = pages.PDPageAcquirePDEContent(page, nullptr);
    if (mode_ == "operators") return document.Contents().Of(index).WriteOperators();
    if (mode_ == "rewrite") MarkAllEdited(document.Contents().Of(index));
    if (mode_ == "text" || mode_ == "boxes") return PrintTexts(root, mode_ == "boxes");
    if (mode_ == "read" || mode_ == "edit") Read(root, mode_ == "edit", totals_);
    if (mode_ == "read") return;
    if (mode_ == "remove") RemoveContainer(root, index, std::stoi(arguments_.at(2)));
    if (mode_ == "removeall") RemoveFirst(root, Reading().PDEContentGetNumElems(root));
    if (mode_ == "edit") RemoveFirst(root, 1);
    pages.PDPageSetPDEContent(page, nullptr);
  }

  std::string mode_;
  std::vector<std::string> arguments_;
  PDDoc doc_;
  Totals totals_;
};

constexpr const char* kUsage =
    "tgx_content_sweep operators IN OUT    every page anew from its operators\n"
    "tgx_content_sweep rewrite IN OUT      every text and container put anew by the writer of edits\n"
    "tgx_content_sweep remove IN OUT N     the N-th container of each page taken out, counted from 0\n"
    "tgx_content_sweep removeall IN OUT    all of each page taken out but what others depend on\n"
    "tgx_content_sweep read IN             everything read that clients read, with a line of what there was\n"
    "tgx_content_sweep edit IN OUT         the same and property dictionaries, then one element taken out of each page\n"
    "tgx_content_sweep text IN PAGE        the page's text in UTF-8, a line a text element\n"
    "tgx_content_sweep boxes IN PAGE       box and text of each text element\n";

bool IsUse(const std::vector<std::string>& words) {
  const std::string mode = words.empty() ? "" : words[0];
  if (mode == "read") return words.size() == 2;
  if (mode == "remove") return words.size() == 4;
  const bool isMode =
      mode == "operators" || mode == "rewrite" || mode == "removeall" || mode == "edit" || mode == "text" || mode == "boxes";
  return isMode && words.size() == 3;
}

}  // namespace
}  // namespace tgx::host

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (!tgx::host::IsUse(words)) {
    std::cerr << tgx::host::kUsage;
    return 1;
  }
  try {
    tgx::host::Sweep(words[0], {words.begin() + 1, words.end()}).Run();
    std::fflush(stdout);
    std::_Exit(0);  // as the command does, without taking the document apart
  } catch (const std::exception& error) {
    std::cerr << words[1] << ": " << error.what() << '\n';
    return 1;
  }
}
