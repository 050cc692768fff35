// The exchange actions: catalogs and hits out to CSV and JSON, exchange files back in, the export for
// Claude, the inventory web site, and the sample data. Each asks through a panel, runs on the main thread,
// and says how it went in the program's fixed words.
#include <QDateTime>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <exception>
#include <system_error>

#include "app/qt/app_model.h"
#include "app/qt/desktop_services.h"
#include "app/qt/dialogs.h"
#include "core/app_paths.h"
#include "core/date.h"
#include "exchange/claude_exporter.h"
#include "exchange/exporter.h"
#include "exchange/sample_data.h"
#include "search/qt/report_panes.h"
#include "search/qt/search_state.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }
QString errorText(const std::exception& error) { return QString::fromUtf8(error.what()); }
QString countText(int64_t count) { return qs(Fmt::count(count)); }

fs::path toPath(const QString& text) { return fs::path(QFile::encodeName(text).toStdString()); }
QString fromPath(const fs::path& path) { return QFile::decodeName(QByteArray::fromStdString(path.native())); }

constexpr const char* kDefaultSiteTitle = "Drive Inventory";
// The longest name most Linux file systems allow, in bytes.
constexpr size_t kMaxNameBytes = 255;

// A name proposed for one file or folder: a "/" would make it a path.
std::string oneName(std::string name) {
  std::replace(name.begin(), name.end(), '/', '-');
  return name;
}

// `text` cut to at most `bytes` bytes, never inside a UTF-8 sequence.
std::string utf8Prefix(std::string text, size_t bytes) {
  if (text.size() <= bytes) return text;
  size_t cut = bytes;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  text.resize(cut);
  return text;
}

// A new folder for the web site inside `parent`: the title (or "Drive Inventory"), a blank and the local
// time as "yyyy-MM-dd HHmm". A site made earlier in the same minute is never written over: the name then
// gets " 2", " 3", ….
fs::path newSiteFolder(const fs::path& parent, const std::string& title) {
  const std::string stamp =
      " " + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HHmm")).toStdString();
  std::string name = QString::fromStdString(title).trimmed().toStdString();
  if (name.empty()) name = kDefaultSiteTitle;
  // Room for the time and a counter.
  name = utf8Prefix(oneName(name), kMaxNameBytes - stamp.size() - 4) + stamp;
  fs::path folder = parent / name;
  std::error_code ec;
  for (int n = 2; fs::exists(fs::symlink_status(folder, ec)) && n < 1000; ++n) {
    folder = parent / (name + " " + std::to_string(n));
  }
  return folder;
}

}  // namespace

fs::path AppModel::exchangeFolder() const {
  std::error_code ec;
  if (!m_exchangeFolder.empty() && fs::is_directory(m_exchangeFolder, ec)) return m_exchangeFolder;
  const fs::path documents = toPath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  if (!documents.empty() && fs::is_directory(documents, ec)) return documents;
  return AppPaths::home();
}

std::vector<Catalog> AppModel::catalogsByID(const QVariantList& ids) const {
  std::set<int64_t> wanted;
  for (const QVariant& id : ids) wanted.insert(id.toLongLong());
  std::vector<Catalog> chosen;
  for (const Catalog& c : m_catalogs)
    if (wanted.count(c.id)) chosen.push_back(c);
  return chosen;
}

// --- Catalogs and hits out ---

void AppModel::exportCatalogs(const std::vector<Catalog>& catalogs, bool csv) {
  if (!m_store) return;
  if (catalogs.empty()) {
    show(QStringLiteral("Nothing to Export"), QStringLiteral("Choose at least one catalog first."));
    return;
  }
  const QString extension = csv ? QStringLiteral("csv") : QStringLiteral("json");
  const QString fileName = catalogs.size() == 1 ? qs(oneName(catalogs.front().name)) + "." + extension
                                                : QStringLiteral("TVRL Orrelin Catalogs.") + extension;
  std::optional<fs::path> to = Dialogs::chooseSave(
      csv ? QStringLiteral("Export the catalogs as CSV") : QStringLiteral("Export the catalogs as JSON"),
      QStringLiteral("Export"), fileName, exchangeFolder(), {extension});
  if (!to) return;
  m_exchangeFolder = to->parent_path();
  int64_t count = 0;
  try {
    count =
        csv ? Exporter::exportCSV(*m_store, catalogs, *to) : Exporter::exportJSON(*m_store, catalogs, *to);
  } catch (const std::exception& error) {
    show(QStringLiteral("Export Failed"), errorText(error));
    return;
  }
  flash(QStringLiteral("Exported %1 records to %2")
            .arg(countText(count), csv ? QStringLiteral("CSV") : QStringLiteral("JSON")));
}

void AppModel::exportCSV(const std::vector<Catalog>& catalogs) { exportCatalogs(catalogs, /*csv=*/true); }
void AppModel::exportJSON(const std::vector<Catalog>& catalogs) { exportCatalogs(catalogs, /*csv=*/false); }
void AppModel::exportCSV(const QVariantList& catalogIDs) { exportCSV(catalogsByID(catalogIDs)); }
void AppModel::exportJSON(const QVariantList& catalogIDs) { exportJSON(catalogsByID(catalogIDs)); }

void AppModel::exportHits(const std::vector<SearchHit>& hits, bool csv, const QString& fileName,
                          const QString& noun) {
  std::optional<fs::path> to =
      Dialogs::chooseSave(QStringLiteral("Export the results"), QStringLiteral("Export"), fileName,
                          exchangeFolder(), {csv ? QStringLiteral("csv") : QStringLiteral("json")});
  if (!to) return;
  m_exchangeFolder = to->parent_path();
  try {
    if (csv)
      Exporter::exportHitsCSV(hits, *to);
    else
      Exporter::exportHitsJSON(hits, *to);
  } catch (const std::exception& error) {
    show(QStringLiteral("Export Failed"), errorText(error));
    return;
  }
  flash(QStringLiteral("Exported %1 %2").arg(countText(static_cast<int64_t>(hits.size())), noun));
}

void AppModel::exportSearchHits(const std::vector<SearchHit>& hits, bool csv) {
  exportHits(hits, csv, csv ? QStringLiteral("Search Results.csv") : QStringLiteral("Search Results.json"),
             QStringLiteral("results"));
}

void AppModel::exportReportHits(const std::vector<SearchHit>& hits) {
  exportHits(hits, /*csv=*/true, QStringLiteral("Report.csv"), QStringLiteral("rows"));
}

void AppModel::exportSearchResults(bool csv) { exportSearchHits(SearchState::shared().hits(), csv); }

void AppModel::exportReport(QObject* pane) {
  if (auto* empty = qobject_cast<EmptyFoldersPane*>(pane))
    exportReportHits(empty->hits());
  else if (auto* largeOld = qobject_cast<LargeOldPane*>(pane))
    exportReportHits(largeOld->hits());
  else if (auto* missing = qobject_cast<MissingPane*>(pane))
    exportReportHits(missing->hits());
}

// --- Exchange files in ---

void AppModel::importCatalogs() {
  if (!m_store) return;
  std::optional<fs::path> from =
      Dialogs::chooseOpen(QStringLiteral("Choose a catalog exported from TVRL Orrelin (JSON or CSV)."),
                          QStringLiteral("Import"), exchangeFolder(), {"json", "csv"});
  if (!from) return;
  m_exchangeFolder = from->parent_path();
  int64_t count = 0;
  try {
    // Anything but a ".csv" file is read as JSON, whose reader says plainly when it is not an export.
    const bool csv = QString::fromStdString(from->extension().string()).toLower() == QStringLiteral(".csv");
    count = csv ? Exporter::importCSV(*m_store, *from) : Exporter::importJSON(*m_store, *from);
  } catch (const std::exception& error) {
    show(QStringLiteral("Import Failed"), errorText(error));
    return;
  }
  reload();
  if (!m_catalogs.empty()) {
    const auto newest = std::max_element(m_catalogs.begin(), m_catalogs.end(),
                                         [](const Catalog& a, const Catalog& b) { return a.id < b.id; });
    setSelectedCatalogID(newest->id);
  }
  flash(QStringLiteral("Imported %1 catalog%2")
            .arg(countText(count), count == 1 ? QString() : QStringLiteral("s")));
}

// --- Folders for Claude and the web ---

void AppModel::exportForClaude(const Catalog& catalog) {
  if (!m_store) return;
  std::optional<fs::path> parent = Dialogs::chooseOpen(
      QStringLiteral("Choose where to save the Claude export. A new folder will be created inside it."),
      QStringLiteral("Export Here"), exchangeFolder(), {}, /*folders=*/true);
  if (!parent) return;
  m_exchangeFolder = *parent;
  const fs::path folder = ClaudeExporter::bundleFolder(*parent, catalog.name, Date::now());
  try {
    ClaudeExporter::exportTo(*m_store, catalog, folder);
  } catch (const std::exception& error) {
    show(QStringLiteral("Export Failed"), errorText(error));
    return;
  }
  DesktopServices::reveal(folder / "SUMMARY.md");
  flash(QStringLiteral("Claude export ready: SUMMARY.md, files.jsonl, catalog.xml, README.md"));
}

void AppModel::exportForClaude(qint64 catalogID) {
  if (auto c = catalog(catalogID)) exportForClaude(*c);
}

std::optional<fs::path> AppModel::exportWeb(const std::vector<Catalog>& catalogs,
                                            const WebExporter::Options& options) {
  if (!m_store) return std::nullopt;
  if (catalogs.empty()) {
    show(QStringLiteral("Nothing to Export"), QStringLiteral("Choose at least one catalog first."));
    return std::nullopt;
  }
  std::optional<fs::path> parent = Dialogs::chooseOpen(
      QStringLiteral("Choose where to save the inventory web site. A new folder will be created inside it."),
      QStringLiteral("Generate Here"), exchangeFolder(), {}, /*folders=*/true);
  if (!parent) return std::nullopt;
  m_exchangeFolder = *parent;
  fs::path index;
  try {
    index = WebExporter::exportSite(*m_store, catalogs, newSiteFolder(*parent, options.title),
                                    m_thumbnailsPath, options);
  } catch (const std::exception& error) {
    show(QStringLiteral("Web Export Failed"), errorText(error));
    return std::nullopt;
  }
  flash(QStringLiteral("Inventory web site generated"));
  return index;
}

QString AppModel::exportWeb(const QVariantList& catalogIDs, const QString& title, bool includeThumbnails,
                            bool includeHidden) {
  WebExporter::Options options;
  options.title = title.toStdString();
  options.includeThumbnails = includeThumbnails;
  options.includeHidden = includeHidden;
  std::optional<fs::path> index = exportWeb(catalogsByID(catalogIDs), options);
  return index ? fromPath(*index) : QString();
}

void AppModel::openExportedFile(const QString& path) {
  if (!path.isEmpty()) DesktopServices::open(toPath(path));
}

void AppModel::revealExportedFile(const QString& path) {
  if (!path.isEmpty()) DesktopServices::reveal(toPath(path));
}

// --- Sample data ---

void AppModel::loadSampleData() {
  if (!m_store) return;
  try {
    SampleData::load(*m_store);
  } catch (const std::exception& error) {
    show(QStringLiteral("Could Not Load Sample Data"), errorText(error));
    return;
  }
  reload();
  auto sample =
      std::find_if(m_catalogs.begin(), m_catalogs.end(), [](const Catalog& c) { return c.isSample; });
  if (sample != m_catalogs.end()) setSelectedCatalogID(sample->id);
  setSection(AppSection::browse);
  flash(QStringLiteral("Sample cartridges loaded"));
}

void AppModel::removeSampleData() {
  if (!m_store) return;
  std::set<int64_t> removed;
  try {
    for (const Catalog& c : m_store->catalogs())
      if (c.isSample) removed.insert(c.id);
    if (removed.empty()) {
      flash(QStringLiteral("There is no sample data to remove"));
      return;
    }
    // No backup: the sample data can be loaded again at any time.
    SampleData::removeSampleData(*m_store, m_thumbnailsPath);
  } catch (const std::exception& error) {
    show(QStringLiteral("Could Not Remove Sample Data"), errorText(error));
    return;
  }
  // A sample catalog switched to auto-update leaves no stale id in the settings for a later catalog.
  std::set<int64_t> watched = m_watchedIDs;
  if (std::erase_if(watched, [&](int64_t id) { return removed.count(id) != 0; }) > 0)
    setWatchedIDs(std::move(watched), /*persist=*/true);
  reload();
  flash(QStringLiteral("Sample data removed"));
}

}  // namespace orrelin
