#pragma once

#include <string>
#include <vector>

#include "src/actions/PDFAction.h"
#include "src/actions/Toc/TocMetaData.h"

namespace tgx {

/// Rebuilds the table of contents in which an exporter left a placeholder, an element with "TOC_FRAME" in its "Alt": the
/// lines that a file of metadata describes become a nested "TOC", the title an "H1", the placeholder goes with its content.
class TocProcessorV2 : public PDFAction {
 public:
  /// Reads the metadata and runs, also when the file cannot be read: then no line is recognised. Always true.
  bool LoadMetaData(const std::string& path);
  /// The action with the metadata that is there. Does nothing for a document without a structure tree. Always true.
  virtual bool run();
  bool Run() override { return run(); }

 private:
  std::vector<TocItem> items_;
};

}  // namespace tgx
