#pragma once

#include <string>
#include <vector>

namespace tgx::test {

/// A page as a program that is not ours paints it.
struct Bitmap {
  int width = 0;
  int height = 0;
  std::string pixels;  ///< three bytes each, row by row from the top
};

/// The pages of a document, as pdftoppm paints them at 100 dots an inch.
std::vector<Bitmap> RenderPages(const std::string& pdf);
/// The first pages without their annotations, at so many dots an inch.
std::vector<Bitmap> RenderContent(const std::string& pdf, int resolution, int lastPage);

/// Where two bitmaps of the same size differ: the box around all pixels that do. Empty when they are the same.
struct Difference {
  int left = 0, top = 0, right = 0, bottom = 0;  ///< right and bottom are behind the last pixel
  bool IsEmpty() const { return left >= right; }
  bool operator==(const Difference&) const = default;
};
Difference Compare(const Bitmap& first, const Bitmap& second);

/// Whether every pixel is that of one or the other bitmap.
bool IsBetween(const Bitmap& bitmap, const Bitmap& first, const Bitmap& second);

}  // namespace tgx::test
