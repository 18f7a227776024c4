// Reads the content of all pages, takes an element out of each and saves, as a process of its own, and compares that in time
// and peak memory with `qpdf IN OUT` and `mutool clean -s`:  tgx_content_benchmark [ROUNDS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "bench/MarkedDocument.h"
#include "bench/Processes.h"

namespace {

using tgx::bench::Cost;

constexpr double kMegabyte = 1024 * 1024;

struct Costs {
  Cost qpdf, mutool, ours;
};

Costs Measure(const std::string& folder, const std::string& input, int rounds) {
  const std::string output = folder + "/out.pdf";
  std::vector<Cost> qpdf, mutool, ours;
  for (int round = 0; round < rounds; ++round) {
    qpdf.push_back(tgx::bench::Run({"qpdf", input, output}));
    mutool.push_back(tgx::bench::Run({"mutool", "clean", "-s", input, output}));
    ours.push_back(tgx::bench::Run({TGX_CONTENT_SWEEP, "edit", input, output}));
  }
  return {Median(qpdf), Median(mutool), Median(ours)};
}

void Print(const Costs& costs) {
  const Cost both = Together(costs.mutool, costs.qpdf);
  PrintLine("qpdf", costs.qpdf);
  PrintLine("mutool, then qpdf", both);
  PrintLine("ours", costs.ours);
  PrintRatio("ours to qpdf", costs.ours, costs.qpdf);
  PrintRatio("ours to both", costs.ours, both);
}

/// Bytes of content, decoded, of all pages.
std::size_t DecodedContent(const std::string& path) {
  QPDF pdf;
  pdf.processFile(path.c_str());
  std::size_t bytes = 0;
  for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
    for (QPDFObjectHandle& stream : page.getPageContents()) bytes += stream.getStreamData()->getSize();
  }
  return bytes;
}

/// One page with that many marked-content sequences of a line of text each. The answer is the size of its content.
std::size_t MakeFullPage(std::size_t elements, const std::string& path) {
  QPDF pdf;
  pdf.emptyPDF();
  std::string content;
  for (std::size_t i = 0; i < elements; ++i) {
    content += "/P <</MCID " + std::to_string(i) + ">> BDC\nBT\n/F1 9 Tf\n1 0 0 1 36 " + std::to_string(780 - i % 750) +
               " Tm\n[(Line ) -12 (number ) 3 (" + std::to_string(i) + " of a page)] TJ\nET\nEMC\n";
  }
  QPDFObjectHandle page = pdf.makeIndirectObject(QPDFObjectHandle::parse(
      "<</Type /Page /MediaBox [0 0 595 842] /Resources <</Font <</F1 <</Type /Font /Subtype /Type1 /BaseFont /Helvetica "
      "/Encoding /WinAnsiEncoding>>>>>>>>"));
  page.replaceKey("/Contents", pdf.newStream(content));
  QPDFPageDocumentHelper(pdf).addPage(page, false);
  QPDFWriter writer(pdf, path.c_str());
  writer.write();
  return content.size();
}

Costs ComparePages(const std::string& folder, std::size_t pages, int rounds) {
  const std::string input = folder + "/" + std::to_string(pages) + ".pdf";
  const std::size_t bytes = tgx::bench::Apart([&] {
    tgx::bench::MakeMarkedDocument(pages, TGX_FONT_DOCUMENT, input);
    return DecodedContent(input);
  });
  std::printf("%zu pages, %.1f MB of content\n", pages, static_cast<double>(bytes) / kMegabyte);
  const Costs costs = Measure(folder, input, rounds);
  Print(costs);
  return costs;
}

struct FullPage {
  Cost read;  // everything but property dictionaries
  Cost edit;
  double decodedMegabytes;
};

FullPage MeasureFullPage(const std::string& folder, std::size_t elements, int rounds) {
  const std::string input = folder + "/full-" + std::to_string(elements) + ".pdf";
  const std::string output = folder + "/out.pdf";
  const std::size_t bytes = tgx::bench::Apart([&] { return MakeFullPage(elements, input); });
  std::vector<Cost> read, edit;
  for (int round = 0; round < rounds; ++round) {
    read.push_back(tgx::bench::Run({TGX_CONTENT_SWEEP, "read", input}));
    edit.push_back(tgx::bench::Run({TGX_CONTENT_SWEEP, "edit", input, output}));
  }
  return {tgx::bench::Median(read), tgx::bench::Median(edit), static_cast<double>(bytes) / kMegabyte};
}

/// Time and memory of one page against its elements. What a process takes for itself is told by a page of one element.
void CompareFullPages(const std::string& folder, int rounds) {
  const FullPage empty = MeasureFullPage(folder, 1, rounds);
  std::printf(
      "one page of many sequences, without what a process takes for an almost empty one: microseconds of processor for "
      "each,\n"
      "all told; memory for content read, and with property dictionaries as objects, against decoded content\n");
  for (const std::size_t elements : {12'500, 25'000, 50'000, 100'000, 200'000}) {
    const FullPage page = MeasureFullPage(folder, elements, rounds);
    const double microseconds = (page.edit.processor - empty.edit.processor) * 1e6 / static_cast<double>(elements);
    const double read = page.read.megabytes - empty.read.megabytes;
    const double edit = page.edit.megabytes - empty.edit.megabytes;
    std::printf("  %7zu sequences  %5.2f s   %5.2f us   %4.1f MB   read %5.1f MB x %4.2f   objects %5.1f MB x %5.2f\n",
                elements, page.edit.seconds, microseconds, page.decodedMegabytes, read, read / page.decodedMegabytes, edit,
                edit / page.decodedMegabytes);
  }
}

void Benchmark(const std::string& folder, int rounds) {
  std::printf("all content read, an element taken out of each page, saved; whole processes, medians of %d rounds\n", rounds);
  const Costs single = ComparePages(folder, 1000, rounds);
  const Costs twice = ComparePages(folder, 2000, rounds);
  std::printf("twice the pages\n");
  PrintRatio("ours", twice.ours, single.ours);
  CompareFullPages(folder, rounds);
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  return tgx::bench::InTemporaryFolder([rounds](const std::string& folder) { Benchmark(folder, rounds); });
}
