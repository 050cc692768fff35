// Search over the synthetic library of 1,000,000 records in 4 catalogs: every mode, the name index and the
// LIKE scan, with the 5000-row limit of the search screen. Each case runs several times; read the median.
//
//   build/bench/search_bench                                  all cases (builds the library once, ~2-10 min)
//   build/bench/search_bench --benchmark_filter=Contains      one group
//   build/bench/search_bench --benchmark_filter=137k --benchmark_repetitions=15
//
// Counters: "hits" is what the search returned (at most 5000), "matches" how many records match in all,
// counted once beforehand without the limit.
#include <benchmark/benchmark.h>

#include <memory>

#include "synthetic_library.h"

namespace orrelin::bench {
namespace {

using Mode = SearchQuery::Mode;

CatalogDB& library() {
  static std::unique_ptr<CatalogDB> store = [] {
    LibraryShape shape;
    LibraryInfo info;
    auto opened = openSyntheticLibrary(syntheticLibraryPath(shape), shape, &info);
    if (!info.reused) std::fprintf(stderr, "Built the library in %.0f s\n", info.buildSeconds);
    return opened;
  }();
  return *store;
}

// The number of records that match `query` with no limit, through the same statement.
int64_t countMatches(CatalogDB& store, SearchQuery query) {
  query.limit = -1;  // No limit in SQLite.
  SearchStatement statement = searchStatement(query, store.ftsTrigram());
  size_t from = statement.sql.find(" FROM ");
  size_t order = statement.sql.find(" ORDER BY ");
  std::string sql = "SELECT count(*)" + statement.sql.substr(from, order - from);
  return store.db().scalarInt(sql, statement.args);
}

void runSearch(benchmark::State& state, SearchQuery query) {
  CatalogDB& store = library();
  int64_t matches = countMatches(store, query);
  size_t hits = 0;
  for (auto _ : state) {
    std::vector<SearchHit> result = store.search(query);
    hits = result.size();
    benchmark::DoNotOptimize(result);
  }
  state.counters["hits"] = static_cast<double>(hits);
  state.counters["matches"] = static_cast<double>(matches);
}

SearchQuery query(const char* text, Mode mode = Mode::contains, bool metadata = false) {
  SearchQuery q;
  q.text = text;
  q.mode = mode;
  q.searchMetadata = metadata;
  return q;
}

void registerCase(const char* name, SearchQuery q) {
  benchmark::RegisterBenchmark(name, [q](benchmark::State& state) { runSearch(state, q); })
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1)
      ->Repetitions(7)
      ->ReportAggregatesOnly(true)
      ->UseRealTime();
}

void registerAll() {
  // Three characters or more: the trigram index.
  registerCase("Contains/index/11k matches 'Vandelay'", query("Vandelay"));
  registerCase("Contains/index/13k matches 'invoice'", query("invoice"));
  registerCase("Contains/index/137k matches 'IMG_'", query("IMG_"));
  registerCase("Contains/index/251k matches '.jpg'", query(".jpg"));
  registerCase("Contains/index/none 'xyzzy'", query("xyzzy"));
  registerCase("Contains/index/metadata 'Canon'", query("Canon", Mode::contains, true));
  registerCase("Contains/index/with filters 'IMG_' video+image >5MB", [] {
    SearchQuery q = query("IMG_");
    q.kinds = {FileKind::image, FileKind::video};
    q.minSize = 5'000'000;
    q.includeFolders = false;
    return q;
  }());
  // Shorter terms cannot use the index: a LIKE scan.
  registerCase("Contains/like/two chars rare 'zq'", query("zq"));
  registerCase("Contains/like/two chars common 'er'", query("er"));
  registerCase("Contains/like/two chars metadata 'Ca'", query("Ca", Mode::contains, true));
  registerCase("StartsWith/'IMG_1'", query("IMG_1", Mode::startsWith));
  registerCase("StartsWith/'Invoice 2021'", query("Invoice 2021", Mode::startsWith));
  registerCase("Exact/'README.md'", query("README.md", Mode::exact));
  registerCase("Exact/'img_0042.jpg'", query("img_0042.jpg", Mode::exact));
  registerCase("Regex/camera names", query(R"(^IMG_\d{4}\.(jpg|heic)$)", Mode::regex));
  registerCase("Regex/anywhere 'inv.*20'", query("inv.*20", Mode::regex));
  registerCase("Regex/metadata 'EOS \\d+D'", query(R"(EOS \d+D)", Mode::regex, true));
  registerCase("Filters/everything by name (no text)", query(""));
  registerCase("Filters/video over 1 GB", [] {
    SearchQuery q;
    q.kinds = {FileKind::video};
    q.minSize = 1'000'000'000;
    return q;
  }());
}

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) {
  orrelin::bench::registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
