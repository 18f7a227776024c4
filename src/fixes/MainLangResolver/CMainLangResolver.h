#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/contentvisitors/ContainerIndex.h"

namespace tgx {

/// Decides the main language of a document by the amount of text under each language, and writes it as "Lang" of the
/// top-level element of type "Document". A language is the bytes of a "Lang" as they stand: of elements without zero bytes,
/// of marked content with them.
class CMainLangResolver {
 public:
  virtual ~CMainLangResolver() = default;

  /// False for a null document and for one without a structure tree.
  bool Run(PDDoc document);

 protected:
  virtual void VisitKid(PDSElement& element, const std::string& kind, const PDSMCInfo& mcInfo);
  virtual void VisitMarkedContent(PDSElement& element, const PDSMCInfo& mcInfo);

 private:
  using Language = std::vector<char>;
  /// Bytes compare as signed values: those from 0x80 on come before ASCII.
  struct SignedByteOrder {
    bool operator()(const Language& a, const Language& b) const;
  };

  using Counts = std::map<Language, std::int32_t, SignedByteOrder>;

  /// Has the language in scope, if it is one, during the work.
  template <typename Work>
  void WithLanguage(const Language& language, const Work& work);
  /// What CContentTextCounter says of the container, which it is asked once.
  std::int32_t CountOf(PDEContainer container);
  void StoreWinner();

  PDDoc document_ = nullptr;
  std::vector<Counts::value_type*> languages_;  ///< in scope, the innermost last; each found once, for all text under it
  Counts counts_;
  ContainerIndex containers_;
  std::unordered_map<PDEContainer, std::int32_t> countOf_;
};

}  // namespace tgx
