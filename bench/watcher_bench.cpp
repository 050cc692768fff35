// How long a folder watcher takes to set up on a large tree (it runs on the main thread, so the interface
// waits for it), how long it takes to stop, and what its watches cost in memory: this process's heap, and
// the kernel's unreclaimable slab (a machine-wide figure, so only a rough one on a busy machine).
//
//   build/bench/watcher_bench [--tree-root=DIR] [benchmark flags]
//
// Trees of 1,000, 10,000 and 50,000 folders (the folders and files of bench/synthetic_tree.h, files empty)
// are made under DIR, by default /dev/shm, so that the figures are those of a tree whose folders are in
// the kernel's caches, as they are right after a scan; they are removed at the end. The plain walk is the
// floor: the same folders listed by std::filesystem with no watch added.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <malloc.h>

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "app/qt/folder_watcher.h"
#include "synthetic_tree.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

fs::path g_trees;
std::map<int, fs::path> g_made;  // Trees made so far, by folder count.

// A tree of exactly `folders` folders below its root: the synthetic entries, in walk order, up to the
// last file of the folder that reaches the count.
const fs::path& treeOf(int folders) {
  auto it = g_made.find(folders);
  if (it != g_made.end()) return it->second;
  const fs::path root = g_trees / ("tree-" + std::to_string(folders));
  fs::remove_all(root);
  fs::create_directories(root);
  int made = 0;
  for (const SyntheticEntry& e : makeTree(folders * 8, /*perFolder=*/8)) {
    if (e.isDir && made == folders) break;
    const fs::path path = root / e.path;
    if (e.isDir) {
      fs::create_directory(path);
      ++made;
    } else {
      const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
      if (fd >= 0) ::close(fd);
    }
  }
  return g_made.emplace(folders, root).first->second;
}

// Bytes of this process's heap in use.
long long heapBytes() { return static_cast<long long>(mallinfo2().uordblks); }

// Bytes of the kernel's unreclaimable slab memory, where inotify keeps its watch records; -1 when unknown.
// The whole machine's figure: other processes move it too.
long long kernelSlabBytes() {
  std::ifstream meminfo("/proc/meminfo");
  std::string key;
  long long kib = 0;
  std::string unit;
  while (meminfo >> key >> kib) {
    std::getline(meminfo, unit);
    if (key == "SUnreclaim:") return kib * 1024;
  }
  return -1;
}

void BM_WatchTree(benchmark::State& state) {
  const int folders = static_cast<int>(state.range(0));
  const fs::path& root = treeOf(folders);
  std::size_t watched = 0;
  long long heap = 0, kernel = 0;
  double seconds = 0;
  for (auto _ : state) {
    const long long heapBefore = heapBytes(), kernelBefore = kernelSlabBytes();
    const auto start = std::chrono::steady_clock::now();
    auto watcher = FolderWatcher::create(root, [] {});
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.PauseTiming();
    if (watcher == nullptr) {
      state.SkipWithError("the watcher could not be set up");
      break;
    }
    if (watcher->watchLimitReached()) state.SkipWithError("the inotify watch limit was reached");
    watched = watcher->watchedFolderCount();
    heap = heapBytes() - heapBefore;
    kernel = kernelSlabBytes() - kernelBefore;
    watcher.reset();
    state.ResumeTiming();
  }
  state.counters["folders"] = static_cast<double>(watched);
  state.counters["us_per_folder"] = seconds * 1e6 / static_cast<double>(state.iterations() * watched);
  state.counters["heap_B_per_folder"] = static_cast<double>(heap) / static_cast<double>(watched);
  state.counters["kernel_B_per_folder"] = static_cast<double>(kernel) / static_cast<double>(watched);
}

void BM_StopWatcher(benchmark::State& state) {
  const fs::path& root = treeOf(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    auto watcher = FolderWatcher::create(root, [] {});
    state.ResumeTiming();
    watcher->stop();
  }
}

// The floor: the same folders listed with no watch added.
void BM_PlainWalk(benchmark::State& state) {
  const fs::path& root = treeOf(static_cast<int>(state.range(0)));
  int64_t folders = 0;
  for (auto _ : state) {
    folders = 1;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator(); ++it)
      folders += it->is_directory();  // d_type: no stat.
  }
  state.counters["folders"] = static_cast<double>(folders);
}

BENCHMARK(BM_WatchTree)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_StopWatcher)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlainWalk)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) {
  // The watcher's notifier and timer are Qt objects of the main thread.
  QCoreApplication app(argc, argv);
  namespace fs = std::filesystem;
  fs::path base = access("/dev/shm", W_OK) == 0 ? fs::path("/dev/shm") : fs::temp_directory_path();
  std::vector<char*> rest = {argv[0]};
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg.starts_with("--tree-root=")) {
      base = arg.substr(std::strlen("--tree-root="));
    } else {
      rest.push_back(argv[i]);
    }
  }
  orrelin::bench::g_trees = base / ("orrelin-watcher-bench-" + std::to_string(getpid()));
  fs::create_directories(orrelin::bench::g_trees);
  int restCount = static_cast<int>(rest.size());
  benchmark::Initialize(&restCount, rest.data());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  fs::remove_all(orrelin::bench::g_trees);
  return 0;
}
