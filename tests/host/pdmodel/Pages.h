#pragma once

#include <string>
#include <vector>

#include <tgx/host.h>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {

inline const PDModelTable& Model() { return *Tables()->pdModel; }

/// A document whose pages have these entries. The pages are the objects 10, 11 and so on; `moreObjects` ("20 0 obj ...
/// endobj") can be referred to.
inline HostDocument WithPages(const std::vector<std::string>& pages, const std::string& moreObjects = "",
                              const std::string& treeEntries = "") {
  std::string kids;
  std::string objects;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const std::string number = std::to_string(10 + i);
    kids += number + " 0 R ";
    objects += number + " 0 obj\n<< /Type /Page /Parent 2 0 R " + pages[i] + " >>\nendobj\n";
  }
  return HostDocument::FromObjects("<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count " +
                                   std::to_string(pages.size()) + " /Kids [" + kids + "] " + treeEntries + " >>\nendobj\n" +
                                   objects + moreObjects);
}

inline PDPage PageOf(HostDocument& document, int number) { return Model().PDDocAcquirePage(document->Handle(), number); }

/// An object as PDF text.
inline std::string Text(CosObj object) { return QPDFObjectHandle(ObjectOf(object)).unparseResolved(); }

}  // namespace tgx::host
