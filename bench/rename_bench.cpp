// Batch-rename benchmarks: the cost of a rule per name, and of choosing and ordering a catalog's records.
//
//   build/bench/rename_bench
//   build/bench/rename_bench --benchmark_filter=NewName
//
// Everything runs in memory over the synthetic tree's names and paths (100,000 files); the disk is not
// touched. The preview of a large folder blocks the interface, so these say how large is still pleasant.
#include <benchmark/benchmark.h>

#include <vector>

#include "organize/rename_pane.h"
#include "organize/rename_rule.h"
#include "organize/standard_order.h"
#include "synthetic_tree.h"

namespace orrelin::bench {
namespace {

const std::vector<FileRecord>& records() {
  static const std::vector<FileRecord> all = [] {
    std::vector<FileRecord> out;
    for (const SyntheticEntry& e : makeTree(100000)) {
      FileRecord r;
      r.path = e.path;
      r.name = e.name;
      r.isDir = e.isDir;
      out.push_back(std::move(r));
    }
    return out;
  }();
  return all;
}

void runRule(benchmark::State& state, const RenameRule& rule) {
  const auto& all = records();
  for (auto _ : state) {
    OrganizationPlan plan = rule.plan(all);
    benchmark::DoNotOptimize(plan);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(all.size()));
}

void BM_NewNamePrefixAndNumber(benchmark::State& state) {
  RenameRule rule;
  rule.prefix = "2026 ";
  rule.numbering = true;
  runRule(state, rule);
}
BENCHMARK(BM_NewNamePrefixAndNumber)->Unit(benchmark::kMillisecond);

void BM_NewNameLiteralFind(benchmark::State& state) {
  RenameRule rule;
  rule.find = "E";
  rule.replace = "e_";
  runRule(state, rule);
}
BENCHMARK(BM_NewNameLiteralFind)->Unit(benchmark::kMillisecond);

void BM_NewNameRegexAndTitleCase(benchmark::State& state) {
  RenameRule rule;
  rule.find = "(\\d+)";
  rule.replace = "#$1";
  rule.useRegex = true;
  rule.caseMode = RenameRule::CaseMode::title;
  runRule(state, rule);
}
BENCHMARK(BM_NewNameRegexAndTitleCase)->Unit(benchmark::kMillisecond);

// Choosing everything below the root, files and folders, in file-manager order: the collation sort.
void BM_SelectWholeCatalog(benchmark::State& state) {
  const auto& all = records();
  for (auto _ : state) {
    auto chosen = RenamePane::select(all, "", "", /*includeSub=*/true, /*includeFolders=*/true);
    benchmark::DoNotOptimize(chosen);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(all.size()));
}
BENCHMARK(BM_SelectWholeCatalog)->Unit(benchmark::kMillisecond);

// The same with a name filter, which folds every name once.
void BM_SelectWithFilter(benchmark::State& state) {
  const auto& all = records();
  for (auto _ : state) {
    auto chosen = RenamePane::select(all, "", "img", /*includeSub=*/true, /*includeFolders=*/false);
    benchmark::DoNotOptimize(chosen);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(all.size()));
}
BENCHMARK(BM_SelectWithFilter)->Unit(benchmark::kMillisecond);

void BM_ChildrenFirst(benchmark::State& state) {
  auto chosen = RenamePane::select(records(), "", "", true, true);
  RenameRule rule;
  rule.suffix = "_x";
  OrganizationPlan plan = rule.plan(chosen);
  for (auto _ : state) {
    auto moves = RenamePane::childrenFirst(plan, chosen);
    benchmark::DoNotOptimize(moves);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(chosen.size()));
}
BENCHMARK(BM_ChildrenFirst)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orrelin::bench

BENCHMARK_MAIN();
