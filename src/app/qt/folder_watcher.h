// Watches a folder tree for changes with inotify and reports, on the main thread, only that something
// below the root changed. Events are coalesced: one report per quiet spell of about 3 seconds.
#pragma once

#include <QObject>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace orrelin {

class FolderWatcher : public QObject {
  Q_OBJECT

 public:
  // The coalescing latency: the first event of a batch is reported this long after it arrived (scaled
  // by TestTiming).
  static constexpr std::chrono::milliseconds kLatency{3000};

  // Starts watching `root` and every folder below it (folders created later are added as they appear).
  // `onChange` runs on the thread that created the watcher (the main thread) once per coalesced batch;
  // a queue overflow counts as a change. Returns nullptr when inotify cannot be set up or `root` cannot
  // be watched. When the per-user watch limit runs out, the folders watched so far stay watched.
  static std::unique_ptr<FolderWatcher> create(const std::filesystem::path& root,
                                               std::function<void()> onChange);

  // Stops watching; no report arrives afterwards. Safe to call twice. The destructor calls it.
  void stop();
  ~FolderWatcher() override;

  const std::filesystem::path& path() const;
  // Number of folders watched now (for tests and the benchmark).
  std::size_t watchedFolderCount() const;
  // True when the per-user inotify watch limit (fs.inotify.max_user_watches) stopped the watcher from
  // watching every folder; changes in the folders left out go unnoticed until a rescan.
  bool watchLimitReached() const;

 private:
  struct Impl;
  explicit FolderWatcher(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> m_impl;
};

}  // namespace orrelin
