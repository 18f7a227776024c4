#include "host/pdfedit/model/PageResources.h"

#include "host/cos/Dictionaries.h"
#include "host/cos/Names.h"
#include "host/pdfedit/reading/ContentReader.h"
#include "host/pdfedit/writing/Syntax.h"

namespace tgx::host {
namespace {

const QPDFObject* AddressOf(const QPDFObjectHandle& object) {
  QPDFObjectHandle resolved = object;
  resolved.isNull();  // resolves a reference
  return resolved.getObjectPtr();
}

/// Whether an operator names a font or a property dictionary.
bool TakesResource(Opcode code) {
  return code == Opcode::kTextFont || code == Opcode::kBeginContainerWithProperties || code == Opcode::kPlaceWithProperties;
}

}  // namespace

QPDFObjectHandle InheritedAttribute(const QPDFObjectHandle& page, const char* key) {
  constexpr int kDeepestTree = 64;  // a parent chain that is a ring ends here too
  QPDFObjectHandle node = page;
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

PageResources::Names& PageResources::NamesOf(const char* category) {
  const auto [known, isNew] = names_.try_emplace(category);
  if (!isNew) return known->second;
  QPDFObjectHandle named = Resources();
  if (named.isDictionary()) named = named.getKey(category);
  if (!named.isDictionary()) return known->second;
  for (const std::string& key : named.getKeys()) {
    QPDFObjectHandle value = named.getKey(key);
    known->second.ofObject.emplace(AddressOf(value), FromQpdfName(key));
  }
  return known->second;
}

const std::set<std::string, std::less<>>& PageResources::MentionedIn(std::string_view content) {
  if (mentioned_) return *mentioned_;
  mentioned_.emplace();
  ContentReader reader(content);
  while (reader.Next()) {
    if (!TakesResource(reader.Code())) continue;
    for (std::size_t count = 1; count <= 2 && reader.Has(count); ++count) {
      const Token& operand = reader.Operand(0, count);
      if (operand.kind == Token::Kind::kName) mentioned_->insert(NameValue(operand.In(content)));
    }
  }
  return *mentioned_;
}

std::string PageResources::NameFor(const char* category, const QPDFObjectHandle& object, const std::string& prefix,
                                   std::string_view content) {
  Names& names = NamesOf(category);
  const QPDFObject* address = AddressOf(object);
  const auto known = names.ofObject.find(address);
  // A client may have given the name to something else meanwhile.
  if (known != names.ofObject.end() && AddressOf(Find(category, FormatName(known->second))) == address) return known->second;
  QPDFObjectHandle own = OwnCategory(category);
  std::string name;
  do {
    name = prefix + std::to_string(names.next++);
  } while (DictHas(own, name) || MentionedIn(content).contains(name));
  DictSet(own, name, object);
  names.ofObject[address] = name;
  return name;
}

}  // namespace tgx::host
