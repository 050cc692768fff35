// The generated inventory site in a real browser: two real drives scanned by the tool, exported, and
// opened from file://. Routes, filters, sorting, gallery, lightbox, duplicates, statistics, and names
// with markup in them.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { fileUrl, goHash, launch, newPage, refiltered, shot, texts, workspace, writeTree } from "./support.mjs";

const XSS = "<img src=x onerror=alert(1)>";
const ws = workspace("site");
const site = path.join(ws.dir, "site");
let browser, page;
const problems = [];
let studio, archive;  // catalog ids

before(async () => {
  const a = path.join(ws.dir, "studio"), b = path.join(ws.dir, "archive");
  writeTree(a, {
    "Photos/2024/sunset.jpg": { image: "640x480", mtime: "2024-07-01" },
    "Photos/2024/portrait.png": { image: "300x500", fill: "gradient:red-blue", mtime: "2024-07-02" },
    "Photos/night.jpg": { image: "800x600", fill: "xc:navy", mtime: "2023-01-05" },
    "Photos/copy.txt": "the same words\n",
    "Videos/clip.mp4": { run: ["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=10",
      "-t", "2", "-pix_fmt", "yuv420p"] },
    "Music/long.mp3": { run: ["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "sine=frequency=440:duration=65",
      "-metadata", "artist=Neon Band", "-b:a", "32k"] },
    "Docs/copy.txt": "the same words\n",
    "Docs/old.txt": { size: 10, mtime: "2015-06-15" },
    "Docs/Sizes/a-one-k.bin": { size: 1000 },
    "Docs/Sizes/b-nine99.bin": { size: 999 },
    "Docs/Sizes/c-twelve.bin": { size: 12_345_678 },
    "Docs/Sizes/d-below.bin": { size: 1_499_999 },
    "Docs/Sizes/e-at.bin": { size: 1_500_000 },
    "shared.dat": { size: 5000 },
    [XSS]: "markup in a name\n",
    ".secret/inner.txt": "under a hidden folder\n",
  });
  writeTree(b, {
    "SHARED.DAT": { size: 5000 },
    "backup/notes.txt": "notes\n",
    "backup/clip-copy.mp4": { run: ["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=10",
      "-t", "3", "-pix_fmt", "yuv420p"] },
    "backup/far-future.png": { image: "40x30" },
  });
  // Hidden entries are cataloged but left out of the site: a hidden folder's children stay, cut off.
  studio = scan(a, "Studio <b>A</b>", "--hidden");
  archive = scan(b, "Archive", "--no-thumbnails");
  // A file system such as tmpfs keeps any 64-bit time; one past what a browser's Date can hold (about
  // year 275,760) reaches the catalog as it is.
  const db = path.join(ws.dir, "data", fs.readdirSync(path.join(ws.dir, "data"))[0], "Catalogs.sqlite");
  execFileSync("sqlite3", [db, "UPDATE files SET modified=1e14 WHERE name='far-future.png'"]);
  ws.cli("export", "web", String(studio), String(archive), "-o", site, "--title", "Drives & <Things>");
  browser = await launch();
  page = await newPage(browser, problems);
});

after(async () => {
  await browser?.close();
});

// Scans a tree into a new catalog and returns the catalog's id.
function scan(root, name, ...options) {
  const out = ws.cli("scan", root, "--name", name, ...options);
  const id = /\(id (\d+)\)/.exec(out);
  assert.ok(id, out);
  return Number(id[1]);
}

// Loads a page afresh (a plain goto to the same address and hash would keep the old page's state).
async function open(file, hash = "") {
  await page.goto("about:blank");
  await page.goto(fileUrl(path.join(site, file), hash));
}
const tableNames = () => texts(page, ".list tbody .n");

test("the index shows the drives and routes its tabs by hash", async () => {
  await open("index.html");
  assert.equal(await page.textContent(".hero h1"), "Drives & <Things>");
  assert.equal(await page.textContent(".hero p"), "2 cataloged drives — browse them even when they are unplugged.");
  assert.deepEqual(await texts(page, ".stat span"), ["Drives", "Files", "Folders", "Cataloged"]);
  assert.deepEqual(await texts(page, ".cart h3"), ["Studio <b>A</b>", "Archive"]);
  assert.equal(await page.$$eval(".cart h3 b", (x) => x.length), 0);
  assert.equal(await page.getAttribute(".cart", "href"), `catalog-${studio}.html`);
  assert.deepEqual(await texts(page, ".tabs a.on"), ["Drives"]);
  await shot(page, "index.png");

  const tabs = { search: "Search everything", gallery: "Gallery", audio: "Audio", documents: "Documents",
    dupes: "Duplicates across drives", stats: "Statistics" };
  for (const [hash, label] of Object.entries(tabs)) {
    await goHash(page, "#" + hash);
    assert.deepEqual(await texts(page, ".tabs a.on"), [label], hash);
  }
  await goHash(page, "#no-such-tab");
  assert.deepEqual(await texts(page, ".tabs a.on"), []);
  assert.equal(await page.$$eval(".cart", (x) => x.length), 2);

  await goHash(page, "#search");
  assert.equal(await page.evaluate(() => document.activeElement.className), "q");
  const files = await page.evaluate(() => ORLN.cats.reduce((n, c) => n + c.items.length, 0));
  assert.equal(await page.textContent(".results"), `Type a name or set a filter to search all ${files} items.`);
});

test("typing fast runs one filter, after the pause", async () => {
  await open("index.html", "#search");
  const run = await page.evaluate(async () => {
    const out = document.querySelector(".results"), q = document.querySelector(".filters .q");
    let renders = 0, at = 0;
    new MutationObserver(() => { renders++; at = performance.now(); }).observe(out, { childList: true });
    let typed = "", last = 0, longestGap = 0;
    for (const ch of "sunset") {
      if (typed) await new Promise((r) => setTimeout(r, 15));
      const now = performance.now();
      if (typed) longestGap = Math.max(longestGap, now - last);
      typed += ch;
      q.value = typed;
      q.dispatchEvent(new Event("input", { bubbles: true }));
      last = performance.now();
    }
    // The filter runs once the pause is over; then a little longer for any run that should not come.
    const start = performance.now();
    while (renders === 0 && performance.now() - start < 5000) await new Promise((r) => setTimeout(r, 20));
    await new Promise((r) => setTimeout(r, 300));
    return { renders, wait: at - last, longestGap };
  });
  // Keys 15 ms apart give one filter run. A machine so loaded that a 15 ms wait took longer than the
  // pause has really paused between keys, and then only the count of runs cannot be told in advance.
  if (run.longestGap < 100) assert.equal(run.renders, 1);
  else assert.ok(run.renders >= 1, `longest gap between keys ${run.longestGap} ms`);
  assert.ok(run.wait >= 130, `filtered ${run.wait} ms after the last key`);
  assert.equal(await page.textContent(".results .count"), "1 match");
  assert.deepEqual(await tableNames(), ["sunset.jpg"]);
  assert.deepEqual(await texts(page, ".list tbody small"), ["Studio <b>A</b> — Photos/2024/sunset.jpg"]);

  // The other fields: a kind, a minimum size in MB (decimal), a date.
  await refiltered(page, async () => {
    await page.fill(".filters .q", "");
    await page.selectOption(".filters select", "Audio");
  });
  assert.deepEqual(await tableNames(), ["long.mp3"]);
  await refiltered(page, async () => {
    await page.selectOption(".filters select", "");
    await page.fill(".filters .min", "1.5");
  });
  // Folders weigh what they hold.
  assert.deepEqual((await tableNames()).sort(), ["Docs", "Sizes", "c-twelve.bin", "e-at.bin"]);
  await refiltered(page, async () => {
    await page.fill(".filters .min", "");
    await page.fill(".filters .q", "old");
    await page.fill(".filters .after", "2015-06-16");
  });
  assert.equal(await page.textContent("tr.more"), "Nothing matches.");
  await refiltered(page, () => page.fill(".filters .after", "2015-06-15"));
  assert.deepEqual(await tableNames(), ["old.txt"]);
});

test("a file under a left-out hidden folder is found by search, with the path it still has", async () => {
  await open(`catalog-${studio}.html`);
  assert.ok(!(await texts(page, ".tree .node")).some((t) => t.includes("secret")));
  await refiltered(page, () => page.fill(".filters .q", "inner"));
  assert.deepEqual(await tableNames(), ["inner.txt"]);
  assert.deepEqual(await texts(page, ".list tbody small"), ["inner.txt"]);
});

test("markup in names shows as text and runs nothing", async () => {
  await open("index.html", "#search");
  await refiltered(page, () => page.fill(".filters .q", "onerror"));
  assert.deepEqual(await tableNames(), [XSS]);
  assert.equal(await page.$$eval('img[src="x"]', (x) => x.length), 0);
  await open(`catalog-${studio}.html`);
  assert.equal(await page.textContent(".hero h1"), "Studio <b>A</b>");
  assert.ok((await tableNames()).includes(XSS));
  await page.waitForTimeout(100);
  assert.deepEqual(problems, []);
});

test("the catalog page browses folders through the tree and the breadcrumbs", async () => {
  await open(`catalog-${studio}.html`);
  assert.deepEqual(await texts(page, ".tabs a.on"), ["Browse folders"]);
  assert.equal(await page.getAttribute("a.back", "href"), "index.html");
  // Folders first, then files, each by name.
  assert.deepEqual((await tableNames()).slice(0, 4), ["Docs", "Music", "Photos", "Videos"]);
  assert.equal(await page.textContent(".tree .node.sel"), "●Studio <b>A</b>");
  await shot(page, "catalog.png");

  await page.click(".list tbody a.n:text-is('Photos')");
  await page.waitForFunction(() => location.hash.startsWith("#browse/") && location.hash !== "#browse/0");
  await page.waitForSelector(".crumbs a >> nth=1");
  assert.equal(await page.textContent(".crumbs"), "Studio <b>A</b> / Photos");
  assert.deepEqual(await tableNames(), ["2024", "copy.txt", "night.jpg"]);
  await page.click(".list tbody a.n:text-is('2024')");
  await page.waitForFunction(() => document.querySelector(".crumbs").textContent.endsWith("/ 2024"));
  // The tree opens only the current folder's chain and marks the current folder.
  assert.equal(await page.textContent(".tree .node.sel"), "▣ 2024");
  assert.deepEqual(await texts(page, ".tree .tw"), ["●", "▶", "", "▼", "", ""]);
  assert.deepEqual(await texts(page, ".list tbody small"), ["300 × 500", "640 × 480"]);
  await page.click(".crumbs a >> nth=0");
  await page.waitForFunction(() => location.hash === "#browse/0");

  await goHash(page, "#browse/999999");
  assert.equal(await page.textContent(".tree .node.sel"), "●Studio <b>A</b>");
  assert.deepEqual((await tableNames()).slice(0, 1), ["Docs"]);
  await goHash(page, "#browse/0");
  await refiltered(page, () => page.fill(".filters .q", "copy"));
  assert.equal(await page.textContent(".results .count"), "2 matches on this drive");
  assert.deepEqual(await texts(page, ".list tbody small"), ["Docs/copy.txt", "Photos/copy.txt"]);
});

test("sizes read as on a drive label and headings sort every row", async () => {
  await open(`catalog-${studio}.html`);
  await page.click(".list tbody a.n:text-is('Docs')");
  await page.click(".list tbody a.n:text-is('Sizes')");
  await page.waitForFunction(() => document.querySelector(".crumbs").textContent.endsWith("/ Sizes"));
  const sizes = () => texts(page, ".list tbody td.num:nth-child(3)");
  assert.deepEqual(await sizes(), ["1.0 KB", "999 B", "12 MB", "1.5 MB", "1.5 MB"]);
  await page.click(".list th:text-is('Size')");
  assert.deepEqual(await tableNames(), ["b-nine99.bin", "a-one-k.bin", "d-below.bin", "e-at.bin", "c-twelve.bin"]);
  await page.click(".list th:text-is('Size')");
  assert.deepEqual(await tableNames(), ["c-twelve.bin", "e-at.bin", "d-below.bin", "a-one-k.bin", "b-nine99.bin"]);
  assert.equal(await page.getAttribute(".list th:text-is('Size')", "aria-sort"), "descending");
  await page.click(".list th:text-is('Name')");
  assert.deepEqual(await tableNames(), ["a-one-k.bin", "b-nine99.bin", "c-twelve.bin", "d-below.bin", "e-at.bin"]);
  await page.click(".list th:text-is('Name')");
  assert.equal((await tableNames())[0], "e-at.bin");

  await goHash(page, "#audio");
  assert.deepEqual(await texts(page, ".list th"), ["Name", "Artist", "Length", "Size", "Modified"]);
  assert.deepEqual(await texts(page, ".list tbody td.tx"), ["Neon Band"]);
  assert.deepEqual(await texts(page, ".list tbody td.num:nth-child(3)"), ["1:05"]);
  assert.equal(await page.textContent(".results .count"), "1 item");
});

test("the gallery opens the lightbox, whose keys work only while it is open", async () => {
  await open(`catalog-${studio}.html`, "#gallery");
  assert.equal(await page.textContent(".results .count"), "4 photos and videos");
  const names = await texts(page, ".tile .tn");
  assert.equal(names.length, 4);
  assert.deepEqual(await texts(page, ".tile .badge"), ["▶ 0:02"]);
  assert.equal(await page.textContent(".tile:has(.badge) .tn"), "clip.mp4");
  // Thumbnails were copied into the site and load from file://.
  await page.waitForFunction(() => [...document.querySelectorAll(".tile img")].every((i) => i.complete));
  const widths = await page.$$eval(".tile img", (imgs) => imgs.map((i) => i.naturalWidth));
  assert.equal(widths.length, 4);
  assert.ok(widths.every((w) => w > 0), `thumbnails: ${widths}`);

  await page.keyboard.press("ArrowRight");
  assert.equal(await page.$$eval(".lb.on", (x) => x.length), 0);
  await page.click(".tile >> nth=0");
  const shown = () => page.textContent(".lb.on .lbinfo b");
  assert.equal(await shown(), names[0]);
  assert.equal(await page.isDisabled(".lb button:text-is('‹ Prev')"), true);
  await page.keyboard.press("ArrowRight");
  assert.equal(await shown(), names[1]);
  await page.keyboard.press("ArrowLeft");
  assert.equal(await shown(), names[0]);
  for (let i = 0; i < 5; i++) await page.keyboard.press("ArrowRight");
  assert.equal(await shown(), names[3]);
  assert.equal(await page.isDisabled(".lb button:text-is('Next ›')"), true);
  assert.match(await page.textContent(".lb .where"), /^Studio <b>A<\/b> — /);
  await page.keyboard.press("Escape");
  assert.equal(await page.$$eval(".lb.on", (x) => x.length), 0);
  await page.keyboard.press("ArrowLeft");
  await page.click(".tile >> nth=2");
  assert.equal(await shown(), names[2]);
  await page.mouse.click(5, 5);  // the backdrop
  assert.equal(await page.$$eval(".lb.on", (x) => x.length), 0);
  await page.click(".tile >> nth=1");
  await page.click(".lb button:text-is('Close')");
  assert.equal(await page.$$eval(".lb.on", (x) => x.length), 0);
  // A route change (the browser's Back, a link) drops the open picture with its view.
  await page.click(".tile >> nth=1");
  await goHash(page, "#stats");
  assert.equal(await page.$$eval(".lb.on", (x) => x.length), 0);
  await page.goBack();
  await page.waitForSelector(".tile");

  await refiltered(page, () => page.fill(".filters .q", "night"));
  assert.equal(await page.$$eval(".tile", (x) => x.length), 1);
  assert.equal(await page.textContent(".results .count"), "1 photo and video");

  // A name in a table opens the lightbox on that table's pictures and videos only.
  await open(`catalog-${studio}.html`, "#browse/0");
  await page.click(".list tbody a.n:text-is('Photos')");
  await page.waitForSelector(".list tbody button.n");
  await page.click(".list tbody button.n:text-is('night.jpg')");
  assert.equal(await shown(), "night.jpg");
  assert.equal(await page.isDisabled(".lb button:text-is('‹ Prev')"), true);
  assert.equal(await page.isDisabled(".lb button:text-is('Next ›')"), true);
  await page.keyboard.press("Escape");
});

test("the index gallery shows every drive's pictures; one without a thumbnail shows its glyph", async () => {
  await open("index.html", "#gallery");
  assert.equal(await page.textContent(".results .count"), "6 photos and videos");
  const tile = page.locator(".tile", { hasText: "clip-copy.mp4" });
  assert.equal(await tile.locator(".glyph").textContent(), "▶");
  assert.equal(await tile.locator(".badge").textContent(), "▶ 0:03");
  await tile.click();
  assert.equal(await page.textContent(".lb.on .lbpic .glyph"), "▶");
  assert.equal(await page.textContent(".lb.on .where"), "Archive — backup/clip-copy.mp4");
  assert.match(await page.textContent(".lb.on .lbinfo div"), /^Video · .+ · 160×120 · 0:03$/);
});

test("duplicates across drives, within a drive, and statistics", async () => {
  await open("index.html", "#dupes");
  assert.equal(await page.textContent(".count"), "1 duplicate set (same name and size) · 5.0 KB reclaimable");
  assert.deepEqual((await texts(page, ".dup small")).sort(), ["Archive — SHARED.DAT", "Studio <b>A</b> — shared.dat"]);
  await open(`catalog-${studio}.html`, "#dupes");
  assert.equal(await page.textContent(".count"), "1 duplicate set (same name and size) · 15 B reclaimable");
  assert.equal(await page.textContent(".dup"), "copy.txt — 2 copies × 15 BDocs/copy.txtPhotos/copy.txt");

  await goHash(page, "#stats");
  const kinds = await texts(page, ".two > .bars:first-child .kl");
  assert.equal(kinds[0].startsWith("Other ("), true, kinds.join());
  assert.ok(kinds.includes("Image (3)"), kinds.join());
  const years = [...new Set(["2015", "2023", "2024", String(new Date().getFullYear())])].sort();
  assert.deepEqual(await texts(page, ".two > .bars:last-child .kl"), years);
  assert.equal((await tableNames())[0], "c-twelve.bin");
});

test("a modified time too far off for the browser reads as absent and stops nothing", async () => {
  await open(`catalog-${archive}.html`);
  await page.click(".list tbody a.n:text-is('backup')");
  await page.waitForFunction(() => document.querySelector(".crumbs").textContent.endsWith("/ backup"));
  const row = page.locator(".list tbody tr", { hasText: "far-future.png" });
  assert.equal(await row.locator("td.num >> nth=1").textContent(), "—");
  // The lightbox's line keeps its date place, as for any file without a time.
  await row.locator("button.n").click();
  assert.match(await page.textContent(".lb.on .lbinfo div"), /^Image · .+ B · — · 40×30$/);
  await page.keyboard.press("Escape");
  await open("index.html", "#stats");
  const years = await texts(page, ".two > .bars:last-child .kl");
  assert.ok(years.length > 0 && years.every((y) => /^\d{4}$/.test(y)), years.join());
  assert.deepEqual(problems, []);
});

test("a catalog page without its data file says so", async () => {
  fs.rmSync(path.join(site, "data", `cat-${archive}.js`));
  await open(`catalog-${archive}.html`);
  assert.equal(await page.textContent(".missing"), "Catalog data is missing.");
  await open("index.html");
  assert.deepEqual(await texts(page, ".cart h3"), ["Studio <b>A</b>"]);
  assert.deepEqual(problems.filter((p) => !p.includes("ERR_FILE_NOT_FOUND")), []);
});
