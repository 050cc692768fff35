// The scan worker: one sequential pass over a tree that brings one catalog up to date.
#include "scan/scan_worker.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "core/name_mapping.h"
#include "scan/content_type.h"
#include "scan/existing_rows.h"
#include "scan/hasher256.h"
#include "scan/metadata_extractor.h"
#include "scan/scan_statements.h"
#include "scan/thumbnail_maker.h"
#include "scan/tree_walker.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/records.h"

namespace orrelin {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr const char* kNoteCancelled = "Cancelled — partial catalog";
constexpr const char* kNoteNew = "New catalog";
constexpr const char* kNoteUpdate = "Update";

// The last component of a path as the user gave it: "/media/ann/Disk/" gives "Disk", "/" gives "/".
std::string lastComponent(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  if (path == "/") return path;
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The absolute, lexically normal form of a path ("." and ".." folded, no trailing slash but for "/");
// links are not resolved.
std::string standardized(const std::string& path) {
  fs::path p(path);
  if (p.is_relative()) {
    std::error_code ec;
    fs::path cwd = fs::current_path(ec);
    if (!ec) p = cwd / p;
  }
  std::string out = p.lexically_normal().string();
  if (out.size() >= 2 && out.back() == '/') out.pop_back();
  return out;
}

// What a file yields beyond its plain attributes.
struct Extra {
  std::map<std::string, std::string> meta;
  double duration = 0;
  int64_t width = 0;
  int64_t height = 0;
  bool thumb = false;
  std::string hash;

  bool any() const { return !meta.empty() || duration > 0 || width > 0 || thumb || !hash.empty(); }
};

// The content type stored for an entry: folders and special files by what they are, files by their name.
std::optional<std::string> contentTypeOf(const WalkEntry& e, const std::string& name, bool isDir) {
  if (!e.hasFacts) return std::nullopt;
  if (isDir) return std::string("inode/directory");
  if (e.type == WalkEntry::Type::special) {
    // Never opened, so never sniffed: the kind of node is all there is to say.
    return std::nullopt;
  }
  return contentTypeForName(name);
}

}  // namespace

// The working state of one run.
struct ScanWorker::Impl {
  ScanWorker& w;
  ScanResult result;
  std::unique_ptr<CatalogDB> store;
  std::string root;
  fs::path diskRoot;
  fs::path thumbDir;
  ExistingRows existing;
  std::optional<Statement> insert, fullUpdate, lightUpdate, extrasUpdate;
  // Row ids of the folders along the branch being walked: folderIDs[d] is the folder at depth d.
  std::vector<int64_t> folderIDs;
  int64_t items = 0, bytes = 0;
  int pending = 0;
  std::optional<Clock::time_point> lastReport;
  bool inTransaction = false;

  explicit Impl(ScanWorker& worker) : w(worker) {}

  int64_t catalogID() const { return w.m_catalogID.value_or(0); }
  SQLiteDB& db() { return store->db(); }
  bool cancelled() const { return w.m_control && w.m_control->cancelled(); }
  bool paused() const { return w.m_control && w.m_control->paused(); }

  void report(const char* phase, std::string currentPath) {
    if (!w.m_progress) return;
    w.m_progress(ScanProgress{phase, items, bytes, std::move(currentPath), result.addedCount,
                              result.changedCount, std::string_view(phase) == ScanPhase::totalling ||
                                                           std::string_view(phase) == ScanPhase::done
                                                       ? result.removedCount
                                                       : 0,
                              catalogID()});
  }

  void begin() {
    db().exec("BEGIN IMMEDIATE");
    inTransaction = true;
  }
  void commit() {
    inTransaction = false;
    db().exec("COMMIT");
  }

  bool openCatalog();
  void walk(TreeWalker& walker);
  void waitWhilePaused();
  void processEntry(TreeWalker& walker, const WalkEntry& e);
  Extra extract(TreeWalker& walker, const WalkEntry& e, FileKind kind, int64_t fileID);
  void reconcile();
  void finish(Clock::time_point started);
};

ScanWorker::ScanWorker(std::string dbPath, std::string rootPath, std::optional<int64_t> catalogID,
                       std::string newName, std::optional<int64_t> groupID, ScanOptions options,
                       std::filesystem::path thumbsRoot, std::shared_ptr<ScanControl> control,
                       ProgressFn progress)
    : m_dbPath(std::move(dbPath)),
      m_rootPath(std::move(rootPath)),
      m_options(options),
      m_thumbsRoot(std::move(thumbsRoot)),
      m_control(std::move(control)),
      m_progress(std::move(progress)),
      m_catalogID(catalogID),
      m_newName(std::move(newName)),
      m_groupID(groupID) {}

ScanWorker::~ScanWorker() = default;

ScanResult ScanWorker::run() {
  const Clock::time_point started = Clock::now();
  Impl run(*this);
  ScanResult& result = run.result;
  result.id = ScanResult::newID();
  result.catalogID = m_catalogID.value_or(0);
  result.catalogName = m_newName;
  try {
    run.store = std::make_unique<CatalogDB>(m_dbPath);
    run.db().exec(kConnectionPragmas);
  } catch (const std::exception& e) {
    result.error = e.what();
    return result;
  }
  try {
    if (!run.openCatalog()) return result;
    TreeWalker walker(run.diskRoot, {.skipHidden = !m_options.includeHidden,
                                     .skipPackageContents = m_options.treatPackagesAsFiles});
    if (!walker.ok()) {
      result.error = "Could not read “" + lastComponent(m_rootPath) + "”.";
      return result;
    }
    run.insert.emplace(run.db().prepare(scan_sql::kInsertFile));
    run.fullUpdate.emplace(run.db().prepare(scan_sql::kFullUpdate));
    run.lightUpdate.emplace(run.db().prepare(scan_sql::kLightUpdate));
    run.begin();
    run.report(ScanPhase::scanning, run.root);
    run.walk(walker);
    run.finish(started);
  } catch (const std::exception& e) {
    // Work done so far is kept: whatever the failure, what was written is committed, never rolled back.
    if (run.inTransaction) {
      try {
        run.commit();
      } catch (const std::exception&) {
      }
    }
    result.error = e.what();
    result.seconds = 0;
  }
  return result;
}

bool ScanWorker::Impl::openCatalog() {
  const std::string given = w.m_rootPath;
  struct stat st {};
  if (::stat(NameMapping::toDisk(given).c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
    result.error = "The folder or drive “" + lastComponent(given) +
                   "” is not available. Connect it and try again.";
    return false;
  }
  root = standardized(given);
  diskRoot = NameMapping::diskPath(root);
  const VolumeInfo volume = VolumeInfo::read(diskRoot.string());
  const bool isFolder = volume.rootPath.empty() || standardized(NameMapping::fromDisk(volume.rootPath)) != root;
  if (!w.m_catalogID) {
    w.m_catalogID = store->insertCatalog(w.m_newName, root, volume, isFolder, w.m_groupID, false);
  } else {
    result.isRescan = true;
    store->updateVolumeInfo(*w.m_catalogID, volume);
    db().run("UPDATE catalogs SET root_path=?, is_folder=? WHERE id=?", {root, isFolder, *w.m_catalogID});
  }
  result.catalogID = *w.m_catalogID;
  thumbDir = w.m_thumbsRoot / std::to_string(*w.m_catalogID);
  if (w.m_options.thumbnails) {
    std::error_code ec;
    fs::create_directories(thumbDir, ec);
  }
  existing.load(db(), *w.m_catalogID);
  return true;
}

void ScanWorker::Impl::walk(TreeWalker& walker) {
  while (const WalkEntry* e = walker.next()) {
    if (cancelled()) return;
    if (paused()) waitWhilePaused();
    processEntry(walker, *e);
  }
}

void ScanWorker::Impl::waitWhilePaused() {
  // Commit first, so the interface can write while the scan rests.
  if (inTransaction) commit();
  while (paused() && !cancelled()) std::this_thread::sleep_for(std::chrono::milliseconds(kPausePollMs));
  if (!inTransaction) begin();
}

void ScanWorker::Impl::processEntry(TreeWalker& walker, const WalkEntry& e) {
  if (isSkippedName(e.name)) {
    walker.skipDescendants();
    return;
  }
  const std::string rel = NameMapping::fromDisk(e.relative);
  if (rel.empty() || e.type == WalkEntry::Type::symlink) return;

  const ScanOptions& options = w.m_options;
  const bool isDirectory = e.isDirectory();
  const bool asFile = e.isPackage && options.treatPackagesAsFiles;
  const bool isDir = isDirectory && !asFile;
  int64_t size = e.size;
  if (isDirectory && asFile) size = packageSize(walker.openablePath());
  const std::string name = NameMapping::fromDisk(e.name);
  const std::string tags = e.hasFacts ? NameMapping::fromDisk(joinTags(walker.tags())) : std::string();
  constexpr int label = 0;  // Linux has no colour labels.
  const bool hidden = e.hidden;
  const int64_t parentID = e.depth > 0 && static_cast<size_t>(e.depth) <= folderIDs.size()
                               ? folderIDs[static_cast<size_t>(e.depth) - 1]
                               : 0;
  const double modified = e.modified.value_or(0);

  ++items;
  if (!isDir) bytes += size;

  // The type and kind matter only for rows that are written in full, so unchanged entries skip them.
  auto classifyEntry = [&](std::optional<std::string>& type) {
    type = contentTypeOf(e, name, isDir);
    return classify(type, fileExtension(name), isDirectory, asFile);
  };

  int64_t id = 0;
  if (ExistingRows::Row* row = existing.find(rel)) {
    row->seen = true;
    id = row->id;
    bool changed;
    if (isDir != row->isDir) changed = true;
    else if (isDir) changed = false;
    else if (size != row->size) changed = true;
    else changed = std::abs(row->modified - modified) >= 1.0;

    if (!changed) {
      // A light update that would write the stored values again is left out: it would only churn the
      // full-text index, whose trigger fires on any update of the tags.
      if (existing.tags(*row) != tags || row->label != label || row->hidden != hidden)
        db().step(*lightUpdate, {tags, label, hidden, id});
    } else {
      std::optional<std::string> type;
      const FileKind kind = classifyEntry(type);
      const Extra x = isDir ? Extra{} : extract(walker, e, kind, id);
      db().step(*fullUpdate, {parentID, name, isDir, size, rawValue(kind), type.value_or(""),
                              fileExtension(name), e.created, e.modified, tags, label, hidden, x.hash,
                              x.thumb, x.duration, x.width, x.height, metaJSON(x.meta), id});
      ++result.changedCount;
      if (result.changed.size() < ScanResult::kListLimit) result.changed.push_back(rel);
    }
  } else {
    std::optional<std::string> type;
    const FileKind kind = classifyEntry(type);
    db().step(*insert, {catalogID(), parentID, rel, name, isDir, size, rawValue(kind), type.value_or(""),
                        fileExtension(name), e.created, e.modified, tags, label, hidden, "", false, 0.0, 0,
                        0, ""});
    id = db().lastInsertID();
    if (!isDir && (options.metadata || options.thumbnails || options.hashes)) {
      const Extra x = extract(walker, e, kind, id);
      if (x.any()) {
        if (!extrasUpdate)
          extrasUpdate.emplace(
              db().prepare("UPDATE files SET sha256=?, thumb=?, duration=?, width=?, height=?, meta=? WHERE id=?"));
        db().step(*extrasUpdate, {x.hash, x.thumb, x.duration, x.width, x.height, metaJSON(x.meta), id});
      }
    }
    ++result.addedCount;
    if (result.added.size() < ScanResult::kListLimit) result.added.push_back(rel);
  }
  if (isDir) {
    folderIDs.resize(static_cast<size_t>(e.depth) + 1);
    folderIDs.back() = id;
  }

  if (++pending >= scan_sql::kEntriesPerTransaction) {
    db().exec("COMMIT; BEGIN IMMEDIATE");
    pending = 0;
  }
  const Clock::time_point now = Clock::now();
  if (!lastReport || now - *lastReport > std::chrono::duration<double>(kReportInterval)) {
    lastReport = now;
    report(ScanPhase::scanning, rel);
  }
}

Extra ScanWorker::Impl::extract(TreeWalker& walker, const WalkEntry& e, FileKind kind, int64_t fileID) {
  Extra x;
  // Only regular files are read: a FIFO, socket or device is cataloged from its facts alone, and a package
  // counted as a file is a folder.
  if (e.type != WalkEntry::Type::file || !e.hasFacts) return x;
  const ScanOptions& options = w.m_options;
  const fs::path path = walker.openablePath();
  // A failure on one file leaves only that file's extras empty.
  try {
    if (options.metadata) {
      MetadataExtractor::Output out = MetadataExtractor::extract(path, kind);
      x.meta = std::move(out.meta);
      x.duration = out.duration;
      x.width = out.width;
      x.height = out.height;
    }
  } catch (const std::exception&) {
  }
  try {
    if (options.thumbnails && (kind == FileKind::image || kind == FileKind::video || kind == FileKind::pdf))
      x.thumb = ThumbnailMaker::make(path, kind, thumbDir / (std::to_string(fileID) + ".jpg"));
  } catch (const std::exception&) {
  }
  try {
    if (options.hashes) x.hash = Hasher256::hash(path).value_or("");
  } catch (const std::exception&) {
  }
  return x;
}

void ScanWorker::Impl::reconcile() {
  report(ScanPhase::reconciling, "");
  const std::vector<const ExistingRows::Row*> gone = existing.unseenByPath();
  if (gone.empty()) return;
  Statement remove = db().prepare("DELETE FROM files WHERE id=?");
  for (const ExistingRows::Row* row : gone) {
    db().step(remove, {row->id});
    std::error_code ec;
    fs::remove(thumbDir / (std::to_string(row->id) + ".jpg"), ec);
    ++result.removedCount;
    if (result.removed.size() < ScanResult::kListLimit) result.removed.emplace_back(existing.path(*row));
  }
}

void ScanWorker::Impl::finish(Clock::time_point started) {
  if (!cancelled()) {
    reconcile();
  } else {
    result.cancelled = true;  // Rows of entries not reached, or gone, stay as they are.
  }
  commit();
  existing.clear();  // Not needed any more; the roll-up below reads the whole catalog again.
  insert.reset();
  fullUpdate.reset();
  lightUpdate.reset();
  extrasUpdate.reset();

  report(ScanPhase::totalling, "");
  store->recomputeTotals(catalogID());
  store->markScanned(catalogID(), Date::now());
  const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
  result.seconds = seconds;
  const char* note = result.cancelled ? kNoteCancelled : result.isRescan ? kNoteUpdate : kNoteNew;
  store->logScan(catalogID(), result.addedCount, result.removedCount, result.changedCount, seconds, note);
  if (std::optional<Catalog> catalog = store->catalog(catalogID())) result.catalogName = catalog->name;
  report(ScanPhase::done, "");
}

std::optional<std::string> ScanWorker::relativePath(std::string_view path, std::string_view root) {
  const std::string prefix = root == "/" ? std::string("/") : std::string(root) + "/";
  if (!path.starts_with(prefix)) return std::nullopt;
  return std::string(path.substr(prefix.size()));
}

int64_t ScanWorker::packageSize(const std::filesystem::path& path) {
  TreeWalker walker(path, {});
  if (!walker.ok()) return 0;
  int64_t total = 0, count = 0;
  while (const WalkEntry* e = walker.next()) {
    total += e->size;  // Folders count 0.
    if (++count >= kPackageEntryLimit) break;
  }
  return total;
}

bool ScanWorker::isSkippedName(std::string_view name) {
  static constexpr std::array<std::string_view, 11> kSkipNames = {
      ".DS_Store",
      ".Spotlight-V100",
      ".fseventsd",
      ".Trashes",
      ".TemporaryItems",
      ".DocumentRevisions-V100",
      ".PKInstallSandboxManager",
      ".PKInstallSandboxManager-SystemSoftware",
      ".com.apple.timemachine.donotpresent",
      ".apdisk",
      "Icon\r",
  };
  return std::find(kSkipNames.begin(), kSkipNames.end(), name) != kSkipNames.end();
}

}  // namespace orrelin
