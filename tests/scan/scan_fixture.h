// A scan test's setting: a real tree in a temporary folder, a real database beside it, and helpers that run
// the worker over them and read back what it stored.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <sys/time.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/name_mapping.h"
#include "scan/scan_worker.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

namespace fs = std::filesystem;

// Options that read no file contents: only the walk and the rows.
inline ScanOptions plainOptions() {
  ScanOptions options;
  options.metadata = false;
  options.thumbnails = false;
  return options;
}

// Sets a file's modification time to `seconds` since 1970 (fractions kept), without following links.
inline void setModified(const fs::path& path, double seconds) {
  struct timespec times[2];
  times[0].tv_sec = times[1].tv_sec = static_cast<time_t>(seconds);
  times[0].tv_nsec = times[1].tv_nsec = static_cast<long>((seconds - static_cast<double>(times[0].tv_sec)) * 1e9);
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

class ScanTest : public ::testing::Test {
 protected:
  ScanTest() {
    // Settings and data of the program go to the temporary folder, never to the user's own.
    m_env.set("XDG_CONFIG_HOME", (m_dir.path() / "config").string());
    m_env.set("XDG_DATA_HOME", (m_dir.path() / "data").string());
    fs::create_directories(tree);
  }

  // Runs one scan of `root` (the tree unless given): a new catalog when `catalogID` is absent.
  // `onProgress` is called with each report after it is recorded.
  ScanResult scan(ScanOptions options = plainOptions(), std::optional<int64_t> catalogID = std::nullopt,
                  std::shared_ptr<ScanControl> control = nullptr,
                  std::function<void(const ScanProgress&)> onProgress = nullptr,
                  std::optional<std::string> root = std::nullopt) {
    reports.clear();
    ScanWorker worker(dbPath, root.value_or(tree.string()), catalogID, "Test", std::nullopt, options, thumbs,
                      std::move(control), [&](const ScanProgress& p) {
                        reports.push_back(p);
                        if (onProgress) onProgress(p);
                      });
    return worker.run();
  }

  // Scans again into the same catalog.
  ScanResult rescan(int64_t catalogID, ScanOptions options = plainOptions()) { return scan(options, catalogID); }

  // The catalog's rows by stored path.
  std::map<std::string, FileRecord> rows(int64_t catalogID) {
    CatalogDB store(dbPath);
    std::map<std::string, FileRecord> out;
    for (FileRecord& f : store.allFiles(catalogID)) out.emplace(f.path, std::move(f));
    return out;
  }

  std::optional<Catalog> catalog(int64_t id) { return CatalogDB(dbPath).catalog(id); }

  // The note of the catalog's latest scan-log line.
  std::string lastNote(int64_t catalogID) {
    CatalogDB store(dbPath);
    return store.db()
        .scalarText("SELECT note FROM scan_log WHERE catalog_id=? ORDER BY id DESC LIMIT 1", {catalogID})
        .value_or("");
  }

  TempDir m_dir;
  ScopedEnv m_env;
  fs::path tree = m_dir.path() / "tree";
  fs::path thumbs = m_dir.path() / "thumbs";
  std::string dbPath = m_dir.file("Catalogs.sqlite");
  std::vector<ScanProgress> reports;
};

}  // namespace orrelin::testing
