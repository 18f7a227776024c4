#pragma once

#include <functional>

namespace tgx {

/// What TGX_Action and TGX_Fixups are wrapped in. Clears the last-error text, runs `operation` inside an exception frame and
/// gives its result. A host's raise and every std::exception end as TGX_FAILED with their text as the last-error text; other
/// exceptions pass. After an exception the frame is not popped, also when it was not the host's.
int RunEntryPoint(const std::function<int()>& operation);

/// The last-error text: never null, empty after a success or a failure without text.
const char* LastErrorText() noexcept;

}  // namespace tgx
