#!/usr/bin/env bash
# Builds the exchange importers' libFuzzer target with clang (libFuzzer and AddressSanitizer, the core
# library compiled with the same instrumentation in a build folder of its own) and runs it.
#
#   fuzz/run.sh [SECONDS]     default 60; the corpus grows in build/fuzz/corpus between runs
#
# Not part of the tests: a crash, a leak or a broken rule stops the run with the input saved as
# build/fuzz/crash-*, which `build/fuzz/exchange_fuzz FILE` replays.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$(pwd)"
seconds="${1:-60}"
build="${ORRELIN_FUZZ_BUILD_DIR:-build/fuzz}"
flags="-fsanitize=fuzzer-no-link,address -fno-omit-frame-pointer -g -O1"

launcher=()
if command -v ccache >/dev/null; then launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache); fi
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang \
  -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DORRELIN_TESTS=OFF -DORRELIN_BENCH=OFF "${launcher[@]}" >/dev/null
# Keep going past a source file that this clang cannot compile (one the importers do not need): the target
# links from the objects that were made, and a missing one the importers need fails the link by name.
cmake --build "$build" -j 2 --target orrelin_core -- -k 0 || echo "fuzz/run.sh: some core files did not compile; linking what did" >&2

libs=$(pkg-config --libs sqlite3 icu-uc icu-i18n gio-2.0 mount uuid exiv2 libavformat libavcodec libavutil \
  libswscale poppler-cpp vips-cpp libcrypto)
objects=$(find "$build/CMakeFiles/orrelin_core.dir" -name '*.o')
# shellcheck disable=SC2086
clang++ -std=c++20 $flags -fsanitize=fuzzer -Isrc -I"$build/generated" fuzz/exchange_fuzz.cpp \
  -Wl,--start-group $objects -Wl,--end-group $libs -o "$build/exchange_fuzz"

mkdir -p "$build/corpus"
cd "$build"
./exchange_fuzz -max_total_time="$seconds" -max_len=16384 -timeout=20 -rss_limit_mb=4096 \
  -dict="$root/fuzz/exchange.dict" -print_final_stats=1 corpus "$root/fuzz/seeds"
