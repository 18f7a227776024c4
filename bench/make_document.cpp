// Makes the document of the benchmarks:  tgx_make_document PAGES OUT.pdf
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/MarkedDocument.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "use: %s PAGES OUT.pdf\n", argv[0]);
    return 1;
  }
  try {
    const auto size = tgx::bench::MakeMarkedDocument(std::strtoul(argv[1], nullptr, 10), TGX_FONT_DOCUMENT, argv[2]);
    std::printf("%zu pages, %zu structure elements, %zu marked contents\n", size.pages, size.elements, size.markedContents);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
