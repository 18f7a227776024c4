#include "tool/Elements.h"

namespace tgx::tool {

std::string BytesOf(CosObj string) {
  ASTArraySize count = 0;
  const char* bytes = CosStringValue(string, &count);
  return {bytes, static_cast<std::size_t>(count)};
}

CosObj KidOf(PDSElement parent, ASInt32 index) {
  CosObj kid = {};
  PDSElementGetKid(parent, index, &kid, nullptr, nullptr);
  return kid;
}

void SetLanguage(PDSElement element, const std::string& bytes) {
  PDSElementSetLanguage(element, reinterpret_cast<const ASUns8*>(bytes.data()), static_cast<ASTArraySize>(bytes.size()));
}

void PutString(CosDoc document, CosObj dictionary, const char* key, const std::string& bytes) {
  CosDictPutKeyString(dictionary, key, CosNewString(document, 0, bytes.data(), static_cast<ASTArraySize>(bytes.size())));
}

}  // namespace tgx::tool
