// Times edits of a structure tree under a parent of many kids, and the rebuilding of the parent tree.
#include <benchmark/benchmark.h>
#include <tgx/embedded_host.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace {

const PDSEditReadTable& Read() { return *TGXHost_Tables()->pdsEditRead; }
const PDSEditWriteTable& Write() { return *TGXHost_Tables()->pdsEditWrite; }

/// A document with one top-level element and that many kids below it, a hundred to a page, each with an MCID.
std::string Document(int kids) {
  QPDF pdf;
  pdf.emptyPDF();
  QPDFObjectHandle root = pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructTreeRoot>>"));
  QPDFObjectHandle top = pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructElem/S/Document>>"));
  top.replaceKey("/P", root);
  root.replaceKey("/K", top);
  pdf.getRoot().replaceKey("/StructTreeRoot", root);
  std::vector<QPDFObjectHandle> elements;
  QPDFObjectHandle page;
  for (int i = 0; i < kids; ++i) {
    if (i % 100 == 0) {
      page = pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/Page/MediaBox[0 0 9 9]/Resources<<>>>>"));
      pdf.addPage(page, false);
    }
    QPDFObjectHandle element = pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/StructElem/S/P>>"));
    element.replaceKey("/P", top);
    element.replaceKey("/Pg", page);
    element.replaceKey("/K", QPDFObjectHandle::newInteger(i % 100));
    elements.push_back(element);
  }
  top.replaceKey("/K", QPDFObjectHandle::newArray(elements));
  QPDFWriter writer(pdf);
  writer.setOutputMemory();
  writer.write();
  const auto buffer = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

/// The document, open, with its tree read.
class Session {
 public:
  explicit Session(int kids) {
    const std::string bytes = Document(kids);
    document_ = TGXHost_OpenMemory(bytes.data(), bytes.size(), "kids.pdf", nullptr);
    if (document_ == nullptr) {
      std::fprintf(stderr, "%s\n", TGXHost_LastError());
      std::exit(1);
    }
    PDSTreeRoot root;
    Read().PDDocGetStructTreeRoot(document_, &root);
    Read().PDSTreeRootGetKid(root, 0, &top_);
    for (ASInt32 i = 0; i < kids; ++i) Read().PDSElementGetKid(top_, i, &elements_.emplace_back(), nullptr, nullptr);
  }
  ~Session() { TGXHost_Close(document_); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  PDSElement Top() const { return top_; }
  const std::vector<PDSElement>& Elements() const { return elements_; }

  void Save() {
    void* data = nullptr;
    std::size_t size = 0;
    TGXHost_SaveMemory(document_, nullptr, &data, &size);
    TGXHost_FreeMemory(data);
  }

 private:
  PDDoc document_;
  PDSElement top_{};
  std::vector<PDSElement> elements_;
};

/// Each kid in turn is taken out and put back, as a worker does that goes through them.
void MoveInOrder(benchmark::State& state) {
  const Session session(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    ASInt32 index = 0;
    for (const PDSElement element : session.Elements()) {
      Write().PDSElementRemoveKid(session.Top(), element);
      Write().PDSElementInsertKid(session.Top(), element, index++ - 1);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MoveInOrder)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void MoveAtRandom(benchmark::State& state) {
  const Session session(static_cast<int>(state.range(0)));
  std::mt19937 random(1);
  for (auto _ : state) {
    const PDSElement element = session.Elements()[random() % session.Elements().size()];
    Write().PDSElementRemoveKid(session.Top(), element);
    Write().PDSElementInsertKid(session.Top(), element, static_cast<ASInt32>(random() % session.Elements().size()));
  }
}
BENCHMARK(MoveAtRandom)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

/// Takes the first kid until none is left, and puts all back at the end.
void EmptyAndFill(benchmark::State& state) {
  const Session session(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    while (Read().PDSElementGetNumKids(session.Top()) > 0) {
      CosObj kid;
      Read().PDSElementGetKid(session.Top(), 0, &kid, nullptr, nullptr);
      Write().PDSElementRemoveKid(session.Top(), kid);
    }
    for (const PDSElement element : session.Elements()) {
      Write().PDSElementInsertKid(session.Top(), element, kPDSAfterLast);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(EmptyAndFill)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// Saving after the kids changed their order: the parent tree is made from the structure, and the file written.
void SaveReordered(benchmark::State& state) {
  Session session(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const PDSElement first = session.Elements().front();
    Write().PDSElementRemoveKid(session.Top(), first);
    Write().PDSElementInsertKid(session.Top(), first, kPDSAfterLast);
    session.Save();
  }
}
BENCHMARK(SaveReordered)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
