// The scan worker on real trees and a real database: what a first scan stores, what rescans change, and how
// pause, cancel and failures end.
#include "scan/scan_worker.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "scan/scan_fixture.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ScanTest;
using testing::plainOptions;
using testing::setModified;
using testing::writeFile;

TEST(ScanWorkerPaths, RelativePathBelowRoot) {
  EXPECT_EQ(ScanWorker::relativePath("/a/b/c", "/a"), "b/c");
  EXPECT_EQ(ScanWorker::relativePath("/a/", "/a"), "");
  EXPECT_EQ(ScanWorker::relativePath("/etc/hosts", "/"), "etc/hosts");
  EXPECT_EQ(ScanWorker::relativePath("/ab/c", "/a"), std::nullopt);  // A sibling with a longer name.
  EXPECT_EQ(ScanWorker::relativePath("/a", "/a"), std::nullopt);
}

TEST(ScanWorkerNames, SkippedNamesAreExactAndCaseSensitive) {
  for (const char* name : {".DS_Store", ".Trashes", ".fseventsd", ".apdisk", "Icon\r"})
    EXPECT_TRUE(ScanWorker::isSkippedName(name)) << name;
  for (const char* name : {".ds_store", "Icon", "Icon\r\r", ".DS_Store ", "x.DS_Store"})
    EXPECT_FALSE(ScanWorker::isSkippedName(name)) << name;
}

TEST_F(ScanTest, FirstScanStoresEveryEntryWithItsFacts) {
  writeFile(tree / "Photos/2024/beach.jpg", std::string(1234, 'x'));
  writeFile(tree / "Photos/notes.txt", "hello");
  writeFile(tree / "README", "");
  writeFile(tree / ".profile", "hidden");
  writeFile(tree / "Keynote.key/Index.zip", std::string(300, 'k'));
  writeFile(tree / "Keynote.key/Data/img.png", std::string(700, 'p'));
  writeFile(tree / ".DS_Store", "mac junk");
  writeFile(tree / "Photos/.DS_Store", "mac junk");
  fs::create_directories(tree / "Empty");
  setModified(tree / "README", 1'600'000'000.25);

  const ScanResult result = scan(plainOptions(), std::nullopt, nullptr, nullptr, tree.string() + "/");
  ASSERT_FALSE(result.error) << *result.error;
  EXPECT_FALSE(result.isRescan);
  EXPECT_EQ(result.catalogName, "Test");
  EXPECT_EQ(result.id.size(), 36u);

  auto r = rows(result.catalogID);
  std::vector<std::string> paths;
  for (const auto& [path, f] : r) paths.push_back(path);
  // Hidden entries and the skipped names are left out; the package is one file of its summed size.
  EXPECT_EQ(paths, (std::vector<std::string>{"Empty", "Keynote.key", "Photos", "Photos/2024",
                                             "Photos/2024/beach.jpg", "Photos/notes.txt", "README"}));
  EXPECT_EQ(result.addedCount, 7);
  EXPECT_EQ(result.added.front(), "Empty");  // Walk order: siblings by name, folders before contents.

  const FileRecord& beach = r["Photos/2024/beach.jpg"];
  EXPECT_EQ(beach.parentID, r["Photos/2024"].id);
  EXPECT_EQ(r["Photos/2024"].parentID, r["Photos"].id);
  EXPECT_EQ(r["Photos"].parentID, 0);
  EXPECT_EQ(beach.name, "beach.jpg");
  EXPECT_EQ(beach.size, 1234);
  EXPECT_EQ(beach.kind, FileKind::image);
  EXPECT_EQ(beach.uti, "image/jpeg");
  EXPECT_EQ(beach.ext, "jpg");
  EXPECT_FALSE(beach.isDir);

  const FileRecord& package = r["Keynote.key"];
  EXPECT_FALSE(package.isDir);
  EXPECT_EQ(package.size, 1000);
  EXPECT_EQ(package.kind, FileKind::document);

  EXPECT_TRUE(r["Photos"].isDir);
  EXPECT_EQ(r["Photos"].kind, FileKind::folder);
  EXPECT_EQ(r["Photos"].uti, "inode/directory");
  EXPECT_EQ(r["Photos"].size, 1239);  // Rolled up from the files below it.
  EXPECT_EQ(r["Photos"].itemCount, 2);
  ASSERT_TRUE(r["README"].modified);
  EXPECT_NEAR(r["README"].modified->seconds, 1'600'000'000.25, 1e-6);

  const auto c = catalog(result.catalogID);
  ASSERT_TRUE(c);
  EXPECT_EQ(c->rootPath, tree.string());  // The trailing slash is dropped.
  EXPECT_TRUE(c->isFolder);
  EXPECT_EQ(c->fileCount, 4);
  EXPECT_EQ(c->folderCount, 3);
  EXPECT_EQ(c->totalSize, 1234 + 5 + 0 + 1000);
  EXPECT_TRUE(c->scannedAt);
  EXPECT_EQ(lastNote(result.catalogID), "New catalog");
}

TEST_F(ScanTest, HiddenEntriesAndPackageContentsFollowTheOptions) {
  writeFile(tree / ".config/app.conf", "a");
  writeFile(tree / "listed.txt", "b");
  writeFile(tree / ".hidden", "listed.txt\n");
  writeFile(tree / "Tool.app/Contents/Info.plist", "c");
  writeFile(tree / ".Trashes/old.txt", "d");

  ScanOptions options = plainOptions();
  options.includeHidden = true;
  options.treatPackagesAsFiles = false;
  const ScanResult all = scan(options);
  auto r = rows(all.catalogID);
  EXPECT_TRUE(r.count(".config/app.conf"));
  EXPECT_TRUE(r[".config"].hidden);
  EXPECT_TRUE(r["listed.txt"].hidden);  // Named in the folder's .hidden file.
  EXPECT_TRUE(r.count(".hidden"));
  EXPECT_TRUE(r["Tool.app"].isDir);
  EXPECT_EQ(r["Tool.app"].kind, FileKind::folder);
  EXPECT_TRUE(r.count("Tool.app/Contents/Info.plist"));
  EXPECT_FALSE(r.count(".Trashes"));  // Skipped whatever the options, with its contents.
  EXPECT_FALSE(r.count(".Trashes/old.txt"));

  // Hiding again: the rows of hidden entries go at reconciliation, in path order.
  const ScanResult hiddenOff = rescan(all.catalogID, plainOptions());
  EXPECT_EQ(hiddenOff.removed,
            (std::vector<std::string>{".config", ".config/app.conf", ".hidden", "Tool.app/Contents",
                                      "Tool.app/Contents/Info.plist", "listed.txt"}));
  // The package now counts as a file: the folder row flips and keeps its id.
  EXPECT_EQ(hiddenOff.changed, std::vector<std::string>{"Tool.app"});
  EXPECT_EQ(rows(all.catalogID)["Tool.app"].id, r["Tool.app"].id);
  EXPECT_EQ(rows(all.catalogID)["Tool.app"].kind, FileKind::application);
}

TEST_F(ScanTest, RescanWithNothingChangedWritesNothingButTheLog) {
  writeFile(tree / "a/b/c.txt", "abc");
  writeFile(tree / "d.bin", "dd");
  const ScanResult first = scan();
  const auto before = rows(first.catalogID);
  const auto scannedBefore = catalog(first.catalogID)->scannedAt;
  std::this_thread::sleep_for(std::chrono::milliseconds(20));

  const ScanResult again = rescan(first.catalogID);
  ASSERT_FALSE(again.error);
  EXPECT_TRUE(again.isRescan);
  EXPECT_EQ(again.addedCount + again.changedCount + again.removedCount, 0);
  EXPECT_EQ(rows(first.catalogID), before);
  EXPECT_GT(catalog(first.catalogID)->scannedAt, scannedBefore);
  EXPECT_EQ(lastNote(first.catalogID), "Update");
}

TEST_F(ScanTest, RescanReportsExactlyTheChanges) {
  writeFile(tree / "keep.txt", "same");
  writeFile(tree / "grow.txt", "small");
  writeFile(tree / "nudged.txt", "n");
  writeFile(tree / "moved.txt", "m");
  writeFile(tree / "gone/one.txt", "1");
  writeFile(tree / "gone/two.txt", "2");
  writeFile(tree / "flip/inner.txt", "i");
  writeFile(tree / "dir/child.txt", "c");
  setModified(tree / "nudged.txt", 1'500'000'000.0);
  setModified(tree / "moved.txt", 1'500'000'000.0);
  const ScanResult first = scan();
  const auto before = rows(first.catalogID);
  // A thumbnail of a row that will vanish, to see it go with its row.
  const fs::path thumb = thumbs / std::to_string(first.catalogID) / (std::to_string(before.at("gone/one.txt").id) + ".jpg");
  writeFile(thumb, "jpeg");

  writeFile(tree / "grow.txt", "bigger now");
  setModified(tree / "nudged.txt", 1'500'000'000.9);  // Less than a second: unchanged.
  setModified(tree / "moved.txt", 1'500'000'001.0);   // A whole second: changed.
  fs::remove_all(tree / "gone");
  fs::remove_all(tree / "flip");
  writeFile(tree / "flip", "now a file");  // A folder replaced by a file of the same path.
  writeFile(tree / "dir/new.txt", "n");    // New contents do not change the folder itself.
  writeFile(tree / "zz new.txt", "z");

  const ScanResult second = rescan(first.catalogID);
  ASSERT_FALSE(second.error);
  EXPECT_EQ(second.added, (std::vector<std::string>{"dir/new.txt", "zz new.txt"}));
  EXPECT_EQ(second.changed, (std::vector<std::string>{"flip", "grow.txt", "moved.txt"}));
  EXPECT_EQ(second.removed, (std::vector<std::string>{"flip/inner.txt", "gone", "gone/one.txt", "gone/two.txt"}));
  EXPECT_EQ(second.addedCount, 2);
  EXPECT_EQ(second.changedCount, 3);
  EXPECT_EQ(second.removedCount, 4);
  EXPECT_FALSE(fs::exists(thumb));

  const auto after = rows(first.catalogID);
  EXPECT_EQ(after.at("flip").id, before.at("flip").id);
  EXPECT_FALSE(after.at("flip").isDir);
  EXPECT_EQ(after.at("flip").kind, FileKind::other);
  EXPECT_EQ(after.at("grow.txt").size, 10);
  EXPECT_EQ(after.at("keep.txt"), before.at("keep.txt"));
  EXPECT_EQ(after.at("dir/new.txt").parentID, before.at("dir").id);

  const ScanProgress& done = reports.back();
  EXPECT_EQ(done.phase, "Done");
  EXPECT_EQ(done.added, 2);
  EXPECT_EQ(done.changed, 3);
  EXPECT_EQ(done.removed, 4);
}

TEST_F(ScanTest, HiddenStateOfAnUnchangedFileIsUpdatedWithoutCountingAsAChange) {
  writeFile(tree / "a.txt", "a");
  writeFile(tree / "b.txt", "b");
  const ScanResult first = scan();
  writeFile(tree / ".hidden", "a.txt\n");
  ScanOptions options = plainOptions();
  options.includeHidden = true;
  const ScanResult second = rescan(first.catalogID, options);
  EXPECT_EQ(second.changedCount, 0);
  EXPECT_EQ(second.added, std::vector<std::string>{".hidden"});
  auto r = rows(first.catalogID);
  EXPECT_TRUE(r["a.txt"].hidden);
  EXPECT_FALSE(r["b.txt"].hidden);
}

TEST_F(ScanTest, ProgressGoesThroughThePhasesWithTheCatalogID) {
  for (int i = 0; i < 5; ++i) writeFile(tree / ("f" + std::to_string(i)), "12345");
  const ScanResult result = scan();
  ASSERT_GE(reports.size(), 5u);
  EXPECT_EQ(reports.front().phase, "Scanning");
  EXPECT_EQ(reports.front().currentPath, tree.string());
  EXPECT_EQ(reports.front().items, 0);
  EXPECT_EQ(reports[1].currentPath, "f0");  // The first entry always reports.
  EXPECT_EQ(reports[1].items, 1);
  const size_t n = reports.size();
  EXPECT_EQ(reports[n - 3].phase, "Reconciling");
  EXPECT_EQ(reports[n - 2].phase, "Totalling");
  EXPECT_EQ(reports[n - 1].phase, "Done");
  EXPECT_EQ(reports[n - 1].items, 5);
  EXPECT_EQ(reports[n - 1].bytes, 25);
  EXPECT_EQ(reports[n - 1].currentPath, "");
  for (const ScanProgress& p : reports) EXPECT_EQ(p.catalogID, result.catalogID);
}

TEST_F(ScanTest, ListsStopAt500WhileTheCountsGoOn) {
  for (int i = 0; i < 600; ++i) {
    char name[16];
    std::snprintf(name, sizeof(name), "f%04d", 599 - i);  // Created in reverse, listed in walk order.
    writeFile(tree / "many" / name, "");
  }
  const ScanResult first = scan();
  EXPECT_EQ(first.addedCount, 601);
  ASSERT_EQ(first.added.size(), 500u);
  EXPECT_EQ(first.added[0], "many");
  EXPECT_EQ(first.added[1], "many/f0000");
  EXPECT_EQ(first.added[499], "many/f0498");

  fs::remove_all(tree / "many");
  const ScanResult second = rescan(first.catalogID);
  EXPECT_EQ(second.removedCount, 601);
  ASSERT_EQ(second.removed.size(), 500u);
  EXPECT_EQ(second.removed[0], "many");
  EXPECT_EQ(second.removed[499], "many/f0498");
}

TEST_F(ScanTest, SymlinkStoredByAnOlderCatalogIsRemoved) {
  writeFile(tree / "target.txt", "t");
  fs::create_symlink("target.txt", tree / "link.txt");
  const ScanResult first = scan();
  EXPECT_FALSE(rows(first.catalogID).count("link.txt"));
  {
    CatalogDB store(dbPath);
    store.db().run("INSERT INTO files(catalog_id, parent_id, path, name) VALUES(?, 0, 'link.txt', 'link.txt')",
                   {first.catalogID});
  }
  const ScanResult second = rescan(first.catalogID);
  EXPECT_EQ(second.removed, std::vector<std::string>{"link.txt"});
}

TEST_F(ScanTest, CancelDuringRescanKeepsEveryOldRow) {
  for (int i = 0; i < 50; ++i) writeFile(tree / ("f" + std::to_string(100 + i)), "x");
  const ScanResult first = scan();
  fs::remove(tree / "f149");  // Gone, but never reached: its row must stay.
  writeFile(tree / "f101", "changed");
  auto control = std::make_shared<ScanControl>();
  // Cancel from the first entry's report: the walk stops before the next entry.
  const ScanResult second = scan(plainOptions(), first.catalogID, control, [&](const ScanProgress& p) {
    if (p.items == 1) control->setCancelled(true);
  });
  ASSERT_FALSE(second.error);
  EXPECT_TRUE(second.cancelled);
  EXPECT_EQ(second.removedCount, 0);
  EXPECT_EQ(second.changedCount, 0);
  EXPECT_EQ(rows(first.catalogID).size(), 50u);
  EXPECT_EQ(catalog(first.catalogID)->fileCount, 50);
  EXPECT_EQ(lastNote(first.catalogID), "Cancelled — partial catalog");
  EXPECT_EQ(reports.back().phase, "Done");
}

TEST_F(ScanTest, PauseCommitsSoOthersCanWriteAndCancelEndsIt) {
  for (int i = 0; i < 20; ++i) writeFile(tree / ("f" + std::to_string(i)), "x");
  auto control = std::make_shared<ScanControl>();
  control->setPaused(true);
  std::atomic<int> entriesSeen = 0;
  ScanResult result;
  std::thread worker([&] {
    result = scan(plainOptions(), std::nullopt, control, [&](const ScanProgress& p) { entriesSeen = static_cast<int>(p.items); });
  });
  // While paused before the first entry, another connection gets the write lock at once.
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  {
    SQLiteDB other(dbPath);
    other.exec("PRAGMA busy_timeout=2000");
    EXPECT_NO_THROW(other.exec("BEGIN IMMEDIATE; INSERT INTO groups(name) VALUES('during pause'); COMMIT"));
  }
  EXPECT_EQ(entriesSeen.load(), 0);
  const auto cancelAt = std::chrono::steady_clock::now();
  control->setCancelled(true);
  worker.join();
  EXPECT_LT(std::chrono::steady_clock::now() - cancelAt, std::chrono::seconds(2));
  ASSERT_FALSE(result.error) << *result.error;
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.addedCount, 1);  // The entry in hand is still processed, then the walk stops.
  EXPECT_EQ(rows(result.catalogID).size(), 1u);
}

TEST_F(ScanTest, UnavailableRootsFailWithTheirMessageAndWriteNothing) {
  writeFile(tree / "plain.txt", "x");
  const ScanResult missing = scan(plainOptions(), std::nullopt, nullptr, nullptr, (tree / "No Such Disk").string());
  EXPECT_EQ(missing.error, "The folder or drive “No Such Disk” is not available. Connect it and try again.");
  EXPECT_EQ(missing.catalogID, 0);
  EXPECT_EQ(missing.catalogName, "Test");
  EXPECT_EQ(missing.seconds, 0);
  const ScanResult file = scan(plainOptions(), std::nullopt, nullptr, nullptr, (tree / "plain.txt").string());
  EXPECT_EQ(file.error, "The folder or drive “plain.txt” is not available. Connect it and try again.");
  EXPECT_TRUE(CatalogDB(dbPath).catalogs().empty());

  ScanWorker badDB((m_dir.path() / "no/such/folder/db.sqlite").string(), tree.string(), std::nullopt, "X",
                   std::nullopt, plainOptions(), thumbs, nullptr, nullptr);
  const ScanResult failed = badDB.run();
  ASSERT_TRUE(failed.error);
  EXPECT_EQ(failed.error->rfind("Could not open the catalog database: ", 0), 0u) << *failed.error;
}

TEST_F(ScanTest, EmptyFolderGivesAnEmptyCatalog) {
  const ScanResult result = scan();
  ASSERT_FALSE(result.error);
  EXPECT_TRUE(rows(result.catalogID).empty());
  EXPECT_EQ(catalog(result.catalogID)->totalSize, 0);
  EXPECT_EQ(lastNote(result.catalogID), "New catalog");
}

}  // namespace
}  // namespace orrelin
