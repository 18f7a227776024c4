#include "host/pdmodel/PageTree.h"

#include <vector>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

constexpr std::size_t kDeepestTree = 512;

HostError Damaged(const std::string& documentName, const char* reason) {
  return {kASDamagedDocument, documentName + ": damaged: " + reason};
}

/// Where the tree starts: some files name a page, or a part of the tree, as its root.
QPDFObjectHandle TopOf(QPDFObjectHandle node, const std::string& documentName) {
  for (std::size_t level = 0; node.isDictionary(); ++level) {
    QPDFObjectHandle parent = node.getKey("/Parent");
    if (parent.isNull()) return node;
    if (level == kDeepestTree) break;
    node = parent;
  }
  throw Damaged(documentName, "the page tree has no root");
}

}  // namespace

std::unordered_set<const QPDFObject*> CheckedPageTree(QPDF& pdf, const std::string& documentName) {
  QPDFObjectHandle pages = pdf.getRoot().getKey("/Pages");
  if (!pages.isDictionary()) return {};
  struct Level {
    QPDFObjectHandle kids;
    int next;
  };
  std::unordered_set<const QPDFObject*> tree;
  std::vector<Level> path;
  const auto enter = [&](QPDFObjectHandle node) {
    if (!tree.insert(node.getObjectPtr()).second) throw Damaged(documentName, "a part of the page tree stands in it twice");
    if (path.size() == kDeepestTree) throw Damaged(documentName, "the page tree is more than 512 levels deep");
    QPDFObjectHandle kids = node.getKey("/Kids");
    if (kids.isArray()) tree.insert(kids.getObjectPtr());
    path.push_back({kids, 0});
  };
  enter(TopOf(pages, documentName));
  while (!path.empty()) {
    Level& level = path.back();
    if (!level.kids.isArray() || level.next >= level.kids.getArrayNItems()) {
      path.pop_back();
      continue;
    }
    QPDFObjectHandle kid = level.kids.getArrayItem(level.next);
    if (!kid.isDictionary()) {
      level.kids.eraseItem(level.next);
      continue;
    }
    ++level.next;
    if (kid.hasKey("/Kids")) enter(kid);
  }
  return tree;
}

}  // namespace tgx::host
