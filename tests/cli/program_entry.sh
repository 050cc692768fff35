# The desktop program's entry, built beside the tool: --selftest runs without a window and sets the exit
# status, --version prints the version, and without either the main window opens and stays up.
set -u
program="$(dirname "$ORRELIN_CLI")/orrelin"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config" XDG_DATA_HOME="$ORRELIN_SCRATCH/data"
fail() { echo "$*"; exit 1; }
[ -x "$program" ] || fail "no program at $program"

# No display is needed for the self-test: a window system that cannot start must not matter.
out=$(env -u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=none "$program" --version --selftest 2>&1); status=$?
[ $status -eq 0 ] || fail "self-test exited $status: $out"
grep -Eq "^[0-9]+ passed, 0 failed$" <<<"$out" || fail "no closing line: $out"
grep -q "^ok   scan$" <<<"$out" || fail "no scan check: $out"
[ -e "$XDG_DATA_HOME" ] && fail "the self-test wrote into the user's data folder"
[ -e "$XDG_CONFIG_HOME" ] && fail "the self-test wrote into the user's settings"

# Only the exact argument counts.
out=$("$program" --version --selftest=no 2>&1) || fail "--version failed: $out"
grep -Eq "^TVRL Orrelin [0-9.]+ \(build [0-9]+\)$" <<<"$out" || fail "version: $out"

# A failing check fails the process: a temporary folder that cannot be made.
printf x >"$ORRELIN_SCRATCH/not-a-folder"
out=$(TMPDIR="$ORRELIN_SCRATCH/not-a-folder" "$program" --selftest 2>&1); status=$?
[ $status -eq 1 ] || fail "failing self-test exited $status: $out"
grep -q "^FAIL temporary data folder: " <<<"$out" || fail "failure not reported: $out"
grep -Eq "^0 passed, [0-9]+ failed$" <<<"$out" || fail "no failing closing line: $out"

# The window: still running after a few seconds (timeout's 124), its data folder made, and no error from
# the screens (QML reports those with the file's address).
mkdir -m 700 "$ORRELIN_SCRATCH/runtime"
out=$(QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR="$ORRELIN_SCRATCH/runtime" timeout 8 "$program" --sample 2>&1); status=$?
[ $status -eq 124 ] || fail "the program ended by itself ($status): $out"
grep -q "qrc:/" <<<"$out" && fail "the screens reported errors: $out"
[ -f "$XDG_DATA_HOME/TVRL Orrelin/Catalogs.sqlite" ] || fail "no database made at start"
exit 0
