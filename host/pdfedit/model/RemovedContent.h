#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <tgx/embedded_host.h>

namespace tgx::host {

class PageContents;
class PageModel;

/// An element of a page's model that the page does not paint any more, or not all of.
struct RemovedElement {
  PageModel* page;  ///< not always the present one of its page: a client may have put other content there since
  std::uint32_t number;
};

/// What is told of an entry of PageContents::Removed. Throw kASOutOfRange.
TGXHostRemovedContent DescribeRemoved(PageContents& contents, std::size_t index);
ASFixedRect BoxOfRemoved(PageContents& contents, std::size_t index);

}  // namespace tgx::host
