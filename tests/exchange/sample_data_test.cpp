// The demonstration cartridges in a real catalog database: the same items on every load, the four
// cartridges with their groups and shapes, duplicates across drives, and a removal that spares real data.
#include "exchange/sample_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "comma_locale.h"
#include "scan/volume_info.h"
#include "search/duplicates.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;

constexpr double kDay = 86'400;
const Date kNow{1'790'000'000};  // 2026-09-21.

class SampleDataTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};

  std::map<std::string, Catalog> byName() {
    std::map<std::string, Catalog> out;
    for (const Catalog& c : store.catalogs()) out.emplace(c.name, c);
    return out;
  }
  std::map<int64_t, std::string> groupNames() {
    std::map<int64_t, std::string> out;
    for (const CatalogGroup& g : store.groups()) out[g.id] = g.name;
    return out;
  }
  // The files (not folders) of a catalog whose path starts with `prefix`.
  std::vector<FileRecord> filesUnder(int64_t catalogID, const std::string& prefix) {
    std::vector<FileRecord> out;
    for (FileRecord& f : store.allFiles(catalogID))
      if (!f.isDir && f.path.rfind(prefix, 0) == 0) out.push_back(std::move(f));
    return out;
  }
};

TEST(SampleRandomTest, FollowsTheSeededRecurrence) {
  // Worked out independently from state × 0x5851F42D4C957F2D + 0x14057B7EF767814F mod 2^64, top 31 bits.
  SampleData::Random random;
  EXPECT_EQ(random.next(), 188509099u);
  EXPECT_EQ(random.next(), 1000850793u);
  EXPECT_EQ(random.next(), 567777259u);
}

TEST(SampleGenerateTest, GpsPointsHaveFiveDecimalsAndAPointWhateverTheProcessLocale) {
  testing::CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "localedef could not make a locale with a decimal comma";
  const std::set<std::string> points = {"39.06390, -108.55060", "39.11000, -108.35370",
                                        "39.15860, -108.72900", "40.01500, -105.27050",
                                        "36.16990, -115.13980"};
  std::set<std::string> seen;
  const std::vector<SampleData::Cartridge> cartridges = SampleData::generate(kNow);
  for (const Exporter::ImportedFile& photo : cartridges[2].items) {
    EXPECT_TRUE(points.count(photo.meta.at("GPS"))) << photo.meta.at("GPS");
    seen.insert(photo.meta.at("GPS"));
  }
  EXPECT_EQ(seen.size(), points.size());
}

TEST_F(SampleDataTest, TwoLoadsGiveIdenticalRowsAndOnlyTheDatesFollowTheClock) {
  TempDir other;
  CatalogDB second(other.file("Catalogs.sqlite"));
  std::vector<int64_t> a = SampleData::load(store, kNow);
  std::vector<int64_t> b = SampleData::load(second, kNow);
  ASSERT_EQ(a.size(), 4u);
  ASSERT_EQ(a, b);
  for (size_t i = 0; i < a.size(); ++i) {
    std::vector<FileRecord> x = store.allFiles(a[i]), y = second.allFiles(b[i]);
    EXPECT_GT(x.size(), 50u);
    EXPECT_EQ(x, y) << "catalog " << i;
    Catalog cx = *store.catalog(a[i]), cy = *second.catalog(b[i]);
    EXPECT_NE(cx.volumeUUID, cy.volumeUUID) << "a fresh UUID for every cartridge";
    cy.volumeUUID = cx.volumeUUID;
    cy.createdAt = cx.createdAt;
    cy.scannedAt = cx.scannedAt;
    EXPECT_EQ(cx, cy);
  }

  // A year later the names, sizes and details are the same; the dates have moved.
  auto now = SampleData::generate(kNow), later = SampleData::generate(Date{kNow.seconds + 365 * kDay});
  ASSERT_EQ(now.size(), later.size());
  size_t moved = 0;
  for (size_t c = 0; c < now.size(); ++c) {
    ASSERT_EQ(now[c].items.size(), later[c].items.size());
    for (size_t i = 0; i < now[c].items.size(); ++i) {
      Exporter::ImportedFile x = now[c].items[i], y = later[c].items[i];
      moved += x.modified != y.modified;
      x.modified = y.modified;
      x.created = y.created;
      EXPECT_EQ(x, y) << x.path;
    }
  }
  EXPECT_GT(moved, 300u);  // Photos and documents stay in their years.
}

TEST_F(SampleDataTest, FourCartridgesInTheirGroupsWithTheirDrivesFacts) {
  SampleData::load(store, kNow);
  auto catalogs = byName();
  auto groups = groupNames();
  ASSERT_EQ(catalogs.size(), 4u);
  ASSERT_EQ(groups.size(), 2u);
  struct Expected {
    const char *name, *volume, *format, *root;
    int64_t capacity, free;
    bool network, removable, folder;
    const char* group;
  };
  const Expected expected[] = {
      {"DJ Crates SSD", "DJ Crates SSD", "APFS", "/Volumes/DJ Crates SSD", 1'000'000'000'000, 412'000'000'000,
       false, true, false, "Studio (Sample)"},
      {"Studio Archive 4TB", "Studio Archive", "Mac OS Extended (Journaled)", "/Volumes/Studio Archive",
       4'000'000'000'000, 1'120'000'000'000, false, true, false, "Studio (Sample)"},
      {"Photo Vault", "Photo Vault", "ExFAT", "/Volumes/Photo Vault", 2'000'000'000'000, 760'000'000'000,
       false, true, false, "Media (Sample)"},
      {"Home NAS \u2014 Business", "Business", "SMB (Network)", "/Volumes/Business", 8'000'000'000'000,
       5'300'000'000'000, true, false, true, "Media (Sample)"},
  };
  std::set<std::string> uuids;
  for (const Expected& e : expected) {
    ASSERT_TRUE(catalogs.count(e.name)) << e.name;
    const Catalog& c = catalogs[e.name];
    EXPECT_EQ(c.volumeName, e.volume);
    EXPECT_EQ(c.volumeFormat, e.format);
    EXPECT_EQ(c.rootPath, e.root);
    EXPECT_EQ(c.capacity, e.capacity);
    EXPECT_EQ(c.freeSpace, e.free);
    EXPECT_EQ(c.isNetwork, e.network) << e.name;
    EXPECT_EQ(c.isRemovable, e.removable) << e.name;
    EXPECT_EQ(c.isFolder, e.folder) << e.name;
    EXPECT_TRUE(c.isSample);
    EXPECT_EQ(c.notes, SampleData::kNotes);
    ASSERT_TRUE(c.groupID);
    EXPECT_EQ(groups[*c.groupID], e.group);
    EXPECT_EQ(c.volumeUUID.size(), 36u);
    uuids.insert(c.volumeUUID);
    EXPECT_TRUE(c.scannedAt);
    EXPECT_GT(c.fileCount, 0);
  }
  EXPECT_EQ(uuids.size(), 4u);

  // Loading again adds four more cartridges and two more groups; nothing stops it.
  SampleData::load(store, kNow);
  EXPECT_EQ(store.catalogs().size(), 8u);
  EXPECT_EQ(store.groups().size(), 4u);
}

TEST_F(SampleDataTest, ItemsHaveTheShapesAndRangesOfEachDrive) {
  std::vector<int64_t> ids = SampleData::load(store, kNow);
  const int64_t dj = ids[0], studio = ids[1], photos = ids[2], business = ids[3];

  // DJ crates: 14 to 26 tracks a genre, sizes from duration and bitrate, Rekordbox files beside them.
  size_t tracks = 0;
  for (const char* genre : {"House", "Techno", "Hip-Hop", "Drum and Bass", "Disco Edits", "Open Format"}) {
    std::vector<FileRecord> crate = filesUnder(dj, std::string("Music/") + genre + "/");
    EXPECT_GE(crate.size(), 14u) << genre;
    EXPECT_LE(crate.size(), 26u) << genre;
    tracks += crate.size();
    for (const FileRecord& f : crate) {
      int64_t kbps = std::stoll(f.meta.at("Bitrate"));
      EXPECT_EQ(f.size, static_cast<int64_t>(f.duration) * kbps * 125) << f.path;
      EXPECT_GE(f.duration, 150);
      EXPECT_LE(f.duration, 420);
      EXPECT_EQ(f.ext, kbps == 1411 ? "wav" : "mp3");
      EXPECT_EQ(f.meta.at("Album"), std::string(genre) + " Crate");
      EXPECT_EQ(f.kind, FileKind::audio);
      EXPECT_TRUE(f.label == 0 || f.label == 2);
      ASSERT_TRUE(f.modified);
      EXPECT_LE(f.modified->seconds, kNow.seconds);
      EXPECT_GE(f.modified->seconds, kNow.seconds - 4 * 365 * kDay - 86'000);
    }
  }
  EXPECT_EQ(filesUnder(dj, "Rekordbox/").size(), 2u);
  EXPECT_EQ(store.catalog(dj)->fileCount, static_cast<int64_t>(tracks + 2));

  // Studio archive: projects with bounces, videos in two cuts, forty masters, stems, and the crate backup.
  EXPECT_EQ(filesUnder(studio, "Projects/").size(), 10u);
  EXPECT_EQ(filesUnder(studio, "Video/Music Videos/").size(), 5u);
  for (const FileRecord& f : filesUnder(studio, "Video/Social Cuts/")) {
    EXPECT_EQ(f.size, static_cast<int64_t>(f.duration) * 12'000'000 / 8);
    EXPECT_EQ(f.width, 1080);
    EXPECT_EQ(f.height, 1920);
  }
  EXPECT_EQ(filesUnder(studio, "Masters/WAV/").size(), 40u);
  EXPECT_EQ(filesUnder(studio, "Masters/Stems/").size(), 20u);
  EXPECT_EQ(filesUnder(studio, "Crate Backup/Music/").size(), tracks);
  EXPECT_EQ(filesUnder(studio, "Crate Backup/").size(), tracks + 2) << "the Rekordbox files too";

  // Photo vault: every year from 2019 to 2026, ten to 28 photos an event, iPhones at 4032 × 3024.
  for (int year = 2019; year <= 2026; ++year) {
    EXPECT_FALSE(filesUnder(photos, "Photos/" + std::to_string(year) + "/").empty()) << year;
  }
  std::map<std::string, int> perEvent;
  for (const FileRecord& f : filesUnder(photos, "Photos/")) {
    perEvent[f.path.substr(0, f.path.rfind('/'))]++;
    if (f.meta.at("Camera") == "iPhone 15 Pro") {
      EXPECT_EQ(f.width * 10000 + f.height, 4032 * 10000 + 3024);
    }
    EXPECT_EQ(f.meta.at("GPS").find(", "), f.meta.at("GPS").find('.') + 6) << "five decimals";
    // Within the year of its folder, and not after now.
    const int year = std::stoi(f.path.substr(7, 4));
    const double start = static_cast<double>(year - 1970) * 365.2425 * kDay;
    EXPECT_GT(f.modified->seconds, start - 2 * kDay) << f.path;
    EXPECT_LT(f.modified->seconds, start + 367 * kDay) << f.path;
    EXPECT_LE(f.modified->seconds, kNow.seconds);
  }
  for (const auto& [event, count] : perEvent) {
    EXPECT_GE(count, 10) << event;
    EXPECT_LE(count, 28) << event;
  }

  // Business share: four to nine PDFs a folder and year, and the fixed items.
  std::vector<FileRecord> pdfs = filesUnder(business, "Business/Invoices/");
  EXPECT_GE(pdfs.size(), 8u * 4);
  EXPECT_LE(pdfs.size(), 8u * 9);
  for (const FileRecord& f : pdfs) {
    EXPECT_GE(f.size, 80'000);
    EXPECT_LE(f.size, 2'400'000);
    EXPECT_EQ(f.kind, FileKind::pdf);
  }
  for (const char* path : {"Software/Installers/TVRL Edit Bay.dmg", "Exports/Press Kit/Logo Pack.zip",
                           "Business/Templates/Rider.pages", "Backups/Website 2026-10-15.zip"}) {
    EXPECT_EQ(filesUnder(business, path).size(), 1u) << path;
  }
}

TEST_F(SampleDataTest, DuplicatesSpanTheDrives) {
  std::vector<int64_t> ids = SampleData::load(store, kNow);
  std::vector<DuplicateGroup> sets =
      store.duplicates(DuplicateMode::nameSize, 1, {}, /*crossCatalogOnly=*/true);
  ASSERT_FALSE(sets.empty());
  for (const DuplicateGroup& set : sets) {
    std::set<int64_t> drives;
    for (const DuplicateMember& m : set.members) drives.insert(m.file.catalogID);
    EXPECT_TRUE(drives.count(ids[0]) && drives.count(ids[1])) << set.name;
  }
}

TEST_F(SampleDataTest, RemovalTakesOnlySampleCatalogsAndTheirEmptiedGroups) {
  EXPECT_EQ(SampleData::removeSampleData(store, std::nullopt), 0u) << "nothing to remove";
  const fs::path thumbs = dir.path() / "Thumbnails";
  std::vector<int64_t> samples = SampleData::load(store, kNow);
  VolumeInfo volume;
  const int64_t real = store.insertCatalog("Real Drive", "/media/real", volume, false, std::nullopt, false);
  const int64_t moved = store.insertCatalog("Moved In", "/media/moved", volume, false, std::nullopt, false);
  const int64_t crates = store.createGroup("Crates (Sample)");
  const int64_t emptyCrates = store.createGroup("Old (Sample)");
  const int64_t mine = store.createGroup("Mine");
  store.setGroup(real, crates);
  const int64_t studioGroup = *store.catalog(samples[0])->groupID;
  store.setGroup(moved, studioGroup);
  for (int64_t id : {samples[0], real}) {
    testing::writeFile(thumbs / std::to_string(id) / "1.jpg", "jpeg");
  }

  EXPECT_EQ(SampleData::removeSampleData(store, thumbs), 4u);
  std::vector<Catalog> left = store.catalogs();
  ASSERT_EQ(left.size(), 2u);
  EXPECT_EQ(left[0].name, "Moved In");
  EXPECT_EQ(left[1].name, "Real Drive");
  for (int64_t id : samples) {
    EXPECT_TRUE(store.allFiles(id).empty());
    EXPECT_EQ(store.db().scalarInt("SELECT COUNT(*) FROM scan_log WHERE catalog_id=?", {id}), 0);
  }
  EXPECT_FALSE(fs::exists(thumbs / std::to_string(samples[0])));
  EXPECT_TRUE(fs::exists(thumbs / std::to_string(real) / "1.jpg"));

  std::map<int64_t, std::string> groups = groupNames();
  EXPECT_EQ(groups, (std::map<int64_t, std::string>{
                        {studioGroup, "Studio (Sample)"}, {crates, "Crates (Sample)"}, {mine, "Mine"}}));
  EXPECT_FALSE(groups.count(emptyCrates));
  EXPECT_EQ(store.catalog(moved)->groupID, studioGroup);

  EXPECT_EQ(SampleData::removeSampleData(store, thumbs), 0u);
  EXPECT_EQ(store.catalogs().size(), 2u);
  EXPECT_EQ(store.groups().size(), 3u);
}

}  // namespace
}  // namespace orrelin
