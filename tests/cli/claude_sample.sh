# Sample cartridges loaded, one exported for Claude and read back, then removed while a real cartridge stays.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_DATA_HOME="$ORRELIN_SCRATCH/data" XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config"
db="$ORRELIN_SCRATCH/c.sqlite"
fail() { echo "$*"; exit 1; }
sql() { sqlite3 "$db" "$1"; }
# True when the file at $1 is one valid JSON document.
valid_json() { [ "$(sqlite3 :memory: "SELECT json_valid(CAST(readfile('$1') AS TEXT))")" = 1 ]; }

# A real cartridge first: it must outlive the sample data.
mkdir -p "$ORRELIN_SCRATCH/tree/Docs"
echo "notes" >"$ORRELIN_SCRATCH/tree/Docs/notes.txt"
"$cli" --db "$db" scan "$ORRELIN_SCRATCH/tree" --name "Real Drive" --no-metadata --no-thumbnails >/dev/null ||
  fail "scan failed"

out=$("$cli" --db "$db" sample load) || fail "sample load failed: $out"
[ "$(head -1 <<<"$out")" = "Sample cartridges loaded" ] || fail "load said: $out"
[ "$(sql 'SELECT COUNT(*) FROM catalogs WHERE is_sample=1')" = 4 ] || fail "not four sample cartridges"
[ "$(sql "SELECT group_concat(name, '|') FROM (SELECT name FROM groups ORDER BY sort)")" = \
  "Studio (Sample)|Media (Sample)" ] || fail "groups: $(sql 'SELECT name FROM groups')"
[ "$(sql "SELECT COUNT(*) FROM catalogs c JOIN groups g ON g.id=c.group_id WHERE g.name='Studio (Sample)'")" = 2 ] ||
  fail "Studio (Sample) should hold two cartridges"
"$cli" --db "$db" dupes --cross | grep -q "Crate Backup/Music/" || fail "no duplicates across the sample drives"

# Export one sample cartridge for Claude.
out=$("$cli" --db "$db" export claude "DJ Crates SSD" -o "$ORRELIN_SCRATCH/out") || fail "export failed: $out"
[ "$(wc -l <<<"$out")" = 5 ] || fail "expected five files, got: $out"
bundle=$(dirname "$(head -1 <<<"$out")")
[[ "$(basename "$bundle")" =~ ^DJ\ Crates\ SSD\ —\ Claude\ Export\ [0-9]{4}-[0-9]{2}-[0-9]{2}\ [0-9]{4}$ ]] ||
  fail "bundle folder named: $bundle"
for f in files.jsonl catalog.xml SUMMARY.md README.md organization-plan.template.json; do
  grep -qx "$bundle/$f" <<<"$out" || fail "$f not reported"
  [ -s "$bundle/$f" ] || fail "$f missing or empty"
done

id=$(sql "SELECT id FROM catalogs WHERE name='DJ Crates SSD'")
records=$(sql "SELECT COUNT(*) FROM files WHERE catalog_id=$id")
[ "$(wc -l <"$bundle/files.jsonl")" = "$records" ] || fail "files.jsonl has not one line per record"
{ printf '['; paste -sd, "$bundle/files.jsonl"; printf ']'; } >"$ORRELIN_SCRATCH/all.json"
valid_json "$ORRELIN_SCRATCH/all.json" || fail "a line of files.jsonl is not JSON"
[ "$(sqlite3 :memory: "SELECT COUNT(*) FROM json_each(CAST(readfile('$ORRELIN_SCRATCH/all.json') AS TEXT))
     WHERE json_extract(value, '$.catalog') = 'DJ Crates SSD'")" = "$records" ] || fail "records without their catalog"
valid_json "$bundle/organization-plan.template.json" || fail "the plan template is not JSON"
sed -n '/^```json$/,/^```$/p' "$bundle/README.md" | sed '1d;$d' >"$ORRELIN_SCRATCH/example.json"
valid_json "$ORRELIN_SCRATCH/example.json" || fail "the README's example is not JSON"
grep -q '^# Drive summary: DJ Crates SSD$' "$bundle/SUMMARY.md" || fail "summary title"
grep -q '^## Naming problems$' "$bundle/SUMMARY.md" || fail "summary sections"
grep -q '^<catalog name="DJ Crates SSD" exported="' "$bundle/catalog.xml" || fail "catalog.xml start"
[ "$(tail -2 "$bundle/catalog.xml")" = $'  </items>\n</catalog>' ] || fail "catalog.xml end"

# A second export never writes over the first.
out2=$("$cli" --db "$db" export claude "$id" -o "$ORRELIN_SCRATCH/out") || fail "second export failed"
[ "$(dirname "$(head -1 <<<"$out2")")" != "$bundle" ] || fail "the second export went into the first's folder"

# Usage errors and failures.
"$cli" --db "$db" export claude "DJ Crates SSD" >/dev/null 2>&1
[ $? -eq 2 ] || fail "export claude without -o should be a usage error"
"$cli" --db "$db" export claude "No Such Drive" -o "$ORRELIN_SCRATCH/out" >/dev/null 2>&1
[ $? -eq 1 ] || fail "export claude of an unknown cartridge should fail"
"$cli" --db "$db" sample frobnicate >/dev/null 2>&1
[ $? -eq 2 ] || fail "an unknown sample subcommand should be a usage error"

# Removal: the sample cartridges and their groups go, the real cartridge stays.
out=$("$cli" --db "$db" sample remove) || fail "sample remove failed"
[ "$out" = "Sample data removed" ] || fail "remove said: $out"
[ "$(sql 'SELECT name FROM catalogs')" = "Real Drive" ] || fail "left: $(sql 'SELECT name FROM catalogs')"
[ "$(sql 'SELECT COUNT(*) FROM groups')" = 0 ] || fail "sample groups left behind"
[ "$(sql "SELECT COUNT(*) FROM files WHERE catalog_id NOT IN (SELECT id FROM catalogs)")" = 0 ] || fail "orphan rows"
out=$("$cli" --db "$db" sample remove) || fail "second remove failed"
[ "$out" = "There is no sample data to remove" ] || fail "second remove said: $out"
exit 0
