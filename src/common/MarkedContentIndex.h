#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/common/ContentWalker.h"

namespace tgx {

/// Counts of things at indices of a row, and how many there are in front of an index; both cost the logarithm of its length.
class PrefixCounts {
 public:
  void Add(std::size_t index, std::size_t size);
  ASInt32 Before(std::size_t index) const;

 private:
  std::vector<ASInt32> sums_;  // a binary indexed tree, made at the first addition
};

/// The containers of one page by MCID, as a walk over the page finds them.
class PageContainers : private ContentVisitorBase {
 public:
  explicit PageContainers(PDPage page);
  PageContainers(const PageContainers&) = delete;
  PageContainers& operator=(const PageContainers&) = delete;

  /// Takes the first container of the MCID, in walk order, out of its list; nothing when the page has none left.
  void Remove(ASInt32 mcid);

 private:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  struct Container {
    PDEContainer handle;
    std::uint32_t list;      // that it stands in
    ASInt32 index;           // in that list, before anything was removed
    std::uint32_t sameMcid;  // the next one with its MCID
    bool isRemoved;
  };
  struct List {
    PDEContent handle;
    std::uint32_t around;  // the container that holds it
    PrefixCounts removed;  // what was taken out of it, by index
  };

  void VisitElement(PDEElement& element) override;
  void VisitContent(PDEContent content) override;
  void VisitContainer(PDEContainer container) override;

  bool IsOnPage(const Container& container) const;
  void TakeOut(Container& container);

  ContentWalker walker_;
  std::vector<Container> containers_;
  std::vector<List> lists_;
  std::unordered_map<PDEContent, std::uint32_t> listOf_;
  std::unordered_map<ASInt32, std::uint32_t> firstOf_;
  std::unordered_map<ASInt32, std::uint32_t> lastOf_;
  std::uint32_t around_ = kNone;  // the container whose list is entered next
};

/// Removes marked content from pages that nobody else edits meanwhile. Each page is walked once, so that many removals from
/// one page do not cost the square of its content.
class MarkedContentIndex {
 public:
  /// Takes the first container of the MCID, in walk order, off the page; nothing when there is none. The caller commits.
  void Remove(PDPage page, ASInt32 mcid);

 private:
  std::unordered_map<std::uint64_t, PageContainers> pages_;
};

}  // namespace tgx
