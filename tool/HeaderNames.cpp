#include "tool/HeaderNames.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "tool/Elements.h"
#include "tool/HostCalls.h"

namespace tgx::tool {
namespace {

constexpr const char* kHeaders = "Headers";

class HeaderNames {
 public:
  explicit HeaderNames(PDDoc document) : document_(PDDocGetCosDoc(document)) {
    ForEachElement(document, [this](PDSElement element) {
      const CosObj dictionary = PDSElementGetCosObj(element);
      const CosObj id = CosDictGetKeyString(dictionary, "ID");
      if (CosObjGetType(id) == CosString) known_.insert(BytesOf(id));
      CollectFrom(CosDictGetKeyString(dictionary, "A"));
    });
  }

  std::size_t DropUnknown() const {
    std::size_t dropped = 0;
    for (const CosObj attributes : attributes_) dropped += DropUnknownIn(attributes);
    return dropped;
  }

 private:
  void CollectFrom(CosObj attributes) {
    const ASInt32 type = CosObjGetType(attributes);
    if (type == CosDict) {
      const bool namesHeaders = CosObjGetType(CosDictGetKeyString(attributes, kHeaders)) == CosArray;
      if (namesHeaders && seen_.insert(KeyOf(attributes)).second) attributes_.push_back(attributes);
    } else if (type == CosArray) {
      const ASInt32 count = CosArrayLength(attributes);
      for (ASInt32 i = 0; i < count; ++i) {
        const CosObj item = CosArrayGet(attributes, i);
        if (CosObjGetType(item) == CosDict) CollectFrom(item);
      }
    }
  }

  std::size_t DropUnknownIn(CosObj attributes) const {
    const CosObj headers = CosDictGetKeyString(attributes, kHeaders);
    const ASInt32 count = CosArrayLength(headers);
    const CosObj kept = CosNewArray(document_, 0, count);
    ASInt32 keptCount = 0;
    for (ASInt32 i = 0; i < count; ++i) {
      const CosObj name = CosArrayGet(headers, i);
      if (CosObjGetType(name) == CosString && !known_.contains(BytesOf(name))) continue;
      CosArrayPut(kept, keptCount++, name);
    }
    if (keptCount == count) return 0;
    if (keptCount == 0) {
      CosDictRemoveKeyString(attributes, kHeaders);
    } else {
      CosDictPutKeyString(attributes, kHeaders, kept);
    }
    return static_cast<std::size_t>(count - keptCount);
  }

  CosDoc document_;
  std::unordered_set<std::string> known_;  ///< the bytes of all identifiers
  std::unordered_set<std::uint64_t> seen_;
  std::vector<CosObj> attributes_;  ///< dictionaries with an array of header cells
};

}  // namespace

std::size_t DropUnknownHeaders(PDDoc document) {
  const HostFrame frame;
  return HeaderNames(document).DropUnknown();
}

}  // namespace tgx::tool
