// Times the steps that move elements, alone, where one parent has very many of them.
#include <benchmark/benchmark.h>
#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

namespace {

constexpr std::int32_t kReshuffleFrames = 14;
constexpr std::int32_t kGroupTags = 16;
constexpr std::uint32_t kExtraParagraphs = 0x2;

using Kids = std::vector<QPDFObjectHandle>;

/// Makes a document from the leaves of its tree up.
class TreeMaker {
 public:
  TreeMaker() {
    pdf_.emptyPDF();
    pdf_.addPage(QPDFObjectHandle::parse("<</Type/Page/MediaBox[0 0 9 9]/Resources<<>>>>"), false);
  }

  QPDFObjectHandle Element(const std::string& type, const Kids& kids = {}, const std::string& more = "") {
    QPDFObjectHandle element =
        pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructElem/S/" + type + " " + more + ">>"));
    for (QPDFObjectHandle kid : kids) kid.replaceKey("/P", element);
    element.replaceKey("/K", QPDFObjectHandle::newArray(kids));
    return element;
  }
  std::string Finish(const Kids& kids) {
    QPDFObjectHandle document = Element("Document", kids);
    QPDFObjectHandle root = pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructTreeRoot>>"));
    root.replaceKey("/K", document);
    document.replaceKey("/P", root);
    pdf_.getRoot().replaceKey("/StructTreeRoot", root);
    QPDFWriter writer(pdf_);
    writer.setOutputMemory();
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
  }

 private:
  QPDF pdf_;
};

/// One group of that many paragraphs.
std::string OneGroup(int count) {
  TreeMaker tree;
  Kids kids;
  for (int i = 0; i < count; ++i) kids.push_back(tree.Element("GT_Index"));
  return tree.Finish(kids);
}

/// One paragraph that stands that often in its parent.
std::string OneParagraphInAllPlaces(int count) {
  TreeMaker tree;
  return tree.Finish(Kids(static_cast<std::size_t>(count), tree.Element("GT_Index")));
}

/// That many captions, each followed by `next`: a table takes the caption in, a paragraph leaves it without one.
std::string Captions(int count, const char* next) {
  TreeMaker tree;
  Kids kids;
  for (int i = 0; i < count; ++i) {
    kids.push_back(tree.Element("GT_CaptionTableAtTop"));
    kids.push_back(tree.Element(next));
  }
  return tree.Finish(kids);
}
std::string CaptionsOfTables(int count) { return Captions(count, "Table"); }
std::string CaptionsOfNothing(int count) { return Captions(count, "P"); }

/// "Alt" of a mark: the character and an identifier.
std::string Mark(const std::string& character, int identifier) {
  std::string hex = "FEFF" + character;
  char unit[8];
  for (const char digit : std::to_string(identifier)) {
    std::snprintf(unit, sizeof unit, "%04X", static_cast<unsigned>(digit));
    hex += unit;
  }
  return "/Alt<" + hex + ">";
}

/// One frame of that many elements, in a holder behind its anchor.
std::string OneFrame(int count) {
  TreeMaker tree;
  Kids frame = {tree.Element("Figure", {}, Mark("2264", 1))};
  for (int i = 0; i < count; ++i) frame.push_back(tree.Element("P"));
  frame.push_back(tree.Element("Figure", {}, Mark("2265", 1)));
  return tree.Finish({tree.Element("P", {tree.Element("Figure", {}, Mark("222E", 1))}), tree.Element("Sect", frame)});
}

/// Captions of a list behind all of them, with a table in each.
std::string CaptionsWithTables(int count) {
  TreeMaker tree;
  Kids kids;
  for (int i = 0; i < count; ++i) {
    kids.push_back(tree.Element("GT_CaptionListAtTop", {tree.Element("Table")}));
    kids.push_back(tree.Element("P"));
  }
  kids.push_back(tree.Element("L"));
  return tree.Finish(kids);
}

/// Frames of one element in one holder, in the order of the numbers; their anchors side by side, in ascending order.
std::string Frames(const std::vector<int>& order) {
  TreeMaker tree;
  Kids anchors;
  Kids frames;
  for (const int frame : order) {
    anchors.push_back(tree.Element("Figure", {}, Mark("222E", static_cast<int>(anchors.size()))));
    frames.push_back(tree.Element("Figure", {}, Mark("2264", frame)));
    frames.push_back(tree.Element("P"));
    frames.push_back(tree.Element("Figure", {}, Mark("2265", frame)));
  }
  return tree.Finish({tree.Element("Sect", anchors), tree.Element("Sect", frames)});
}
std::vector<int> Ascending(int count) {
  std::vector<int> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  return order;
}
std::string ManyFrames(int count) { return Frames(Ascending(count)); }
std::string ShuffledFrames(int count) {
  std::vector<int> order = Ascending(count);
  std::shuffle(order.begin(), order.end(), std::minstd_rand(7));
  return Frames(order);
}

/// Tables in paragraphs of their own, side by side.
std::string TablesInParagraphs(int count) {
  TreeMaker tree;
  Kids kids;
  for (int i = 0; i < count; ++i) kids.push_back(tree.Element("P", {tree.Element("Table")}));
  return tree.Finish(kids);
}

[[noreturn]] void Fail(const char* text) {
  std::fprintf(stderr, "%s\n", text);
  std::exit(1);
}

using Step = std::function<int(PDDoc)>;

Step Action(std::int32_t number) {
  return [number](PDDoc document) {
    const TGXActionParams params = {0, number, {0}};
    return TGX_Action(document, &params);
  };
}

Step Fixups(std::uint32_t mask) {
  return [mask](PDDoc document) {
    const TGXFixupParams params = {0, mask};
    return TGX_Fixups(document, &params);
  };
}

void RunStep(benchmark::State& state, std::string (*make)(int), const Step& step) {
  const TGXInitParams init = {nullptr, &TGXHost_Tables};
  TGX_init(&init);
  const std::string bytes = make(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    PDDoc document = TGXHost_OpenMemory(bytes.data(), bytes.size(), "kids.pdf", nullptr);
    if (document == nullptr) Fail(TGXHost_LastError());
    state.ResumeTiming();
    if (step(document) != TGX_OK) Fail(TGX_GetLastError());
    state.PauseTiming();
    TGXHost_Close(document);
    state.ResumeTiming();
  }
}

void InTwoSizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(10'000)->Arg(20'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(RunStep, one_group, OneGroup, Action(kGroupTags))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, one_paragraph_in_all_places, OneParagraphInAllPlaces, Action(kGroupTags))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, captions_of_tables, CaptionsOfTables, Action(kGroupTags))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, captions_of_nothing, CaptionsOfNothing, Action(kGroupTags))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, captions_with_tables, CaptionsWithTables, Action(kGroupTags))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, one_frame, OneFrame, Action(kReshuffleFrames))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, many_frames, ManyFrames, Action(kReshuffleFrames))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, shuffled_frames, ShuffledFrames, Action(kReshuffleFrames))->Apply(InTwoSizes);
BENCHMARK_CAPTURE(RunStep, tables_in_paragraphs, TablesInParagraphs, Fixups(kExtraParagraphs))->Apply(InTwoSizes);

}  // namespace

BENCHMARK_MAIN();
