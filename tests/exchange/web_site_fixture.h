// A web export test's setting: a real tree scanned into a real database with real thumbnails, a site
// folder, and readers that take the generated files apart again.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/name_mapping.h"
#include "exchange/web_exporter.h"
#include "scan/scan_worker.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

namespace fs = std::filesystem;

class WebSiteTest : public ::testing::Test {
 protected:
  WebSiteTest() {
    m_env.set("XDG_CONFIG_HOME", (m_dir.path() / "config").string());
    m_env.set("XDG_DATA_HOME", (m_dir.path() / "data").string());
    fs::create_directories(tree);
  }

  // Scans `root` (the tree unless given) into a new catalog named `name`, hidden files included so that
  // the export has some to leave out. Returns the catalog's id.
  int64_t scan(const std::string& name = "Test", bool thumbnails = true, std::optional<fs::path> root = {}) {
    ScanOptions options;
    options.includeHidden = true;
    options.thumbnails = thumbnails;
    options.metadata = thumbnails;
    ScanWorker worker(dbPath, NameMapping::storedPath(root.value_or(tree)), std::nullopt, name, std::nullopt,
                      options, thumbs, nullptr, nullptr);
    ScanResult result = worker.run();
    EXPECT_FALSE(result.error) << *result.error;
    return result.catalogID;
  }

  // Exports the catalogs with these ids, in this order, into `site`.
  fs::path exportSite(const std::vector<int64_t>& ids, const WebExporter::Options& options = {}) {
    CatalogDB store(dbPath);
    std::vector<Catalog> catalogs;
    for (int64_t id : ids) catalogs.push_back(*store.catalog(id));
    return WebExporter::exportSite(store, catalogs, site, thumbs, options);
  }

  // The catalog object of data/cat-<id>.js, after checking the statement around it; null on failure.
  nlohmann::json readData(int64_t catalogID) {
    std::string text = readFile(site / "data" / ("cat-" + std::to_string(catalogID) + ".js"));
    std::string_view prefix = WebExporter::kDataPrefix, suffix = ");\n";
    if (text.size() < prefix.size() + suffix.size() || text.compare(0, prefix.size(), prefix) != 0 ||
        text.compare(text.size() - suffix.size(), suffix.size(), suffix) != 0) {
      ADD_FAILURE() << "data file is not one push statement: " << text.substr(0, 200);
      return nullptr;
    }
    EXPECT_TRUE(NameMapping::isValidUTF8(text));
    // Nothing in it may end a script element or the line of a string in an older script engine.
    EXPECT_EQ(text.find("</"), std::string::npos);
    EXPECT_EQ(text.find("<!--"), std::string::npos);
    EXPECT_EQ(text.find("\u2028"), std::string::npos);
    EXPECT_EQ(text.find("\u2029"), std::string::npos);
    return nlohmann::json::parse(text.substr(prefix.size(), text.size() - prefix.size() - suffix.size()));
  }

  // The site's rows of a catalog by name (names are unique in these trees).
  std::map<std::string, nlohmann::json> rowsByName(int64_t catalogID) {
    std::map<std::string, nlohmann::json> rows;
    nlohmann::json data = readData(catalogID);
    for (const nlohmann::json& row : data["items"]) rows[row[2].get<std::string>()] = row;
    return rows;
  }

  fs::path siteThumb(int64_t catalogID, int64_t fileID) {
    return site / "thumbs" / std::to_string(catalogID) / (std::to_string(fileID) + ".jpg");
  }
  fs::path cachedThumb(int64_t catalogID, int64_t fileID) {
    return thumbs / std::to_string(catalogID) / (std::to_string(fileID) + ".jpg");
  }

  TempDir m_dir;
  ScopedEnv m_env;
  const fs::path tree = m_dir.path() / "tree";
  const fs::path site = m_dir.path() / "site";
  const fs::path thumbs = m_dir.path() / "Thumbnails";
  const std::string dbPath = (m_dir.path() / "catalogs.sqlite").string();
};

}  // namespace orrelin::testing
