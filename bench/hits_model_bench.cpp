// How long the results table takes to take in a full search result (5,000 hits) and to re-sort it by
// each kind of column: the user waits for these on every search and every header click.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "ui/hits_model.h"

namespace orrelin {
namespace {

std::vector<SearchHit> syntheticHits(size_t count) {
  std::mt19937 random(7);
  const char* words[] = {"IMG", "holiday", "Report", "final", "draft", "scan", "Été", "über", "track", "clip"};
  std::vector<SearchHit> hits(count);
  for (size_t i = 0; i < count; ++i) {
    SearchHit& hit = hits[i];
    hit.file.id = static_cast<int64_t>(i + 1);
    hit.file.catalogID = 1 + static_cast<int64_t>(random() % 4);
    hit.file.name = std::string(words[random() % 10]) + " " + std::to_string(random() % 100000) + ".jpg";
    hit.file.path = "Photos/" + std::to_string(random() % 200) + "/" + hit.file.name;
    hit.file.size = static_cast<int64_t>(random() % 50'000'000);
    hit.catalogName = "Drive " + std::to_string(hit.file.catalogID);
  }
  return hits;
}

void BM_TakeResult(benchmark::State& state) {
  const std::vector<SearchHit> hits = syntheticHits(static_cast<size_t>(state.range(0)));
  HitsModel model;
  for (auto _ : state) model.setHits(hits);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_TakeResult)->Arg(5000)->Unit(benchmark::kMillisecond);

void BM_Resort(benchmark::State& state, const char* key) {
  HitsModel model;
  model.setHits(syntheticHits(5000));
  model.setSelectedRow(1234);
  for (auto _ : state) model.sortBy(key);
}
BENCHMARK_CAPTURE(BM_Resort, name, "name")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Resort, path, "path")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Resort, size, "size")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orrelin

BENCHMARK_MAIN();
