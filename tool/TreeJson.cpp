#include "tool/TreeText.h"

namespace tgx::tool {
namespace {

Json AsJson(const Kid& kid);

Json AsJson(const std::vector<Kid>& kids) {
  Json array = Json::array();
  for (const Kid& kid : kids) array.push_back(AsJson(kid));
  return array;
}

void PutText(Json& object, const char* key, const std::optional<std::string>& text) {
  if (text) object[key] = *text;
}

Json AsJson(const Element& element) {
  Json object = Json::object();
  object["type"] = element.type;
  object["role"] = element.role;
  PutText(object, "title", element.title);
  PutText(object, "alt", element.alt);
  PutText(object, "actualText", element.actualText);
  PutText(object, "lang", element.lang);
  PutText(object, "id", element.id);
  if (!element.attributes.empty()) object["attributes"] = element.attributes;
  if (element.repeated) object["repeated"] = true;
  if (!element.kids.empty()) object["kids"] = AsJson(element.kids);
  return object;
}

void PutPage(Json& object, std::int32_t page) {
  if (page > 0) object["page"] = page;
}

struct KidConverter {
  Json operator()(const std::unique_ptr<Element>& element) const { return AsJson(*element); }
  Json operator()(const MarkedContent& content) const {
    Json object = {{"mcid", content.mcid}};
    PutPage(object, content.page);
    if (content.ofStream) object["stream"] = true;
    PutText(object, "text", content.text);
    return object;
  }
  Json operator()(const ObjectReference& reference) const {
    Json object = {{"objr", reference.type}};
    PutPage(object, reference.page);
    return object;
  }
  Json operator()(const UnknownKid& kid) const { return {{"unknown", kid.type}}; }
};

Json AsJson(const Kid& kid) { return std::visit(KidConverter(), kid); }

}  // namespace

Json TreeAsJson(const StructureTree& tree) {
  Json roleMap = Json::object();
  for (const auto& [from, to] : tree.roleMap) roleMap[from] = to;
  Json object = Json::object();
  object["version"] = 1;
  object["lang"] = tree.lang ? Json(*tree.lang) : Json(nullptr);
  object["roleMap"] = std::move(roleMap);
  object["kids"] = AsJson(tree.kids);
  return object;
}

}  // namespace tgx::tool
