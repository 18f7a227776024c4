#pragma once

#include <memory>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/TextEncoding.h"
#include "src/common/contentvisitors/ContainerIndex.h"

namespace tgx {

/// Removes the second copy of a list bullet: of two "Span" in a "Lbl", one with the bullet as "ActualText" and one that
/// shows it, the one with the "ActualText" goes from the tree and from the page.
class CDoubleBulletsRemover {
 public:
  virtual ~CDoubleBulletsRemover() = default;

  /// False for a null document and for one without a structure tree.
  bool Run(PDDoc document);

 protected:
  virtual void VisitElement(PDSElement& /*element*/) {}
  virtual void VisitKid(PDSElement& element, const CosObj& kid, ASAtom kind, const PDSMCInfo& mcInfo);

 private:
  /// A piece of marked content in the tree.
  struct MarkedContentRecord {
    PDSMCInfo mcInfo;
    PDSElement element;
    CosObj kid;
    PDEContainer container;
    ByteVector singleByteText;
    ByteVector utf16Text;
    ByteVector utf32Text;
    ByteVector rawText;
    ByteVector actualText;
  };

  void Enter(PDSElement element);
  void ReadTexts();
  void CompareRecords();
  bool ArePair(const MarkedContentRecord& a, const MarkedContentRecord& b) const;
  bool HasRole(const PDSElement& element, const char* role) const;
  void Delete(const MarkedContentRecord& record);

  PDDoc document_ = nullptr;
  std::vector<std::unique_ptr<MarkedContentRecord>> records_;  ///< in tree order
  ContainerIndex containers_;
};

}  // namespace tgx
