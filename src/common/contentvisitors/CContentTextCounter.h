#pragma once

#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Counts the text runs in a container.
class CContentTextCounter {
 public:
  CContentTextCounter();
  virtual ~CContentTextCounter() = default;

  /// The number of runs less one: the count starts at -1, and callers rely on it. -1 for null too.
  std::int32_t Count(PDEContainer container);

 private:
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);
  void VisitText(PDEElement& text);
  void Ignore(PDEElement&) {}

  ContentDispatch<CContentTextCounter> dispatch_;
  std::int32_t count_ = 0;
};

}  // namespace tgx
