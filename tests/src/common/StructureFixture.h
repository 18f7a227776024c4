#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "src/api/HostBinding.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx::test {

/// Library code on a real document: the library is bound to the embedded host for the length of a test.
class StructureTest : public testing::Test {
 protected:
  /// Opens what was built in `doc`; the document stays open until the end of the test.
  PDDoc Open() {
    open_ = std::make_unique<OpenDocument>(doc.Write());
    return open_->Handle();
  }
  OpenDocument& Opened() { return *open_; }

  PDSTreeRoot Root() {
    PDSTreeRoot root = {};
    EXPECT_EQ(PDDocGetStructTreeRoot(open_->Handle(), &root), 1);
    return root;
  }
  /// The top-level element at that place.
  PDSElement Top(int index = 0) {
    PDSElement element = {};
    PDSTreeRootGetKid(Root(), index, &element);
    return element;
  }
  static CosObj Kid(PDSElement element, int index) {
    CosObj kid = {};
    PDSElementGetKid(element, index, &kid, nullptr, nullptr);
    return kid;
  }
  /// The kid's kid's kid: At({0, 2}) is the third kid of the first top-level element.
  PDSElement At(std::initializer_list<int> path) {
    PDSElement element = Root();
    for (const int index : path) element = Kid(element, index);
    return element;
  }
  static std::string Type(PDSElement element) { return ASAtomGetString(PDSElementGetType(element)); }
  /// The number of the page with that dictionary, from 1; 0 for the null object.
  static int PageNumber(CosObj page) { return CosObjGetType(page) == CosNull ? 0 : PDPageNumFromCosObj(page) + 1; }
  static bool IsNull(CosObj object) { return CosObjEqual(object, CosNewNull()) != 0; }

  TestDocument doc;

 private:
  HostSession session_;
  std::unique_ptr<OpenDocument> open_;
};

}  // namespace tgx::test
