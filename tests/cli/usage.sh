# Usage errors exit with 2 and point at the command's help; --help exits with 0.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
db="$ORRELIN_SCRATCH/c.sqlite"

out=$("$cli" --db "$db" list --bogus 2>&1); status=$?
[ $status -eq 2 ] || { echo "list --bogus exited $status"; exit 1; }
grep -q "unknown option '--bogus'" <<<"$out" || { echo "no message: $out"; exit 1; }
grep -q "orrelin-cli list --help" <<<"$out" || { echo "no pointer to help: $out"; exit 1; }
"$cli" --db "$db" list --help | grep -q "^usage: orrelin-cli" || { echo "no usage"; exit 1; }
exit 0
