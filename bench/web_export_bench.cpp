// The inventory web site of one catalog of 1,000,000 records: time, peak memory and the size of the data
// file, and where the time goes (reading rows, mapping them to records, writing the script, thumbnails).
//
//   nice build/bench/web_export_bench [RECORDS [THUMBNAILS]]   default 1,000,000 records, 20,000 thumbnails
//
// The library (a catalog of its own, not the shared four-catalog one) is built once in $ORRELIN_BENCH_DIR
// and reused; the first run takes a few minutes more. Each case runs in a child process of its own, so the
// peak resident memory reported is that case's alone (ru_maxrss of the child); "baseline" is a child that
// only opens the database, for comparison. Every case reads the catalog from a warm page cache.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include "exchange/web_exporter.h"
#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

struct Outcome {
  double seconds = 0;
  long peakKiB = 0;
};

// What one case needs to know, passed on its command line.
struct CaseArgs {
  std::string name;
  std::string dbPath;
  int64_t catalogID = 0;
  std::string thumbsRoot;
  std::string site;
};

const std::string kQuery =
    std::string("SELECT ") + CatalogDB::fileColumns + " FROM files f WHERE f.catalog_id=? ORDER BY f.path";

// Runs one case in this (fresh) process and prints its wall time.
int runCase(const CaseArgs& a) {
  CatalogDB store(a.dbPath);
  Catalog catalog = *store.catalog(a.catalogID);
  WebExporter::Options options;
  options.includeThumbnails = a.name == "thumbs";
  options.includeHidden = a.name == "hidden";
  if (a.name == "nommap") store.db().exec("PRAGMA mmap_size=0");
  auto start = std::chrono::steady_clock::now();
  if (a.name == "all") {
    std::vector<FileRecord> records = store.allFiles(a.catalogID);  // For contrast: the catalog held whole.
    if (records.size() == 42) std::fputs("", stderr);
  } else if (a.name == "read") {
    store.db().forEachRow(kQuery, {a.catalogID}, [](const Statement&) {});
  } else if (a.name == "map") {
    int64_t bytes = 0;
    store.db().forEachRow(kQuery, {a.catalogID},
                          [&](const Statement& row) { bytes += CatalogDB::mapFile(row).size; });
    if (bytes == 42) std::fputs("", stderr);
  } else if (a.name != "baseline") {
    WebExporter::exportSite(store, {catalog}, a.site, a.thumbsRoot, options);
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  // The peak of this process's own memory since exec: getrusage would also count the parent's memory,
  // which the fork copied until the exec replaced it.
  long peakKiB = 0;
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) peakKiB = std::atol(line.c_str() + 6);
  }
  std::printf("%.6f %ld\n", seconds, peakKiB);
  return 0;
}

// Runs a case in a new process of this program, so that its peak memory is its own.
Outcome inChild(const char* self, const CaseArgs& a) {
  int pipeFds[2];
  if (::pipe(pipeFds) != 0) std::exit(1);
  std::string id = std::to_string(a.catalogID);
  pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(pipeFds[1], STDOUT_FILENO);
    ::close(pipeFds[0]);
    ::close(pipeFds[1]);
    ::execl(self, self, "--case", a.name.c_str(), a.dbPath.c_str(), id.c_str(), a.thumbsRoot.c_str(),
            a.site.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ::close(pipeFds[1]);
  char text[64] = {};
  ssize_t n = ::read(pipeFds[0], text, sizeof text - 1);
  ::close(pipeFds[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  Outcome outcome;
  if (n <= 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0 ||
      std::sscanf(text, "%lf %ld", &outcome.seconds, &outcome.peakKiB) != 2) {
    std::fprintf(stderr, "case %s failed\n", a.name.c_str());
  }
  return outcome;
}

int64_t folderBytes(const fs::path& folder) {
  int64_t total = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) total += static_cast<int64_t>(entry.file_size());
  }
  return total;
}

// Marks up to `count` image records as having thumbnails and writes a picture for each into `root`.
int64_t prepareThumbnails(CatalogDB& store, int64_t catalogID, const fs::path& root, int64_t count) {
  std::string picture;
  fs::path sample = root.parent_path() / "web-thumb-sample.jpg";
  if (std::system(("convert -size 320x240 plasma:fractal -quality 80 '" + sample.string() + "' 2>/dev/null")
                      .c_str()) == 0) {
    std::ifstream in(sample, std::ios::binary);
    picture.assign(std::istreambuf_iterator<char>(in), {});
  }
  if (picture.empty()) {  // No ImageMagick: bytes of a typical thumbnail's size do for a copy.
    std::mt19937 random(7);
    for (int i = 0; i < 12000; ++i) picture += static_cast<char>(random());
  }
  store.db().run("UPDATE files SET thumb=0 WHERE thumb<>0");
  store.db().run(
      "UPDATE files SET thumb=1 WHERE id IN (SELECT id FROM files WHERE catalog_id=? AND kind='Image' AND "
      "hidden=0 ORDER BY id LIMIT ?)",
      {catalogID, count});
  fs::remove_all(root);
  fs::create_directories(root / std::to_string(catalogID));
  int64_t made = 0;
  store.db().forEachRow("SELECT id FROM files WHERE thumb=1", {}, [&](const Statement& row) {
    std::ofstream out(root / std::to_string(catalogID) / (std::to_string(row.int64(0)) + ".jpg"),
                      std::ios::binary);
    out << picture;
    ++made;
  });
  std::printf("thumbnails: %" PRId64 " pictures of %zu bytes\n", made, picture.size());
  return made;
}

int run(const char* self, int64_t records, int64_t thumbnails) {
  LibraryShape shape{records, 1, 20240601};
  fs::path dir = benchDirectory();
  fs::path dbPath = dir / ("web-library-" + std::to_string(records) + ".sqlite");
  LibraryInfo info;
  std::unique_ptr<CatalogDB> store = openSyntheticLibrary(dbPath, shape, &info);
  int64_t catalogID = info.catalogIDs.at(0);
  std::printf("library: %" PRId64 " records in one catalog, %s\n", info.records,
              info.reused ? "reused" : ("built in " + std::to_string(info.buildSeconds) + " s").c_str());
  fs::path thumbsRoot = dir / "web-thumbs";
  prepareThumbnails(*store, catalogID, thumbsRoot, thumbnails);
  store.reset();

  fs::path site = dir / "web-site";
  CaseArgs args{"", dbPath.string(), catalogID, thumbsRoot.string(), site.string()};
  auto measure = [&](const char* name, const char* label) {
    args.name = name;
    // The best of three: the machine is shared, and a slow run says more about the neighbours.
    Outcome o = inChild(self, args);
    for (int again = 0; again < 2; ++again) {
      Outcome next = inChild(self, args);
      o.seconds = std::min(o.seconds, next.seconds);
      o.peakKiB = std::max(o.peakKiB, next.peakKiB);
    }
    std::printf("%-34s %8.2f s  peak RSS %7.1f MiB\n", label, o.seconds,
                static_cast<double>(o.peakKiB) / 1024);
  };

  args.name = "read";
  inChild(self, args);  // Warms the page cache.
  measure("baseline", "baseline (open the database)");
  measure("read", "read the rows in path order");
  measure("map", "read and map to records");
  fs::remove_all(site);
  measure("plain", "export, no thumbnails");
  fs::path data = site / "data" / ("cat-" + std::to_string(catalogID) + ".js");
  std::printf("data file: %.1f MB (%.1f bytes a record)\n", static_cast<double>(fs::file_size(data)) / 1e6,
              static_cast<double>(fs::file_size(data)) / static_cast<double>(info.records));
  measure("nommap", "export, connection without mmap");
  measure("hidden", "export, hidden files too");
  measure("all", "(contrast: allFiles into a vector)");
  fs::remove_all(site);
  measure("thumbs", "export with thumbnails");
  std::printf("site: %.1f MB in all\n", static_cast<double>(folderBytes(site)) / 1e6);
  return 0;
}

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) {
  if (argc == 7 && std::string(argv[1]) == "--case") {
    return orrelin::bench::runCase({argv[2], argv[3], std::atoll(argv[4]), argv[5], argv[6]});
  }
  int64_t records = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
  int64_t thumbnails = argc > 2 ? std::atoll(argv[2]) : 20'000;
  return orrelin::bench::run("/proc/self/exe", records, thumbnails);
}
