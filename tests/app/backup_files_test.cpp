// Backups on real files: the copy itself, the listing and pruning, the check of a chosen file and the swap
// of the database file.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>

#include "app/backup_fixture.h"
#include "app/backup_manager.h"
#include "core/user_defaults.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::BackupTest;
using testing::readFile;
using testing::writeFile;

using BackupFilesTest = BackupTest;

void setAge(const fs::path& file, std::chrono::hours age) {
  fs::last_write_time(file, fs::file_time_type::clock::now() - age);
}

TEST_F(BackupFilesTest, ABackupIsARealIndependentCopyAndSetsLastBackup) {
  CatalogDB store(AppPaths::database().string());
  int64_t id = addCatalog(store, "Photos", "holiday.jpg");
  const Date before = Date::now();

  fs::path file = BackupManager::backupNow(store);
  EXPECT_EQ(file.parent_path(), AppPaths::backups());
  EXPECT_TRUE(file.filename().string().starts_with("Catalogs_"));
  EXPECT_TRUE(file.filename().string().ends_with("_manual.sqlite"));
  ASSERT_TRUE(BackupManager::lastBackup().has_value());
  EXPECT_GE(BackupManager::lastBackup()->seconds, before.seconds - 1);

  // Later changes to the live database do not reach the copy.
  store.deleteCatalog(id, std::nullopt);
  addCatalog(store, "Music");
  CatalogDB copy(file.string());
  EXPECT_EQ(catalogNames(copy), std::vector<std::string>{"Photos"});
  auto names = copy.db().query("SELECT name FROM files", {}, [](const Statement& r) { return r.text(0); });
  EXPECT_EQ(names, std::vector<std::string>{"holiday.jpg"});
  EXPECT_EQ(copy.catalogs().front().totalSize, 42);

  EXPECT_EQ(BackupManager::list(), std::vector<fs::path>{file});
  EXPECT_TRUE(BackupManager::backupNow(store, "before-delete")
                  .filename()
                  .string()
                  .ends_with("_before-delete.sqlite"));
  EXPECT_EQ(BackupManager::list().size(), 2u);
}

TEST_F(BackupFilesTest, TheEleventhBackupDeletesTheOldestByModificationDate) {
  CatalogDB store(AppPaths::database().string());
  addCatalog(store, "Photos");
  const fs::path dir = AppPaths::backups();
  // Ten older backups whose names do not sort the way their dates do: the oldest has the newest name.
  std::vector<fs::path> old;
  for (int i = 0; i < 10; ++i) {
    fs::path file = dir / BackupManager::fileName(Date::fromSeconds(1600000000.0 + i * 86400), "auto");
    store.db().backup(file.string());
    old.push_back(file);
  }
  for (int i = 0; i < 10; ++i) setAge(old[i], std::chrono::hours(24 * (i + 2)));
  const fs::path oldest = old[9];
  // Files that are no backups are neither listed nor deleted.
  writeFile(dir / "notes.txt", "mine");
  writeFile(dir / "Catalogs_x.sqlite-wal", "wal");
  fs::create_directory(dir / "folder.sqlite");

  auto listed = BackupManager::list();
  ASSERT_EQ(listed.size(), 10u);
  EXPECT_EQ(listed.front(), old[0]);
  EXPECT_EQ(listed.back(), oldest);

  fs::path fresh = BackupManager::backupNow(store, "auto");
  listed = BackupManager::list();
  ASSERT_EQ(listed.size(), 10u);
  EXPECT_EQ(listed.front(), fresh);
  EXPECT_FALSE(fs::exists(oldest));
  for (int i = 0; i < 9; ++i) EXPECT_TRUE(fs::exists(old[i])) << i;
  EXPECT_TRUE(fs::exists(dir / "notes.txt"));
  EXPECT_TRUE(fs::exists(dir / "Catalogs_x.sqlite-wal"));
  EXPECT_TRUE(fs::is_directory(dir / "folder.sqlite"));

  // A lower setting takes effect at the next backup, across all reasons alike.
  BackupManager::setKeepCount(3);
  fs::path manual = BackupManager::backupNow(store, "manual");
  listed = BackupManager::list();
  ASSERT_EQ(listed.size(), 3u);
  EXPECT_EQ(listed[0], manual);
  EXPECT_EQ(listed[1], fresh);
  EXPECT_EQ(listed[2], old[0]);
}

TEST_F(BackupFilesTest, TheSafetyBackupBeforeARestoreSparesTheChosenFile) {
  CatalogDB store(AppPaths::database().string());
  addCatalog(store, "Photos");
  BackupManager::setKeepCount(2);
  std::vector<fs::path> old;
  for (int i = 0; i < 2; ++i) {
    old.push_back(AppPaths::backups() / BackupManager::fileName(Date::fromSeconds(1600000000.0 + i), "auto"));
    store.db().backup(old.back().string());
    setAge(old.back(), std::chrono::hours(10 - i));
  }
  // The oldest backup is the one chosen: the safety copy would otherwise push it out before it is read.
  fs::path safety = BackupManager::backupNow(store, "before-restore", old[0]);
  EXPECT_TRUE(fs::exists(old[0]));
  EXPECT_TRUE(fs::exists(old[1]));
  EXPECT_TRUE(fs::exists(safety));
  // Without the spare, the oldest goes.
  BackupManager::prune();
  EXPECT_FALSE(fs::exists(old[0]));
  EXPECT_EQ(BackupManager::list(), (std::vector<fs::path>{safety, old[1]}));
}

TEST_F(BackupFilesTest, RestoringASafetyBackupOfThisSecondNeverOverwritesIt) {
  CatalogDB store(AppPaths::database().string());
  addCatalog(store, "Photos");
  // A safety backup, then at once a restore of it: the next safety backup would get the same name.
  fs::path chosen = BackupManager::backupNow(store, "before-restore");
  addCatalog(store, "Music");
  fs::path safety = BackupManager::backupNow(store, "before-restore", chosen);
  EXPECT_NE(safety, chosen);
  CatalogDB kept(chosen.string());
  EXPECT_EQ(catalogNames(kept), std::vector<std::string>{"Photos"});
  CatalogDB newer(safety.string());
  EXPECT_EQ(catalogNames(newer), (std::vector<std::string>{"Music", "Photos"}));
}

TEST_F(BackupFilesTest, ASecondBackupInTheSameSecondReplacesTheFirst) {
  CatalogDB store(AppPaths::database().string());
  addCatalog(store, "Photos");
  fs::path target = AppPaths::backups() / BackupManager::fileName(Date::now(), "manual");
  store.db().backup(target.string());
  addCatalog(store, "Music");
  store.db().backup(target.string());
  CatalogDB copy(target.string());
  EXPECT_EQ(catalogNames(copy), (std::vector<std::string>{"Music", "Photos"}));
}

TEST_F(BackupFilesTest, FilesThatAreNoBackupsAreRefusedWithTheDatabasesMessage) {
  const fs::path text = m_temp.path() / "notes.sqlite";
  const std::string words = "just some words, not a database\n" + std::string(2000, 'x');
  writeFile(text, words);
  try {
    BackupManager::checkBackupFile(text);
    ADD_FAILURE() << "a text file passed";
  } catch (const DBError& e) {
    EXPECT_NE(std::string(e.what()).find("file is not a database"), std::string::npos) << e.what();
  }
  EXPECT_EQ(readFile(text), words);

  const fs::path other = m_temp.path() / "other.sqlite";
  {
    SQLiteDB db(other.string());
    db.exec("CREATE TABLE songs(title TEXT)");
  }
  try {
    BackupManager::checkBackupFile(other);
    ADD_FAILURE() << "a database without catalogs passed";
  } catch (const DBError& e) {
    EXPECT_NE(std::string(e.what()).find("no such table: catalogs"), std::string::npos) << e.what();
  }

  // A missing file is refused, and not created on the way.
  const fs::path missing = m_temp.path() / "gone.sqlite";
  EXPECT_THROW(BackupManager::checkBackupFile(missing), DBError);
  EXPECT_FALSE(fs::exists(missing));
  EXPECT_THROW(BackupManager::checkBackupFile(m_temp.path()), DBError);

  // A real backup passes.
  CatalogDB store(AppPaths::database().string());
  addCatalog(store, "Photos");
  EXPECT_NO_THROW(BackupManager::checkBackupFile(BackupManager::backupNow(store)));
}

TEST_F(BackupFilesTest, ReplacingTheDatabaseRemovesItsSideFilesAndCopiesTheBackup) {
  const fs::path database = AppPaths::database();
  fs::path backup;
  {
    CatalogDB store(database.string());
    addCatalog(store, "Photos");
    backup = BackupManager::backupNow(store);
    addCatalog(store, "Later");
  }
  // Side files as a crashed program leaves them.
  writeFile(database.string() + "-wal", "stale log");
  writeFile(database.string() + "-shm", "stale index");

  BackupManager::replaceDatabase(backup, database);
  EXPECT_FALSE(fs::exists(database.string() + "-wal"));
  EXPECT_FALSE(fs::exists(database.string() + "-shm"));
  EXPECT_EQ(readFile(database), readFile(backup));
  CatalogDB restored(database.string());
  EXPECT_EQ(catalogNames(restored), std::vector<std::string>{"Photos"});
  EXPECT_TRUE(fs::exists(backup));

  // The database itself named as its backup is refused before anything is deleted.
  EXPECT_THROW(BackupManager::replaceDatabase(database, database), fs::filesystem_error);
  EXPECT_TRUE(fs::exists(database));
  // A copy that fails is reported, and the current database stays as it was, side files included.
  auto names = [&] {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(database.parent_path()))
      found.insert(entry.path().filename().string());
    return found;
  };
  const std::set<std::string> before = names();
  const std::string content = readFile(database);
  EXPECT_THROW(BackupManager::replaceDatabase(m_temp.path() / "gone.sqlite", database), fs::filesystem_error);
  EXPECT_EQ(names(), before);
  EXPECT_TRUE(readFile(database) == content);  // Not printed: a database file is long.
  EXPECT_EQ(catalogNames(restored), std::vector<std::string>{"Photos"});
}

TEST_F(BackupFilesTest, ABackupOfAnOlderSchemaIsBroughtUpToDateWhenOpened) {
  const fs::path old = m_temp.path() / "old.sqlite";
  {
    CatalogDB store(old.string());
    addCatalog(store, "Archive", "holiday-photo.jpg");
    // What an older build left: no name index, no triggers, no meta rows.
    store.db().exec(
        "DROP TRIGGER files_ai; DROP TRIGGER files_ad; DROP TRIGGER files_au; DROP TABLE files_fts; "
        "DELETE FROM meta;");
  }
  const fs::path database = AppPaths::database();
  { CatalogDB current(database.string()); }
  BackupManager::checkBackupFile(old);
  BackupManager::replaceDatabase(old, database);
  CatalogDB store(database.string());
  EXPECT_EQ(catalogNames(store), std::vector<std::string>{"Archive"});
  EXPECT_EQ(store.db().scalarText("SELECT value FROM meta WHERE key='schema'"), "1");
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files_fts WHERE files_fts MATCH '\"photo\"'"), 1);
}

}  // namespace
}  // namespace orrelin
