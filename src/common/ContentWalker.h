#pragma once

#include <deque>

#include "src/api/HostBinding.h"
#include "src/common/WalkerBase.h"

namespace tgx {

/// What a ContentWalker tells.
class IContentVisitor {
 public:
  /// Every element of every list that is walked. The visitor may put another handle in the place of this one.
  virtual void VisitElement(PDEElement& element) = 0;
  /// A list, before its first element.
  virtual void VisitContent(PDEContent content) = 0;
  /// A container, after VisitElement and before its content.
  virtual void VisitContainer(PDEContainer container) = 0;
  /// A group, likewise.
  virtual void VisitGroup(PDEGroup group) = 0;
  virtual ~IContentVisitor() = default;
};

/// Does nothing on every event.
class ContentVisitorBase : public IContentVisitor {
 public:
  void VisitElement(PDEElement& /*element*/) override {}
  void VisitContent(PDEContent /*content*/) override {}
  void VisitContainer(PDEContainer /*container*/) override {}
  void VisitGroup(PDEGroup /*group*/) override {}
};

/// Walks the content of a page, containers and groups included, form XObjects not. Visitors may take elements out of the
/// lists while it walks: it sees that a list's number of elements changed and that the element under visit is gone, and goes
/// on with the one that moved up.
class ContentWalker : public WalkerBase<IContentVisitor> {
 public:
  /// Back to the state at rest.
  void Reset();
  /// Walks the page's content and writes it back, changed or not. The content stays acquired.
  void Walk(PDPage page);
  void WalkContent(PDEContent content);
  void WalkElement(PDEElement element);
  /// The part of WalkElement for containers.
  void WalkContainer(PDEContainer container);

  /// Whether the innermost list that is being walked holds the element.
  bool IsInCurrentContent(PDEElement element) const;
  /// The innermost list that is being walked; there must be one.
  PDEContent TopContent() const { return contentStack_.back(); }
  /// The list that was entered last, null at rest. After a container was walked this still names the container's list, not
  /// the one that holds the container.
  PDEContent CurrentContent() const { return currentContent_; }
  /// The index of the element under visit, -1 at rest.
  ASInt32 CurrentIndex() const { return currentIndex_; }
  /// Ends the walk as soon as the visitor returns.
  void SetStop(bool stop) { stop_ = stop; }

  /// Takes an element out of a list, as PDEContentRemoveElem does, and remembers it when it is the one under visit, so that
  /// it need not be searched for. The visitor must not put it back during the visit.
  void RemoveElement(PDEContent content, ASInt32 index);

  /// The MCID of a container, -1 if it has none.
  static ASInt32 GetMCID(PDEContainer container);

 private:
  void WalkGroup(PDEGroup group);

  PDEContent currentContent_ = nullptr;
  ASInt32 currentIndex_ = -1;
  bool stop_ = false;
  std::deque<PDEContent> contentStack_;
  // The element that RemoveElement took away during the present visit.
  PDEElement removed_ = nullptr;
};

}  // namespace tgx
