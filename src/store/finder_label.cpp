// The Finder label table.
#include "store/finder_label.h"

#include <cstddef>

namespace orrelin::FinderLabel {

namespace {

constexpr std::array<std::string_view, kCount> kNames = {"None", "Gray",   "Green", "Purple",
                                                         "Blue", "Yellow", "Red",   "Orange"};

constexpr std::array<LabelColor, kCount> kColors = {{
    {0.5, 0.5, 0.5},
    {0.6, 0.6, 0.62},
    {0.2, 0.8, 0.35},
    {0.65, 0.4, 0.9},
    {0.2, 0.55, 1.0},
    {1.0, 0.85, 0.2},
    {1.0, 0.3, 0.3},
    {1.0, 0.6, 0.2},
}};

constexpr bool inRange(int index) { return index >= 0 && index < kCount; }

// ASCII folding is enough: the only non-ASCII letter whose lower case is ASCII is the Kelvin sign,
// and no label name has a "k" in it.
constexpr char lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

const std::array<std::string_view, kCount>& names() { return kNames; }

std::string_view name(int index) { return kNames[inRange(index) ? index : 0]; }

LabelColor rgb(int index) { return kColors[inRange(index) ? index : 0]; }

int colorIndex(std::string_view tag) {
  // Index 0, "None", is no colour a tag can ask for.
  for (int index = 1; index < kCount; ++index) {
    std::string_view candidate = kNames[index];
    if (candidate.size() != tag.size()) continue;
    bool same = true;
    for (std::size_t i = 0; i < tag.size() && same; ++i) same = lower(tag[i]) == lower(candidate[i]);
    if (same) return index;
  }
  return 0;
}

}  // namespace orrelin::FinderLabel
