#include "src/actions/UserAltText/UserAltTextFix.h"

#include "src/api/HostException.h"
#include "src/common/AnnotationArrays.h"
#include "src/common/HostTexts.h"

namespace tgx {
namespace {

bool IsName(CosObj object, const char* name) { return CosNameValue(object) == ASAtomFromString(name); }

bool IsNamed(CosObj dictionary, const char* key, const char* name) {
  if (CosDictKnownKeyString(dictionary, key) == 0) return false;
  const CosObj value = CosDictGetKeyString(dictionary, key);
  return CosObjGetType(value) == CosName && IsName(value, name);
}

bool IsLinkAnnotation(CosObj object) {
  // Elements, of which there are many, have no subtype.
  return CosObjGetType(object) == CosDict && IsNamed(object, "Subtype", "Link") && IsNamed(object, "Type", "Annot");
}

/// The bytes of the URI of a link's action; none when its action is not to open one. The types of "S" and "URI" are the
/// host's to check.
ByteVector ReadUri(CosObj annotation) {
  const CosObj action = CosDictGetKeyString(annotation, "A");
  if (CosObjGetType(action) != CosDict || !IsName(CosDictGetKeyString(action, "S"), "URI")) return {};
  ASTArraySize count = 0;
  const char* bytes = CosStringValue(CosDictGetKeyString(action, "URI"), &count);
  return {bytes, bytes + count};
}

/// A link that opens an empty URI, whoever emptied it.
bool HasEmptyUri(PDAnnot annotation) {
  if (PDAnnotGetSubtype(annotation) != ASAtomFromString("Link")) return false;
  const CosObj dictionary = PDAnnotGetCosObj(annotation);
  if (CosObjGetType(dictionary) != CosDict || CosDictKnownKeyString(dictionary, "A") == 0) return false;
  const CosObj action = CosDictGetKeyString(dictionary, "A");
  if (CosObjGetType(action) != CosDict || !IsNamed(action, "S", "URI")) return false;
  if (CosDictKnownKeyString(action, "URI") == 0) return false;
  const CosObj uri = CosDictGetKeyString(action, "URI");
  if (CosObjGetType(uri) != CosString) return false;
  ASTArraySize count = 0;
  CosStringValue(uri, &count);
  return count == 0;
}

/// Annotations go from the last to the first, so that few others have to move up.
void PurgePage(PDPage page) {
  std::vector<ASInt32> empty;
  const ASInt32 count = PDPageGetNumAnnots(page);
  for (ASInt32 i = 0; i < count; ++i) {
    if (HasEmptyUri(PDPageGetAnnot(page, i))) empty.push_back(i);
  }
  for (auto i = empty.rbegin(); i != empty.rend(); ++i) PDPageRemoveAnnot(page, *i);
}

}  // namespace

bool UserAltTextFix::Run() {
  InExceptionFrame([this] {
    const auto tree = TagStructureNode::BuildTree(GetDocument());
    std::vector<TagStructureNode*> links;
    CollectLinks(tree.get(), links);
    for (TagStructureNode* link : links) Transfer(*link);
    PurgePages();
  });
  return true;
}

void UserAltTextFix::CollectLinks(TagStructureNode* node, std::vector<TagStructureNode*>& links) const {
  CosObj object;
  node->GetObject(&object);
  if (!node->IsNull() && IsLinkAnnotation(object)) links.push_back(node);
  const int count = node->GetKidCount();
  for (int i = 0; i < count; ++i) CollectLinks(node->GetKid(i), links);
}

void UserAltTextFix::Transfer(TagStructureNode& link) {
  CosObj annotation;
  link.GetObject(&annotation);
  const ByteVector bytes = ReadUri(annotation);
  if (bytes.empty()) return;
  const LinkUri uri = SplitLinkUri(bytes);
  // Every URI is written back, a marked one without its text and an unmarked one without its zero bytes.
  const CosObj action = CosDictGetKeyString(annotation, "A");
  CosDictRemoveKeyString(action, "URI");
  CosDictPutKeyString(
      action, "URI",
      CosNewString(PDDocGetCosDoc(GetDocument()), 0, uri.target.data(), static_cast<ASTArraySize>(uri.target.size())));
  if (uri.text) MoveText(link, uri);
}

void UserAltTextFix::MoveText(TagStructureNode& link, const LinkUri& uri) {
  TagStructureNode* parent = link.GetParent();
  if (parent == nullptr || parent->GetKidCount() != 2 || parent->GetParent() == nullptr) return;
  TagStructureNode* sibling = parent->GetKid(parent->GetKid(0) == &link ? 1 : 0);
  CosObj siblingObject;
  sibling->GetObject(&siblingObject);
  const OwnedAsText text(Utf16ToAsText(*uri.text));
  PDSElementSetAltASText(siblingObject, text.get());
  if (!uri.target.empty()) return;
  TagStructureNode* grandparent = parent->GetParent();
  const int index = grandparent->IndexOfKid(parent);
  CosObj parentObject;
  parent->GetObject(&parentObject);
  CosObj grandparentObject;
  grandparent->GetObject(&grandparentObject);
  PDSElementRemoveKid(parentObject, siblingObject);
  PDSElementInsertKid(grandparentObject, siblingObject, index);
  PDSElementRemoveKid(grandparentObject, parentObject);
}

/// The pages stay acquired: the host has always been left their references here.
void UserAltTextFix::PurgePages() {
  const ASInt32 pages = PDDocGetNumPages(GetDocument());
  AnnotationArrays arrays;
  for (ASInt32 p = 0; p < pages; ++p) {
    const PDPage page = PDDocAcquirePage(GetDocument(), p);
    if (arrays.IsNew(page)) PurgePage(page);
  }
  arrays.ShareWhatIsLeft();
}

}  // namespace tgx
