# watch end to end: the list is edited by add and remove, and the running service keeps a scanned folder
# up to date as files come and go, then stops cleanly on SIGINT. ORRELIN_TEST_TIME_SCALE shortens the
# service's waits (watcher latency, quiet spell) for this test only.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config" XDG_DATA_HOME="$ORRELIN_SCRATCH/data"
db="$ORRELIN_SCRATCH/c.sqlite"
tree="$ORRELIN_SCRATCH/Watched Tree"
log="$ORRELIN_SCRATCH/watch.log"
pid=
fail() {
  echo "$*"
  [ -n "$pid" ] && kill -KILL "$pid" 2>/dev/null
  [ -f "$log" ] && { echo "--- watch output:"; cat "$log"; }
  exit 1
}
# Polls a command until its output matches, for at most 20 seconds.
await() {
  local pattern="$1"
  shift
  for _ in $(seq 1 200); do
    "$@" 2>/dev/null | grep -q -- "$pattern" && return 0
    sleep 0.1
  done
  return 1
}

mkdir -p "$tree/sub" && printf 1 >"$tree/one" && printf 22 >"$tree/sub/two"
"$cli" --db "$db" scan "$tree" --no-metadata --no-thumbnails >/dev/null || fail "scan failed"
mkdir -p "$ORRELIN_SCRATCH/other" && printf x >"$ORRELIN_SCRATCH/other/x"
"$cli" --db "$db" scan "$ORRELIN_SCRATCH/other" --name Other --no-metadata --no-thumbnails >/dev/null || fail "second scan failed"

out=$("$cli" --db "$db" watch list) || fail "list failed"
grep -q "No cartridge is watched." <<<"$out" || fail "empty list: $out"
out=$("$cli" --db "$db" watch add "Watched Tree" Other) || fail "add failed: $out"
grep -q "Watching “Watched Tree” (id 1)" <<<"$out" || fail "add message: $out"
out=$("$cli" --db "$db" watch add 1) || fail "second add failed"
grep -q "Already watching “Watched Tree” (id 1)" <<<"$out" || fail "second add: $out"
out=$("$cli" --db "$db" watch remove Other) || fail "remove failed: $out"
grep -q "Stopped watching “Other” (id 2)" <<<"$out" || fail "remove message: $out"
out=$("$cli" --db "$db" watch list --json) || fail "list --json failed"
grep -q '"state": "online"' <<<"$out" || fail "json list: $out"
[ "$(grep -c '"id"' <<<"$out")" = 1 ] || fail "one watched cartridge expected: $out"
stored() { tr -d ' \n' <"$XDG_CONFIG_HOME/TVRL Orrelin/defaults.json"; }
grep -q '"watchedCatalogs":\[1\]' <<<"$(stored)" || fail "setting not stored: $(stored)"

# Bad input changes nothing.
out=$("$cli" --db "$db" watch add "No Such" 2>&1); status=$?
[ $status -eq 1 ] || fail "add of an unknown cartridge exited $status: $out"
out=$("$cli" --db "$db" watch frobnicate 2>&1); status=$?
[ $status -eq 2 ] || fail "unknown action exited $status: $out"
"$cli" watch --help | grep -q "^usage: orrelin-cli \[--db PATH\] watch" || fail "no watch usage"
grep -q '"watchedCatalogs":\[1\]' <<<"$(stored)" || fail "setting changed by bad input: $(stored)"

ORRELIN_TEST_TIME_SCALE=0.05 "$cli" --db "$db" watch >"$log" 2>&1 &
pid=$!
await "Watching “Watched Tree” (id 1)" cat "$log" || fail "service did not start"

# Files added, changed and removed: one quiet update brings the cartridge in line.
printf 333 >"$tree/sub/three" && printf 4444 >"$tree/four" && rm "$tree/one"
await "Auto-updated “Watched Tree”: +2 ~[0-9]* −1" cat "$log" || fail "no update after changes"
out=$("$cli" --db "$db" search three) || fail "search failed"
grep -q "sub/three" <<<"$out" || fail "search does not see the new file: $out"
await "Watched Tree .* 3 " "$cli" --db "$db" list || fail "list does not show 3 files: $("$cli" --db "$db" list)"

# A cartridge added to the list while the service runs is picked up.
"$cli" --db "$db" watch add Other >/dev/null || fail "add while running failed"
await "Watching “Other” (id 2)" cat "$log" || fail "the running service missed the new watch"

kill -INT "$pid"
wait "$pid"; status=$?
pid=
[ $status -eq 0 ] || fail "watch exited $status after SIGINT"
grep -q "Stopped." "$log" || fail "no clean stop"
exit 0
