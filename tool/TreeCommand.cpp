#include "tool/TreeCommand.h"

#include "tool/Document.h"
#include "tool/HostCalls.h"
#include "tool/Messages.h"
#include "tool/StructureTree.h"
#include "tool/TreeText.h"

namespace tgx::tool {
namespace {

/// Readers in wide use stop at 32 levels of structure elements.
constexpr std::size_t kCommonDepth = 32;

StructureTree ReadTree(const Document& document, bool withTexts) {
  try {
    return ReadStructureTree(document.Handle(), withTexts);
  } catch (const HostFailure& failure) {
    throw Failure(document.Path(), failure.what());
  }
}

void WarnOf(const StructureTree& tree, const std::string& path) {
  if (!tree.present) Warn(path + ": has no structure tree");
  if (tree.depth > kCommonDepth) {
    Warn(path + ": the structure tree has " + std::to_string(tree.depth) + " levels; many readers stop at " +
         std::to_string(kCommonDepth));
  }
}

}  // namespace

int RunTreeCommand(const TreeOptions& options) {
  Document document(options.input, options.password);
  const StructureTree tree = ReadTree(document, options.text);
  if (!options.quiet) {
    document.TellWarnings();
    WarnOf(tree, options.input);
  }
  if (options.json) {
    Print(TreeAsJson(tree).dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
  } else {
    PrintOutline(tree);
  }
  return 0;
}

}  // namespace tgx::tool
