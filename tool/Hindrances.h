#pragma once

#include <optional>
#include <string>

#include <tgx/host.h>

#include "tool/Steps.h"

namespace tgx::tool {

/// What keeps a step from doing its work in a document.
struct Hindrance {
  std::int32_t page;   ///< counted from 1; 0 where it is about no page in particular
  std::string reason;  ///< in words for people, with the place where there is one
};

/// Looks for what made a step, by its name, fail, or let it do nothing. Nothing where no reason is known.
std::optional<Hindrance> FindHindrance(PDDoc document, const std::string& step);

/// What a step would do harm by if it was run now. Looked for before the step; nothing for most of them.
std::optional<Hindrance> FindHarm(PDDoc document, const StepCall& step);

}  // namespace tgx::tool
