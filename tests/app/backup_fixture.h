// A data folder and a settings folder of their own for each backup test, with a catalog database in it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/app_paths.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

class BackupTest : public ::testing::Test {
 protected:
  BackupTest() {
    m_env.set("HOME", (m_temp.path() / "home").string());
    m_env.set("XDG_DATA_HOME", (m_temp.path() / "data").string());
    m_env.set("XDG_CONFIG_HOME", (m_temp.path() / "config").string());
  }

  // Adds a catalog with one file row, as a scan would leave it; returns the catalog's id.
  static int64_t addCatalog(CatalogDB& store, const std::string& name,
                            const std::string& fileName = "a.txt") {
    VolumeInfo volume;
    volume.name = "Vol";
    int64_t id = store.insertCatalog(name, "/media/" + name, volume, true, std::nullopt, false);
    store.db().run(
        "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, size, kind) "
        "VALUES(?,0,?,?,0,42,'Other')",
        {id, fileName, fileName});
    store.recomputeTotals(id);
    return id;
  }

  static std::vector<std::string> catalogNames(CatalogDB& store) {
    std::vector<std::string> names;
    for (const Catalog& c : store.catalogs()) names.push_back(c.name);
    return names;
  }

  TempDir m_temp;
  ScopedEnv m_env;
};

}  // namespace orrelin::testing
