# export web end to end: the site's files, escaping, options, thumbnails and the folder rules.
set -u
cli="$ORRELIN_CLI"
rm -rf "$ORRELIN_SCRATCH" && mkdir -p "$ORRELIN_SCRATCH"
export XDG_CONFIG_HOME="$ORRELIN_SCRATCH/config" XDG_DATA_HOME="$ORRELIN_SCRATCH/data"
db="$ORRELIN_SCRATCH/c.sqlite"
tree="$ORRELIN_SCRATCH/tree"
site="$ORRELIN_SCRATCH/site"
fail() { echo "$*"; exit 1; }

mkdir -p "$tree/Photos" "$tree/other"
printf hi >"$tree/<img src=x onerror=alert(1)>"
printf h >"$tree/.hidden-note"
printf o >"$tree/other/one.txt"
have_images=0
if command -v convert >/dev/null && convert -size 200x100 xc:red "$tree/Photos/red.jpg" 2>/dev/null; then
  have_images=1
fi
"$cli" --db "$db" scan "$tree" --name 'Main "Drive"' --hidden >/dev/null || fail "scan failed"
"$cli" --db "$db" scan "$tree/other" --name Other --no-thumbnails >/dev/null || fail "second scan failed"

out=$("$cli" --db "$db" export web 'Main "Drive"' 2 -o "$site" --title 'Tom & <Jerry>') || fail "export failed: $out"
[ "$out" = "$site/index.html" ] || fail "printed '$out', not the index's path"
for f in index.html catalog-1.html catalog-2.html assets/style.css assets/app.js data/cat-1.js data/cat-2.js; do
  [ -f "$site/$f" ] || fail "missing $f"
done
grep -Fq '<title>Tom &amp; &lt;Jerry&gt;</title>' "$site/index.html" || fail "title not escaped"
grep -Fq 'data-title="Tom &amp; &lt;Jerry&gt;"' "$site/index.html" || fail "data-title not escaped"
grep -Fq '<title>Main &quot;Drive&quot;</title>' "$site/catalog-1.html" || fail "catalog title not escaped"
[ "$(grep -c '<script src="data/cat-' "$site/index.html")" = 2 ] || fail "index does not load both data files"
head -c 50 "$site/data/cat-1.js" | grep -Fxq 'window.ORLN=window.ORLN||{cats:[]};ORLN.cats.push(' || fail "data prefix"
tail -c 3 "$site/data/cat-1.js" | grep -Fxq ');' || fail "data file does not end with ');' and a line feed"
grep -Fq '"\u003cimg src=x onerror=alert(1)\u003e"' "$site/data/cat-1.js" || fail "markup in a name not escaped"
grep -q '<img' "$site/data/cat-1.js" && fail "raw markup in the data file"
grep -q 'hidden-note' "$site/data/cat-1.js" && fail "a hidden file was listed without --hidden"
if [ $have_images = 1 ]; then
  id=$(sqlite3 "$db" "SELECT id FROM files WHERE name='red.jpg'" 2>/dev/null)
  if [ -n "$id" ]; then
    cmp -s "$site/thumbs/1/$id.jpg" "$ORRELIN_SCRATCH/Thumbnails/1/$id.jpg" || fail "thumbnail not copied"
    grep -Eq "\[$id,[0-9]+,\"red.jpg\",0,[0-9]+,\"Image\",[0-9]+,1," "$site/data/cat-1.js" || fail "no thumbnail flag"
  fi
fi

# Options: hidden files listed, no thumbnails, into the same site again (it is one of ours).
rm -rf "$site/thumbs"
"$cli" --db "$db" export web 1 -o "$site" --hidden --no-thumbnails >/dev/null || fail "second export failed"
grep -q 'hidden-note' "$site/data/cat-1.js" || fail "--hidden did not list the hidden file"
[ -e "$site/thumbs" ] && fail "--no-thumbnails still copied thumbnails"
grep -Fq '<title>Drive Inventory</title>' "$site/index.html" || fail "default title"

# Folders that are not sites are never written into; usage errors exit with 2.
mkdir -p "$ORRELIN_SCRATCH/docs" && printf mine >"$ORRELIN_SCRATCH/docs/index.html"
out=$("$cli" --db "$db" export web 1 -o "$ORRELIN_SCRATCH/docs" 2>&1); status=$?
[ $status -eq 1 ] || fail "export into a foreign folder exited $status"
grep -q "is not empty and holds no inventory site" <<<"$out" || fail "message: $out"
[ "$(cat "$ORRELIN_SCRATCH/docs/index.html")" = mine ] && [ ! -e "$ORRELIN_SCRATCH/docs/data" ] || fail "foreign folder touched"
out=$("$cli" --db "$db" export web 1 2>&1); status=$?
[ $status -eq 2 ] || fail "export without -o exited $status"
out=$("$cli" --db "$db" export web -o "$site" 2>&1); status=$?
[ $status -eq 2 ] || fail "export without catalogs exited $status"
out=$("$cli" --db "$db" export web "No Such" -o "$site" 2>&1); status=$?
[ $status -eq 2 ] || fail "unknown catalog exited $status: $out"
"$cli" export web --help | grep -q "^usage: orrelin-cli \[--db PATH\] export web CATALOG" || fail "no usage"
"$cli" export --help | grep -q "^  web " || fail "web is not listed among the formats"
exit 0
