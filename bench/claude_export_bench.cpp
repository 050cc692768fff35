// The export for Claude of one 250,000-record catalog of the synthetic library (1,000,000 records over 4
// catalogs): the whole bundle written to disk, and its parts built in memory alone.
//
//   build/bench/claude_export_bench
//
// The library is built once (a few minutes) in $ORRELIN_BENCH_DIR and reused by later runs.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "exchange/claude_exporter.h"
#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

struct Library {
  std::unique_ptr<CatalogDB> store;
  LibraryInfo info;
  Catalog catalog;
  std::vector<FileRecord> files;
};

Library& library() {
  static Library lib = [] {
    Library l;
    LibraryShape shape;
    l.store = openSyntheticLibrary(syntheticLibraryPath(shape), shape, &l.info);
    l.catalog = *l.store->catalog(l.info.catalogIDs.front());
    l.files = l.store->allFiles(l.catalog.id);
    return l;
  }();
  return lib;
}

constexpr int kRuns = 5;

void BM_ExportBundle(benchmark::State& state) {
  Library& lib = library();
  const std::filesystem::path out = benchDirectory() / "claude-export";
  for (auto _ : state) {
    std::filesystem::remove_all(out);
    ClaudeExporter::exportTo(*lib.store, lib.catalog, out);
  }
  int64_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(out)) bytes += entry.file_size();
  state.counters["records"] = static_cast<double>(lib.files.size());
  state.counters["MB written"] = static_cast<double>(bytes) / 1e6;
  std::filesystem::remove_all(out);
}
BENCHMARK(BM_ExportBundle)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns)->UseRealTime();

void BM_JsonLines(benchmark::State& state) {
  Library& lib = library();
  for (auto _ : state) {
    std::string lines;
    for (const FileRecord& f : lib.files) lines += ClaudeExporter::record(f, lib.catalog).dump() + "\n";
    benchmark::DoNotOptimize(lines);
  }
}
BENCHMARK(BM_JsonLines)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns)->UseRealTime();

void BM_Xml(benchmark::State& state) {
  Library& lib = library();
  for (auto _ : state) benchmark::DoNotOptimize(ClaudeExporter::xml(lib.catalog, lib.files));
}
BENCHMARK(BM_Xml)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns)->UseRealTime();

void BM_Summary(benchmark::State& state) {
  Library& lib = library();
  for (auto _ : state) benchmark::DoNotOptimize(ClaudeExporter::summary(lib.catalog, lib.files, *lib.store));
}
BENCHMARK(BM_Summary)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns)->UseRealTime();

void BM_NamingProblems(benchmark::State& state) {
  Library& lib = library();
  size_t problems = 0;
  for (auto _ : state) problems = ClaudeExporter::namingProblems(lib.files).size();
  state.counters["problems"] = static_cast<double>(problems);
}
BENCHMARK(BM_NamingProblems)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kRuns)->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

BENCHMARK_MAIN();
