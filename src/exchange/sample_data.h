// Demonstration cartridges: four catalogs generated from a fixed seed, so that every feature can be tried
// without scanning a drive, and their removal.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/date.h"
#include "exchange/exporter.h"

namespace orrelin {

class CatalogDB;

namespace SampleData {

inline constexpr uint64_t kSeed = 20261019;
inline constexpr const char* kNotes =
    "Sample cartridge \u2014 demonstration data. Remove it any time from Settings \u203A Data.";
inline constexpr const char* kStudioGroup = "Studio (Sample)";
inline constexpr const char* kMediaGroup = "Media (Sample)";
// A group whose name ends so is emptied away with the sample data once no catalog is left in it.
inline constexpr const char* kSampleGroupSuffix = "(Sample)";

// A 64-bit linear congruential generator. Each draw advances the state and returns its top 31 bits.
class Random {
 public:
  explicit Random(uint64_t seed = kSeed) : m_state(seed) {}

  uint32_t next() {
    m_state = m_state * 0x5851F42D4C957F2DULL + 0x14057B7EF767814FULL;  // Modulo 2^64 by overflow.
    return static_cast<uint32_t>(m_state >> 33);
  }
  // A draw modulo `n` (n ≥ 1): an index into a list of n, or a value in 0 … n − 1.
  uint32_t below(uint32_t n) { return next() % n; }

 private:
  uint64_t m_state;
};

// One demonstration cartridge as it goes into the database.
struct Cartridge {
  std::string name;
  std::string volumeName;
  std::string format;
  std::string rootPath;
  int64_t capacity = 0;
  int64_t free = 0;
  bool isNetwork = false;
  bool isRemovable = false;
  bool isFolder = false;
  std::string group;  // kStudioGroup or kMediaGroup.
  std::vector<Exporter::ImportedFile> items;
};

// The four cartridges, "DJ Crates SSD", "Studio Archive 4TB", "Photo Vault" and "Home NAS — Business", with
// their items generated from kSeed. The same names, sizes and details every time; the dates count back
// from `now` (and never lie after it).
std::vector<Cartridge> generate(Date now);

// Creates the groups "Studio (Sample)" and "Media (Sample)", then adds the four cartridges in order, each
// with the sample flag, its group, the sample notes and a fresh volume UUID. Returns the new catalogs' ids.
// Throws DBError at the first store failure; catalogs added before it stay. Loading twice adds them twice.
std::vector<int64_t> load(CatalogDB& store, Date now = Date::now());

// Deletes every catalog with the sample flag (and its thumbnails under `thumbsRoot`, when given), then
// every group whose name ends in "(Sample)" that no remaining catalog belongs to; a sample group into which
// a real catalog was moved stays. Returns the number of catalogs deleted: 0 means there was no sample data
// and nothing changed. Throws DBError; what was deleted before a failure stays deleted.
size_t removeSampleData(CatalogDB& store, const std::optional<std::filesystem::path>& thumbsRoot);

}  // namespace SampleData
}  // namespace orrelin
