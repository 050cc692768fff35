// The built-in self-test behind "orrelin --selftest": the subsystems exercised end to end in a temporary
// data folder, one line per check.
#pragma once

#include <filesystem>
#include <ostream>

namespace orrelin {

// Runs every check in a fresh folder under $TMPDIR (when absolute, else /tmp), with XDG_DATA_HOME and
// XDG_CONFIG_HOME pointing into it for the duration (the user's own data and settings are never
// touched; both variables are restored afterwards, and the folder is removed). Prints "ok   <name>" or
// "FAIL <name>: <reason>" for each check, then "N passed, M failed". Returns 0 when every check passed,
// else 1. Not thread-safe: it changes the process's environment.
int runSelfTest(std::ostream& out);

// The same, with the temporary folder made under `tempBase` instead.
int runSelfTest(std::ostream& out, const std::filesystem::path& tempBase);

}  // namespace orrelin
