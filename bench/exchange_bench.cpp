// Exchange benchmark: CSV and JSON export of a synthetic library (1,000,000 records by default), each in a
// child process of its own so that its peak memory (ru_maxrss) is its own; then the output sizes and where
// the time goes (reading rows, building texts, writing); then both exports imported back into a new
// database, RUNS times each (default 3), with the median and the spread, and the median CPU time (user and
// system), which the machine's other work does not inflate. Peak memory includes the
// connection's page cache and its 256 MiB memory map of the database, which every child has.
//
//   nice build/bench/exchange_bench [RECORDS] [RUNS] [--imports]
//
// With --imports only the imports run, from the exports of an earlier run (made first when missing), and
// the exports are kept: so that two builds can be compared on the same files, one after the other.
//
// The library is built once in $ORRELIN_BENCH_DIR (else <temp>/orrelin-bench) and reused; the exports and
// the import's database are made there too and removed at the end.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "exchange/exporter.h"
#include "store/catalog_db.h"
#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

struct Run {
  double seconds = 0;
  double cpuSeconds = 0;  // User and system time of the child: what the work costs, whatever else runs.
  long peakKiB = 0;
  int64_t records = 0;
};

// Runs `work` in a child process and returns its wall time (as the child measured it), its record count
// and the child's peak resident memory.
Run inChild(const std::function<int64_t()>& work) {
  int pipeFds[2];
  if (pipe(pipeFds) != 0) std::abort();
  std::fflush(stdout);  // Or the child would print the parent's pending output a second time.
  pid_t pid = fork();
  if (pid == 0) {
    close(pipeFds[0]);
    Clock::time_point start = Clock::now();
    Run run;
    run.records = work();
    run.seconds = secondsSince(start);
    std::fflush(stdout);
    if (write(pipeFds[1], &run, sizeof run) != sizeof run) _exit(2);
    _exit(0);
  }
  close(pipeFds[1]);
  Run run;
  ssize_t n = read(pipeFds[0], &run, sizeof run);
  close(pipeFds[0]);
  int status = 0;
  struct rusage usage {};
  wait4(pid, &status, 0, &usage);
  if (n != sizeof run || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "the child failed\n");
    std::exit(1);
  }
  run.peakKiB = usage.ru_maxrss;
  run.cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                   static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  return run;
}

void report(const char* what, const Run& run, const fs::path& file) {
  double mib = file.empty() ? 0 : static_cast<double>(fs::file_size(file)) / (1024.0 * 1024.0);
  std::printf("%-50s %8.2f s %9.0f rec/s %8.1f MiB peak RSS", what, run.seconds,
              static_cast<double>(run.records) / run.seconds, static_cast<double>(run.peakKiB) / 1024.0);
  if (!file.empty()) std::printf(" %9.1f MiB file", mib);
  std::printf("\n");
  std::fflush(stdout);
}

void removeDatabase(const fs::path& file) {
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(file.string() + suffix);
}

// Runs `work` `runs` times, each in a child of its own, and reports the median time and the median peak
// memory, with the fastest and slowest times.
void reportMedian(const char* what, int runs, const std::function<int64_t()>& work) {
  std::vector<Run> all;
  for (int i = 0; i < runs; ++i) all.push_back(inChild(work));
  std::vector<double> seconds, cpu;
  std::vector<long> peaks;
  for (const Run& run : all)
    seconds.push_back(run.seconds), cpu.push_back(run.cpuSeconds), peaks.push_back(run.peakKiB);
  std::sort(seconds.begin(), seconds.end());
  std::sort(cpu.begin(), cpu.end());
  std::sort(peaks.begin(), peaks.end());
  Run median = all.front();
  median.seconds = seconds[seconds.size() / 2];
  median.peakKiB = peaks[peaks.size() / 2];
  std::printf("%-50s %8.2f s %9.0f rec/s %8.1f MiB peak RSS %8.2f s CPU   (%d runs, %.2f-%.2f s)\n", what,
              median.seconds, static_cast<double>(median.records) / median.seconds,
              static_cast<double>(median.peakKiB) / 1024.0, cpu[cpu.size() / 2], runs, seconds.front(),
              seconds.back());
  std::fflush(stdout);
}

int main(int argc, char** argv) {
  LibraryShape shape;
  if (argc > 1) shape.records = std::atoll(argv[1]);
  const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 3;
  const bool importsOnly = argc > 3 && std::string(argv[3]) == "--imports";
  const fs::path libraryPath = syntheticLibraryPath(shape);
  std::vector<Catalog> catalogs;
  {
    // Built (or checked) in a child, so that the parent stays small for the children forked later.
    Run built = inChild([&] {
      LibraryInfo info;
      auto store = openSyntheticLibrary(libraryPath, shape, &info);
      std::printf("library: %s, %lld records, %s\n", libraryPath.c_str(),
                  static_cast<long long>(info.records), info.reused ? "reused" : "built");
      return info.records;
    });
    (void)built;
  }
  const std::string dbPath = libraryPath.string();
  auto catalogsOf = [&](CatalogDB& store) { return store.catalogs(); };
  const fs::path csvFile = benchDirectory() / "exchange-export.csv";
  const fs::path jsonFile = benchDirectory() / "exchange-export.json";

  std::printf("\n%-50s %10s %13s %18s %14s\n", "", "time", "rate", "memory", "output");
  if (!importsOnly || !fs::exists(csvFile) || !fs::exists(jsonFile)) {
  report("exportCSV (whole library, atomic file)", inChild([&] {
           CatalogDB store(dbPath);
           return Exporter::exportCSV(store, catalogsOf(store), csvFile);
         }),
         csvFile);
  report("exportJSON (whole library, atomic file)", inChild([&] {
           CatalogDB store(dbPath);
           return Exporter::exportJSON(store, catalogsOf(store), jsonFile);
         }),
         jsonFile);
  }
  if (!importsOnly) {
  std::printf("\nWhere the time goes (no file written):\n");
  report("  rows read and mapped to FileRecord", inChild([&] {
           CatalogDB store(dbPath);
           int64_t n = 0;
           for (const Catalog& c : catalogsOf(store))
             store.db().forEachRow(std::string("SELECT ") + CatalogDB::fileColumns +
                                       " FROM files f WHERE f.catalog_id=? ORDER BY f.path",
                                   {c.id},
                                   [&](const Statement& row) { n += CatalogDB::mapFile(row).size > -1; });
           return n;
         }),
         {});
  report("  rows read, as CSV text (writeCSV, discarded)", inChild([&] {
           CatalogDB store(dbPath);
           size_t bytes = 0;
           return Exporter::writeCSV(store, catalogsOf(store),
                                     [&](std::string_view t) { bytes += t.size(); });
         }),
         {});
  report("  rows read, as JSON text (writeJSON, discarded)", inChild([&] {
           CatalogDB store(dbPath);
           size_t bytes = 0;
           return Exporter::writeJSON(store, catalogsOf(store),
                                      [&](std::string_view t) { bytes += t.size(); });
         }),
         {});
  report("  for reference: JSON as one tree, dumped", inChild([&] {
           CatalogDB store(dbPath);
           nlohmann::json doc = {{"app", "TVRL Orrelin"}, {"catalogs", nlohmann::json::array()}};
           int64_t n = 0;
           for (const Catalog& c : catalogsOf(store)) {
             nlohmann::json d = Exporter::catalogDict(c);
             d["items"] = nlohmann::json::array();
             for (const FileRecord& r : store.allFiles(c.id))
               d["items"].push_back(Exporter::fileDict(r)), ++n;
             doc["catalogs"].push_back(std::move(d));
           }
           std::string text = doc.dump(2);
           return n + static_cast<int64_t>(text.empty());
         }),
         {});
  }

  // Imports count records: the rows the new catalogs hold, rebuilt folders included.
  const fs::path importDB = benchDirectory() / "exchange-import.sqlite";
  auto importInto = [&](bool json) {
    return [&, json] {
      removeDatabase(importDB);
      CatalogDB store(importDB.string());
      if (json) {
        Exporter::importJSON(store, jsonFile);
      } else {
        Exporter::importCSV(store, csvFile);
      }
      return store.db().scalarInt("SELECT count(*) FROM files");
    };
  };
  std::printf("\nImport of the exports into a new database (median of %d):\n", runs);
  reportMedian("importJSON (the JSON export)", runs, importInto(true));
  reportMedian("importCSV (the CSV export)", runs, importInto(false));

  removeDatabase(importDB);
  if (!importsOnly) {
    fs::remove(csvFile);
    fs::remove(jsonFile);
  }
  return 0;
}

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) { return orrelin::bench::main(argc, argv); }
