// Not committed: pictures of the search and duplicates screens in their states.
#include <QDir>

#include "analysis_screens_support.h"
#include "search/qt/duplicate_state.h"
#include "search/qt/search_state.h"
#include "ui/ui_state.h"

namespace orrelin::testing {
namespace {

class ShotsTest : public MainWindowTest {};

TEST_F(ShotsTest, Pictures) {
  const QString out = qEnvironmentVariable("ORRELIN_SHOTS");
  if (out.isEmpty()) GTEST_SKIP();
  QDir().mkpath(out);
  if (model().catalogs().empty()) model().loadSampleData();
  window()->resize(1500, 1120);
  auto grab = [&](const QString& name) {
    spin(400);
    window()->grabWindow().save(out + "/" + name + ".png");
  };
  const QStringList themes = qEnvironmentVariable("SHOT_THEMES", "Obsidian,Synth").split(',');
  const QList<double> zooms = {1.0, 1.8};
  for (const QString& theme : themes) {
    for (double zoom : zooms) {
      ui().selectTheme(theme);
      ui().setZoom(zoom);
      const QString tag = theme.section(' ', 0, 0).toLower() + "-" + QString::number(int(zoom * 100));
      SearchState& s = SearchState::shared();
      s.resetFilters();
      s.setText("a");
      model().setSection(AppSection::search);
      s.run();
      waitUntil([&] { return !s.busy(); });
      grab("search-results-" + tag);
      s.setUseDates(true);
      s.setKinds({"Image", "Video"});
      s.setMode("Regex");
      s.setText("([");
      s.run();
      waitUntil([&] { return !s.busy(); });
      grab("search-error-" + tag);
      s.resetFilters();
      s.setText("zzzzqqq");
      s.run();
      waitUntil([&] { return !s.busy(); });
      grab("search-none-" + tag);

      DuplicateState& d = DuplicateState::shared();
      d.setMinSizeMB(0);
      model().setSection(AppSection::duplicates);
      d.run();
      waitUntil([&] { return !d.busy(); });
      grab("dups-results-" + tag);
      d.setModeIndex(1);
      d.run();
      waitUntil([&] { return !d.busy(); });
      grab("dups-hash-" + tag);
      d.setModeIndex(0);
    }
  }
}

}  // namespace
}  // namespace orrelin::testing
