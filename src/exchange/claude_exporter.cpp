// The export for Claude: the bundle folder, its JSON Lines and XML records, the README and the plan template.
#include "exchange/claude_exporter.h"

#include <time.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <system_error>

#include "core/app_info.h"
#include "core/name_mapping.h"
#include "exchange/exchange_file.h"
#include "exchange/exporter.h"
#include "organize/export_error.h"
#include "store/catalog_db.h"
#include "store/finder_label.h"
#include "store/fmt.h"

namespace orrelin::ClaudeExporter {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// “text”, as file names are quoted in messages.
std::string quoted(const std::string& text) { return "\u201C" + text + "\u201D"; }

// The longest prefix of `text` of at most `bytes` bytes that does not split a UTF-8 sequence.
std::string_view utf8Prefix(std::string_view text, size_t bytes) {
  if (text.size() <= bytes) return text;
  size_t end = bytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

void appendAttribute(std::string& out, const char* name, std::string_view value) {
  out += ' ';
  out += name;
  out += "=\"";
  out += xmlEscape(value);
  out += '"';
}

void appendItem(std::string& out, const FileRecord& f) {
  const char* element = f.isDir ? "folder" : "file";
  out += "    <";
  out += element;
  appendAttribute(out, "path", f.path);
  appendAttribute(out, "name", f.name);
  appendAttribute(out, "kind", f.kindName());
  appendAttribute(out, "size", std::to_string(f.size));
  if (!f.ext.empty()) appendAttribute(out, "ext", f.ext);
  if (!f.uti.empty()) appendAttribute(out, "uti", f.uti);
  if (f.modified) appendAttribute(out, "modified", Fmt::iso(*f.modified));
  if (f.created) appendAttribute(out, "created", Fmt::iso(*f.created));
  if (!f.sha256.empty()) appendAttribute(out, "sha256", f.sha256);
  if (f.duration > 0) appendAttribute(out, "duration", Exporter::decimal(f.duration, 2));
  if (f.width >= 1) {
    appendAttribute(out, "width", std::to_string(f.width));
    appendAttribute(out, "height", std::to_string(f.height));
  }
  if (f.hidden) appendAttribute(out, "hidden", "true");
  if (f.tags.empty() && f.meta.empty()) {
    out += "/>\n";
    return;
  }
  out += ">\n";
  for (const std::string& tag : f.tags) out += "      <tag>" + xmlEscape(tag) + "</tag>\n";
  for (const auto& [key, value] : f.meta) {  // std::map: sorted by key.
    out += "      <meta key=\"" + xmlEscape(key) + "\">" + xmlEscape(value) + "</meta>\n";
  }
  out += "    </";
  out += element;
  out += ">\n";
}

// `text` as a JSON string literal. Text that is not UTF-8 gets U+FFFD in place of its stray bytes rather
// than failing: the example it goes into must stay a valid document.
std::string jsonString(const std::string& text) {
  return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

std::string credit() {
  return std::string("Exported by ") + std::string(AppInfo::name) + ", a " + std::string(AppInfo::company) +
         " (TVRL) product \u2014 " + std::string(AppInfo::website);
}

std::string bundleName(const std::string& catalogName, Date at) {
  time_t seconds = static_cast<time_t>(std::floor(at.seconds));
  struct tm local {};
  localtime_r(&seconds, &local);
  char stamp[32];
  std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H%M", &local);
  std::string suffix = std::string(" \u2014 Claude Export ") + stamp;
  std::string name = catalogName;
  for (char& c : name)
    if (c == '/' || c == '\0') c = '-';
  // 255 bytes is the limit of a name on Linux file systems; keep room for the suffix and a " 99" counter,
  // counting the bytes the name has on disk.
  const size_t room = 255 - suffix.size() - 3;
  while (NameMapping::toDisk(name).size() > room) {
    name = std::string(utf8Prefix(name, name.size() - 1));
  }
  return name + suffix;
}

fs::path bundleFolder(const fs::path& parent, const std::string& catalogName, Date at) {
  std::string name = bundleName(catalogName, at);
  fs::path folder = parent / NameMapping::toDisk(name);
  std::error_code ec;
  for (int n = 2; fs::exists(fs::symlink_status(folder, ec)) && n < 1000; ++n) {
    folder = parent / NameMapping::toDisk(name + " " + std::to_string(n));
  }
  return folder;
}

json record(const FileRecord& file, const Catalog& catalog) {
  json out = {
      {"catalog", catalog.name},
      {"path", file.path},
      {"name", file.name},
      {"ext", file.ext},
      {"kind", std::string(file.kindName())},
      {"uti", file.uti},
      {"is_folder", file.isDir},
      {"size", file.size},
      {"tags", file.tags},
      {"label", std::string(FinderLabel::name(file.label))},
      {"hidden", file.hidden},
  };
  if (file.created) out["created"] = Fmt::iso(*file.created);
  if (file.modified) out["modified"] = Fmt::iso(*file.modified);
  if (file.isDir) out["item_count"] = file.itemCount;
  if (!file.sha256.empty()) out["sha256"] = file.sha256;
  if (file.duration > 0) out["duration_seconds"] = file.duration;
  if (file.width >= 1) {
    out["width"] = file.width;
    out["height"] = file.height;
  }
  if (!file.meta.empty()) out["metadata"] = file.meta;
  return out;
}

std::string xmlEscape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  const auto* s = reinterpret_cast<const unsigned char*>(text.data());
  const size_t n = text.size();
  for (size_t i = 0; i < n;) {
    unsigned char c = s[i];
    if (c < 0x80) {
      ++i;
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
        case '\'':
          out += "&apos;";
          break;
        default:
          if (c >= 32 || c == '\t' || c == '\n' || c == '\r') out += static_cast<char>(c);
      }
      continue;
    }
    // A multi-byte sequence: copied when it is well-formed UTF-8, else its first byte becomes U+FFFD.
    size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
    std::string_view sequence = i + length <= n ? text.substr(i, length) : std::string_view();
    if (length == 1 || sequence.empty() || !NameMapping::isValidUTF8(sequence)) {
      out += "\uFFFD";
      ++i;
      continue;
    }
    // U+FFFE and U+FFFF are not characters XML allows, even though they are valid UTF-8.
    if (sequence != "\uFFFE" && sequence != "\uFFFF") out += sequence;
    i += length;
  }
  return out;
}

std::string xml(const Catalog& catalog, const std::vector<FileRecord>& files, Date now) {
  std::string out;
  out.reserve(files.size() * 200 + 1024);
  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<!-- " + xmlEscape(credit()) + " -->\n";
  out += "<catalog";
  appendAttribute(out, "name", catalog.name);
  appendAttribute(out, "exported", Fmt::iso(now));
  out += ">\n  <drive";
  appendAttribute(out, "volume", catalog.volumeName);
  appendAttribute(out, "format", catalog.volumeFormat);
  appendAttribute(out, "uuid", catalog.volumeUUID);
  appendAttribute(out, "capacity", std::to_string(catalog.capacity));
  appendAttribute(out, "free", std::to_string(catalog.freeSpace));
  appendAttribute(out, "root", catalog.rootPath);
  appendAttribute(out, "files", std::to_string(catalog.fileCount));
  appendAttribute(out, "folders", std::to_string(catalog.folderCount));
  appendAttribute(out, "totalSize", std::to_string(catalog.totalSize));
  if (catalog.scannedAt) appendAttribute(out, "scanned", Fmt::iso(*catalog.scannedAt));
  out += "/>\n  <items>\n";
  for (const FileRecord& f : files) appendItem(out, f);
  out += "  </items>\n</catalog>\n";
  return out;
}

std::string readme(const Catalog& catalog) {
  std::string out;
  out += "# TVRL Orrelin \u2014 export for Claude\n\n";
  out += credit() + "\n\n";
  out += "This folder describes the drive **" + catalog.name +
         "** so an AI assistant such as Claude can read it, answer questions about it and propose a tidy-up "
         "plan.\n\n";
  out += R"(## Files

| File | What it contains |
|---|---|
| `SUMMARY.md` | Human- and AI-readable overview: drive stats, file-type breakdown, folder tree to depth 3, largest folders and files, duplicates, naming problems. Start here. |
| `files.jsonl` | JSON Lines — one JSON object per file or folder (schema below). Best for analysis. |
| `catalog.xml` | The same records as XML (`<file>` / `<folder>` elements with attributes, `<tag>` and `<meta key="…">` children). |
| `organization-plan.template.json` | A starting point for a reorganization plan. |

## `files.jsonl` record schema

| Key | Type | Meaning |
|---|---|---|
| `catalog` | string | Catalog (drive) name |
| `path` | string | Path relative to the drive or folder root, `/`-separated |
| `name` | string | File or folder name |
| `ext` | string | Lower-case extension without the dot (may be empty) |
| `kind` | string | Folder, Image, Video, Audio, PDF, Document, Archive, Code, Application, Font, Disk Image or Other |
| `uti` | string | Apple Uniform Type Identifier, e.g. `public.jpeg` |
| `is_folder` | bool | true for folders |
| `size` | int | Bytes (for folders: total size of everything inside) |
| `item_count` | int | Folders only: number of direct children |
| `created`, `modified` | string | ISO 8601 timestamps (UTC) |
| `tags` | [string] | Finder tags |
| `label` | string | Finder label color (None, Gray, Green, Purple, Blue, Yellow, Red, Orange) |
| `hidden` | bool | Hidden file |
| `sha256` | string | Present only when checksums were computed during the scan |
| `duration_seconds` | number | Audio/video length |
| `width`, `height` | int | Image/video pixel size, or PDF page size in points |
| `metadata` | object | Extracted details, e.g. Artist, Album, Title, Bitrate, Video Codec, Camera, GPS, Pages |

## Organization plan schema (what Claude can write back)

Save a JSON file like this and open it with **Tools › Apply Organization Plan** in TVRL Orrelin:

```json
{
  "format": "tvrl-organization-plan",
  "version": 1,
  "catalog": )";
  out += jsonString(catalog.name);
  out += R"(,
  "description": "Group loose music by genre",
  "newFolders": ["Music/House", "Music/Techno"],
  "moves": [
    { "from": "Downloads/Track 01.mp3", "to": "Music/House/Track 01.mp3" }
  ]
}
```

Rules:

- Paths are relative to the drive/folder root (the same paths as in `files.jsonl`). Absolute paths are accepted only if they are inside the root.
- `newFolders` are created first (missing parent folders are created automatically).
- Each move renames or relocates one file or folder. `to` must not already exist — nothing is ever overwritten.
- Nothing is ever deleted. Paths that would leave the drive (for example `../`) are blocked.
- The app shows a dry-run preview of every step, applies only valid steps, and keeps an undo log so the whole plan can be reversed with one click.
)";
  return out;
}

std::string planTemplate(const Catalog& catalog) {
  json plan = {{"catalog", catalog.name},
               {"description", "Describe what this plan does"},
               {"format", "tvrl-organization-plan"},
               {"moves", json::array()},
               {"newFolders", json::array()},
               {"version", 1}};
  try {
    return plan.dump(2) + "\n";
  } catch (const json::exception&) {
    return "{}";  // A name that is not UTF-8 cannot be written as JSON.
  }
}

std::vector<fs::path> exportTo(CatalogDB& store, const Catalog& catalog, const fs::path& to) {
  std::error_code ec;
  fs::create_directories(to, ec);
  if (ec || !fs::is_directory(to)) {
    throw ExportError("Could not create the folder " + quoted(to.string()) + ": " +
                      (ec ? ec.message() : std::string("a file of that name is in the way")));
  }
  const Date now = Date::now();
  const std::vector<FileRecord> files = store.allFiles(catalog.id);
  std::vector<fs::path> written;
  auto write = [&](const char* name, const std::string& contents) {
    fs::path target = to / name;
    writeFileAtomically(target, contents);
    written.push_back(target);
  };

  std::string lines;
  lines.reserve(files.size() * 300);
  for (const FileRecord& f : files) {
    // Stored text is UTF-8; should a row hold stray bytes all the same, they become U+FFFD, not a failure.
    lines += record(f, catalog).dump(-1, ' ', false, json::error_handler_t::replace);
    lines += '\n';
  }
  write(kFileNames[0], lines);
  lines = std::string();  // Only one whole file is held at a time.
  write(kFileNames[1], xml(catalog, files, now));
  write(kFileNames[2], summary(catalog, files, store, now));
  write(kFileNames[3], readme(catalog));
  write(kFileNames[4], planTemplate(catalog));
  return written;
}

}  // namespace orrelin::ClaudeExporter
