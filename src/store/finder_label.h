// The eight Finder colour labels: their names, their colours, and which tag names one.
#pragma once

#include <array>
#include <string_view>

namespace orrelin {

// A label colour with channels from 0 to 1.
struct LabelColor {
  double red = 0;
  double green = 0;
  double blue = 0;

  bool operator==(const LabelColor&) const = default;
};

namespace FinderLabel {

inline constexpr int kCount = 8;

// Returns the eight label names in index order, "None" first; an imported label name is looked up here.
const std::array<std::string_view, kCount>& names();

// Returns the name of label `index`, or "None" when `index` is outside 0 to 7.
std::string_view name(int index);

// Returns the colour of label `index`, or the grey of "None" when `index` is outside 0 to 7.
LabelColor rgb(int index);

// Returns the label (1 to 7) whose name equals `tag` apart from case, or 0 when none does;
// "Dark Red" and "none" give 0.
int colorIndex(std::string_view tag);

}  // namespace FinderLabel
}  // namespace orrelin
