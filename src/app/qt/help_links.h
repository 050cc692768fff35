// The Help menu's two links: the user guide that ships with the program, and the maker's web site.
#pragma once

#include <filesystem>
#include <optional>

namespace orrelin::HelpLinks {

// The folder of the running executable (from /proc/self/exe); empty when it cannot be read.
std::filesystem::path executableDir();

// The user guide for an executable in `exeDir`: "../share/tvrl-orrelin/Help.html" of an installed
// program, else, for a program run from its build folder, "data/Help.html" of the source tree that the
// build folder (`exeDir` or one of its two parents, holding CMakeCache.txt) was configured from, or of the
// folder above `exeDir`. Nothing when none exists.
std::optional<std::filesystem::path> helpFile(const std::filesystem::path& exeDir);

// Opens the user guide in the default browser. Returns false, doing nothing, when there is no guide or
// it could not be opened.
bool openHelp();

// Opens AppInfo::website in the default browser. Returns false when the text is no valid address or the
// browser could not be started.
bool openWebsite();

}  // namespace orrelin::HelpLinks
