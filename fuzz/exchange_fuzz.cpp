// libFuzzer target for the exchange importers: every input is written to a file and imported both as CSV
// and as JSON into a real catalog database. An import must succeed or fail with ExportError; a failed
// import must change nothing, and a successful one must leave every record under a folder of its own
// catalog. The CSV and UTF-8 readers that take text in pieces must agree with the whole-text ones at a cut
// chosen by the input. Anything else aborts, which libFuzzer reports with the input. Built and run by
// fuzz/run.sh.
#include <sqlite3.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/name_mapping.h"
#include "exchange/exporter.h"
#include "exchange/import_source.h"
#include "organize/export_error.h"
#include "store/catalog_db.h"

namespace {

namespace fs = std::filesystem;
using namespace orrelin;

struct Sandbox {
  fs::path folder;
  std::unique_ptr<CatalogDB> store;

  Sandbox() {
    fs::path base = fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    std::string pattern = (base / "orrelin-fuzz-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) std::abort();
    folder = pattern;
    store = std::make_unique<CatalogDB>((folder / "Catalogs.sqlite").string());
    // Durability is of no interest here, speed is.
    store->db().exec("PRAGMA synchronous=OFF");
  }
  ~Sandbox() {
    store.reset();
    std::error_code ec;
    fs::remove_all(folder, ec);
  }
};

Sandbox& sandbox() {
  static Sandbox box;
  return box;
}

[[noreturn]] void broken(const char* what) {
  std::fprintf(stderr, "exchange_fuzz: %s\n", what);
  std::abort();
}

void importAs(bool json, const fs::path& file) {
  CatalogDB& store = *sandbox().store;
  sqlite3* db = store.db().handle();
  const int changesBefore = sqlite3_total_changes(db);
  const int64_t catalogsBefore = store.db().scalarInt("SELECT count(*) FROM catalogs");
  try {
    int64_t made = json ? Exporter::importJSON(store, file) : Exporter::importCSV(store, file);
    if (store.db().scalarInt("SELECT count(*) FROM catalogs") != catalogsBefore + made)
      broken("the count of catalogs made is wrong");
    if (store.db().scalarInt(
            "SELECT count(*) FROM files f WHERE f.parent_id<>0 AND NOT EXISTS(SELECT 1 FROM "
            "files p WHERE p.id=f.parent_id AND p.is_dir=1 AND p.catalog_id=f.catalog_id)") != 0)
      broken("a record's parent is not a folder of its catalog");
  } catch (const ExportError&) {
    if (sqlite3_total_changes(db) != changesBefore) broken("a failed import changed the database");
  }
  if (store.db().scalarInt("SELECT count(*) FROM catalogs") > 50)
    store.db().exec("DELETE FROM files; DELETE FROM catalogs; DELETE FROM scan_log;");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fs::path file = sandbox().folder / "input";
  {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto whole = Exporter::parseCSV(text);
  const size_t cut = size == 0 ? 0 : data[size - 1] * size / 256;
  std::vector<std::vector<std::string>> pieces;
  auto take = [&](std::span<std::string> row) { pieces.emplace_back(row.begin(), row.end()); };
  Exporter::CSVReader reader;
  reader.feed(text.substr(0, cut), take);
  reader.feed(text.substr(cut), take);
  reader.finish(take);
  if (pieces != whole) broken("the CSV read in two pieces differs from the whole text's");
  Exporter::UTF8Check utf8;
  utf8.feed(text.substr(0, cut));
  utf8.feed(text.substr(cut));
  if (utf8.valid() != NameMapping::isValidUTF8(text)) broken("the UTF-8 check in two pieces differs");
  importAs(/*json=*/false, file);
  importAs(/*json=*/true, file);
  return 0;
}
