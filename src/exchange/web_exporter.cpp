// The inventory web site generator: pages, data scripts, fixed assets and thumbnail copies.
#include "exchange/web_exporter.h"

#include <set>

#include "core/app_info.h"
#include "exchange/exchange_file.h"
#include "exchange/web_assets.h"
#include "exchange/web_files.h"
#include "exchange/web_text.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "store/safe_int.h"

namespace orrelin::WebExporter {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDot = " \u00B7 ";  // " · "
constexpr std::string_view kDefaultTitle = "Drive Inventory";

// allFiles' rows, read one at a time rather than gathered: a drive may hold millions of records.
const std::string kFilesByPath =
    std::string("SELECT ") + CatalogDB::fileColumns + " FROM files f WHERE f.catalog_id=? ORDER BY f.path";
constexpr int kHiddenColumn = 14;  // f.hidden in fileColumns.

// The web site's host without "www.": "https://www.example.com/app" gives "example.com".
std::string bareDomain(std::string_view address) {
  if (size_t scheme = address.find("://"); scheme != std::string_view::npos)
    address.remove_prefix(scheme + 3);
  address = address.substr(0, address.find_first_of("/?#"));
  if (address.substr(0, 4) == "www.") address.remove_prefix(4);
  return std::string(address);
}

std::string companyLink() {
  return "<a href=\"" + htmlEscape(AppInfo::website) + "\">" + htmlEscape(AppInfo::company) + "</a>";
}

std::string scriptElement(std::string_view source) {
  return "<script src=\"" + htmlEscape(source) + "\"></script>";
}

std::string dataFileName(int64_t catalogID) { return "cat-" + std::to_string(catalogID) + ".js"; }

// One record as the thirteen values the site's script reads by position.
void appendRow(std::string& out, const FileRecord& r, bool thumbCopied) {
  out += '[';
  web::appendJSONInt(out, r.id);
  out += ',';
  web::appendJSONInt(out, r.parentID);
  out += ',';
  web::appendJSONString(out, r.name);
  out += r.isDir ? ",1," : ",0,";
  web::appendJSONInt(out, r.size);
  out += ',';
  web::appendJSONString(out, r.kindName());
  out += ',';
  web::appendJSONInt(out, r.modified ? SafeInt::from(r.modified->seconds) : 0);
  out += thumbCopied ? ",1," : ",0,";
  web::appendJSONString(out, summary(r));
  out += ',';
  web::appendJSONTenths(out, r.duration);
  out += ',';
  auto artist = r.meta.find("Artist");
  web::appendJSONString(out, artist == r.meta.end() ? std::string_view() : std::string_view(artist->second));
  out += ',';
  web::appendJSONInt(out, r.width);
  out += ',';
  web::appendJSONInt(out, r.height);
  out += ']';
}

// The catalog object up to the opening of its "items" list, keys in the order the site documents.
void appendCatalogHead(std::string& out, const Catalog& c) {
  auto key = [&](std::string_view name) {
    out += out.back() == '{' ? "\"" : ",\"";
    out += name;
    out += "\":";
  };
  auto text = [&](std::string_view name, std::string_view value) {
    key(name);
    web::appendJSONString(out, value);
  };
  auto integer = [&](std::string_view name, int64_t value) {
    key(name);
    web::appendJSONInt(out, value);
  };
  out += '{';
  integer("id", c.id);
  text("name", c.name);
  text("volume", c.volumeName);
  text("format", c.volumeFormat);
  text("uuid", c.volumeUUID);
  integer("capacity", c.capacity);
  integer("free", c.freeSpace);
  integer("files", c.fileCount);
  integer("folders", c.folderCount);
  integer("size", c.totalSize);
  integer("scanned", c.scannedAt ? SafeInt::from(c.scannedAt->seconds) : 0);
  text("root", c.rootPath);
  text("notes", c.notes);
  text("kind", driveKind(c));
  key("items");
  out += '[';
}

// Writes data/cat-<id>.js while reading the catalog's records, copying thumbnails on the way.
void writeDataFile(CatalogDB& store, const Catalog& catalog, const fs::path& to, const fs::path& thumbsRoot,
                   const Options& options) {
  AtomicFile file(to / "data" / dataFileName(catalog.id));
  std::string& out = file.buffer();
  out += kDataPrefix;
  appendCatalogHead(out, catalog);
  std::optional<web::ThumbnailCopier> thumbs;
  if (options.includeThumbnails) thumbs.emplace(thumbsRoot, to, catalog.id);
  bool first = true;
  store.db().forEachRow(kFilesByPath, {catalog.id}, [&](const Statement& row) {
    if (!options.includeHidden && row.boolean(kHiddenColumn)) return;
    FileRecord record = CatalogDB::mapFile(row);
    bool thumbCopied = thumbs && record.hasThumb && thumbs->copy(record.id);
    if (!first) out += ',';
    first = false;
    appendRow(out, record, thumbCopied);
    file.flushIfFull();
  });
  out += "]});\n";
  file.commit();
}

}  // namespace

std::string_view css() { return embedded::style_css(); }
std::string_view js() { return WebSiteScript::source(); }

std::string_view driveKind(const Catalog& catalog) {
  if (catalog.isNetwork) return "Network";
  if (catalog.isFolder) return "Folder";
  if (catalog.isRemovable) return "External";
  return "Internal";
}

std::string htmlEscape(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string summary(const FileRecord& record) {
  std::string out;
  auto add = [&](std::string_view part) {
    if (part.empty()) return;
    if (!out.empty()) out += kDot;
    out += part;
  };
  auto meta = [&](const char* key) -> std::string_view {
    auto found = record.meta.find(key);
    return found == record.meta.end() ? std::string_view() : std::string_view(found->second);
  };
  if (record.duration > 0) add(Fmt::duration(record.duration));
  std::string_view resolution = meta("Resolution");
  add(resolution.empty() ? meta("Dimensions") : resolution);
  for (const char* key : {"Video Codec", "Bitrate", "Artist", "Title", "Camera"}) add(meta(key));
  if (std::string_view pages = meta("Pages"); !pages.empty()) add(std::string(pages) + " pages");
  if (!record.tags.empty()) add("Tags: " + joinTags(record.tags));
  return out;
}

std::string pageShell(std::string_view title, std::string_view body, std::string_view scripts) {
  std::string page;
  page.reserve(1500 + body.size() + scripts.size());
  page += "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  page += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
  page += "<meta name=\"generator\" content=\"" + htmlEscape(AppInfo::name) + " " +
          htmlEscape(AppInfo::version()) + "\">\n";
  page += "<title>" + htmlEscape(title) + "</title>\n";
  page += "<link rel=\"stylesheet\" href=\"assets/style.css\">\n</head>\n<body>\n";
  page += "<div class=\"grid-bg\"></div>\n";
  page += "<header class=\"brandbar\"><span>TVRL Orrelin</span>" + std::string(kDot) + "by " + companyLink() +
          " (TVRL)</header>\n";
  page += body;
  page += "\n<footer class=\"foot\">Inventory generated " + htmlEscape(Fmt::date(Date::now())) + " with " +
          htmlEscape(AppInfo::name) + " by " + companyLink() + std::string(kDot) + "<a href=\"" +
          htmlEscape(AppInfo::website) + "\">" + htmlEscape(bareDomain(AppInfo::website)) + "</a></footer>\n";
  page += scripts;
  if (!scripts.empty() && scripts.back() != '\n') page += '\n';
  page += scriptElement("assets/app.js") + "\n</body>\n</html>\n";
  return page;
}

fs::path exportSite(CatalogDB& store, const std::vector<Catalog>& catalogs, const fs::path& to,
                    const fs::path& thumbsRoot, const Options& options) {
  web::createFolder(to / "assets");
  web::createFolder(to / "data");
  writeFileAtomically(to / "assets" / "style.css", css());
  writeFileAtomically(to / "assets" / "app.js", WebSiteScript::source());

  std::string indexScripts;
  std::set<int64_t> written;
  for (const Catalog& catalog : catalogs) {
    if (!written.insert(catalog.id).second) continue;
    writeDataFile(store, catalog, to, thumbsRoot, options);
    std::string id = std::to_string(catalog.id);
    std::string script = scriptElement("data/" + dataFileName(catalog.id)) + "\n";
    writeFileAtomically(
        to / ("catalog-" + id + ".html"),
        pageShell(web::displayText(catalog.name),
                  "<div id=\"app\" data-page=\"catalog\" data-catalog=\"" + id + "\"></div>", script));
    indexScripts += script;
  }

  std::string title = web::displayText(options.title.empty() ? kDefaultTitle : options.title);
  fs::path index = to / "index.html";
  writeFileAtomically(
      index,
      pageShell(title, "<div id=\"app\" data-page=\"index\" data-title=\"" + htmlEscape(title) + "\"></div>",
                indexScripts));
  return index;
}

}  // namespace orrelin::WebExporter

std::string_view orrelin::WebSiteScript::source() { return embedded::app_js(); }
