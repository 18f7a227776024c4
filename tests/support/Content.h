#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tgx::test {

/// A piece of page content for TestDocument: text, an image, operators, or marked content around other pieces. Made by the
/// functions below; a page turns it into operators.
struct Content {
  enum class Kind { kText, kImage, kInlineImage, kOperators, kMarked };

  Kind kind = Kind::kOperators;
  std::string text;                  ///< shown bytes, operators, or the tag of marked content
  std::string properties;            ///< of marked content: dictionary text, empty for BMC
  bool inResources = false;          ///< the properties go to the page's "Properties" resources
  std::vector<Content> kids;         ///< of marked content
  int width = 0, height = 0;         ///< of an image, in samples
  std::string font = "F1";           ///< resource name
  double size = 12, x = -1, y = -1;  ///< of text, in points; a negative place means the next line of the page

  Content& Font(std::string resourceName) { return font = std::move(resourceName), *this; }
  Content& Size(double points) { return size = points, *this; }
  Content& At(double left, double baseline) { return x = left, y = baseline, *this; }
};

/// One BT ... ET that shows these bytes of the font's encoding.
Content Text(std::string_view bytes);
/// A gray image XObject of that many samples, painted with one point a sample.
Content Image(int width, int height);
/// The same as an inline image.
Content InlineImage(int width, int height);
/// Operators as they stand.
Content Ops(std::string operators);
/// Marked content: BDC with the text of a property dictionary, BMC with an empty one.
Content Marked(std::string tag, std::string properties, std::vector<Content> kids);
/// Marked content whose property dictionary stands in the page's resources.
Content MarkedByResource(std::string tag, std::string properties, std::vector<Content> kids);
/// An artifact: /Artifact BMC around the pieces.
Content Artifact(std::vector<Content> kids);

}  // namespace tgx::test
