# orrelin-cli rename on a real folder: the dry run changes nothing, --apply renames and writes an undo log,
# undo brings back the very same tree, and bad input or an offline drive is refused.
set -u
cli="$ORRELIN_CLI"
scratch="$ORRELIN_SCRATCH"
rm -rf "$scratch" && mkdir -p "$scratch"
export XDG_DATA_HOME="$scratch/data" XDG_CONFIG_HOME="$scratch/config"
db="$scratch/c.sqlite"
drive="$scratch/drive"

fail() { echo "FAIL: $*"; exit 1; }

# The catalog's rows are written straight into the database the tool made, the way a scan records them.
if command -v sqlite3 >/dev/null; then
  sql() { sqlite3 "$db" "$1"; }
elif command -v python3 >/dev/null; then
  sql() {
    python3 -c 'import sqlite3, sys
c = sqlite3.connect(sys.argv[1])
for s in sys.argv[2].split(";"):
    for row in c.execute(s) if s.strip() else []:
        print("|".join(map(str, row)))
c.commit()' "$db" "$1"
  }
else
  echo "SKIP: neither sqlite3 nor python3 is installed to write the test catalog's rows"
  exit 0
fi
quote() { printf "'%s'" "${1//\'/\'\'}"; }

# Catalogs the drive's tree as cartridge $1 with root $2 (the drive's folder unless given).
catalog() {
  local name="$1" root="${2:-$drive}" id
  sql "INSERT INTO catalogs(name, root_path, is_folder, created_at) VALUES($(quote "$name"), $(quote "$root"), 1, 0)"
  id=$(sql "SELECT max(id) FROM catalogs")
  (cd "$drive" && find . -mindepth 1 | LC_ALL=C sort) | while IFS= read -r entry; do
    local rel="${entry#./}" dir=0 kind="'Other'"
    [ -d "$drive/$rel" ] && dir=1 kind="'Folder'"
    sql "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, kind) VALUES($id,
         COALESCE((SELECT id FROM files WHERE catalog_id=$id AND path=$(quote "$(dirname "$rel")")), 0),
         $(quote "$rel"), $(quote "$(basename "$rel")"), $dir, $kind)"
  done
}

# Every path below the drive, then every file's contents: equal snapshots mean an identical tree.
snapshot() { (cd "$drive" && find . | LC_ALL=C sort && find . -type f | LC_ALL=C sort | while IFS= read -r f; do echo "$f:$(cat "$f")"; done); }

mkdir -p "$drive/Trip photos/day two"
for f in "Trip photos/IMG_0010.JPG" "Trip photos/IMG_0002.JPG" "Trip photos/img_0001.jpg" \
         "Trip photos/day two/IMG_0003.JPG" "Trip photos/notes.txt" "top.txt"; do
  echo "contents of $f" >"$drive/$f"
done
"$cli" --db "$db" info >/dev/null || fail "could not make the database"
catalog "Holiday"
before=$(snapshot)

# Usage errors exit 2 with a pointer to the help; a cartridge that does not exist exits 1.
for bad in "--case shouty" "--number 1:9" "--number x" "--replace y" "--regex" "stray"; do
  # shellcheck disable=SC2086
  out=$("$cli" --db "$db" rename --catalog Holiday $bad 2>&1); status=$?
  [ $status -eq 2 ] || fail "rename $bad exited $status: $out"
  grep -q "orrelin-cli rename --help" <<<"$out" || fail "no pointer to help for $bad: $out"
done
out=$("$cli" --db "$db" rename --find a 2>&1); [ $? -eq 2 ] || fail "rename without --catalog: $out"
out=$("$cli" --db "$db" rename --catalog Nowhere --find a 2>&1); [ $? -eq 1 ] || fail "unknown cartridge: $out"
grep -q "no cartridge is called 'Nowhere'" <<<"$out" || fail "unknown cartridge message: $out"
"$cli" rename --help | grep -q "^usage: orrelin-cli \[--db PATH\] rename" || fail "no usage text"

# The dry run: numbered in file-manager order (0001, 0002, 0010), the subfolder left out, nothing changed.
out=$("$cli" --db "$db" rename --catalog holiday --folder "/Trip photos/" --filter img --find img_ \
      --replace "Beach " --number 1:2 2>&1) || fail "preview failed: $out"
grep -q "Trip photos/img_0001.jpg  *Trip photos/Beach 0001 01.jpg  *Ready" <<<"$out" || fail "preview row 1: $out"
grep -q "Trip photos/IMG_0010.JPG  *Trip photos/Beach 0010 03.JPG  *Ready" <<<"$out" || fail "preview row 3: $out"
grep -q "3 renames: 3 ready, 0 blocked" <<<"$out" || fail "preview summary: $out"
grep -q "day two" <<<"$out" && fail "the subfolder was included: $out"
[ "$(snapshot)" = "$before" ] || fail "the dry run changed the drive"

# Apply: the same renames happen, and the undo log is written in the data folder.
out=$("$cli" --db "$db" rename --catalog Holiday --folder "Trip photos" --filter img --find img_ \
      --replace "Beach " --number 1:2 --apply 2>&1) || fail "apply failed: $out"
grep -q "Renamed 3 items — undo any time from Organization Plan" <<<"$out" || fail "apply message: $out"
log=$(sed -n 's/^Undo log: //p' <<<"$out")
[ -n "$log" ] || fail "no undo log id: $out"
[ -f "$XDG_DATA_HOME/TVRL Orrelin/Undo Logs/$log.json" ] || fail "no undo log file for $log"
[ "$(cat "$drive/Trip photos/Beach 0010 03.JPG")" = "contents of Trip photos/IMG_0010.JPG" ] || fail "contents moved wrongly"
[ -e "$drive/Trip photos/IMG_0010.JPG" ] && fail "the old name is still there"
[ -e "$drive/Trip photos/day two/IMG_0003.JPG" ] || fail "the subfolder was touched"

# The batch is listed with the other undo logs, and undo puts everything back exactly, once.
out=$("$cli" --db "$db" undo list 2>&1) || fail "undo list failed: $out"
grep -q "Batch rename in Holiday" <<<"$out" || fail "the batch is not listed: $out"
out=$("$cli" --db "$db" undo "$log" --yes 2>&1) || fail "undo failed: $out"
[ "$(snapshot)" = "$before" ] || fail "undo did not restore the tree: $(snapshot)"
"$cli" --db "$db" undo "$log" --yes >/dev/null 2>&1 && fail "a batch was undone twice"

# Renames that would collide are blocked, and with nothing ready --apply changes nothing and exits 1.
sql "DELETE FROM files; DELETE FROM catalogs"
catalog "Holiday"
before=$(snapshot)
out=$("$cli" --db "$db" rename --catalog Holiday --subfolders --find '^.*$' --regex --replace same 2>&1) \
  || fail "collision preview failed: $out"
grep -q "Destination already exists — nothing is overwritten" <<<"$out" || fail "no collision: $out"
out=$("$cli" --db "$db" rename --catalog Holiday --find top --replace notes --folder "" 2>&1)
grep -q "0 ready" <<<"$out" && fail "a rename onto another folder's name was blocked: $out"
out=$("$cli" --db "$db" rename --catalog Holiday --find top.txt --replace "Trip photos" --no-keep-ext \
      --apply 2>&1); status=$?
[ $status -eq 1 ] || fail "applying only blocked renames exited $status: $out"
grep -q "no rename is ready; nothing was changed" <<<"$out" || fail "blocked apply message: $out"
[ "$(snapshot)" = "$before" ] || fail "a blocked rename changed the drive"

# A drive that is not connected is refused in the program's own words.
catalog "Unplugged" "$scratch/not-mounted"
out=$("$cli" --db "$db" rename --catalog Unplugged --prefix x 2>&1); status=$?
[ $status -eq 1 ] || fail "offline drive exited $status: $out"
grep -q "Drive Offline: Drive offline — insert “Unplugged”" <<<"$out" || fail "offline message: $out"
exit 0
