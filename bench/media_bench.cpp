// Checksums and thumbnails against the command-line tools that do the same job, side by side:
//
//   nice build/bench/media_bench --benchmark_enable_random_interleaving=true     both pairs
//   nice build/bench/media_bench --benchmark_filter=Sha256    Hasher256 against sha256sum
//   nice build/bench/media_bench --benchmark_filter=Thumb     ThumbnailMaker against vipsthumbnail
//
// Random interleaving runs the repetitions of both contenders in mixed order, so that a busy machine
// weighs on both alike.
// The inputs (a 2 GB file of random bytes and eight copies of a 24-megapixel JPEG) are made in
// $ORRELIN_BENCH_DIR/media, else the system's temporary folder, and deleted when the run ends. Each
// benchmark runs seven times and reports the median. The 2 GB file is read once before timing, so both
// contenders read it from the page cache. The tools are started once per run: vipsthumbnail gets all
// eight images in one call, so its start-up is spread as ours is.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "scan/hasher256.h"
#include "scan/thumbnail_maker.h"

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

constexpr int64_t kBigFileBytes = 2'000'000'000;
constexpr int kPhotos = 8;

fs::path mediaDir() {
  const char* env = getenv("ORRELIN_BENCH_DIR");
  fs::path dir = (env != nullptr ? fs::path(env) : fs::temp_directory_path() / "orrelin-bench") / "media";
  fs::create_directories(dir);
  return dir;
}

bool shell(const std::string& command) { return std::system(command.c_str()) == 0; }

// The 2 GB file of random bytes, made on first use and read once so that it sits in the page cache.
const fs::path& bigFile() {
  static const fs::path path = [] {
    fs::path file = mediaDir() / "random-2GB.bin";
    if (!fs::exists(file) || static_cast<int64_t>(fs::file_size(file)) != kBigFileBytes) {
      std::ofstream out(file, std::ios::binary | std::ios::trunc);
      std::mt19937_64 random(7);
      std::vector<uint64_t> block(1 << 20);
      for (int64_t written = 0; written < kBigFileBytes;) {
        for (auto& word : block) word = random();
        int64_t n = std::min<int64_t>(kBigFileBytes - written, static_cast<int64_t>(block.size() * 8));
        out.write(reinterpret_cast<const char*>(block.data()), n);
        written += n;
      }
    }
    shell("cat '" + file.string() + "' > /dev/null");
    return file;
  }();
  return path;
}

// Eight copies of a 6000 × 4000 JPEG with detail everywhere (noise over a gradient), as a camera writes.
const std::vector<fs::path>& photos() {
  static const std::vector<fs::path> paths = [] {
    std::vector<fs::path> files;
    fs::path first = mediaDir() / "photo-0.jpg";
    if (!fs::exists(first)) {
      shell("convert -size 6000x4000 gradient:orange-navy -attenuate 0.4 +noise Gaussian -quality 92 '" +
            first.string() + "'");
    }
    for (int i = 0; i < kPhotos; ++i) {
      fs::path file = mediaDir() / ("photo-" + std::to_string(i) + ".jpg");
      if (i > 0) fs::copy_file(first, file, fs::copy_options::overwrite_existing);
      files.push_back(file);
    }
    return files;
  }();
  return paths;
}

void BM_Sha256_Hasher256(benchmark::State& state) {
  const fs::path& file = bigFile();
  for (auto _ : state) benchmark::DoNotOptimize(Hasher256::hash(file));
  state.SetBytesProcessed(state.iterations() * kBigFileBytes);
}

void BM_Sha256_sha256sum(benchmark::State& state) {
  const fs::path& file = bigFile();
  for (auto _ : state) {
    if (!shell("sha256sum '" + file.string() + "' > /dev/null")) state.SkipWithError("sha256sum failed");
  }
  state.SetBytesProcessed(state.iterations() * kBigFileBytes);
}

void BM_Thumb_ThumbnailMaker(benchmark::State& state) {
  const auto& files = photos();
  fs::path out = mediaDir() / "thumbs";
  for (auto _ : state) {
    for (size_t i = 0; i < files.size(); ++i) {
      if (!ThumbnailMaker::make(files[i], FileKind::image, out / (std::to_string(i) + ".jpg"))) {
        state.SkipWithError("no thumbnail");
      }
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(files.size()));
}

void BM_Thumb_vipsthumbnail(benchmark::State& state) {
  const auto& files = photos();
  // The same work as ours: fit 320 × 320, quality 78, metadata stripped.
  std::string command = "vipsthumbnail -s 320 -o '%s_vt.jpg[Q=78,strip]'";
  for (const auto& file : files) command += " '" + file.string() + "'";
  for (auto _ : state) {
    if (!shell(command)) state.SkipWithError("vipsthumbnail failed (package libvips-tools)");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(files.size()));
}

#define MEDIA_BENCHMARK(name)         \
  BENCHMARK(name)                     \
      ->Unit(benchmark::kMillisecond) \
      ->Iterations(1)                 \
      ->Repetitions(7)                \
      ->ReportAggregatesOnly()        \
      ->UseRealTime()

MEDIA_BENCHMARK(BM_Sha256_Hasher256);
MEDIA_BENCHMARK(BM_Sha256_sha256sum);
MEDIA_BENCHMARK(BM_Thumb_ThumbnailMaker);
MEDIA_BENCHMARK(BM_Thumb_vipsthumbnail);

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  // The inputs take 2 GB and more: never leave them behind.
  std::error_code ignored;
  std::filesystem::remove_all(orrelin::bench::mediaDir(), ignored);
  return 0;
}
