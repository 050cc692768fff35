// Big folders in a real browser: tables put at most 2,000 rows in the page and the gallery 1,500 tiles,
// while counts, filters and sorting still cover every row.
import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { fileUrl, goHash, launch, newPage, refiltered, texts, workspace } from "./support.mjs";

const FILES = 2345, PICTURES = 1600;
const ws = workspace("caps");
const site = path.join(ws.dir, "site");
let browser, page, bulk;
const problems = [];
const name = (i) => "f" + String(i).padStart(4, "0") + ".dat";

before(async () => {
  const root = path.join(ws.dir, "drive");
  fs.mkdirSync(path.join(root, "bulk"), { recursive: true });
  fs.mkdirSync(path.join(root, "pics"), { recursive: true });
  // Sizes rise with the name, so the largest file is past the first 2,000 in name order.
  for (let i = 0; i < FILES; i++) {
    fs.writeFileSync(path.join(root, "bulk", name(i)), "");
    fs.truncateSync(path.join(root, "bulk", name(i)), 100 + i);
  }
  for (let i = 0; i < PICTURES; i++) fs.writeFileSync(path.join(root, "pics", `p${i}.jpg`), "not really a picture");
  const out = ws.cli("scan", root, "--name", "Big", "--no-thumbnails", "--no-metadata");
  const id = /\(id (\d+)\)/.exec(out)[1];
  ws.cli("export", "web", id, "-o", site);
  const data = fs.readFileSync(path.join(site, "data", `cat-${id}.js`), "utf8");
  bulk = JSON.parse(data.slice(data.indexOf("(") + 1, data.lastIndexOf(")"))).items.find((r) => r[2] === "bulk")[0];
  browser = await launch();
  page = await newPage(browser, problems);
  await page.goto(fileUrl(path.join(site, `catalog-${id}.html`), `#browse/${bulk}`));
});

after(async () => {
  await browser?.close();
});

const rows = () => page.evaluate(() => document.querySelectorAll(".list tbody tr").length);
const first = async () => (await texts(page, ".list tbody tr:first-child .n"))[0];

test("a folder of more than 2,000 files shows 2,000 and says how many there are", async () => {
  assert.equal(await rows(), 2001);
  assert.equal(await page.textContent(".list tr.more"),
    "Showing the first 2,000 of 2,345 — refine the filters to see more.");
  assert.equal(await first(), "f0000.dat");
  assert.equal((await texts(page, ".list tbody tr:nth-child(2000) .n"))[0], "f1999.dat");

  // Sorting covers all rows, not only those in the page. (Clicks are dispatched: the pointer's way
  // through the page is the site test's business, and it is slow on a page this long.)
  const sortBy = (heading) => page.dispatchEvent(`.list th:text-is("${heading}")`, "click");
  await sortBy("Size");
  assert.equal(await first(), "f0000.dat");
  await sortBy("Size");
  assert.equal(await first(), "f2344.dat");
  assert.equal(await rows(), 2001);
  await sortBy("Name");
  await sortBy("Name");
  assert.equal(await first(), "f2344.dat");

  await refiltered(page, () => page.fill(".filters .q", "f23"));
  assert.equal(await page.textContent(".results .count"), "45 matches on this drive");
  assert.equal(await rows(), 45);
  await refiltered(page, () => page.fill(".filters .q", ".dat"));
  assert.equal(await page.textContent(".results .count"), "2,345 matches on this drive");
  assert.equal(await rows(), 2001);
});

test("the gallery shows at most 1,500 tiles", async () => {
  await goHash(page, "#gallery");
  assert.equal(await page.textContent(".results .count"), "1,600 photos and videos");
  assert.equal((await texts(page, ".tile")).length, 1500);
  assert.equal((await texts(page, ".tile img")).length, 0);
  await refiltered(page, () => page.fill(".filters .q", "p15"));
  assert.equal(await page.textContent(".results .count"), "111 photos and videos");
  assert.deepEqual(problems, []);
});
