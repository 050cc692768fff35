// The themes' texts and colours.
#include "ui/theme_id.h"

namespace orrelin {

namespace {

struct RGBA {
  int r, g, b;
  double a = 1.0;
  QColor color() const { return QColor::fromRgbF(r / 255.0f, g / 255.0f, b / 255.0f, static_cast<float>(a)); }
};

struct ThemeData {
  const char* raw;
  const char* blurb;
  RGBA bgTop, bgBottom, panel, stroke, text, subtext, accent, accent2, glow, ok, warn, danger;
};

// Indexed by ThemeID.
const ThemeData kThemes[] = {
    {"Obsidian Laser", "Obsidian black with cyan and teal lasers", {10, 16, 22}, {2, 3, 6}, {18, 28, 38, 0.66},
     {25, 230, 255, 0.22}, {230, 246, 255}, {134, 164, 184}, {25, 230, 255}, {0, 255, 198}, {25, 230, 255},
     {60, 255, 160}, {255, 184, 76}, {255, 84, 112}},
    {"Aurora Drift", "Midnight green with violet aurora light", {8, 24, 22}, {4, 6, 14}, {18, 36, 34, 0.62},
     {120, 255, 190, 0.22}, {232, 255, 246}, {140, 184, 170}, {90, 255, 170}, {178, 120, 255},
     {110, 255, 190}, {90, 255, 170}, {255, 210, 100}, {255, 100, 140}},
    {"Solar Flare", "Charcoal with orange and magenta flare", {26, 14, 12}, {8, 4, 6}, {40, 24, 22, 0.64},
     {255, 140, 60, 0.25}, {255, 242, 232}, {196, 156, 140}, {255, 140, 50}, {255, 60, 150}, {255, 120, 60},
     {120, 240, 140}, {255, 210, 90}, {255, 70, 90}},
    {"Deep Ocean", "Abyssal navy with electric blue", {6, 18, 40}, {2, 4, 14}, {14, 30, 60, 0.62},
     {70, 150, 255, 0.25}, {228, 240, 255}, {132, 160, 200}, {64, 150, 255}, {60, 230, 255}, {70, 140, 255},
     {70, 230, 170}, {255, 196, 90}, {255, 90, 120}},
    {"Mono Steel", "Graphite with brushed silver highlights", {30, 32, 36}, {10, 11, 13}, {44, 47, 52, 0.66},
     {220, 226, 235, 0.18}, {240, 242, 245}, {160, 166, 176}, {210, 220, 235}, {140, 190, 255},
     {200, 215, 240}, {130, 230, 160}, {240, 200, 110}, {255, 110, 110}},
    {"Synthwave", "Deep purple with hot pink neon", {30, 8, 46}, {8, 2, 18}, {46, 16, 66, 0.62},
     {255, 70, 200, 0.26}, {255, 236, 252}, {196, 150, 210}, {255, 70, 200}, {90, 220, 255}, {255, 70, 200},
     {100, 255, 190}, {255, 210, 90}, {255, 80, 110}},
};

const ThemeData& data(ThemeID theme) { return kThemes[static_cast<int>(theme)]; }

}  // namespace

const std::vector<ThemeID>& allThemes() {
  static const std::vector<ThemeID> all = {ThemeID::obsidian, ThemeID::aurora, ThemeID::solar,
                                           ThemeID::ocean,    ThemeID::steel,  ThemeID::synth};
  return all;
}

QString rawText(ThemeID theme) { return QString::fromUtf8(data(theme).raw); }

QString blurb(ThemeID theme) { return QString::fromUtf8(data(theme).blurb); }

Palette palette(ThemeID theme) {
  const ThemeData& t = data(theme);
  return Palette{t.bgTop.color(),   t.bgBottom.color(), t.panel.color(), t.stroke.color(),
                 t.text.color(),    t.subtext.color(),  t.accent.color(), t.accent2.color(),
                 t.glow.color(),    t.ok.color(),       t.warn.color(),  t.danger.color()};
}

QStringList themeRawTexts() {
  QStringList texts;
  for (ThemeID theme : allThemes()) texts << rawText(theme);
  return texts;
}

}  // namespace orrelin
