// The demonstration cartridges: a seeded generator over fixed vocabularies, one shared random state
// throughout, so that the same seed gives the same items on every machine.
#include "exchange/sample_data.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "core/uuid_string.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::SampleData {

namespace {

using Exporter::ImportedFile;

constexpr std::array<const char*, 6> kGenres = {"House",         "Techno",      "Hip-Hop",
                                                "Drum and Bass", "Disco Edits", "Open Format"};
constexpr std::array<const char*, 8> kArtists = {"Nova Ray",    "Nova Pulse", "Midnight Circuit",
                                                 "Kairo Bass",  "Luma Grey",  "The Static Era",
                                                 "Vanta Sound", "Echo Arcade"};
constexpr std::array<const char*, 16> kTitleWords = {
    "Neon",   "Gravity", "Afterglow", "Pulse",  "Satellite", "Overdrive", "Signal", "Horizon",
    "Velvet", "Chrome",  "Voltage",   "Mirage", "Skyline",   "Eclipse",   "Ritual", "Drift"};
constexpr std::array<int64_t, 4> kBitrates = {256, 320, 320, 1411};
constexpr std::array<const char*, 5> kProjects = {"Midnight Circuit", "Friday Residency",
                                                  "Summer Mixtape 2026", "Radio Show 48", "Club Edit Pack"};
constexpr std::array<const char*, 5> kReleases = {"Neon Gravity", "Afterglow (Live)", "Satellite Hearts",
                                                  "Chrome Skyline", "Velvet Signal"};
constexpr std::array<const char*, 4> kStems = {"Drums", "Bass", "Synths", "Vocals"};
constexpr std::array<const char*, 4> kCameras = {"Canon EOS R5", "Sony ILCE-7M4", "iPhone 15 Pro",
                                                 "Fujifilm X-T5"};
constexpr std::array<const char*, 4> kEvents = {"Club Night", "Festival", "Studio Session", "Road Trip"};
constexpr std::array<std::array<double, 2>, 5> kGPSPoints = {{{39.0639, -108.5506},
                                                              {39.11, -108.3537},
                                                              {39.1586, -108.729},
                                                              {40.015, -105.2705},
                                                              {36.1699, -115.1398}}};
constexpr std::array<const char*, 3> kApertures = {"f/1.8", "f/2.8", "f/4.0"};
constexpr std::array<const char*, 5> kISOValues = {"100", "200", "400", "800", "3200"};
constexpr std::array<std::array<int64_t, 2>, 2> kLargeCameraSizes = {{{6000, 4000}, {8192, 5464}}};
constexpr std::array<const char*, 3> kDocumentFolders = {"Invoices", "Contracts", "Bookings"};
constexpr int kFirstYear = 2019;
constexpr int kLastYear = 2026;
constexpr double kDay = 86'400;

template <class List>
auto pick(Random& random, const List& list) {
  return list[random.below(static_cast<uint32_t>(list.size()))];
}

std::string format(const char* pattern, auto... values) {
  char buffer[256];
  std::snprintf(buffer, sizeof buffer, pattern, values...);
  return buffer;
}

std::string pixels(int64_t width, int64_t height) {
  return std::to_string(width) + " \u00D7 " + std::to_string(height);
}

// The state shared by every section: the draws must come in one fixed order for the items to repeat.
struct Generator {
  Random random;
  Date now;

  // `now`, minus up to yearsBack × 365 days (at least one) and up to 86,000 seconds.
  Date date(int yearsBack) {
    const uint32_t span = static_cast<uint32_t>(std::max(yearsBack * 365, 1));
    const uint32_t days = random.below(span + 1);
    const uint32_t seconds = random.below(86'001);
    return Date{now.seconds - days * kDay - seconds};
  }

  // A moment within `year` (UTC), spread over the part of it that has passed; in a year still to come
  // (a clock set back), a moment of the past year instead.
  Date inYear(int year) {
    using namespace std::chrono;
    const double start =
        static_cast<double>(sys_days{std::chrono::year{year} / January / 1}.time_since_epoch().count()) *
        kDay;
    const uint32_t days = random.below(365);
    const uint32_t seconds = random.below(86'001);
    const double offset = days * kDay + seconds;
    const double span = std::min(now.seconds - start, 365 * kDay);
    if (span <= 0) return Date{now.seconds - offset};
    return Date{start + offset / (364 * kDay + 86'000) * span};
  }

  std::string title() {
    std::string first = pick(random, kTitleWords);
    return first + " " + pick(random, kTitleWords);
  }
};

ImportedFile file(std::string path, int64_t size, const char* kind, const char* uti, Date modified) {
  ImportedFile f;
  f.path = std::move(path);
  f.size = size;
  f.kind = kind;
  f.uti = uti;
  f.modified = modified;
  f.created = modified;
  return f;
}

std::vector<ImportedFile> djCrates(Generator& g) {
  std::vector<ImportedFile> items;
  for (const char* genre : kGenres) {
    const uint32_t tracks = g.random.below(13) + 14;
    for (uint32_t n = 1; n <= tracks; ++n) {
      const std::string artist = pick(g.random, kArtists);
      const std::string title = g.title();
      const int64_t duration = g.random.below(271) + 150;
      const int64_t bitrate = pick(g.random, kBitrates);
      const bool wav = bitrate == 1411;
      ImportedFile f = file("Music/" + std::string(genre) + "/" + format("%02u", n) + " " + artist + " - " +
                                title + (wav ? ".wav" : ".mp3"),
                            duration * bitrate * 125, "Audio", wav ? "audio/x-wav" : "audio/mpeg", Date{});
      f.duration = static_cast<double>(duration);
      f.meta = {{"Artist", artist},
                {"Title", title},
                {"Album", std::string(genre) + " Crate"},
                {"Bitrate", std::to_string(bitrate) + " kbps"},
                {"Duration", Fmt::duration(static_cast<double>(duration))},
                {"Sample Rate", "44.1 kHz"},
                {"Channels", "Stereo"},
                {"Genre", genre}};
      if (g.random.below(6) == 0) f.tags = "Green";
      f.label = g.random.below(7) == 0 ? 2 : 0;
      f.modified = f.created = g.date(4);
      items.push_back(std::move(f));
    }
  }
  // Each draw in a statement of its own: the order in which a call's arguments are evaluated is not
  // fixed, and the items depend on the order of the draws.
  int64_t size = g.random.below(40'000'001) + 8'000'000;
  items.push_back(file("Rekordbox/export.pdb", size, "Other", "application/octet-stream", g.date(6)));
  size = g.random.below(20'000'001) + 2'000'000;
  items.push_back(file("Rekordbox/Collection.xml", size, "Other", "application/xml", g.date(6)));
  return items;
}

std::vector<ImportedFile> studioArchive(Generator& g, const std::vector<ImportedFile>& crates) {
  std::vector<ImportedFile> items;
  for (const std::string project : kProjects) {
    const std::string folder = "Projects/" + project + "/";
    const int64_t projectSize = g.random.below(3'800'001) + 200'000;
    items.push_back(
        file(folder + project + ".als", projectSize, "Other", "application/octet-stream", g.date(5)));
    const int64_t size = g.random.below(100'000'001) + 60'000'000;
    const int64_t duration = g.random.below(1801) + 1800;
    ImportedFile master =
        file(folder + "Bounce/" + project + " Master.wav", size, "Audio", "audio/x-wav", g.date(5));
    master.duration = static_cast<double>(duration);
    master.meta = {
        {"Duration", Fmt::duration(master.duration)}, {"Bitrate", "1411 kbps"}, {"Channels", "Stereo"}};
    items.push_back(std::move(master));
  }
  for (const std::string release : kReleases) {
    const int64_t duration = g.random.below(151) + 180;
    const Date when = g.date(5);
    ImportedFile video = file("Video/Music Videos/" + release + " 4K.mov", duration * 90'000'000 / 8, "Video",
                              "video/quicktime", when);
    video.duration = static_cast<double>(duration);
    video.width = 3840;
    video.height = 2160;
    video.meta = {{"Resolution", pixels(3840, 2160)},
                  {"Video Codec", "Apple ProRes (apcn)"},
                  {"Frame Rate", "23.976 fps"},
                  {"Duration", Fmt::duration(video.duration)}};
    items.push_back(std::move(video));
    ImportedFile cut = file("Video/Social Cuts/" + release + " Vertical.mp4", duration * 12'000'000 / 8,
                            "Video", "video/mp4", when);
    cut.duration = static_cast<double>(duration);
    cut.width = 1080;
    cut.height = 1920;
    cut.meta = {{"Resolution", pixels(1080, 1920)},
                {"Video Codec", "H.264"},
                {"Frame Rate", "30 fps"},
                {"Duration", Fmt::duration(cut.duration)}};
    items.push_back(std::move(cut));
  }
  for (int n = 1; n <= 40; ++n) {
    const std::string title = g.title();
    const int64_t size = g.random.below(70'000'001) + 40'000'000;
    ImportedFile master = file("Masters/WAV/" + title + format(" (Master %02d).wav", n), size, "Audio",
                               "audio/x-wav", g.date(5));
    master.duration = g.random.below(221) + 180;
    master.meta = {
        {"Artist", "Nova Ray"}, {"Title", title}, {"Bitrate", "2304 kbps"}, {"Sample Rate", "48.0 kHz"}};
    items.push_back(std::move(master));
  }
  for (const std::string release : kReleases) {
    for (const std::string stem : kStems) {
      const int64_t size = g.random.below(60'000'001) + 30'000'000;
      items.push_back(
          file("Masters/Stems/" + release + "/" + stem + ".wav", size, "Audio", "audio/x-wav", g.date(8)));
    }
  }
  // A backup of the whole DJ drive: the same files under another folder, so the sample library has
  // duplicates across drives.
  for (const ImportedFile& item : crates) {
    ImportedFile copy = item;
    copy.path = "Crate Backup/" + item.path;
    items.push_back(std::move(copy));
  }
  return items;
}

std::vector<ImportedFile> photoVault(Generator& g) {
  std::vector<ImportedFile> items;
  for (int year = kFirstYear; year <= kLastYear; ++year) {
    const uint32_t events = g.random.below(3) + 2;
    const uint32_t first = g.random.below(static_cast<uint32_t>(kEvents.size()));
    for (uint32_t e = 0; e < events; ++e) {
      const std::string event = kEvents[(first + e) % kEvents.size()];
      const uint32_t photos = g.random.below(19) + 10;
      for (uint32_t n = 1; n <= photos; ++n) {
        const std::string camera = pick(g.random, kCameras);
        const bool phone = camera == "iPhone 15 Pro";
        const std::array<int64_t, 2> size =
            phone ? std::array<int64_t, 2>{4032, 3024} : pick(g.random, kLargeCameraSizes);
        const std::string aperture = pick(g.random, kApertures);
        const std::string iso = pick(g.random, kISOValues);
        const std::array<double, 2> gps = pick(g.random, kGPSPoints);
        const int64_t bytes =
            phone ? g.random.below(3'000'001) + 2'000'000 : g.random.below(12'000'001) + 8'000'000;
        ImportedFile photo = file("Photos/" + std::to_string(year) + "/" + event + format("/IMG_%02u", n) +
                                      (phone ? ".heic" : ".jpg"),
                                  bytes, "Image", phone ? "image/heif" : "image/jpeg", g.inYear(year));
        photo.width = size[0];
        photo.height = size[1];
        photo.meta = {{"Camera", camera},
                      {"Dimensions", pixels(size[0], size[1])},
                      {"Aperture", aperture},
                      {"ISO", iso},
                      {"GPS", Exporter::decimal(gps[0], 5) + ", " + Exporter::decimal(gps[1], 5)}};
        items.push_back(std::move(photo));
      }
    }
  }
  return items;
}

std::vector<ImportedFile> businessShare(Generator& g) {
  std::vector<ImportedFile> items;
  for (int year = kFirstYear; year <= kLastYear; ++year) {
    for (const std::string folder : kDocumentFolders) {
      const uint32_t count = g.random.below(6) + 4;
      for (uint32_t n = 1; n <= count; ++n) {
        const std::string stem = std::to_string(year) + format("-%02u", n);
        const int64_t size = g.random.below(2'320'001) + 80'000;
        ImportedFile pdf =
            file("Business/" + folder + "/" + stem + ".pdf", size, "PDF", "application/pdf", g.inYear(year));
        pdf.meta = {{"Pages", std::to_string(g.random.below(12) + 1)}, {"Title", folder + " " + stem}};
        items.push_back(std::move(pdf));
      }
    }
  }
  struct Fixed {
    const char* path;
    const char* kind;
    const char* uti;
    uint32_t spread;
    int64_t least;
  };
  const Fixed fixed[] = {
      {"Software/Installers/TVRL Edit Bay.dmg", "Disk Image", "application/x-apple-diskimage", 300'000'001,
       150'000'000},
      {"Software/Installers/Plugins Bundle.zip", "Archive", "application/zip", 900'000'001, 300'000'000},
      {"Exports/Press Kit/Nova Ray Press Kit.pdf", "PDF", "application/pdf", 8'000'001, 2'000'000},
      {"Exports/Press Kit/Logo Pack.zip", "Archive", "application/zip", 50'000'001, 10'000'000},
      {"Business/Templates/Booking Agreement.docx", "Document",
       "application/vnd.openxmlformats-officedocument.wordprocessingml.document", 200'001, 40'000},
      {"Business/Templates/Rider.pages", "Document", "application/vnd.apple.pages", 2'000'001, 300'000},
      {"Backups/Website 2026-10-01.zip", "Archive", "application/zip", 400'000'001, 200'000'000},
      {"Backups/Website 2026-10-15.zip", "Archive", "application/zip", 400'000'001, 200'000'000},
  };
  for (const Fixed& f : fixed) {
    const int64_t size = g.random.below(f.spread) + f.least;
    items.push_back(file(f.path, size, f.kind, f.uti, g.date(2)));
  }
  return items;
}

}  // namespace

std::vector<Cartridge> generate(Date now) {
  Generator g{Random(kSeed), now};
  std::vector<Cartridge> out(4);
  out[0] = {"DJ Crates SSD",
            "DJ Crates SSD",
            "APFS",
            "/Volumes/DJ Crates SSD",
            1'000'000'000'000,
            412'000'000'000,
            false,
            true,
            false,
            kStudioGroup,
            djCrates(g)};
  out[1] = {"Studio Archive 4TB",
            "Studio Archive",
            "Mac OS Extended (Journaled)",
            "/Volumes/Studio Archive",
            4'000'000'000'000,
            1'120'000'000'000,
            false,
            true,
            false,
            kStudioGroup,
            studioArchive(g, out[0].items)};
  out[2] = {"Photo Vault",
            "Photo Vault",
            "ExFAT",
            "/Volumes/Photo Vault",
            2'000'000'000'000,
            760'000'000'000,
            false,
            true,
            false,
            kMediaGroup,
            photoVault(g)};
  out[3] = {"Home NAS \u2014 Business",
            "Business",
            "SMB (Network)",
            "/Volumes/Business",
            8'000'000'000'000,
            5'300'000'000'000,
            true,
            false,
            true,
            kMediaGroup,
            businessShare(g)};
  return out;
}

std::vector<int64_t> load(CatalogDB& store, Date now) {
  const std::vector<Cartridge> cartridges = generate(now);
  const int64_t studio = store.createGroup(kStudioGroup);
  const int64_t media = store.createGroup(kMediaGroup);
  std::vector<int64_t> ids;
  for (const Cartridge& c : cartridges) {
    VolumeInfo volume;
    volume.name = c.volumeName;
    volume.uuid = newUUIDString();
    volume.format = c.format;
    volume.capacity = c.capacity;
    volume.free = c.free;
    volume.isNetwork = c.isNetwork;
    volume.isRemovable = c.isRemovable;
    volume.rootPath = c.rootPath;
    const int64_t id =
        Exporter::insertImported(store, c.name, c.rootPath, volume, c.isFolder, c.items, kNotes);
    store.db().transaction([&] {
      store.setGroup(id, c.group == kStudioGroup ? studio : media);
      store.db().run("UPDATE catalogs SET is_sample=1 WHERE id=?", {id});
    });
    ids.push_back(id);
  }
  return ids;
}

size_t removeSampleData(CatalogDB& store, const std::optional<std::filesystem::path>& thumbsRoot) {
  size_t removed = 0;
  for (const Catalog& c : store.catalogs()) {
    if (!c.isSample) continue;
    store.deleteCatalog(c.id, thumbsRoot);
    ++removed;
  }
  if (removed == 0) return 0;
  const std::vector<Catalog> remaining = store.catalogs();
  const std::string suffix = kSampleGroupSuffix;
  for (const CatalogGroup& group : store.groups()) {
    if (group.name.size() < suffix.size() ||
        group.name.compare(group.name.size() - suffix.size(), suffix.size(), suffix) != 0)
      continue;
    const bool used = std::any_of(remaining.begin(), remaining.end(),
                                  [&](const Catalog& c) { return c.groupID == group.id; });
    if (!used) store.deleteGroup(group.id);
  }
  return removed;
}

}  // namespace orrelin::SampleData
