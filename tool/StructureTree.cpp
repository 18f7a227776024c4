#include "tool/StructureTree.h"

#include <algorithm>
#include <unordered_set>

#include "tool/Attributes.h"
#include "tool/ContentText.h"
#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/PageNumbers.h"
#include "tool/Roles.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// Deeper than the host lets a tree be; ends the descent should one slip through.
constexpr std::size_t kMaximalDepth = 1024;

std::string AtomText(ASAtom atom) { return atom == ASAtomNull ? std::string() : DecodeName(ASAtomGetString(atom)); }

/// Reads one document's tree; keeps what many elements ask for again.
class Reader {
 public:
  Reader(PDDoc document, bool withTexts) : document_(document), withTexts_(withTexts), roles_(document) {}

  StructureTree Read() {
    tree_.lang = StringEntry(CosDocGetRoot(PDDocGetCosDoc(document_)), "Lang");
    PDSTreeRoot root = {};
    tree_.present = PDDocGetStructTreeRoot(document_, &root) != 0;
    if (!tree_.present) return std::move(tree_);
    ReadRoleMap();
    const ASInt32 count = PDSTreeRootGetNumKids(root);
    for (ASInt32 i = 0; i < count; ++i) {
      PDSElement element = {};
      PDSTreeRootGetKid(root, i, &element);
      tree_.kids.emplace_back(ReadElement(element, 1));
    }
    return std::move(tree_);
  }

 private:
  void ReadRoleMap() {
    for (const auto& [from, to] : roles_.Entries()) tree_.roleMap.emplace_back(AtomText(from), AtomText(to));
    std::sort(tree_.roleMap.begin(), tree_.roleMap.end());
  }

  std::unique_ptr<Element> ReadElement(PDSElement element, std::size_t depth) {
    if (depth > kMaximalDepth) throw HostFailure(kASDamagedDocument, "the structure tree is too deep");
    tree_.depth = std::max(tree_.depth, depth);
    auto result = std::make_unique<Element>();
    ReadProperties(element, *result);
    result->repeated = !seen_.insert(KeyOf(element)).second;
    if (!result->repeated) {
      const ASInt32 count = PDSElementGetNumKids(element);
      result->kids.reserve(static_cast<std::size_t>(count));
      for (ASInt32 i = 0; i < count; ++i) result->kids.push_back(ReadKid(element, i, depth));
    }
    return result;
  }

  void ReadProperties(PDSElement element, Element& result) {
    const ASAtom type = PDSElementGetType(element);
    result.type = AtomText(type);
    result.role = AtomText(roles_.Resolve(type));
    const CosObj dictionary = PDSElementGetCosObj(element);
    if (CosObjGetType(CosDictGetKeyString(dictionary, "T")) == CosString)
      result.title = GetText(element, PDSElementGetTitle);
    if (PDSElementHasAlt(element) != 0) result.alt = GetText(element, PDSElementGetAlt);
    if (PDSElementHasLanguage(element) != 0) result.lang = GetText(element, PDSElementGetLanguage);
    result.actualText = Spent(StringEntry(dictionary, "ActualText"));
    result.id = Spent(StringEntry(dictionary, "ID"));
    result.attributes = ReadAttributes(CosDictGetKeyString(dictionary, "A"), budget_);
  }

  template <typename Getter>
  std::string GetText(PDSElement element, Getter getter) {
    return *Spent(DecodeTextString(TextOf(element, getter)));
  }

  std::optional<std::string> Spent(std::optional<std::string> text) {
    if (text) budget_.SpendBytes(text->size());
    return text;
  }

  Kid ReadKid(PDSElement parent, ASInt32 index, std::size_t depth) {
    CosObj kid = {};
    CosObj page = {};
    PDSMCInfo info = {};
    info.size = sizeof info;
    const ASAtom type = PDSElementGetKidWithMCInfo(parent, index, &kid, &info, nullptr, &page);
    if (type == types_.element) return ReadElement(kid, depth + 1);
    if (type == types_.markedContent) {
      if (CosObjGetType(info.stream) == CosStream) return ContentOfStream(kid, pages_.NumberOf(page));
      return MarkedContent{info.mcid, pages_.NumberOf(page), withTexts_ ? Spent(TextOfKid(parent, index)) : std::nullopt};
    }
    if (type == types_.object) return ObjectReference{TypeOfObject(kid), pages_.NumberOf(page)};
    return UnknownKid{AtomText(type)};
  }

  static MarkedContent ContentOfStream(CosObj reference, std::int32_t page) {
    const CosObj mcid = CosDictGetKeyString(reference, "MCID");
    return {CosObjGetType(mcid) == CosInteger ? CosIntegerValue(mcid) : -1, page, std::nullopt, true};
  }

  /// Nothing where the page lacks the content, or cannot be read.
  static std::optional<std::string> TextOfKid(PDSElement parent, ASInt32 index) {
    try {
      const HostFrame frame;
      CosObj kid = {};
      void* container = nullptr;
      PDSElementGetKid(parent, index, &kid, &container, nullptr);
      if (container == nullptr) return std::nullopt;
      return ShownText(static_cast<PDEContainer>(container));
    } catch (const HostFailure&) {
      return std::nullopt;
    }
  }

  static std::string TypeOfObject(CosObj object) {
    const ASInt32 type = CosObjGetType(object);
    const CosObj dictionary = type == CosStream ? CosStreamDict(object) : object;
    if (CosObjGetType(dictionary) != CosDict) return "";
    for (const char* key : {"Subtype", "Type"}) {
      const CosObj name = CosDictGetKeyString(dictionary, key);
      if (CosObjGetType(name) == CosName) return AtomText(CosNameValue(name));
    }
    return "";
  }

  PDDoc document_;
  StructureTree tree_;
  bool withTexts_;
  Roles roles_;
  PageNumbers pages_;
  ReadingBudget budget_;
  std::unordered_set<std::uint64_t> seen_;
  KidTypes types_;
};

}  // namespace

StructureTree ReadStructureTree(PDDoc document, bool withTexts) {
  const HostFrame frame;
  return Reader(document, withTexts).Read();
}

}  // namespace tgx::tool
