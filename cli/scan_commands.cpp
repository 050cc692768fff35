// The scan commands of orrelin-cli: catalog a folder or drive, and bring a catalog up to date.
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "cli/args.h"
#include "cli/command_table.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "scan/scan_worker.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

volatile sig_atomic_t g_interrupted = 0;

void onInterrupt(int) {
  g_interrupted = 1;
  // A second Ctrl-C ends the process at once, as it would without this handler.
  signal(SIGINT, SIG_DFL);
}

// Thumbnails live beside the database: in the data folder, or beside a database given with --db.
fs::path thumbnailsFor(const Context& context) {
  if (context.databasePath.empty()) return AppPaths::thumbnails();
  return fs::absolute(fs::path(context.databasePath)).parent_path() / "Thumbnails";
}

int terminalWidth() {
  struct winsize ws {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &ws) == 0 && ws.ws_col > 20) return ws.ws_col;
  return 80;
}

// The last `width` characters of UTF-8 text, with an ellipsis in front when it was cut.
std::string tail(const std::string& text, size_t width) {
  size_t chars = 0;
  for (unsigned char c : text) chars += (c & 0xC0) != 0x80;
  if (chars <= width) return text;
  size_t skip = chars - width + 1, i = 0;
  while (i < text.size() && skip > 0) {
    ++i;
    while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
    --skip;
  }
  return "…" + text.substr(i);
}

// One live line: phase, items, bytes, rate, elapsed time and the path being read, rewritten in place.
class ProgressLine {
 public:
  explicit ProgressLine(bool live) : m_live(live), m_started(std::chrono::steady_clock::now()) {}

  void show(const ScanProgress& p) {
    if (!m_live) return;
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_started).count();
    const int64_t rate = elapsed > 0.5 ? static_cast<int64_t>(static_cast<double>(p.items) / elapsed) : 0;
    char head[256];
    std::snprintf(head, sizeof(head), "%-11s %s items  %s  %s/s  %s  ", p.phase.c_str(),
                  Fmt::count(p.items).c_str(), Fmt::size(p.bytes).c_str(), Fmt::count(rate).c_str(),
                  clock(elapsed).c_str());
    const std::string start(head);
    const int room = terminalWidth() - 1 - static_cast<int>(start.size());
    std::string line = start + (room > 8 ? tail(p.currentPath, static_cast<size_t>(room)) : std::string());
    std::fprintf(stdout, "\r\033[K%s", line.c_str());
    std::fflush(stdout);
    m_shown = true;
  }

  void clear() {
    if (m_shown) std::fputs("\r\033[K", stdout);
    m_shown = false;
  }

 private:
  static std::string clock(double seconds) {
    const auto s = static_cast<long long>(seconds);
    char text[32];
    std::snprintf(text, sizeof(text), "%lld:%02lld", s / 60, s % 60);
    return text;
  }

  const bool m_live;
  const std::chrono::steady_clock::time_point m_started;
  bool m_shown = false;
};

void printList(const char* title, const std::vector<std::string>& paths, int64_t count) {
  if (count == 0) return;
  std::printf("%s:\n", title);
  for (const std::string& path : paths) std::printf("  %s\n", path.c_str());
  if (count > static_cast<int64_t>(paths.size()))
    std::printf("  … and %s more\n", Fmt::count(count - static_cast<int64_t>(paths.size())).c_str());
}

// Runs the worker on a thread of its own, so that Ctrl-C can be turned into a cancel here (a signal
// handler may not take the control's lock), and prints the outcome.
int runScan(ScanWorker& worker, const std::shared_ptr<ScanControl>& control, ProgressLine& line,
            const Context& context, bool listChanges) {
  g_interrupted = 0;
  struct sigaction action {}, previous {};
  action.sa_handler = onInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &previous);

  ScanResult result;
  std::atomic<bool> finished = false;
  std::thread thread([&] {
    result = worker.run();
    finished = true;
  });
  while (!finished) {
    if (g_interrupted) control->setCancelled(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  thread.join();
  sigaction(SIGINT, &previous, nullptr);
  line.clear();

  if (result.error) return failure(*result.error);
  std::optional<Catalog> catalog = CatalogDB(databasePath(context)).catalog(result.catalogID);
  if (result.cancelled) std::puts("Cancelled — partial catalog");
  std::printf("%s “%s” (id %lld)\n", result.isRescan ? "Updated" : "Cataloged", result.catalogName.c_str(),
              static_cast<long long>(result.catalogID));
  std::printf("  added %s, changed %s, removed %s\n", Fmt::count(result.addedCount).c_str(),
              Fmt::count(result.changedCount).c_str(), Fmt::count(result.removedCount).c_str());
  if (catalog) {
    std::printf("  %s files, %s folders, %s\n", Fmt::count(catalog->fileCount).c_str(),
                Fmt::count(catalog->folderCount).c_str(), Fmt::size(catalog->totalSize).c_str());
  }
  std::printf("  in %.1f s\n", result.seconds);
  if (listChanges) {
    printList("Added", result.added, result.addedCount);
    printList("Changed", result.changed, result.changedCount);
    printList("Removed", result.removed, result.removedCount);
  }
  return result.cancelled ? 130 : kExitOk;
}

// The stored scan defaults, with the command line's switches on top.
ScanOptions optionsFrom(const Args& args) {
  ScanOptions options = ScanOptions::defaults();
  auto apply = [&](const char* on, const char* off, bool& field) {
    if (args.flag(on)) field = true;
    if (args.flag(off)) field = false;
  };
  apply("--hidden", "--no-hidden", options.includeHidden);
  apply("--metadata", "--no-metadata", options.metadata);
  apply("--thumbnails", "--no-thumbnails", options.thumbnails);
  apply("--hashes", "--no-hashes", options.hashes);
  apply("--packages-as-files", "--walk-packages", options.treatPackagesAsFiles);
  return options;
}

const std::set<std::string> kOptionFlags = {"--hidden",     "--no-hidden",     "--metadata",
                                            "--no-metadata", "--thumbnails",   "--no-thumbnails",
                                            "--hashes",     "--no-hashes",     "--packages-as-files",
                                            "--walk-packages", "--changes"};

// The name a new catalog gets when none is given: the drive's name for a mount point, else the folder's.
std::string defaultName(const std::string& root) {
  const VolumeInfo volume = VolumeInfo::read(root);
  std::string path = fs::path(root).lexically_normal().string();
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  if (!volume.name.empty() && volume.rootPath == path) return NameMapping::fromDisk(volume.name);
  const std::string last = fs::path(path).filename().string();
  return NameMapping::fromDisk(last.empty() ? path : last);
}

int scan(const std::vector<std::string>& argv, const Context& context) {
  std::set<std::string> flags = kOptionFlags;
  Args args(argv, flags, {"--name", "--group"});
  if (!args.ok()) return usageError("scan", args.error());
  if (args.positionals().size() != 1)
    return usageError("scan", args.positionals().empty() ? "which folder or drive? (give its path)"
                                                         : "takes one path (got " +
                                                               std::to_string(args.positionals().size()) + ")");
  const std::string root = fs::absolute(fs::path(args.positionals().front())).string();
  std::optional<int64_t> groupID;
  const std::string dbPath = databasePath(context);
  if (auto group = args.value("--group")) {
    CatalogDB store(dbPath);
    for (const CatalogGroup& g : store.groups())
      if (std::to_string(g.id) == *group || g.name == *group) groupID = g.id;
    if (!groupID) return usageError("scan", "no group is called '" + *group + "'");
  }
  const std::string name = args.value("--name").value_or(defaultName(root));
  if (name.empty()) return usageError("scan", "the name may not be empty");

  auto control = std::make_shared<ScanControl>();
  ProgressLine line(stdoutIsTerminal());
  ScanWorker worker(dbPath, NameMapping::fromDisk(root), std::nullopt, name, groupID, optionsFrom(args),
                    thumbnailsFor(context), control, [&](const ScanProgress& p) { line.show(p); });
  return runScan(worker, control, line, context, args.flag("--changes"));
}

int rescan(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, kOptionFlags, {});
  if (!args.ok()) return usageError("rescan", args.error());
  if (args.positionals().size() != 1)
    return usageError("rescan", args.positionals().empty() ? "which cartridge? (give its id or name)"
                                                           : "takes one cartridge");
  const std::string dbPath = databasePath(context);
  std::optional<Catalog> catalog;
  {
    CatalogDB store(dbPath);
    std::string error;
    catalog = findCatalog(store, args.positionals().front(), error);
    if (!catalog) return failure(error);
  }
  if (catalog->rootPath.empty())
    return failure("cartridge '" + catalog->name + "' has no folder to scan: it was imported, not scanned");

  auto control = std::make_shared<ScanControl>();
  ProgressLine line(stdoutIsTerminal());
  ScanWorker worker(dbPath, catalog->rootPath, catalog->id, catalog->name, std::nullopt, optionsFrom(args),
                    thumbnailsFor(context), control, [&](const ScanProgress& p) { line.show(p); });
  return runScan(worker, control, line, context, args.flag("--changes"));
}

#define ORRELIN_SCAN_SWITCHES                                                                          \
  "Options (each defaults to the stored scan settings, see below):\n"                                 \
  "  --hidden, --no-hidden            catalog hidden files and folders too (default: no)\n"           \
  "  --metadata, --no-metadata        read media details: camera, duration, pages... (default: yes)\n" \
  "  --thumbnails, --no-thumbnails    write preview pictures of images, videos, PDFs (default: yes)\n" \
  "  --hashes, --no-hashes            compute the SHA-256 of every file (default: no; reads every byte)\n" \
  "  --walk-packages, --packages-as-files\n"                                                           \
  "                                   walk into packages (.app, .bundle, ...) instead of counting each\n" \
  "                                   as one file (default: one file)\n"                              \
  "  --changes                        list the added, changed and removed paths (at most 500 each)\n"  \
  "\n"                                                                                                 \
  "The stored scan settings are those the desktop program saves as the defaults of new scans.\n"      \
  "On a terminal a progress line shows the phase, items, bytes, rate, elapsed time and current path.\n" \
  "Ctrl-C cancels: the work done so far is kept and the catalog is marked \"Cancelled — partial\n"     \
  "catalog\" in its scan log; nothing is removed. A second Ctrl-C ends the program at once.\n"       \
  "\n"                                                                                                 \
  "Exit status: 0 done, 1 the scan failed (the message says why), 2 a wrong command line,\n"          \
  "130 cancelled.\n"

}  // namespace

void addScanCommands(CommandTable& table) {
  table["scan"] = {"catalog a folder or drive as a new cartridge",
                   "usage: orrelin-cli [--db PATH] scan PATH [--name NAME] [--group ID] [OPTIONS]\n"
                   "\n"
                   "Walks the folder or drive at PATH once and records every file and folder in a new\n"
                   "cartridge. Symbolic links are never followed or cataloged; FIFOs, sockets and devices\n"
                   "are recorded from their facts and never opened.\n"
                   "\n"
                   "  --name NAME                      the cartridge's name (default: the drive's name for\n"
                   "                                   a mount point, else the folder's name)\n"
                   "  --group ID                       put it in the group with this id or name\n" ORRELIN_SCAN_SWITCHES,
                   scan};
  table["rescan"] = {"bring a cartridge up to date with its folder or drive",
                     "usage: orrelin-cli [--db PATH] rescan CARTRIDGE [OPTIONS]\n"
                     "\n"
                     "Walks the cartridge's folder or drive again (CARTRIDGE is its id or name): new\n"
                     "entries are added, changed ones (other size, or modified at another time) are read\n"
                     "again, and the rows of entries that are gone are removed. The drive must be\n"
                     "connected.\n"
                     "\n" ORRELIN_SCAN_SWITCHES,
                     rescan};
}

}  // namespace orrelin::cli
