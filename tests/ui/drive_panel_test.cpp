// The browser's drive panel over real catalogs: a folder the program scanned (online), the sample data
// and drives that are not connected; what each says, when "Update" may run, and the "More" menu's
// actions carried out on the real database and disk.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "panel_support.h"
#include "scan/volume_info.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class DrivePanelTest : public PanelTest {
 protected:
  QQuickItem* panelFor(int64_t catalogID, qreal width = 1000) {
    return make("DriveInfoPanel", {{"catalog", catalogMap(catalogID)}}, width, 200);
  }
  QString fact(const QString& label) { return text("driveFact:" + label, "value"); }

  Catalog scanTree(const TempDir& temp, const QString& name) {
    writeFile(temp.path() / "Drive" / "notes.txt", "remember the milk\n");
    writeFile(temp.path() / "Drive" / "Photos" / "a.jpg", std::string(2048, 'x'));
    writeFile(temp.path() / "Drive" / "Music" / "b.mp3", std::string(4096, 'y'));
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    return scanFolder(temp.path() / "Drive", name, options);
  }
};

TEST_F(DrivePanelTest, AScannedFolderIsOnlineWithItsFactsAndUpdatesUnlessAScanRuns) {
  removeAllCatalogs();
  TempDir temp;
  const Catalog c = scanTree(temp, "Field Drive");
  ASSERT_GT(c.id, 0);
  ASSERT_TRUE(model().isOnline(c.id));
  panelFor(c.id);

  EXPECT_EQ(text("driveName"), "Field Drive");
  EXPECT_EQ(text("driveStatus"), "ONLINE");
  EXPECT_FALSE(visible("sampleBadge"));
  EXPECT_FALSE(visible("offlineBanner"));
  EXPECT_EQ(fact("Volume"), QString::fromStdString(c.displayVolume()));
  EXPECT_EQ(fact("Type"), "Folder");
  ASSERT_GT(c.capacity, 0);
  EXPECT_EQ(fact("Capacity"), QString::fromStdString(Fmt::size(c.capacity)));
  EXPECT_EQ(fact("Free"), QString::fromStdString(Fmt::size(c.freeSpace)));
  EXPECT_EQ(fact("Cataloged"), "3 files, 2 folders");
  EXPECT_EQ(fact("Size"), QString::fromStdString(Fmt::size(18 + 2048 + 4096)));
  EXPECT_EQ(fact("Last scan"), QString::fromStdString(Fmt::date(c.scannedAt)));
  EXPECT_NE(fact("Last scan"), QStringLiteral("\u2014"));
  EXPECT_EQ(fact("UUID"), c.volumeUUID.empty() ? QStringLiteral("\u2014") : QString::fromStdString(c.volumeUUID));
  EXPECT_TRUE(visible("usageBar"));
  EXPECT_EQ(text("usageText"), QString::number(qRound(c.usedFraction() * 100)) + "% used");

  QQuickItem* update = item("driveUpdateButton");
  ASSERT_NE(update, nullptr);
  EXPECT_TRUE(update->isEnabled());
  EXPECT_EQ(text("updateTip"), "Rescan and record what was added, changed or removed (Ctrl+R)");

  // "Update" rescans: a file added on disk is found.
  writeFile(temp.path() / "Drive" / "new.txt", "new");
  click("driveUpdateButton");
  ASSERT_TRUE(waitUntil([&] { return model().scanResult().has_value(); }));
  EXPECT_TRUE(model().scanResult()->isRescan);
  EXPECT_EQ(model().scanResult()->addedCount, 1);
  model().dismissScanResult();

  // Any scan running, of this catalog or another, holds it back.
  for (int i = 0; i < 2000; ++i)
    writeFile(temp.path() / "Big" / std::to_string(i % 20) / (std::to_string(i) + ".txt"), "x");
  model().beginScan(temp.path() / "Big", "Big", std::nullopt, ScanOptions{});
  model().scanner()->togglePause();
  ASSERT_TRUE(model().scanner()->isRunning());
  EXPECT_TRUE(waitUntil([&] { return !update->isEnabled(); }, 2000));
  model().scanner()->cancel();
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning(); }));
  model().dismissScanResult();
  EXPECT_TRUE(waitUntil([&] { return update->isEnabled(); }, 2000));
}

TEST_F(DrivePanelTest, OfflineCatalogsSayWhyAndCannotBeUpdated) {
  removeAllCatalogs();
  model().loadSampleData();
  const Catalog sample = catalogNamed("Photo Vault");
  panelFor(sample.id);
  EXPECT_TRUE(visible("sampleBadge"));
  EXPECT_EQ(text("driveStatus"), "OFFLINE");
  EXPECT_EQ(text("offlineBannerText"), "Offline catalog \u2014 browse and search freely.");
  EXPECT_FALSE(item("driveUpdateButton")->isEnabled());
  EXPECT_EQ(text("updateTip"), "Connect the drive to update this catalog");

  // Drives that are not connected, by what is known of them.
  struct Case {
    std::string name, volumeName, root, format;
    bool network, removable, folder;
    int64_t capacity, free;
    QString type, banner;
  };
  const QString away = QStringLiteral(
      "Drive offline \u2014 insert \u201CREC_SD\u201D to open files. Browsing and searching still work.");
  const QString browseOnly = QStringLiteral("Offline catalog \u2014 browse and search freely.");
  const std::vector<Case> cases = {
      {"Field Recorder", "REC_SD", "/nonexistent/rec", "ExFAT", false, true, false, 0, 0, "External drive", away},
      {"Studio NAS", "REC_SD", "/nonexistent/nas", "SMB (Network)", true, false, false, 4'000'000'000'000,
       1'000'000'000'000, "Network share", away},
      {"Old Laptop", "REC_SD", "/nonexistent/disk", "ext4", false, false, false, 500'000'000'000, 0,
       "Internal drive", away},
      // Imported from a file: no volume name, no root.
      {"Imported Drive", "", "", "", false, false, false, 0, 0, "Internal drive", browseOnly},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.name);
    VolumeInfo volume;
    volume.name = k.volumeName;
    volume.format = k.format;
    volume.capacity = k.capacity;
    volume.free = k.free;
    volume.isNetwork = k.network;
    volume.isRemovable = k.removable;
    const int64_t id = model().store()->insertCatalog(k.name, k.root, volume, k.folder, std::nullopt, false);
    model().reload();
    panelFor(id);
    EXPECT_EQ(text("driveStatus"), "OFFLINE");
    EXPECT_FALSE(visible("sampleBadge"));
    EXPECT_EQ(text("offlineBannerText"), k.banner);
    EXPECT_EQ(fact("Type"), k.type);
    EXPECT_EQ(fact("Volume"), QString::fromStdString(k.volumeName.empty() ? k.name : k.volumeName));
    EXPECT_EQ(fact("Format"), k.format.empty() ? QStringLiteral("\u2014") : QString::fromStdString(k.format));
    // A capacity not above 0 is unknown: dashes, and no usage bar.
    EXPECT_EQ(fact("Capacity"),
              k.capacity > 0 ? QString::fromStdString(Fmt::size(k.capacity)) : QStringLiteral("\u2014"));
    EXPECT_EQ(fact("Free"), k.free > 0 ? QString::fromStdString(Fmt::size(k.free)) : QStringLiteral("\u2014"));
    EXPECT_EQ(visible("usageBar"), k.capacity > 0);
    if (k.capacity > 0) {
      EXPECT_EQ(text("usageText"), QString::number(qRound(100.0 * (k.capacity - k.free) / k.capacity)) + "% used");
    }
    EXPECT_EQ(fact("Last scan"), QStringLiteral("\u2014"));
    EXPECT_EQ(fact("UUID"), QStringLiteral("\u2014"));
    EXPECT_EQ(fact("Cataloged"), "0 files, 0 folders");
    EXPECT_FALSE(item("driveUpdateButton")->isEnabled());
  }
}

TEST_F(DrivePanelTest, TheMoreMenuEditsNotesExportsWatchesAndDeletes) {
  removeAllCatalogs();
  TempDir temp;
  const Catalog c = scanTree(temp, "Field Drive");
  panelFor(c.id);

  // The items, top to bottom.
  click("driveMoreButton");
  const QStringList names = {"notes", "csv", "json", "web", "claude", "watch", "delete"};
  const QStringList texts = {"Edit Notes\u2026",        "Export CSV\u2026",
                             "Export JSON\u2026",       "Export Web Pages\u2026",
                             "Export for Claude\u2026", "Auto-Update When Files Change",
                             "Delete Catalog\u2026"};
  qreal lastY = -1;
  for (int i = 0; i < names.size(); ++i) {
    QQuickItem* entry = item("driveMore." + names[i]);
    ASSERT_NE(entry, nullptr) << names[i].toStdString();
    ASSERT_TRUE(waitUntil([&] { return entry->isVisible(); }, 2000));
    EXPECT_EQ(entry->property("text").toString(), texts[i]);
    const qreal y = entry->mapToScene(QPointF(0, 0)).y();
    EXPECT_GT(y, lastY) << names[i].toStdString();
    lastY = y;
  }

  // Auto-update: on, marked, and off again.
  click("driveMore.watch");
  EXPECT_TRUE(model().isWatched(c.id));
  click("driveMoreButton");
  EXPECT_TRUE(waitUntil(
      [&] { return text("driveMore.watch") == QStringLiteral("\u2713 Auto-Update When Files Change"); }, 2000));
  click("driveMore.watch");
  EXPECT_FALSE(model().isWatched(c.id));

  // Notes: the field starts with the notes there are; the answer is kept as typed and shown.
  QString initial = "<not asked>";
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    initial = request.initial;
    return Dialogs::Answer::withText("Top shelf, blue case ");
  });
  click("driveMoreButton");
  click("driveMore.notes");
  EXPECT_EQ(initial, "");
  EXPECT_EQ(model().store()->catalog(c.id)->notes, "Top shelf, blue case ");
  item("driveInfoPanel")->setProperty("catalog", catalogMap(c.id));
  EXPECT_TRUE(visible("driveNotes"));
  EXPECT_EQ(text("driveNotes"), "Top shelf, blue case ");
  // Cancelled, the notes stay.
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    initial = request.initial;
    return Dialogs::Answer::cancel();
  });
  click("driveMoreButton");
  click("driveMore.notes");
  EXPECT_EQ(initial, "Top shelf, blue case ");
  EXPECT_EQ(model().store()->catalog(c.id)->notes, "Top shelf, blue case ");

  // Web pages: the site's folder is named by the proposed title.
  TempDir out;
  Dialogs::setAnswerer([&](const Dialogs::Request&) { return Dialogs::Answer::withPath(out.path()); });
  click("driveMoreButton");
  click("driveMore.web");
  std::vector<std::string> made;
  for (const auto& entry : fs::directory_iterator(out.path())) made.push_back(entry.path().filename().string());
  ASSERT_EQ(made.size(), 1u);
  EXPECT_TRUE(made[0].starts_with("Field Drive Inventory")) << made[0];
  EXPECT_TRUE(fs::exists(out.path() / made[0] / "index.html"));

  // Delete asks first; cancelled, the catalog stays, accepted, it goes and the drive is untouched.
  QString question;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    question = request.title;
    return Dialogs::Answer::cancel();
  });
  click("driveMoreButton");
  click("driveMore.delete");
  EXPECT_EQ(question, QStringLiteral("Delete \u201CField Drive\u201D?"));
  EXPECT_TRUE(model().catalog(c.id).has_value());
  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::accept(); });
  click("driveMoreButton");
  click("driveMore.delete");
  EXPECT_FALSE(model().catalog(c.id).has_value());
  EXPECT_TRUE(fs::exists(temp.path() / "Drive" / "notes.txt"));
}

}  // namespace
}  // namespace orrelin::testing
