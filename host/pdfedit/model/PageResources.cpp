#include "host/pdfedit/model/PageResources.h"

#include "host/cos/Dictionaries.h"
#include "host/cos/Names.h"
#include "host/pdfedit/reading/Syntax.h"

namespace tgx::host {

QPDFObjectHandle InheritedAttribute(QPDFObjectHandle page, const char* key) {
  constexpr int kDeepestTree = 64;  // a parent chain that is a ring ends here too
  QPDFObjectHandle node = std::move(page);
  for (int level = 0; level < kDeepestTree && node.isDictionary(); ++level) {
    QPDFObjectHandle value = node.getKey(key);
    if (!value.isNull()) return value;
    node = node.getKey("/Parent");
  }
  return QPDFObjectHandle::newNull();
}

QPDFObjectHandle PageResources::Resources() const { return InheritedAttribute(page_, "/Resources"); }

QPDFObjectHandle PageResources::Find(const char* category, std::string_view nameToken) const {
  const QPDFObjectHandle resources = Resources();
  if (!QPDFObjectHandle(resources).isDictionary()) return QPDFObjectHandle::newNull();
  QPDFObjectHandle named = QPDFObjectHandle(resources).getKey(category);
  if (!named.isDictionary()) return QPDFObjectHandle::newNull();
  return DictGet(named, NameValue(nameToken));
}

DocumentFont* PageResources::Font(std::string_view nameToken) {
  const auto known = fontOfName_.find(nameToken);
  if (known != fontOfName_.end()) return known->second;
  const QPDFObjectHandle dictionary = Find("/Font", nameToken);
  DocumentFont* font = QPDFObjectHandle(dictionary).isDictionary() ? &fonts_.Of(dictionary) : nullptr;
  fontOfName_.emplace(nameToken, font);
  return font;
}

DocumentFont* PageResources::FontOfExtGState(std::string_view nameToken, double& size) {
  QPDFObjectHandle state = Find("/ExtGState", nameToken);
  if (!state.isDictionary()) return nullptr;
  QPDFObjectHandle pair = state.getKey("/Font");
  if (!pair.isArray() || pair.getArrayNItems() != 2 || !pair.getArrayItem(1).isNumber()) return nullptr;
  const QPDFObjectHandle dictionary = pair.getArrayItem(0);
  if (!QPDFObjectHandle(dictionary).isDictionary()) return nullptr;
  size = pair.getArrayItem(1).getNumericValue();
  return &fonts_.Of(dictionary);
}

QPDFObjectHandle PageResources::OwnCategory(const char* category) {
  QPDFObjectHandle own = page_.getKey("/Resources");
  if (!own.isDictionary() || own.isIndirect()) {
    QPDFObjectHandle effective = Resources();
    own = effective.isDictionary() ? effective.shallowCopy() : QPDFObjectHandle::newDictionary();
    // The categories that stand directly in a shared dictionary would otherwise be shared by the copy.
    for (const std::string& key : own.getKeys()) {
      QPDFObjectHandle value = own.getKey(key);
      if (value.isDictionary() && !value.isIndirect()) own.replaceKey(key, value.shallowCopy());
    }
    page_.replaceKey("/Resources", own);
  }
  QPDFObjectHandle named = own.getKey(category);
  if (!named.isDictionary() || named.isIndirect()) {
    named = named.isDictionary() ? named.shallowCopy() : QPDFObjectHandle::newDictionary();
    own.replaceKey(category, named);
  }
  return named;
}

std::string PageResources::NameFor(const char* category, const QPDFObjectHandle& object, const std::string& prefix) {
  QPDFObjectHandle named = Resources();
  if (named.isDictionary()) named = named.getKey(category);
  if (named.isDictionary()) {
    for (const std::string& key : named.getKeys()) {
      QPDFObjectHandle value = named.getKey(key);
      value.isNull();  // resolves a reference
      if (value.getObjectPtr() == QPDFObjectHandle(object).getObjectPtr()) return FromQpdfName(key);
    }
  }
  QPDFObjectHandle own = OwnCategory(category);
  int number = 0;
  while (DictHas(own, prefix + std::to_string(number))) ++number;
  const std::string name = prefix + std::to_string(number);
  DictSet(own, name, object);
  return name;
}

}  // namespace tgx::host
