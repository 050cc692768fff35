# backup, backup list and restore end to end: a restored catalog comes back, a bad file changes nothing.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config" XDG_DATA_HOME="$ORRELIN_SCRATCH/data"
backups="$XDG_DATA_HOME/TVRL Orrelin/Backups"
tree="$ORRELIN_SCRATCH/Studio Tree"
fail() { echo "$*"; exit 1; }

mkdir -p "$tree/a" && printf 12345 >"$tree/a/five" && printf 1 >"$tree/one"
"$cli" scan "$tree" --no-metadata --no-thumbnails >/dev/null || fail "scan failed"

out=$("$cli" backup --list 2>&1); status=$?
[ $status -eq 2 ] || fail "unknown option exited $status: $out"
out=$("$cli" backup list) || fail "empty list failed: $out"
grep -q "No backups yet" <<<"$out" || fail "empty list: $out"

out=$("$cli" backup) || fail "backup failed: $out"
grep -Eq "^Backup saved: Catalogs_[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{6}_manual\.sqlite$" <<<"$out" || fail "no saved line: $out"
saved="$backups/${out#Backup saved: }"
[ -f "$saved" ] || fail "no file at $saved"
grep -q '"lastBackup"' "$XDG_CONFIG_HOME/TVRL Orrelin/defaults.json" || fail "lastBackup not set"

# The catalog goes away: deleted by hand, and a second scan of another folder takes its place.
mkdir -p "$ORRELIN_SCRATCH/Other" && printf x >"$ORRELIN_SCRATCH/Other/x"
if command -v sqlite3 >/dev/null; then
  sqlite3 "$XDG_DATA_HOME/TVRL Orrelin/Catalogs.sqlite" "DELETE FROM files; DELETE FROM catalogs;" || fail "sqlite3 failed"
fi
"$cli" scan "$ORRELIN_SCRATCH/Other" --no-metadata --no-thumbnails >/dev/null || fail "second scan failed"
if command -v sqlite3 >/dev/null; then
  "$cli" list | grep -q "Studio Tree" && fail "catalog not deleted"
fi

out=$("$cli" restore "$saved") || fail "restore failed: $out"
[ "$out" = "Catalogs restored from backup" ] || fail "restore said: $out"
out=$("$cli" list)
grep -q "Studio Tree" <<<"$out" || fail "catalog not back: $out"
grep -q "Other" <<<"$out" && fail "catalog made after the backup still there: $out"
out=$("$cli" search five) || fail "search failed"
grep -q "a/five" <<<"$out" || fail "files not back: $out"

# The safety backup of the state before the restore is listed, newest first, beside the manual one.
out=$("$cli" backup list) || fail "list failed"
grep -q "_before-restore.sqlite" <<<"$out" || fail "no safety backup: $out"
first=$(sed -n 2p <<<"$out")
grep -q "_before-restore.sqlite" <<<"$first" || fail "newest not first: $out"
grep -q "_manual.sqlite" <<<"$out" || fail "manual backup not listed: $out"
"$cli" backup list --json | grep -q '"name": "Catalogs_' || fail "no JSON list"
# Restoring the safety backup brings back the state before the restore.
safety="$backups/$(grep -o 'Catalogs_[^ ]*_before-restore.sqlite' <<<"$first")"
"$cli" restore "$safety" >/dev/null || fail "restore of the safety backup failed"
"$cli" list | grep -q "Other" || fail "safety backup did not hold the later catalog"
"$cli" restore "$saved" >/dev/null || fail "second restore failed"

# Files that are no backups are refused, and the catalogs stay.
printf 'not a database at all\n%.0s' {1..50} >"$ORRELIN_SCRATCH/notes.sqlite"
out=$("$cli" restore "$ORRELIN_SCRATCH/notes.sqlite" 2>&1); status=$?
[ $status -eq 1 ] || fail "text file exited $status: $out"
grep -q "Restore Failed: That file could not be used as a backup. Database error: file is not a database" <<<"$out" \
  || fail "text file message: $out"
"$cli" list | grep -q "Studio Tree" || fail "catalogs lost after a refused restore"
out=$("$cli" restore "$ORRELIN_SCRATCH/absent.sqlite" 2>&1); status=$?
[ $status -eq 1 ] || fail "missing file exited $status: $out"
[ -e "$ORRELIN_SCRATCH/absent.sqlite" ] && fail "restore created the missing file"
out=$("$cli" restore "$XDG_DATA_HOME/TVRL Orrelin/Catalogs.sqlite" 2>&1); status=$?
[ $status -eq 1 ] || fail "restoring the database onto itself exited $status: $out"
grep -q "It is the catalog database itself" <<<"$out" || fail "self restore: $out"
"$cli" list | grep -q "Studio Tree" || fail "catalogs lost after restoring the database onto itself"
out=$("$cli" restore 2>&1); status=$?
[ $status -eq 2 ] || fail "restore without a file exited $status"
"$cli" restore --help | grep -q "safety backup" || fail "help does not mention the safety backup"
"$cli" backup --help | grep -q "^usage: orrelin-cli \[--db PATH\] backup" || fail "no backup usage"
exit 0
