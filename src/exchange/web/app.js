// The inventory web site: routing, pages, filters, tables, gallery and lightbox. Plain browser script.
//
// The data files fill window.ORLN.cats with one object per catalog; each item is a plain array read by
// position: 0 id, 1 parent id, 2 name, 3 is folder, 4 size, 5 kind, 6 modified (s), 7 has thumbnail,
// 8 summary, 9 duration (s), 10 artist, 11 width, 12 height. Every name and every text that comes from
// the data reaches the page through text nodes only, so a file name can never become markup.
(function () {
  "use strict";

  var S = window.ORLN && Array.isArray(window.ORLN.cats) ? window.ORLN : { cats: [] };
  var app = document.getElementById("app");
  if (!app) return;

  var KINDS = ["Folder", "Image", "Video", "Audio", "PDF", "Document", "Archive", "Code", "Application",
    "Font", "Disk Image", "Other"];
  var ICONS = { "Folder": "▣", "Image": "◩", "Video": "▶", "Audio": "♫", "PDF": "▤", "Document": "☰",
    "Archive": "▦", "Code": "</>", "Application": "◆", "Font": "Aa", "Disk Image": "◎", "Other": "◇" };
  var CAP_ROWS = 2000, CAP_TILES = 1500, CAP_DUPES = 600, CAP_LARGEST = 30, CAP_YEARS = 14, DEBOUNCE = 140;
  var NUMERIC = { 4: true, 6: true, 9: true };

  // One collator and formatters for the whole page: building them per call is what makes localeCompare
  // and toLocaleDateString slow over hundreds of thousands of rows.
  var collator = new Intl.Collator();
  var numFmt = new Intl.NumberFormat();
  var dateFmt = new Intl.DateTimeFormat(undefined, { year: "numeric", month: "short", day: "numeric" });

  // ---- Formatting ----

  function size(n) {
    n = Number(n) || 0;
    if (n < 1000) return n + " B";
    var units = ["KB", "MB", "GB", "TB", "PB"], v = n / 1000, i = 0;
    while (v >= 1000 && i < units.length - 1) { v /= 1000; i++; }
    return (v < 10 ? v.toFixed(1) : String(Math.round(v))) + " " + units[i];
  }

  // A time the browser cannot hold as a date (a file system may store years past 275,000) reads as
  // absent rather than stopping the page.
  function dateOf(t) {
    var d = new Date(t * 1000);
    return t && isFinite(d.getTime()) ? d : null;
  }

  function date(t) {
    var d = dateOf(t);
    return d ? dateFmt.format(d) : "—";
  }

  function pad2(n) { return n < 10 ? "0" + n : String(n); }

  function dur(s) {
    if (!s) return "—";
    s = Math.round(s);
    var h = Math.floor(s / 3600), m = Math.floor((s % 3600) / 60), sec = s % 60;
    return h ? h + ":" + pad2(m) + ":" + pad2(sec) : m + ":" + pad2(sec);
  }

  function num(n) { return numFmt.format(n); }

  function plural(n, word, many) { return num(n) + " " + word + (n === 1 ? "" : (many || "s")); }

  function icon(kind) { return ICONS[kind] || "◇"; }

  function isMedia(r) { return r[5] === "Image" || r[5] === "Video"; }

  function thumbSrc(r) { return "thumbs/" + r.cat.id + "/" + r[0] + ".jpg"; }

  // The path of a row from its parent chain; a chain cut by a dropped (hidden) folder gives a shorter path.
  function pathOf(r) {
    var c = r.cat, parts = [r[2]], p = r[1];
    for (var i = 0; i < 256 && p; i++) {
      var up = c.byId.get(p);
      if (!up) break;
      parts.push(up[2]);
      p = up[1];
    }
    return parts.reverse().join("/");
  }

  // ---- DOM helpers: text only, never markup ----

  function el(tag, cls, text) {
    var e = document.createElement(tag);
    if (cls) e.className = cls;
    if (text !== undefined && text !== null) e.textContent = String(text);
    return e;
  }

  function add(parent) {
    for (var i = 1; i < arguments.length; i++) {
      var c = arguments[i];
      if (c === null || c === undefined || c === false) continue;
      parent.appendChild(typeof c === "object" ? c : document.createTextNode(String(c)));
    }
    return parent;
  }

  function link(href, cls, text) {
    var a = el("a", cls, text);
    a.href = href;
    return a;
  }

  // ---- Data preparation ----

  function byFolderThenName(a, b) { return (b[3] - a[3]) || collator.compare(a[2], b[2]); }

  function prep(c) {
    var items = Array.isArray(c.items) ? c.items : (c.items = []);
    var byId = new Map(), kids = new Map(), subs = new Set();
    kids.set(0, []);
    for (var i = 0; i < items.length; i++) {
      var r = items[i];
      r.cat = c;
      byId.set(r[0], r);
      var list = kids.get(r[1]);
      if (list) list.push(r); else kids.set(r[1], [r]);
      if (r[3]) subs.add(r[1]);
    }
    c.byId = byId;
    c.kids = kids;
    c.hasSubfolders = subs;
    c.sorted = new Set();
  }

  // The children of a folder, folders first and then by name; each list is sorted the first time it is
  // asked for, so a big catalog does not pay for sorting folders nobody opens.
  function kidsOf(c, id) {
    var list = c.kids.get(id) || [];
    if (!c.sorted.has(id)) { list.sort(byFolderThenName); c.sorted.add(id); }
    return list;
  }

  S.cats = S.cats.filter(function (c) { return c && typeof c === "object" && c.id !== undefined; });
  S.cats.forEach(prep);

  var allRowsCache = null;
  function allRows() {
    if (!allRowsCache) {
      allRowsCache = [];
      S.cats.forEach(function (c) { for (var i = 0; i < c.items.length; i++) allRowsCache.push(c.items[i]); });
    }
    return allRowsCache;
  }

  // ---- Filter bar ----

  function filterBar(withKind, onChange, placeholder) {
    var bar = el("div", "filters");
    var timer = 0;
    function later() {
      clearTimeout(timer);
      timer = setTimeout(onChange, DEBOUNCE);
    }

    var q = el("input", "q");
    q.type = "search";
    q.placeholder = placeholder || "Search names…";
    q.setAttribute("aria-label", q.placeholder);
    q.spellcheck = false;
    q.autocomplete = "off";
    q.addEventListener("input", later);
    add(bar, q);

    var kind = null;
    if (withKind) {
      kind = el("select", "kind");
      kind.setAttribute("aria-label", "Kind");
      add(kind, new Option("All kinds", ""));
      KINDS.forEach(function (k) { add(kind, new Option(k, k)); });
      kind.addEventListener("change", later);
      add(bar, kind);
    }

    var min = el("input", "min");
    min.type = "number";
    min.min = "0";
    min.step = "any";
    min.style.width = "90px";
    min.addEventListener("input", later);
    add(bar, add(el("label"), el("span", null, "Min size (MB)"), min));

    var after = el("input", "after");
    after.type = "date";
    after.addEventListener("input", later);
    add(bar, add(el("label"), el("span", null, "Modified after"), after));

    function text() { return q.value.trim().toLowerCase(); }
    function minBytes() {
      var v = parseFloat(min.value);
      return isFinite(v) && min.value !== "" ? Math.round(v * 1000000) : null;
    }
    function afterTime() {
      if (!after.value) return null;
      var t = Date.parse(after.value);  // a bare date parses as UTC midnight
      return isFinite(t) ? t / 1000 : null;
    }

    return {
      el: bar,
      input: q,
      active: function () {
        return text() !== "" || !!(kind && kind.value) || minBytes() !== null || afterTime() !== null;
      },
      // A predicate for the current fields, built once per filter run rather than once per row.
      tester: function () {
        var t = text(), k = kind ? kind.value : "", m = minBytes(), a = afterTime();
        return function (r) {
          if (t && r[2].toLowerCase().indexOf(t) < 0 && String(r[8] || "").toLowerCase().indexOf(t) < 0)
            return false;
          if (k && r[5] !== k) return false;
          if (m !== null && !(r[4] >= m)) return false;
          if (a !== null && !(r[6] && r[6] >= a)) return false;
          return true;
        };
      },
      test: function (r) { return this.tester()(r); }
    };
  }

  // ---- Tables ----

  var DEFAULT_COLS = [["Name", 2], ["Kind", 5], ["Size", 4], ["Modified", 6]];
  // Column widths by row index; the name (and anything else) takes what is left.
  // The stylesheet may narrow them on small screens through the variables.
  var WIDTHS = { 2: "minmax(var(--wname, 0px), 1fr)", 4: "var(--w4, 104px)", 5: "var(--w5, 112px)",
    6: "var(--w6, 136px)", 9: "var(--w9, 84px)", 10: "minmax(0, var(--wtext, 220px))",
    "-1": "minmax(0, var(--wtext, 220px))" };

  function compareBy(idx) {
    return function (a, b) {
      var x = idx === -1 ? a.cat.name : a[idx], y = idx === -1 ? b.cat.name : b[idx];
      if (typeof x === "number" && typeof y === "number") return x - y;
      return collator.compare(String(x === undefined || x === null ? "" : x),
        String(y === undefined || y === null ? "" : y));
    };
  }

  // A record's cached thumbnail, loaded only when it comes near the screen.
  function thumbImage(r) {
    var img = el("img");
    img.loading = "lazy";
    img.decoding = "async";
    img.alt = "";
    img.src = thumbSrc(r);
    return img;
  }

  function iconCell(r) {
    var ic = el("span", "ic");
    if (r[7]) {
      ic.appendChild(thumbImage(r));
    } else {
      ic.textContent = icon(r[5]);
      ic.className = "ic glyph";
    }
    return ic;
  }

  function nameCell(td, r, opts, openMedia) {
    td.className = "nm";
    td.appendChild(iconCell(r));
    var box = el("div", "nmt");
    var name;
    if (r[3]) {
      name = link("catalog-" + r.cat.id + ".html#browse/" + r[0], "n", r[2]);
    } else if (isMedia(r)) {
      name = el("button", "n lnk", r[2]);
      name.type = "button";
      name.addEventListener("click", function () { openMedia(r); });
    } else {
      name = el("span", "n", r[2]);
    }
    name.title = r[2];
    box.appendChild(name);
    var line = opts.showPath ? (opts.showCat ? r.cat.name + " — " : "") + pathOf(r) : r[8];
    if (line) box.appendChild(el("small", null, line));
    td.appendChild(box);
  }

  function fillCell(td, r, idx) {
    switch (idx) {
      case 5: td.className = "kd"; td.textContent = r[5]; break;
      case 4: td.className = "num"; td.textContent = size(r[4]); break;
      case 6: td.className = "num"; td.textContent = date(r[6]); break;
      case 9: td.className = "num"; td.textContent = dur(r[9]); break;
      case 10: td.className = "tx"; td.textContent = r[10] || "—"; break;
      case -1: td.className = "tx"; td.textContent = r.cat.name; break;
      default: td.className = "tx"; td.textContent = r[idx] === undefined ? "" : String(r[idx]);
    }
  }

  function table(rows, opts) {
    opts = opts || {};
    var cols = opts.cols || DEFAULT_COLS;
    var list = rows, sortIdx = null;
    var t = el("table", "list");
    // Rows are grids over one column template (see the stylesheet), which lets the browser skip the
    // layout of rows that are off screen.
    t.style.setProperty("--cols", cols.map(function (col) { return WIDTHS[col[1]] || "minmax(0, 1fr)"; }).join(" "));
    var hr = el("tr");
    var heads = [];
    cols.forEach(function (col) {
      var th = el("th", NUMERIC[col[1]] ? "num" : "", col[0]);
      th.tabIndex = 0;
      th.setAttribute("role", "columnheader");
      th.addEventListener("click", function () { sortOn(col[1], th); });
      th.addEventListener("keydown", function (e) {
        if (e.key === "Enter" || e.key === " ") { e.preventDefault(); sortOn(col[1], th); }
      });
      heads.push(th);
      hr.appendChild(th);
    });
    var thead = add(el("thead"), hr);
    var tbody = el("tbody");
    add(t, thead, tbody);

    function openMedia(r) {
      lightbox(list.filter(isMedia), r);
    }

    function sortOn(idx, th) {
      if (sortIdx === idx) {
        list.reverse();
        th.classList.toggle("desc");
        th.classList.toggle("asc");
      } else {
        list = rows.slice().sort(compareBy(idx));
        sortIdx = idx;
        heads.forEach(function (h) { h.classList.remove("asc", "desc"); });
        th.classList.add("asc");
      }
      th.setAttribute("aria-sort", th.classList.contains("asc") ? "ascending" : "descending");
      render();
    }

    // Rows are built off the document and put in with one call: one layout for the whole table.
    function render() {
      var frag = document.createDocumentFragment();
      var n = Math.min(list.length, CAP_ROWS);
      for (var i = 0; i < n; i++) {
        var r = list[i], tr = document.createElement("tr");
        for (var j = 0; j < cols.length; j++) {
          var td = document.createElement("td"), idx = cols[j][1];
          if (idx === 2) nameCell(td, r, opts, openMedia); else fillCell(td, r, idx);
          tr.appendChild(td);
        }
        frag.appendChild(tr);
      }
      if (list.length === 0 || list.length > CAP_ROWS) {
        var note = el("td", "note", list.length === 0 ? "Nothing matches."
          : "Showing the first 2,000 of " + num(list.length) + " — refine the filters to see more.");
        note.colSpan = cols.length;
        frag.appendChild(add(el("tr", "more"), note));
      }
      tbody.replaceChildren(frag);
    }

    render();
    return add(el("div", "panel tablewrap"), t);
  }

  // ---- Lightbox ----

  var LB = null;

  function makeLightbox() {
    var lb = el("div", "lb");
    lb.setAttribute("role", "dialog");
    lb.setAttribute("aria-modal", "true");
    var box = el("div", "lbbox");
    var pic = el("div", "lbpic");
    var info = el("div", "lbinfo");
    var prev = el("button", "btn", "‹ Prev"), next = el("button", "btn", "Next ›");
    var close = el("button", "btn close", "Close");
    [prev, next, close].forEach(function (b) { b.type = "button"; });
    add(box, pic, info, add(el("div", "lbbtns"), prev, next, close));
    lb.appendChild(box);
    document.body.appendChild(lb);

    var st = { el: lb, list: [], i: 0 };
    function show() {
      var r = st.list[st.i];
      pic.replaceChildren();
      if (r[7]) {
        var img = el("img");
        img.alt = r[2];
        img.src = thumbSrc(r);
        pic.appendChild(img);
      } else {
        pic.appendChild(el("span", "glyph", icon(r[5])));
      }
      var facts = [r[5], size(r[4]), date(r[6]), r[11] ? r[11] + "×" + r[12] : "",
        r[9] ? dur(r[9]) : ""].filter(Boolean);
      info.replaceChildren(el("b", null, r[2]), el("div", null, facts.join(" · ")),
        el("div", "where", r.cat.name + " — " + pathOf(r)));
      prev.disabled = st.i <= 0;
      next.disabled = st.i >= st.list.length - 1;
    }
    function go(d) {
      var i = st.i + d;
      if (i < 0 || i >= st.list.length) return;
      st.i = i;
      show();
    }
    function hide() { lb.classList.remove("on"); }
    prev.addEventListener("click", function () { go(-1); });
    next.addEventListener("click", function () { go(1); });
    close.addEventListener("click", hide);
    lb.addEventListener("click", function (e) { if (e.target === lb) hide(); });
    document.addEventListener("keydown", function (e) {
      if (!lb.classList.contains("on")) return;
      if (e.key === "Escape") hide();
      else if (e.key === "ArrowLeft") go(-1);
      else if (e.key === "ArrowRight") go(1);
      else return;
      e.preventDefault();
    });
    st.hide = hide;
    st.open = function (list, row) {
      if (!list.length) return;
      st.list = list;
      var i = list.indexOf(row);
      st.i = i < 0 ? 0 : i;
      show();
      lb.classList.add("on");
      close.focus();
    };
    return st;
  }

  function lightbox(list, row) {
    if (!LB) LB = makeLightbox();
    LB.open(list, row);
  }

  // A route change drops the open picture with the view it came from.
  function closeLightbox() {
    if (LB) LB.hide();
  }

  // ---- Shared views ----

  function heading(text) { return el("div", "count", text); }

  function galleryView(rows, host) {
    var media = rows.filter(isMedia);
    var out = el("div", "results");
    var fb = filterBar(false, run, "Search photos and videos…");
    add(host, fb.el, out);
    function run() {
      var test = fb.tester();
      var hits = media.filter(test);
      if (!hits.length) {
        out.replaceChildren(el("div", "empty", "No images or videos match."));
        return;
      }
      var grid = el("div", "gallery");
      var n = Math.min(hits.length, CAP_TILES);
      for (var i = 0; i < n; i++) grid.appendChild(tile(hits[i], hits));
      var s = hits.length === 1 ? "" : "s";
      var parts = [heading(num(hits.length) + " photo" + s + " and video" + s), grid];
      if (hits.length > CAP_TILES) {
        parts.push(el("div", "note", "Showing the first 1,500 of " + num(hits.length) +
          " — refine the filters to see more."));
      }
      out.replaceChildren.apply(out, parts);
    }
    run();
  }

  function tile(r, list) {
    var t = el("div", "tile");
    t.tabIndex = 0;
    t.setAttribute("role", "button");
    t.title = r[2];
    var pic = el("div", "tp");
    if (r[7]) {
      pic.appendChild(thumbImage(r));
    } else {
      pic.appendChild(el("span", "glyph", icon(r[5])));
    }
    if (r[5] === "Video") pic.appendChild(el("span", "badge", "▶ " + dur(r[9])));
    var line = size(r[4]) + (r[11] ? " · " + r[11] + "×" + r[12] : "");
    add(t, pic, add(el("div", "cap"), el("div", "tn", r[2]), el("small", null, line)));
    function open() { lightbox(list, r); }
    t.addEventListener("click", open);
    t.addEventListener("keydown", function (e) {
      if (e.key === "Enter" || e.key === " ") { e.preventDefault(); open(); }
    });
    return t;
  }

  function kindList(rows, host, kinds, cols, placeholder, emptyText, showCat) {
    var want = {};
    kinds.forEach(function (k) { want[k] = true; });
    var mine = rows.filter(function (r) { return !r[3] && want[r[5]]; });
    var out = el("div", "results");
    var fb = filterBar(false, run, placeholder);
    add(host, fb.el, out);
    function run() {
      var hits = mine.filter(fb.tester());
      var head = heading(plural(hits.length, "item"));
      if (!mine.length) out.replaceChildren(head, el("div", "empty", emptyText));
      else out.replaceChildren(head, table(hits, { cols: cols, showPath: true, showCat: showCat }));
    }
    run();
  }

  function dupesView(rows, host, cross) {
    var groups = new Map();
    for (var i = 0; i < rows.length; i++) {
      var r = rows[i];
      if (r[3] || !(r[4] >= 1)) continue;
      var key = r[2].toLowerCase() + "|" + r[4];
      var g = groups.get(key);
      if (g) g.push(r); else groups.set(key, [r]);
    }
    var sets = [];
    groups.forEach(function (g) {
      if (g.length < 2) return;
      if (cross && !g.some(function (x) { return x.cat !== g[0].cat; })) return;
      sets.push(g);
    });
    sets.sort(function (a, b) { return b[0][4] * (b.length - 1) - a[0][4] * (a.length - 1); });
    if (!sets.length) {
      host.appendChild(el("div", "empty", "No duplicates found."));
      return;
    }
    var wasted = 0;
    sets.forEach(function (g) { wasted += g[0][4] * (g.length - 1); });
    host.appendChild(heading(plural(sets.length, "duplicate set") + " (same name and size) · " +
      size(wasted) + " reclaimable"));
    var many = S.cats.length > 1;
    var box = el("div", "panel dups");
    sets.slice(0, CAP_DUPES).forEach(function (g) {
      var d = el("div", "dup");
      add(d, el("b", null, g[0][2]), " — " + num(g.length) + " copies × " + size(g[0][4]));
      g.forEach(function (r) { d.appendChild(el("small", null, (many ? r.cat.name + " — " : "") + pathOf(r))); });
      box.appendChild(d);
    });
    host.appendChild(box);
  }

  function bars(title, entries) {
    var p = el("div", "panel bars");
    p.appendChild(el("h3", null, title));
    var max = 0;
    entries.forEach(function (e) { if (e.value > max) max = e.value; });
    entries.forEach(function (e) {
      var pct = Math.max(2, Math.round(max ? (100 * e.value) / max : 0));
      var bar = el("i");
      bar.style.width = pct + "%";
      p.appendChild(add(el("div", "kbrow"), el("span", "kl", e.label), add(el("div", "kb"), bar),
        el("span", "kv", e.text)));
    });
    if (!entries.length) p.appendChild(el("div", "empty", "No files."));
    return p;
  }

  function statsView(rows, host, showCat) {
    var files = rows.filter(function (r) { return !r[3]; });
    var kinds = new Map(), years = new Map(), total = 0;
    files.forEach(function (r) {
      var k = kinds.get(r[5]) || { count: 0, bytes: 0 };
      k.count++;
      k.bytes += r[4];
      kinds.set(r[5], k);
      total += r[4];
      var d = dateOf(r[6]);
      if (d) {
        var y = String(d.getFullYear());
        years.set(y, (years.get(y) || 0) + 1);
      }
    });
    var byKind = Array.from(kinds.entries()).sort(function (a, b) { return b[1].bytes - a[1].bytes; });
    var ys = Array.from(years.keys()).sort().slice(-CAP_YEARS);
    add(host, add(el("div", "two"),
      bars("Space by kind", byKind.map(function (e) {
        return { label: e[0] + " (" + num(e[1].count) + ")", value: e[1].bytes, text: size(e[1].bytes) };
      })),
      bars("Files by year modified", ys.map(function (y) {
        return { label: y, value: years.get(y), text: num(years.get(y)) };
      }))));
    host.appendChild(el("div", "spacer", "\u00a0"));
    var largest = files.slice().sort(function (a, b) { return b[4] - a[4]; }).slice(0, CAP_LARGEST);
    host.appendChild(add(el("div", "panel largest"),
      el("h3", null, "Largest files · " + num(files.length) + " files, " + size(total) + " in total"),
      table(largest, { showPath: true, showCat: showCat })));
  }

  // ---- Page parts ----

  function hero(kicker, title, line) {
    return add(el("section", "hero"), add(el("div", "radar"), el("i")),
      add(el("div", "htext"), el("div", "kicker", kicker), el("h1", null, title), line ? el("p", null, line) : null));
  }

  function stats(list) {
    var box = el("div", "stats");
    list.forEach(function (s) { box.appendChild(add(el("div", "stat"), el("b", null, s[1]), el("span", null, s[0]))); });
    return box;
  }

  function tabs(list, current) {
    var nav = el("nav", "tabs");
    list.forEach(function (t) {
      var a = link("#" + t[0], t[2] ? "on" : "", t[1]);
      if (t[2]) a.setAttribute("aria-current", "page");
      nav.appendChild(a);
    });
    return nav;
  }

  function route() {
    var h = location.hash.replace(/^#/, "");
    try { return decodeURIComponent(h); } catch (e) { return h; }
  }

  function card(c) {
    var a = link("catalog-" + c.id + ".html", "cart");
    var pills = add(el("div", "pills"), el("span", "pill", c.kind || "Drive"));
    if (c.format) {
      var fmt = el("span", "pill fmt", c.format);
      fmt.title = c.format;
      pills.appendChild(fmt);
    }
    add(a, pills, el("h3", null, c.name),
      el("div", "meta", num(c.files || 0) + " files · " + num(c.folders || 0) + " folders · " + size(c.size)));
    if (c.capacity > 0) {
      var used = Math.max(0, c.capacity - (c.free || 0));
      var bar = el("i");
      bar.style.width = Math.min(100, Math.round((100 * used) / c.capacity)) + "%";
      add(a, add(el("div", "bar"), bar),
        el("div", "meta", size(used) + " used of " + size(c.capacity) + " · " + size(c.free || 0) + " free"));
    }
    if (c.scanned) a.appendChild(el("div", "meta when", "Cataloged " + date(c.scanned)));
    return a;
  }

  // ---- Index page ----

  function indexPage() {
    var title = app.getAttribute("data-title") || "Drive Inventory";
    var cats = S.cats;
    var files = 0, folders = 0, bytes = 0;
    cats.forEach(function (c) { files += c.files || 0; folders += c.folders || 0; bytes += c.size || 0; });
    var many = cats.length > 1;
    var TABS = [["drives", "Drives"], ["search", "Search everything"], ["gallery", "Gallery"],
      ["audio", "Audio"], ["documents", "Documents"], ["dupes", "Duplicates across drives"],
      ["stats", "Statistics"]];

    function render() {
      closeLightbox();
      var r = route() || "drives";
      var known = TABS.some(function (t) { return t[0] === r; });
      var view = el("div", "view");
      app.replaceChildren(
        hero("TVRL Orrelin · TVRL", title,
          plural(cats.length, "cataloged drive") + " — browse them even when they are unplugged."),
        stats([["Drives", num(cats.length)], ["Files", num(files)], ["Folders", num(folders)],
          ["Cataloged", size(bytes)]]),
        tabs(TABS.map(function (t) { return [t[0], t[1], t[0] === r]; })),
        view);
      if (!known) r = "drives";
      if (r === "drives") {
        var grid = el("div", "carts");
        cats.forEach(function (c) { grid.appendChild(card(c)); });
        if (!cats.length) grid.appendChild(el("div", "empty", "No catalog data was found next to this page."));
        view.appendChild(grid);
      } else if (r === "search") {
        searchAll(view);
      } else if (r === "gallery") {
        galleryView(allRows(), view);
      } else if (r === "audio") {
        kindList(allRows(), view, ["Audio"], [["Name", 2], ["Drive", -1], ["Artist", 10], ["Length", 9], ["Size", 4]],
          "Search tracks, artists…", "No audio files.", many);
      } else if (r === "documents") {
        kindList(allRows(), view, ["PDF", "Document"],
          [["Name", 2], ["Drive", -1], ["Kind", 5], ["Size", 4], ["Modified", 6]],
          "Search documents…", "No documents.", many);
      } else if (r === "dupes") {
        dupesView(allRows(), view, true);
      } else if (r === "stats") {
        statsView(allRows(), view, many);
      }
    }

    function searchAll(view) {
      var rows = allRows();
      var out = el("div", "results");
      var fb = filterBar(true, run, "Search every drive by name, artist, camera…");
      add(view, fb.el, out);
      function run() {
        if (!fb.active()) {
          out.replaceChildren(el("div", "empty hint",
            "Type a name or set a filter to search all " + num(rows.length) + " items."));
          return;
        }
        var hits = rows.filter(fb.tester());
        out.replaceChildren(heading(num(hits.length) + (hits.length === 1 ? " match" : " matches")),
          table(hits, { cols: [["Name", 2], ["Drive", -1], ["Kind", 5], ["Size", 4], ["Modified", 6]],
            showPath: true, showCat: true }));
      }
      run();
      fb.input.focus();
    }

    window.addEventListener("hashchange", render);
    render();
  }

  // ---- Catalog page ----

  function catalogPage() {
    var id = app.getAttribute("data-catalog");
    var c = null;
    S.cats.forEach(function (x) { if (String(x.id) === id) c = x; });
    var back = link("index.html", "back", "← All drives");
    if (!c) {
      app.replaceChildren(back, el("div", "panel empty missing", "Catalog data is missing."));
      return;
    }
    var TABS = [["browse/0", "Browse folders"], ["gallery", "Gallery"], ["audio", "Audio"],
      ["documents", "Documents"], ["dupes", "Duplicates"], ["stats", "Statistics"]];
    var kicker = (c.kind || "Drive") + " drive" + (c.format ? " · " + c.format : "");
    var line = (c.uuid ? "UUID " + c.uuid + " · " : "") + "Cataloged " + date(c.scanned);
    var facts = [["Files", num(c.files || 0)], ["Folders", num(c.folders || 0)], ["Cataloged", size(c.size)]];
    if (c.capacity > 0) facts.push(["Capacity", size(c.capacity)], ["Free", size(c.free || 0)]);

    function render() {
      closeLightbox();
      var parts = (route() || "browse/0").split("/");
      var r = parts[0];
      var view = el("div", "view");
      app.replaceChildren(back, hero(kicker, c.name, line), stats(facts),
        tabs(TABS.map(function (t) { return [t[0], t[1], t[0].split("/")[0] === r]; })), view);
      if (r === "gallery") galleryView(c.items, view);
      else if (r === "audio") {
        kindList(c.items, view, ["Audio"], [["Name", 2], ["Artist", 10], ["Length", 9], ["Size", 4], ["Modified", 6]],
          "Search tracks, artists…", "No audio files on this drive.", false);
      } else if (r === "documents") {
        kindList(c.items, view, ["PDF", "Document"], [["Name", 2], ["Kind", 5], ["Size", 4], ["Modified", 6]],
          "Search documents…", "No documents on this drive.", false);
      } else if (r === "dupes") dupesView(c.items, view, false);
      else if (r === "stats") statsView(c.items, view, false);
      else browse(view, r === "browse" ? Number(parts[1]) : 0);
      window.scrollTo(0, 0);
    }

    function browse(view, folder) {
      var f = c.byId.get(folder);
      if (!f || !f[3]) folder = 0;
      var right = el("div", "panel pane results");
      var fb = filterBar(true, run, "Search this drive…");
      add(view, fb.el, add(el("div", "browser"), tree(folder), right));
      function run() {
        if (fb.active()) {
          var hits = c.items.filter(fb.tester());
          right.replaceChildren(heading(num(hits.length) + (hits.length === 1 ? " match" : " matches") + " on this drive"),
            table(hits, { showPath: true }));
        } else {
          right.replaceChildren(crumbs(folder), table(kidsOf(c, folder), {}));
        }
      }
      run();
    }

    function chainOf(folder) {
      var chain = [];
      for (var p = folder, i = 0; p && i < 256; i++) {
        var r = c.byId.get(p);
        if (!r) break;
        chain.push(r);
        p = r[1];
      }
      return chain.reverse();
    }

    function crumbs(folder) {
      var nav = add(el("nav", "crumbs"), link("#browse/0", null, c.name));
      chainOf(folder).forEach(function (r) { add(nav, el("span", "sep", " / "), link("#browse/" + r[0], null, r[2])); });
      return nav;
    }

    function tree(folder) {
      var box = el("div", "panel tree");
      var root = link("#browse/0", "node" + (folder === 0 ? " sel" : ""));
      add(root, el("span", "tw", "●"), c.name);
      box.appendChild(root);
      var open = new Set(chainOf(folder).map(function (r) { return r[0]; }));
      open.add(0);
      function level(id, depth) {
        var ul = el("ul");
        kidsOf(c, id).forEach(function (r) {
          if (!r[3]) return;
          var has = c.hasSubfolders.has(r[0]);
          var isOpen = open.has(r[0]) && depth < 256;
          var a = link("#browse/" + r[0], "node" + (r[0] === folder ? " sel" : ""));
          a.title = r[2];
          add(a, el("span", "tw", has ? (isOpen ? "▼" : "▶") : ""), "▣ " + r[2]);
          var li = add(el("li"), a);
          if (isOpen && has) li.appendChild(level(r[0], depth + 1));
          ul.appendChild(li);
        });
        return ul;
      }
      box.appendChild(level(0, 0));
      return box;
    }

    window.addEventListener("hashchange", render);
    render();
  }

  if (app.getAttribute("data-page") === "catalog") catalogPage(); else indexPage();
})();
