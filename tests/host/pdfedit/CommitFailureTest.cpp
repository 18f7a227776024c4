// A commit has no way to tell that it failed: the failure is kept for the saving.
#include <memory>

#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

/// An object that cannot be written: the file that it belonged to is closed.
QPDFObjectHandle ObjectOfAClosedFile() {
  auto file = std::make_unique<QPDF>();
  file->emptyPDF();
  return file->makeIndirectObject(QPDFObjectHandle::newInteger(1));
}

/// A page whose property dictionaries get such an object. The first container also loses its content.
class CommitFailure : public testing::Test {
 protected:
  void SpoilProperties(const std::string& key = "") {
    const CosObj handle = document_.Properties(document_.At({0}));
    QPDFObjectHandle dictionary = ObjectOf(handle);
    if (!key.empty()) dictionary = dictionary.getKey(key);
    dictionary.replaceKey("/Bad", ObjectOfAClosedFile());
    Cos().CosDictPutKeyString(document_.Host()->HandleOf(dictionary), "Y", document_.Host().Integer(1));
  }
  void MendProperties(const std::string& key = "") {
    QPDFObjectHandle dictionary = ObjectOf(document_.Properties(document_.At({0})));
    if (!key.empty()) dictionary = dictionary.getKey(key);
    dictionary.removeKey("/Bad");
  }

  ContentDocument document_ = ContentDocument(PageSource("/P <</MCID 0/D<</E 1>>>> BDC /Im Do EMC"));
};

TEST_F(CommitFailure, IsNotRaisedByTheCommit) {
  SpoilProperties();
  EXPECT_EQ(PageContent().PDPageSetPDEContent(document_.Page(), nullptr), 1);
}

TEST_F(CommitFailure, FailsEachSavingForAsLongAsItsCauseLasts) {
  SpoilProperties();
  document_.Commit();
  EXPECT_ANY_THROW(document_.SavedBytes());
  EXPECT_ANY_THROW(document_.SavedBytes());
}

TEST_F(CommitFailure, LosesNoEditWhenItsCauseIsGone) {
  SpoilProperties();
  document_.Remove({0, 0});
  document_.Commit();
  EXPECT_ANY_THROW(document_.SavedBytes());
  MendProperties();
  EXPECT_EQ(document_.Saved(), "/P << /D << /E 1 >> /MCID 0 /Y 1 >> BDC EMC");
}

TEST_F(CommitFailure, LosesNoEditInsideAPropertyDictionary) {
  SpoilProperties("/D");
  document_.Commit();
  EXPECT_ANY_THROW(document_.SavedBytes());
  MendProperties("/D");
  EXPECT_EQ(document_.Saved(), "/P << /D << /E 1 /Y 1 >> /MCID 0 >> BDC /Im Do EMC");
}

}  // namespace
}  // namespace tgx::host
