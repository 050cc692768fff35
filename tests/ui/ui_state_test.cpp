// The theme and the zoom: what is read back from the settings, the tenth-rounding of every zoom change,
// and the palettes' values.
#include "ui/ui_state.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "core/user_defaults.h"
#include "ui/theme_id.h"

namespace orrelin {
namespace {

TEST(UIStateTest, StartValuesComeFromTheSettingsWithinBounds) {
  struct Case {
    nlohmann::json storedZoom;
    double zoom;
  };
  const Case cases[] = {{nullptr, 1.0}, {0, 1.0}, {9, 2.5}, {0.2, 0.5}, {1.7, 1.7}, {-3, 0.5}, {"big", 1.0}};
  for (const Case& c : cases) {
    UserDefaults::set(UIState::kZoomKey, c.storedZoom);
    EXPECT_DOUBLE_EQ(UIState(nullptr).zoom(), c.zoom) << c.storedZoom.dump();
  }

  const std::pair<nlohmann::json, ThemeID> themes[] = {{nullptr, ThemeID::obsidian},
                                                       {"Solar Flare", ThemeID::solar},
                                                       {"solar flare", ThemeID::obsidian},
                                                       {"Pastel Dream", ThemeID::obsidian},
                                                       {42, ThemeID::obsidian}};
  for (const auto& [stored, theme] : themes) {
    UserDefaults::set(UIState::kThemeKey, stored);
    EXPECT_EQ(UIState(nullptr).theme(), theme) << stored.dump();
  }
}

TEST(UIStateTest, ZoomStepsInTenthsAndStopsAtTheBounds) {
  UIState state(nullptr);
  const std::pair<double, const char*> levels[] = {{0.5, "50%"},   {0.75, "80%"},  {1.0, "100%"},
                                                   {1.25, "130%"}, {1.5, "150%"},  {1.75, "180%"},
                                                   {2.0, "200%"},  {2.5, "250%"},  {0.44, "50%"},
                                                   {3.0, "250%"},  {1.049, "100%"}, {1.05, "110%"}};
  for (const auto& [level, percent] : levels) {
    state.setZoom(level);
    EXPECT_EQ(state.zoomPercent().toStdString(), percent) << level;
  }

  state.setZoom(2.5);
  state.zoomIn();
  EXPECT_DOUBLE_EQ(state.zoom(), 2.5);
  state.setZoom(0.5);
  state.zoomOut();
  EXPECT_DOUBLE_EQ(state.zoom(), 0.5);
  // Ten steps up from 50% land exactly on 150%: no drift from adding tenths.
  for (int i = 0; i < 10; ++i) state.zoomIn();
  EXPECT_EQ(state.zoomPercent(), "150%");
  EXPECT_DOUBLE_EQ(state.s(10), 15);
  state.resetZoom();
  EXPECT_DOUBLE_EQ(state.s(10), 10);
  state.setZoom(2);
  EXPECT_DOUBLE_EQ(state.s(10), 20);

  // Written through at once: a new reader sees it.
  EXPECT_DOUBLE_EQ(UIState(nullptr).zoom(), 2.0);
}

TEST(UIStateTest, ThemeIsStoredByNameAndAnnounced) {
  UIState state(nullptr);
  QSignalSpy changed(&state, &UIState::themeChanged);
  state.setTheme(ThemeID::synth);
  state.setTheme(ThemeID::synth);
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(UserDefaults::string(UIState::kThemeKey), "Synthwave");
  EXPECT_EQ(UIState(nullptr).theme(), ThemeID::synth);

  // Launch-argument matching: case-insensitive prefixes, empty picks the first, no match changes nothing.
  EXPECT_TRUE(state.selectTheme("solar"));
  EXPECT_EQ(state.theme(), ThemeID::solar);
  EXPECT_TRUE(state.selectTheme("DEEP"));
  EXPECT_EQ(state.theme(), ThemeID::ocean);
  EXPECT_FALSE(state.selectTheme("pastel"));
  EXPECT_EQ(state.theme(), ThemeID::ocean);
  EXPECT_TRUE(state.selectTheme(""));
  EXPECT_EQ(state.theme(), ThemeID::obsidian);
}

TEST(UIStateTest, PalettesHoldTheirColours) {
  ASSERT_EQ(allThemes().size(), 6u);
  EXPECT_EQ(themeRawTexts(), QStringList({"Obsidian Laser", "Aurora Drift", "Solar Flare", "Deep Ocean",
                                          "Mono Steel", "Synthwave"}));
  const Palette obsidian = palette(ThemeID::obsidian);
  EXPECT_EQ(obsidian.bgTop, QColor(10, 16, 22));
  EXPECT_EQ(obsidian.accent, QColor(25, 230, 255));
  EXPECT_EQ(obsidian.danger, QColor(255, 84, 112));
  EXPECT_NEAR(obsidian.panel.alphaF(), 0.66, 0.003);
  EXPECT_EQ(obsidian.panel.red(), 18);
  const Palette synth = palette(ThemeID::synth);
  EXPECT_EQ(synth.accent2, QColor(90, 220, 255));
  EXPECT_NEAR(synth.stroke.alphaF(), 0.26, 0.003);
  EXPECT_EQ(palette(ThemeID::steel).warn, QColor(240, 200, 110));
  EXPECT_EQ(blurb(ThemeID::aurora), "Midnight green with violet aurora light");
  // No two themes share an accent: each must look different.
  QSet<QRgb> accents;
  for (ThemeID theme : allThemes()) accents.insert(palette(theme).accent.rgb());
  EXPECT_EQ(accents.size(), 6);
}

}  // namespace
}  // namespace orrelin
