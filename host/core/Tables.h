#pragma once

#include <tgx/host.h>

namespace tgx::host {

/// The embedded host's tables: the same bundle on every call.
const HostTables* Tables();

}  // namespace tgx::host
