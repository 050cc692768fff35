// Synthetic catalog trees for the benchmarks.
#include "synthetic_tree.h"

#include <array>
#include <random>

#include "scan/scan_statements.h"

namespace orrelin::bench {

namespace {

struct KindSample {
  const char* ext;
  const char* kind;
  const char* uti;
  int64_t typicalSize;
};

constexpr std::array<KindSample, 10> kSamples = {{
    {"jpg", "Image", "image/jpeg", 4'000'000},
    {"cr3", "Image", "image/x-canon-cr3", 25'000'000},
    {"mov", "Video", "video/quicktime", 900'000'000},
    {"mp3", "Audio", "audio/mpeg", 8'000'000},
    {"pdf", "PDF", "application/pdf", 2'000'000},
    {"docx", "Document", "application/vnd.openxmlformats-officedocument.wordprocessingml.document", 90'000},
    {"zip", "Archive", "application/zip", 50'000'000},
    {"cpp", "Code", "text/x-c++src", 12'000},
    {"txt", "Document", "text/plain", 3'000},
    {"bin", "Other", "", 100'000},
}};

constexpr std::array<const char*, 12> kWords = {"Holiday", "Invoice", "Project", "Scan",   "Draft", "Final",
                                                "Render",  "Backup",  "IMG",     "Report", "Track", "Notes"};

}  // namespace

std::vector<SyntheticEntry> makeTree(int fileCount, int perFolder, uint32_t seed) {
  std::mt19937 rng(seed);
  std::vector<SyntheticEntry> out;
  out.reserve(static_cast<size_t>(fileCount + fileCount / perFolder + 64));
  int made = 0, folderNo = 0;
  // Folders nest three levels: top/<group>/<folder>, each leaf folder holding about perFolder files.
  int topIndex = -1, groupIndex = -1;
  std::string topPath, groupPath;
  while (made < fileCount) {
    if (folderNo % 400 == 0) {
      topPath = "Volume" + std::to_string(folderNo / 400);
      out.push_back({topPath, topPath, "", "Folder", "inode/directory", 0, 1.6e9, true, -1});
      topIndex = static_cast<int>(out.size()) - 1;
    }
    if (folderNo % 20 == 0) {
      std::string name = std::string(kWords[rng() % kWords.size()]) + " " + std::to_string(folderNo / 20);
      groupPath = topPath + "/" + name;
      out.push_back({groupPath, name, "", "Folder", "inode/directory", 0, 1.6e9, true, topIndex});
      groupIndex = static_cast<int>(out.size()) - 1;
    }
    std::string folderName = "Folder " + std::to_string(folderNo);
    std::string folderPath = groupPath + "/" + folderName;
    out.push_back({folderPath, folderName, "", "Folder", "inode/directory", 0, 1.6e9, true, groupIndex});
    int folderIndex = static_cast<int>(out.size()) - 1;
    int count = std::min(fileCount - made, perFolder / 2 + static_cast<int>(rng() % perFolder));
    for (int i = 0; i < count; ++i) {
      const KindSample& s = kSamples[rng() % kSamples.size()];
      std::string name = std::string(kWords[rng() % kWords.size()]) + "_" + std::to_string(rng() % 100000) +
                         "_" + std::to_string(made) + "." + s.ext;
      int64_t size = static_cast<int64_t>(s.typicalSize * (0.2 + (rng() % 1000) / 500.0));
      double modified = 1.4e9 + static_cast<double>(rng() % 300'000'000);
      out.push_back(
          {folderPath + "/" + name, name, s.ext, s.kind, s.uti, size, modified, false, folderIndex});
      ++made;
    }
    ++folderNo;
  }
  return out;
}

int64_t insertLikeScanner(CatalogDB& store, int64_t catalogID, const std::vector<SyntheticEntry>& entries) {
  SQLiteDB& db = store.db();
  std::vector<int64_t> ids(entries.size(), 0);
  Statement insert = db.prepare(scan_sql::kInsertFile);
  db.exec("BEGIN IMMEDIATE");
  int pending = 0;
  for (size_t i = 0; i < entries.size(); ++i) {
    const SyntheticEntry& e = entries[i];
    int64_t parent = e.parentIndex >= 0 ? ids[static_cast<size_t>(e.parentIndex)] : 0;
    db.step(insert, {catalogID,
                     parent,
                     e.path,
                     e.name,
                     e.isDir,
                     e.size,
                     e.kind,
                     e.uti,
                     e.ext,
                     Date{e.modified - 1000},
                     Date{e.modified},
                     "",
                     0,
                     false,
                     "",
                     false,
                     0.0,
                     0,
                     0,
                     ""});
    ids[i] = db.lastInsertID();
    if (++pending == scan_sql::kEntriesPerTransaction) {
      db.exec("COMMIT; BEGIN IMMEDIATE");
      pending = 0;
    }
  }
  db.exec("COMMIT");
  return static_cast<int64_t>(entries.size());
}

}  // namespace orrelin::bench
