#include "host/pdmodel/PageTree.h"

#include <unordered_map>
#include <vector>

#include <qpdf/QPDFExc.hh>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

constexpr std::size_t kDeepestTree = 512;
constexpr std::size_t kMostCopied = 1'000'000;  // entries of pages that stand in several places

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

/// Takes out what is no dictionary and so no page. All at once: an array may hold any number of such items.
void DropStrays(QPDF& pdf, const std::string& documentName, QPDFObjectHandle& kids) {
  const int count = kids.getArrayNItems();
  std::vector<QPDFObjectHandle> pages;
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle kid = kids.getArrayItem(i);
    if (kid.isDictionary()) pages.push_back(std::move(kid));
  }
  const std::size_t strays = static_cast<std::size_t>(count) - pages.size();
  if (strays == 0) return;
  kids.setArrayFromVector(pages);
  pdf.warn(
      QPDFExc(qpdf_e_pages, documentName, "page tree", 0, "items left out that are no pages: " + std::to_string(strays)));
}

}  // namespace

std::unordered_set<const QPDFObject*> CheckedPageTree(QPDF& pdf, const std::string& documentName) {
  QPDFObjectHandle pages = pdf.getRoot().getKey("/Pages");
  if (!pages.isDictionary()) return {};
  struct Level {
    QPDFObjectHandle kids;
    int count;
    int next;
  };
  std::unordered_set<const QPDFObject*> tree;
  std::vector<Level> path;
  std::unordered_map<const QPDFObject*, std::size_t> entriesOf;  // of pages; 0 until it is asked for
  std::size_t copied = 0;
  const auto add = [&](const QPDFObjectHandle& part) {
    if (!tree.insert(part.getObjectPtr()).second) throw Damaged(documentName, "a part of the page tree stands in it twice");
  };
  const auto enter = [&](QPDFObjectHandle node) {
    add(node);
    if (path.size() == kDeepestTree) throw Damaged(documentName, "the page tree is more than 512 levels deep");
    QPDFObjectHandle kids = node.getKey("/Kids");
    if (!kids.isArray()) return;
    add(kids);
    DropStrays(pdf, documentName, kids);
    path.push_back({kids, kids.getArrayNItems(), 0});
  };
  enter(TopOf(pages, documentName));
  while (!path.empty()) {
    Level& level = path.back();
    if (level.next == level.count) {
      path.pop_back();
      continue;
    }
    QPDFObjectHandle kid = level.kids.getArrayItem(level.next++);
    if (kid.hasKey("/Kids")) {
      enter(kid);
    } else if (const auto [known, isNew] = entriesOf.try_emplace(kid.getObjectPtr(), 0); !isNew) {
      // qpdf makes a copy of a page for each further place.
      if (known->second == 0) known->second = kid.getKeys().size() + 1;
      copied += known->second;
      if (copied > kMostCopied) throw Damaged(documentName, "its pages stand in too many places");
    }
  }
  return tree;
}

}  // namespace tgx::host
