// How long a backup and a restore hold the program up: the online copy of a whole library, the check of a
// chosen file and the swap of the database file.
//
//   nice build/bench/backup_bench                                 a library of 200,000 rows over 4 catalogs
//   nice build/bench/backup_bench --benchmark_filter='/1000000'   the full library of 1,000,000 rows
//
// The library is built once and reused (see synthetic_library.h); the data and settings folders point
// into the benchmark folder, so the user's own backups are never touched.
#include <stdlib.h>

#include <benchmark/benchmark.h>

#include <filesystem>

#include "app/backup_manager.h"
#include "core/app_paths.h"
#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

// The data and settings folders of the benchmark, set before anything reads them.
void useBenchFolders() {
  ::setenv("XDG_DATA_HOME", (benchDirectory() / "backup-data").c_str(), 1);
  ::setenv("XDG_CONFIG_HOME", (benchDirectory() / "backup-config").c_str(), 1);
}

void BM_BackupNow(benchmark::State& state) {
  useBenchFolders();
  LibraryShape shape{state.range(0), 4, 20240601};
  auto store = openSyntheticLibrary(syntheticLibraryPath(shape), shape);
  BackupManager::setKeepCount(2);
  fs::path file;
  for (auto _ : state) file = BackupManager::backupNow(*store, "manual");
  state.counters["MB"] = static_cast<double>(fs::file_size(file)) / 1e6;
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(file)));
}
BENCHMARK(BM_BackupNow)
    ->Arg(200'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

void BM_CheckAndReplace(benchmark::State& state) {
  useBenchFolders();
  LibraryShape shape{state.range(0), 4, 20240601};
  fs::path backup;
  {
    auto store = openSyntheticLibrary(syntheticLibraryPath(shape), shape);
    backup = BackupManager::backupNow(*store, "before-restore");
  }
  const fs::path target = benchDirectory() / "backup-restored.sqlite";
  for (auto _ : state) {
    BackupManager::checkBackupFile(backup);
    BackupManager::replaceDatabase(backup, target);
  }
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(target.string() + suffix);
}
BENCHMARK(BM_CheckAndReplace)
    ->Arg(200'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

}  // namespace
}  // namespace orrelin::bench
BENCHMARK_MAIN();
