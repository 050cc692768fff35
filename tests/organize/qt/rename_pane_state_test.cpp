// The Rename Assistant's observable state: the form as properties, the rows it publishes, and the messages
// of preview and apply as signals, on a real temporary drive.
#include "organize/qt/rename_pane_state.h"

#include <gtest/gtest.h>

#include <QVariantMap>

#include <filesystem>

#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::TempDir;

struct Heard {
  int form = 0, steps = 0;
  std::vector<std::pair<QString, QString>> alerts;
  std::vector<QString> toasts;
  std::vector<qint64> rescans;
};

class RenamePaneStateTest : public ::testing::Test {
 protected:
  TempDir data, drive;
  testing::ScopedEnv env;
  std::unique_ptr<CatalogDB> store;
  RenamePaneState state;
  Heard heard;

  void SetUp() override {
    env.set("XDG_DATA_HOME", data.path().string());
    store = std::make_unique<CatalogDB>(data.file("Catalogs.sqlite"));
    state.setStore(store.get());
    QObject::connect(&state, &RenamePaneState::formChanged, [this] { ++heard.form; });
    QObject::connect(&state, &RenamePaneState::stepsChanged, [this] { ++heard.steps; });
    QObject::connect(&state, &RenamePaneState::alertRaised,
                     [this](const QString& t, const QString& m) { heard.alerts.emplace_back(t, m); });
    QObject::connect(&state, &RenamePaneState::toastRaised,
                     [this](const QString& t) { heard.toasts.push_back(t); });
    QObject::connect(&state, &RenamePaneState::rescanRequested,
                     [this](qint64 id) { heard.rescans.push_back(id); });
  }

  int64_t catalogFiles(const std::vector<std::string>& names) {
    int64_t id = store->insertCatalog("Card", drive.path().string(), VolumeInfo{}, true, std::nullopt, false);
    for (const std::string& name : names) {
      testing::writeFile(drive.path() / name, name);
      store->db().run("INSERT INTO files(catalog_id, path, name) VALUES(?,?,?)", {id, name, name});
    }
    return id;
  }
};

TEST_F(RenamePaneStateTest, PropertiesWriteThroughToTheRuleAndNotifyOnlyOnChange) {
  EXPECT_EQ(state.property("catalogID").toLongLong(), -1);
  EXPECT_EQ(state.property("caseModeLabels").toStringList(),
            (QStringList{"Keep Case", "lowercase", "UPPERCASE", "Title Case"}));
  EXPECT_TRUE(state.setProperty("find", "ä"));
  EXPECT_TRUE(state.setProperty("find", "ä"));
  EXPECT_TRUE(state.setProperty("caseMode", 3));
  EXPECT_TRUE(state.setProperty("caseMode", 9));  // Out of range: ignored.
  EXPECT_TRUE(state.setProperty("digits", 5));
  EXPECT_TRUE(state.setProperty("keepExtension", false));
  EXPECT_EQ(heard.form, 4);
  EXPECT_EQ(state.pane().rule.find, "ä");
  EXPECT_EQ(state.pane().rule.caseMode, RenameRule::CaseMode::title);
  EXPECT_EQ(state.pane().rule.digits, 5);
  EXPECT_FALSE(state.pane().rule.keepExtension);
}

TEST_F(RenamePaneStateTest, PreviewPublishesRowsAndApplyReportsAndAsksForARescan) {
  int64_t id = catalogFiles({"b.txt", "a.txt", "keep.md"});
  state.setCatalogID(id);
  state.setFilter(".TXT");
  state.setSuffix("/1");
  state.preview();
  EXPECT_EQ(heard.steps, 1);
  QVariantList rows = state.steps();
  ASSERT_EQ(rows.size(), 2);
  QVariantMap first = rows[0].toMap();
  EXPECT_EQ(first["kind"].toString(), "Rename");
  EXPECT_EQ(first["from"].toString(), "a.txt");
  EXPECT_EQ(first["to"].toString(), "a-1.txt");
  EXPECT_EQ(first["status"].toString(), "Ready");
  EXPECT_TRUE(first["ok"].toBool());
  EXPECT_EQ(state.property("readyCount").toInt(), 2);
  EXPECT_EQ(state.property("blockedCount").toInt(), 0);

  state.apply();
  EXPECT_EQ(heard.steps, 2);
  EXPECT_TRUE(state.steps().isEmpty());
  EXPECT_EQ(heard.toasts, std::vector<QString>{"Renamed 2 items — undo any time from Organization Plan"});
  EXPECT_EQ(heard.rescans, std::vector<qint64>{id});
  EXPECT_TRUE(std::filesystem::exists(drive.path() / "b-1.txt"));
  EXPECT_TRUE(heard.alerts.empty());
}

TEST_F(RenamePaneStateTest, AnOfflineDriveRaisesAnAlertAndAClosedDatabaseNothing) {
  state.setCatalogID(store->insertCatalog("Away", "/no/such/root", VolumeInfo{}, false, std::nullopt, false));
  state.preview();
  state.setStore(nullptr);
  state.preview();
  ASSERT_EQ(heard.alerts.size(), 1u);
  EXPECT_EQ(heard.alerts[0].first, "Drive Offline");
  EXPECT_EQ(heard.steps, 0);
}

}  // namespace
}  // namespace orrelin
