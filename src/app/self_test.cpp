// The built-in self-test: a temporary data folder, a generated tree, and one check per subsystem.
#include "app/self_test.h"

#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/backup_manager.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "exchange/exporter.h"
#include "organize/plan_engine.h"
#include "scan/scan_worker.h"
#include "search/search_query.h"
#include "store/catalog_db.h"

namespace orrelin {

namespace {

namespace fs = std::filesystem;

// A failed check: its text is the reason printed after the check's name.
struct CheckFailed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void expect(bool condition, const std::string& reason) {
  if (!condition) throw CheckFailed(reason);
}

std::string str(int64_t value) { return std::to_string(value); }

// Points an environment variable elsewhere and puts the former value back when it ends.
class EnvOverride {
 public:
  EnvOverride(const char* name, const std::string& value) : m_name(name) {
    if (const char* old = ::getenv(name)) m_old = old;
    ::setenv(name, value.c_str(), /*overwrite=*/1);
  }
  ~EnvOverride() {
    if (m_old)
      ::setenv(m_name, m_old->c_str(), 1);
    else
      ::unsetenv(m_name);
  }
  EnvOverride(const EnvOverride&) = delete;
  EnvOverride& operator=(const EnvOverride&) = delete;

 private:
  const char* m_name;
  std::optional<std::string> m_old;
};

// Contents of the generated tree, by relative path; an empty optional is a folder.
const std::vector<std::pair<std::string, std::optional<std::string>>>& treeEntries() {
  static const std::vector<std::pair<std::string, std::optional<std::string>>> entries = {
      {"notes", std::nullopt},
      {"notes/report-2024.txt", "abc"},
      {"notes/report-2025.txt", "quarterly numbers\n"},
      {"notes/todo.md", "- back up the archive drive\n"},
      {"photos", std::nullopt},
      {"photos/2024", std::nullopt},
      {"photos/2024/readme.txt", "pictures go here\n"},
      {"photos/empty", std::nullopt},
      {"annual-report.csv", "year,total\n2024,12\n"},
      {"data.bin", std::string(1000, '\x07')},
  };
  return entries;
}

// What the self-test shares between its checks.
struct Run {
  fs::path tree;                     // The generated folder that is scanned.
  std::optional<int64_t> catalogID;  // Set by the scan.
};

void makeTree(const fs::path& root) {
  fs::create_directories(root);
  for (const auto& [path, contents] : treeEntries()) {
    if (!contents) {
      fs::create_directories(root / path);
      continue;
    }
    std::ofstream file(root / path, std::ios::binary);
    file << *contents;
    if (!file.flush()) throw CheckFailed("could not write " + (root / path).string());
  }
}

std::unique_ptr<CatalogDB> openStore() { return std::make_unique<CatalogDB>(AppPaths::database().string()); }

void checkSchema(Run&) {
  auto store = openStore();
  SQLiteDB& db = store->db();
  auto version = db.scalarText("SELECT value FROM meta WHERE key='schema'");
  expect(version == "1", "schema version is " + version.value_or("missing") + ", expected 1");
  for (const char* table : {"catalogs", "files", "groups", "scan_log", "files_fts"}) {
    expect(db.scalarInt("SELECT count(*) FROM sqlite_master WHERE name=?", {table}) == 1,
           std::string("table ") + table + " is missing");
  }
  expect(store->catalogs().empty(), "a new database already holds catalogs");
}

void checkScan(Run& run) {
  makeTree(run.tree);
  int64_t files = 0, folders = 0, bytes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(run.tree)) {
    if (entry.is_directory()) {
      ++folders;
    } else {
      ++files;
      bytes += static_cast<int64_t>(entry.file_size());
    }
  }
  ScanOptions options;
  options.metadata = false;
  options.thumbnails = false;
  options.hashes = true;
  ScanWorker worker(AppPaths::database().string(), NameMapping::storedPath(run.tree), std::nullopt,
                    "Self-Test", std::nullopt, options, AppPaths::thumbnails(), nullptr, {});
  ScanResult result = worker.run();
  expect(!result.error, "the scan failed: " + result.error.value_or(""));
  expect(result.catalogID > 0, "the scan made no catalog");
  run.catalogID = result.catalogID;
  expect(result.addedCount == files + folders,
         "the scan added " + str(result.addedCount) + " entries, the tree has " + str(files + folders));

  auto store = openStore();
  auto catalog = store->catalog(result.catalogID);
  expect(catalog.has_value(), "the scanned catalog is not in the database");
  expect(catalog->fileCount == files && catalog->folderCount == folders && catalog->totalSize == bytes,
         "the catalog counts " + str(catalog->fileCount) + " files, " + str(catalog->folderCount) +
             " folders, " + str(catalog->totalSize) + " bytes; the tree has " + str(files) + ", " +
             str(folders) + ", " + str(bytes));
  auto sha = store->db().scalarText("SELECT sha256 FROM files WHERE catalog_id=? AND path=?",
                                    {result.catalogID, "notes/report-2024.txt"});
  expect(sha == "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
         "the checksum of a known file is " + sha.value_or("missing"));
}

void checkSearch(Run& run) {
  expect(run.catalogID.has_value(), "no catalog to search (the scan failed)");
  auto store = openStore();
  SearchQuery query;
  query.text = "report";
  auto hits = store->search(query);
  std::vector<std::string> paths;
  for (const SearchHit& hit : hits) paths.push_back(hit.path());
  const std::vector<std::string> expected = {"annual-report.csv", "notes/report-2024.txt",
                                             "notes/report-2025.txt"};
  std::sort(paths.begin(), paths.end());
  expect(paths == expected,
         "\"report\" found " + str(static_cast<int64_t>(paths.size())) + " items, expected 3");

  query.text = "^report-\\d{4}\\.txt$";
  query.mode = SearchQuery::Mode::regex;
  expect(store->search(query).size() == 2, "the regular expression search did not find the two reports");
  query.mode = SearchQuery::Mode::contains;
  query.text = "no-such-name";
  expect(store->search(query).empty(), "a search for a name that does not exist found something");
}

void checkPlanDryRun(Run& run) {
  OrganizationPlan plan = PlanEngine::parse(R"({
    "description": "Self-test",
    "newFolders": ["sorted"],
    "moves": [{"from": "notes/todo.md", "to": "sorted/todo.md"},
              {"from": "notes/absent.txt", "to": "sorted/absent.txt"},
              {"from": "../outside.txt", "to": "sorted/outside.txt"}]})");
  const std::string root = NameMapping::storedPath(run.tree);
  auto steps = PlanEngine::validate(plan, root, PlanStep::Kind::move);
  expect(steps.size() == 4,
         "the dry run gave " + str(static_cast<int64_t>(steps.size())) + " steps, expected 4");
  const bool expected[] = {true, true, false, false};
  for (size_t i = 0; i < steps.size(); ++i) {
    expect(steps[i].ok == expected[i], "step " + str(static_cast<int64_t>(i + 1)) + " (" + steps[i].to +
                                           ") is " +
                                           (steps[i].ok ? "allowed" : "blocked: " + steps[i].status));
  }
  expect(!fs::exists(run.tree / "sorted") && fs::exists(run.tree / "notes/todo.md"),
         "the dry run changed the tree");
}

void checkBackup(Run&) {
  auto store = openStore();
  fs::path file = BackupManager::backupNow(*store, "manual");
  BackupManager::checkBackupFile(file);
  auto listed = BackupManager::list();
  expect(!listed.empty() && listed.front() == file, "the new backup is not the first in the list");
  CatalogDB copy(file.string());
  expect(copy.catalogs().size() == store->catalogs().size(), "the backup holds another number of catalogs");
  expect(BackupManager::lastBackup().has_value(), "the time of the last backup was not recorded");
}

void checkExportImport(Run& run) {
  expect(run.catalogID.has_value(), "no catalog to export (the scan failed)");
  auto store = openStore();
  auto catalog = store->catalog(*run.catalogID);
  expect(catalog.has_value(), "the scanned catalog is gone");
  const fs::path file = run.tree.parent_path() / "export.json";
  int64_t written = Exporter::exportJSON(*store, {*catalog}, file);
  expect(written == catalog->fileCount + catalog->folderCount,
         "the export wrote " + str(written) + " records, the catalog has " +
             str(catalog->fileCount + catalog->folderCount));
  expect(Exporter::importJSON(*store, file) == 1, "the import did not read one catalog back");

  std::optional<Catalog> imported;
  for (const Catalog& c : store->catalogs())
    if (c.id != catalog->id) imported = c;
  expect(imported.has_value(), "the imported catalog is not in the database");
  expect(imported->name == catalog->name, "the imported catalog is called \"" + imported->name + "\"");
  auto rows = [&](int64_t id) {
    std::vector<std::string> out;
    for (const FileRecord& f : store->allFiles(id)) {
      out.push_back(f.path + "|" + (f.isDir ? "d" : "f") + "|" + str(f.size) + "|" +
                    std::string(f.kindName()) + "|" + f.sha256);
    }
    return out;
  };
  expect(rows(imported->id) == rows(catalog->id), "the imported rows differ from the exported ones");
  expect(imported->totalSize == catalog->totalSize && imported->fileCount == catalog->fileCount,
         "the imported catalog's totals differ");
}

}  // namespace

int runSelfTest(std::ostream& out) {
  // $TMPDIR as given, as mktemp(1) takes it: a wrong one is reported by the first check, not worked around.
  const char* tmpdir = ::getenv("TMPDIR");
  return runSelfTest(out, tmpdir != nullptr && tmpdir[0] == '/' ? fs::path(tmpdir) : fs::path("/tmp"));
}

int runSelfTest(std::ostream& out, const fs::path& tempBase) {
  int passed = 0, failed = 0;
  auto report = [&](const std::string& name, const std::function<void()>& body) {
    try {
      body();
      out << "ok   " << name << "\n";
      ++passed;
    } catch (const std::exception& e) {
      out << "FAIL " << name << ": " << e.what() << "\n";
      ++failed;
    }
    out.flush();
  };

  // Every check works in this folder. When it cannot be made, the variables still point into it, so the
  // checks fail on their own instead of reaching the user's data.
  std::string pattern = (tempBase / "orrelin-selftest-XXXXXX").string();
  fs::path folder;
  bool made = false;  // Only a folder this run made is removed.
  report("temporary data folder", [&] {
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw CheckFailed("could not create a folder in " + tempBase.string() + ": " + std::strerror(errno));
    }
    folder = pattern;
    made = true;
  });
  if (folder.empty()) folder = tempBase / "orrelin-selftest-unavailable";
  {
    EnvOverride data("XDG_DATA_HOME", (folder / "data").string());
    EnvOverride config("XDG_CONFIG_HOME", (folder / "config").string());
    Run run{folder / "tree", std::nullopt};
    const std::pair<const char*, void (*)(Run&)> checks[] = {
        {"schema", checkSchema},           {"scan", checkScan},     {"search", checkSearch},
        {"plan dry run", checkPlanDryRun}, {"backup", checkBackup}, {"export and import", checkExportImport},
    };
    for (const auto& entry : checks) {
      void (*check)(Run&) = entry.second;
      report(entry.first, [&] { check(run); });
    }
  }
  if (made) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  out << passed << " passed, " << failed << " failed\n";
  return failed == 0 ? 0 : 1;
}

}  // namespace orrelin
