#include "tests/src/actions/Toc/TocFixture.h"

#include <algorithm>
#include <sstream>

#include "src/wrappers/ElementText.h"
#include "src/wrappers/PDE_Container.h"
#include "src/wrappers/PDE_Text.h"
#include "src/wrappers/PDS_MC.h"
#include "src/wrappers/PDS_TreeRoot.h"

namespace tgx::test {
namespace {

std::string TextOf(const PDS_MC& content, PageViews& views) {
  const PDE_Container* container = views.FindContainer(content.GetPage(), content.GetMCID());
  if (container == nullptr) return "gone";
  std::string plain;
  for (int index = 0; index < container->GetContent()->GetNumElems(); ++index) {
    const auto* text = dynamic_cast<PDE_Text*>(container->GetContent()->GetElem(index));
    std::vector<char> bytes;
    if (text != nullptr) text->GetText(bytes);
    for (const char byte : bytes) {
      if (byte != 0) plain += byte;
    }
  }
  return plain.empty() ? "image" : plain;
}

std::string OutlineOf(const PDS_Kids& kids, PageViews& views) {  // NOLINT(misc-no-recursion)
  std::string outline;
  for (const auto& kid : kids) {
    if (!outline.empty()) outline += " ";
    if (const auto* element = dynamic_cast<PDS_Element*>(kid.get())) {
      outline += ASAtomGetString(element->GetType());
      if (element->GetNumKids() > 0) outline += "(" + OutlineOf(element->GetKids(), views) + ")";
    } else if (const auto* content = dynamic_cast<PDS_MC*>(kid.get())) {
      outline += TextOf(*content, views);
    } else {
      outline += "*";
    }
  }
  return outline;
}

}  // namespace

std::string Outline(OpenDocument& document) {
  const HostSession session;
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(document.Handle(), &root) == 0) return "no tree";
  const PDS_TreeRoot tree(root);
  PageViews views(document.Handle());
  return OutlineOf(tree.GetKids(), views);
}

std::vector<std::string> Leaves(const std::string& pdf) {
  std::vector<std::string> leaves;
  std::istringstream lines(TreeText(pdf));
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find_first_not_of(' '));
    if (line.rfind("mcid ", 0) == 0 || line.rfind("objr ", 0) == 0) leaves.push_back(line);
  }
  std::sort(leaves.begin(), leaves.end());
  return leaves;
}

std::string TocTest::NestingOf(std::initializer_list<int> levels) {
  Element contents("Div");
  contents.Add(Placeholder());
  std::string entries;
  std::string name = "a";
  for (const int level : levels) {
    contents.Add(Line(name));
    entries += Entry(level, name);
    ++name[0];
  }
  doc.Tree({contents});
  return OutlineAfter(Metadata(entries));
}

}  // namespace tgx::test
