# A hand-written plan through the command-line tool on a real folder: dry run, refusal without a terminal,
# apply, the undo list, undo, and the refusal of a second undo. Nothing outside the folder changes.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_DATA_HOME="$ORRELIN_SCRATCH/data" XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config"
db="$ORRELIN_SCRATCH/c.sqlite"
drive="$ORRELIN_SCRATCH/drive"
fail() { echo "FAIL: $*"; exit 1; }

mkdir -p "$drive/Music" "$ORRELIN_SCRATCH/outside"
printf 'tone' > "$drive/tone.wav"
printf 'png' > "$drive/graphic.png"
printf 'keep' > "$drive/notes.md"
printf 'secret' > "$ORRELIN_SCRATCH/outside/secret.txt"
ln -s "$ORRELIN_SCRATCH/outside" "$drive/escape"
listing() { (cd "$ORRELIN_SCRATCH" && find drive outside -printf '%p %y %s\n' | sort); }
before=$(listing)

# The catalog row, as a scan would leave it.
"$cli" --db "$db" info >/dev/null || fail "info"
sqlite3 "$db" "INSERT INTO catalogs(name, root_path, is_folder, created_at) VALUES ('Test Drive', '$drive', 1, 0)" \
  || fail "insert"

cat > "$ORRELIN_SCRATCH/plan.json" <<'JSON'
{"format": "tvrl-organization-plan", "version": 1, "description": "Sort the media",
 "newFolders": ["Sorted/Audio", "../Outside"],
 "moves": [{"from": "tone.wav", "to": "Sorted/Audio/tone.wav"},
           {"from": "graphic.png", "to": "Sorted/Images/graphic.png"},
           {"from": "notes.md", "to": "escape/notes.md"},
           {"from": "escape/secret.txt", "to": "secret.txt"},
           {"from": "missing.txt", "to": "found.txt"}]}
JSON

out=$("$cli" --db "$db" plan check "$ORRELIN_SCRATCH/plan.json" --catalog "test drive" 2>&1) || fail "check: $out"
grep -q "ok  New Folder  *Sorted/Audio .*Will be created" <<<"$out" || fail "folder line: $out"
grep -q -- "--  New Folder  *\.\./Outside .*Outside the drive — blocked" <<<"$out" || fail "blocked folder: $out"
grep -q "ok  Move .*graphic.png .*Ready — parent folder will be created" <<<"$out" || fail "parent line: $out"
grep -q -- "-- .*notes.md .*Path outside the drive — blocked" <<<"$out" || fail "escape line: $out"
grep -q -- "-- .*missing.txt .*Source not found" <<<"$out" || fail "missing line: $out"
grep -q "Dry run: 7 steps ready, 4 blocked" <<<"$out" || fail "summary: $out"
json=$("$cli" --db "$db" plan check "$ORRELIN_SCRATCH/plan.json" --catalog 1 --json) || fail "check --json"
[ "$(grep -c '"ok": true' <<<"$json")" = 3 ] || fail "json ok count: $json"
[ "$(listing)" = "$before" ] || fail "the dry run changed files"

# Usage errors and failures.
"$cli" --db "$db" plan check "$ORRELIN_SCRATCH/plan.json" >/dev/null 2>&1; [ $? -eq 2 ] || fail "no --catalog should exit 2"
"$cli" --db "$db" plan frobnicate >/dev/null 2>&1; [ $? -eq 2 ] || fail "bad subcommand should exit 2"
"$cli" --db "$db" plan check "$ORRELIN_SCRATCH/none.json" --catalog 1 >/dev/null 2>&1; [ $? -eq 1 ] || fail "missing plan should exit 1"
printf '{"moves": [{"from": "a"}]}' > "$ORRELIN_SCRATCH/bad.json"
out=$("$cli" --db "$db" plan check "$ORRELIN_SCRATCH/bad.json" --catalog 1 2>&1); [ $? -eq 1 ] || fail "bad plan exit"
grep -q "Plan Not Loaded: This is not a valid organization plan." <<<"$out" || fail "bad plan text: $out"
out=$("$cli" --db "$db" plan check "$ORRELIN_SCRATCH/plan.json" --catalog Nope 2>&1); [ $? -eq 1 ] || fail "unknown catalog exit"
"$cli" --db "$db" plan --help | grep -q "^usage: orrelin-cli" || fail "plan --help"
"$cli" --db "$db" undo --help | grep -q "^usage: orrelin-cli" || fail "undo --help"

# Without a terminal and without --yes, nothing is applied.
out=$("$cli" --db "$db" plan apply "$ORRELIN_SCRATCH/plan.json" --catalog 1 </dev/null 2>&1); [ $? -eq 2 ] || fail "apply without --yes: $out"
grep -q "pass --yes" <<<"$out" || fail "refusal text: $out"
[ "$(listing)" = "$before" ] || fail "a refused apply changed files"

out=$("$cli" --db "$db" plan apply "$ORRELIN_SCRATCH/plan.json" --catalog 1 --yes 2>&1) || fail "apply: $out"
grep -q "Plan applied: 2 moved, 3 folders created" <<<"$out" || fail "apply summary: $out"
[ "$(cat "$drive/Sorted/Audio/tone.wav")" = tone ] || fail "tone.wav not moved"
[ "$(cat "$drive/Sorted/Images/graphic.png")" = png ] || fail "graphic.png not moved"
[ "$(cat "$ORRELIN_SCRATCH/outside/secret.txt")" = secret ] || fail "outside file touched"

"$cli" undo list --json | grep -q '"title": "Sort the media"' || fail "undo list --json"
id=$("$cli" undo list | awk '/Sort the media/ {print $1}')
[ ${#id} -eq 36 ] || fail "no log id in: $("$cli" undo list)"
"$cli" undo "$id" </dev/null >/dev/null 2>&1; [ $? -eq 2 ] || fail "undo without --yes should exit 2"
out=$("$cli" undo "${id:0:8}" --yes 2>&1) || fail "undo: $out"
grep -q "Undone: 2 items restored" <<<"$out" || fail "undo text: $out"
[ "$(listing)" = "$before" ] || fail "undo did not restore the tree: $(diff <(echo "$before") <(listing))"
out=$("$cli" undo "$id" --yes 2>&1); [ $? -eq 1 ] || fail "second undo should fail"
grep -q "was undone already" <<<"$out" || fail "second undo text: $out"
"$cli" undo list | grep -q "undone" || fail "undone not shown"
exit 0
