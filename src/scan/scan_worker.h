// One scan of one folder tree or drive into one catalog: creates the catalog or refreshes it, inserts new
// entries, rewrites changed ones, removes vanished ones, and ends with totals and a scan-log line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "scan/file_kind.h"
#include "scan/scan_records.h"

namespace orrelin {

class ScanWorker {
 public:
  using ProgressFn = std::function<void(const ScanProgress&)>;

  // `dbPath`: the catalog database, on which the worker opens a connection of its own. `rootPath`: the
  // folder or drive to walk, as stored text (NameMapping::storedPath of the real path). `catalogID`: the
  // catalog to rescan, or nothing for a new catalog named `newName` in group `groupID`. `thumbsRoot`: the
  // folder of all thumbnails. `control` may be null (no pause or cancel). `progress` is called on the
  // thread that calls run(), and may be empty.
  ScanWorker(std::string dbPath, std::string rootPath, std::optional<int64_t> catalogID, std::string newName,
             std::optional<int64_t> groupID, ScanOptions options, std::filesystem::path thumbsRoot,
             std::shared_ptr<ScanControl> control, ProgressFn progress);
  ~ScanWorker();
  ScanWorker(const ScanWorker&) = delete;
  ScanWorker& operator=(const ScanWorker&) = delete;

  // Runs the scan on the calling thread and returns its outcome. Never throws: every failure ends up in
  // ScanResult::error, and what was written before it stays committed. One worker serves one run.
  ScanResult run();

  // The catalog scanned: the one given, or the new one once run() has created it.
  std::optional<int64_t> catalogID() const { return m_catalogID; }

  // `path` below `root` without the leading slash ("" for the root itself), or nothing when `path` does
  // not lie below `root`. A root of "/" takes every absolute path.
  static std::optional<std::string> relativePath(std::string_view path, std::string_view root);

  // The summed size of everything inside the package at `path` (a real path), stopping after
  // kPackageEntryLimit entries; 0 when it cannot be read.
  static int64_t packageSize(const std::filesystem::path& path);
  static constexpr int64_t kPackageEntryLimit = 200'000;

  // True for the names that are never cataloged, at any depth (".DS_Store", ".Trashes", "Icon\r", ...).
  static bool isSkippedName(std::string_view name);

  // Run on the worker's own connection after it opens. A memory-mapped catalog counts every page the scan
  // touches in its resident memory (up to 256 MiB more on a large catalog), while the copy that mapping
  // saves matters little to a scan, which mostly writes.
  static constexpr const char* kConnectionPragmas = "PRAGMA mmap_size=0;";

  // Time between two throttled progress reports, in seconds.
  static constexpr double kReportInterval = 0.12;
  // How long a paused scan sleeps between two looks at its flags, in milliseconds.
  static constexpr int kPausePollMs = 200;

 private:
  struct Impl;

  const std::string m_dbPath;
  const std::string m_rootPath;
  const ScanOptions m_options;
  const std::filesystem::path m_thumbsRoot;
  const std::shared_ptr<ScanControl> m_control;
  const ProgressFn m_progress;
  std::optional<int64_t> m_catalogID;
  const std::string m_newName;
  const std::optional<int64_t> m_groupID;
};

}  // namespace orrelin
