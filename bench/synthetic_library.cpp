// The synthetic library: themed folders and camera-, document- and source-style names over several catalogs.
#include "synthetic_library.h"

#include <stdlib.h>
#include <time.h>

#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <map>
#include <random>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "scan/scan_statements.h"
#include "scan/volume_info.h"
#include "store/fmt.h"

namespace orrelin::bench {

namespace fs = std::filesystem;

namespace {

constexpr int kRowsPerTransaction = 5000;
constexpr const char* kFingerprintKey = "synthetic_library";
// Bump when the generator changes, so that libraries made by an older generator are rebuilt.
constexpr int kGeneratorVersion = 1;
constexpr double kFirstDay = 1451606400;  // 2016-01-01 UTC.
constexpr double kYears = 9;              // 2016 to 2024.
constexpr double kDay = 86400;

template <size_t N>
using Words = std::array<const char*, N>;

constexpr Words<10> kCatalogNames = {"Photo Archive", "Work SSD",    "Media NAS",   "Backup 2019",
                                     "Travel Drive",  "Old MacBook", "Studio RAID", "Family Share",
                                     "Scratch Disk",  "Cold Storage"};
constexpr Words<20> kEvents = {"Lisbon Trip",   "Birthday",   "Wedding",   "Beach Day",  "Christmas",
                               "Hiking Alps",   "Graduation", "Concert",   "Garden",     "Paris Weekend",
                               "Kids Soccer",   "New Year",   "Road Trip", "Museum",     "Snow Day",
                               "Family Dinner", "Zoo",        "Camping",   "Café Crème", "Škoda Rally"};
constexpr Words<14> kArtists = {"Nina Vale",     "The Copper Lines",    "Arvo Lindqvist",  "Mira Sato",
                                "Blue Harbor",   "Kettle Drum Society", "Léa Fontaine",    "Søren Holm",
                                "Orchid Parade", "DJ Marlow",           "Ana Müller Trio", "Night Bus",
                                "Ólafur Arnar",  "Zoë & the Foxes"};
constexpr Words<10> kAlbums = {"Northern Lights", "Live at the Depot", "Quiet Hours", "Paper Boats",
                               "Summer Tapes",    "Greatest Hits",     "Night Drive", "Echoes",
                               "Field Notes",     "Golden Hour"};
constexpr Words<20> kSongWords = {"Intro",     "Rain",       "Midnight", "River",  "Home",
                                  "Gravity",   "Lanterns",   "Ocean",    "Fever",  "Lullaby",
                                  "Satellite", "Wildflower", "Dust",     "Echo",   "Tides",
                                  "Letters",   "Morning",    "Neon",     "Ghosts", "Harbor"};
constexpr Words<10> kCompanies = {"Acme",  "Globex", "Initech",  "Umbrella", "Stark",
                                  "Wayne", "Hooli",  "Vandelay", "Contoso",  "Northwind"};
constexpr Words<10> kDocCategories = {"Invoices", "Taxes",    "Contracts", "Reports",       "Letters",
                                      "Manuals",  "Receipts", "Meetings",  "Presentations", "Spreadsheets"};
constexpr Words<10> kProjects = {"orrery", "photon-cli", "budget-app", "website",  "thesis",
                                 "engine", "homelab",    "scraper",    "dotfiles", "ml-experiments"};
constexpr Words<10> kModules = {"core",   "net",    "ui",    "storage", "util",
                                "parser", "render", "audio", "io",      "tests"};
constexpr Words<16> kCodeWords = {"main",   "config", "handler", "manager", "utils",  "client",
                                  "server", "model",  "view",    "index",   "parser", "cache",
                                  "worker", "types",  "helpers", "session"};
constexpr Words<12> kTags = {"Red",     "Orange", "Work",         "Important",  "Family",    "Travel",
                             "Archive", "To Do",  "Client: Acme", "2023 Taxes", "Favorites", "Green"};
constexpr Words<12> kMonths = {"January", "February", "March",     "April",   "May",      "June",
                               "July",    "August",   "September", "October", "November", "December"};

struct Type {
  const char* ext;
  const char* kind;
  const char* mime;
  int64_t typicalSize;
};

// Camera styles: a name pattern with a running number, and the camera it stands for.
struct Camera {
  const char* prefix;
  int digits;
  Type type;
  const char* model;
  const char* lens;
  int width, height;
};
constexpr std::array<Camera, 7> kCameras = {{
    {"IMG_", 4, {"JPG", "Image", "image/jpeg", 4'500'000}, "Canon EOS 80D", "EF-S18-135mm", 6000, 4000},
    {"IMG_",
     4,
     {"HEIC", "Image", "image/heic", 2'200'000},
     "iPhone 13 Pro",
     "iPhone 13 Pro back camera",
     4032,
     3024},
    {"DSC",
     5,
     {"ARW", "Image", "image/x-sony-arw", 24'000'000},
     "ILCE-7M3",
     "FE 24-70mm F2.8 GM",
     6000,
     4000},
    {"DSCF", 4, {"RAF", "Image", "image/x-fuji-raf", 33'000'000}, "X-T4", "XF16-80mmF4 R OIS WR", 6240, 4160},
    {"_MG_",
     4,
     {"CR2", "Image", "image/x-canon-cr2", 25'000'000},
     "Canon EOS 5D Mark III",
     "EF24-105mm f/4L",
     5760,
     3840},
    {"P",
     7,
     {"RW2", "Image", "image/x-panasonic-rw2", 20'000'000},
     "DC-GH5",
     "LUMIX G VARIO 12-60",
     5184,
     3888},
    {"PXL_", 0, {"jpg", "Image", "image/jpeg", 3'000'000}, "Pixel 7", "", 4080, 3072},
}};

constexpr std::array<Type, 4> kAudioTypes = {{{"mp3", "Audio", "audio/mpeg", 8'000'000},
                                              {"flac", "Audio", "audio/flac", 30'000'000},
                                              {"m4a", "Audio", "audio/mp4", 7'000'000},
                                              {"wav", "Audio", "audio/x-wav", 45'000'000}}};
constexpr Type kPdf = {"pdf", "PDF", "application/pdf", 600'000};
constexpr Type kDocx = {"docx", "Document",
                        "application/vnd.openxmlformats-officedocument.wordprocessingml.document", 90'000};
constexpr Type kXlsx = {"xlsx", "Document",
                        "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", 60'000};
constexpr Type kPptx = {"pptx", "Document",
                        "application/vnd.openxmlformats-officedocument.presentationml.presentation",
                        4'000'000};
constexpr Type kTxt = {"txt", "Document", "text/plain", 4'000};
constexpr Type kMarkdown = {"md", "Document", "text/markdown", 6'000};
constexpr std::array<Type, 12> kCodeTypes = {{{"cpp", "Code", "text/x-c++src", 14'000},
                                              {"h", "Code", "text/x-chdr", 3'000},
                                              {"py", "Code", "text/x-python", 8'000},
                                              {"js", "Code", "text/javascript", 9'000},
                                              {"ts", "Code", "text/vnd.trolltech.linguist", 7'000},
                                              {"rs", "Code", "text/rust", 10'000},
                                              {"go", "Code", "text/x-go", 8'000},
                                              {"json", "Code", "application/json", 2'000},
                                              {"html", "Code", "text/html", 12'000},
                                              {"css", "Code", "text/css", 5'000},
                                              {"sh", "Code", "application/x-shellscript", 1'500},
                                              {"swift", "Code", "text/x-swift", 9'000}}};
constexpr std::array<Type, 12> kDownloadTypes = {
    {{"zip", "Archive", "application/zip", 40'000'000},
     {"gz", "Archive", "application/gzip", 25'000'000},
     {"7z", "Archive", "application/x-7z-compressed", 60'000'000},
     {"rar", "Archive", "application/vnd.rar", 80'000'000},
     {"dmg", "Disk Image", "application/x-apple-diskimage", 200'000'000},
     {"iso", "Disk Image", "application/x-cd-image", 3'000'000'000},
     {"AppImage", "Application", "application/vnd.appimage", 120'000'000},
     {"deb", "Application", "application/vnd.debian.binary-package", 30'000'000},
     {"ttf", "Font", "font/ttf", 300'000},
     {"otf", "Font", "font/otf", 250'000},
     {"bin", "Other", "application/octet-stream", 1'000'000},
     {"log", "Other", "text/x-log", 200'000}}};

// A file as generated, before it is placed in a folder; copies across catalogs share all of it.
struct FileSpec {
  std::string name;
  Type type;
  int64_t size = 0;
  std::string sha256;
  std::string meta;
  double duration = 0;
  int64_t width = 0, height = 0;
};

class Random {
 public:
  explicit Random(uint64_t seed) : m_engine(seed) {}
  uint64_t next() { return m_engine(); }
  // A whole number in [0, n).
  int below(int n) { return static_cast<int>(next() % static_cast<uint64_t>(n)); }
  int between(int lo, int hi) { return lo + below(hi - lo + 1); }
  double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
  bool chance(double p) { return unit() < p; }
  template <size_t N>
  const char* pick(const Words<N>& words) {
    return words[static_cast<size_t>(below(static_cast<int>(N)))];
  }
  template <class T, size_t N>
  const T& pick(const std::array<T, N>& items) {
    return items[static_cast<size_t>(below(static_cast<int>(N)))];
  }
  // A size around `typical`, mostly within a factor of five either way.
  int64_t sizeAround(int64_t typical) {
    double factor = 0.2 + unit() * 1.8;
    if (chance(0.05)) factor *= 5;
    return static_cast<int64_t>(static_cast<double>(typical) * factor) + 1;
  }

 private:
  std::mt19937_64 m_engine;
};

std::string format(const char* pattern, auto... args) {
  char buffer[256];
  snprintf(buffer, sizeof buffer, pattern, args...);
  return buffer;
}

struct tm utcParts(double seconds) {
  time_t t = static_cast<time_t>(seconds);
  struct tm parts {};
  gmtime_r(&t, &parts);
  return parts;
}

std::string dayText(double seconds, const char* pattern = "%Y-%m-%d") {
  struct tm parts = utcParts(seconds);
  char buffer[64];
  strftime(buffer, sizeof buffer, pattern, &parts);
  return buffer;
}

// A stand-in checksum: 64 hex digits that depend on the name and size only, so copies agree.
std::string fakeSha256(const std::string& name, int64_t size) {
  uint64_t h = 1469598103934665603ULL ^ static_cast<uint64_t>(size);
  for (unsigned char c : name) h = (h ^ c) * 1099511628211ULL;
  std::string out;
  for (int part = 0; part < 4; ++part) {
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    out += format("%016" PRIx64, h);
  }
  return out;
}

std::string metaText(const std::map<std::string, std::string>& meta) { return metaJSON(meta); }

// Writes the rows of one catalog: folders on demand (each before its contents), files into them.
class CatalogWriter {
 public:
  CatalogWriter(SQLiteDB& db, Statement& insert, int64_t catalogID, int64_t quota)
      : m_db(db), m_insert(insert), m_catalogID(catalogID), m_quota(quota) {}

  bool full() const { return m_written >= m_quota; }
  int64_t remaining() const { return m_quota - m_written; }

  // The id of the folder at `path`, making it and any missing folders above it. Returns the deepest
  // existing folder instead when the quota has no room for the missing ones.
  int64_t folder(const std::string& path, double modified, Random& random) {
    if (auto it = m_folders.find(path); it != m_folders.end()) return it->second;
    size_t slash = path.rfind('/');
    int64_t parent = slash == std::string::npos ? 0 : folder(path.substr(0, slash), modified, random);
    if (remaining() <= 1) return parent;
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    std::string tags = random.chance(0.02) ? random.pick(kTags) : "";
    int64_t id = write(parent, path, name, true, 0, "Folder", "inode/directory", "", modified - kDay * 30,
                       modified, tags, false, "", "", 0, 0, 0);
    m_folders.emplace(path, id);
    return id;
  }

  void file(int64_t parentID, const std::string& folderPath, const FileSpec& shape, double modified,
            Random& random) {
    if (full()) return;
    std::string tags;
    if (random.chance(0.05)) {
      tags = random.pick(kTags);
      if (random.chance(0.3)) tags += std::string(", ") + random.pick(kTags);
    }
    bool hidden = !shape.name.empty() && shape.name[0] == '.';
    // A name already taken in the folder gets a number, the way a file manager names a second copy.
    std::string name = shape.name;
    std::string prefix = folderPath.empty() ? "" : folderPath + "/";
    for (int n = 2; m_paths.count(prefix + name) != 0; ++n) {
      size_t dot = shape.name.rfind('.');
      if (dot == std::string::npos || dot == 0) dot = shape.name.size();
      name = shape.name.substr(0, dot) + " " + std::to_string(n) + shape.name.substr(dot);
    }
    write(parentID, prefix + name, name, false, shape.size, shape.type.kind, shape.type.mime, shape.type.ext,
          modified - random.below(86400 * 10), modified, tags, hidden, shape.sha256, shape.meta, shape.duration,
          shape.width, shape.height);
  }

  // Ends the open transaction.
  void finish() {
    if (m_pending > 0) m_db.exec("COMMIT");
    m_pending = 0;
  }

 private:
  int64_t write(int64_t parent, const std::string& path, const std::string& name, bool isDir, int64_t size,
                const char* kind, const char* mime, const std::string& ext, double created, double modified,
                const std::string& tags, bool hidden, const std::string& sha, const std::string& meta,
                double duration, int64_t width, int64_t height) {
    if (m_pending == 0) m_db.exec("BEGIN IMMEDIATE");
    int label = tags.empty() ? 0 : (tags[0] == 'R' ? 6 : tags[0] == 'O' ? 7 : tags[0] == 'G' ? 2 : 0);
    m_db.step(m_insert,
              {m_catalogID,    parent, path,  name,   isDir, size,  kind,     mime,  ext,    Date{created},
               Date{modified}, tags,   label, hidden, sha,   false, duration, width, height, meta});
    int64_t id = m_db.lastInsertID();
    m_paths.insert(path);
    ++m_written;
    if (++m_pending == kRowsPerTransaction) finish();
    return id;
  }

  SQLiteDB& m_db;
  Statement& m_insert;
  int64_t m_catalogID;
  int64_t m_quota;
  int64_t m_written = 0;
  int m_pending = 0;
  std::unordered_map<std::string, int64_t> m_folders;
  std::unordered_set<std::string> m_paths;
};

// The themed content of one catalog, drawn folder by folder.
class LibraryGenerator {
 public:
  LibraryGenerator(Random& random, std::vector<FileSpec>& pool, int catalogIndex)
      : m_random(random), m_pool(pool), m_catalogIndex(catalogIndex) {}

  void fill(CatalogWriter& writer) {
    while (!writer.full()) {
      int theme = m_random.below(100);
      if (theme < 30) {
        photos(writer);
      } else if (theme < 45) {
        music(writer);
      } else if (theme < 65) {
        documents(writer);
      } else if (theme < 82) {
        code(writer);
      } else if (theme < 88) {
        videos(writer);
      } else {
        downloads(writer);
      }
    }
  }

 private:
  double randomDay() { return kFirstDay + std::floor(m_random.unit() * kYears * 365) * kDay; }

  // Puts `shape` in the folder, or, now and then in later catalogs, a copy of an earlier file instead.
  void place(CatalogWriter& writer, int64_t folderID, const std::string& folderPath, FileSpec shape,
             double modified) {
    double copyChance = m_catalogIndex == 0 ? 0.02 : 0.12;
    if (!m_pool.empty() && m_random.chance(copyChance)) {
      shape = m_pool[static_cast<size_t>(m_random.below(static_cast<int>(m_pool.size())))];
    } else {
      double shaShare = m_catalogIndex % 2 == 0 ? 0.5 : 0.2;
      if (m_random.chance(shaShare)) shape.sha256 = fakeSha256(shape.name, shape.size);
      if (m_random.chance(0.25)) {
        if (m_pool.size() < kPoolSize) {
          m_pool.push_back(shape);
        } else {
          m_pool[static_cast<size_t>(m_random.below(static_cast<int>(kPoolSize)))] = shape;
        }
      }
    }
    writer.file(folderID, folderPath, shape, modified, m_random);
  }

  void photos(CatalogWriter& writer) {
    double day = randomDay();
    std::string year = dayText(day, "%Y");
    std::string path = "Photos/" + year + "/" + dayText(day) + " " + m_random.pick(kEvents);
    int64_t id = writer.folder(path, day + kDay, m_random);
    const Camera& camera = m_random.pick(kCameras);
    int number = m_random.between(1, 9000);
    int count = m_random.between(20, 150);
    bool pairs = camera.type.typicalSize > 10'000'000 && m_random.chance(0.4);  // RAW with a JPEG beside it.
    double time = day + 9 * 3600 + m_random.below(3 * 3600);
    if (m_random.chance(0.25)) {
      writer.file(id, path,
                  FileSpec{".DS_Store", {"DS_Store", "Other", "application/octet-stream", 6148}, 6148}, day,
                  m_random);
    }
    for (int i = 0; i < count && !writer.full(); ++i, ++number) {
      time += 5 + m_random.below(300);
      std::string stem = camera.digits == 0
                             ? "PXL_" + dayText(time, "%Y%m%d_%H%M%S") + format("%03d", m_random.below(1000))
                             : camera.prefix + format("%0*d", camera.digits, number % 100000);
      FileSpec shape{stem + "." + camera.type.ext, camera.type, m_random.sizeAround(camera.type.typicalSize)};
      if (m_random.chance(0.4)) {
        bool portrait = m_random.chance(0.2);
        shape.width = portrait ? camera.height : camera.width;
        shape.height = portrait ? camera.width : camera.height;
        std::map<std::string, std::string> meta = {
            {"Dimensions",
             format("%d \u00d7 %d", static_cast<int>(shape.width), static_cast<int>(shape.height))},
            {"Camera", camera.model},
            {"ISO", std::to_string(100 << m_random.below(6))},
            {"Aperture", format("f/%.1f", 1.8 + m_random.below(10) * 0.7)},
            {"Shutter", format("1/%d s", 30 << m_random.below(6))},
            {"Date Taken", dayText(time, "%Y:%m:%d %H:%M:%S")}};
        if (*camera.lens != '\0') meta["Lens"] = camera.lens;
        if (m_random.chance(0.3)) {
          meta["GPS"] = format("%.5f, %.5f", -60 + m_random.unit() * 120, -170 + m_random.unit() * 340);
        }
        shape.meta = metaText(meta);
      }
      place(writer, id, path, shape, time);
      if (pairs && !writer.full()) {
        FileSpec jpeg{stem + ".JPG", kCameras[0].type, m_random.sizeAround(6'000'000)};
        place(writer, id, path, jpeg, time);
      }
    }
  }

  void videos(CatalogWriter& writer) {
    double day = randomDay();
    std::string event = m_random.pick(kEvents);
    std::string path = "Videos/" + dayText(day, "%Y") + "/" + event;
    int64_t id = writer.folder(path, day + kDay, m_random);
    int count = m_random.between(3, 40);
    int style = m_random.below(5);
    int number = m_random.between(1, 9000);
    for (int i = 0; i < count && !writer.full(); ++i, ++number) {
      double time = day + 8 * 3600 + i * 600 + m_random.below(500);
      std::string name;
      switch (style) {
        case 0:
          name = format("MVI_%04d.MOV", number % 10000);
          break;
        case 1:
          name = format("GX01%04d.MP4", number % 10000);
          break;
        case 2:
          name = "VID_" + dayText(time, "%Y%m%d_%H%M%S") + ".mp4";
          break;
        case 3:
          name = format("C%04d.MP4", number % 10000);
          break;
        default:
          name = event + format(" edit v%d.mov", i + 1);
          break;
      }
      bool mov = name.ends_with("MOV") || name.ends_with("mov");
      Type type = mov ? Type{name.ends_with("MOV") ? "MOV" : "mov", "Video", "video/quicktime", 600'000'000}
                      : Type{name.ends_with("MP4") ? "MP4" : "mp4", "Video", "video/mp4", 400'000'000};
      FileSpec shape{name, type, m_random.sizeAround(type.typicalSize)};
      if (m_random.chance(0.6)) {
        bool uhd = m_random.chance(0.4);
        shape.width = uhd ? 3840 : 1920;
        shape.height = uhd ? 2160 : 1080;
        shape.duration = 5 + m_random.below(1800) + m_random.below(1000) / 1000.0;
        shape.meta = metaText({{"Duration", Fmt::duration(shape.duration)},
                              {"Resolution", format("%d \u00d7 %d", static_cast<int>(shape.width),
                                                    static_cast<int>(shape.height))},
                              {"Video Codec", m_random.chance(0.5) ? "H.264" : "HEVC"},
                              {"Frame Rate", m_random.chance(0.5) ? "29.97 fps" : "25 fps"},
                              {"Audio Codec", "AAC"},
                              {"Channels", "Stereo"}});
      }
      place(writer, id, path, shape, time);
    }
  }

  void music(CatalogWriter& writer) {
    std::string artist = m_random.pick(kArtists);
    std::string album = m_random.pick(kAlbums);
    std::string path = "Music/" + artist + "/" + album;
    double day = randomDay();
    int64_t id = writer.folder(path, day, m_random);
    const Type& type = m_random.pick(kAudioTypes);
    int tracks = m_random.between(8, 16);
    if (m_random.chance(0.5)) {
      place(writer, id, path, FileSpec{"cover.jpg", {"jpg", "Image", "image/jpeg", 300'000}, 300'000}, day);
    }
    for (int track = 1; track <= tracks && !writer.full(); ++track) {
      std::string title = std::string(m_random.pick(kSongWords));
      if (m_random.chance(0.5)) title += std::string(" ") + m_random.pick(kSongWords);
      FileSpec shape{format("%02d ", track) + title + "." + type.ext, type,
                    m_random.sizeAround(type.typicalSize)};
      if (m_random.chance(0.5)) {
        shape.duration = 120 + m_random.below(300) + m_random.below(1000) / 1000.0;
        shape.meta = metaText({{"Duration", Fmt::duration(shape.duration)},
                              {"Audio Codec", type.ext == std::string_view("flac")  ? "FLAC"
                                              : type.ext == std::string_view("mp3") ? "MP3"
                                              : type.ext == std::string_view("wav") ? "PCM"
                                                                                    : "AAC"},
                              {"Sample Rate", m_random.chance(0.7) ? "44.1 kHz" : "48.0 kHz"},
                              {"Channels", "Stereo"},
                              {"Bitrate", std::to_string(128 + 64 * m_random.below(4)) + " kbps"},
                              {"Artist", artist},
                              {"Album", album},
                              {"Title", title}});
      }
      place(writer, id, path, shape, day + track * 240);
    }
  }

  void documents(CatalogWriter& writer) {
    double day = randomDay();
    std::string year = dayText(day, "%Y");
    int category = m_random.below(static_cast<int>(kDocCategories.size()));
    std::string path = std::string("Documents/") + kDocCategories[static_cast<size_t>(category)] + "/" + year;
    int64_t id = writer.folder(path, day, m_random);
    int count = m_random.between(10, 60);
    for (int i = 0; i < count && !writer.full(); ++i) {
      double time = day + m_random.below(360) * kDay + m_random.below(86400);
      std::string company = m_random.pick(kCompanies);
      FileSpec shape;
      switch (category) {
        case 0:
          shape = {format("Invoice %s-%03d ", year.c_str(), i + 1) + company + ".pdf", kPdf};
          break;
        case 1:
          shape = {(i % 2 ? "Tax Return " + year : "W2 " + company + " " + year) + ".pdf", kPdf};
          break;
        case 2:
          shape = {"Contract " + company + (m_random.chance(0.5) ? " signed" : " draft") + ".pdf", kPdf};
          break;
        case 3:
          shape = {
              format("Quarterly Report Q%d %s", m_random.between(1, 4), year.c_str()) +
                  (m_random.chance(0.5) ? " final" : " draft v" + std::to_string(m_random.between(1, 5))) +
                  ".docx",
              kDocx};
          break;
        case 4:
          shape = {"Letter to " + company + " " + dayText(time) + ".docx", kDocx};
          break;
        case 5:
          shape = {company + " " + m_random.pick(kCodeWords) + " manual.pdf", kPdf};
          break;
        case 6:
          shape = {"Receipt " + dayText(time) + " " + company + ".pdf", kPdf};
          break;
        case 7:
          shape = m_random.chance(0.5) ? FileSpec{"Meeting notes " + dayText(time) + ".txt", kTxt}
                                      : FileSpec{"Meeting notes " + dayText(time) + ".md", kMarkdown};
          break;
        case 8:
          shape = {company + format(" pitch v%d.pptx", m_random.between(1, 9)), kPptx};
          break;
        default:
          shape = {"Budget " + year + " " + kMonths[static_cast<size_t>(m_random.below(12))] + ".xlsx", kXlsx};
          break;
      }
      shape.size = m_random.sizeAround(shape.type.typicalSize);
      if (shape.type.kind == std::string_view("PDF") && m_random.chance(0.3)) {
        shape.width = 612;
        shape.height = 792;
        shape.meta = metaText({{"Pages", std::to_string(m_random.between(1, 40))},
                              {"Page Size", "612 \u00d7 792 pt"},
                              {"Title", shape.name.substr(0, shape.name.size() - 4)},
                              {"Author", company}});
      }
      place(writer, id, path, shape, time);
    }
  }

  void code(CatalogWriter& writer) {
    std::string project = m_random.pick(kProjects);
    std::string module = m_random.pick(kModules);
    std::string path = "Projects/" + project + "/src/" + module;
    double day = randomDay();
    int64_t id = writer.folder(path, day, m_random);
    int count = m_random.between(10, 60);
    if (m_random.chance(0.2)) {
      place(writer, id, path, FileSpec{".gitignore", {"gitignore", "Other", "text/plain", 300}, 300}, day);
      place(writer, id, path, FileSpec{"README.md", kMarkdown, m_random.sizeAround(4'000)}, day);
    }
    const Type& language = m_random.pick(kCodeTypes);
    for (int i = 0; i < count && !writer.full(); ++i) {
      const Type& type = m_random.chance(0.7) ? language : m_random.pick(kCodeTypes);
      std::string name = m_random.pick(kCodeWords);
      if (m_random.chance(0.6)) name = module + "_" + name;
      if (m_random.chance(0.2)) name = "test_" + name;
      if (m_random.chance(0.3)) name += std::to_string(m_random.below(100));
      place(writer, id, path, FileSpec{name + "." + type.ext, type, m_random.sizeAround(type.typicalSize)},
            day + m_random.below(700) * kDay);
    }
  }

  void downloads(CatalogWriter& writer) {
    double day = randomDay();
    std::string path = m_random.chance(0.5) ? "Downloads" : "Downloads/" + dayText(day, "%Y");
    int64_t id = writer.folder(path, day, m_random);
    int count = m_random.between(20, 80);
    for (int i = 0; i < count && !writer.full(); ++i) {
      const Type& type = m_random.pick(kDownloadTypes);
      std::string word = m_random.pick(kCodeWords);
      std::string version = format("%d.%d.%d", m_random.below(5), m_random.below(20), m_random.below(10));
      std::string name;
      std::string_view ext = type.ext;
      if (ext == "gz") {
        name = word + "-" + version + "-linux-x86_64.tar.gz";
      } else if (ext == "iso") {
        name = format("ubuntu-22.04.%d-desktop-amd64.iso", m_random.below(5));
      } else if (ext == "dmg" || ext == "AppImage" || ext == "deb") {
        name = std::string(m_random.pick(kProjects)) + "-setup-" + version + "." + type.ext;
      } else if (type.kind == std::string_view("Font")) {
        name = std::string(m_random.pick(kSongWords)) + " Sans-" +
               (m_random.chance(0.5) ? "Regular" : "Bold") + "." + type.ext;
      } else if (ext == "log") {
        name = "install-" + dayText(day + i * kDay) + ".log";
      } else if (ext == "bin") {
        name = format("data_%05d.bin", m_random.below(100000));
      } else {
        name = std::string(m_random.pick(kCompanies)) + " " + word + " " + version + "." + type.ext;
      }
      place(writer, id, path, FileSpec{name, type, m_random.sizeAround(type.typicalSize)},
            day + m_random.below(300) * kDay);
    }
  }

  static constexpr size_t kPoolSize = 100'000;
  Random& m_random;
  std::vector<FileSpec>& m_pool;
  int m_catalogIndex;
};

void removeDatabase(const fs::path& path) {
  std::error_code ignored;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path.string() + suffix, ignored);
}

}  // namespace

std::string libraryFingerprint(const LibraryShape& shape) {
  return format("generator=%d records=%" PRId64 " catalogs=%d seed=%u", kGeneratorVersion, shape.records,
                shape.catalogs, shape.seed);
}

LibraryInfo fillSyntheticLibrary(CatalogDB& store, const LibraryShape& shape) {
  auto started = std::chrono::steady_clock::now();
  LibraryInfo info;
  SQLiteDB& db = store.db();
  Random random(shape.seed);
  std::vector<FileSpec> pool;
  Statement insert = db.prepare(scan_sql::kInsertFile);
  int catalogs = std::max(1, shape.catalogs);
  for (int c = 0; c < catalogs; ++c) {
    std::string name = kCatalogNames[static_cast<size_t>(c) % kCatalogNames.size()];
    if (static_cast<size_t>(c) >= kCatalogNames.size()) name += " " + std::to_string(c + 1);
    VolumeInfo volume;
    volume.name = name;
    volume.format = c % 3 == 2 ? "NFS (Network)" : "ext4";
    volume.capacity = 4'000'000'000'000;
    volume.free = 1'000'000'000'000;
    volume.isNetwork = c % 3 == 2;
    volume.isRemovable = c % 3 == 1;
    int64_t id = store.insertCatalog(name, "/media/" + name, volume, false, std::nullopt, false);
    info.catalogIDs.push_back(id);
    int64_t quota = shape.records / catalogs + (c == 0 ? shape.records % catalogs : 0);
    CatalogWriter writer(db, insert, id, quota);
    LibraryGenerator(random, pool, c).fill(writer);
    writer.finish();
    store.recomputeTotals(id);
    store.markScanned(id, Date{kFirstDay + kYears * 365 * kDay});
  }
  info.records = db.scalarInt("SELECT count(*) FROM files");
  db.run("INSERT OR REPLACE INTO meta(key, value) VALUES(?, ?)", {kFingerprintKey, libraryFingerprint(shape)});
  info.buildSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  return info;
}

std::unique_ptr<CatalogDB> openSyntheticLibrary(const fs::path& path, const LibraryShape& shape,
                                                LibraryInfo* info) {
  LibraryInfo result;
  std::unique_ptr<CatalogDB> store;
  if (fs::exists(path)) {
    store = std::make_unique<CatalogDB>(path.string());
    auto stored = store->db().scalarText("SELECT value FROM meta WHERE key=?", {kFingerprintKey});
    if (stored == libraryFingerprint(shape)) {
      for (const Catalog& c : store->catalogs()) result.catalogIDs.push_back(c.id);
      std::sort(result.catalogIDs.begin(), result.catalogIDs.end());
      result.records = store->db().scalarInt("SELECT count(*) FROM files");
      result.reused = true;
    } else {
      store.reset();
    }
  }
  if (!store) {
    removeDatabase(path);
    store = std::make_unique<CatalogDB>(path.string());
    result = fillSyntheticLibrary(*store, shape);
  }
  if (info != nullptr) *info = result;
  return store;
}

fs::path benchDirectory() {
  const char* env = getenv("ORRELIN_BENCH_DIR");
  fs::path dir = env != nullptr && *env != '\0' ? fs::path(env) : fs::temp_directory_path() / "orrelin-bench";
  fs::create_directories(dir);
  return dir;
}

fs::path syntheticLibraryPath(const LibraryShape& shape) {
  return benchDirectory() /
         format("library-%" PRId64 "-%d-%u.sqlite", shape.records, shape.catalogs, shape.seed);
}

}  // namespace orrelin::bench
