#pragma once

/// The library's one way to its host: every operation can be called by its own name, and each call fetches the table anew.
#define TGX_HOST_FORWARDERS
#include <tgx/tgx.h>

namespace tgx {

/// The client's identity that TGX_init was given, for the host operations that ask for it.
ASExtension ExtensionId();

}  // namespace tgx
