// How fast the inventory site's pages come up on a big drive, in headless Chromium from file://.
//
// Builds a tree of 200,000 files (200 folders of 10 subfolders of 100 files, names and sizes of a
// photo-and-media drive), catalogs it with orrelin-cli, exports the site, and then opens the catalog page
// and the index three times each, reporting medians of:
//   data   navigation start until the data file has been read and run (window.ORLN filled)
//   table  until the script has built the page and its table
//   paint  until the first frame after that (style, layout, paint)
// and on the open catalog page: a search over every record (after the 140 ms pause), and sorting its hits.
//
// Run after scripts/build, with the test packages installed (scripts/bootstrap does it):
//   nice node bench/web_page_bench.mjs
// Inputs go to $ORRELIN_BENCH_DIR/web-page (default /tmp/orrelin-bench); the catalog is kept and reused.
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

const repo = path.resolve(path.dirname(fileURLToPath(import.meta.url)), "..");
const { chromium } = await import(pathToFileURL(path.join(repo, "tests/web/node_modules/playwright-core/index.mjs")).href);
const cli = process.env.ORRELIN_CLI || path.join(repo, "build/orrelin-cli");
const dir = path.join(process.env.ORRELIN_BENCH_DIR || "/tmp/orrelin-bench", "web-page");
const FILES = Number(process.env.FILES || 200000), REPS = Number(process.env.REPS || 3);
const site = path.join(dir, `site-${FILES}`);

const KINDS = [["IMG_", ".JPG", 4e6], ["DSC", ".NEF", 25e6], ["clip ", ".mp4", 300e6], ["track ", ".mp3", 8e6],
  ["report ", ".pdf", 2e6], ["notes ", ".txt", 4e3], ["main ", ".cpp", 20e3], ["backup ", ".zip", 900e6]];

// Catalogs a generated tree once (the database is kept, the tree removed) and exports the site afresh on
// every run, so the site always carries the built tool's script and stylesheet.
function makeSite() {
  const env = { ...process.env, XDG_DATA_HOME: path.join(dir, "data"), XDG_CONFIG_HOME: path.join(dir, "config") };
  const run = (...args) => execFileSync(cli, args, { env, encoding: "utf8" });
  const marker = path.join(dir, `catalog-${FILES}`);
  if (!fs.existsSync(marker)) {
    const tree = path.join(dir, "tree");
    fs.rmSync(dir, { recursive: true, force: true });
    const perLeaf = Math.max(1, Math.round(FILES / 2000));
    let n = 0;
    console.log(`making ${FILES} files…`);
    for (let a = 0; a < 200 && n < FILES; a++) {
      for (let b = 0; b < 10 && n < FILES; b++) {
        const folder = path.join(tree, `Shoot ${String(a + 1).padStart(3, "0")}`, `Card ${b + 1}`);
        fs.mkdirSync(folder, { recursive: true });
        for (let i = 0; i < perLeaf && n < FILES; i++, n++) {
          const [pre, ext, typical] = KINDS[n % KINDS.length];
          const file = path.join(folder, `${pre}${String(n).padStart(6, "0")}${ext}`);
          fs.writeFileSync(file, "");
          fs.truncateSync(file, Math.round(typical * (0.2 + ((n * 2654435761) % 1000) / 625)));
        }
      }
    }
    const t = Date.now();
    const id = /\(id (\d+)\)/.exec(run("scan", tree, "--name", "Big Drive", "--no-thumbnails", "--no-metadata"))[1];
    console.log(`scan: ${((Date.now() - t) / 1000).toFixed(1)} s`);
    fs.rmSync(tree, { recursive: true, force: true });
    fs.writeFileSync(marker, id);
  }
  const t = Date.now();
  run("export", "web", fs.readFileSync(marker, "utf8"), "-o", site);
  console.log(`export: ${((Date.now() - t) / 1000).toFixed(1)} s`);
}

makeSite();
const catalogPage = fs.readdirSync(site).find((f) => /^catalog-\d+\.html$/.test(f));
const dataFile = fs.readdirSync(path.join(site, "data"))[0];
const dataBytes = fs.statSync(path.join(site, "data", dataFile)).size;

// Runs before the page's own scripts: notes when the data file has run and when the first table row exists.
const probe = () => {
  window.__t = {};
  const cats = [];
  cats.push = function (...x) { window.__t.data = performance.now(); return Array.prototype.push.apply(this, x); };
  window.ORLN = { cats };
  new MutationObserver((_, obs) => {
    if (document.querySelector(".list tbody tr, .cart")) {
      window.__t.table = performance.now();
      obs.disconnect();
      requestAnimationFrame(() => setTimeout(() => { window.__t.paint = performance.now(); }, 0));
    }
  }).observe(document, { childList: true, subtree: true });
};

const browser = await chromium.launch({
  executablePath: process.env.CHROMIUM || "/usr/bin/chromium",
  args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"],
});

async function load(file, hash = "") {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 } });
  const page = await context.newPage();
  await page.addInitScript(probe);
  await page.goto(pathToFileURL(path.join(site, file)).href + hash);
  await page.waitForFunction(() => window.__t.paint);
  const t = await page.evaluate(() => window.__t);
  return { context, page, t };
}

const median = (xs) => xs.slice().sort((a, b) => a - b)[Math.floor(xs.length / 2)];
const results = { catalog: [], index: [], search: [], evaluate: [] };
const dataText = fs.readFileSync(path.join(site, "data", dataFile), "utf8");
for (let r = 0; r < REPS; r++) {
  const cat = await load(catalogPage);
  results.catalog.push(cat.t);
  // A search over every record: the time from the last key to the redrawn results, less the pause.
  const s = await cat.page.evaluate(async () => {
    const q = document.querySelector(".filters .q"), out = document.querySelector(".results");
    const done = new Promise((res) => new MutationObserver(() => res(performance.now())).observe(out, { childList: true }));
    q.value = "img_1";
    const t0 = performance.now();
    q.dispatchEvent(new Event("input", { bubbles: true }));
    const t1 = await done;
    await new Promise((res) => requestAnimationFrame(() => setTimeout(res, 0)));
    const hits = document.querySelector(".results .count").textContent;
    const th = [...document.querySelectorAll(".list th")].find((x) => x.textContent === "Size");
    const t2 = performance.now();
    th.click();
    document.body.offsetHeight;
    return { filter: t1 - t0 - 140, painted: performance.now() - t0 - 140, hits, sort: performance.now() - t2 };
  });
  results.search.push(s);
  // The data file alone: compiling and running 15 MB of array literals, without the page around it.
  results.evaluate.push(await cat.page.evaluate((src) => {
    window.ORLN = { cats: [] };
    const t0 = performance.now();
    (0, eval)(src);
    return performance.now() - t0;
  }, dataText));
  await cat.context.close();
  const idx = await load("index.html");
  results.index.push(idx.t);
  await idx.context.close();
}
await browser.close();

const ms = (x) => `${Math.round(x)} ms`;
const phases = (runs) => {
  const data = median(runs.map((t) => t.data)), table = median(runs.map((t) => t.table));
  const paint = median(runs.map((t) => t.paint));
  return `data ${ms(data)}, table ${ms(table)} (script ${ms(table - data)}), paint ${ms(paint)}`;
};
console.log(`site: ${FILES} files, data file ${(dataBytes / 1e6).toFixed(1)} MB; medians of ${REPS}`);
console.log(`catalog page, top folder: ${phases(results.catalog)}`);
console.log(`data file alone, evaluated in a loaded page: ${ms(median(results.evaluate))}`);
console.log(`index page, drive cards:  ${phases(results.index)}`);
console.log(`search "img_1" (${results.search[0].hits}): filter+table ${ms(median(results.search.map((s) => s.filter)))}` +
  ` after the pause, painted ${ms(median(results.search.map((s) => s.painted)))}; ` +
  `sort hits by size ${ms(median(results.search.map((s) => s.sort)))}`);
