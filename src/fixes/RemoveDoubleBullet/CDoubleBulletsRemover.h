#pragma once

#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
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
  /// What marked content says and what it shows in codes of two bytes. Equal texts are one object.
  struct Texts {
    const ByteVector* actual;
    const ByteVector* utf16;
  };
  /// What the host says of an element's parent.
  struct Parent {
    PDSElement element;
    bool isNone;            ///< the tree root, or nothing
    std::size_t deletions;  ///< that had been made then
  };
  /// A piece of marked content in the tree.
  struct MarkedContentRecord {
    PDSMCInfo mcInfo;
    PDSElement element;
    CosObj kid;
    PDEContainer container;
    Texts texts;
    std::optional<Parent> parent;
  };

  void ReadTexts();
  /// Read once a container: it can stand in the tree any number of times.
  Texts TextsOf(PDEContainer container);
  void CompareRecords();
  /// Whether the first has the text that the second shows, and the second has none of its own. Bytes count: another byte
  /// order is another text.
  static bool IsCopyOf(const Texts& hidden, const Texts& shown);
  /// Asked anew only after a deletion: each record is compared with ten.
  const Parent& ParentOf(MarkedContentRecord& record) const;
  bool ArePair(MarkedContentRecord& a, MarkedContentRecord& b) const;
  bool HasRole(const PDSElement& element, const char* role) const;
  void Delete(const MarkedContentRecord& record);

  PDDoc document_ = nullptr;
  std::vector<std::unique_ptr<MarkedContentRecord>> records_;  ///< in tree order
  std::size_t deletions_ = 0;
  ContainerIndex containers_;
  const ByteVector noText_{};
  std::set<ByteVector> distinctTexts_;
  std::unordered_map<PDEContainer, Texts> texts_;
};

}  // namespace tgx
