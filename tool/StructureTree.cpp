#include "tool/StructureTree.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "tool/Attributes.h"
#include "tool/HostCalls.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// Deeper than the host lets a tree be; ends the descent should one slip through.
constexpr std::size_t kMaximalDepth = 1024;

std::string AtomText(ASAtom atom) { return atom == ASAtomNull ? std::string() : DecodeName(ASAtomGetString(atom)); }

/// The text that one of the host's getters gives: it is asked for the length, then for the bytes.
template <typename Getter>
std::string GetText(PDSElement element, Getter getter) {
  std::string bytes(static_cast<std::size_t>(getter(element, nullptr)), '\0');
  if (!bytes.empty()) getter(element, reinterpret_cast<ASUns8*>(bytes.data()));
  return DecodeTextString(bytes);
}

/// Reads one document's tree; keeps what many elements ask for again.
class Reader {
 public:
  explicit Reader(PDDoc document) : document_(document) {}

  StructureTree Read() {
    tree_.lang = StringEntry(CosDocGetRoot(PDDocGetCosDoc(document_)), "Lang");
    PDSTreeRoot root = {};
    tree_.present = PDDocGetStructTreeRoot(document_, &root) != 0;
    if (!tree_.present) return std::move(tree_);
    ReadRoleMap(root);
    const ASInt32 count = PDSTreeRootGetNumKids(root);
    for (ASInt32 i = 0; i < count; ++i) {
      PDSElement element = {};
      PDSTreeRootGetKid(root, i, &element);
      tree_.kids.emplace_back(ReadElement(element, 1));
    }
    return std::move(tree_);
  }

 private:
  void ReadRoleMap(PDSTreeRoot root) {
    PDSRoleMap map = {};
    if (PDSTreeRootGetRoleMap(root, &map) == 0) return;
    roleMap_ = map;
    const auto add = [](CosObj key, CosObj value, void* data) -> ASBool {
      if (CosObjGetType(value) == CosName) {
        auto& entries = *static_cast<std::vector<std::pair<ASAtom, ASAtom>>*>(data);
        entries.emplace_back(CosNameValue(key), CosNameValue(value));
      }
      return 1;
    };
    std::vector<std::pair<ASAtom, ASAtom>> entries;
    CosObjEnum(map, add, &entries);
    for (const auto& [from, to] : entries) tree_.roleMap.emplace_back(AtomText(from), AtomText(to));
    std::sort(tree_.roleMap.begin(), tree_.roleMap.end());
  }

  /// Where the role map leads from a type, over as many entries as it takes; a circle ends where it closes.
  const std::string& RoleOf(ASAtom type) {
    const auto known = roles_.find(type);
    if (known != roles_.end()) return known->second;
    ASAtom role = type;
    std::set<ASAtom> seen;
    while (roleMap_ && seen.insert(role).second) {
      const ASAtom next = PDSRoleMapGetDirectMap(*roleMap_, role);
      if (next == ASAtomNull) break;
      role = next;
    }
    return roles_.emplace(type, AtomText(role)).first->second;
  }

  /// 0 for what is no page of the document.
  std::int32_t PageNumberOf(CosObj page) {
    if (IsNull(page)) return 0;
    const auto [entry, isNew] = pages_.emplace(KeyOf(page), 0);
    if (!isNew) return entry->second;
    try {
      const HostFrame frame;
      entry->second = PDPageNumFromCosObj(page) + 1;
    } catch (const HostFailure&) {
      entry->second = 0;
    }
    return entry->second;
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
    result.role = RoleOf(type);
    const CosObj dictionary = PDSElementGetCosObj(element);
    if (CosObjGetType(CosDictGetKeyString(dictionary, "T")) == CosString)
      result.title = GetText(element, PDSElementGetTitle);
    if (PDSElementHasAlt(element) != 0) result.alt = GetText(element, PDSElementGetAlt);
    if (PDSElementHasLanguage(element) != 0) result.lang = GetText(element, PDSElementGetLanguage);
    result.actualText = StringEntry(dictionary, "ActualText");
    result.id = StringEntry(dictionary, "ID");
    result.attributes = ReadAttributes(CosDictGetKeyString(dictionary, "A"));
  }

  Kid ReadKid(PDSElement parent, ASInt32 index, std::size_t depth) {
    CosObj kid = {};
    CosObj page = {};
    PDSMCInfo info = {};
    info.size = sizeof info;
    const ASAtom type = PDSElementGetKidWithMCInfo(parent, index, &kid, &info, nullptr, &page);
    if (type == structElem_) return ReadElement(kid, depth + 1);
    if (type == mc_) return MarkedContent{info.mcid, PageNumberOf(page)};
    if (type == objr_) return ObjectReference{TypeOfObject(kid), PageNumberOf(page)};
    return UnknownKid{AtomText(type)};
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
  std::optional<PDSRoleMap> roleMap_;
  std::unordered_map<ASAtom, std::string> roles_;
  std::unordered_map<std::uint64_t, std::int32_t> pages_;
  std::unordered_set<std::uint64_t> seen_;
  ASAtom structElem_ = ASAtomFromString("StructElem");
  ASAtom mc_ = ASAtomFromString("MC");
  ASAtom objr_ = ASAtomFromString("OBJR");
};

}  // namespace

StructureTree ReadStructureTree(PDDoc document) {
  const HostFrame frame;
  return Reader(document).Read();
}

}  // namespace tgx::tool
