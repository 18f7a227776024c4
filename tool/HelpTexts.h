#pragma once

namespace tgx::tool {

// Shown by --help and by the manual page, preformatted.

inline constexpr const char* kStepForms =
    "A STEP is one of\n"
    "  NAME or NAME:FILE          an action or a fix by its name\n"
    "  action=N or action=N:FILE  an action by its number\n"
    "  fixups=MASK                fixes by their bits, decimal or 0x...\n\n";

inline constexpr const char* kExitStatus =
    "Exit status:\n"
    "  0        all went well\n"
    "  1        wrong use, or a file that cannot be read, opened or written\n"
    "  2, 3, 4  the result code of the step that failed:\n"
    "           2 the step failed, 3 there is no such action, 4 the action got no file\n";

}  // namespace tgx::tool
