// Building the synthetic library, and what it holds.
//
//   build/bench/library_bench                          a library of 100,000 rows, built three times
//   build/bench/library_bench --benchmark_filter=Full  opens (or builds once) the library of 1,000,000 rows
//                                                      over 4 catalogs and reports its make-up
#include <benchmark/benchmark.h>

#include <filesystem>

#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

void removeDatabase(const fs::path& path) {
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix);
}

void reportMakeUp(benchmark::State& state, CatalogDB& store) {
  SQLiteDB& db = store.db();
  auto share = [&](const char* where) {
    return static_cast<double>(db.scalarInt(std::string("SELECT count(*) FROM files WHERE ") + where));
  };
  state.counters["rows"] = share("1");
  state.counters["folders"] = share("is_dir=1");
  state.counters["with_meta"] = share("meta<>''");
  state.counters["with_sha"] = share("sha256<>''");
  state.counters["tagged"] = share("tags<>''");
  state.counters["dup_names_across_catalogs"] = static_cast<double>(
      db.scalarInt("SELECT count(*) FROM (SELECT name, size FROM files WHERE is_dir=0 GROUP BY name, size "
                   "HAVING count(DISTINCT catalog_id) > 1)"));
}

void BM_BuildLibrary(benchmark::State& state) {
  LibraryShape shape{state.range(0), 4, 7};
  fs::path path = benchDirectory() / "library-build.sqlite";
  for (auto _ : state) {
    state.PauseTiming();
    removeDatabase(path);
    auto store = std::make_unique<CatalogDB>(path.string());
    state.ResumeTiming();
    fillSyntheticLibrary(*store, shape);
  }
  state.SetItemsProcessed(state.iterations() * shape.records);
  auto store = std::make_unique<CatalogDB>(path.string());
  reportMakeUp(state, *store);
  store.reset();
  removeDatabase(path);
}
BENCHMARK(BM_BuildLibrary)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void BM_FullLibrary(benchmark::State& state) {
  LibraryShape shape;
  LibraryInfo info;
  std::unique_ptr<CatalogDB> store;
  for (auto _ : state) store = openSyntheticLibrary(syntheticLibraryPath(shape), shape, &info);
  state.counters["reused"] = info.reused ? 1 : 0;
  state.counters["build_seconds"] = info.buildSeconds;
  reportMakeUp(state, *store);
}
BENCHMARK(BM_FullLibrary)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

BENCHMARK_MAIN();
