#include "src/actions/AttLayoutTableFix/AttLayoutTableFix.h"

#include <optional>

#include "src/common/SideFile.h"
#include "src/common/TagStructureWalker.h"
#include "src/tables/TsvTables.h"

namespace tgx {
namespace {

/// The numbers of the layout tables that the file names; none when it cannot be opened or has too many lines.
std::optional<std::set<std::int32_t>> ReadLayoutNumbers(const std::string& path) {
  std::optional<std::ifstream> file = OpenSideFile(path);
  if (!file) return std::nullopt;
  TSV_Parser parser;
  std::vector<std::string> lines;
  parser.readLines(*file, lines);
  if (lines.size() > TSV_Parser::kMostLines) return std::nullopt;
  parser.parse(lines);
  std::set<std::int32_t> numbers;
  for (const auto& table : parser.tables) {
    if (dynamic_cast<const Layout_Table*>(table.get()) != nullptr) numbers.insert(table->index);
  }
  return numbers;
}

}  // namespace

AttLayoutTableFix::AttLayoutTableFix() {
  for (const char* type : {"Table", "THead", "TBody", "TFoot", "TR", "TH", "TD"}) tableTypes_.insert(ASAtomFromString(type));
}

bool AttLayoutTableFix::Run() {
  tableElements_.clear();
  PDSTreeRoot root;
  if (PDDocGetStructTreeRoot(GetDocument(), &root) == 0) return false;
  const auto layoutNumbers = ReadLayoutNumbers(path_);
  if (!layoutNumbers) return false;

  TagStructureWalker walker;
  walker.AddVisitor(this);
  mode_ = Mode::Collect;
  walker.Walk(root);
  mode_ = Mode::Retag;
  std::int32_t number = 0;
  for (PDSElement& element : tableElements_) {
    if (layoutNumbers->count(++number) == 0) continue;
    RetagElement(element);
    walker.WalkKids(element);
  }
  return true;
}

void AttLayoutTableFix::VisitElement(PDSElement& element) {
  if (mode_ == Mode::Retag) {
    RetagElement(element);
  } else if (PDSElementGetType(element) == ASAtomFromString("Table")) {
    tableElements_.push_back(element);
  }
}

void AttLayoutTableFix::RetagElement(const PDSElement& element) {
  if (tableTypes_.count(PDSElementGetType(element)) != 0) PDSElementSetType(element, ASAtomFromString("Div"));
}

}  // namespace tgx
