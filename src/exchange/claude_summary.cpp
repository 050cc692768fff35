// SUMMARY.md of the export for Claude: a digest of one catalog, bounded by fixed limits so that it stays
// readable however large the drive is.
#include <unicode/coll.h>
#include <unicode/locid.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <unordered_map>

#include "exchange/claude_exporter.h"
#include "exchange/exporter.h"
#include "search/duplicates.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::ClaudeExporter {

namespace {

constexpr size_t kTopExtensions = 15;
constexpr size_t kTreeEntriesPerLevel = 60;
constexpr int kTreeDepth = 3;
constexpr size_t kLargest = 20;
constexpr int kDuplicateSets = 40;
constexpr size_t kProblemsPerCategory = 40;

// Names compared as a file browser lists them when told to ignore case: by the user's language, with
// accents but not case distinguishing names; names that still tie keep their byte order.
class CaseInsensitiveOrder {
 public:
  CaseInsensitiveOrder() {
    icu::Locale locale = icu::Locale::getDefault();
    // ICU reads LANG=C as en_US_POSIX, whose collation is the byte order of ASCII, capitals first.
    if (std::strcmp(locale.getVariant(), "POSIX") == 0 || std::strlen(locale.getLanguage()) == 0)
      locale = icu::Locale::getRoot();
    UErrorCode status = U_ZERO_ERROR;
    m_collator.reset(icu::Collator::createInstance(locale, status));
    if (U_FAILURE(status)) m_collator.reset();
    if (!m_collator) return;
    status = U_ZERO_ERROR;
    m_collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
    m_collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  }

  bool less(const std::string& a, const std::string& b) const {
    if (m_collator) {
      UErrorCode status = U_ZERO_ERROR;
      UCollationResult r =
          m_collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                  icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
      if (U_SUCCESS(status) && r != UCOL_EQUAL) return r == UCOL_LESS;
    }
    return a < b;
  }

 private:
  std::unique_ptr<icu::Collator> m_collator;
};

// A table cell: a vertical bar would end the cell and a line break the row, and an empty cell reads
// better as "—".
std::string cell(const std::string& text) {
  if (text.empty()) return std::string(Fmt::kNone);
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c == '|')
      out += "\\|";
    else if (c == '\n' || c == '\r')
      out += ' ';
    else
      out += c;
  }
  return out;
}

// `text` as inline code: the backtick run around it is longer than any inside it, and a blank pads a
// text that begins or ends with a backtick, so every path shows as it is.
std::string code(const std::string& text) {
  size_t longest = 0, run = 0;
  for (char c : text) {
    run = c == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  std::string fence(longest + 1, '`');
  bool pad = !text.empty() && (text.front() == '`' || text.back() == '`');
  return fence + (pad ? " " : "") + text + (pad ? " " : "") + fence;
}

std::string percent(int64_t part, int64_t whole) {
  return Exporter::decimal(
             static_cast<double>(part) * 100.0 / static_cast<double>(std::max<int64_t>(1, whole)), 1) +
         "%";
}

void driveSection(std::string& out, const Catalog& catalog) {
  auto row = [&](const char* field, const std::string& value) {
    out += "| ";
    out += field;
    out += " | " + cell(value) + " |\n";
  };
  const bool sized = catalog.capacity >= 1;
  out += "## Drive\n\n| Field | Value |\n|---|---|\n";
  row("Catalog", catalog.name);
  row("Volume", catalog.volumeName);
  row("Format", catalog.volumeFormat);
  row("UUID", catalog.volumeUUID);
  row("Root path", catalog.rootPath);
  row("Capacity", sized ? Fmt::size(catalog.capacity) : std::string(Fmt::kNone));
  row("Free", sized ? Fmt::size(catalog.freeSpace) : std::string(Fmt::kNone));
  row("Files", Fmt::count(catalog.fileCount));
  row("Folders", Fmt::count(catalog.folderCount));
  row("Cataloged size", Fmt::size(catalog.totalSize));
  row("Last scanned", Fmt::date(catalog.scannedAt));
  out += "\n";
}

void kindsSection(std::string& out, const std::vector<FileRecord>& files) {
  struct Kind {
    std::string name;
    int64_t files = 0;
    int64_t bytes = 0;
  };
  std::map<std::string, Kind> byKind;
  std::map<std::string, int64_t> extensions;
  int64_t total = 0;
  for (const FileRecord& f : files) {
    if (f.isDir) continue;
    Kind& k = byKind[std::string(f.kindName())];
    k.name = f.kindName();
    ++k.files;
    k.bytes += f.size;
    total += f.size;
    if (!f.ext.empty()) ++extensions[f.ext];
  }
  std::vector<Kind> kinds;
  for (auto& [name, kind] : byKind) kinds.push_back(kind);
  std::stable_sort(kinds.begin(), kinds.end(),
                   [](const Kind& a, const Kind& b) { return a.bytes > b.bytes; });
  out += "## File types\n\n| Kind | Files | Size | Share of space |\n|---|---:|---:|---:|\n";
  for (const Kind& k : kinds) {
    out += "| " + k.name + " | " + Fmt::count(k.files) + " | " + Fmt::size(k.bytes) + " | " +
           percent(k.bytes, total) + " |\n";
  }

  std::vector<std::pair<std::string, int64_t>> top(extensions.begin(), extensions.end());
  std::stable_sort(top.begin(), top.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
  if (top.size() > kTopExtensions) top.resize(kTopExtensions);
  std::string list;
  for (const auto& [ext, count] : top) {
    list += (list.empty() ? "." : ", .") + ext + " (" + std::to_string(count) + ")";
  }
  out += "\nTop extensions: " + list + "\n\n";
}

class FolderTree {
 public:
  explicit FolderTree(const std::vector<FileRecord>& files) {
    for (const FileRecord& f : files)
      if (f.isDir) m_children[f.parentID].push_back(&f);
  }

  // Lines for the folders under `parentID` and, while depth allows, below them.
  void walk(std::string& out, int64_t parentID, int depth, const std::string& prefix) {
    if (depth >= kTreeDepth) return;
    auto found = m_children.find(parentID);
    if (found == m_children.end()) return;
    std::vector<const FileRecord*>& all = found->second;
    const size_t shown = std::min(all.size(), kTreeEntriesPerLevel);
    // Only the entries shown need their places: the first 60 by name, in order.
    std::partial_sort(
        all.begin(), all.begin() + static_cast<long>(shown), all.end(),
        [&](const FileRecord* a, const FileRecord* b) { return m_order.less(a->name, b->name); });
    const bool cut = all.size() > kTreeEntriesPerLevel;
    for (size_t i = 0; i < shown; ++i) {
      const FileRecord& f = *all[i];
      const bool last = i + 1 == shown && !cut;
      out += prefix + (last ? "\u2514\u2500\u2500 " : "\u251C\u2500\u2500 ") + f.name + "/  (" +
             Fmt::count(f.itemCount) + " item" + (f.itemCount == 1 ? "" : "s") + ", " + Fmt::size(f.size) +
             ")\n";
      walk(out, f.id, depth + 1, prefix + (last ? "    " : "\u2502   "));
    }
    if (cut) {
      out += prefix + "\u2514\u2500\u2500 \u2026 " +
             Fmt::count(static_cast<int64_t>(all.size() - kTreeEntriesPerLevel)) + " more folders\n";
    }
  }

 private:
  std::unordered_map<int64_t, std::vector<const FileRecord*>> m_children;
  CaseInsensitiveOrder m_order;
};

void treeSection(std::string& out, const Catalog& catalog, const std::vector<FileRecord>& files) {
  std::string tree = catalog.name + "/\n";
  FolderTree(files).walk(tree, 0, 0, "");
  // The fence must be longer than any run of backticks in the names it holds.
  size_t longest = 0, run = 0;
  for (char c : tree) {
    run = c == '`' ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  std::string fence(std::max<size_t>(3, longest + 1), '`');
  out += "## Folder tree (to depth 3)\n\n" + fence + "\n" + tree + fence + "\n\n";
}

// The `limit` largest records that `pick` accepts, size descending, ties in path order.
std::vector<const FileRecord*> largest(const std::vector<FileRecord>& files, bool folders, size_t limit) {
  std::vector<const FileRecord*> chosen;
  for (const FileRecord& f : files)
    if (f.isDir == folders) chosen.push_back(&f);
  auto bySize = [](const FileRecord* a, const FileRecord* b) {
    return a->size != b->size ? a->size > b->size : a->path < b->path;
  };
  const size_t n = std::min(limit, chosen.size());
  std::partial_sort(chosen.begin(), chosen.begin() + static_cast<long>(n), chosen.end(), bySize);
  chosen.resize(n);
  return chosen;
}

void largestSections(std::string& out, const std::vector<FileRecord>& files) {
  out += "## Largest folders\n\n| Folder | Size | Items |\n|---|---:|---:|\n";
  for (const FileRecord* f : largest(files, true, kLargest)) {
    out +=
        "| " + cell(code(f->path)) + " | " + Fmt::size(f->size) + " | " + Fmt::count(f->itemCount) + " |\n";
  }
  out += "\n## Largest files\n\n| File | Size | Modified |\n|---|---:|---|\n";
  for (const FileRecord* f : largest(files, false, kLargest)) {
    out += "| " + cell(code(f->path)) + " | " + Fmt::size(f->size) + " | " + Fmt::date(f->modified) + " |\n";
  }
  out += "\n";
}

void duplicatesSection(std::string& out, const Catalog& catalog, CatalogDB& store) {
  std::vector<DuplicateGroup> groups;
  try {
    groups = store.duplicates(DuplicateMode::nameSize, /*minSize=*/1, {catalog.id},
                              /*crossCatalogOnly=*/false, kDuplicateSets);
  } catch (const std::exception&) {
    groups.clear();  // The digest goes on without this section's findings.
  }
  out += "## Duplicates on this drive (same name and size)\n\n";
  if (groups.empty()) {
    out += "None found.\n\n";
    return;
  }
  for (const DuplicateGroup& g : groups) {
    out += "- **" + g.name + "** \u2014 " + Fmt::count(static_cast<int64_t>(g.members.size())) +
           " copies \u00D7 " + Fmt::size(g.size) + " (" + Fmt::size(g.wasted()) + " reclaimable)\n";
    for (const DuplicateMember& m : g.members) out += "  - " + code(m.file.path) + "\n";
  }
  out += "\n";
}

void problemsSection(std::string& out, const std::vector<FileRecord>& files) {
  out += "## Naming problems\n\n";
  std::vector<Problem> problems = namingProblems(files);
  if (problems.empty()) {
    out += "No naming problems found.\n\n";
    return;
  }
  std::map<std::string, std::vector<const Problem*>> byCategory;  // Byte order is code-point order.
  for (const Problem& p : problems) byCategory[p.category].push_back(&p);
  for (const auto& [category, list] : byCategory) {
    out += "### " + category + " (" + Fmt::count(static_cast<int64_t>(list.size())) + ")\n\n";
    for (size_t i = 0; i < list.size() && i < kProblemsPerCategory; ++i) {
      out += "- " + code(list[i]->path);
      if (!list[i]->detail.empty()) out += " \u2014 " + list[i]->detail;
      out += "\n";
    }
    if (list.size() > kProblemsPerCategory) {
      out +=
          "- \u2026 and " + Fmt::count(static_cast<int64_t>(list.size() - kProblemsPerCategory)) + " more\n";
    }
    out += "\n";
  }
}

}  // namespace

std::string summary(const Catalog& catalog, const std::vector<FileRecord>& files, CatalogDB& store,
                    Date now) {
  std::string out;
  out += "# Drive summary: " + catalog.name + "\n\n";
  out += "_" + credit() + ". Generated " + Fmt::date(now) + "._\n\n";
  driveSection(out, catalog);
  kindsSection(out, files);
  treeSection(out, catalog, files);
  largestSections(out, files);
  duplicatesSection(out, catalog, store);
  problemsSection(out, files);
  out +=
      "## Proposing a reorganization\n\nWrite an organization plan as described in README.md and load it in "
      "TVRL Orrelin with **Tools \u203A Apply Organization Plan**. Nothing is ever deleted or overwritten, "
      "and every applied plan can be undone with one click.\n";
  return out;
}

}  // namespace orrelin::ClaudeExporter
