#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx::test {

/// A document of one page that a test fills, and what an action leaves of it.
class ActionFixture : public testing::Test {
 protected:
  explicit ActionFixture(int action) : action_(action) {}

  /// The file after the action, which has to succeed.
  std::string SavedAfter() {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(action_), kSuccess);
    std::string saved = open.Save();
    ExpectSound(saved);
    return saved;
  }
  std::string TreeAfter() { return TreeText(SavedAfter()); }
  std::string ContentAfter(int pageNumber = 1) { return ReadBack(SavedAfter()).Content(pageNumber); }

  TestDocument doc;
  Page& page = doc.AddPage();

 private:
  int action_;
};

}  // namespace tgx::test
