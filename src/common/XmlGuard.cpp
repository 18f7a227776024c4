#include "src/common/XmlGuard.h"

#include <cstddef>

namespace tgx {
namespace {

constexpr std::size_t kLongestText = std::size_t{64} << 20U;
constexpr int kMostAttributes = 100;  // of a tag
constexpr int kMostNodes = 1'000'000;

/// What is no element, and what ends it. The longer beginnings stand first.
constexpr struct {
  std::string_view begin, end;
} kOthers[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<!", ">"}, {"<?", "?>"}};

/// Goes over a text as the parser does.
class TagScanner {
 public:
  explicit TagScanner(std::string_view xml) : xml_(xml) {}

  bool FindsTooMuch() {
    int nodes = 0;
    while (nodes <= kMostNodes && GoBehind("<", at_)) {
      const std::size_t tag = at_ - 1;
      ++nodes;
      if (SkipOther(tag)) continue;
      const int attributes = CountAttributes();
      if (attributes > kMostAttributes) return true;
      nodes += attributes;
    }
    return nodes > kMostNodes;
  }

 private:
  bool GoBehind(std::string_view end, std::size_t from) {
    const std::size_t found = xml_.find(end, from);
    at_ = found == std::string_view::npos ? xml_.size() : found + end.size();
    return found != std::string_view::npos;
  }

  bool SkipOther(std::size_t tag) {
    for (const auto& other : kOthers) {
      if (xml_.substr(tag, other.begin.size()) != other.begin) continue;
      GoBehind(other.end, tag + other.begin.size());
      return true;
    }
    return false;
  }

  /// Up to the end of the tag; by their values, which may hold the end of a tag.
  int CountAttributes() {
    int count = 0;
    while (count <= kMostAttributes) {
      at_ = xml_.find_first_of("\"'>", at_);
      if (at_ == std::string_view::npos || xml_[at_] == '>') break;
      ++count;
      if (!GoBehind(xml_.substr(at_, 1), at_ + 1)) break;
    }
    return count;
  }

  std::string_view xml_;
  std::size_t at_ = 0;
};

}  // namespace

bool IsTooMuchXml(std::string_view xml) { return xml.size() > kLongestText || TagScanner(xml).FindsTooMuch(); }

}  // namespace tgx
