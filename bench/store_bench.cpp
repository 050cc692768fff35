// Store benchmarks: rows written the way the scanner writes them, and the folder-size roll-up.
//
//   build/bench/store_bench                       all of them
//   build/bench/store_bench --benchmark_filter=Insert
//
// The insert benchmark runs once per connection setting, so the gain of each tuning pragma shows side by
// side in one run. Databases go to $ORRELIN_BENCH_DIR, else the system's temporary folder.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>

#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "synthetic_tree.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

fs::path benchDir() {
  const char* env = getenv("ORRELIN_BENCH_DIR");
  fs::path dir = env != nullptr ? fs::path(env) : fs::temp_directory_path() / "orrelin-bench";
  fs::create_directories(dir);
  return dir;
}

void removeDatabase(const fs::path& path) {
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix);
}

// Connection settings compared by the insert benchmark. "as opened" is what the program uses.
struct Setting {
  const char* label;
  const char* pragmas;
};
constexpr Setting kSettings[] = {
    {"as opened", ""},
    {"SQLite defaults", "PRAGMA cache_size=-2000; PRAGMA mmap_size=0; PRAGMA wal_autocheckpoint=1000;"},
    {"+ 16 MiB page cache", "PRAGMA cache_size=-16384; PRAGMA mmap_size=0; PRAGMA wal_autocheckpoint=1000;"},
    {"+ 64 MiB page cache", "PRAGMA cache_size=-65536; PRAGMA mmap_size=0; PRAGMA wal_autocheckpoint=1000;"},
    {"+ 256 MiB mmap",
     "PRAGMA cache_size=-2000; PRAGMA mmap_size=268435456; PRAGMA wal_autocheckpoint=1000;"},
    {"+ checkpoint every 10000 pages",
     "PRAGMA cache_size=-2000; PRAGMA mmap_size=0; PRAGMA wal_autocheckpoint=10000;"},
    // For reference only, to show what the full-text index costs: the program always keeps its triggers.
    {"as opened, without full-text triggers (reference)",
     "DROP TRIGGER files_ai; DROP TRIGGER files_ad; DROP TRIGGER files_au;"},
    // For reference: the full-text index's own merge setting (kept in the database, so not a connection
    // setting the program may choose freely).
    {"as opened, index automerge 16 (reference)",
     "INSERT INTO files_fts(files_fts, rank) VALUES('automerge', 16);"},
};

void BM_InsertRowsLikeScanner(benchmark::State& state) {
  const Setting& setting = kSettings[state.range(0)];
  const int rows = static_cast<int>(state.range(1));
  static const std::vector<SyntheticEntry> tree = makeTree(200'000);
  std::vector<SyntheticEntry> entries(tree.begin(), tree.begin() + std::min<size_t>(rows, tree.size()));
  fs::path path = benchDir() / "insert.sqlite";
  for (auto _ : state) {
    state.PauseTiming();
    removeDatabase(path);
    auto store = std::make_unique<CatalogDB>(path.string());
    if (*setting.pragmas != '\0') store->db().exec(setting.pragmas);
    int64_t id = store->insertCatalog("Bench", "/bench", VolumeInfo{}, true, std::nullopt, false);
    state.ResumeTiming();
    insertLikeScanner(*store, id, entries);
  }
  state.SetLabel(setting.label);
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(entries.size()));
  removeDatabase(path);
}
BENCHMARK(BM_InsertRowsLikeScanner)
    ->ArgsProduct({{0, 1, 2, 3, 4, 5, 6, 7}, {200'000}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

// A catalog of about a million rows, made once and kept for the runs of the roll-up benchmark.
class MillionRows : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State&) override {
    if (m_store) return;
    fs::path path = benchDir() / "million.sqlite";
    bool reuse = fs::exists(path);
    m_store = std::make_unique<CatalogDB>(path.string());
    if (reuse && m_store->catalogs().size() == 1) {
      m_catalogID = m_store->catalogs().front().id;
      return;
    }
    removeDatabase(path);
    m_store = std::make_unique<CatalogDB>(path.string());
    m_catalogID = m_store->insertCatalog("Million", "/bench", VolumeInfo{}, true, std::nullopt, false);
    insertLikeScanner(*m_store, m_catalogID, makeTree(980'000));
  }

 protected:
  std::unique_ptr<CatalogDB> m_store;
  int64_t m_catalogID = 0;
};

BENCHMARK_DEFINE_F(MillionRows, RecomputeTotals)(benchmark::State& state) {
  for (auto _ : state) m_store->recomputeTotals(m_catalogID);
  int64_t rows = m_store->db().scalarInt("SELECT count(*) FROM files WHERE catalog_id=?", {m_catalogID});
  state.counters["rows"] = static_cast<double>(rows);
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK_REGISTER_F(MillionRows, RecomputeTotals)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

BENCHMARK_MAIN();
