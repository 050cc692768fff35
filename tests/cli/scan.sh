# scan and rescan end to end: counts, exact changes, messages and exit codes.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config" XDG_DATA_HOME="$ORRELIN_SCRATCH/data"
db="$ORRELIN_SCRATCH/c.sqlite"
tree="$ORRELIN_SCRATCH/My Tree"
fail() { echo "$*"; exit 1; }

mkdir -p "$tree/a/b" && printf 12345 >"$tree/a/b/five" && printf 1 >"$tree/one" && printf h >"$tree/.hidden-file"
out=$("$cli" --db "$db" scan "$tree" --no-metadata --no-thumbnails) || fail "scan failed: $out"
grep -q "Cataloged “My Tree” (id 1)" <<<"$out" || fail "no result line: $out"
grep -q "added 4, changed 0, removed 0" <<<"$out" || fail "wrong counts: $out"
grep -q "2 files, 2 folders, 6 bytes" <<<"$out" || fail "wrong totals: $out"

printf 123456789 >"$tree/one" && rm "$tree/a/b/five" && printf n >"$tree/new"
out=$("$cli" --db "$db" rescan "My Tree" --changes --hidden) || fail "rescan failed: $out"
grep -q "Updated “My Tree” (id 1)" <<<"$out" || fail "no rescan line: $out"
grep -q "added 2, changed 1, removed 1" <<<"$out" || fail "wrong changes: $out"
grep -Fxq "  a/b/five" <<<"$out" || fail "removed path not listed: $out"
grep -Fxq "  .hidden-file" <<<"$out" || fail "--hidden ignored: $out"

# The stored defaults apply where no switch is given.
mkdir -p "$XDG_CONFIG_HOME/TVRL Orrelin"
echo '{"scanDefaults":{"includeHidden":false,"metadata":false,"thumbnails":false,"hashes":true,"treatPackagesAsFiles":true}}' \
  >"$XDG_CONFIG_HOME/TVRL Orrelin/defaults.json"
"$cli" --db "$db" scan "$tree" --name Hashed >/dev/null || fail "second scan failed"
sums=$(sqlite3 "$db" "SELECT count(*) FROM files WHERE catalog_id=2 AND sha256<>''" 2>/dev/null || echo skip)
[ "$sums" = skip ] || [ "$sums" = 2 ] || fail "stored defaults not used: $sums checksums"

out=$("$cli" --db "$db" scan "$ORRELIN_SCRATCH/absent" 2>&1); status=$?
[ $status -eq 1 ] || fail "missing folder exited $status"
grep -q "The folder or drive “absent” is not available. Connect it and try again." <<<"$out" || fail "message: $out"
out=$("$cli" --db "$db" scan 2>&1); status=$?
[ $status -eq 2 ] || fail "scan without a path exited $status"
out=$("$cli" --db "$db" rescan "No Such" 2>&1); status=$?
[ $status -eq 1 ] || fail "rescan of an unknown cartridge exited $status: $out"
out=$("$cli" --db "$db" scan "$tree" --group 99 2>&1); status=$?
[ $status -eq 2 ] || fail "unknown group exited $status: $out"
"$cli" scan --help | grep -q "^usage: orrelin-cli \[--db PATH\] scan PATH" || fail "no scan usage"
"$cli" rescan --help | grep -q "^usage: orrelin-cli \[--db PATH\] rescan CARTRIDGE" || fail "no rescan usage"
exit 0
