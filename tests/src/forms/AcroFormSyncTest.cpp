#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "src/forms/AcroFormSync.h"
#include "tests/support/DataFiles.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Annotation;
using test::OpenDocument;
using test::TestDocument;

constexpr int kSyncForms = 4;

/// A document with one page, for fields to stand on.
struct Form {
  TestDocument document;
  test::Page& page = document.AddPage();

  Annotation Text(const std::string& name, const std::string& value = "") { return document.Field(page, name, "Tx", value); }
  Annotation Button(const std::string& name) { return document.Field(page, name, "Btn"); }
};

class AcroFormSync : public testing::Test {
 protected:
  ~AcroFormSync() override { std::remove(path_.c_str()); }

  test::Outcome Synchronise() {
    std::ofstream(path_, std::ios::binary) << source_.document.Write();
    OpenDocument open(target_.document.Write());
    const test::Outcome outcome = open.Action(kSyncForms, path_);
    saved_ = open.Save();
    test::ExpectSound(saved_);
    file_ = std::make_unique<test::ReadBack>(saved_);
    return outcome;
  }

  QPDFObjectHandle FormDictionary() { return (*file_)->getRoot().getKey("/AcroForm"); }
  QPDFObjectHandle Field(int index = 0) { return FormDictionary().getKey("/Fields").getArrayItem(index); }
  /// An entry of a field in PDF syntax, "null" when it is not there.
  std::string Entry(const std::string& key, int index = 0) { return Field(index).getKey(key).unparseResolved(); }

  const std::string path_ =
      testing::TempDir() + "/" + testing::UnitTest::GetInstance()->current_test_info()->name() + ".source.pdf";
  Form target_;
  Form source_;
  std::string saved_;
  std::unique_ptr<test::ReadBack> file_;
};

TEST_F(AcroFormSync, GivesTheTargetTheValueOfTheSource) {
  target_.Text("name", "(old)");
  source_.Text("name", "(new)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
}

TEST_F(AcroFormSync, KeepsAValueThatTheSourceLacks) {
  target_.Text("name", "(old)");
  source_.Text("name");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(old)");
}

TEST_F(AcroFormSync, LeavesFieldsWithoutAPartnerAlone) {
  target_.Text("mine", "(old)");
  source_.Text("other", "(new)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(old)");
  EXPECT_EQ(FormDictionary().getKey("/Fields").getArrayNItems(), 1);
}

TEST_F(AcroFormSync, TakesTheFirstSourceFieldOfANameForAllTargetsOfIt) {
  target_.Text("name");
  target_.Text("name");
  source_.Text("name", "(first)");
  source_.Text("name", "(second)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V", 0), "(first)");
  EXPECT_EQ(Entry("/V", 1), "(first)");
}

TEST_F(AcroFormSync, PairsFieldsWithoutNames) {
  target_.Text("x").Set("T", "null");
  source_.Text("y", "(new)").Set("T", "null");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
}

TEST_F(AcroFormSync, PairsFieldsOfOneNameAlsoWhenTheirTypesDiffer) {
  target_.Text("name");
  source_.Button("name").Set("V", "/On");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "/On") << "the source's type decides how the value crosses";
}

TEST_F(AcroFormSync, CopiesAButtonsValueAsAName) {
  target_.Button("go");
  source_.Button("go").Set("V", "/On").Set("DV", "/Off");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "/On");
  EXPECT_EQ(Entry("/DV"), "/Off");
}

TEST_F(AcroFormSync, DoesNotReadAButtonsValueThatIsAString) {
  target_.Button("go").Set("V", "/Old");
  source_.Button("go").Set("V", "(On)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "/Old");
}

TEST_F(AcroFormSync, DoesNotReadASignature) {
  target_.document.Field(target_.page, "sig", "Sig");
  source_.document.Field(source_.page, "sig", "Sig").Set("V", "<</Type/Sig>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "null");
}

TEST_F(AcroFormSync, ClearsATextThatIsEmptyInTheSource) {
  target_.Text("name", "(old)");
  source_.Text("name", "()");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "null");
}

TEST_F(AcroFormSync, CopiesTheEntriesOfTheField) {
  target_.Text("name");
  source_.Text("name")
      .Set("A", "<</S/Named/N/NextPage>>")
      .Set("AA", "<</K<</S/JavaScript/JS(f\\(\\))>>>>")
      .Set("H", "/N")
      .Set("TU", "(a name)")
      .Set("TM", "(export)")
      .Set("Ff", "2")
      .Set("DV", "(default)")
      .Set("Q", "1")
      .Set("DS", "(font: Serif)")
      .Set("Opt", "[(a)(b)]")
      .Set("MaxLen", "9")
      .Set("TI", "1")
      .Set("I", "[0 1]")
      .Set("F", "4");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/A"), "<< /N /NextPage /S /Named >>");
  EXPECT_EQ(Entry("/AA"), "<< /K << /JS (f\\(\\)) /S /JavaScript >> >>");
  EXPECT_EQ(Entry("/H"), "/N");
  EXPECT_EQ(Entry("/TU"), "(a name)");
  EXPECT_EQ(Entry("/TM"), "(export)");
  EXPECT_EQ(Entry("/Ff"), "2");
  EXPECT_EQ(Entry("/DV"), "(default)");
  EXPECT_EQ(Entry("/Q"), "1");
  EXPECT_EQ(Entry("/DS"), "(font: Serif)");
  EXPECT_EQ(Entry("/Opt"), "[ (a) (b) ]");
  EXPECT_EQ(Entry("/MaxLen"), "9");
  EXPECT_EQ(Entry("/TI"), "1");
  EXPECT_EQ(Entry("/I"), "[ 0 1 ]");
  EXPECT_EQ(Entry("/F"), "4");
}

TEST_F(AcroFormSync, CopiesTheEntriesOfTheWidget) {
  target_.Button("go");
  source_.document.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
  source_.Button("go")
      .Set("AS", "/On")
      .Set("BS", "<</W 2>>")
      .Set("DA", "(/F1 9 Tf)")
      .Set("MK", "<</CA(Go)>>")
      .Set("AP", "<</N $face>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/AS"), "/On");
  EXPECT_EQ(Entry("/BS"), "<< /W 2 >>");
  EXPECT_EQ(Entry("/DA"), "(/F1 9 Tf)");
  EXPECT_EQ(Entry("/MK"), "<< /CA (Go) >>");
  QPDFObjectHandle face = Field().getKey("/AP").getKey("/N");
  ASSERT_TRUE(face.isStream());
  const auto data = face.getStreamData();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()), "0 0 9 9 re f");
}

TEST_F(AcroFormSync, CopiesAppearancesWithTheirFontsAndTheFormsInThem) {
  target_.Text("name");
  source_.document.Stream("program", "<<>>", "a font program")
      .Stream("inner", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "1 0 0 rg 0 0 9 9 re f")
      .Stream("face",
              "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]/Resources<</XObject<</Fm $inner>>/Font<</F9<</Type/Font"
              "/Subtype/TrueType/FontDescriptor<</FontFile2 $program>>>>>>>>>>",
              "/Fm Do BT /F9 9 Tf (x) Tj ET");
  source_.Text("name").Set("AP", "<</N $face>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  const auto data = [](QPDFObjectHandle stream) {
    const auto buffer = stream.getStreamData();
    return std::string(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
  };
  QPDFObjectHandle face = Field().getKey("/AP").getKey("/N");
  QPDFObjectHandle resources = face.getDict().getKey("/Resources");
  EXPECT_EQ(data(face), "/Fm Do BT /F9 9 Tf (x) Tj ET");
  EXPECT_EQ(data(resources.getKey("/XObject").getKey("/Fm")), "1 0 0 rg 0 0 9 9 re f");
  EXPECT_EQ(data(resources.getKey("/Font").getKey("/F9").getKey("/FontDescriptor").getKey("/FontFile2")), "a font program");
}

TEST_F(AcroFormSync, CopiesKeysInTheOrderOfTheirAtoms) {
  target_.Text("name");
  for (const char* key : {"KeyThatComesFirst", "AKeyBehindIt"}) test::EmbeddedTables()->core->ASAtomFromString(key);
  source_.Text("name").Set("A", "<</AKeyBehindIt 2/KeyThatComesFirst 1>>");
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(Synchronise(), test::kSuccess);
  std::vector<std::string> puts;
  for (const std::string& call : host.Calls()) {
    if (call.rfind("CosDictPut(", 0) == 0) puts.push_back(call.substr(call.find('"')));
  }
  ASSERT_EQ(puts.size(), 2U);
  EXPECT_EQ(puts[0].substr(0, 19), "\"KeyThatComesFirst\"");
  EXPECT_EQ(puts[1].substr(0, 14), "\"AKeyBehindIt\"");
}

TEST_F(AcroFormSync, WritesNoWidgetEntriesOfAMergedFieldWithoutAType) {
  target_.Button("go").Set("Type", "null");
  source_.Button("go").Set("AS", "/On").Set("TU", "(tip)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/AS"), "null");
  EXPECT_EQ(Entry("/TU"), "(tip)");
}

/// A field "group" with as many kids, each a widget of its own.
void AddGroup(Form& form, int kids, const std::string& state) {
  std::string references;
  for (int i = 0; i < kids; ++i) {
    const std::string name = "kid" + std::to_string(i);
    form.page.Annotate("Widget").Set("AS", state + std::to_string(i)).Named(name);
    references += "$" + name + " ";
  }
  form.document.Object("group", "<</FT/Btn/T(group)/Kids[" + references + "]>>");
  form.document.SetCatalog("AcroForm", "<</Fields[$group]>>");
}

TEST_F(AcroFormSync, PairsKidsByTheirPlace) {
  AddGroup(target_, 2, "/Old");
  AddGroup(source_, 2, "/New");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle kids = Field().getKey("/Kids");
  EXPECT_EQ(kids.getArrayItem(0).getKey("/AS").unparse(), "/New0");
  EXPECT_EQ(kids.getArrayItem(1).getKey("/AS").unparse(), "/New1");
}

TEST_F(AcroFormSync, PairsNoKidsWhenTheirNumbersDiffer) {
  AddGroup(target_, 2, "/Old");
  AddGroup(source_, 3, "/New");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle kids = Field().getKey("/Kids");
  EXPECT_EQ(kids.getArrayItem(0).getKey("/AS").unparse(), "/New0") << "the parent's widget is its first annotation kid";
  EXPECT_EQ(kids.getArrayItem(1).getKey("/AS").unparse(), "/Old1");
}

/// A field "group" whose one kid has these entries.
void AddGroupOf(Form& form, const std::string& kid) {
  form.document.Object("kid", "<</Type/Annot/Subtype/Widget/Rect[0 0 1 1]" + kid + ">>");
  form.document.Object("group", "<</T(group)/Kids[$kid]>>");
  form.document.SetCatalog("AcroForm", "<</Fields[$group]>>");
}

TEST_F(AcroFormSync, SkipsKidsThatAgreeNeitherInTypeNorInName) {
  AddGroupOf(target_, "/FT/Btn/T(a)/TU(old)");
  AddGroupOf(source_, "/FT/Tx/T(b)/TU(new)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Field().getKey("/Kids").getArrayItem(0).getKey("/TU").unparse(), "(old)");
}

TEST_F(AcroFormSync, TakesKidsThatAgreeInTypeOnly) {
  AddGroupOf(target_, "/FT/Btn/T(a)/TU(old)");
  AddGroupOf(source_, "/FT/Btn/T(b)/TU(new)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Field().getKey("/Kids").getArrayItem(0).getKey("/TU").unparse(), "(new)");
}

TEST_F(AcroFormSync, DoesNotLookAtTheKidsOfKids) {
  for (Form* form : {&target_, &source_}) {
    form->document.Object("leaf", form == &source_ ? "<</FT/Tx/T(leaf)/TU(new)>>" : "<</FT/Tx/T(leaf)/TU(old)>>");
    AddGroupOf(*form, "/T(a)/Kids[$leaf]");
  }
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle leaf = Field().getKey("/Kids").getArrayItem(0).getKey("/Kids").getArrayItem(0);
  EXPECT_EQ(leaf.getKey("/TU").unparse(), "(old)");
}

TEST_F(AcroFormSync, GivesUpWhereAllFieldsHaveTheSameManyKids) {
  constexpr int kMany = 30;
  for (Form* form : {&target_, &source_}) {
    std::string kids;
    std::string fields;
    for (int i = 0; i < kMany; ++i) {
      kids += "<</T(kid)>>";
      fields += "<</T(n)/Kids $kids>>";
    }
    form->document.Object("kids", "[" + kids + "]").SetCatalog("AcroForm", "<</Fields[" + fields + "]>>");
  }
  OpenDocument target(target_.document.Write());
  OpenDocument source(source_.document.Write());
  const test::HostSession session;
  acroform::AcroFormSync(8 * kMany * kMany).Run(target.Handle(), source.Handle());
  EXPECT_THROW(acroform::AcroFormSync(8 * kMany * kMany - 1).Run(target.Handle(), source.Handle()), std::runtime_error);
}

TEST_F(AcroFormSync, GivesDictionariesAndArraysTheIndirectionOfTheSource) {
  const std::vector<std::string> keys = {"A", "AA", "BS", "MK", "AP", "Opt", "I"};
  target_.Text("direct");
  target_.Text("indirect");
  Annotation direct = source_.Text("direct");
  Annotation indirect = source_.Text("indirect");
  for (const std::string& key : keys) {
    const std::string value = key == "Opt" || key == "I" ? "[1]" : "<</X 1>>";
    source_.document.Object("value" + key, value);
    direct.Set(key, value);
    indirect.Set(key, "$value" + key);
  }
  EXPECT_EQ(Synchronise(), test::kSuccess);
  for (const std::string& key : keys) {
    EXPECT_FALSE(Field(0).getKey("/" + key).isNull()) << key;
    EXPECT_FALSE(Field(0).getKey("/" + key).isIndirect()) << key;
    EXPECT_TRUE(Field(1).getKey("/" + key).isIndirect()) << key;
  }
}

TEST_F(AcroFormSync, TakesTheFirstKidThatIsAnAnnotationForTheWidget) {
  for (Form* form : {&target_, &source_}) {
    const std::string state = form == &source_ ? "/New" : "/Old";
    form->document.SetCatalog("AcroForm", "<</Fields[<</FT/Btn/T(group)/Kids[7<</T(none)>><</Type/Annot/AS" + state +
                                              "1>><</Type/Annot/AS" + state + "2>>" + (form == &source_ ? "[]" : "") +
                                              "]>>]>>");
  }
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle kids = Field().getKey("/Kids");
  EXPECT_EQ(kids.getArrayItem(2).getKey("/AS").unparse(), "/New1");
  EXPECT_EQ(kids.getArrayItem(3).getKey("/AS").unparse(), "/Old2") << "the numbers of kids differ, so none pair";
}

TEST_F(AcroFormSync, NeedsNoWidget) {
  for (Form* form : {&target_, &source_}) {
    const std::string value = form == &source_ ? "(new)" : "(old)";
    form->document.SetCatalog("AcroForm", "<</Fields[<</FT/Tx/T(n)/DA" + value + "/V" + value + "/Kids[<</T(kid)>>]>>]>>");
  }
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
  EXPECT_EQ(Entry("/DA"), "(old)");
}

TEST_F(AcroFormSync, DoesNotReadATextThatIsAName) {
  target_.Text("name", "(old)").Set("DV", "(old)");
  source_.Text("name", "/Name").Set("DV", "/Name");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(old)");
  EXPECT_EQ(Entry("/DV"), "(old)");
}

TEST_F(AcroFormSync, DoesNotReadEntriesOfOtherTypes) {
  target_.Text("name").Set("TU", "(old)").Set("Ff", "1").Set("Opt", "[1]").Set("A", "<</Old 1>>").Set("H", "/N");
  source_.Text("name").Set("TU", "/New").Set("Ff", "2.5").Set("Opt", "<<>>").Set("A", "[2]").Set("H", "(I)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/TU"), "(old)");
  EXPECT_EQ(Entry("/Ff"), "1");
  EXPECT_EQ(Entry("/Opt"), "[ 1 ]");
  EXPECT_EQ(Entry("/A"), "<< /Old 1 >>");
  EXPECT_EQ(Entry("/H"), "/N");
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForANameThatIsNoString) {
  target_.Text("name", "(old)");
  source_.Text("name", "(new)").Set("T", "7");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("not a string"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, ReadsNamesOnlyAsFarAsTheyAreNeeded) {
  target_.Text("name", "(old)");
  source_.Text("name", "(new)");
  source_.Text("another").Set("T", "7");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
}

TEST_F(AcroFormSync, LeavesTheParentReferencesOutOfWhatItCopies) {
  target_.Text("name");
  source_.Text("name").Set("A", "<</S/Named/P 1/Next<</S/Named/P 2>>>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/A"), "<< /Next << /S /Named >> /S /Named >>");
}

TEST_F(AcroFormSync, CopiesValuesOfEveryType) {
  target_.Text("name");
  source_.document.Object("shared", "<</X 1>>");
  source_.Text("name").Set("A", "<</Array[1 2.5 true(s)/N[3]<</D 4>>null]/Dictionary $shared/Empty()/Real 0.5/Flag false>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle action = Field().getKey("/A");
  EXPECT_EQ(action.getKey("/Array").unparse(), "[ 1 2.5 true (s) /N [ 3 ] << /D 4 >> /Not#20implemented#20sync ]");
  EXPECT_TRUE(action.getKey("/Dictionary").isIndirect());
  EXPECT_EQ(action.getKey("/Dictionary").unparseResolved(), "<< /X 1 >>");
  EXPECT_FALSE(action.hasKey("/Empty"));
  EXPECT_EQ(action.getKey("/Real").unparse(), "0.5");
  EXPECT_EQ(action.getKey("/Flag").unparse(), "false");
}

TEST_F(AcroFormSync, CopiesAnIndirectObjectAtEachReference) {
  target_.Text("name");
  source_.document.Object("shared", "<</X 1>>");
  source_.Text("name").Set("A", "<</One $shared/Two $shared>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle action = Field().getKey("/A");
  EXPECT_NE(action.getKey("/One").getObjGen(), action.getKey("/Two").getObjGen());
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForADictionaryThatHoldsItself) {
  target_.Text("name");
  source_.document.Object("loop", "<</Next<</Next $loop>>>>");
  source_.Text("name").Set("A", "$loop");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("deeper than 500 levels"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForAnArrayThatHoldsItself) {
  target_.Text("name");
  source_.document.Object("loop", "[$loop]");
  source_.Text("name").Set("Opt", "$loop");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("deeper than 500 levels"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForAStreamThatHoldsItself) {
  target_.Text("name");
  source_.document.Stream("loop", "<</Next $loop>>", "data");
  source_.Text("name").Set("A", "<</Next $loop>>");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("deeper than 500 levels"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, CopiesManyValuesSideBySide) {
  target_.Text("name");
  std::string options = "[";
  for (int i = 0; i < 2000; ++i) options += "[(a)(b)]";
  source_.Text("name").Set("Opt", options + "]");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Field().getKey("/Opt").getArrayNItems(), 2000);
}

/// A value that refers to a value twice, which refers to a value twice, and so on: 2^levels copies.
void AddDoublingOptions(Form& form, int levels) {
  for (int level = 1; level < levels; ++level) {
    const std::string next = "$level" + std::to_string(level + 1);
    form.document.Object("level" + std::to_string(level), "[" + next + " " + next + "]");
  }
  form.document.Object("level" + std::to_string(levels), "[1 2]");
  form.Text("name").Set("Opt", "[$level1]");
}

TEST_F(AcroFormSync, CopiesValuesThatReferToTheSameOnesTwiceEachTime) {
  target_.Text("name");
  AddDoublingOptions(source_, 8);
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Field().getKey("/Opt").getArrayItem(0).getArrayNItems(), 2);
}

TEST_F(AcroFormSync, StopsWhereCopiesWouldNotEnd) {
  target_.Text("name");
  AddDoublingOptions(source_, 40);
  OpenDocument target(target_.document.Write());
  OpenDocument source(source_.document.Write());
  const test::HostSession session;
  EXPECT_THROW(acroform::AcroFormSync(1000).Run(target.Handle(), source.Handle()), std::runtime_error);
}

TEST_F(AcroFormSync, AddsFontsThatTheTargetLacksAndKeepsItsOwn) {
  target_.Text("name");
  source_.Text("name");
  target_.document.SetCatalog("AcroForm", "<</Fields[]/DR<</Font<</F1<</Who(target)>>>>/Encoding<<>>>>>>");
  source_.document.SetCatalog("AcroForm",
                              "<</Fields[]/DR<</Font<</F1<</Who(source)>>/F2<</Who(source)>>>>/Encoding<</E<<>>>>>>>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle resources = FormDictionary().getKey("/DR");
  EXPECT_EQ(resources.getKey("/Font").unparse(), "<< /F1 << /Who (target) >> /F2 << /Who (source) >> >>");
  EXPECT_EQ(resources.getKey("/Encoding").unparse(), "<< /E << >> >>");
}

TEST_F(AcroFormSync, GivesNoResourcesToAFormWithoutAny) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/DR<</Font<<>>>>/SigFlags 3>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_FALSE(FormDictionary().hasKey("/DR"));
  EXPECT_EQ(FormDictionary().getKey("/SigFlags").unparse(), "3") << "the run goes on";
}

TEST_F(AcroFormSync, ReplacesTheCalculationOrderByACopy) {
  target_.Text("name");
  source_.Text("name").Named("field");
  target_.document.SetCatalog("AcroForm", "<</Fields[]/CO[1 2 3]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/CO[<</T(a)>>]>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(FormDictionary().getKey("/CO").unparse(), "[ << /T (a) >> ]");
}

TEST_F(AcroFormSync, CopiesTheFieldsOfTheCalculationOrder) {
  target_.document.Object("field", "<</FT/Tx/T(a)/V(old)>>");
  source_.document.Object("field", "<</FT/Tx/T(a)/V(new)>>").Object("order", "[$field]");
  target_.document.SetCatalog("AcroForm", "<</Fields[$field]/CO[$field]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[$field]/CO $order>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle order = FormDictionary().getKey("/CO");
  EXPECT_TRUE(order.isIndirect()) << "as in the second document";
  ASSERT_EQ(order.getArrayNItems(), 1);
  EXPECT_EQ(order.getArrayItem(0).getKey("/V").unparse(), "(new)");
  EXPECT_NE(order.getArrayItem(0).getObjGen(), Field().getObjGen());
}

TEST_F(AcroFormSync, KeepsACalculationOrderThatTheSourceLacks) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]/CO[1]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(FormDictionary().getKey("/CO").unparse(), "[ 1 ]");
}

TEST_F(AcroFormSync, EmptiesTheCalculationOrderForOneThatIsNoArray) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]/CO[1]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/CO<</A 1>>>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(FormDictionary().getKey("/CO").unparse(), "[ ]");
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForSignatureFlagsThatAreNoInteger) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/SigFlags/Three>>");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("integer"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, AddsNoKindOfResourcesThatTheTargetLacks) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]/DR<</Font<<>>>>>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/DR<</Font<<>>/Encoding<</E 1>>/XObject<</X 1>>>>>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(FormDictionary().getKey("/DR").unparse(), "<< /Font << >> >>");
}

TEST_F(AcroFormSync, FailsForAnActionThatLeadsBackThroughAPage) {
  target_.Button("go");
  source_.document.Object("page", "<</Annots[$field]>>").Object("field", "<</FT/Btn/T(go)/A<</S/GoTo/D[$page/Fit]>>>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[$field]>>");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("deeper than 500 levels"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, FailsForACalculationOrderOfFieldsWithKids) {
  target_.document.SetCatalog("AcroForm", "<</Fields[]>>");
  source_.document.Object("field", "<</T(a)/Kids[$kid]>>").Object("kid", "<</Parent $field>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/CO[$field]>>");
  const test::Outcome outcome = Synchronise();
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("deeper than 500 levels"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, StopsWhereTheSameDataWouldBeCopiedAgainAndAgain) {
  source_.document.Stream("large", "<<>>", std::string(256 * 100, 'x'));
  target_.Text("name");
  source_.Text("name").Set("A", "<</One $large/Two $large/Three $large>>");
  OpenDocument target(target_.document.Write([](QPDFWriter& writer) { writer.setCompressStreams(false); }));
  OpenDocument source(source_.document.Write([](QPDFWriter& writer) { writer.setCompressStreams(false); }));
  const test::HostSession session;
  acroform::AcroFormSync(400).Run(target.Handle(), source.Handle());
  EXPECT_THROW(acroform::AcroFormSync(290).Run(target.Handle(), source.Handle()), std::runtime_error);
}

TEST_F(AcroFormSync, WritesTheSignatureFlagsAsADirectInteger) {
  source_.document.Object("flags", "3");
  target_.document.SetCatalog("AcroForm", "<</Fields[]/SigFlags 1>>");
  source_.document.SetCatalog("AcroForm", "<</Fields[]/SigFlags $flags>>");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  QPDFObjectHandle flags = FormDictionary().getKey("/SigFlags");
  EXPECT_FALSE(flags.isIndirect());
  EXPECT_EQ(flags.unparse(), "3");
}

TEST_F(AcroFormSync, LeavesADocumentAloneWhereOneSideHasNoForm) {
  target_.Text("name", "(old)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(old)");
}

TEST_F(AcroFormSync, LeavesADocumentWithoutAFormWithoutOne) {
  source_.Text("name", "(new)");
  EXPECT_EQ(Synchronise(), test::kSuccess);
  EXPECT_TRUE(FormDictionary().isNull());
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForASecondDocumentThatIsNotThere) {
  target_.Text("name", "(old)");
  OpenDocument open(target_.document.Write());
  const test::Outcome outcome = open.Action(kSyncForms, path_ + ".missing");
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find(path_ + ".missing"), std::string::npos) << outcome;
}

TEST_F(AcroFormSync, FailsWithTheHostsTextForASecondDocumentThatIsNoPdf) {
  target_.Text("name", "(old)");
  std::ofstream(path_) << "no PDF";
  OpenDocument open(target_.document.Write());
  const test::Outcome outcome = open.Action(kSyncForms, path_);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find(path_), std::string::npos) << outcome;
}

/// Runs on a target with the value "(old)" and a second document of these bytes, written to the path, and gives the outcome.
class SecondDocument : public AcroFormSync {
 protected:
  SecondDocument() {
    target_.Text("name", "(old)");
    source_.Text("name", "(new)");
  }

  test::Outcome SynchroniseWith(const std::string& bytes) {
    std::ofstream(path_, std::ios::binary) << bytes;
    OpenDocument open(target_.document.Write());
    const test::Outcome outcome = open.Action(kSyncForms, path_);
    file_ = std::make_unique<test::ReadBack>(open.Save());
    return outcome;
  }

  std::string Encrypted(const char* password) {
    return source_.document.Write([&](QPDFWriter& writer) {
      writer.setR6EncryptionParameters(password, "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
    });
  }

  void ExpectRefused(const test::Outcome& outcome, const std::string& reason) {
    EXPECT_EQ(outcome.result, TGX_FAILED);
    EXPECT_NE(outcome.text.find(path_ + ": " + reason), std::string::npos) << outcome;
    EXPECT_EQ(Entry("/V"), "(old)");
  }
};

TEST_F(SecondDocument, IsReadThroughAnEncryptionWithoutAPassword) {
  target_.Text("shown");
  source_.document.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
  source_.Text("shown").Set("AP", "<</N $face>>");
  EXPECT_EQ(SynchroniseWith(Encrypted("")), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
  const auto data = Field(1).getKey("/AP").getKey("/N").getStreamData();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()), "0 0 9 9 re f");
}

TEST_F(SecondDocument, IsRefusedWhereItNeedsAPassword) {
  ExpectRefused(SynchroniseWith(Encrypted("secret")), "a password is needed");
}

TEST_F(SecondDocument, IsRepairedWhereItCanBe) {
  std::string bytes = source_.document.Write();
  bytes.replace(bytes.rfind("startxref"), 9, "startyref");
  EXPECT_EQ(SynchroniseWith(bytes), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(new)");
}

TEST_F(SecondDocument, IsRefusedWhereItIsCutShort) {
  const std::string bytes = source_.document.Write();
  ExpectRefused(SynchroniseWith(bytes.substr(0, 100)), "cut short or damaged beyond repair");
}

TEST_F(SecondDocument, IsRefusedWhereItIsEmpty) { ExpectRefused(SynchroniseWith(""), ""); }

TEST_F(SecondDocument, MayBeTheFileOfTheFirstWhichStaysAsItIs) {
  const std::string bytes = target_.document.Write();
  EXPECT_EQ(SynchroniseWith(bytes), test::kSuccess);
  EXPECT_EQ(Entry("/V"), "(old)");
  EXPECT_EQ(test::ReadBytes(path_), bytes);
}

TEST_F(SecondDocument, MayBeTheVeryFileThatIsOpen) {
  std::ofstream(path_, std::ios::binary) << target_.document.Write();
  const HostTables& host = *test::EmbeddedTables();
  const test::HostSession session;
  const PDDoc open = TGXHost_OpenFile(path_.c_str(), nullptr);
  ASSERT_NE(open, nullptr) << TGXHost_LastError();
  std::string record(sizeof(TGXActionParams) + path_.size() + 1, '\0');
  const std::int32_t action = kSyncForms;
  record.replace(offsetof(TGXActionParams, action), sizeof action, reinterpret_cast<const char*>(&action), sizeof action);
  record.replace(offsetof(TGXActionParams, path), path_.size(), path_);
  EXPECT_EQ(TGX_Action(open, reinterpret_cast<const TGXActionParams*>(record.data())), TGX_OK) << TGX_GetLastError();
  EXPECT_EQ(host.pdModel->PDDocGetNumPages(open), 1);
  EXPECT_EQ(TGXHost_SaveFile(open, path_.c_str(), nullptr), 0) << TGXHost_LastError();
  TGXHost_Close(open);
  file_ = std::make_unique<test::ReadBack>(test::ReadBytes(path_));
  EXPECT_EQ(Entry("/V"), "(old)");
}

TEST_F(SecondDocument, IsClosedAndItsPathReleased) {
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(SynchroniseWith(source_.document.Write()), test::kSuccess);
  EXPECT_TRUE(host.Uneven().empty()) << testing::PrintToString(host.Uneven());
}

}  // namespace
}  // namespace tgx
