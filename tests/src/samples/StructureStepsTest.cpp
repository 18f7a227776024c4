// The steps that work on the structure alone, on documents of many producers: most of these hold none of the marks that the
// steps look for, so that little may change.

#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::DataFile;
using test::kSoftFailure;
using test::kSuccess;
using test::OpenDocument;
using test::Outcome;
using test::ReadBack;

struct Step {
  const char* name;
  Outcome (*run)(OpenDocument& document);
  bool needsTree = false;     ///< fails without a text in a document that has no structure tree
  bool changesPages = false;  ///< by what else the step does
  bool readsFigures = false;
};

void PrintTo(const Step& step, std::ostream* out) { *out << step.name; }

constexpr Step kSteps[] = {
    {"StyleNames", [](OpenDocument& open) { return open.Action(2, ""); }},
    {"TableMetadata", [](OpenDocument& open) { return open.Action(12); }, false, false, true},
    {"ReshuffleFrames", [](OpenDocument& open) { return open.Action(14); }, false, true},
    {"EndNotes", [](OpenDocument& open) { return open.Action(15); }},
    {"GroupTags", [](OpenDocument& open) { return open.Action(16); }},
    {"ExtraParagraphs", [](OpenDocument& open) { return open.Fixups(0x2); }, true},
    {"TableHeadersFooters", [](OpenDocument& open) { return open.Fixups(0x40); }, true, true},
    {"RoleMap", [](OpenDocument& open) { return open.Fixups(0x200); }, true},
};

/// A figure with a text too short for a byte-order mark and a character ends the step that looks for descriptions of tables.
bool HasFigureWithoutText(const std::string& pdf) {
  return test::TreeText(pdf).find("Figure alt=\"\"") != std::string::npos;
}

Outcome Expected(const Step& step, const std::string& pdf) {
  ReadBack source(pdf);
  if (step.needsTree && !source.TreeRoot().isDictionary()) return kSoftFailure;
  if (step.readsFigures && HasFigureWithoutText(pdf)) return test::HardFailure("wrong vector range");
  return kSuccess;
}

class StructureSteps : public testing::TestWithParam<std::tuple<Step, DataFile>> {};

std::string Structure(const std::string& pdf) {
  ReadBack file(pdf);
  return test::TreeText(file.Pdf()) + test::RoleMapText(file.Pdf());
}

void ExpectSamePages(const std::string& before, const std::string& after) {
  ReadBack source(before);
  ReadBack result(after);
  const std::size_t pages = source->getAllPages().size();
  ASSERT_EQ(result->getAllPages().size(), pages);
  for (int number = 1; number <= static_cast<int>(pages); ++number) {
    EXPECT_TRUE(result.Content(number) == source.Content(number)) << "the content of page " << number << " changed";
  }
}

TEST_P(StructureSteps, LeaveASoundDocumentAndNothingToDoForASecondRun) {
  const auto& [step, file] = GetParam();
  const std::string before = test::ReadBytes(file.path);
  const Outcome expected = Expected(step, before);
  OpenDocument open(before, file.name);
  EXPECT_EQ(step.run(open), expected);
  const std::string after = open.Save();
  EXPECT_EQ(test::FileProblems(after), std::vector<std::string>());
  EXPECT_EQ(test::ParentTreeProblems(ReadBack(after).Pdf()), std::vector<std::string>());
  if (!step.changesPages) ExpectSamePages(before, after);

  EXPECT_EQ(step.run(open), expected);
  EXPECT_EQ(Structure(open.Save()), Structure(after));
}

// What takes a table's place stays where it was too, so that a second run finds it again: only one is looked at.
class LayoutTablesOfData : public testing::TestWithParam<DataFile> {};

TEST_P(LayoutTablesOfData, LeaveASoundDocumentAlsoWhereTheStepFails) {
  const DataFile& file = GetParam();
  const std::string before = test::ReadBytes(file.path);
  OpenDocument open(before, file.name);
  const Outcome outcome = open.Fixups(0x80);
  if (file.name.find("travel-guide") != std::string::npos) {
    EXPECT_EQ(outcome.result, TGX_FAILED);
    EXPECT_NE(outcome.text.find("cannot become a kid of"), std::string::npos) << outcome.text;
  } else {
    EXPECT_EQ(outcome, ReadBack(before).TreeRoot().isDictionary() ? kSuccess : kSoftFailure);
  }
  const std::string after = open.Save();
  EXPECT_EQ(test::FileProblems(after), std::vector<std::string>());
  EXPECT_EQ(test::ParentTreeProblems(ReadBack(after).Pdf()), std::vector<std::string>());
  ExpectSamePages(before, after);
}

INSTANTIATE_TEST_SUITE_P(Data, LayoutTablesOfData, testing::ValuesIn(test::DataFiles()),
                         [](const auto& tested) { return test::TestName(tested.param); });

INSTANTIATE_TEST_SUITE_P(Data, StructureSteps,
                         testing::Combine(testing::ValuesIn(kSteps), testing::ValuesIn(test::DataFiles())),
                         [](const auto& tested) {
                           return std::string(std::get<0>(tested.param).name) + "_" +
                                  test::TestName(std::get<1>(tested.param));
                         });

}  // namespace
}  // namespace tgx
