// Duplicate sets on real catalog databases: each mode, the catalog filter, the cross-catalog rule,
// ranking, keys and titles, and the wasted-space arithmetic.
#include "search/duplicates.h"

#include <gtest/gtest.h>

#include <limits>

#include "search/library_builder.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::LibraryBuilder;
using testing::TempDir;

constexpr int64_t MB = 1'000'000;

// Each set as "key: catalog/path, catalog/path, …" so that a failure shows the whole result.
std::vector<std::string> describe(const std::vector<DuplicateGroup>& groups) {
  std::vector<std::string> out;
  for (const DuplicateGroup& g : groups) {
    std::string line = g.key + ":";
    for (const DuplicateMember& m : g.members) line += " " + m.catalogName + "/" + m.file.path;
    out.push_back(line);
  }
  return out;
}

class DuplicatesTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  LibraryBuilder lib{store};
  int64_t a = 0, b = 0, c = 0;

  // Three drives. The photo is on all three, once under another case; the song twice on Alpha only;
  // the video twice on Alpha and once on Beta; the notes are small. The folders "pics" of Alpha and Beta
  // roll up to the same name and size as each other and the same size as the photo.
  void SetUp() override {
    a = lib.addCatalog("Alpha");
    b = lib.addCatalog("Beta");
    c = lib.addCatalog("Gamma");
    lib.file(a, "pics/photo.jpg", 5 * MB, "s-photo");
    lib.file(b, "pics/photo.jpg", 5 * MB, "s-photo");
    lib.file(c, "Photo.jpg", 5 * MB, "s-photo");
    lib.file(a, "music/x/song.mp3", 3 * MB);
    lib.file(a, "music/y/song.mp3", 3 * MB);
    lib.file(a, "v1/clip.mov", 20 * MB, "s-clip");
    lib.file(a, "v2/clip.mov", 20 * MB, "s-clip");
    lib.file(b, "clip.mov", 20 * MB, "s-clip");
    lib.file(a, "notes.txt", 1000);
    lib.file(b, "notes.txt", 1000);
    lib.file(a, "empty.log", 0);
    lib.file(b, "empty.log", 0);
    lib.finish();
  }
};

TEST_F(DuplicatesTest, EachModeFindsItsSetsRankedByWastedSpace) {
  // clip: 20 MB × 2 surplus; photo by size: 5 MB × 2; song: 3 MB × 1. The two "pics" folders never
  // take part.
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::nameSize, MB, {}, false)),
            (std::vector<std::string>{
                "Name + Size|clip.mov|20000000: Alpha/v1/clip.mov Alpha/v2/clip.mov Beta/clip.mov",
                "Name + Size|photo.jpg|5000000: Alpha/pics/photo.jpg Beta/pics/photo.jpg",
                "Name + Size|song.mp3|3000000: Alpha/music/x/song.mp3 Alpha/music/y/song.mp3",
            }));
  // By checksum the photo under another case joins; files without a checksum never match.
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::hash, MB, {}, false)),
            (std::vector<std::string>{
                "hash|s-clip: Alpha/v1/clip.mov Alpha/v2/clip.mov Beta/clip.mov",
                "hash|s-photo: Alpha/pics/photo.jpg Beta/pics/photo.jpg Gamma/Photo.jpg",
            }));
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::sizeOnly, MB, {}, false)),
            (std::vector<std::string>{
                "Size Only||20000000: Alpha/v1/clip.mov Alpha/v2/clip.mov Beta/clip.mov",
                "Size Only||5000000: Alpha/pics/photo.jpg Beta/pics/photo.jpg Gamma/Photo.jpg",
                "Size Only||3000000: Alpha/music/x/song.mp3 Alpha/music/y/song.mp3",
            }));
}

TEST_F(DuplicatesTest, TitlesSizesAndWastedSpaceOfTheSets) {
  auto bySize = store.duplicates(DuplicateMode::sizeOnly, MB, {}, false);
  ASSERT_EQ(bySize.size(), 3u);
  EXPECT_EQ(bySize[0].name, "3 files of " + Fmt::size(20 * MB));
  EXPECT_EQ(bySize[0].size, 20 * MB);
  EXPECT_EQ(bySize[0].wasted(), 40 * MB);
  EXPECT_EQ(totalWasted(bySize), 40 * MB + 10 * MB + 3 * MB);

  auto byHash = store.duplicates(DuplicateMode::hash, MB, {}, false);
  ASSERT_EQ(byHash.size(), 2u);
  EXPECT_EQ(byHash[1].name, "photo.jpg");  // The first member's name.
  EXPECT_EQ(byHash[1].members[2].catalogName, "Gamma");

  auto byName = store.duplicates(DuplicateMode::nameSize, MB, {}, false);
  EXPECT_EQ(byName[1].name, "photo.jpg");
  EXPECT_EQ(byName[1].id(), byName[1].key);
}

TEST_F(DuplicatesTest, MinimumSizeIsInclusiveAndZeroAdmitsEmptyFiles) {
  auto names = [&](int64_t minSize) {
    std::vector<std::string> out;
    for (const DuplicateGroup& g : store.duplicates(DuplicateMode::nameSize, minSize, {}, false))
      out.push_back(g.name);
    return out;
  };
  EXPECT_EQ(names(5 * MB), (std::vector<std::string>{"clip.mov", "photo.jpg"}));
  EXPECT_EQ(names(5 * MB + 1), (std::vector<std::string>{"clip.mov"}));
  // notes wastes 1000 bytes, the empty files nothing, so they come last.
  EXPECT_EQ(names(0),
            (std::vector<std::string>{"clip.mov", "photo.jpg", "song.mp3", "notes.txt", "empty.log"}));
}

TEST_F(DuplicatesTest, CrossCatalogRuleKeepsEveryCopyOfASetThatSpansDrives) {
  // The song lies twice on one drive only; the clip's set keeps both Alpha copies.
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::nameSize, MB, {}, true)),
            (std::vector<std::string>{
                "Name + Size|clip.mov|20000000: Alpha/v1/clip.mov Alpha/v2/clip.mov Beta/clip.mov",
                "Name + Size|photo.jpg|5000000: Alpha/pics/photo.jpg Beta/pics/photo.jpg",
            }));
  // One catalog can never span two.
  for (DuplicateMode mode : kAllDuplicateModes) EXPECT_TRUE(store.duplicates(mode, 0, {a}, true).empty());
}

TEST_F(DuplicatesTest, CatalogFilterLimitsCountingAndMembers) {
  // Only Alpha and Gamma: the clip's Beta copy leaves the set, the photo is one copy each under two names.
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::nameSize, MB, {a, c}, false)),
            (std::vector<std::string>{
                "Name + Size|clip.mov|20000000: Alpha/v1/clip.mov Alpha/v2/clip.mov",
                "Name + Size|song.mp3|3000000: Alpha/music/x/song.mp3 Alpha/music/y/song.mp3",
            }));
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::sizeOnly, MB, {b, c}, false)),
            (std::vector<std::string>{"Size Only||5000000: Beta/pics/photo.jpg Gamma/Photo.jpg"}));
  // By checksum the aggregate counts only rows inside the filter: one clip in Beta is no set, and the
  // members outside the filter are dropped from the sets that remain.
  EXPECT_EQ(describe(store.duplicates(DuplicateMode::hash, MB, {b, c}, false)),
            (std::vector<std::string>{"hash|s-photo: Beta/pics/photo.jpg Gamma/Photo.jpg"}));
  EXPECT_TRUE(store.duplicates(DuplicateMode::hash, MB, {b}, false).empty());
  // An id that names no catalog matches nothing.
  EXPECT_TRUE(store.duplicates(DuplicateMode::sizeOnly, 0, {999}, false).empty());
}

TEST_F(DuplicatesTest, LimitCutsTheRankedList) {
  auto top = store.duplicates(DuplicateMode::sizeOnly, 0, {}, false, 2);
  ASSERT_EQ(top.size(), 2u);
  EXPECT_EQ(top[0].size, 20 * MB);
  EXPECT_EQ(top[1].size, 5 * MB);
}

TEST_F(DuplicatesTest, NamesDifferingInCaseOnlyAreNoSetAndUnknownCatalogsAreNamedByAQuestionMark) {
  int64_t d = lib.addCatalog("Delta");
  lib.file(d, "README.md", 2 * MB);
  lib.file(d, "docs/readme.md", 2 * MB);
  for (const DuplicateGroup& g : store.duplicates(DuplicateMode::nameSize, MB, {}, false))
    EXPECT_EQ(g.name.find("eadme"), std::string::npos) << g.key;

  // Rows left behind by a catalog that is gone (an old database, written without foreign keys).
  store.db().exec("PRAGMA foreign_keys=OFF");
  lib.file(4242, "orphan/clip.mov", 20 * MB, "s-clip");
  store.db().exec("PRAGMA foreign_keys=ON");
  auto sets = store.duplicates(DuplicateMode::hash, MB, {}, false);
  ASSERT_FALSE(sets.empty());
  EXPECT_EQ(sets[0].members.back().catalogName, "?");
  EXPECT_EQ(sets[0].members.back().file.catalogID, 4242);
}

TEST_F(DuplicatesTest, ALibraryWithoutChecksumsHasNoChecksumSets) {
  store.db().run("UPDATE files SET sha256=''");
  EXPECT_TRUE(store.duplicates(DuplicateMode::hash, 0, {}, false).empty());
}

TEST_F(DuplicatesTest, ErrorsOfTheDatabaseArePassedOn) {
  store.db().close();
  EXPECT_THROW(store.duplicates(DuplicateMode::nameSize, 0, {}, false), DBError);
}

TEST(DuplicateGroupTest, WastedSpaceCountsSurplusCopies) {
  auto group = [](int64_t size, size_t members) {
    DuplicateGroup g;
    g.size = size;
    g.members.resize(members);
    return g;
  };
  struct Case {
    int64_t size;
    size_t members;
    int64_t wasted;
  };
  constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
  for (const Case& k : {Case{100, 0, 0}, Case{100, 1, 0}, Case{100, 2, 100}, Case{7, 5, 28},
                        Case{kMax, 2, kMax}, Case{kMax / 3, 4, kMax / 3 * 3}}) {
    EXPECT_EQ(group(k.size, k.members).wasted(), k.wasted) << k.size << " × " << k.members;
  }
  EXPECT_EQ(totalWasted({group(10, 3), group(5, 2), group(1, 0)}), 25);
  EXPECT_EQ(totalWasted({}), 0);
}

TEST(DuplicateGroupDeathTest, OverflowingWastedSpaceStopsTheProgram) {
  constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
  DuplicateGroup big;
  big.size = kMax / 2 + 1;
  big.members.resize(3);
  EXPECT_DEATH(big.wasted(), "overflow in the wasted space");
  DuplicateGroup half;
  half.size = kMax / 2 + 1;
  half.members.resize(2);
  EXPECT_DEATH(totalWasted({half, half}), "overflow in the total wasted space");
}

}  // namespace
}  // namespace orrelin
