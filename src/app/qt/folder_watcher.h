// Watches a folder tree for changes with inotify and reports, on the main thread, only that something
// below the root changed. Events are coalesced: a report comes about 3 seconds after the first event of
// a batch, and covers everything that happened meanwhile. Folders the program writes to itself (its data
// folder) can be left out, so that the rescan a report starts does not report itself.
#pragma once

#include <QObject>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

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
  //
  // The folders (with everything below them) and files in `ignored` are neither watched nor reported:
  // changes in them, and their own coming and going, are no change of the tree. They are recognised
  // whatever the spelling of the path that leads to them (links, "..", a bind mount of a folder above
  // them), and may appear after the watch began. When the root itself lies in an ignored folder, nothing
  // is ever reported.
  static std::unique_ptr<FolderWatcher> create(const std::filesystem::path& root,
                                               std::function<void()> onChange,
                                               const std::vector<std::filesystem::path>& ignored = {});

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
