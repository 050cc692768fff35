// The inventory web site: chosen catalogs turned into a static site that needs no server, with an index of
// drives, one page per drive, the drives' records as data scripts, a stylesheet, a script and thumbnails.
//
// The tree below the output folder:
//   index.html                   the index of drives
//   catalog-<id>.html            one page per catalog
//   assets/style.css, app.js     the fixed stylesheet and script
//   data/cat-<id>.js             one catalog's data, as the one statement
//                                window.ORLN=window.ORLN||{cats:[]};ORLN.cats.push({...});
//   thumbs/<catalog id>/<id>.jpg copies of cached thumbnails, when asked for
//
// The data travels as scripts rather than JSON files because a page opened from disk (file://) may load a
// script but not fetch a file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "store/records.h"

namespace orrelin {

class CatalogDB;

namespace WebExporter {

struct Options {
  std::string title = "Drive Inventory";  // The index page's title; empty gives the default.
  bool includeThumbnails = true;
  bool includeHidden = false;

  bool operator==(const Options&) const = default;
};

// The exact start of every data file; the catalog object and ");\n" follow it.
inline constexpr std::string_view kDataPrefix = "window.ORLN=window.ORLN||{cats:[]};ORLN.cats.push(";

// Writes the site for `catalogs`, in the given order (a catalog given twice is written once), into the
// folder `to`, which is created with its parents when missing. Files of an earlier site there are
// replaced, each atomically; nothing else in the folder is touched. Thumbnails are copied from
// `thumbsRoot`. A catalog's data file is written as its rows are read, so no catalog is ever held in
// memory. Returns the path of index.html. Throws DBError when the store fails and ExportError when a folder
// or file cannot be written; what was written before stays. (Named exportSite: `export` is a C++ keyword.)
std::filesystem::path exportSite(CatalogDB& store, const std::vector<Catalog>& catalogs,
                                 const std::filesystem::path& to, const std::filesystem::path& thumbsRoot,
                                 const Options& options);

// Returns a whole page: the head (charset, viewport, generator, the escaped `title`, the stylesheet), the
// brand bar, `body`, the footer with the time of generation, `scripts`, and the site's script last.
// `body` and `scripts` are markup and go in as they are.
std::string pageShell(std::string_view title, std::string_view body, std::string_view scripts);

// Returns `text` with &, <, > and the double quote replaced by their character references; the apostrophe
// stays, so attribute values must be double-quoted.
std::string htmlEscape(std::string_view text);

// Returns the one-line description of a record that the site shows under its name: its duration, the
// resolution (or dimensions), video codec, bitrate, artist, title, camera, pages and tags that it has,
// joined with " · ". Empty when it has none of them.
std::string summary(const FileRecord& record);

// The site's fixed stylesheet (assets/style.css) and script (assets/app.js).
std::string_view css();
std::string_view js();

// The catalog object's "kind": "Network", "Folder", "External" or "Internal".
std::string_view driveKind(const Catalog& catalog);

}  // namespace WebExporter

namespace WebSiteScript {

// The site's script (assets/app.js): plain browser script in one strict-mode function that builds every
// page from the data files. The same text as WebExporter::js().
std::string_view source();

}  // namespace WebSiteScript

}  // namespace orrelin
