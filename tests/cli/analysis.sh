# The analysis commands end to end: duplicates, statistics, the three reports and comparison, on a database
# made by the tool and filled with sqlite3 the way a scan leaves it, and on a real folder for missing files.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
db="$ORRELIN_SCRATCH/c.sqlite"
drive="$ORRELIN_SCRATCH/drive"
fail() { echo "FAIL: $*"; exit 1; }

"$cli" --db "$db" info >/dev/null || fail "info could not create the database"
mkdir -p "$drive/docs" "$drive/empty"
echo one >"$drive/docs/a.txt"
echo two >"$drive/docs/$(printf 'caf\xe9.txt')"   # not UTF-8 on disk; stored mapped
sqlite3 "$db" <<SQL || fail "could not fill the database"
INSERT INTO catalogs(id, name, root_path, file_count, folder_count, total_size, created_at)
  VALUES (1, 'Source', '$drive', 3, 2, 7000000, 0), (2, 'Backup', '/nowhere/at/all', 2, 0, 7000000, 0);
INSERT INTO files(catalog_id, parent_id, path, name, is_dir, size, kind, ext, modified, sha256, item_count) VALUES
  (1, 0, 'docs', 'docs', 1, 7000000, 'Folder', '', NULL, '', 3),
  (1, 0, 'empty', 'empty', 1, 0, 'Folder', '', NULL, '', 0),
  (1, 1, 'docs/a.txt', 'a.txt', 0, 2000000, 'Document', 'txt', 1000000000, 'aaa', 0),
  (1, 1, 'docs/caf' || char(61417) || '.txt', 'caf' || char(61417) || '.txt', 0, 3000000, 'Document', 'txt', 1000000000, '', 0),
  (1, 1, 'docs/gone.txt', 'gone.txt', 0, 2000000, 'Document', 'txt', 1000000000, 'ccc', 0),
  (2, 0, 'a.txt', 'a.txt', 0, 2000000, 'Document', 'TXT', 1700000000, 'aaa', 0),
  (2, 0, 'docs/gone.txt', 'gone.txt', 0, 5000000, 'Document', 'txt', 1700000000, 'ccc', 0);
INSERT INTO scan_log(catalog_id, at, added, removed, changed, seconds, note) VALUES (9, 5, 1, 2, 3, 1.0, 'old');
SQL

# Duplicates in each mode; the minimum size is in megabytes with a comma as decimal sign.
out=$("$cli" --db "$db" dupes --json) || fail "dupes exited $?"
[ "$(grep -c '"key":' <<<"$out")" = 1 ] && grep -q '"key": "Name + Size|a.txt|2000000"' <<<"$out" \
  || fail "dupes by name and size: $out"
out=$("$cli" --db "$db" dupes --by hash --min-size 0 --cross) || fail "dupes --by hash exited $?"
grep -q "^a.txt  (2 copies" <<<"$out" && grep -q "^gone.txt  (2 copies" <<<"$out" || fail "dupes by hash: $out"
out=$("$cli" --db "$db" dupes --by size --min-size 2,5 --catalog Source) || fail "dupes --by size exited $?"
grep -q "No duplicates found." <<<"$out" || fail "dupes by size over 2.5 MB in Source: $out"
out=$("$cli" --db "$db" dupes --by size --min-size 2000KB --catalog 1) || fail "dupes in catalog 1 exited $?"
grep -q "^2 files of 2 MB" <<<"$out" || fail "dupes by size in Source: $out"
"$cli" --db "$db" dupes --by colour >/dev/null 2>&1; [ $? -eq 2 ] || fail "a bad --by is no usage error"
"$cli" --db "$db" dupes --min-size lots >/dev/null 2>&1; [ $? -eq 2 ] || fail "a bad --min-size is no usage error"
"$cli" --db "$db" dupes --min-size 1e30 >/dev/null 2>&1; [ $? -eq 2 ] || fail "a huge --min-size is no usage error"
err=$("$cli" --db "$db" dupes --catalog Nope 2>&1); [ $? -eq 2 ] || fail "an unknown catalog is no usage error"
grep -q "no cartridge is called 'Nope'" <<<"$err" || fail "unknown catalog message: $err"

# Statistics: totals from the catalogs' counters, extensions upper-cased, a log row of a deleted catalog.
out=$("$cli" --db "$db" stats) || fail "stats exited $?"
grep -q "^Cartridges:  2$" <<<"$out" && grep -q "^Files:       5$" <<<"$out" || fail "stats totals: $out"
# "txt" and "TXT" are grouped apart and both shown upper-cased.
[ "$(grep -Ec "^  TXT +[0-9]" <<<"$out")" = 2 ] && grep -Eq "^  TXT +4 " <<<"$out" || fail "stats extensions: $out"
grep -q "(deleted)" <<<"$out" || fail "stats log: $out"
"$cli" --db "$db" stats --json | grep -q '"year": "2001"' || fail "stats --json has no year 2001"

# Reports.
out=$("$cli" --db "$db" report empty) || fail "report empty exited $?"
grep -q "Source  *empty/" <<<"$out" && grep -q "^1 found$" <<<"$out" || fail "report empty: $out"
out=$("$cli" --db "$db" report large-old --min-size 2 --years 0 --catalog Backup) || fail "large-old exited $?"
grep -q "^2 files · 7 MB$" <<<"$out" || fail "report large-old: $out"
out=$("$cli" --db "$db" report large-old --min-size 2 --years 10) || fail "large-old 10 years exited $?"
grep -q "^3 files · 7 MB$" <<<"$out" || fail "report large-old over 10 years: $out"
"$cli" --db "$db" report large-old --years 31 >/dev/null 2>&1; [ $? -eq 2 ] || fail "--years 31 is no usage error"
out=$("$cli" --db "$db" report missing Source) || fail "report missing exited $?"
grep -q "docs/gone.txt" <<<"$out" && grep -q "^1 missing$" <<<"$out" || fail "report missing: $out"
rm "$drive/docs/$(printf 'caf\xe9.txt')"
out=$("$cli" --db "$db" report missing 1 --json) || fail "report missing --json exited $?"
[ "$(grep -c '"path"' <<<"$out")" = 2 ] || fail "report missing after a removal: $out"
err=$("$cli" --db "$db" report missing Backup 2>&1); [ $? -eq 1 ] || fail "an offline drive is no failure"
grep -q "Drive offline" <<<"$err" || fail "offline message: $err"
"$cli" --db "$db" report nonsense >/dev/null 2>&1; [ $? -eq 2 ] || fail "an unknown report is no usage error"

# Comparison.
out=$("$cli" --db "$db" compare Source Backup) || fail "compare exited $?"
grep -Eq "^Only in A +2$" <<<"$out" && grep -Eq "^Only in B +1$" <<<"$out" && grep -Eq "^Different +1$" <<<"$out" \
  && grep -Eq "^Identical +0$" <<<"$out" || fail "compare counts: $out"
grep -q "docs/gone.txt  Source: 2 MB · Backup: 5 MB" <<<"$out" || fail "compare differences: $out"
"$cli" --db "$db" compare Source >/dev/null 2>&1; [ $? -eq 2 ] || fail "compare with one catalog is no usage error"
"$cli" --db "$db" compare --help | grep -q "^usage: orrelin-cli" || fail "compare has no help"
exit 0
