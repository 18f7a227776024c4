#include "tests/support/Content.h"

namespace tgx::test {
namespace {

Content Make(Content::Kind kind, std::string text) {
  Content content;
  content.kind = kind;
  content.text = std::move(text);
  return content;
}

Content Picture(Content::Kind kind, int width, int height) {
  Content content = Make(kind, "");
  content.width = width;
  content.height = height;
  return content;
}

}  // namespace

Content Text(std::string_view bytes) { return Make(Content::Kind::kText, std::string(bytes)); }
Content Image(int width, int height) { return Picture(Content::Kind::kImage, width, height); }
Content InlineImage(int width, int height) { return Picture(Content::Kind::kInlineImage, width, height); }
Content Ops(std::string operators) { return Make(Content::Kind::kOperators, std::move(operators)); }

Content Marked(std::string tag, std::string properties, std::vector<Content> kids) {
  Content content = Make(Content::Kind::kMarked, std::move(tag));
  content.properties = std::move(properties);
  content.kids = std::move(kids);
  return content;
}

Content MarkedByResource(std::string tag, std::string properties, std::vector<Content> kids) {
  Content content = Marked(std::move(tag), std::move(properties), std::move(kids));
  content.inResources = true;
  return content;
}

Content Artifact(std::vector<Content> kids) { return Marked("Artifact", "", std::move(kids)); }

}  // namespace tgx::test
