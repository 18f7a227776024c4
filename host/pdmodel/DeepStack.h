#pragma once

#include <functional>

namespace tgx::host {

/// Runs `work` on a stack as large as the address space gives, and waits for it; what it throws is thrown here. For code of
/// qpdf that follows the links between objects by recursion: a chain of objects may be as long as a file can make it. The
/// memory of the stack is used only as far as the recursion goes, a few times what the objects take themselves.
void OnDeepStack(const std::function<void()>& work);

}  // namespace tgx::host
