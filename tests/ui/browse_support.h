// What the browser's tests share: a library that starts empty, and real folders cataloged by the program.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/qt/app_model.h"
#include "store/catalog_db.h"
#include "support/qt_wait.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

// Deletes every catalog and group an earlier test of this process left, and any pending reveal.
inline void emptyLibrary(AppModel& model) {
  for (const Catalog& c : model.catalogs()) model.store()->deleteCatalog(c.id, model.thumbnailsPath());
  for (const CatalogGroup& g : model.groups()) model.store()->deleteGroup(g.id);
  model.takePendingRevealFile();
  model.reload();
}

// Catalogs `root` as a new cartridge named `name` (no media details, no thumbnails unless asked, hidden
// files included) and waits for the scan to end; the result sheet it brings up is closed.
inline Catalog scanFolder(AppModel& model, const std::filesystem::path& root, const QString& name,
                          bool thumbnails = false) {
  ScanOptions options;
  options.metadata = thumbnails;
  options.thumbnails = thumbnails;
  options.includeHidden = true;
  model.beginScan(root, name, std::nullopt, options);
  EXPECT_TRUE(waitUntil([&] { return !model.scanner()->isRunning() && model.scanResult().has_value(); }));
  model.dismissScanResult();
  for (const Catalog& c : model.catalogs())
    if (c.name == name.toStdString()) return c;
  ADD_FAILURE() << "no catalog named " << name.toStdString();
  return {};
}

// Rescans `catalog` and waits for the end.
inline void rescanAndWait(AppModel& model, const Catalog& catalog) {
  model.rescan(catalog);
  EXPECT_TRUE(waitUntil([&] { return !model.scanner()->isRunning() && model.scanResult().has_value(); }));
  model.dismissScanResult();
}

// The record at `path` in `catalog`; fails the test when there is none.
inline FileRecord recordAt(AppModel& model, const Catalog& catalog, const std::string& path) {
  for (const FileRecord& f : model.store()->allFiles(catalog.id))
    if (f.path == path) return f;
  ADD_FAILURE() << "no record " << path;
  return {};
}

// A tree with folders three deep, a hidden folder, names of mixed case and sizes that sort differently
// from the names.
inline void makeBrowseTree(const std::filesystem::path& root) {
  writeFile(root / "Docs" / "Reports" / "q1.txt", "first quarter");
  writeFile(root / "Docs" / "Reports" / "Q2 summary.txt", "second quarter, longer");
  writeFile(root / "Docs" / "letter.txt", std::string(3000, 'l'));
  writeFile(root / "Photos" / "Été à Nice.jpg", std::string(5000, 'p'));
  writeFile(root / "Photos" / "beach.jpg", std::string(100, 'b'));
  writeFile(root / ".secret" / "key.txt", "k");
  writeFile(root / "notes.txt", std::string(40, 'n'));
  writeFile(root / "archive.zip", std::string(9000, 'z'));
  std::filesystem::create_directories(root / "Empty");
}

}  // namespace orrelin::testing
