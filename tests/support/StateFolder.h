#pragma once

namespace tgx::test {

/// Gives this process a state folder of its own until it ends, so that the log that the library keeps there does not get
/// into the user's. The library remembers the folder of its first entry.
void UseOwnStateFolder();

}  // namespace tgx::test
