// An export-for-Claude test's setting: a real tree in a temporary folder, scanned into a real catalog
// database, and helpers that export it and read the bundle back.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "exchange/claude_exporter.h"
#include "scan/scan_fixture.h"
#include "store/catalog_db.h"

namespace orrelin::testing {

class ClaudeExportTest : public ScanTest {
 protected:
  // Writes a file of `size` bytes at the tree-relative `path`, given as the raw bytes of the name.
  void put(const std::string& path, size_t size = 1) { writeFile(tree / path, std::string(size, 'x')); }
  void folder(const std::string& path) { fs::create_directories(tree / path); }

  // Scans the tree as a new catalog (hidden entries too, when asked) and returns it as stored.
  Catalog scanTree(bool includeHidden = false) {
    ScanOptions options = plainOptions();
    options.includeHidden = includeHidden;
    ScanResult result = scan(options);
    EXPECT_FALSE(result.error) << *result.error;
    return *catalog(result.catalogID);
  }

  std::vector<FileRecord> records(const Catalog& c) { return CatalogDB(dbPath).allFiles(c.id); }

  std::string summaryOf(const Catalog& c) {
    CatalogDB store(dbPath);
    return ClaudeExporter::summary(c, store.allFiles(c.id), store);
  }

  // Exports `c` into a fresh folder of the test's own; returns the files written.
  std::vector<fs::path> exportBundle(const Catalog& c, const std::string& folderName = "bundle") {
    CatalogDB store(dbPath);
    return ClaudeExporter::exportTo(store, c, m_dir.path() / "out" / folderName);
  }

  // The lines of `text`, without their line feeds; a final line feed ends the last line.
  static std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      if (end == std::string::npos) end = text.size();
      out.push_back(text.substr(start, end - start));
      start = end + 1;
    }
    return out;
  }

  // The text of `section` ("## Title") up to the next "## " heading.
  static std::string section(const std::string& summary, const std::string& heading) {
    size_t begin = summary.find("\n" + heading + "\n");
    if (begin == std::string::npos) return "";
    begin += 1;
    size_t end = summary.find("\n## ", begin + heading.size());
    return summary.substr(begin, end == std::string::npos ? std::string::npos : end + 1 - begin);
  }
};

}  // namespace orrelin::testing
