// The analysis questions on the synthetic library of 1,000,000 records over 4 catalogs: duplicates in each
// mode, the statistics snapshot, the two database reports, and a comparison of two 250,000-record catalogs.
//
//   build/bench/analysis_bench                                  everything, five runs each (medians shown)
//   build/bench/analysis_bench --benchmark_filter=Duplicates    one group
//
// The library is built once (a few minutes) in $ORRELIN_BENCH_DIR and reused by later runs.
#include <benchmark/benchmark.h>

#include <memory>

#include "search/catalog_compare.h"
#include "search/drive_reports.h"
#include "search/duplicates.h"
#include "search/library_stats.h"
#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

struct Library {
  std::unique_ptr<CatalogDB> store;
  LibraryInfo info;
};

Library& library() {
  static Library lib = [] {
    Library l;
    LibraryShape shape;
    l.store = openSyntheticLibrary(syntheticLibraryPath(shape), shape, &l.info);
    return l;
  }();
  return lib;
}

constexpr int kRuns = 5;

// Arguments: the mode, and the minimum size in bytes (1 MB is the screen's default; 0 is the worst case).
void BM_Duplicates(benchmark::State& state) {
  CatalogDB& store = *library().store;
  auto mode = static_cast<DuplicateMode>(state.range(0));
  std::vector<DuplicateGroup> groups;
  for (auto _ : state) groups = store.duplicates(mode, state.range(1), {}, false);
  size_t members = 0;
  for (const DuplicateGroup& g : groups) members += g.members.size();
  state.counters["sets"] = static_cast<double>(groups.size());
  state.counters["members"] = static_cast<double>(members);
  state.SetLabel(std::string(rawValue(mode)));
}
BENCHMARK(BM_Duplicates)
    ->ArgsProduct({{static_cast<int>(DuplicateMode::nameSize), static_cast<int>(DuplicateMode::sizeOnly),
                    static_cast<int>(DuplicateMode::hash)},
                   {0, 1'000'000}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

void BM_DuplicatesCrossCatalog(benchmark::State& state) {
  CatalogDB& store = *library().store;
  std::vector<DuplicateGroup> groups;
  for (auto _ : state) groups = store.duplicates(DuplicateMode::nameSize, 1'000'000, {}, true);
  state.counters["sets"] = static_cast<double>(groups.size());
}
BENCHMARK(BM_DuplicatesCrossCatalog)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

void BM_Stats(benchmark::State& state) {
  CatalogDB& store = *library().store;
  LibraryStats stats;
  for (auto _ : state) stats = store.stats();
  state.counters["kinds"] = static_cast<double>(stats.byKind.size());
  state.counters["years"] = static_cast<double>(stats.byYear.size());
}
BENCHMARK(BM_Stats)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

void BM_EmptyFolders(benchmark::State& state) {
  CatalogDB& store = *library().store;
  std::vector<SearchHit> hits;
  for (auto _ : state) hits = store.emptyFolders({});
  state.counters["hits"] = static_cast<double>(hits.size());
}
BENCHMARK(BM_EmptyFolders)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// The pane's defaults: at least 500 MB, untouched for two years.
void BM_LargeOldFiles(benchmark::State& state) {
  CatalogDB& store = *library().store;
  std::vector<SearchHit> hits;
  for (auto _ : state)
    hits = store.largeOldFiles(largeOldMinimumBytes("500"), largeOldCutoff(2, Date::now()), {});
  state.counters["hits"] = static_cast<double>(hits.size());
}
BENCHMARK(BM_LargeOldFiles)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

void BM_Compare(benchmark::State& state) {
  Library& lib = library();
  int64_t a = lib.info.catalogIDs.at(0), b = lib.info.catalogIDs.at(1);
  CompareResult result;
  for (auto _ : state) result = lib.store->compare(a, b);
  state.counters["same"] = static_cast<double>(result.same);
  state.counters["changed"] = static_cast<double>(result.changed.size());
  state.counters["onlyA"] = static_cast<double>(result.onlyA.size());
  state.counters["onlyB"] = static_cast<double>(result.onlyB.size());
}
BENCHMARK(BM_Compare)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(kRuns)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

BENCHMARK_MAIN();
