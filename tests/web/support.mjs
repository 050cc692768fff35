// Shared helpers of the browser tests: scratch folders, real trees and media, the built tool, and
// Debian's Chromium driven by playwright-core. Nothing is downloaded; the pages are opened from file://.
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const here = path.dirname(fileURLToPath(import.meta.url));
export const CLI = process.env.ORRELIN_CLI || path.resolve(here, "../../build/orrelin-cli");
export const SCRATCH = process.env.ORRELIN_SCRATCH || path.join(process.env.TMPDIR || "/tmp", "orrelin-web-tests");
export const CHROMIUM = process.env.CHROMIUM || "/usr/bin/chromium";

// A new, empty folder below the scratch folder, with its own data and settings folders for the tool.
export function workspace(name) {
  const dir = path.join(SCRATCH, name);
  fs.rmSync(dir, { recursive: true, force: true });
  fs.mkdirSync(dir, { recursive: true });
  const env = { ...process.env, XDG_DATA_HOME: path.join(dir, "data"), XDG_CONFIG_HOME: path.join(dir, "config") };
  return {
    dir,
    // Runs the tool and returns what it printed; a failure throws with the tool's own message.
    cli(...args) {
      try {
        return execFileSync(CLI, args, { env, encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
      } catch (e) {
        throw new Error(`orrelin-cli ${args.join(" ")} failed (${e.status}): ${e.stderr || e.message}`);
      }
    },
  };
}

// Writes files below root: each entry maps a relative path to a text, {size} (a sparse file of that many
// bytes), {image: "WxH", fill} (a real picture made by ImageMagick), {run: [tool, ...args]} (a file made
// by a tool that is given its path last), and optionally {mtime: "YYYY-MM-DD"}.
export function writeTree(root, entries) {
  for (const [rel, what] of Object.entries(entries)) {
    const file = path.join(root, rel);
    fs.mkdirSync(path.dirname(file), { recursive: true });
    if (typeof what === "string") {
      fs.writeFileSync(file, what);
    } else if (what.size !== undefined) {
      fs.writeFileSync(file, "");
      fs.truncateSync(file, what.size);
    } else if (what.image) {
      execFileSync("convert", ["-size", what.image, what.fill || "gradient:cyan-navy", file]);
    } else if (what.run) {
      execFileSync(what.run[0], [...what.run.slice(1), file], { stdio: "ignore" });
    }
    if (what.mtime) {
      const t = new Date(what.mtime + "T12:00:00Z");
      fs.utimesSync(file, t, t);
    }
  }
}

export function fileUrl(file, hash = "") {
  return pathToFileURL(file).href + hash;
}

export async function launch() {
  return chromium.launch({
    executablePath: CHROMIUM,
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync"],
  });
}

// A page that records every dialog, uncaught error and console error, so a test can prove that nothing ran
// that should not have.
export async function newPage(browser, problems, viewport = { width: 1280, height: 900 }) {
  const page = await browser.newPage({ viewport });
  page.setDefaultTimeout(5000);
  page.on("dialog", (d) => { problems.push(`dialog: ${d.message()}`); d.dismiss().catch(() => {}); });
  page.on("pageerror", (e) => problems.push(`page error: ${e.message}`));
  page.on("console", (m) => { if (m.type() === "error") problems.push(`console: ${m.text()}`); });
  return page;
}

// Goes to a hash on the open page and waits until the view has been rebuilt for it.
export async function goHash(page, hash) {
  await page.evaluate((h) => {
    document.querySelector("#app .view").dataset.stale = "1";
    location.hash = h;
  }, hash);
  await page.waitForFunction(() => !document.querySelector("#app .view").dataset.stale);
}

// The texts of the elements matching a CSS selector (the browser's own querySelectorAll: fast on long pages).
export function texts(page, selector) {
  return page.evaluate((sel) => [...document.querySelectorAll(sel)].map((e) => e.textContent), selector);
}

// Writes a screenshot when ORRELIN_SHOTS names a folder (for looking at the pages, not for checking them).
export async function shot(page, name) {
  const dir = process.env.ORRELIN_SHOTS;
  if (!dir) return;
  fs.mkdirSync(dir, { recursive: true });
  await page.screenshot({ path: path.join(dir, name), fullPage: true });
}

// Runs action (a change of the filter fields) and waits until the debounced filter has redrawn the results.
export async function refiltered(page, action) {
  await page.evaluate(() => { document.querySelector(".results").firstElementChild.dataset.stale = "1"; });
  await action();
  await page.waitForFunction(() => !document.querySelector(".results").firstElementChild?.dataset.stale);
}
