# orrelin-cli search on a real database: modes, filters, sizes as the search screen reads them, whole local
# days, catalogs by id or name, JSON output, and the failures of a bad command line or a bad pattern.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
db="$ORRELIN_SCRATCH/c.sqlite"
export TZ=UTC

fail() { echo "FAIL: $*"; exit 1; }
# expect STATUS PATTERN ARGS...: runs the search, checks the exit status and that the output matches.
expect() {
  local want=$1 pattern=$2; shift 2
  out=$("$cli" --db "$db" search "$@" 2>&1); status=$?
  [ "$status" -eq "$want" ] || fail "search $* exited $status, not $want: $out"
  grep -qE -- "$pattern" <<<"$out" || fail "search $* did not print /$pattern/: $out"
}
# lacks PATTERN ARGS...: the search succeeds and its output does not match.
lacks() {
  local pattern=$1; shift
  out=$("$cli" --db "$db" search "$@" 2>&1) || fail "search $* failed: $out"
  ! grep -qE -- "$pattern" <<<"$out" || fail "search $* printed /$pattern/: $out"
}

# The tool makes the schema; rows go in as the scanner writes them, and the triggers index them.
"$cli" --db "$db" info >/dev/null || fail "info"
sqlite3 "$db" <<'SQL' || fail "filling the database"
INSERT INTO catalogs(id, name, root_path, created_at) VALUES (1, 'Photos', '/media/p', 0), (2, 'Work', '/w', 0);
INSERT INTO files(catalog_id, path, name, is_dir, size, kind, modified, tags, meta, sha256, width, height) VALUES
 (1, 'Trips', 'Trips', 1, 6500000, 'Folder', 1709640000, '', '', '', 0, 0),
 (1, 'Trips/IMG_0001.JPG', 'IMG_0001.JPG', 0, 5000000, 'Image', 1709640000, '', '{"Camera":"Canon EOS R5"}', 'ab12', 6000, 4000),
 (1, 'Trips/IMG_0002.JPG', 'IMG_0002.JPG', 0, 1500000, 'Image', 1709683200, 'Red', '', '', 0, 0),
 (2, 'Invoice 2023-001.pdf', 'Invoice 2023-001.pdf', 0, 200000, 'PDF', 1700000000, 'Work, Taxes', '', '', 0, 0),
 (2, '100%_done.txt', '100%_done.txt', 0, 10, 'Document', NULL, '', '', '', 0, 0);
SQL

"$cli" --db "$db" search --help | grep -q "^usage: orrelin-cli" || fail "no usage"

expect 0 "IMG_0001.JPG +5 MB +Image .* Photos +Trips/IMG_0001.JPG" img
expect 0 "^2 results in" img
expect 0 "^No results\.$" nothing-like-this
expect 0 "^100%_done.txt" %
lacks "IMG|Invoice" %
expect 0 "IMG_0002" "img_0002.jpg" --mode exact
lacks "IMG" "MG_" --mode starts
expect 0 "IMG_0001" "^img_\d+1\.jpg$" --mode regex
expect 0 "IMG_0001" canon --metadata
lacks "IMG" canon

# Sizes: a comma is a decimal sign, MB when no unit is given, bounds inclusive, folders by their total.
expect 0 "^3 results" --min-size 1,5
expect 0 "^2 results" --min-size 1,5 --files-only
expect 0 "^2 results" --min-size 1.6MB
expect 0 "^1 result in" --max-size 1500KB --min-size 1500000b
expect 2 "'5 potatoes' is not a size" --min-size "5 potatoes"

# Dates are whole local days: the 5th runs from its midnight to the next, the first second of the 6th too.
expect 0 "^2 results" --from 2024-03-05 --to 2024-03-05 --files-only
expect 0 "^1 result in" --from 2024-03-06 --files-only
lacks "100%_done" --to 2030-01-01
expect 2 "not a date" --from 2024-02-30

expect 0 "^1 result in" --kind pdf
expect 0 "^2 results" --kind Image --kind "disk image"
expect 2 "unknown kind 'hologram'" --kind hologram
expect 0 "Invoice" --tag taxes
expect 0 "^2 results" --catalog Work
expect 0 "^3 results" --catalog 1 --catalog work --kind pdf --kind image
expect 1 "no cartridge is called '99'" --catalog 99
expect 0 "^1 result, the most shown" img --limit 1
expect 2 "is not a whole number" --limit 0
expect 2 "unknown mode" --mode fuzzy x
expect 2 "one argument" two words

# A pattern that does not compile fails the command with the program's message.
expect 1 "Database query error: That regular expression is not valid\." "([" --mode regex

# JSON: the export form of hits, with the catalog's name and only the keys a record has.
json=$("$cli" --db "$db" search IMG_0001 --json) || fail "json"
grep -q '"app": "TVRL Orrelin"' <<<"$json" || fail "no app key: $json"
grep -q '"catalog": "Photos"' <<<"$json" || fail "no catalog: $json"
grep -q '"modified": "2024-03-05T12:00:00Z"' <<<"$json" || fail "no date: $json"
grep -q '"Camera": "Canon EOS R5"' <<<"$json" || fail "no metadata: $json"
grep -q '"height": 4000' <<<"$json" || fail "no height: $json"
json=$("$cli" --db "$db" search 100% --json) || fail "json"
! grep -qE '"(modified|sha256|width|metadata)"' <<<"$json" || fail "keys for absent values: $json"
[ "$("$cli" --db "$db" search zzz --json | tr -d ' \n')" = '{"app":"TVRLOrrelin","results":[]}' ] || fail "empty json"
exit 0
