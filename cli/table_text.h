// Text laid out in a terminal's columns: widths that count what the eye sees, not bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orrelin::cli {

// The width of UTF-8 text in a terminal's columns: wide East Asian characters take two, combining marks
// and format characters none.
size_t displayWidth(std::string_view text);

// Text fit for one table cell: control characters (a line break in a name) shown as "?", and clipped
// with an ellipsis to `columns` when longer, else padded with blanks to `columns`.
std::string cell(std::string_view text, size_t columns);

// `text` padded with blanks to `columns`; longer text is kept whole.
std::string padded(std::string_view text, size_t columns);

}  // namespace orrelin::cli
