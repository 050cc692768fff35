// The inventory web site generated from real scanned trees: the data scripts read back against the
// database, the options, the thumbnail copies and the pages.
#include <sys/xattr.h>

#include <cmath>
#include <fstream>

#include "exchange/exchange_file.h"
#include "exchange/web_files.h"
#include "exchange/web_site_fixture.h"
#include "organize/export_error.h"
#include "scan/media_tools.h"
#include "scan/volume_info.h"
#include "store/safe_int.h"

namespace orrelin::testing {
namespace {

using nlohmann::json;

const std::string kRawName = "caf\xE9.txt";  // Latin-1, not UTF-8.

// A tree with hostile names, media with metadata and thumbnails, and hidden entries.
class WebExportTest : public WebSiteTest {
 protected:
  void makeTree() {
    writeFile(tree / "<img src=x onerror=alert(1)>", "hi");
    writeFile(tree / "quote\"d 'name'.txt", "q");
    writeFile(tree / "line\u2028sep\u2029.txt", "l");
    writeFile(tree / kRawName, "raw");
    writeFile(tree / ".secret.txt", "s");
    writeFile(tree / ".hidden dir" / "inside.txt", "i");
    fs::create_directories(tree / "Photos");
    ASSERT_TRUE(run("convert -size 640x480 xc:red " + shellQuote((tree / "Photos/red.jpg").string())));
    ASSERT_TRUE(run("convert -size 300x200 xc:blue " + shellQuote((tree / "Photos/.blue.jpg").string())));
    ASSERT_TRUE(exiftool((tree / "Photos/red.jpg").string(), "-Make=Canon -Model='EOS </script>'"));
    ASSERT_TRUE(
        ffmpeg("-f lavfi -i sine=frequency=440:duration=2.5 -metadata artist='Ann </script>' "
               "-metadata title=Song " +
               shellQuote((tree / "song.mp3").string())));
    std::string tags = "Family, </script>";
    ASSERT_EQ(::setxattr((tree / "Photos/red.jpg").c_str(), "user.xdg.tags", tags.data(), tags.size(), 0), 0);
  }

  // The records the site should list: the catalog's rows by path, hidden ones left out unless asked.
  std::vector<FileRecord> expectedRecords(int64_t catalogID, bool includeHidden) {
    std::vector<FileRecord> out;
    for (FileRecord& f : CatalogDB(dbPath).allFiles(catalogID)) {
      if (includeHidden || !f.hidden) out.push_back(std::move(f));
    }
    return out;
  }

  int64_t idOf(int64_t catalogID, const std::string& path) {
    for (const FileRecord& f : CatalogDB(dbPath).allFiles(catalogID)) {
      if (f.path == path) return f.id;
    }
    ADD_FAILURE() << "no record " << path;
    return 0;
  }
};

TEST_F(WebExportTest, RowsReadBackAsTheDatabaseHoldsThem) {
  REQUIRE_TOOLS("convert", "ffmpeg", "exiftool");
  makeTree();
  int64_t id = scan();
  CatalogDB(dbPath).renameCatalog(id, "Drive \"A\" </script>\u2028");
  CatalogDB(dbPath).setNotes(id, "<!-- notes --> & more");
  exportSite({id});

  Catalog catalog = *CatalogDB(dbPath).catalog(id);
  json data = readData(id);
  std::string raw = readFile(site / "data" / ("cat-" + std::to_string(id) + ".js"));
  size_t last = 0;
  for (const char* key :
       {"\"id\"", "\"name\"", "\"volume\"", "\"format\"", "\"uuid\"", "\"capacity\"", "\"free\"", "\"files\"",
        "\"folders\"", "\"size\"", "\"scanned\"", "\"root\"", "\"notes\"", "\"kind\"", "\"items\""}) {
    size_t at = raw.find(std::string(key) + ":");
    ASSERT_NE(at, std::string::npos) << key;
    EXPECT_GT(at, last) << key << " out of order";
    last = at;
  }
  EXPECT_EQ(data.size(), 15u);
  EXPECT_EQ(data["id"], id);
  EXPECT_EQ(data["name"], catalog.name);
  EXPECT_EQ(data["volume"], catalog.volumeName);
  EXPECT_EQ(data["format"], catalog.volumeFormat);
  EXPECT_EQ(data["uuid"], catalog.volumeUUID);
  EXPECT_EQ(data["capacity"], catalog.capacity);
  EXPECT_EQ(data["free"], catalog.freeSpace);
  EXPECT_EQ(data["files"], catalog.fileCount);  // Hidden files still count in the stored totals.
  EXPECT_EQ(data["folders"], catalog.folderCount);
  EXPECT_EQ(data["size"], catalog.totalSize);
  EXPECT_EQ(data["scanned"], SafeInt::from(catalog.scannedAt->seconds));
  EXPECT_EQ(data["root"], NameMapping::storedPath(tree));
  EXPECT_EQ(data["notes"], "<!-- notes --> & more");
  EXPECT_EQ(data["kind"], "Folder");

  std::vector<FileRecord> expected = expectedRecords(id, false);
  const json& items = data["items"];
  ASSERT_EQ(items.size(), expected.size());
  int copies = 0;
  for (size_t i = 0; i < expected.size(); ++i) {
    const FileRecord& f = expected[i];
    const json& row = items[i];
    SCOPED_TRACE(f.path);
    ASSERT_EQ(row.size(), 13u);
    EXPECT_EQ(row[0], f.id);
    EXPECT_EQ(row[1], f.parentID);
    EXPECT_EQ(row[2], f.name == NameMapping::fromDisk(kRawName) ? "caf\uFFFD.txt" : f.name);
    EXPECT_EQ(row[3], f.isDir ? 1 : 0);
    EXPECT_EQ(row[4], f.size);
    EXPECT_EQ(row[5], f.kindName());
    EXPECT_EQ(row[6], f.modified ? static_cast<int64_t>(std::trunc(f.modified->seconds)) : 0);
    EXPECT_TRUE(row[6].is_number_integer() && row[4].is_number_integer() && row[11].is_number_integer());
    EXPECT_EQ(row[7], fs::exists(siteThumb(id, f.id)) ? 1 : 0);
    EXPECT_EQ(row[8], WebExporter::summary(f));
    EXPECT_NEAR(row[9].get<double>(), std::round(f.duration * 10) / 10, 1e-9);
    EXPECT_EQ(row[10], f.meta.count("Artist") ? f.meta.at("Artist") : "");
    EXPECT_EQ(row[11], f.width);
    EXPECT_EQ(row[12], f.height);
    if (row[7] == 1) {
      ++copies;
      EXPECT_EQ(readFile(siteThumb(id, f.id)), readFile(cachedThumb(id, f.id)));
    }
  }

  std::map<std::string, json> rows = rowsByName(id);
  for (const char* name : {"<img src=x onerror=alert(1)>", "quote\"d 'name'.txt", "line\u2028sep\u2029.txt",
                           "caf\uFFFD.txt", "inside.txt"}) {
    EXPECT_TRUE(rows.count(name)) << name;
  }
  EXPECT_FALSE(rows.count(".secret.txt"));
  EXPECT_FALSE(rows.count(".hidden dir"));
  EXPECT_FALSE(rows.count(".blue.jpg"));
  // A picture with a thumbnail has its copy, with the summary of what the scan found.
  ASSERT_TRUE(rows.count("red.jpg"));
  EXPECT_EQ(rows["red.jpg"][7], 1);
  EXPECT_EQ(rows["red.jpg"][11], 640);
  EXPECT_NE(rows["red.jpg"][8].get<std::string>().find("Tags: Family, </script>"), std::string::npos);
  EXPECT_EQ(copies, 1);
  EXPECT_FALSE(fs::exists(siteThumb(id, idOf(id, "Photos/.blue.jpg"))));
  EXPECT_TRUE(fs::exists(cachedThumb(id, idOf(id, "Photos/.blue.jpg"))));
  // The song's duration is rounded to a tenth, and its artist travels in a column of its own.
  ASSERT_TRUE(rows.count("song.mp3"));
  EXPECT_NEAR(rows["song.mp3"][9].get<double>(), 2.5, 0.11);
  EXPECT_EQ(rows["song.mp3"][10], "Ann </script>");
  EXPECT_EQ(rows["song.mp3"][7], 0);
}

TEST_F(WebExportTest, OptionsDecideHiddenRowsAndThumbnails) {
  REQUIRE_TOOLS("convert", "ffmpeg", "exiftool");
  makeTree();
  int64_t id = scan();
  int64_t blue = idOf(id, "Photos/.blue.jpg");

  WebExporter::Options options;
  options.includeHidden = true;
  exportSite({id}, options);
  json data = readData(id);
  EXPECT_EQ(data["items"].size(), expectedRecords(id, true).size());
  std::map<std::string, json> rows = rowsByName(id);
  EXPECT_TRUE(rows.count(".secret.txt") && rows.count(".hidden dir"));
  EXPECT_EQ(rows[".blue.jpg"][7], 1);
  EXPECT_EQ(readFile(siteThumb(id, blue)), readFile(cachedThumb(id, blue)));

  fs::remove_all(site);
  options.includeThumbnails = false;
  exportSite({id}, options);
  data = readData(id);
  for (const json& row : data["items"]) EXPECT_EQ(row[7], 0) << row[2];
  EXPECT_FALSE(fs::exists(site / "thumbs"));
}

TEST_F(WebExportTest, ThumbnailCopiesNeverLeaveTheThumbnailsFolder) {
  REQUIRE_TOOLS("convert");
  for (const char* name : {"gone.jpg", "linked.jpg", "stale.jpg", "trap.jpg", "plain.jpg"}) {
    ASSERT_TRUE(run("convert -size 64x64 xc:green " + shellQuote((tree / name).string())));
  }
  int64_t id = scan();
  auto fileID = [&](const std::string& name) { return idOf(id, name); };
  fs::path outside = m_dir.path() / "outside.jpg";
  writeFile(outside, "not a thumbnail of this catalog");
  fs::path victim = m_dir.path() / "victim.txt";
  writeFile(victim, "must stay");

  // A missing cached picture; a link in a picture's place; an older copy in the site; a link in the
  // site where the copy goes, pointing at a file elsewhere.
  fs::remove(cachedThumb(id, fileID("gone.jpg")));
  fs::remove(cachedThumb(id, fileID("linked.jpg")));
  fs::create_symlink(outside, cachedThumb(id, fileID("linked.jpg")));
  writeFile(siteThumb(id, fileID("stale.jpg")), "old copy");
  fs::create_symlink(victim, siteThumb(id, fileID("trap.jpg")));

  exportSite({id});
  std::map<std::string, json> rows = rowsByName(id);
  EXPECT_EQ(rows["gone.jpg"][7], 0);
  EXPECT_FALSE(fs::exists(siteThumb(id, fileID("gone.jpg"))));
  EXPECT_EQ(rows["linked.jpg"][7], 0);
  EXPECT_FALSE(fs::exists(siteThumb(id, fileID("linked.jpg"))));
  for (const char* name : {"stale.jpg", "trap.jpg", "plain.jpg"}) {
    EXPECT_EQ(rows[name][7], 1) << name;
    fs::path copy = siteThumb(id, fileID(name));
    EXPECT_FALSE(fs::is_symlink(copy)) << name;
    EXPECT_EQ(readFile(copy), readFile(cachedThumb(id, fileID(name)))) << name;
  }
  EXPECT_EQ(readFile(victim), "must stay");

  // The catalog's whole thumbnail folder replaced by a link: nothing is copied through it.
  fs::path real = m_dir.path() / "elsewhere";
  fs::rename(thumbs / std::to_string(id), real);
  fs::create_symlink(real, thumbs / std::to_string(id));
  fs::remove_all(site);
  exportSite({id});
  json data = readData(id);
  for (const json& row : data["items"]) EXPECT_EQ(row[7], 0) << row[2];
  EXPECT_FALSE(fs::exists(site / "thumbs" / std::to_string(id)));
}

TEST_F(WebExportTest, PagesNameTheirCatalogsAndEscapeTitles) {
  writeFile(tree / "a" / "one.txt", "1");
  writeFile(tree / "b" / "two.txt", "2");
  int64_t a = scan("Alpha & <Omega>", false, tree / "a");
  int64_t b = scan("Beta \"quoted\"", false, tree / "b");
  // A catalog never scanned, on a network volume, holding nothing.
  VolumeInfo volume;
  volume.name = "NAS";
  volume.isNetwork = true;
  int64_t empty = CatalogDB(dbPath).insertCatalog("Empty", "/mnt/nas", volume, false, std::nullopt, false);

  WebExporter::Options options;
  options.title = "Tom & \"Jerry\" <Best>";
  fs::path index = exportSite({b, a, empty, b}, options);
  EXPECT_EQ(index, site / "index.html");

  std::string page = readFile(index);
  EXPECT_NE(page.find("<title>Tom &amp; &quot;Jerry&quot; &lt;Best&gt;</title>"), std::string::npos);
  EXPECT_NE(page.find("<div id=\"app\" data-page=\"index\" data-title=\"Tom &amp; &quot;Jerry&quot; "
                      "&lt;Best&gt;\"></div>"),
            std::string::npos);
  std::string scripts = "<script src=\"data/cat-" + std::to_string(b) +
                        ".js\"></script>\n<script src=\"data/cat-" + std::to_string(a) +
                        ".js\"></script>\n<script src=\"data/cat-" + std::to_string(empty) +
                        ".js\"></script>\n<script src=\"assets/app.js\"></script>";
  EXPECT_NE(page.find(scripts), std::string::npos) << page;

  std::string alpha = readFile(site / ("catalog-" + std::to_string(a) + ".html"));
  EXPECT_NE(alpha.find("<title>Alpha &amp; &lt;Omega&gt;</title>"), std::string::npos);
  EXPECT_NE(
      alpha.find("<div id=\"app\" data-page=\"catalog\" data-catalog=\"" + std::to_string(a) + "\"></div>"),
      std::string::npos);
  EXPECT_NE(alpha.find("<script src=\"data/cat-" + std::to_string(a) + ".js\"></script>"), std::string::npos);
  EXPECT_EQ(alpha.find("data/cat-" + std::to_string(b)), std::string::npos);
  EXPECT_NE(readFile(site / ("catalog-" + std::to_string(b) + ".html"))
                .find("<title>Beta &quot;quoted&quot;</title>"),
            std::string::npos);

  json none = readData(empty);
  EXPECT_EQ(none["scanned"], 0);
  EXPECT_EQ(none["kind"], "Network");
  EXPECT_TRUE(none["items"].empty());
  EXPECT_EQ(readData(b)["items"].size(), 1u);
  std::string bScript = "data/cat-" + std::to_string(b) + ".js";  // Listed once, though named twice.
  EXPECT_EQ(page.find(bScript, page.find(bScript) + 1), std::string::npos);
  EXPECT_EQ(readFile(site / "assets/style.css"), WebExporter::css());
  EXPECT_EQ(readFile(site / "assets/app.js"), WebExporter::js());

  // An empty title falls back to the default name; the rest of the folder is left alone.
  writeFile(site / "notes.txt", "mine");
  options.title = "";
  exportSite({a}, options);
  EXPECT_NE(readFile(index).find("<title>Drive Inventory</title>"), std::string::npos);
  EXPECT_EQ(readFile(site / "notes.txt"), "mine");
  for (const auto& entry : fs::recursive_directory_iterator(site)) {
    EXPECT_NE(entry.path().filename().string().front(), '.') << "temporary left: " << entry.path();
  }
}

TEST_F(WebExportTest, DurationsAndSummariesComeFromTheStoredRecord) {
  writeFile(tree / "clip.mov", "not really a movie");
  int64_t id = scan("Clips", false);
  CatalogDB(dbPath).db().run(
      "UPDATE files SET duration=1.26, width=1920, height=1080, tags='x, y', meta=? WHERE name='clip.mov'",
      {std::string(R"({"Resolution":"1920×1080","Video Codec":"H.264","Artist":"Ann","Pages":"3"})")});
  exportSite({id});
  json row = rowsByName(id)["clip.mov"];
  EXPECT_EQ(readFile(site / ("data/cat-" + std::to_string(id) + ".js")).find("1.26"), std::string::npos);
  EXPECT_DOUBLE_EQ(row[9].get<double>(), 1.3);
  EXPECT_EQ(row[8], "0:01 \u00B7 1920\u00D71080 \u00B7 H.264 \u00B7 Ann \u00B7 3 pages \u00B7 Tags: x, y");
  EXPECT_EQ(row[10], "Ann");
  EXPECT_EQ(row[11], 1920);
  EXPECT_EQ(row[12], 1080);
}

TEST_F(WebExportTest, LargeCatalogStreamsInOrder) {
  writeFile(tree / "seed.txt", "s");
  int64_t id = scan("Big", false);
  // Enough rows that the data file is written in many pieces.
  CatalogDB store(dbPath);
  store.db().transaction([&] {
    Statement insert = store.db().prepare(
        "INSERT INTO files(catalog_id, parent_id, path, name, size, kind, modified) "
        "VALUES(?,0,?,?,?,'Other',?)");
    for (int i = 0; i < 40000; ++i) {
      std::string name =
          "file " + std::to_string(i * 7919 % 40000) + " with a longer name to fill the buffer";
      store.db().step(insert, {id, name, name, int64_t{i}, 1.7e9 + i});
    }
  });
  exportSite({id});
  EXPECT_GT(fs::file_size(site / ("data/cat-" + std::to_string(id) + ".js")),
            2u * AtomicFile::kFlushSize);
  std::vector<FileRecord> expected = store.allFiles(id);
  json items = readData(id)["items"];
  ASSERT_EQ(items.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(items[i][0], expected[i].id) << i;
}

TEST_F(WebExportTest, FailuresStopWithAClearMessageAndKeepWhatWasWritten) {
  writeFile(tree / "one.txt", "1");
  int64_t id = scan("One", false);

  // The site folder is a file: nothing can be created in it.
  writeFile(site, "a file");
  try {
    exportSite({id});
    ADD_FAILURE() << "no error";
  } catch (const ExportError& e) {
    EXPECT_NE(std::string(e.what()).find("Could not create the folder"), std::string::npos) << e.what();
  }
  EXPECT_EQ(readFile(site), "a file");
  fs::remove(site);

  // The data file's place is taken by a folder: the export stops there, before any page.
  fs::create_directories(site / "data" / ("cat-" + std::to_string(id) + ".js") / "keep");
  EXPECT_THROW(exportSite({id}), ExportError);
  EXPECT_TRUE(fs::exists(site / "assets/app.js"));
  EXPECT_FALSE(fs::exists(site / "index.html"));
  EXPECT_TRUE(fs::exists(site / "data" / ("cat-" + std::to_string(id) + ".js") / "keep"));
  EXPECT_EQ(std::distance(fs::directory_iterator(site / "data"), fs::directory_iterator()), 1);

  // A store that cannot be read throws its own error.
  fs::remove_all(site);
  CatalogDB store(dbPath);
  std::vector<Catalog> catalogs = {*store.catalog(id)};
  store.db().exec("ALTER TABLE files RENAME TO gone");
  EXPECT_THROW(WebExporter::exportSite(store, catalogs, site, thumbs, {}), DBError);
  EXPECT_FALSE(fs::exists(site / "index.html"));
}

}  // namespace
}  // namespace orrelin::testing
