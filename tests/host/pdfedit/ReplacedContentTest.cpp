// A client that puts other content into a page by the Cos operations, while the page's content is held.
#include "host/core/Atoms.h"
#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

CosObj Handle(ContentDocument& document, const QPDFObjectHandle& object) { return document.Host()->HandleOf(object); }

QPDFObjectHandle NewStream(ContentDocument& document, const std::string& content) {
  return document.Host()->Pdf().newStream(content);
}

void PutContents(ContentDocument& document, const QPDFObjectHandle& contents) {
  Cos().CosDictPutKeyString(Handle(document, document.Dictionary()), "Contents", Handle(document, contents));
}

TEST(ReplacedContent, IsReadAtTheNextUse) {
  ContentDocument document("/Im Do");
  ASSERT_EQ(document.Tree(), "image");
  PutContents(document, NewStream(document, "/P <</MCID 3>> BDC EMC"));
  EXPECT_EQ(document.Tree(), "P#3[]");
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 3), document.At({0}));
}

TEST(ReplacedContent, IsNotOverwrittenByALaterCommit) {
  ContentDocument document("/Im Do /Fm Do");
  document.Remove({0});
  PutContents(document, NewStream(document, "1 w"));
  document.Commit();
  EXPECT_EQ(document.Saved(), "1 w");
}

TEST(ReplacedContent, IsNotOverwrittenByAnEarlierCommit) {
  ContentDocument document("/Im Do /Fm Do");
  document.Remove({0});
  document.Commit();
  PutContents(document, NewStream(document, "1 w"));
  EXPECT_EQ(document.Saved(), "1 w");
}

TEST(ReplacedContent, IsEditedFromThenOn) {
  ContentDocument document("/Im Do /Fm Do");
  document.Remove({0});
  PutContents(document, NewStream(document, "/Fm Do 1 w /Im Do"));
  document.Remove({0});
  document.Commit();
  EXPECT_EQ(document.Saved(), "1 w /Im Do");
}

TEST(ReplacedContent, CanBeAnItemOfTheArray) {
  ContentDocument document(std::vector<std::string>{"/Im Do", "/Fm Do"});
  ASSERT_EQ(document.Tree(), "image form");
  const CosObj streams = Cos().CosDictGetKeyString(Handle(document, document.Dictionary()), "Contents");
  Cos().CosArrayPut(streams, 1, Handle(document, NewStream(document, "/Im Do")));
  EXPECT_EQ(document.Tree(), "image image");
  Cos().CosArrayInsert(streams, 0, Handle(document, NewStream(document, "/Fm Do")));
  EXPECT_EQ(document.Tree(), "form image image");
}

TEST(ReplacedContent, IsNotTheArrayThatOurOwnContentReplaced) {
  ContentDocument document(std::vector<std::string>{"/Im Do", "/Fm Do"});
  document.Remove({0});
  document.Commit();
  QPDFObjectHandle formerStreams = document.Dictionary().getKey("/Contents");
  const CosObj former = Handle(document, formerStreams);
  document.Host()->Contents().WriteCommitted();
  Cos().CosArrayPut(former, 1, Handle(document, NewStream(document, "1 w")));
  EXPECT_EQ(document.Tree(), "form");
}

TEST(ReplacedContent, LeavesTheFormerHandlesHarmless) {
  ContentDocument document("/P <</MCID 1>> BDC BT /F1 9 Tf (a) Tj ET EMC");
  const PDEElement former = document.At({0});
  const CosObj properties = document.Properties(former);
  PutContents(document, NewStream(document, "/Q <</MCID 2>> BDC EMC /R <</MCID 5>> BDC EMC"));
  ASSERT_EQ(document.Tree(), "Q#2[] R#5[]");
  EXPECT_EQ(ReadContent().PDEObjectGetType(former), kPDEContainer);
  WriteContent().PDEContainerSetMCTag(former, Intern("X"));
  Cos().CosDictPutKeyString(properties, "MCID", Handle(document, QPDFObjectHandle::newInteger(9)));
  document.Commit();
  EXPECT_EQ(document.Tree(), "Q#2[] R#5[]");
  EXPECT_EQ(document.Saved(), "/Q <</MCID 2>> BDC EMC /R <</MCID 5>> BDC EMC");
}

TEST(ReplacedContent, EndsTheFormerHandlesWhenContentIsDropped) {
  ContentDocument document("/Im Do");
  const PDEElement former = document.At({0});
  PutContents(document, NewStream(document, "/Fm Do"));
  document.Host()->Contents().DropUnchanged();
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEObjectGetType(former); }), kASBadParameter);
}

}  // namespace
}  // namespace tgx::host
