# orrelin-cli export csv|json and import, end to end: scan a small tree, export it both ways, import both
# files, and find the copies in the list with the same records; refusals leave the database unchanged.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
cd "$ORRELIN_SCRATCH" || exit 1
db="$ORRELIN_SCRATCH/c.sqlite"
run() { "$cli" --db "$db" "$@"; }
fail() { echo "FAIL: $*"; exit 1; }

mkdir -p "tree/Photos/2024" "tree/Docs"
printf 'jpeg-ish' > "tree/Photos/2024/IMG_0001.JPG"
printf 'a, "quoted" name' > 'tree/Docs/Report, "final".txt'
printf 'x' > "tree/Docs/.hidden-note"
printf '1234567890' > "tree/top.bin"
run scan "$ORRELIN_SCRATCH/tree" --name "Tree" --hidden >/dev/null || fail "scan"
records() { sqlite3 "$db" "SELECT path, is_dir, size, kind, hidden FROM files WHERE catalog_id=$1 ORDER BY path"; }

# CSV: the default name is the cartridge's, and it is never written over.
out=$(run export csv Tree) || fail "export csv: $out"
grep -qx "Exported 7 records to CSV" <<<"$out" || fail "csv message: $out"
[ -f Tree.csv ] || fail "no Tree.csv"
head -1 Tree.csv | grep -q "^Catalog,Path,Name,Folder,Kind,Size,Modified,Created,Tags,Label,Hidden,UTI,Duration,Width,Height,SHA256,Metadata"$'\r'"$" \
  || fail "csv header: $(head -1 Tree.csv | od -c | head -3)"
grep -q '^Tree,"Docs/Report, ""final"".txt","Report, ""final"".txt",No,' Tree.csv || fail "csv quoting: $(cat Tree.csv)"
[ "$(tail -c 1 Tree.csv | od -An -c | tr -d ' ')" != '\n' ] || fail "csv ends with a line break"
out=$(run export csv Tree 2>&1); [ $? -eq 1 ] || fail "an existing default file was written over"
grep -q "exists already" <<<"$out" || fail "no reason given: $out"

# JSON to a chosen file, and to standard output.
out=$(run export json 1 -o "$ORRELIN_SCRATCH/tree.json") || fail "export json: $out"
[ "$out" = "Exported 7 records to JSON" ] || fail "json message: $out"
grep -q '"format": "tavrel-orrelin-catalog"' tree.json || fail "json format key"
run export json Tree -o - 2>/dev/null | grep -q '"name": "IMG_0001.JPG"' || fail "json to stdout"
out=$(run export json 2>&1); [ $? -eq 2 ] || fail "no catalog is a usage error"
grep -q "Choose at least one catalog first" <<<"$out" || fail "no catalog message: $out"
out=$("$cli" --db "$ORRELIN_SCRATCH/empty.sqlite" export csv --all -o all.csv 2>&1); [ $? -eq 1 ] \
  || fail "--all with no cartridges exported: $out"
grep -q "Nothing to Export: Choose at least one catalog first.$" <<<"$out" || fail "empty --all message: $out"
[ ! -e all.csv ] || fail "a file was made with nothing to export"
out=$(run export csv Nope -o x.csv 2>&1); [ $? -eq 1 ] || fail "unknown catalog"
[ ! -e x.csv ] || fail "a file was made for an unknown catalog"

# Import both: the JSON copy under the same name, the CSV copy as "(Imported)", both with the records.
out=$(run import tree.json) || fail "import json: $out"
grep -qx "Imported 1 catalog" <<<"$out" || fail "json import message: $out"
cp Tree.csv Upper.CSV
out=$(run import Upper.CSV) || fail "import csv: $out"
grep -q "Tree (Imported)" <<<"$out" || fail "csv import message: $out"
list=$(run list) || fail "list"
[ "$(grep -cE '^ +[0-9]+  Tree +[0-9]' <<<"$list")" -eq 2 ] || fail "list lacks the JSON copy: $list"
grep -q "Tree (Imported) .* 4 .* 3 " <<<"$list" || fail "list lacks the CSV copy with its counts: $list"
original=$(records 1)
[ "$(records 2)" = "$original" ] || fail "JSON copy differs: $(records 2)"
[ "$(records 3)" = "$original" ] || fail "CSV copy differs: $(records 3)"
[ "$(sqlite3 "$db" "SELECT root_path, notes FROM catalogs WHERE id=3")" = "|Imported from Upper.CSV" ] \
  || fail "csv catalog facts"

# Refusals: nothing changes.
before=$(sqlite3 "$db" "SELECT count(*) FROM catalogs; SELECT count(*) FROM files")
printf '{"catalogs": 5}' > bad.json
out=$(run import bad.json 2>&1); [ $? -eq 1 ] || fail "bad json accepted"
grep -q "Import Failed: This file is not a TVRL Orrelin catalog export." <<<"$out" || fail "bad json message: $out"
printf 'a,b,c\n1,2,3\n' > bad.csv
out=$(run import bad.csv 2>&1); [ $? -eq 1 ] || fail "bad csv accepted"
grep -q "does not have the TVRL Orrelin column layout" <<<"$out" || fail "bad csv message: $out"
out=$(run import missing.json 2>&1); [ $? -eq 1 ] || fail "missing file accepted"
[ "$(sqlite3 "$db" "SELECT count(*) FROM catalogs; SELECT count(*) FROM files")" = "$before" ] || fail "a refusal changed the database"

# Search results through the same formats.
run search IMG --csv | head -1 | grep -q "^Catalog,Path," || fail "search --csv"
out=$(run search IMG --json -o hits.json) || fail "search -o: $out"
[ "$out" = "Exported 3 results" ] || fail "search export message: $out"
grep -q '"catalog": "Tree (Imported)"' hits.json || fail "hits file: $(cat hits.json)"
exit 0
