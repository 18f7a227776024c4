#include "tool/NoteNames.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Roles.h"

namespace tgx::tool {

void NameNotes(PDDoc document) {
  const HostFrame frame;
  Roles roles(document);
  const ASAtom note = ASAtomFromString("Note");
  std::unordered_set<std::string> known;
  std::vector<PDSElement> notes;
  ForEachElement(document, [&](PDSElement element) {
    const CosObj own = CosDictGetKeyString(PDSElementGetCosObj(element), "ID");
    const std::string id = CosObjGetType(own) == CosString ? BytesOf(own) : std::string();
    if (!id.empty()) {
      known.insert(id);
    } else if (roles.Resolve(PDSElementGetType(element)) == note) {
      notes.push_back(element);
    }
  });
  std::size_t number = 0;
  for (const PDSElement& element : notes) {
    std::string id;
    do id = "note-" + std::to_string(++number);
    while (known.contains(id));
    PutString(PDDocGetCosDoc(document), PDSElementGetCosObj(element), "ID", id);
  }
}

}  // namespace tgx::tool
