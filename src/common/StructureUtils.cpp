#include "src/common/StructureUtils.h"

#include <algorithm>

#include "src/api/StructureError.h"
#include "src/common/ObjectBits.h"
#include "src/common/PageHelpers.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "common/StructureUtils";

using TextGetter = ASInt32 (*)(PDSElement, ASUns8*);

// The bytes of a text of that length, and zero bytes behind them.
template <typename Byte>
void ReadText(PDSElement element, TextGetter getter, ASInt32 length, std::size_t slack, std::vector<Byte>& out) {
  out.assign(static_cast<std::size_t>(length) + slack, 0);
  getter(element, reinterpret_cast<ASUns8*>(out.data()));
}

int ReadTextIfAny(PDSElement element, TextGetter getter, std::vector<char>& out) {
  out.clear();
  const ASInt32 length = getter(element, nullptr);
  if (length > 0) ReadText(element, getter, length, 2, out);
  return static_cast<int>(out.size());
}

// One step through the role map; `type` where the document has no role map, which is reported from `line`, or the map no
// such type.
std::string MappedType(PDSTreeRoot root, const std::string& type, int line) {
  PDSRoleMap map = CosNewNull();
  if (PDSTreeRootGetRoleMap(root, &map) == 0) {
    ReportStructureError("No RoleMap structure object found", kSourceFile, line);
    return type;
  }
  const ASAtom mapped = PDSRoleMapGetDirectMap(map, ASAtomFromString(type.c_str()));
  return mapped == ASAtomNull ? type : ASAtomGetString(mapped);
}

bool HoldsContainers(PDEContainer container) {
  const PDEContent content = PDEContainerGetContent(container);
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) {
    if (PDEObjectGetType(PDEContentGetElem(content, index)) == kPDEContainer) return true;
  }
  return false;
}

// The place of a container in a list, looked for from `start` to both sides; -1 if it stands deeper, or nowhere.
ASInt32 PlaceOfContainer(PDEContent content, const void* container, ASInt32 start) {
  const ASInt32 count = PDEContentGetNumElems(content);
  const auto isIt = [&](ASInt32 index) {
    const PDEElement element = PDEContentGetElem(content, index);
    return element == container && PDEObjectGetType(element) == kPDEContainer;
  };
  ASInt32 behind = std::min(start, count);
  ASInt32 before = behind - 1;
  for (; behind < count || before >= 0; ++behind, --before) {
    if (behind < count && isIt(behind)) return behind;
    if (before >= 0 && isIt(before)) return before;
  }
  return -1;
}

// Takes a container out of its page, if it stands in the page's own list.
void RemoveTopLevelContainer(CosObj cosPage, const void* container, Removals& removals) {
  PageReference page(removals.pages.Acquire(cosPage));
  const PDEContent content = PDPageAcquirePDEContent(page.Get(), ExtensionId());
  ASInt32& last = removals.lastPlaces[BitsOf(cosPage)];
  const ASInt32 place = PlaceOfContainer(content, container, last);
  if (place >= 0) {
    const PDEElement element = PDEContentGetElem(content, place);
    if (HoldsContainers(static_cast<PDEContainer>(element))) ++removals.withOthers;
    PDEContentRemoveElem(content, place);
    last = place;
  }
  FinishPage(page.Release());
}

template <typename Matches>
void FindElements(PDSElement element, const Matches& matches, std::list<PDSElement>& out) {  // NOLINT(misc-no-recursion)
  for (ASInt32 index = 0; index < PDSElementGetNumKids(element); ++index) {
    CosObj kid = CosNewNull();
    PDSMCInfo info = {};
    CosObj page = CosNewNull();
    const ASAtom type = PDSElementGetKidWithMCInfo(element, index, &kid, &info, nullptr, &page);
    if (type == ASAtomFromString("StructElem")) FindElements(kid, matches, out);
  }
  if (matches(element)) out.push_back(element);
}

bool Holds(const std::vector<char>& text, const std::vector<char>& needle) {
  return std::search(text.begin(), text.end(), needle.begin(), needle.end()) != text.end();
}

}  // namespace

void RemoveElementWithContent(PDSElement element, Removals& removals) {  // NOLINT(misc-no-recursion)
  PDSElement parent = GetParent(element);
  while (PDSElementGetNumKids(element) != 0) {
    CosObj kid = CosNewNull();
    PDSMCInfo info = {};
    void* pointer = nullptr;
    CosObj page = CosNewNull();
    const ASAtom type = PDSElementGetKidWithMCInfo(element, 0, &kid, &info, &pointer, &page);
    if (type == ASAtomFromString("StructElem")) {
      RemoveElementWithContent(kid, removals);
    } else if (type == ASAtomFromString("MC")) {
      PDSElementRemoveKidMC(element, page, static_cast<PDEContainer>(pointer));
      RemoveTopLevelContainer(page, pointer, removals);
    } else if (type == ASAtomFromString("OBJR")) {
      PDSElementRemoveKidOBJR(element, kid);
    } else {
      PDSElementRemoveKid(element, kid);
    }
  }
  PDSElementRemoveKid(parent, element);
}

int GetKidIndex(PDSElement parent, CosObj kid) {
  if (CosObjGetType(parent) == CosNull) return -1;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj object = CosNewNull();
    PDSElementGetKid(parent, index, &object, nullptr, nullptr);
    if (CosObjEqual(object, kid) != 0) return index;
  }
  return -1;
}

int GetIndexInParent(CosObj element) {
  PDSElement parent = GetParent(element);
  return GetKidIndex(parent, element);
}

PDSElement GetParent(CosObj element) {
  PDSElement parent = CosNewNull();
  ASBool isRoot = 0;
  if (CosObjGetType(element) != CosNull) PDSElementGetParent(element, &parent, &isRoot);
  return parent;
}

int GetTitle(PDSElement element, std::vector<char>& out) { return ReadTextIfAny(element, PDSElementGetTitle, out); }

int GetAlt(PDSElement element, std::vector<char>& out) { return ReadTextIfAny(element, PDSElementGetAlt, out); }

void GetAltInto(PDSElement element, std::vector<char>& out) {
  ReadText(element, PDSElementGetAlt, PDSElementGetAlt(element, nullptr), 2, out);
}

void ReadAltBytes(PDSElement element, ByteVector& out) {
  ReadText(element, PDSElementGetAlt, PDSElementGetAlt(element, nullptr), 2, out);
}

bool GetLanguage(PDSElement element, std::vector<char>& out) {
  out.clear();
  if (PDSElementHasLanguage(element) == 0) return false;
  const ASInt32 length = PDSElementGetLanguage(element, nullptr);
  if (length <= 0) return false;
  ReadText(element, PDSElementGetLanguage, length, 10, out);
  out.erase(std::remove(out.begin(), out.end(), '\0'), out.end());
  return true;
}

bool SetLanguage(PDSElement element, const std::vector<char>& lang) {
  if (lang.empty()) return false;
  PDSElementSetLanguage(element, reinterpret_cast<const ASUns8*>(lang.data()), static_cast<ASTArraySize>(lang.size()));
  return true;
}

void SetDocumentLanguage(PDDoc document, const std::vector<char>& lang) {
  if (document == nullptr || lang.empty()) return;
  PDSTreeRoot root = CosNewNull();
  // The host then says what it thinks of the root that is none.
  if (PDDocGetStructTreeRoot(document, &root) == 0) {
    ReportStructureError("No document structure object found", kSourceFile, 22);
  }
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 index = 0; index < count; ++index) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(root, index, &element);
    if (MappedType(root, ASAtomGetString(PDSElementGetType(element)), 85) != "Document") continue;
    SetLanguage(element, lang);
    return;
  }
}

bool ContainsCosObj(const std::list<CosObj>& list, CosObj object) {
  return std::any_of(list.begin(), list.end(), [&](CosObj item) { return CosObjEqual(item, object) != 0; });
}

std::string ResolveRole(PDDoc document, const std::string& type) {
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(document, &root) == 0) {
    ReportStructureError("No document structure object found", kSourceFile, __LINE__);
    return type;
  }
  return MappedType(root, type, __LINE__);
}

void FindByAlt(PDSElement element, const std::vector<char>& needle, std::list<PDSElement>& out) {
  std::vector<char> text;
  const auto matches = [&](PDSElement candidate) {
    if (PDSElementHasAlt(candidate) == 0) return false;
    GetAltInto(candidate, text);
    return Holds(text, needle);
  };
  FindElements(element, matches, out);
}

void FindByTitle(PDSElement element, const std::vector<char>& needle, std::list<PDSElement>& out) {
  std::vector<char> text;
  const auto matches = [&](PDSElement candidate) { return GetTitle(candidate, text) != 0 && Holds(text, needle); };
  FindElements(element, matches, out);
}

}  // namespace tgx
