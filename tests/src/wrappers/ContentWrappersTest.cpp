#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeindex>
#include <vector>

#include "src/api/HostException.h"
#include "src/wrappers/PDE_Container.h"
#include "src/wrappers/PDE_Content.h"
#include "src/wrappers/PDE_Image.h"
#include "src/wrappers/PDE_Text.h"
#include "src/wrappers/PD_Page.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::HostSession;
using test::Marked;
using test::Ops;
using test::Page;
using test::RecordingHost;
using test::Text;
using testing::Contains;
using testing::ElementsAre;
using testing::MatchesRegex;

class ContentWrappersTest : public test::StructureTest {
 protected:
  PDE_Content& View() {
    Open();
    view_ = std::make_unique<PD_Page>(PDDocAcquirePage(Opened().Handle(), 0));
    return *view_->GetContent();
  }
  template <typename Class>
  static Class& At(const PDE_Content& content, int index) {
    return dynamic_cast<Class&>(*content.GetElem(index));
  }
  static std::string TextOf(const PDE_Content& content, int index) {
    std::vector<char> text = {'o', 'l', 'd'};
    const ASUns32 size = At<PDE_Text>(content, index).GetText(text);
    EXPECT_EQ(size, text.size());
    return {text.begin(), text.end()};
  }
  /// The identifiers of the containers of a list, in order.
  static std::vector<int> McidsOf(const PDE_Content& content) {
    std::vector<int> mcids;
    for (int index = 0; index < content.GetNumElems(); ++index) {
      mcids.push_back(At<PDE_Container>(content, index).FindMCID().value_or(-1));
    }
    return mcids;
  }

  Page& page = doc.AddPage();

 private:
  std::unique_ptr<PD_Page> view_;
};

TEST_F(ContentWrappersTest, HaveTheClassOfTheirKind) {
  doc.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "");
  doc.Stream("other", "<</Type/XObject/Subtype/Other>>", "");
  page.Resource("XObject", "Fm", "$form").Resource("XObject", "Ot", "$other");
  page.Resource("Shading", "Sh", "<</ShadingType 2/ColorSpace/DeviceGray/Coords[0 0 1 1]/Function<<>>>>");
  page.Add(Text("a")).Add(Ops("0 0 9 9 re f")).Add(test::Image(2, 2)).Add(Ops("/Fm Do /Ot Do /Tag MP"));
  page.Add(Marked("Span", "", {})).Add(Ops("/Sh sh"));
  const PDE_Content& content = View();
  std::vector<std::type_index> classes;
  for (int index = 0; index < content.GetNumElems(); ++index) {
    const PDE_Element& element = *content.GetElem(index);
    classes.emplace_back(typeid(element));
    EXPECT_EQ(element.GetParent(), &content);
    EXPECT_EQ(element.GetKind(), -1);
  }
  const std::vector<std::type_index> expected = {typeid(PDE_Text),      typeid(PDE_Path),    typeid(PDE_Image),
                                                 typeid(PDE_Form),      typeid(PDE_XObject), typeid(PDE_Place),
                                                 typeid(PDE_Container), typeid(PDE_Shading)};
  EXPECT_TRUE(classes == expected);
}

TEST_F(ContentWrappersTest, HaveNoClassForPostScript) {
  doc.Stream("program", "<</Type/XObject/Subtype/PS>>", "");
  page.Resource("XObject", "Ps", "$program").Add(Ops("/Ps Do"));
  const PDE_Content& content = View();
  const PDE_Element& element = *content.GetElem(0);
  EXPECT_EQ(PDEObjectGetType(element.GetHandle()), kPDEPS);
  EXPECT_EQ(std::type_index(typeid(element)), std::type_index(typeid(PDE_Element)));
}

TEST_F(ContentWrappersTest, NameTheKinds) {
  EXPECT_STREQ(GetKindName(kPDEText), "PDEText object");
  EXPECT_STREQ(GetKindName(15), "PDEDevineNColors object");
  EXPECT_STREQ(GetKindName(24), "PDESoftMask object");
  EXPECT_STREQ(GetKindName(30), "PDETextItem object");
  EXPECT_STREQ(GetKindName(33), "PDELastType object");
  EXPECT_EQ(GetKindName(-1), nullptr);
  EXPECT_EQ(GetKindName(34), nullptr);
}

TEST_F(ContentWrappersTest, LoadContainersWithTheirContent) {
  page.Add(Marked("Span", "<</MCID 3>>", {Marked("Span", "", {Text("a")}), Text("b")}));
  const PDE_Content& content = View();
  const auto& outer = At<PDE_Container>(content, 0);
  EXPECT_EQ(outer.GetContent()->GetParent(), &outer);
  ASSERT_EQ(outer.GetContent()->GetNumElems(), 2);
  EXPECT_EQ(At<PDE_Container>(*outer.GetContent(), 0).GetContent()->GetNumElems(), 1);
}

TEST_F(ContentWrappersTest, DropAndReloadTheContentOfAContainer) {
  page.Add(Marked("Span", "<</MCID 3>>", {Text("b")}));
  auto& container = At<PDE_Container>(View(), 0);
  container.ClearKids();
  EXPECT_EQ(container.GetContent(), nullptr);
  container.Refresh();
  EXPECT_EQ(container.GetContent()->GetNumElems(), 1);
}

TEST_F(ContentWrappersTest, KnowTheMcidOfAContainer) {
  page.Add(Marked("Span", "<</MCID 3>>", {})).Add(Marked("Span", "<</Lang(de)>>", {})).Add(Marked("Span", "", {}));
  page.Add(Marked("Span", "<</MCID/x>>", {})).Add(test::MarkedByResource("Span", "<</MCID 5>>", {}));
  const PDE_Content& content = View();
  EXPECT_TRUE(At<PDE_Container>(content, 0).HasMCID());
  EXPECT_EQ(At<PDE_Container>(content, 0).GetMCID(), 3);
  EXPECT_FALSE(At<PDE_Container>(content, 1).HasMCID());
  EXPECT_FALSE(At<PDE_Container>(content, 2).HasMCID());
  EXPECT_TRUE(At<PDE_Container>(content, 3).HasMCID());
  EXPECT_EQ(At<PDE_Container>(content, 3).FindMCID(), std::nullopt);
  EXPECT_EQ(At<PDE_Container>(content, 4).GetMCID(), 5);
}

TEST_F(ContentWrappersTest, RaiseWhenAskedForAnMcidThatIsMissing) {
  page.Add(Marked("Span", "<</Lang(de)>>", {}));
  const auto& container = At<PDE_Container>(View(), 0);
  EXPECT_THROW(InExceptionFrame([&] { return container.GetMCID(); }), APDFLException::ASExceptionInfo);
}

TEST_F(ContentWrappersTest, FindTheFirstContainerOfAnMcidDepthFirst) {
  page.Add(Marked("Span", "", {Text("x"), Marked("Span", "<</MCID 1>>", {Text("inner")})}));
  page.Add(Marked("Span", "<</MCID 1>>", {Text("second")})).Add(Marked("Span", "<</MCID/name>>", {}));
  page.Add(Marked("Span", "<</MCID 2>>", {}));
  PDE_Content& content = View();
  EXPECT_EQ(FindContainerByMcid(&content, 1), At<PDE_Container>(content, 0).GetContent()->GetElem(1));
  EXPECT_EQ(FindContainerByMcid(&content, 2), content.GetElem(3));
  EXPECT_EQ(FindContainerByMcid(&content, 3), nullptr);
  EXPECT_EQ(FindContainerByMcid(nullptr, 1), nullptr);
}

TEST_F(ContentWrappersTest, RemoveAllSiblingsOfAnMcid) {
  for (const char* mcid : {"1", "1", "2", "1", "3", "1"}) {
    page.Add(Marked("Span", std::string("<</MCID ") + mcid + ">>", {Text("x")}));
  }
  PDE_Content& content = View();
  RemoveContainersByMcid(&content, 1, false);
  EXPECT_THAT(McidsOf(content), ElementsAre(2, 3));
  EXPECT_EQ(PDEContentGetNumElems(content.GetHandle()), 2);
  RemoveContainersByMcid(nullptr, 1, true);
}

TEST_F(ContentWrappersTest, RemoveNestedContainersOnlyWhenTold) {
  page.Add(Marked("Span", "<</MCID 2>>", {Marked("Span", "<</MCID 1>>", {}), Marked("Span", "<</MCID 4>>", {})}));
  PDE_Content& content = View();
  const auto& outer = At<PDE_Container>(content, 0);
  RemoveContainersByMcid(&content, 1, false);
  EXPECT_THAT(McidsOf(*outer.GetContent()), ElementsAre(1, 4));
  RemoveContainersByMcid(&content, 1, true);
  EXPECT_THAT(McidsOf(*outer.GetContent()), ElementsAre(4));
}

TEST_F(ContentWrappersTest, RemoveAnElementHereAndInTheHost) {
  page.Add(Text("a")).Add(test::Image(1, 1)).Add(Text("b"));
  PDE_Content& content = View();
  content.RemoveElem(content.GetElem(1));
  ASSERT_EQ(content.GetNumElems(), 2);
  EXPECT_EQ(PDEContentGetNumElems(content.GetHandle()), 2);
  for (int index = 0; index < 2; ++index) {
    EXPECT_EQ(content.GetElem(index)->GetHandle(), PDEContentGetElem(content.GetHandle(), index));
  }
}

TEST_F(ContentWrappersTest, LoadAnewOnRemovalWhatOthersHaveChanged) {
  page.Add(Text("a")).Add(test::Image(1, 1)).Add(Text("b"));
  PDE_Content& content = View();
  PDEContentRemoveElem(content.GetHandle(), 2);
  content.RemoveElem(content.GetElem(0));
  ASSERT_EQ(content.GetNumElems(), 1);
  EXPECT_NE(dynamic_cast<PDE_Image*>(content.GetElem(0)), nullptr);
}

TEST_F(ContentWrappersTest, GiveTheHostMinusOneForAForeignElement) {
  page.Add(Marked("Span", "", {Text("a")})).Add(Text("b"));
  PDE_Content& content = View();
  PDE_Element* foreign = At<PDE_Container>(content, 0).GetContent()->GetElem(0);
  RecordingHost recording;
  const HostSession session(recording.Tables());
  EXPECT_THROW(InExceptionFrame([&] { content.RemoveElem(foreign); }), APDFLException::ASExceptionInfo);
  EXPECT_THAT(recording.Calls(), Contains(MatchesRegex("PDEContentRemoveElem\\(.*, -1\\)")));
}

TEST_F(ContentWrappersTest, TranslateTextCharacterByCharacter) {
  page.Add(Text("Az"));
  EXPECT_EQ(TextOf(View(), 0), std::string("\0A\0z", 4));
}

TEST_F(ContentWrappersTest, MixTranslatedTextWithTheCodesThatHaveNoTranslation) {
  page.Resource("Font", "F2", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding<</Differences[65/nosuchglyph]>>>>");
  page.Add(Text("BAB").Font("F2"));
  EXPECT_EQ(TextOf(View(), 0), std::string("\0BA\0B", 5));
}

TEST_F(ContentWrappersTest, GiveTheCodesOfTextWithoutAFont) {
  page.Add(Text("AB").Font("F9")).Resource("Font", "F9", "null");
  EXPECT_EQ(TextOf(View(), 0), "AB");
}

TEST_F(ContentWrappersTest, GiveNothingForATextElementWithoutCharacters) {
  page.Add(Text(""));
  EXPECT_EQ(TextOf(View(), 0), "");
}

TEST_F(ContentWrappersTest, GiveTheBoxOfAnElement) {
  page.Add(Ops("10 20 30 40 re f"));
  ASFixedRect box = {};
  const PDE_Content& content = View();
  EXPECT_EQ(content.GetElem(0)->GetBBox(&box), &box);
  EXPECT_EQ(box.left, 10 * 0x10000);
  EXPECT_EQ(box.right, 40 * 0x10000);
}

TEST_F(ContentWrappersTest, GiveAttributesAndSamplesOfAnImage) {
  page.Add(test::Image(3, 2));
  const auto& image = At<PDE_Image>(View(), 0);
  PDEImageAttrs attributes = {};
  image.GetAttrs(&attributes);
  EXPECT_EQ(attributes.width, 3);
  EXPECT_EQ(attributes.height, 2);
  std::vector<char> samples = {'x'};
  EXPECT_EQ(image.GetData(samples), 6U);
  EXPECT_EQ(samples.size(), 6U);
}

}  // namespace
}  // namespace tgx
