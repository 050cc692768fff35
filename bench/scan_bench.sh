#!/usr/bin/env bash
# The scan benchmark in one run: generates a tree of 200,000 sparse files (about 50 a folder) and reports
#   (a) the walk floor: find printing size, time and path of every entry;
#   (b) the store floor: the same rows through the scanner's insert statement, 400 a transaction;
#   (c) a scan that reads no file contents (no metadata, thumbnails or checksums);
#   (d) a rescan with nothing changed;
#   (e) the peak resident memory of orrelin-cli for (c) and (d), at 200,000 and at 1,000,000 entries.
# Medians of REPS runs (default 3). Trees and databases go to $ORRELIN_BENCH_DIR (default
# /tmp/orrelin-bench) and are deleted at the end. Run from the repository after scripts/build:
#   nice bench/scan_bench.sh
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bench="$here/build/bench/scan_bench"
cli="$here/build/orrelin-cli"
dir="${ORRELIN_BENCH_DIR:-/tmp/orrelin-bench}"
reps="${REPS:-3}"
big="${BIG_FILES:-1000000}"
mkdir -p "$dir"
tree="$dir/tree-200k"
trap 'rm -rf "$dir/tree-200k" "$dir/tree-1m" "$dir"/*.sqlite* "$dir"/Thumbnails "$dir"/bench-thumbs "$dir"/scan_bench.json "$dir"/config' EXIT

median() { sort -g | awk '{v[NR]=$1} END {print (NR%2) ? v[(NR+1)/2] : (v[NR/2]+v[NR/2+1])/2}'; }

rm -rf "$tree" && "$bench" --make-tree="$tree" --files=200000
entries=$(find "$tree" -mindepth 1 | wc -l)
echo "tree: $entries entries"

# (a) walk floor, warm cache like the others.
find "$tree" -printf '%s %T@ %p\n' >/dev/null
walk=$(for i in $(seq "$reps"); do
  s=$(date +%s.%N); find "$tree" -printf '%s %T@ %p\n' >/dev/null; e=$(date +%s.%N)
  echo "$e - $s" | bc
done | median)

# (b), (c), (d) through Google Benchmark, each repeated.
json="$dir/scan_bench.json"
"$bench" --tree="$tree" --benchmark_repetitions="$reps" \
  --benchmark_out="$json" --benchmark_out_format=json >/dev/null
pick() {  # median real time in seconds of benchmark $1
  python3 - "$json" "$1" <<'PY'
import json, statistics, sys
runs = [b for b in json.load(open(sys.argv[1]))["benchmarks"]
        if b["run_name"].startswith(sys.argv[2] + "/") and b.get("run_type") == "iteration"]
print(statistics.median(b["real_time"] for b in runs) / 1000)
PY
}
store=$(pick BM_StoreFloor); scan=$(pick BM_Scan); rescan=$(pick BM_RescanUnchanged)

# (e) peak memory of the command-line tool.
peak() {  # peak KB of: orrelin-cli ARGS
  /usr/bin/time -v "$cli" "$@" 2>&1 >/dev/null | awk -F: '/Maximum resident/ {gsub(/ /,"",$2); print $2}'
}
db="$dir/mem.sqlite"; rm -f "$db"*
export XDG_DATA_HOME="$dir" XDG_CONFIG_HOME="$dir/config"
scanKB=$(peak --db "$db" scan "$tree" --no-metadata --no-thumbnails --no-hashes --name m)
rescanKB=$(peak --db "$db" rescan m --no-metadata --no-thumbnails --no-hashes)

rate() { echo "scale=0; $entries / $1" | bc; }
printf '\n%-44s %10s %14s\n' "measure ($entries entries, median of $reps)" "seconds" "entries/s"
printf '%-44s %10.2f %14s\n' "(a) walk floor: find -printf" "$walk" "$(rate "$walk")"
printf '%-44s %10.2f %14s\n' "(b) store floor: insert statement, 400/txn" "$store" "$(rate "$store")"
printf '%-44s %10.2f %14s\n' "(c) scan, no metadata/thumbnails/hashes" "$scan" "$(rate "$scan")"
printf '%-44s %10.2f %14s\n' "(d) rescan, nothing changed" "$rescan" "$(rate "$rescan")"
printf 'ratios: (c) rate / (b) rate = %.2f (target >= 0.8); (d) / (c) time = %.2f (target <= 0.6)\n' \
  "$(echo "$store / $scan" | bc -l)" "$(echo "$rescan / $scan" | bc -l)"
printf '(e) peak RSS at %s entries: scan %d MB, rescan %d MB\n' "$entries" $((scanKB / 1024)) $((rescanKB / 1024))
rm -rf "$tree" "$db"*

if [ "$big" -gt 0 ]; then
  tree="$dir/tree-1m"
  rm -rf "$tree" && "$bench" --make-tree="$tree" --files="$big" >/dev/null
  bigEntries=$(find "$tree" -mindepth 1 | wc -l)
  s=$(date +%s.%N); scanKB=$(peak --db "$db" scan "$tree" --no-metadata --no-thumbnails --no-hashes --name big); e=$(date +%s.%N)
  scanS=$(echo "$e - $s" | bc)
  s=$(date +%s.%N); rescanKB=$(peak --db "$db" rescan big --no-metadata --no-thumbnails --no-hashes); e=$(date +%s.%N)
  rescanS=$(echo "$e - $s" | bc)
  printf '(e) peak RSS at %s entries: scan %d MB (%.1f s), rescan %d MB (%.1f s) (target <= 300 MB)\n' \
    "$bigEntries" $((scanKB / 1024)) "$scanS" $((rescanKB / 1024)) "$rescanS"
fi
