// Scan benchmarks over a real tree on disk, next to the floor that the database alone sets.
//
//   build/bench/scan_bench --make-tree=DIR [--files=N]    writes a tree of N files (default 200,000) and exits
//   build/bench/scan_bench --tree=DIR [benchmark flags]   times the store floor, a scan and a quiet rescan
//
// The tree holds the rows of bench/synthetic_tree.h (about 50 entries a folder) as real folders and sparse
// files of the listed sizes, so the store floor writes exactly the rows the scan finds. bench/scan_bench.sh
// runs the whole comparison, with the walk floor of find(1) and the peak memory of the command-line tool.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "scan/scan_worker.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "synthetic_tree.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

fs::path g_tree;

void removeDatabase(const fs::path& path) {
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix);
}

fs::path databasePath() { return g_tree.parent_path() / (g_tree.filename().string() + "-bench.sqlite"); }

}  // namespace
int writeTree(const fs::path& root, int files) {
  const std::vector<SyntheticEntry> entries = orrelin::bench::makeTree(files);
  fs::create_directories(root);
  for (const SyntheticEntry& e : entries) {
    const fs::path path = root / e.path;
    if (e.isDir) {
      fs::create_directory(path);
      continue;
    }
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0 || ftruncate(fd, e.size) != 0) {
      std::perror(path.c_str());
      return 1;
    }
    ::close(fd);
    struct timespec times[2] = {{static_cast<time_t>(e.modified), 0}, {static_cast<time_t>(e.modified), 0}};
    utimensat(AT_FDCWD, path.c_str(), times, 0);
  }
  std::printf("%zu entries under %s\n", entries.size(), root.c_str());
  return 0;
}

namespace {

// The rows of the tree on disk, in the synthetic form the store floor writes.
const std::vector<SyntheticEntry>& treeRows() {
  static const std::vector<SyntheticEntry> rows = [] {
    // The tree was made from makeTree(N); count its files to make the same list again.
    int files = 0;
    for (auto it = fs::recursive_directory_iterator(g_tree); it != fs::recursive_directory_iterator(); ++it)
      files += it->is_regular_file();
    return orrelin::bench::makeTree(files);
  }();
  return rows;
}

ScanOptions metadataOnly() {
  ScanOptions options;
  options.metadata = false;
  options.thumbnails = false;
  options.hashes = false;
  return options;
}

ScanResult scanInto(std::optional<int64_t> catalogID) {
  ScanWorker worker(databasePath().string(), g_tree.string(), catalogID, "Bench", std::nullopt, metadataOnly(),
                    g_tree.parent_path() / "bench-thumbs", nullptr, nullptr);
  ScanResult result = worker.run();
  if (result.error) std::fprintf(stderr, "scan failed: %s\n", result.error->c_str());
  return result;
}

// (b) The store floor: the same rows through the scanner's insert statement, 400 a transaction, no walk.
void BM_StoreFloor(benchmark::State& state) {
  const auto& rows = treeRows();
  for (auto _ : state) {
    state.PauseTiming();
    removeDatabase(databasePath());
    auto store = std::make_unique<CatalogDB>(databasePath().string());
    store->db().exec(ScanWorker::kConnectionPragmas);  // The worker's own connection, as it scans.
    const int64_t id = store->insertCatalog("Bench", g_tree.string(), VolumeInfo{}, true, std::nullopt, false);
    state.ResumeTiming();
    insertLikeScanner(*store, id, rows);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(rows.size()));
}

// (c) A first scan that reads no file contents: walk, facts, types, rows, totals.
void BM_Scan(benchmark::State& state) {
  int64_t entries = 0;
  for (auto _ : state) {
    state.PauseTiming();
    removeDatabase(databasePath());
    state.ResumeTiming();
    entries = scanInto(std::nullopt).addedCount;
  }
  state.SetItemsProcessed(state.iterations() * entries);
}

// (d) A rescan of the same tree with nothing changed.
void BM_RescanUnchanged(benchmark::State& state) {
  removeDatabase(databasePath());
  const ScanResult first = scanInto(std::nullopt);
  int64_t entries = first.addedCount;
  for (auto _ : state) {
    const ScanResult again = scanInto(first.catalogID);
    if (again.addedCount + again.changedCount + again.removedCount != 0) state.SkipWithError("tree changed");
  }
  state.SetItemsProcessed(state.iterations() * entries);
  removeDatabase(databasePath());
}

BENCHMARK(BM_StoreFloor)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(BM_Scan)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(BM_RescanUnchanged)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) {
  int files = 200'000;
  std::string make;
  std::vector<char*> rest = {argv[0]};
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--make-tree=", 12) == 0) make = argv[i] + 12;
    else if (std::strncmp(argv[i], "--files=", 8) == 0) files = std::atoi(argv[i] + 8);
    else if (std::strncmp(argv[i], "--tree=", 7) == 0) orrelin::bench::g_tree = argv[i] + 7;
    else rest.push_back(argv[i]);
  }
  if (!make.empty()) return orrelin::bench::writeTree(make, files);
  if (orrelin::bench::g_tree.empty()) {
    std::fprintf(stderr, "usage: scan_bench --make-tree=DIR [--files=N] | --tree=DIR [benchmark flags]\n");
    return 2;
  }
  int count = static_cast<int>(rest.size());
  benchmark::Initialize(&count, rest.data());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
