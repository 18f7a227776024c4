#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/core/Atoms.h"
#include "host/core/Tables.h"
#include "host/cos/ObjectTable.h"
#include "tests/host/HostDocument.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx::host::structure {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

inline const PDSEditReadTable& Read() { return *Tables()->pdsEditRead; }
inline const PDSEditWriteTable& Write() { return *Tables()->pdsEditWrite; }
inline const CosTable& Cos() { return *Tables()->cos; }

/// Everything that the host tells about one kid.
struct SeenKid {
  std::string type;
  CosObj kid = kNullObject;
  ASInt32 mcid = -7;
  void* pointer = nullptr;
  CosObj page = kNullObject;
};

/// A document made for a test and opened by the host, with shorthands for its structure.
class StructureDocument {
 public:
  explicit StructureDocument(TestDocument& document) : open_(document.Write()) {}
  explicit StructureDocument(const std::string& bytes) : open_(bytes) {}

  PDDoc Handle() const { return open_.Handle(); }
  CosDoc Doc() { return Tables()->pdModel->PDDocGetCosDoc(Handle()); }
  CosObj PageObject(int index);

  PDSTreeRoot Root();
  /// The element at the end of a path of kid indexes from the root.
  PDSElement At(const std::vector<ASInt32>& path);

  PDSElement NewElement(const char* type = nullptr);
  std::string Save() { return open_.Save(); }
  std::string SavedTree() { return test::SavedTree(open_); }

 private:
  OpenDocument open_;
};

SeenKid KidOf(PDSElement parent, ASInt32 index);
PDSElement ParentOf(PDSElement element);
std::string TypeOf(PDSElement element);
/// The types of the kids, as "P Span MC".
std::string KidsOf(PDSElement parent);
std::string TitleOf(PDSElement element);

inline std::string Repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace tgx::host::structure
