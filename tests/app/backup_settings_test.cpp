// Backup settings and the schedule of the daily backup, read and written through the real settings file.
#include <time.h>

#include <gtest/gtest.h>

#include "app/backup_fixture.h"
#include "app/backup_manager.h"
#include "core/user_defaults.h"

namespace orrelin {
namespace {

using testing::BackupTest;

using BackupSettingsTest = BackupTest;

TEST_F(BackupSettingsTest, KeepCountReadsTenForNothingAndIsHeldWithinOneAndSixty) {
  EXPECT_EQ(BackupManager::keepCount(), 10);
  UserDefaults::set("backupKeep", 0);
  EXPECT_EQ(BackupManager::keepCount(), 10);

  const struct { int64_t given, stored; } cases[] = {{100, 60}, {0, 1}, {-5, 1}, {1, 1}, {60, 60}, {25, 25}};
  for (const auto& c : cases) {
    BackupManager::setKeepCount(c.given);
    EXPECT_EQ(UserDefaults::integer("backupKeep"), c.stored) << c.given;
    EXPECT_EQ(BackupManager::keepCount(), c.stored) << c.given;
  }
  // A value put into the file by hand never lets a prune delete every backup.
  UserDefaults::set("backupKeep", -3);
  EXPECT_EQ(BackupManager::keepCount(), 1);
  UserDefaults::set("backupKeep", 500);
  EXPECT_EQ(BackupManager::keepCount(), 60);
}

TEST_F(BackupSettingsTest, AutoBackupIsOnUntilSwitchedOffAndLastBackupRoundTrips) {
  EXPECT_TRUE(BackupManager::autoBackupEnabled());
  BackupManager::setAutoBackupEnabled(false);
  EXPECT_FALSE(BackupManager::autoBackupEnabled());
  EXPECT_EQ(UserDefaults::get("autoBackup"), nlohmann::json(false));
  BackupManager::setAutoBackupEnabled(true);
  EXPECT_TRUE(BackupManager::autoBackupEnabled());

  EXPECT_FALSE(BackupManager::lastBackup().has_value());
  BackupManager::setLastBackup(Date::fromSeconds(1700000000.25));
  EXPECT_EQ(BackupManager::lastBackup(), Date::fromSeconds(1700000000.25));
  UserDefaults::set("lastBackup", "yesterday");
  EXPECT_FALSE(BackupManager::lastBackup().has_value());
}

TEST_F(BackupSettingsTest, TheDailyBackupIsDueAfterTwentyHoursWithCatalogsOnly) {
  CatalogDB store(AppPaths::database().string());
  const Date now = Date::fromSeconds(1750000000);
  const double hour = 3600;

  // An empty library is not worth a backup, however long ago the last one was.
  EXPECT_FALSE(BackupManager::isAutoBackupDue(&store, now));
  addCatalog(store, "Photos");
  EXPECT_TRUE(BackupManager::isAutoBackupDue(&store, now));  // Never backed up.
  EXPECT_FALSE(BackupManager::isAutoBackupDue(nullptr, now));

  BackupManager::setLastBackup(Date::fromSeconds(now.seconds - 19 * hour));
  EXPECT_FALSE(BackupManager::isAutoBackupDue(&store, now));
  BackupManager::setLastBackup(Date::fromSeconds(now.seconds - 20 * hour + 1));
  EXPECT_FALSE(BackupManager::isAutoBackupDue(&store, now));
  BackupManager::setLastBackup(Date::fromSeconds(now.seconds - 20 * hour));
  EXPECT_TRUE(BackupManager::isAutoBackupDue(&store, now));
  BackupManager::setLastBackup(Date::fromSeconds(now.seconds - 21 * hour));
  EXPECT_TRUE(BackupManager::isAutoBackupDue(&store, now));
  // A last backup stamped in the future (a clock that was wrong) does not hold the backups back.
  BackupManager::setLastBackup(Date::fromSeconds(now.seconds + 400 * 24 * hour));
  EXPECT_TRUE(BackupManager::isAutoBackupDue(&store, now));

  BackupManager::setAutoBackupEnabled(false);
  EXPECT_FALSE(BackupManager::isAutoBackupDue(&store, now));
  BackupManager::setAutoBackupEnabled(true);

  // A count that fails counts as none.
  store.db().exec("PRAGMA foreign_keys=OFF; DROP TABLE catalogs;");
  EXPECT_FALSE(BackupManager::isAutoBackupDue(&store, now));
}

TEST_F(BackupSettingsTest, NamesCarryTheLocalTimeAndTheReason) {
  {
    testing::ScopedEnv zone;
    zone.set("TZ", "Europe/Berlin");
    tzset();
    // 2024-07-01 10:05:09 UTC is 12:05:09 in Berlin's summer time.
    EXPECT_EQ(BackupManager::fileName(Date::fromSeconds(1719828309.9), "auto"),
              "Catalogs_2024-07-01_120509_auto.sqlite");
    EXPECT_EQ(BackupManager::fileName(Date::fromSeconds(1704067199), "before-delete"),
              "Catalogs_2024-01-01_005959_before-delete.sqlite");
    zone.set("TZ", "UTC");
    tzset();
    EXPECT_EQ(BackupManager::fileName(Date::fromSeconds(1719828309), "manual"),
              "Catalogs_2024-07-01_100509_manual.sqlite");
  }
  tzset();  // Back to the zone the process had.
}

}  // namespace
}  // namespace orrelin
