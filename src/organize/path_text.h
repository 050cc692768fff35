// Arithmetic on absolute paths as text, without touching the disk.
#pragma once

#include <string>
#include <string_view>

namespace orrelin::PathText {

// The lexical normal form of a path: "." and empty components dropped, ".." removing the component before
// it (never above "/"), no trailing slash. A relative path is first put under the working folder.
std::string standardize(std::string_view path);
// True when `path` lies strictly below `folder` (both standardized): it begins with the folder and "/".
bool isBelow(std::string_view path, std::string_view folder);
// The folder that holds a standardized path; "/" for "/" and for a path directly below it.
std::string parent(std::string_view path);
// The last component of a path; the path itself when it has no "/".
std::string lastComponent(std::string_view path);
// The full Unicode lower-case mapping of a text, for comparisons that ignore case.
std::string lowercased(std::string_view text);

}  // namespace orrelin::PathText
