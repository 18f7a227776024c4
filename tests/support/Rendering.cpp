#include "tests/support/Rendering.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

namespace tgx::test {
namespace {

Bitmap ReadPpm(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string magic;
  int depth = 0;
  Bitmap bitmap;
  file >> magic >> bitmap.width >> bitmap.height >> depth;
  file.get();
  std::ostringstream pixels;
  pixels << file.rdbuf();
  bitmap.pixels = pixels.str();
  const auto expected = std::size_t{3} * static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height);
  if (magic != "P6" || depth != 255 || bitmap.pixels.size() != expected)
    throw std::runtime_error("no bitmap: " + path.string());
  return bitmap;
}

std::vector<Bitmap> Render(const std::string& pdf, const std::string& options) {
  static std::atomic<int> count = 0;
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / ("tgx-render-" + std::to_string(getpid()) + "-" + std::to_string(++count));
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "in.pdf", std::ios::binary) << pdf;
  const std::string command =
      "pdftoppm " + options + " '" + (folder / "in.pdf").string() + "' '" + (folder / "page").string() + "' 2>&1";
  // The path is the test's own.
  if (std::system(command.c_str()) != 0) throw std::runtime_error("pdftoppm failed");  // NOLINT(cert-env33-c)
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".ppm") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Bitmap> pages;
  for (const auto& path : paths) pages.push_back(ReadPpm(path));
  std::filesystem::remove_all(folder);
  return pages;
}

}  // namespace

std::vector<Bitmap> RenderPages(const std::string& pdf) { return Render(pdf, "-r 100"); }

std::vector<Bitmap> RenderContent(const std::string& pdf, int resolution, int lastPage) {
  return Render(pdf, "-hide-annotations -r " + std::to_string(resolution) + " -l " + std::to_string(lastPage));
}

Difference Compare(const Bitmap& first, const Bitmap& second) {
  if (first.width != second.width || first.height != second.height) throw std::runtime_error("bitmaps of different sizes");
  Difference difference = {first.width, first.height, 0, 0};
  for (int y = 0; y < first.height; ++y) {
    for (int x = 0; x < first.width; ++x) {
      const auto at = std::size_t{3} *
                      (static_cast<std::size_t>(y) * static_cast<std::size_t>(first.width) + static_cast<std::size_t>(x));
      if (first.pixels.compare(at, 3, second.pixels, at, 3) == 0) continue;
      difference.left = std::min(difference.left, x);
      difference.top = std::min(difference.top, y);
      difference.right = std::max(difference.right, x + 1);
      difference.bottom = std::max(difference.bottom, y + 1);
    }
  }
  return difference;
}

bool IsBetween(const Bitmap& bitmap, const Bitmap& first, const Bitmap& second) {
  if (bitmap.pixels.size() != first.pixels.size() || bitmap.pixels.size() != second.pixels.size()) return false;
  for (std::size_t at = 0; at < bitmap.pixels.size(); at += 3) {
    const auto same = [&](const Bitmap& other) { return bitmap.pixels.compare(at, 3, other.pixels, at, 3) == 0; };
    if (!same(first) && !same(second)) return false;
  }
  return true;
}

}  // namespace tgx::test
