// What the search and duplicates screen tests share: a real folder scanned into a catalog of the test's
// database, and reading the texts and rows that the screens show.
#pragma once

#include <QQuickItem>
#include <QRegularExpression>

#include <filesystem>
#include <optional>
#include <string>

#include "app/qt/app_model.h"
#include "scan/scan_records.h"
#include "support/temp_dir.h"
#include "ui_fixture.h"

namespace orrelin::testing {

// Scans `root` as a new catalog named `name`, with checksums when `hashes`, and returns its id (0 when
// the scan did not end or left no catalog). The result sheet is dismissed.
inline int64_t scanCatalog(const std::filesystem::path& root, const QString& name, bool hashes = false) {
  AppModel& app = AppModel::shared();
  ScanOptions options;
  options.metadata = false;
  options.thumbnails = false;
  options.hashes = hashes;
  app.beginScan(root, name, std::nullopt, options);
  if (!waitUntil([&] { return app.scanResult().has_value() && !app.scanner()->isRunning(); }, 30000)) return 0;
  const int64_t id = app.scanResult()->catalogID;
  app.dismissScanResult();
  return id;
}

// The delegate a ListView shows for `row`, after scrolling it into view; null when there is none.
inline QQuickItem* listRow(QQuickItem* list, int row) {
  if (!list) return nullptr;
  QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, row), Q_ARG(int, 4 /* ListView.Contain */));
  QQuickItem* found = nullptr;
  QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, row));
  return found;
}

}  // namespace orrelin::testing
