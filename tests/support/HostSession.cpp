#include "host/core/Tables.h"

namespace tgx::test {

const HostTables* EmbeddedTables() { return host::Tables(); }

}  // namespace tgx::test
